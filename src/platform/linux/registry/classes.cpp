#include "platform/linux/registry/classes.h"

#include <algorithm>
#include <unordered_set>

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
        const Code code = owner(up, hive, found);
        if (found.failed()) return code;
        if (code == kSuccess) break;
    }
    std::int64_t id = 0;
    const std::u16string spelled = joined(kSpelledRoot, path.spelled);
    const std::u16string folded = joined(kFoldedRoot, path.folded);
    return hive->create({0, {}}, Name(spelled, folded), id, created);
}

Code Classes::query(std::u16string_view path, std::u16string_view name, const Take& take) {
    for (Hive* hive : {&user_, &machine_}) {
        const Found found = find(*hive, path);
        if (found.failed()) return found.code;
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
        if (found.failed()) return found.code;
        if (!found.isThere()) continue;
        const Code code = hive->query(found.place(), name, kTakeNothing);
        if (code == kNotFound) continue;
        return code == kSuccess ? hive->deleteValue(found.place(), name) : code;
    }
    return kNotFound;
}

/// Adds the names of a key in one root that no item has yet.
Code Classes::addNames(Sql list, Hive& hive, const Found& found, std::vector<Item>& items) {
    if (found.failed()) return found.code;
    if (!found.isThere()) return kSuccess;
    std::vector<KeptName> names;
    if (const Code code = hive.names(list, found.place(), names); code != kSuccess) return code;
    std::unordered_set<std::u16string> known;
    for (const Item& item : items)
        known.insert(item.name.folded);
    for (KeptName& name : names) {
        if (list == Sql::subKeys) name.folded = lastName(name.folded);
        if (!known.contains(name.folded)) items.push_back({std::move(name), &hive, found.id});
    }
    return kSuccess;
}

/// Reads a merged list, unless it is the one that was read last and neither root has changed since:
/// a walk over a list by index reads it once.
Code Classes::read(Listing& listing, std::u16string_view path) {
    Moment user;
    Moment machine;
    if (const Code code = user_.moment(user); code != kSuccess) return code;
    if (const Code code = machine_.moment(machine); code != kSuccess) return code;
    if (listing.isRead && listing.path == path && listing.user == user &&
        listing.machine == machine) {
        return kSuccess;
    }
    listing.isRead = false;
    listing.items.clear();
    const Found users = find(user_, path);
    const Found machines = find(machine_, path);
    for (const auto& [hive, found] : {std::pair{&user_, &users}, std::pair{&machine_, &machines}}) {
        const Code code = addNames(listing.list, *hive, *found, listing.items);
        if (code != kSuccess) return code;
    }
    if (!path.empty() && !users.isThere() && !machines.isThere()) return kKeyDeleted;
    listing.path = path;
    listing.user = user;
    listing.machine = machine;
    listing.isRead = true;
    return kSuccess;
}

Code Classes::content(std::u16string_view path, KeyContent& content) {
    content = {};
    if (const Code code = read(subKeys_, path); code != kSuccess) return code;
    if (const Code code = read(values_, path); code != kSuccess) return code;
    for (const Item& item : subKeys_.items)
        content.subKeys.push_back(item.name);
    for (const Item& item : values_.items)
        content.values.push_back(item.name);
    // Data that another root's value hides may be counted in: room enough all the same.
    for (Hive* hive : {&user_, &machine_}) {
        const Found found = find(*hive, path);
        if (found.failed()) return found.code;
        if (!found.isThere()) continue;
        KeyContent one;
        if (const Code code = hive->content(found.place(), one); code != kSuccess) return code;
        content.longestText = std::max(content.longestText, one.longestText);
        content.longestOther = std::max(content.longestOther, one.longestOther);
    }
    return kSuccess;
}

Code Classes::subKey(std::u16string_view path, std::uint32_t index, const Take& take) {
    if (const Code code = read(subKeys_, path); code != kSuccess) return code;
    if (index >= subKeys_.items.size()) return kNoMoreItems;
    take(bytesOf(subKeys_.items[index].name.spelled), 0, {});
    return kSuccess;
}

Code Classes::value(std::u16string_view path, std::uint32_t index, bool, const Take& take) {
    if (const Code code = read(values_, path); code != kSuccess) return code;
    if (index >= values_.items.size()) return kNoMoreItems;
    const Item& item = values_.items[index];
    const Code code = item.hive->query({item.key, {}}, item.name.folded, take);
    return code == kNotFound ? kNoMoreItems : code;
}

Code Classes::deleteEmpty(std::u16string_view path) {
    Hive* hive = nullptr;
    Found found{};
    if (const Code code = owner(path, hive, found); code != kSuccess) return code;
    if (const Code code = read(subKeys_, path); code != kSuccess) return code;
    if (!subKeys_.items.empty()) return kHasChildren;
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
