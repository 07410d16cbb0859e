#include "frame/values/collection.h"

#include "frame/values/conversions.h"
#include "frame/values/text.h"
#include "support/raised_error.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

using test::raisedBy;

std::u16string joined(const Collection& collection) {
    std::u16string text;
    for (std::int32_t i = 1; i <= collection.count(); ++i)
        text += toText(collection.item(i)).units();
    return text;
}

Collection letters() {
    Collection collection;
    collection.add(u"a", u"first");
    collection.add(u"b");
    collection.add(u"c", u"last");
    return collection;
}

TEST(Collection, CountsFrom1InTheOrderOfAdding) {
    const Collection collection = letters();
    EXPECT_EQ(collection.count(), 3);
    EXPECT_EQ(joined(collection), u"abc");
    EXPECT_EQ(Collection().count(), 0);
}

TEST(Collection, ItemOnIndex0Raises9) {
    const Collection collection = letters();
    EXPECT_EQ(raisedBy([&] { collection.item(0); }), 9);
}

TEST(Collection, NumberOutOfRangeRaises9) {
    Collection collection = letters();
    EXPECT_EQ(raisedBy([&] { collection.item(4); }), 9);
    EXPECT_EQ(raisedBy([&] { collection.item(-1); }), 9);
    EXPECT_EQ(raisedBy([&] { collection.item(Variant()); }), 9);
    EXPECT_EQ(raisedBy([&] { collection.remove(4); }), 9);
    EXPECT_EQ(raisedBy([&] { collection.add(1, Variant::missing(), 4); }), 9);
    EXPECT_EQ(raisedBy([] { Collection().item(1); }), 9);
}

TEST(Collection, UnknownKeyRaises5) {
    Collection collection = letters();
    EXPECT_EQ(raisedBy([&] { collection.item(u"none"); }), 5);
    EXPECT_EQ(raisedBy([&] { collection.remove(u"none"); }), 5);
    EXPECT_EQ(raisedBy([&] { collection.add(1, Variant::missing(), u"none"); }), 5);
    EXPECT_EQ(raisedBy([&] { collection.item(u"1"); }), 5);
}

TEST(Collection, IndexIsConvertedToANumber) {
    const Collection collection = letters();
    EXPECT_EQ(toText(collection.item(Variant(2.4))), u"b");
    EXPECT_EQ(toText(collection.item(Variant(std::int16_t{3}))), u"c");
    EXPECT_EQ(raisedBy([&] { collection.item(Variant::null()); }), 94);
    EXPECT_EQ(raisedBy([&] { collection.item(Variant::missing()); }), 13);
}

TEST(Collection, KeysHaveNoCase) {
    const Collection collection = letters();
    EXPECT_EQ(toText(collection.item(u"FIRST")), u"a");
    EXPECT_TRUE(collection.hasKey(u"Last"));
    EXPECT_FALSE(collection.hasKey(u"b"));
    Collection cyrillic;
    cyrillic.add(1, u"Ключ");
    EXPECT_EQ(toLong(cyrillic.item(u"кЛЮЧ")), 1);
}

TEST(Collection, KeyInUseRaises457AndChangesNothing) {
    Collection collection = letters();
    EXPECT_EQ(raisedBy([&] { collection.add(u"x", u"First"); }), 457);
    EXPECT_EQ(joined(collection), u"abc");
    collection.remove(u"first");
    collection.add(u"x", u"First");
    EXPECT_EQ(joined(collection), u"bcx");
}

TEST(Collection, KeyThatIsNoTextRaises13) {
    Collection collection;
    EXPECT_EQ(raisedBy([&] { collection.add(1, 5); }), 13);
    EXPECT_EQ(collection.count(), 0);
}

TEST(Collection, AddsBeforeAndAfter) {
    Collection collection = letters();
    collection.add(u"1", Variant::missing(), 1);
    collection.add(u"2", Variant::missing(), u"last");
    collection.add(u"3", Variant::missing(), Variant::missing(), 1);
    collection.add(u"4", u"end", Variant::missing(), u"last");
    EXPECT_EQ(joined(collection), u"13ab2c4");
    EXPECT_EQ(toText(collection.item(u"first")), u"a");
    EXPECT_EQ(toText(collection.item(u"end")), u"4");
}

TEST(Collection, BothPlacesAtOnceRaise5) {
    Collection collection = letters();
    EXPECT_EQ(raisedBy([&] { collection.add(1, Variant::missing(), 1, 1); }), 5);
    EXPECT_EQ(collection.count(), 3);
}

TEST(Collection, RemovesByNumberAndByKey) {
    Collection collection = letters();
    collection.remove(2);
    EXPECT_EQ(joined(collection), u"ac");
    collection.remove(u"LAST");
    EXPECT_EQ(joined(collection), u"a");
    EXPECT_FALSE(collection.hasKey(u"last"));
    collection.remove(1);
    EXPECT_EQ(collection.count(), 0);
    EXPECT_FALSE(collection.hasKey(u"first"));
}

TEST(Collection, HoldsTheValueOfAReference) {
    Variant variable(1);
    Variant key(u"k");
    Collection collection;
    collection.add(Variant::reference(variable), Variant::reference(key));
    variable = 2;
    EXPECT_EQ(toLong(collection.item(u"k")), 1);
    EXPECT_EQ(toLong(collection.item(Variant::reference(key))), 1);
    EXPECT_FALSE(collection.item(1).isReference());
}

TEST(Collection, KeepsKeysAndOrderInStepWhenItIsBig) {
    constexpr std::int32_t kCount = 20000;
    Collection collection;
    for (std::int32_t i = 1; i <= kCount; ++i)
        collection.add(i, longToText(i));
    for (std::int32_t i = 1; i <= kCount; i += 2)
        collection.remove(longToText(i));
    ASSERT_EQ(collection.count(), kCount / 2);
    for (std::int32_t i = 1; i <= kCount / 2; ++i) {
        ASSERT_EQ(toLong(collection.item(i)), 2 * i);
        ASSERT_EQ(toLong(collection.item(longToText(2 * i))), 2 * i);
    }
}

}  // namespace
}  // namespace orvane
