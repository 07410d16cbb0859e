#include "frame/automation/table.h"

#include "frame/automation/describe.h"
#include "frame/automation/dispatch.h"

#include <algorithm>

namespace orvane::automation {
namespace {

char16_t lowered(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}

std::u16string loweredName(const char* name) {
    std::u16string text;
    for (; *name != 0; ++name)
        text += lowered(static_cast<unsigned char>(*name));
    return text;
}

// Compares without making a lower-case copy of the name that was asked for.
int compareLowered(std::u16string_view known, std::u16string_view asked) {
    const std::size_t common = std::min(known.size(), asked.size());
    for (std::size_t i = 0; i < common; ++i) {
        const int difference = known[i] - lowered(asked[i]);
        if (difference != 0) return difference;
    }
    return static_cast<int>(known.size()) - static_cast<int>(asked.size());
}

void numberMembers(ClassTable& table) {
    DISPID next = 1;
    for (Member& member : table.members) {
        const auto name = loweredName(member.name);
        const auto known = std::ranges::find(table.names, name, &ClassTable::NameEntry::lowered);
        if (known != table.names.end()) {
            if (member.id == DISPID_UNKNOWN) member.id = known->id;
            continue;
        }
        if (member.id == DISPID_UNKNOWN) member.id = next++;
        table.names.push_back({name, member.id});
    }
    std::ranges::sort(table.names, {}, &ClassTable::NameEntry::lowered);
}

void indexMembers(ClassTable& table) {
    for (std::size_t i = 0; i < table.members.size(); ++i) {
        const Member& member = table.members[i];
        auto entry = std::ranges::find(table.ids, member.id, &ClassTable::IdEntry::id);
        if (entry == table.ids.end()) {
            table.ids.push_back({member.id, {-1, -1, -1, -1}});
            entry = std::prev(table.ids.end());
        }
        entry->members[static_cast<std::size_t>(member.kind)] = static_cast<std::int16_t>(i);
    }
    std::ranges::sort(table.ids, {}, &ClassTable::IdEntry::id);
}

}  // namespace

const Member* ClassTable::find(DISPID id, MemberKind kind) const {
    const auto entry = std::ranges::lower_bound(ids, id, {}, &IdEntry::id);
    if (entry == ids.end() || entry->id != id) return nullptr;
    const std::int16_t index = entry->members[static_cast<std::size_t>(kind)];
    return index < 0 ? nullptr : &members[static_cast<std::size_t>(index)];
}

DISPID ClassTable::idOf(std::u16string_view asked) const {
    std::size_t low = 0;
    std::size_t high = names.size();
    while (low < high) {
        const std::size_t middle = (low + high) / 2;
        const int order = compareLowered(names[middle].lowered, asked);
        if (order == 0) return names[middle].id;
        if (order < 0) low = middle + 1;
        else high = middle;
    }
    return DISPID_UNKNOWN;
}

bool ClassTable::isInterface(REFIID iid) const {
    return iid == interfaceId || iid == IID_IDispatch || iid == IID_IUnknown ||
           std::ranges::any_of(
               aliases, [&](const InterfaceAlias& alias) { return alias.interfaceId == iid; });
}

void finish(ClassTable& table) {
    numberMembers(table);
    indexMembers(table);
    table.vtable = dispatchSlots();
    for (const Member& member : table.members)
        table.vtable.push_back(member.slot);
}

}  // namespace orvane::automation
