#include "frame/automation/collection_object.h"

#include "frame/automation/describe.h"

namespace orvane::automation {

const ClassTable& CollectionObject::table() {
    static const ClassTable& table = automation::classTable([] {
        return ClassBuilder<CollectionObject>(
                   "Collection", Instancing::internal,
                   {0xA4C4671C, 0x499F, 0x101B, {0xBB, 0x78, 0x00, 0xAA, 0x00, 0x38, 0x3C, 0xBB}},
                   {0xA4C46780, 0x499F, 0x101B, {0xBB, 0x78, 0x00, 0xAA, 0x00, 0x38, 0x3C, 0xBB}})
            .method<&CollectionObject::itemByReference>("Item", {"Index"})
            .defaultMember()
            .method<&CollectionObject::addByReference>(
                "Add", {"Item", optional("Key"), optional("Before"), optional("After")})
            .id(1)
            .method<&CollectionObject::Count>("Count")
            .id(2)
            .method<&CollectionObject::removeByReference>("Remove", {"Index"})
            .id(3)
            .method<&CollectionObject::NewEnum>("_NewEnum")
            .enumerator()
            .build();
    });
    return table;
}

CollectionObject::CollectionObject() : AutomationObject(table()) {}

CollectionObject::CollectionObject(Collection collection)
    : AutomationObject(table()), items_(std::move(collection)) {}

void CollectionObject::Add(const Variant& item, const Variant& key, const Variant& before,
                           const Variant& after) {
    items_.add(item.value(), key, before, after);
}

Enumeration CollectionObject::NewEnum() {
    std::vector<Variant> values;
    values.reserve(static_cast<std::size_t>(items_.count()));
    for (std::int32_t place = 1; place <= items_.count(); ++place)
        values.push_back(items_.item(place));
    return newEnumeration(std::move(values));
}

}  // namespace orvane::automation
