#include "TestItems.h"

#include "frame/automation/describe.h"

#include <array>

namespace orvane::tests {

namespace {

constexpr DISPID kAdded = 1;
constexpr DISPID kAsked = 2;

automation::Parameter eventParameter(const char* name, VARTYPE type, bool byReference = false) {
    return {name, {type, byReference}, false, {}};
}

}  // namespace

const automation::ClassTable& TestItems::table() {
    static const automation::ClassTable& table = automation::classTable([] {
        return automation::ClassBuilder<TestItems>(
                   "TestItems", automation::Instancing::creatable,
                   {0x1B7C2F10, 0x3A5D, 0x4E61, {0x9C, 0x22, 0x5D, 0x80, 0x7B, 0x41, 0x0E, 0x01}},
                   {0x1B7C2F11, 0x3A5D, 0x4E61, {0x9C, 0x22, 0x5D, 0x80, 0x7B, 0x41, 0x0E, 0x01}})
            .classHelp(u"Список \"значений\"")
            .alias("TestItems___v0",
                   {0x1B7C2F13, 0x3A5D, 0x4E61, {0x9C, 0x22, 0x5D, 0x80, 0x7B, 0x41, 0x0E, 0x01}})
            .method<&TestItems::Add>("Add", {"Value", automation::optional("Before")})
            .help(u"Добавляет значение.")
            .propertyGet<&TestItems::Count>("Count")
            .propertyGet<&TestItems::Item>("Item", {"Index"})
            .defaultMember()
            .propertyPut<&TestItems::putItem>("Item", {"Index", "Value"})
            .propertyPutReference<&TestItems::putItemReference>("Item", {"Index", "Value"})
            .propertyGet<&TestItems::NewEnum>("_NewEnum")
            .enumerator()
            .method<&TestItems::Ask>("Ask", {"Question"})
            .events("__TestItems",
                    {0x1B7C2F12, 0x3A5D, 0x4E61, {0x9C, 0x22, 0x5D, 0x80, 0x7B, 0x41, 0x0E, 0x01}})
            .event("Added", kAdded,
                   {eventParameter("Value", VT_VARIANT), eventParameter("Count", VT_I4)})
            .event("Asked", kAsked,
                   {eventParameter("Question", VT_BSTR), eventParameter("Answer", VT_I4, true)})
            .build();
    });
    return table;
}

TestItems::TestItems() : AutomationObject(table()) {}

Variant& TestItems::at(std::int32_t index) {
    if (index < 1 || index > Count()) raise(error::kSubscriptOutOfRange);
    return items_[static_cast<std::size_t>(index - 1)];
}

void TestItems::Add(const Variant& value, const Variant& before) {
    auto place = items_.end();
    if (!before.isMissing()) place = items_.begin() + (&at(toLong(before)) - items_.data());
    items_.insert(place, value);
    std::array<Variant, 2> arguments{value, Variant(Count())};
    fire(kAdded, arguments);
}

std::int32_t TestItems::Ask(WStringView question) {
    Variant answer(std::int32_t{0});
    std::array<Variant, 2> arguments{Variant(WString(question)), Variant::reference(answer)};
    fire(kAsked, arguments);
    return toLong(answer);
}

}  // namespace orvane::tests
