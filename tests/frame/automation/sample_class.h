#pragma once

#include "frame/automation/automation_object.h"
#include "frame/automation/parameters.h"
#include "frame/values/picture.h"

#include <vector>

namespace orvane::test {

enum class Shade : std::int32_t { none = 0, light = 3, dark = -7 };
const automation::EnumTable& enumTable(Shade);

/// A class with one member of every kind and type, for tests of what crosses the binary interface.
class Sample final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table();
    static int alive;

    Sample();

    std::int32_t Add(std::int32_t left, std::int32_t right) { return left + right; }
    std::int16_t NextInteger(std::int16_t value);
    bool Not(bool value) { return !value; }
    std::uint8_t Byte(std::uint8_t value) { return value; }
    float Half(float value) { return value / 2; }
    double Twice(double value) { return value * 2; }
    Currency Cent(Currency value) { return {value.scaled + 100}; }
    Date Tomorrow(Date value) { return {value.days + 1}; }
    Shade Darker(Shade value) { return value == Shade::light ? Shade::dark : Shade::none; }
    WString Join(WStringView first, WStringView second);
    bool IsNullText(WStringView text) { return text.data() == nullptr; }
    std::int32_t KindOf(const Variant& value);
    Variant Echo(const Variant& value) { return value; }
    WString Defaults(WStringView text, std::int32_t number, bool flag, const Variant& anything);
    void Increase(std::int32_t& number) { ++number; }
    void Append(WString& text) { text += u"!"; }
    void Flip(bool& flag) { flag = !flag; }
    void Replace(Variant& variable);
    void MakeSample(Ref<Sample>& sample);
    void StoreThenFail(std::int32_t& number);
    std::int32_t SumOf(Array<std::int32_t>& numbers);
    void Resize(Array<std::int32_t>& numbers);
    void Upper(Array<WString>& texts);
    std::int32_t CountArguments(automation::ArgumentList& arguments);
    Array<WString> Words();
    Object Itself() { return asObject(); }
    Ref<Sample> Fresh() { return make<Sample>(); }
    Object Nobody() { return {}; }
    void Fail(std::int32_t number, WStringView description);
    void FailForeign();

    std::int32_t Number() { return number_; }
    void setNumber(std::int32_t value) { number_ = value; }
    Object Partner() { return partner_; }
    void setPartner(const Object& partner) { partner_ = partner; }
    WString Item(const Variant& index);
    void setItem(const Variant& index, WStringView text);
    Object NewEnum();
    Ref<Sample> Items();

    void Ring(std::int32_t times);
    Variant CallBack(const Object& target, WStringView member, const Variant& argument);
    WString Renew(Array<std::int32_t>& numbers);
    WString Overwrite(WStringView text, Variant& variable);
    std::int32_t Advance() { return ++number_; }

protected:
    ~Sample() override;

private:
    std::int32_t number_ = 0;
    Object partner_;
    std::vector<WString> items_{u"zero", u"one", u"two"};
};

inline constexpr IID kEventInterface = {
    0x1B0E2C11, 0x51AA, 0x4D0B, {0x90, 0x11, 0x20, 0x5B, 0xD2, 0x36, 0x6F, 0x01}};
inline constexpr IID kAliasInterface = {
    0x1B0E2C12, 0x51AA, 0x4D0B, {0x90, 0x11, 0x20, 0x5B, 0xD2, 0x36, 0x6F, 0x01}};
inline constexpr DISPID kRung = 7;

}  // namespace orvane::test
