#include "frame/values/compare.h"

#include "support/raised_error.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvane {
namespace {

using test::raisedBy;
using Order = std::partial_ordering;

/// The order of two values; the opposite order is checked along the way.
Order order(const Variant& left, const Variant& right) {
    const auto there = compareVariants(left, right);
    const auto back = compareVariants(right, left);
    EXPECT_TRUE(there && back);
    EXPECT_TRUE(*there == (0 <=> *back));
    return *there;
}

TEST(CompareVariants, NumbersOfAllTagsByValue) {
    const Variant threes[] = {std::uint8_t{3}, std::int16_t{3}, 3, 3.0F, 3.0,
                              Currency{30000}, Date{3}};
    for (const Variant& first : threes) {
        for (const Variant& second : threes)
            EXPECT_EQ(order(first, second), Order::equivalent);
        EXPECT_EQ(order(first, 4), Order::less);
        EXPECT_EQ(order(first, 2.5), Order::greater);
        EXPECT_EQ(order(first, Currency{30001}), Order::less);
    }
    EXPECT_EQ(order(INT32_MIN, INT32_MAX), Order::less);
}

TEST(CompareVariants, BooleansCountMinus1And0) {
    EXPECT_EQ(order(true, -1), Order::equivalent);
    EXPECT_EQ(order(true, false), Order::less);
    EXPECT_EQ(order(false, 0.0), Order::equivalent);
}

TEST(CompareVariants, CurrencyExactly) {
    EXPECT_EQ(order(Currency{INT64_MAX}, Currency{INT64_MAX - 1}), Order::greater);
    EXPECT_EQ(order(Currency{1}, 0), Order::greater);
    EXPECT_EQ(order(Currency{1000}, 0.1), Order::equivalent);
    EXPECT_EQ(order(Currency{1000}, u"0.1"), Order::equivalent);
}

TEST(CompareVariants, TextsByUnits) {
    EXPECT_EQ(order(u"Z", u"a"), Order::less);
    EXPECT_EQ(order(u"10", u"9"), Order::less);
    EXPECT_EQ(order(u"a", u"a"), Order::equivalent);
    EXPECT_EQ(order(WString(), u""), Order::equivalent);
}

TEST(CompareVariants, TextThatIsANumberComparesAsThatNumber) {
    EXPECT_EQ(order(10, u" 10 "), Order::equivalent);
    EXPECT_EQ(order(9, u"10"), Order::less);
    EXPECT_EQ(order(16, u"&H10"), Order::equivalent);
    EXPECT_EQ(order(2.5, u"2.5"), Order::equivalent);
    EXPECT_EQ(order(true, u"-1"), Order::equivalent);
}

TEST(CompareVariants, OtherTextIsGreaterThanAnyNumber) {
    EXPECT_EQ(order(INT32_MAX, u"abc"), Order::less);
    EXPECT_EQ(order(0, u""), Order::less);
    EXPECT_EQ(order(true, u"True"), Order::less);
    EXPECT_EQ(order(1e308, u"1E999"), Order::less);
}

TEST(CompareVariants, EmptyEquals0AndAnEmptyText) {
    EXPECT_EQ(order(Variant(), Variant()), Order::equivalent);
    EXPECT_EQ(order(Variant(), 0), Order::equivalent);
    EXPECT_EQ(order(Variant(), false), Order::equivalent);
    EXPECT_EQ(order(Variant(), Currency{-1}), Order::greater);
    EXPECT_EQ(order(Variant(), u""), Order::equivalent);
    EXPECT_EQ(order(Variant(), u"0"), Order::less);
    EXPECT_EQ(order(Variant(), 1.5), Order::less);
}

TEST(CompareVariants, NullGivesNoOrder) {
    EXPECT_EQ(compareVariants(Variant::null(), 1), std::nullopt);
    EXPECT_EQ(compareVariants(u"a", Variant::null()), std::nullopt);
    EXPECT_EQ(compareVariants(Variant::null(), Variant::null()), std::nullopt);
}

TEST(CompareVariants, ErrorValuesByCodeAndWithNothingElse) {
    EXPECT_EQ(order(ErrorValue{5}, ErrorValue{5}), Order::equivalent);
    EXPECT_EQ(order(ErrorValue{5}, ErrorValue{6}), Order::less);
    EXPECT_EQ(raisedBy([] { compareVariants(ErrorValue{5}, 5); }), 13);
    EXPECT_EQ(raisedBy([] { compareVariants(u"a", ErrorValue{5}); }), 13);
    EXPECT_EQ(raisedBy([] { compareVariants(ErrorValue{5}, Variant::null()); }), 13);
}

TEST(CompareVariants, ArraysRaise13) {
    const Variant array(Array<std::int32_t>(0, 1));
    EXPECT_EQ(raisedBy([&] { compareVariants(array, array); }), 13);
    EXPECT_EQ(raisedBy([&] { compareVariants(1, array); }), 13);
}

TEST(CompareVariants, NothingRaises91) {
    EXPECT_EQ(raisedBy([] { compareVariants(Object(), 1); }), 91);
    EXPECT_EQ(raisedBy([] { compareVariants(1, Object()); }), 91);
}

TEST(CompareVariants, ReferencesAreReadThrough) {
    Variant number(5);
    Variant text(u"five");
    EXPECT_EQ(order(Variant::reference(number), 5), Order::equivalent);
    EXPECT_EQ(order(Variant::reference(text), u"five"), Order::equivalent);
    EXPECT_EQ(order(Variant::reference(text), Variant::reference(number)), Order::greater);
}

TEST(CompareVariants, WhatIsNoNumberIsUnordered) {
    const Variant noNumber(std::numeric_limits<double>::quiet_NaN());
    EXPECT_EQ(compareVariants(noNumber, 1), Order::unordered);
    EXPECT_FALSE(isEqual(noNumber, noNumber));
    EXPECT_FALSE(isLessEqual(noNumber, 1));
    EXPECT_TRUE(conditionHolds(variantNotEquals(noNumber, noNumber)));
}

TEST(ComparisonOperators, GiveTrueFalseOrNull) {
    EXPECT_EQ(*variantEquals(1, 1.0).as<bool>(), true);
    EXPECT_EQ(*variantEquals(1, 2).as<bool>(), false);
    EXPECT_EQ(*variantNotEquals(1, 2).as<bool>(), true);
    EXPECT_EQ(*variantLess(1, 2).as<bool>(), true);
    EXPECT_EQ(*variantLess(2, 2).as<bool>(), false);
    EXPECT_EQ(*variantLessEqual(2, 2).as<bool>(), true);
    EXPECT_EQ(*variantGreater(2, 2).as<bool>(), false);
    EXPECT_EQ(*variantGreaterEqual(2, 2).as<bool>(), true);
    for (const auto compare : {variantEquals, variantNotEquals, variantLess, variantLessEqual,
                               variantGreater, variantGreaterEqual}) {
        EXPECT_EQ(compare(1, Variant::null()).type(), VarType::Null);
    }
}

TEST(Conditions, NullCountsAsFalse) {
    EXPECT_TRUE(isEqual(1, u"1"));
    EXPECT_TRUE(isLess(1, 2));
    EXPECT_TRUE(isLessEqual(2, 2));
    EXPECT_TRUE(isGreater(3, 2));
    EXPECT_TRUE(isGreaterEqual(2, 2));
    for (const auto compare : {isEqual, isLess, isLessEqual, isGreater, isGreaterEqual}) {
        EXPECT_FALSE(compare(1, Variant::null()));
        EXPECT_FALSE(compare(Variant::null(), Variant::null()));
    }
    EXPECT_FALSE(conditionHolds(Variant::null()));
    EXPECT_TRUE(conditionHolds(2));
    EXPECT_FALSE(conditionHolds(Variant()));
}

TEST(AndValues, KeepsTheNarrowestTypeOfBoth) {
    EXPECT_EQ(*andValues(true, false).as<bool>(), false);
    EXPECT_EQ(*andValues(true, true).as<bool>(), true);
    EXPECT_EQ(*andValues(std::uint8_t{6}, std::uint8_t{3}).as<std::uint8_t>(), 2);
    EXPECT_EQ(*andValues(true, std::uint8_t{3}).as<std::int16_t>(), 3);
    EXPECT_EQ(*andValues(std::int16_t{6}, true).as<std::int16_t>(), 6);
    EXPECT_EQ(*andValues(Variant(), std::int16_t{6}).as<std::int16_t>(), 0);
    EXPECT_EQ(*andValues(6, std::int16_t{3}).as<std::int32_t>(), 2);
    EXPECT_EQ(*andValues(6.4, u"3").as<std::int32_t>(), 2);
    EXPECT_EQ(*andValues(u"True", true).as<bool>(), true);
    EXPECT_EQ(*andValues(-1, 0x12345678).as<std::int32_t>(), 0x12345678);
}

TEST(AndValues, NullIsFalseOnlyWithFalse) {
    EXPECT_EQ(*andValues(Variant::null(), false).as<bool>(), false);
    EXPECT_EQ(*andValues(false, Variant::null()).as<bool>(), false);
    EXPECT_EQ(*andValues(Variant::null(), 0).as<std::int32_t>(), 0);
    EXPECT_EQ(andValues(Variant::null(), true).type(), VarType::Null);
    EXPECT_EQ(andValues(5, Variant::null()).type(), VarType::Null);
    EXPECT_EQ(andValues(Variant::null(), Variant::null()).type(), VarType::Null);
}

TEST(AndValues, RaisesTheErrorsOfTheConversion) {
    EXPECT_EQ(raisedBy([] { andValues(u"x", 1); }), 13);
    EXPECT_EQ(raisedBy([] { andValues(1, ErrorValue{1}); }), 13);
    EXPECT_EQ(raisedBy([] { andValues(Variant(Array<bool>(0, 1)), 1); }), 13);
    EXPECT_EQ(raisedBy([] { andValues(1, 1e10); }), 6);
    EXPECT_EQ(raisedBy([] { andValues(1, Object()); }), 91);
}

}  // namespace
}  // namespace orvane
