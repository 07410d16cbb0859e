#include "TestProbe.h"

#include "frame/automation/describe.h"
#include "frame/values/text.h"

namespace orvane::tests {

using automation::optional;

const automation::EnumTable& enumTable(TestShape) {
    static const automation::EnumTable& table = automation::permanent<automation::EnumTable>([] {
        return automation::EnumTable{"TestShape", {{"tsNone", 0}, {"tsRound", 1}, {"tsSquare", 7}}};
    });
    return table;
}

const automation::ClassTable& TestProbe::table() {
    static const automation::ClassTable& table = automation::classTable([] {
        return automation::ClassBuilder<TestProbe>(
                   "TestProbe", automation::Instancing::global,
                   {0x1B7C2F20, 0x3A5D, 0x4E61, {0x9C, 0x22, 0x5D, 0x80, 0x7B, 0x41, 0x0E, 0x01}},
                   {0x1B7C2F21, 0x3A5D, 0x4E61, {0x9C, 0x22, 0x5D, 0x80, 0x7B, 0x41, 0x0E, 0x01}})
            .method<&TestProbe::ChangeByte>("ChangeByte", {"Value"})
            .method<&TestProbe::ChangeInteger>("ChangeInteger", {"Value"})
            .method<&TestProbe::ChangeLong>("ChangeLong", {"Value"})
            .method<&TestProbe::ChangeSingle>("ChangeSingle", {"Value"})
            .method<&TestProbe::ChangeDouble>("ChangeDouble", {"Value"})
            .method<&TestProbe::ChangeCurrency>("ChangeCurrency", {"Value"})
            .method<&TestProbe::ChangeDate>("ChangeDate", {"Value"})
            .method<&TestProbe::ChangeBoolean>("ChangeBoolean", {"Value"})
            .method<&TestProbe::ChangeText>("ChangeText", {"Value"})
            .method<&TestProbe::ChangeVariant>("ChangeVariant", {"Value"})
            .method<&TestProbe::ChangeItems>("ChangeItems", {optional("Items")})
            .method<&TestProbe::ChangeObject>("ChangeObject", {"Value"})
            .method<&TestProbe::ChangeLongs>("ChangeLongs", {"Values"})
            .method<&TestProbe::ChangeTexts>("ChangeTexts", {"Values"})
            .method<&TestProbe::Join>(
                "Join",
                {"First", {"Second", 7}, optional("Third"), {"Fourth", u"хвост"}, {"Upper", false}})
            .help(u"Соединяет значения.")
            .method<&TestProbe::TypesOf>("TypesOf", {"Values"})
            .method<&TestProbe::Counted>("Counted", {"Count"})
            .method<&TestProbe::NextShape>("NextShape", {{"Shape", 1}})
            .propertyGet<&TestProbe::Items>("Items")
            .method<&TestProbe::Fail>("Fail", {"Number", {"Description", u""}})
            .method<&TestProbe::NotBuilt>("NotBuilt")
            .method<&TestProbe::ReadFrom>("ReadFrom", {"Host", "Name"})
            .method<&TestProbe::WriteTo>("WriteTo", {"Host", "Name", "Value"})
            .method<&TestProbe::CallOn>("CallOn", {"Host", "Name", "Argument"})
            .method<&TestProbe::CallByReference>("CallByReference", {"Host", "Name", "Start"})
            .build();
    });
    return table;
}

TestProbe::TestProbe() : AutomationObject(table()), items_(make<TestItems>()) {}

void TestProbe::ChangeItems(Ref<TestItems>& items) {
    if (!items) items = make<TestItems>();
    items->Add(Variant(u"added"), Variant::missing());
}

void TestProbe::ChangeLongs(Array<std::int32_t>& values) {
    if (!values.isAllocated()) values = Array<std::int32_t>(1, 3);
    for (std::int32_t& value : values.elements())
        ++value;
}

void TestProbe::ChangeTexts(Array<WString>& values) {
    for (WString& value : values.elements())
        value += u"!";
}

WString TestProbe::Join(WStringView first, std::int32_t second, const Variant& third,
                        WStringView fourth, bool upper) {
    WString text(first);
    text += u"|";
    text += toText(Variant(second));
    text += u"|";
    text += third.isMissing() ? WString(u"-") : toText(third);
    text += u"|";
    text += fourth;
    return upper ? uCase(text) : text;
}

WString TestProbe::TypesOf(automation::ArgumentList& values) {
    WString text(u"");
    for (const Variant& value : values.values.elements()) {
        if (!text.empty()) text += u" ";
        text += value.isMissing() ? WString(u"-")
                                  : toText(Variant(static_cast<std::int32_t>(value.type())));
    }
    return text;
}

Array<std::int32_t> TestProbe::Counted(std::int32_t count) {
    Array<std::int32_t> values(1, count);
    for (std::int32_t i = 1; i <= count; ++i)
        values.at(i) = i;
    return values;
}

TestShape TestProbe::NextShape(TestShape shape) {
    switch (shape) {
    case TestShape::tsNone:
        return TestShape::tsRound;
    case TestShape::tsRound:
        return TestShape::tsSquare;
    default:
        return TestShape::tsNone;
    }
}

void TestProbe::Fail(std::int32_t number, WStringView description) {
    raise(number, WString(description));
}

Variant TestProbe::CallOn(const Object& host, WStringView name, const Variant& argument) {
    return host.call(name, {argument});
}

Variant TestProbe::CallByReference(const Object& host, WStringView name, const Variant& start) {
    Variant variable = start;
    host.call(name, {Variant::reference(variable)});
    return variable;
}

}  // namespace orvane::tests
