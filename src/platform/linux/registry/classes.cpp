#include "platform/linux/registry/classes.h"

#include <algorithm>

namespace orvane::store {

namespace {

constexpr std::u16string_view kSpelledRoot = u"Software\\Classes";
constexpr std::u16string_view kFoldedRoot = u"SOFTWARE\\CLASSES";

std::u16string_view lastName(std::u16string_view path) {
    return path.substr(path.rfind(u'\\') + 1);
}

std::u16string_view above(std::u16string_view path) {
    const std::size_t cut = path.rfind(u'\\');
    return cut == std::u16string_view::npos ? std::u16string_view() : path.substr(0, cut);
}

/// What takes nothing: for asking whether there is something.
const Take kTakeNothing{[](auto...) {}, nullptr};

}  // namespace

Classes::Found Classes::find(Hive& hive, std::u16string_view path) {
    Found found{kNotFound, joined(kFoldedRoot, path)};
    found.code = hive.open({0, {}}, found.path, found.id);
    return found;
}

Code Classes::owner(std::u16string_view path, Hive*& hive, Found& found) {
    hive = &user_;
    found = find(user_, path);
    if (found.code != kNotFound) return found.code;
    hive = &machine_;
    found = find(machine_, path);
    return found.code;
}

// The root itself is there always.
Code Classes::open(std::u16string_view path, bool forWriting) {
    Hive* hive = nullptr;
    Found found{};
    const Code code = owner(path, hive, found);
    if (code != kSuccess) return path.empty() && code == kNotFound ? kSuccess : code;
    return forWriting ? hive->checkWritable() : kSuccess;
}

Code Classes::create(const Name& path, bool forWriting, bool& created) {
    created = false;
    const Code there = open(path.folded, forWriting);
    if (there != kNotFound) return there;
    // A new key goes where the nearest one above it is; the machine's keys are the first.
    Hive* hive = &machine_;
    for (std::u16string_view up = above(path.folded); !up.empty(); up = above(up)) {
        Found found{};
        if (owner(up, hive, found) != kNotFound) break;
    }
    std::int64_t id = 0;
    const std::u16string spelled = joined(kSpelledRoot, path.spelled);
    const std::u16string folded = joined(kFoldedRoot, path.folded);
    return hive->create({0, {}}, Name(spelled, folded), id, created);
}

Code Classes::query(std::u16string_view path, std::u16string_view name, const Take& take) {
    for (Hive* hive : {&user_, &machine_}) {
        const Found found = find(*hive, path);
        if (found.code != kSuccess && found.code != kNotFound) return found.code;
        if (!found.isThere()) continue;
        const Code code = hive->query(found.place(), name, take);
        if (code != kNotFound) return code;
    }
    return kNotFound;
}

Code Classes::set(std::u16string_view path, const Name& name, std::uint32_t type, Bytes data) {
    Hive* hive = nullptr;
    Found found{};
    Code code = owner(path, hive, found);
    if (code == kNotFound && path.empty()) {
        bool created = false;
        code = machine_.create({0, {}}, Name(kSpelledRoot, kFoldedRoot), found.id, created);
    }
    if (code != kSuccess) return code == kNotFound ? kKeyDeleted : code;
    return hive->set(found.place(), name, type, data);
}

Code Classes::deleteValue(std::u16string_view path, std::u16string_view name) {
    for (Hive* hive : {&user_, &machine_}) {
        const Found found = find(*hive, path);
        if (!found.isThere()) continue;
        const Code code = hive->query(found.place(), name, kTakeNothing);
        if (code == kNotFound) continue;
        return code == kSuccess ? hive->deleteValue(found.place(), name) : code;
    }
    return kNotFound;
}

Code Classes::merge(Sql list, const Found& user, const Found& machine, std::vector<Item>& items) {
    items.clear();
    const std::pair<Hive*, const Found*> sources[] = {{&user_, &user}, {&machine_, &machine}};
    for (const auto& [hive, found] : sources) {
        if (!found->isThere()) continue;
        std::vector<KeptName> names;
        if (const Code code = hive->names(list, found->place(), names); code != kSuccess) {
            return code;
        }
        for (KeptName& name : names) {
            if (list == Sql::subKeys) name.folded = lastName(name.folded);
            const bool isKnown = std::ranges::any_of(
                items, [&](const Item& item) { return item.name.folded == name.folded; });
            if (!isKnown) items.push_back({std::move(name), hive, found->place()});
        }
    }
    return kSuccess;
}

Code Classes::information(std::u16string_view path, OrvaneStoreInformation& information) {
    information = {};
    const Found user = find(user_, path);
    const Found machine = find(machine_, path);
    if (!user.isThere() && !machine.isThere()) return path.empty() ? kSuccess : kKeyDeleted;
    std::vector<Item> items;
    if (const Code code = merge(Sql::subKeys, user, machine, items); code != kSuccess) return code;
    information.subKeys = static_cast<std::uint32_t>(items.size());
    for (const Item& item : items) {
        information.longestSubKey = std::max(information.longestSubKey,
                                             static_cast<std::uint32_t>(item.name.spelled.size()));
    }
    if (const Code code = merge(Sql::valueNames, user, machine, items); code != kSuccess) {
        return code;
    }
    information.values = static_cast<std::uint32_t>(items.size());
    for (const Item& item : items) {
        information.longestValueName = std::max(
            information.longestValueName, static_cast<std::uint32_t>(item.name.spelled.size()));
    }
    // Data that another root's value hides may be counted in: room enough all the same.
    for (const auto& [hive, found] : {std::pair{&user_, &user}, std::pair{&machine_, &machine}}) {
        OrvaneStoreInformation one{};
        if (!found->isThere() || hive->information(found->place(), one) != kSuccess) continue;
        information.longestText = std::max(information.longestText, one.longestText);
        information.longestOther = std::max(information.longestOther, one.longestOther);
    }
    return kSuccess;
}

Code Classes::subKey(std::u16string_view path, std::uint32_t index, const Take& take) {
    std::vector<Item> items;
    const Found user = find(user_, path);
    const Found machine = find(machine_, path);
    if (!path.empty() && !user.isThere() && !machine.isThere()) return kKeyDeleted;
    if (const Code code = merge(Sql::subKeys, user, machine, items); code != kSuccess) return code;
    if (index >= items.size()) return kNoMoreItems;
    take(bytesOf(items[index].name.spelled), 0, {});
    return kSuccess;
}

Code Classes::value(std::u16string_view path, std::uint32_t index, bool, const Take& take) {
    std::vector<Item> items;
    const Found user = find(user_, path);
    const Found machine = find(machine_, path);
    if (!path.empty() && !user.isThere() && !machine.isThere()) return kKeyDeleted;
    if (const Code code = merge(Sql::valueNames, user, machine, items); code != kSuccess) {
        return code;
    }
    if (index >= items.size()) return kNoMoreItems;
    const Item& item = items[index];
    const Code code = item.hive->query(item.key, item.name.folded, take);
    return code == kNotFound ? kNoMoreItems : code;
}

Code Classes::deleteEmpty(std::u16string_view path) {
    OrvaneStoreInformation content{};
    Hive* hive = nullptr;
    Found found{};
    if (const Code code = owner(path, hive, found); code != kSuccess) return code;
    if (const Code code = information(path, content); code != kSuccess) return code;
    if (content.subKeys != 0) return kHasChildren;
    if (path.empty()) return kAccessDenied;
    return hive->deleteEmpty({0, {}}, found.path);
}

Code Classes::deleteTree(std::u16string_view path, bool keepsKey) {
    Hive* hive = nullptr;
    Found found{};
    if (const Code code = owner(path, hive, found); code != kSuccess) {
        return code == kNotFound && path.empty() ? kSuccess : code;
    }
    return keepsKey ? hive->deleteTree(found.place(), {}) : hive->deleteTree({0, {}}, found.path);
}

}  // namespace orvane::store
