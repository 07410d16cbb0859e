#pragma once

#include "TestItems.h"

#include "frame/automation/array_argument.h"
#include "frame/automation/parameters.h"

namespace orvane::tests {

/// What a `TestProbe` shows of enumerations in signatures.
enum class TestShape : std::int32_t { tsNone = 0, tsRound = 1, tsSquare = 7 };
const automation::EnumTable& enumTable(TestShape);

/// One member for each way in which arguments and results cross to hosts.
class TestProbe final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table();

    TestProbe();

    // By-reference arguments: each is changed in a way of its own.
    void ChangeByte(std::uint8_t& value) { value = static_cast<std::uint8_t>(value + 1); }
    void ChangeInteger(std::int16_t& value) { value = static_cast<std::int16_t>(value + 1); }
    void ChangeLong(std::int32_t& value) { ++value; }
    void ChangeSingle(float& value) { value *= 2; }
    void ChangeDouble(double& value) { value *= 2; }
    void ChangeCurrency(Currency& value) { value.scaled *= 2; }
    void ChangeDate(Date& value) { value.days += 1; }
    void ChangeBoolean(bool& value) { value = !value; }
    void ChangeText(WString& value) { value += u"!"; }
    void ChangeVariant(Variant& value) { value.assign(Variant(WString(toText(value)) + u"?")); }
    /// Nothing becomes a new list of one item; a list gets one item more.
    void ChangeItems(Ref<TestItems>& items);
    void ChangeObject(Object& value) { value = asObject(); }
    void ChangeLongs(Array<std::int32_t>& values);
    void ChangeTexts(Array<WString>& values);

    /// The four arguments as text, "a|b|c|d"; a missing one is "-".
    WString Join(WStringView first, std::int32_t second, const Variant& third, WStringView fourth,
                 bool upper);
    /// The arguments' types, with blanks between.
    WString TypesOf(automation::ArgumentList& values);
    Array<std::int32_t> Counted(std::int32_t count);
    TestShape NextShape(TestShape shape);
    Ref<TestItems> Items() { return items_; }
    /// Raises an error of this number and description.
    void Fail(std::int32_t number, WStringView description);
    void NotBuilt() { raise(error::kActionNotSupported); }

    // Late-bound work on an object of the host.
    Variant ReadFrom(const Object& host, WStringView name) { return host.get(name); }
    void WriteTo(const Object& host, WStringView name, const Variant& value) {
        host.put(name, value);
    }
    Variant CallOn(const Object& host, WStringView name, const Variant& argument);
    /// Calls `name(variable)` with a by-reference argument and gives what it left there.
    Variant CallByReference(const Object& host, WStringView name, const Variant& start);

private:
    Ref<TestItems> items_;
};

}  // namespace orvane::tests
