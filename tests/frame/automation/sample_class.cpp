#include "sample_class.h"

#include "frame/automation/describe.h"
#include "frame/automation/enumeration.h"
#include "frame/automation/library_type_info.h"
#include "frame/values/text.h"

#include <stdexcept>

namespace orvane::automation {

// The frame alone has no type information; the module's tests cover it.
HRESULT typeInfoOf(REFGUID, ITypeInfo** info) {
    *info = nullptr;
    return TYPE_E_ELEMENTNOTFOUND;
}

}  // namespace orvane::automation

namespace orvane::test {

using automation::optional;

int Sample::alive = 0;

const automation::EnumTable& enumTable(Shade) {
    static const automation::EnumTable& table = automation::permanent<automation::EnumTable>([] {
        return automation::EnumTable{"Shade", {{"none", 0}, {"light", 3}, {"dark", -7}}};
    });
    return table;
}

const automation::ClassTable& Sample::table() {
    static const automation::ClassTable& table = automation::classTable([] {
        return automation::ClassBuilder<Sample>(
                   "Sample", automation::Instancing::creatable,
                   {0x1B0E2C00, 0x51AA, 0x4D0B, {0x90, 0x11, 0x20, 0x5B, 0xD2, 0x36, 0x6F, 0x01}},
                   {0x1B0E2C10, 0x51AA, 0x4D0B, {0x90, 0x11, 0x20, 0x5B, 0xD2, 0x36, 0x6F, 0x01}})
            .alias("SampleOld", kAliasInterface)
            .events("__Sample", kEventInterface)
            .event("Rung", kRung, {{"Times", {VT_I4}, false, {}}, {"Text", {VT_BSTR}, false, {}}})
            .method<&Sample::Add>("Add", {"Left", "Right"})
            .method<&Sample::NextInteger>("NextInteger", {"Value"})
            .method<&Sample::Not>("Not", {"Value"})
            .method<&Sample::Byte>("Byte", {"Value"})
            .method<&Sample::Half>("Half", {"Value"})
            .method<&Sample::Twice>("Twice", {"Value"})
            .method<&Sample::Cent>("Cent", {"Value"})
            .method<&Sample::Tomorrow>("Tomorrow", {"Value"})
            .method<&Sample::Darker>("Darker", {"Value"})
            .method<&Sample::Join>("Join", {"First", {"Second", u"+"}})
            .method<&Sample::IsNullText>("IsNullText", {optional("Text")})
            .method<&Sample::KindOf>("KindOf", {optional("Value")})
            .method<&Sample::Echo>("Echo", {"Value"})
            .method<&Sample::Defaults>(
                "Defaults", {{"Text", u"d"}, {"Number", 42}, {"Flag", true}, optional("Anything")})
            .method<&Sample::Increase>("Increase", {"Number"})
            .method<&Sample::Append>("Append", {"Text"})
            .method<&Sample::Flip>("Flip", {"Flag"})
            .method<&Sample::Replace>("Replace", {"Variable"})
            .method<&Sample::MakeSample>("MakeSample", {optional("Sample")})
            .method<&Sample::StoreThenFail>("StoreThenFail", {"Number"})
            .method<&Sample::SumOf>("SumOf", {"Numbers"})
            .method<&Sample::Resize>("Resize", {"Numbers"})
            .method<&Sample::Upper>("Upper", {"Texts"})
            .method<&Sample::CountArguments>("CountArguments", {"Arguments"})
            .method<&Sample::Words>("Words")
            .method<&Sample::Itself>("Itself")
            .method<&Sample::Fresh>("Fresh")
            .method<&Sample::Nobody>("Nobody")
            .method<&Sample::Fail>("Fail", {"Number", {"Description", u""}})
            .method<&Sample::FailForeign>("FailForeign")
            .propertyGet<&Sample::Number>("Number")
            .propertyPut<&Sample::setNumber>("Number", {"Value"})
            .propertyGet<&Sample::Partner>("Partner")
            .propertyPutReference<&Sample::setPartner>("Partner", {"Value"})
            .propertyGet<&Sample::Item>("Item", {"Index"})
            .defaultMember()
            .propertyPut<&Sample::setItem>("Item", {"Index", "Text"})
            .propertyGet<&Sample::NewEnum>("_NewEnum")
            .enumerator()
            .propertyGet<&Sample::Items>("Items")
            .method<&Sample::Ring>("Ring", {"Times"})
            .method<&Sample::CallBack>("CallBack", {"Target", "Member", optional("Argument")})
            .help(u"Вызывает член объекта.")
            .method<&Sample::Renew>("Renew", {"Numbers"})
            .method<&Sample::Advance>("Advance")
            .method<&Sample::Overwrite>("Overwrite", {"Text", "Variable"})
            .build();
    });
    return table;
}

Sample::Sample() : AutomationObject(table()) {
    ++alive;
}

Sample::~Sample() {
    --alive;
}

std::int16_t Sample::NextInteger(std::int16_t value) {
    return static_cast<std::int16_t>(value + 1);
}

WString Sample::Join(WStringView first, WStringView second) {
    return WString(first) + second;
}

std::int32_t Sample::KindOf(const Variant& value) {
    return value.isMissing() ? -1 : static_cast<std::int32_t>(value.type());
}

WString Sample::Defaults(WStringView text, std::int32_t number, bool flag,
                         const Variant& anything) {
    return WString(text) + longToText(number).view() + (flag ? u"T" : u"F") +
           (anything.isMissing() ? u"missing" : u"given");
}

void Sample::Replace(Variant& variable) {
    variable.assign(Variant(toText(variable) + u" replaced"));
}

void Sample::MakeSample(Ref<Sample>& sample) {
    if (!sample) sample = make<Sample>();
    sample->setNumber(sample->Number() + 1);
}

void Sample::StoreThenFail(std::int32_t& number) {
    number = 99;
    raise(error::kInvalidArgument);
}

std::int32_t Sample::SumOf(Array<std::int32_t>& numbers) {
    std::int32_t sum = 0;
    for (std::int32_t& each : numbers.elements()) {
        sum += each;
        each = -each;
    }
    return sum;
}

void Sample::Resize(Array<std::int32_t>& numbers) {
    numbers = Array<std::int32_t>(-1, 1);
    numbers.at(0) = 5;
}

void Sample::Upper(Array<WString>& texts) {
    for (WString& each : texts.elements())
        each = uCase(each);
}

std::int32_t Sample::CountArguments(automation::ArgumentList& arguments) {
    for (Variant& each : arguments.values.elements()) {
        if (each.isReference()) each.assign(Variant(u"seen"));
    }
    return static_cast<std::int32_t>(arguments.values.size());
}

Array<WString> Sample::Words() {
    return split(u"alpha beta", u" ");
}

void Sample::Fail(std::int32_t number, WStringView description) {
    RuntimeError failure(number, WString(description));
    failure.helpFile = u"help.chm";
    failure.helpContext = 12;
    throw failure;
}

void Sample::FailForeign() {
    throw std::runtime_error("not one of ours");
}

WString Sample::Item(const Variant& index) {
    const auto place = static_cast<std::size_t>(toLong(index));
    if (place >= items_.size()) raise(error::kSubscriptOutOfRange);
    return items_[place];
}

void Sample::setItem(const Variant& index, WStringView text) {
    items_.at(static_cast<std::size_t>(toLong(index))) = WString(text);
}

Object Sample::NewEnum() {
    std::vector<Variant> values;
    for (const WString& item : items_)
        values.emplace_back(item);
    return automation::newEnumeration(std::move(values));
}

Ref<Sample> Sample::Items() {
    return Ref<Sample>(this);
}

void Sample::Ring(std::int32_t times) {
    Variant arguments[] = {Variant(times), Variant(u"ding")};
    fire(kRung, arguments);
}

Variant Sample::CallBack(const Object& target, WStringView member, const Variant& argument) {
    if (argument.isMissing()) return target.get(member);
    return target.call(member, {argument});
}

WString Sample::Overwrite(WStringView text, Variant& variable) {
    variable.assign(Variant(u"overwritten"));
    return WString(text);
}

WString Sample::Renew(Array<std::int32_t>& numbers) {
    Resize(numbers);
    return u"a result of its own";
}

}  // namespace orvane::test
