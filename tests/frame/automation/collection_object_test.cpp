#include "frame/automation/collection_object.h"

#include "frame/values/conversions.h"
#include "host.h"
#include "support/raised_error.h"

#include <gtest/gtest.h>

namespace orvane::test {
namespace {

using automation::CollectionObject;

struct CollectionObjectTest : testing::Test {
    IDispatch* dispatch() { return reinterpret_cast<IDispatch*>(collection->defaultInterface()); }
    Variant call(const char16_t* name, std::vector<VARIANTARG> arguments = {},
                 std::int32_t* scode = nullptr) {
        const InvokeResult result =
            invoke(dispatch(), idOf(dispatch(), name), DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                   std::move(arguments));
        if (scode != nullptr) {
            *scode = result.status == S_OK ? 0 : result.scode;
        } else {
            EXPECT_EQ(result.status, S_OK);
        }
        return result.value;
    }

    Ref<CollectionObject> collection = make<CollectionObject>();
};

TEST_F(CollectionObjectTest, HostsReachItsMembersByName) {
    const HostVariant first(u"one");
    const HostVariant second(std::int32_t{2});
    const HostVariant key(u"Key");
    call(u"Add", {first.value});
    call(u"Add", {second.value, key.value});
    EXPECT_EQ(toLong(call(u"Count")), 2);
    const HostVariant place(std::int32_t{1});
    EXPECT_EQ(toText(call(u"Item", {place.value})), u"one");
    const HostVariant sought(u"KEY");
    EXPECT_EQ(toLong(call(u"Item", {sought.value})), 2);
    call(u"Remove", {place.value});
    EXPECT_EQ(toLong(call(u"Count")), 1);
}

TEST_F(CollectionObjectTest, MembersHaveTheIdentifiersOfACollection) {
    EXPECT_EQ(idOf(dispatch(), u"item"), 0);
    EXPECT_EQ(idOf(dispatch(), u"Add"), 1);
    EXPECT_EQ(idOf(dispatch(), u"Count"), 2);
    EXPECT_EQ(idOf(dispatch(), u"Remove"), 3);
    EXPECT_EQ(idOf(dispatch(), u"_NewEnum"), DISPID_NEWENUM);
}

TEST_F(CollectionObjectTest, ItemIsTheDefaultMember) {
    collection->items().add(u"one");
    EXPECT_EQ(toText(collection->asObject().defaultValue({Variant(std::int32_t{1})})), u"one");
}

TEST_F(CollectionObjectTest, WhatIsNotThereRaises) {
    collection->items().add(u"one");
    const Object object = collection->asObject();
    for (const std::int32_t place : {0, 2, -1})
        EXPECT_EQ(raisedBy([&] { object.get(u"Item", {Variant(place)}); }), 9);
    EXPECT_EQ(raisedBy([&] { object.get(u"Item", {Variant(u"none")}); }), 5);
    EXPECT_EQ(raisedBy([&] { object.call(u"Remove", {Variant(std::int32_t{2})}); }), 9);
}

TEST_F(CollectionObjectTest, ValuesComeOneByOneInTheirOrder) {
    collection->items().add(u"one");
    collection->items().add(std::int32_t{2});
    const Variant made = call(u"_NewEnum");
    const auto* unknown = made.as<Object>();
    ASSERT_NE(unknown, nullptr);
    void* found = nullptr;
    ASSERT_EQ(unknown->unknown()->QueryInterface(IID_IEnumVARIANT, &found), S_OK);
    auto* values = static_cast<IEnumVARIANT*>(found);
    HostVariant one;
    HostVariant two;
    HostVariant none;
    EXPECT_EQ(values->Next(1, &one.value, nullptr), S_OK);
    EXPECT_EQ(values->Next(1, &two.value, nullptr), S_OK);
    EXPECT_EQ(values->Next(1, &none.value, nullptr), S_FALSE);
    values->Release();
    EXPECT_EQ(toText(one.content()), u"one");
    EXPECT_EQ(toLong(two.content()), 2);
}

TEST_F(CollectionObjectTest, EnumerationKeepsTheValuesOfItsMoment) {
    collection->items().add(u"one");
    const Variant made = call(u"_NewEnum");
    collection->items().remove(std::int32_t{1});
    void* found = nullptr;
    ASSERT_EQ(made.as<Object>()->unknown()->QueryInterface(IID_IEnumVARIANT, &found), S_OK);
    HostVariant one;
    EXPECT_EQ(static_cast<IEnumVARIANT*>(found)->Next(1, &one.value, nullptr), S_OK);
    static_cast<IEnumVARIANT*>(found)->Release();
    EXPECT_EQ(toText(one.content()), u"one");
}

// The interface as form hosts call it: `Item` is the first member behind IDispatch, and every
// argument goes by its address.
TEST_F(CollectionObjectTest, EarlyBoundCallsFindTheMembersInTheirPlaces) {
    const IID known = {
        0xA4C46780, 0x499F, 0x101B, {0xBB, 0x78, 0x00, 0xAA, 0x00, 0x38, 0x3C, 0xBB}};
    void* found = collection->queryInterface(known);
    ASSERT_NE(found, nullptr);
    auto** slots = *static_cast<void***>(found);
    using Item = HRESULT(STDMETHODCALLTYPE*)(void*, VARIANT*, VARIANT*);
    using Add = HRESULT(STDMETHODCALLTYPE*)(void*, VARIANT*, VARIANT*, VARIANT*, VARIANT*);
    using Count = HRESULT(STDMETHODCALLTYPE*)(void*, LONG*);
    using Remove = HRESULT(STDMETHODCALLTYPE*)(void*, VARIANT*);
    HostVariant value(u"value");
    HostVariant place(std::int32_t{1});
    HostVariant result;
    LONG count = -1;
    EXPECT_EQ(reinterpret_cast<Add>(slots[8])(found, &value.value, nullptr, nullptr, nullptr),
              S_OK);
    EXPECT_EQ(reinterpret_cast<Count>(slots[9])(found, &count), S_OK);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(reinterpret_cast<Item>(slots[7])(found, &place.value, &result.value), S_OK);
    EXPECT_EQ(toText(result.content()), u"value");
    EXPECT_EQ(reinterpret_cast<Remove>(slots[10])(found, &place.value), S_OK);
    EXPECT_EQ(collection->Count(), 0);
    collection->release();
}

TEST_F(CollectionObjectTest, ValueThatComesByReferenceIsKeptAsItIsThen) {
    Variant variable(u"before");
    collection->Add(Variant::reference(variable), Variant::missing(), Variant::missing(),
                    Variant::missing());
    variable = u"after";
    EXPECT_EQ(toText(collection->Item(std::int32_t{1})), u"before");
}

}  // namespace
}  // namespace orvane::test
