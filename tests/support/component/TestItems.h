#pragma once

#include "frame/automation/automation_object.h"
#include "frame/automation/enumeration.h"

#include <vector>

namespace orvane::tests {

/// A list for hosts, counted from 1: default member, enumeration, and events.
class TestItems final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table();

    TestItems();

    /// Appends, or inserts before an item. Fires `Added`.
    void Add(const Variant& value, const Variant& before);
    std::int32_t Count() { return static_cast<std::int32_t>(items_.size()); }
    /// Raises 9 for an index out of range.
    Variant Item(std::int32_t index) { return at(index); }
    void putItem(std::int32_t index, const Variant& value) { at(index) = value; }
    void putItemReference(std::int32_t index, const Object& value) { at(index) = Variant(value); }
    automation::Enumeration NewEnum() { return automation::newEnumeration(items_); }
    /// Fires `Asked` with a by-reference answer and gives what the sinks made of it.
    std::int32_t Ask(WStringView question);

private:
    Variant& at(std::int32_t index);

    std::vector<Variant> items_;
};

}  // namespace orvane::tests
