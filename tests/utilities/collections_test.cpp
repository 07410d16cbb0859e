#include "utilities/collections.h"

#include "fake_collection.h"
#include "main/orvMain.h"
#include "support/raised_error.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvane {
namespace {

using test::FakeCollection;
using test::raisedBy;

using Requests = std::vector<std::string>;

const Variant kLeftOut = Variant::missing();
constexpr std::int32_t kNone = -1000;

std::int32_t find(const Object& collection, const Variant& what, const Variant& startAt = kLeftOut,
                  const Variant& endAt = kLeftOut) {
    bool isFound = true;
    const std::int32_t position = InCollection(collection, what, startAt, endAt, isFound);
    EXPECT_EQ(IsInCollection(collection, what, startAt, endAt), isFound);
    EXPECT_TRUE(isFound || position == 0);
    return isFound ? position : kNone;
}

/// An object without a default value.
Object plainObject() {
    return make<orvMain>()->asObject();
}

TEST(InCollection, OfNoItemsFindsNothing) {
    FakeCollection empty({});
    EXPECT_EQ(find(empty.object(), 1), kNone);
}

TEST(InCollection, FindsTheFirstEqualItem) {
    FakeCollection items({u"a", 2, u"2", u"b"});
    EXPECT_EQ(find(items.object(), u"2"), 2);
    EXPECT_EQ(find(items.object(), u"b"), 4);
    EXPECT_EQ(find(items.object(), u"B"), kNone) << "texts compare by units";
    EXPECT_EQ(find(items.object(), Variant::null()), kNone);
}

TEST(InCollection, AsksForTheCountOnceAndForItemsUpToTheOneFound) {
    FakeCollection items({1, 2, 3});
    bool isFound = false;
    EXPECT_EQ(InCollection(items.object(), 2, kLeftOut, kLeftOut, isFound), 2);
    EXPECT_EQ(items.requests, (Requests{"Count", "Item 1", "Item 2"}));
    EXPECT_EQ(items.references(), 0U);
}

TEST(InCollection, LooksFromItsStartToItsEndOnly) {
    FakeCollection items({1, 2, 3});
    EXPECT_EQ(find(items.object(), 1, 2), kNone);
    EXPECT_EQ(find(items.object(), 3, kLeftOut, u"2"), kNone);
    items.requests.clear();
    EXPECT_EQ(find(items.object(), 1, 3, 2), kNone);
    EXPECT_EQ(items.requests, Requests()) << "nothing is asked for";
}

TEST(InCollection, RaisesTheCollectionsErrorForAnIndexPastTheEnd) {
    FakeCollection items({1, 2});
    EXPECT_EQ(raisedBy([&] { find(items.object(), 9, 1, 3); }), error::kSubscriptOutOfRange);
    EXPECT_EQ(raisedBy([&] { find(items.object(), 9, 0); }), error::kSubscriptOutOfRange);
    EXPECT_EQ(find(items.object(), 2, 1, 3), 2) << "found before it gets there";
}

TEST(InCollection, RaisesWhatTheComparisonWithAnObjectRaises) {
    FakeCollection items({1, Variant(plainObject()), 3});
    EXPECT_EQ(find(items.object(), 1), 1);
    EXPECT_EQ(raisedBy([&] { find(items.object(), 3); }), error::kNoSuchMember);
    EXPECT_EQ(find(items.object(), 3, 3), 3);
    FakeCollection nothing({Variant(Object())});
    EXPECT_EQ(raisedBy([&] { find(nothing.object(), 3); }), error::kObjectNotSet);
    FakeCollection failed({Variant(ErrorValue{5})});
    EXPECT_EQ(raisedBy([&] { find(failed.object(), 3); }), error::kTypeMismatch);
}

TEST(InCollection, RaisesWhatTheCollectionRaises) {
    FakeCollection items({1, 2, 3});
    items.failingItem = 2;
    EXPECT_EQ(raisedBy([&] { find(items.object(), 3); }), error::kPermissionDenied);
    items.countFails = true;
    EXPECT_EQ(raisedBy([&] { find(items.object(), 1); }), error::kPermissionDenied);
    EXPECT_EQ(find(items.object(), 1, 1, 1), 1) << "the count isn't asked for";
    EXPECT_EQ(raisedBy([] { find(Object(), 1); }), error::kObjectNotSet);
}

TEST(InCollection, RaisesNoSuchMemberForAnObjectThatIsNoCollection) {
    const Object main = make<orvMain>()->asObject();
    EXPECT_EQ(raisedBy([&] { find(main, 1); }), error::kNoSuchMember);
}

TEST(InCollection, WorksLateBoundWithTheFlagByReference) {
    const Object main = make<orvMain>()->asObject();
    FakeCollection items({u"a", u"b"});
    Variant isFound(false);
    const Variant position = main.call(u"InCollection", {Variant(items.object()), u"b", kLeftOut,
                                                         kLeftOut, Variant::reference(isFound)});
    EXPECT_EQ(*position.as<std::int32_t>(), 2);
    EXPECT_TRUE(*isFound.as<bool>());
    EXPECT_TRUE(*main.call(u"IsInCollection", {Variant(items.object()), u"a"}).as<bool>());
    EXPECT_FALSE(*main.call(u"IsInCollection", {Variant(items.object()), u"a", 2}).as<bool>());
}

TEST(JoinCollection, OfNoItemsIsEmpty) {
    FakeCollection empty({});
    EXPECT_EQ(JoinCollection(empty.object(), u", ", false), u"");
    EXPECT_EQ(JoinCollection(empty.object(), u", ", true), u"");
}

TEST(JoinCollection, OfASingleItemHasNoDelimiter) {
    FakeCollection one({u"one"});
    EXPECT_EQ(JoinCollection(one.object(), u", ", false), u"one");
}

TEST(JoinCollection, ConvertsItemsToText) {
    FakeCollection items({u"a", 2, 0.5, false, Variant()});
    EXPECT_EQ(JoinCollection(items.object(), u"; ", true), u"a; 2; 0.5; False; ");
    EXPECT_EQ(JoinCollection(items.object(), u"", true), u"a20.5False");
}

TEST(JoinCollection, TakesAnErrorValueAsText) {
    const auto code = static_cast<std::int32_t>(0x800A000D);
    FakeCollection items({u"a", Variant(ErrorValue{code}), u"b"});
    EXPECT_EQ(JoinCollection(items.object(), u",", true), u"a,Error 13,b");
}

TEST(JoinCollection, KeepsTheDelimiterOfAnItemThatFails) {
    FakeCollection items({Variant::null(), u"a", Variant(plainObject()), Variant(Object()), u"b",
                          Variant(Array<std::int32_t>(0, 0))});
    EXPECT_EQ(JoinCollection(items.object(), u",", false), u",a,,,b,");
    items.failingItem = 2;
    EXPECT_EQ(JoinCollection(items.object(), u",", false), u",,,,b,");
}

TEST(JoinCollection, RaisesTheFirstFailureOnRequest) {
    FakeCollection items({u"a", Variant::null(), Variant(Array<std::int32_t>(0, 0))});
    EXPECT_EQ(raisedBy([&] { JoinCollection(items.object(), u",", true); }),
              error::kInvalidUseOfNull);
    EXPECT_EQ(items.requests, (Requests{"Count", "Item 1", "Item 2"}));
    items.failingItem = 1;
    EXPECT_EQ(raisedBy([&] { JoinCollection(items.object(), u",", true); }),
              error::kPermissionDenied);
    EXPECT_EQ(raisedBy([] { JoinCollection(Object(), u",", true); }), error::kObjectNotSet);
}

TEST(JoinCollection, IsEmptyWithoutACountWhenErrorsAreIgnored) {
    FakeCollection items({u"a"});
    items.countFails = true;
    EXPECT_EQ(JoinCollection(items.object(), u",", false), u"");
    EXPECT_EQ(JoinCollection(Object(), u",", false), u"");
    EXPECT_EQ(JoinCollection(plainObject(), u",", false), u"");
    EXPECT_EQ(raisedBy([&] { JoinCollection(items.object(), u",", true); }),
              error::kPermissionDenied);
}

TEST(JoinCollection, IgnoresErrorsUnlessALateBoundCallerAsksForThem) {
    const Object main = make<orvMain>()->asObject();
    FakeCollection items({u"a", Variant::null(), u"b"});
    EXPECT_EQ(*main.call(u"JoinCollection", {Variant(items.object()), u"-"}).as<WString>(),
              u"a--b");
    EXPECT_EQ(raisedBy([&] {
                  main.call(u"JoinCollection", {Variant(items.object()), u"-", true});
              }),
              error::kInvalidUseOfNull);
    EXPECT_EQ(items.references(), 0U);
}

}  // namespace
}  // namespace orvane
