#include "frame/automation/type_info/names.h"

#include "frame/automation/type_info/descriptors.h"

#include <algorithm>
#include <string>

namespace orvane::automation {

namespace {

const Member* memberOf(const TypeDescription& type, MEMBERID id) {
    const auto* members = type.members();
    if (members == nullptr) return nullptr;
    const auto found = std::ranges::find(*members, id, &Member::id);
    return found == members->end() ? nullptr : &*found;
}

char16_t lowered(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}

}  // namespace

std::vector<const char*> namesOf(const TypeDescription& type, MEMBERID id) {
    std::vector<const char*> names;
    if (const Member* member = memberOf(type, id)) {
        names.push_back(member->name);
        for (const Parameter& parameter : member->parameters)
            names.push_back(parameter.name);
        const bool writes = member->kind == MemberKind::propertyPut ||
                            member->kind == MemberKind::propertyPutReference;
        if (writes) names.pop_back();
        return names;
    }
    if (type.isDual()) {
        for (const char* const* name = inheritedNames(id); name && *name != nullptr; ++name) {
            names.push_back(*name);
        }
    }
    if (type.enumTable != nullptr) {
        for (std::size_t i = 0; i < type.enumTable->constants.size(); ++i) {
            if (constantId(i) == id) names.push_back(type.enumTable->constants[i].name);
        }
    }
    return names;
}

const char16_t* helpOf(const TypeDescription& type, MEMBERID id) {
    const Member* member = memberOf(type, id);
    return member == nullptr ? nullptr : member->help;
}

MEMBERID idOfName(const TypeDescription& type, const OLECHAR* name) {
    if (const auto* members = type.members()) {
        for (const Member& member : *members) {
            if (sameName(member.name, name)) return member.id;
        }
    }
    if (type.enumTable != nullptr) {
        for (std::size_t i = 0; i < type.enumTable->constants.size(); ++i) {
            if (sameName(type.enumTable->constants[i].name, name)) return constantId(i);
        }
    }
    return MEMBERID_NIL;
}

bool sameName(const char* known, const OLECHAR* asked) {
    if (asked == nullptr) return false;
    for (; *known != 0; ++known, ++asked) {
        if (lowered(static_cast<unsigned char>(*known)) != lowered(*asked)) return false;
    }
    return *asked == 0;
}

BSTR bstrOfName(const char* name) {
    const std::u16string text(name, name + std::char_traits<char>::length(name));
    return SysAllocStringLen(text.data(), static_cast<UINT>(text.size()));
}

}  // namespace orvane::automation
