#pragma once

#include "frame/values/variant.h"

#include <deque>
#include <memory>
#include <string>
#include <unordered_map>

namespace orvane {

/// An ordered bag of values, counted from 1, each with an optional text key. Keys are compared
/// without regard to case. Looking up an item takes the same time however many there are.
///
/// Wherever an item is named, a text is a key and any other value is converted to a number: a
/// number out of range raises 9, an unknown key 5.
class Collection {
public:
    Collection() = default;
    Collection(const Collection&) = delete;
    Collection& operator=(const Collection&) = delete;
    Collection(Collection&&) = default;
    Collection& operator=(Collection&&) = default;
    ~Collection() = default;

    /// Adds the value at the end, or before or after the item that `before` or `after` names.
    /// Raises 457 for a key in use, 13 for a key that is no text, and 5 when both places are given;
    /// the collection is then as it was.
    void add(Variant value, const Variant& key = Variant::missing(),
             const Variant& before = Variant::missing(), const Variant& after = Variant::missing());

    /// The item at a position, from 1.
    const Variant& item(std::int32_t index) const;
    /// The item that a number or a key names.
    const Variant& item(const Variant& index) const;

    std::int32_t count() const { return static_cast<std::int32_t>(items_.size()); }

    /// Removes the item that a number or a key names.
    void remove(const Variant& index);

    /// Whether an item has this key.
    bool hasKey(WStringView key) const;

private:
    struct Item {
        Variant value;
        std::u16string key;
        bool hasKey = false;
    };

    const Item& itemAt(std::int32_t index) const;
    const Item& itemOf(WStringView key) const;
    std::size_t placeOf(const Variant& index) const;
    std::size_t placeToAdd(const Variant& before, const Variant& after) const;

    std::deque<std::unique_ptr<Item>> items_;
    std::unordered_map<std::u16string, const Item*> keys_;
};

}  // namespace orvane
