#include "frame/values/collection.h"

#include "frame/errors.h"
#include "frame/values/conversions.h"
#include "frame/values/text.h"

#include <algorithm>
#include <optional>

namespace orvane {
namespace {

/// How a key stands in the index: without regard to case.
std::u16string folded(WStringView key) {
    std::u16string result(key);
    for (char16_t& unit : result)
        unit = upperUnit(unit);
    return result;
}

std::optional<WString> keyIn(const Variant& key) {
    if (key.isMissing()) return std::nullopt;
    const Variant value = key.value();
    const auto* text = value.as<WString>();
    if (text == nullptr) raise(error::kTypeMismatch);
    return *text;
}

}  // namespace

void Collection::add(Variant value, const Variant& key, const Variant& before,
                     const Variant& after) {
    const std::size_t place = placeToAdd(before, after);
    auto added = std::make_unique<Item>();
    added->value = value.isReference() ? value.value() : std::move(value);
    const Item* item = added.get();
    const auto text = keyIn(key);
    if (text) {
        added->key = folded(*text);
        added->hasKey = true;
        if (keys_.contains(added->key)) raise(error::kKeyAlreadyUsed);
    }
    const auto position =
        items_.insert(items_.begin() + static_cast<std::ptrdiff_t>(place), std::move(added));
    if (!text) return;
    try {
        keys_.emplace(item->key, item);
    } catch (...) {
        items_.erase(position);
        throw;
    }
}

const Variant& Collection::item(std::int32_t index) const {
    return itemAt(index).value;
}

const Variant& Collection::item(const Variant& index) const {
    if (index.isReference()) return item(index.value());
    if (const auto* key = index.as<WString>()) return itemOf(*key).value;
    return item(toLong(index));
}

void Collection::remove(const Variant& index) {
    const std::size_t place = placeOf(index);
    const std::unique_ptr<Item> removed = std::move(items_[place]);
    items_.erase(items_.begin() + static_cast<std::ptrdiff_t>(place));
    if (removed->hasKey) keys_.erase(removed->key);
}

bool Collection::hasKey(WStringView key) const {
    return keys_.contains(folded(key));
}

const Collection::Item& Collection::itemAt(std::int32_t index) const {
    if (index < 1 || index > count()) raise(error::kSubscriptOutOfRange);
    return *items_[static_cast<std::size_t>(index - 1)];
}

const Collection::Item& Collection::itemOf(WStringView key) const {
    const auto found = keys_.find(folded(key));
    if (found == keys_.end()) raise(error::kInvalidArgument);
    return *found->second;
}

std::size_t Collection::placeOf(const Variant& index) const {
    if (index.isReference()) return placeOf(index.value());
    if (const auto* key = index.as<WString>()) {
        const Item* item = &itemOf(*key);
        const auto found = std::ranges::find(items_, item, &std::unique_ptr<Item>::get);
        return static_cast<std::size_t>(found - items_.begin());
    }
    const std::int32_t position = toLong(index);
    itemAt(position);
    return static_cast<std::size_t>(position - 1);
}

std::size_t Collection::placeToAdd(const Variant& before, const Variant& after) const {
    if (before.isMissing() && after.isMissing()) return items_.size();
    if (after.isMissing()) return placeOf(before);
    if (before.isMissing()) return placeOf(after) + 1;
    raise(error::kInvalidArgument);
}

}  // namespace orvane
