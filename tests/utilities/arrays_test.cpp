#include "utilities/arrays.h"

#include "main/orvMain.h"
#include "support/raised_error.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <string>
#include <vector>

namespace orvane {
namespace {

using test::raisedBy;

constexpr std::int32_t kLongMax = std::numeric_limits<std::int32_t>::max();

const Variant kLeftOut = Variant::missing();

Array<Variant> argumentsFrom(std::int32_t lower, std::vector<Variant> values) {
    const auto upper = lower + (static_cast<std::int32_t>(values.size()) - 1);
    Array<Variant> list(lower, upper);
    for (std::size_t i = 0; i < values.size(); ++i) {
        list.at(lower + static_cast<std::int32_t>(i)) = values[i];
    }
    return list;
}

template <class T>
std::vector<T> elementsOf(const Array<T>& array) {
    const auto elements = array.elements();
    return {elements.begin(), elements.end()};
}

std::vector<std::u16string> textsOf(const Array<WString>& array) {
    std::vector<std::u16string> texts;
    for (const WString& text : array.elements())
        texts.push_back(text.units());
    return texts;
}

Array<std::int32_t> longs(std::int32_t lower, std::vector<std::int32_t> values) {
    const auto upper = lower + (static_cast<std::int32_t>(values.size()) - 1);
    Array<std::int32_t> array(lower, upper);
    std::ranges::copy(values, array.elements().begin());
    return array;
}

using Longs = std::vector<std::int32_t>;
using Texts = std::vector<std::u16string>;

TEST(ArrayLong, RoundsANumberAndLeavesZeroForATextThatIsNone) {
    EXPECT_EQ(elementsOf(ArrayLong(argumentsFrom(0, {u"1", 2.6, u"abc"}))), (Longs{1, 3, 0}));
}

TEST(ArrayLong, GoesOnBehindEveryKindOfFailure) {
    const Array<Variant> list = argumentsFrom(
        0, {Variant::null(), 3e9, Variant(ErrorValue{5}), Variant(Object()),
            Variant(Array<std::int32_t>(0, 1)), Variant::missing(), Variant(), true, 7});
    EXPECT_EQ(elementsOf(ArrayLong(list)), (Longs{0, 0, 0, 0, 0, 0, 0, -1, 7}));
}

TEST(ArrayLong, KeepsTheBoundsOfItsArguments) {
    const Array<std::int32_t> result = ArrayLong(argumentsFrom(-5, {1, 2, 3}));
    EXPECT_EQ(result.lowerBound(), -5);
    EXPECT_EQ(result.upperBound(), -3);
    EXPECT_EQ(elementsOf(result), (Longs{1, 2, 3}));
}

TEST(ArrayLong, ReachesTheGreatestIndex) {
    const Array<std::int32_t> result = ArrayLong(argumentsFrom(kLongMax - 1, {1, 2}));
    EXPECT_EQ(result.upperBound(), kLongMax);
    EXPECT_EQ(elementsOf(result), (Longs{1, 2}));
}

TEST(ArrayLong, OfNoArgumentsIsUnallocated) {
    EXPECT_FALSE(ArrayLong(Array<Variant>()).isAllocated());
    EXPECT_FALSE(ArrayLong(Array<Variant>::empty()).isAllocated());
}

TEST(ArrayLong, ReadsThroughReferences) {
    Variant variable(41);
    EXPECT_EQ(elementsOf(ArrayLong(argumentsFrom(0, {Variant::reference(variable)}))), (Longs{41}));
}

TEST(ArrayLong, SetsNoElementForSeveralDimensions) {
    const auto list = Array<Variant>::withBounds({Bound{1, 2}, Bound{0, 3}});
    const Array<std::int32_t> result = ArrayLong(list);
    EXPECT_EQ(result.bounds(), (std::vector<Bound>{Bound{1, 2}}));
    EXPECT_EQ(elementsOf(result), (Longs{0, 0}));
}

TEST(ArrayBSTR, ConvertsEveryValueToText) {
    const Array<Variant> list = argumentsFrom(0, {u"one", 2, 0.5, true, Variant(), u""});
    EXPECT_EQ(textsOf(ArrayBSTR(list)), (Texts{u"one", u"2", u"0.5", u"True", u"", u""}));
}

TEST(ArrayBSTR, GivesAnErrorValueTheTextOfTheConversion) {
    const auto code = static_cast<std::int32_t>(0x800A0005);
    EXPECT_EQ(textsOf(ArrayBSTR(argumentsFrom(0, {Variant(ErrorValue{code})}))),
              (Texts{u"Error 5"}));
}

TEST(ArrayBSTR, LeavesWhatHasNoTextEmptyAndGoesOn) {
    const Array<Variant> list = argumentsFrom(
        3, {Variant::null(), Variant(Object()), Variant(Array<WString>(0, 0)), u"last"});
    const Array<WString> result = ArrayBSTR(list);
    EXPECT_EQ(result.lowerBound(), 3);
    EXPECT_EQ(textsOf(result), (Texts{u"", u"", u"", u"last"}));
}

TEST(ArrayBSTR, OfNoArgumentsIsUnallocated) {
    EXPECT_FALSE(ArrayBSTR(Array<Variant>()).isAllocated());
    EXPECT_FALSE(ArrayBSTR(Array<Variant>::empty()).isAllocated());
}

TEST(ArrayMembers, TakeTheArgumentsOfALateBoundCallInTheirOrder) {
    const Object main = make<orvMain>()->asObject();
    Variant variable(u"4");
    const Variant numbers = main.call(u"ArrayLong", {u"3", 2.6, Variant::reference(variable), 1});
    ASSERT_NE(numbers.asArray<std::int32_t>(), nullptr);
    EXPECT_EQ(elementsOf(*numbers.asArray<std::int32_t>()), (Longs{3, 3, 4, 1}));
    EXPECT_EQ(numbers.asArray<std::int32_t>()->lowerBound(), 0);
    const Variant texts = main.call(u"ArrayBSTR", {u"b", 1, u"a"});
    ASSERT_NE(texts.asArray<WString>(), nullptr);
    EXPECT_EQ(textsOf(*texts.asArray<WString>()), (Texts{u"b", u"1", u"a"}));
}

TEST(ArrayMembers, GiveAnUnallocatedArrayForALateBoundCallWithoutArguments) {
    const Object main = make<orvMain>()->asObject();
    for (const char16_t* member : {u"ArrayLong", u"ArrayBSTR"}) {
        const Variant result = main.call(member);
        ASSERT_TRUE(result.isArray());
        EXPECT_FALSE(result.array()->isAllocated());
    }
}

std::int32_t find(const Array<std::int32_t>& array, const Variant& what,
                  const Variant& startAt = kLeftOut, const Variant& endAt = kLeftOut) {
    bool isFound = false;
    const std::int32_t index = InArray(array, what, startAt, endAt, isFound);
    EXPECT_EQ(IsInArray(array, what, startAt, endAt), isFound);
    EXPECT_TRUE(isFound || index == 0);
    return isFound ? index : -1000;
}
constexpr std::int32_t kNone = -1000;

TEST(InArray, WithItsStartBehindItsEndDoesNotTouchTheArray) {
    EXPECT_EQ(find(longs(0, {1, 2, 3}), 1, 2, 1), kNone);
    EXPECT_EQ(find(longs(0, {1, 2, 3}), 1, 900, 800), kNone);
    EXPECT_EQ(find(Array<std::int32_t>(), 1, 1, 0), kNone);
}

TEST(InArray, FindsTheFirstOfTwoEqualElements) {
    EXPECT_EQ(find(longs(-1, {5, 7, 7, 5}), 7), 0);
    EXPECT_EQ(find(longs(-1, {5, 7, 7, 5}), 5), -1);
}

TEST(InArray, TellsAFoundZeroFromNone) {
    bool isFound = false;
    EXPECT_EQ(InArray(longs(0, {4, 5}), 4, kLeftOut, kLeftOut, isFound), 0);
    EXPECT_TRUE(isFound);
    EXPECT_EQ(InArray(longs(0, {4, 5}), 6, kLeftOut, kLeftOut, isFound), 0);
    EXPECT_FALSE(isFound);
}

TEST(InArray, LooksFromItsStartToItsEndOnly) {
    const auto array = longs(1, {1, 2, 3, 4});
    EXPECT_EQ(find(array, 1, 2), kNone);
    EXPECT_EQ(find(array, 4, kLeftOut, 3), kNone);
    EXPECT_EQ(find(array, 3, 3, 3), 3);
    EXPECT_EQ(find(array, 3, u"2", 2.6), 3) << "bounds are converted";
}

TEST(InArray, ComparesAsVariantsDo) {
    const auto array = longs(0, {0, -1, 10});
    EXPECT_EQ(find(array, u"10"), 2);
    EXPECT_EQ(find(array, u" 1e1 "), 2);
    EXPECT_EQ(find(array, u"ten"), kNone);
    EXPECT_EQ(find(array, 10.0), 2);
    EXPECT_EQ(find(array, 10.5), kNone);
    EXPECT_EQ(find(array, true), 1);
    EXPECT_EQ(find(array, Variant()), 0);
    EXPECT_EQ(find(array, Variant::null()), kNone);
}

TEST(InArray, RaisesWhatTheComparisonRaises) {
    bool isFound = true;
    const auto array = longs(0, {1});
    for (const Variant& what : {Variant(ErrorValue{1}), Variant(Array<std::int32_t>(0, 0))}) {
        EXPECT_EQ(raisedBy([&] { InArray(array, what, kLeftOut, kLeftOut, isFound); }),
                  error::kTypeMismatch);
        EXPECT_FALSE(isFound);
    }
}

TEST(InArray, RaisesSubscriptOutOfRangeWhenItLeavesTheArray) {
    const auto array = longs(1, {1, 2, 3});
    EXPECT_EQ(raisedBy([&] { find(array, 9, 0); }), error::kSubscriptOutOfRange);
    EXPECT_EQ(raisedBy([&] { find(array, 9, 1, 4); }), error::kSubscriptOutOfRange);
    EXPECT_EQ(find(array, 3, 1, 4), 3) << "found before it gets there";
}

TEST(InArray, RaisesSubscriptOutOfRangeForAnUnallocatedArray) {
    const Array<std::int32_t> none;
    EXPECT_EQ(raisedBy([&] { find(none, 1); }), error::kSubscriptOutOfRange);
    EXPECT_EQ(raisedBy([&] { find(none, 1, 0, 0); }), error::kSubscriptOutOfRange);
    EXPECT_EQ(raisedBy([&] { find(none, 1, 5); }), error::kSubscriptOutOfRange);
}

TEST(InArray, RaisesTheConversionsErrorForABound) {
    const auto array = longs(0, {1});
    EXPECT_EQ(raisedBy([&] { find(array, 1, u"x"); }), error::kTypeMismatch);
    EXPECT_EQ(raisedBy([&] { find(array, 1, 0, 3e9); }), error::kOverflow);
    EXPECT_EQ(raisedBy([&] { find(array, 1, Variant::null()); }), error::kInvalidUseOfNull);
}

TEST(InArray, EndsAtTheGreatestIndex) {
    EXPECT_EQ(find(longs(kLongMax - 1, {1, 2}), 2), kLongMax);
    EXPECT_EQ(find(longs(kLongMax - 1, {1, 2}), 3), kNone);
}

TEST(InArray, GivesALateBoundCallerTheFlagByReference) {
    const Object main = make<orvMain>()->asObject();
    Variant array(longs(0, {5, 6}));
    Variant isFound(false);
    const Variant index = main.call(u"InArray", {Variant::reference(array), 6, Variant::missing(),
                                                 Variant::missing(), Variant::reference(isFound)});
    EXPECT_EQ(*index.as<std::int32_t>(), 1);
    EXPECT_TRUE(*isFound.as<bool>());
    EXPECT_EQ(raisedBy([&] {
                  main.call(u"InArray",
                            {Variant::reference(array), 7, 0, 2, Variant::reference(isFound)});
              }),
              error::kSubscriptOutOfRange);
    EXPECT_FALSE(*isFound.as<bool>()) << "cleared before the failure";
    EXPECT_TRUE(*main.call(u"IsInArray", {Variant::reference(array), u"5"}).as<bool>());
    EXPECT_FALSE(*main.call(u"IsInArray", {Variant::reference(array), u"5", 1}).as<bool>());
}

}  // namespace
}  // namespace orvane
