#include "frame/values/conversions.h"

#include "support/raised_error.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace orvane {
namespace {

using test::raisedBy;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kNoNumber = std::numeric_limits<double>::quiet_NaN();

/// One value of every tag that is a number or reads as one; all of them are worth 3.
const Variant kThrees[] = {
    Variant(std::uint8_t{3}), Variant(std::int16_t{3}), Variant(3),    Variant(3.0F), Variant(3.0),
    Variant(Currency{30000}), Variant(Date{3}),         Variant(u"3"),
};

TEST(RoundHalfEven, GoesToTheEvenNeighbour) {
    EXPECT_EQ(roundHalfEven(0.5), 0);
    EXPECT_EQ(roundHalfEven(1.5), 2);
    EXPECT_EQ(roundHalfEven(2.5), 2);
    EXPECT_EQ(roundHalfEven(-0.5), 0);
    EXPECT_EQ(roundHalfEven(-1.5), -2);
    EXPECT_EQ(roundHalfEven(-2.5), -2);
    EXPECT_EQ(roundHalfEven(2.4999999999999996), 2);
    EXPECT_EQ(roundHalfEven(2.5000000000000004), 3);
    EXPECT_EQ(roundHalfEven(0.49999999999999994), 0);
    EXPECT_EQ(roundHalfEven(4503599627370495.5), 4503599627370496);
    EXPECT_EQ(roundHalfEven(1e300), 1e300);
}

TEST(DoubleToWhole, ReachesTheBoundsOfEachType) {
    EXPECT_EQ(doubleToLong(2147483647.4), INT32_MAX);
    EXPECT_EQ(doubleToLong(-2147483648.5), INT32_MIN);
    EXPECT_EQ(doubleToInteger(32767.4), INT16_MAX);
    EXPECT_EQ(doubleToInteger(-32768.5), INT16_MIN);
    EXPECT_EQ(doubleToByte(255.4), 255);
    EXPECT_EQ(doubleToByte(-0.5), 0);
}

TEST(DoubleToWhole, OutsideTheRangeRaises6) {
    EXPECT_EQ(raisedBy([] { doubleToLong(2147483647.5); }), 6);
    EXPECT_EQ(raisedBy([] { doubleToLong(-2147483648.6); }), 6);
    EXPECT_EQ(raisedBy([] { doubleToInteger(32767.5); }), 6);
    EXPECT_EQ(raisedBy([] { doubleToInteger(-32769); }), 6);
    EXPECT_EQ(raisedBy([] { doubleToByte(255.5); }), 6);
    EXPECT_EQ(raisedBy([] { doubleToByte(-0.6); }), 6);
    for (const double value : {kInfinity, -kInfinity, kNoNumber}) {
        EXPECT_EQ(raisedBy([&] { doubleToLong(value); }), 6);
        EXPECT_EQ(raisedBy([&] { doubleToCurrency(value); }), 6);
    }
}

TEST(DoubleToCurrency, RoundsToTheFourthDecimal) {
    EXPECT_EQ(doubleToCurrency(1.23456).scaled, 12346);
    EXPECT_EQ(doubleToCurrency(-0.1).scaled, -1000);
    EXPECT_EQ(doubleToCurrency(-922337203685477.5808).scaled, INT64_MIN);
    EXPECT_EQ(raisedBy([] { doubleToCurrency(922337203685477.5808); }), 6);
    EXPECT_EQ(raisedBy([] { doubleToCurrency(1e300); }), 6);
}

TEST(Conversions, ReadEveryTagAsEveryNumber) {
    for (const Variant& three : kThrees) {
        SCOPED_TRACE(static_cast<int>(three.type()));
        EXPECT_EQ(toByte(three), 3);
        EXPECT_EQ(toInteger(three), 3);
        EXPECT_EQ(toLong(three), 3);
        EXPECT_EQ(toSingle(three), 3.0F);
        EXPECT_EQ(toDouble(three), 3.0);
        EXPECT_EQ(toCurrency(three).scaled, 30000);
        EXPECT_EQ(toDate(three).days, 3);
        EXPECT_TRUE(toBoolean(three));
    }
}

TEST(Conversions, TrueIsMinus1InEveryNumericView) {
    EXPECT_EQ(toInteger(true), -1);
    EXPECT_EQ(toLong(true), -1);
    EXPECT_EQ(toSingle(true), -1.0F);
    EXPECT_EQ(toDouble(true), -1.0);
    EXPECT_EQ(toCurrency(true).scaled, -10000);
    EXPECT_EQ(toDate(true).days, -1);
    EXPECT_EQ(toLong(false), 0);
    EXPECT_EQ(raisedBy([] { toByte(true); }), 6);
    EXPECT_EQ(toText(true), u"True");
}

TEST(Conversions, AnyNumberButZeroIsTrue) {
    EXPECT_TRUE(toBoolean(2));
    EXPECT_TRUE(toBoolean(0.1));
    EXPECT_TRUE(toBoolean(Currency{1}));
    EXPECT_FALSE(toBoolean(0.0));
    EXPECT_FALSE(toBoolean(Currency{0}));
    EXPECT_FALSE(toBoolean(Variant()));
    EXPECT_FALSE(toBoolean(u"False"));
}

TEST(Conversions, EmptyIsZeroAndAnEmptyText) {
    EXPECT_EQ(toLong(Variant()), 0);
    EXPECT_EQ(toDouble(Variant()), 0);
    EXPECT_EQ(toDate(Variant()).days, 0);
    EXPECT_EQ(toText(Variant()), u"");
}

TEST(Conversions, RoundFractionsToTheEvenNeighbour) {
    EXPECT_EQ(toLong(2.5), 2);
    EXPECT_EQ(toInteger(3.5F), 4);
    EXPECT_EQ(toLong(Currency{25000}), 2);
    EXPECT_EQ(toLong(Currency{35000}), 4);
    EXPECT_EQ(toLong(Currency{-25000}), -2);
    EXPECT_EQ(toLong(Currency{-25001}), -3);
    EXPECT_EQ(toByte(Currency{2554999}), 255);
    EXPECT_EQ(toLong(Date{1.5}), 2);
}

TEST(Conversions, OutsideTheRangeRaises6) {
    EXPECT_EQ(raisedBy([] { toInteger(32768); }), 6);
    EXPECT_EQ(raisedBy([] { toByte(-1); }), 6);
    EXPECT_EQ(raisedBy([] { toLong(3e9); }), 6);
    EXPECT_EQ(raisedBy([] { toLong(Currency{INT64_MAX}); }), 6);
    EXPECT_EQ(raisedBy([] { toLong(Currency{21474836475000}); }), 6);
    EXPECT_EQ(raisedBy([] { toSingle(1e39); }), 6);
    EXPECT_EQ(raisedBy([] { toSingle(Variant(kNoNumber)); }), 6);
    EXPECT_EQ(raisedBy([] { toDate(3e6); }), 6);
    EXPECT_EQ(raisedBy([] { toLong(u"3000000000"); }), 6);
}

TEST(Conversions, NullRaises94) {
    EXPECT_EQ(raisedBy([] { toLong(Variant::null()); }), 94);
    EXPECT_EQ(raisedBy([] { toText(Variant::null()); }), 94);
    EXPECT_EQ(raisedBy([] { toBoolean(Variant::null()); }), 94);
    EXPECT_EQ(convertTo<Variant>(Variant::null()).type(), VarType::Null);
}

TEST(Conversions, ErrorValuesAndArraysAreNoNumbers) {
    const Variant array(Array<std::int32_t>(0, 1));
    EXPECT_EQ(raisedBy([] { toLong(Variant::missing()); }), 13);
    EXPECT_EQ(raisedBy([] { toBoolean(ErrorValue{1}); }), 13);
    EXPECT_EQ(raisedBy([&] { toLong(array); }), 13);
    EXPECT_EQ(raisedBy([&] { toText(array); }), 13);
}

TEST(Conversions, ErrorValuesHaveAText) {
    EXPECT_EQ(toText(ErrorValue{static_cast<std::int32_t>(0x800A0005)}), u"Error 5");
    EXPECT_EQ(toText(ErrorValue{2000}), u"Error 2000");
    EXPECT_EQ(toText(Variant::missing()), u"Error -2147352572");
}

TEST(Conversions, NothingRaises91) {
    EXPECT_EQ(raisedBy([] { toLong(Object()); }), 91);
    EXPECT_EQ(raisedBy([] { toText(Object()); }), 91);
    EXPECT_TRUE(toObject(Object()).isNothing());
}

TEST(Conversions, WhatIsNoObjectRaises424) {
    EXPECT_EQ(raisedBy([] { toObject(Variant()); }), 424);
    EXPECT_EQ(raisedBy([] { toObject(u"x"); }), 424);
}

TEST(Conversions, ReferencesAreReadThrough) {
    Variant number(u"12");
    const Variant reference = Variant::reference(number);
    EXPECT_EQ(toLong(reference), 12);
    EXPECT_EQ(toText(reference), u"12");
    number = ErrorValue{7};
    EXPECT_EQ(toErrorValue(reference).code, 7);
    number = Object();
    EXPECT_TRUE(toObject(reference).isNothing());
    EXPECT_EQ(raisedBy([] { toErrorValue(7); }), 13);
}

TEST(Conversions, TextsOfAllTags) {
    EXPECT_EQ(toText(std::uint8_t{200}), u"200");
    EXPECT_EQ(toText(std::int16_t{-5}), u"-5");
    EXPECT_EQ(toText(0.1F), u"0.1");
    EXPECT_EQ(toText(1e15), u"1E+15");
    EXPECT_EQ(toText(Currency{12500}), u"1.25");
    EXPECT_EQ(toText(Date{46347}), u"21.11.2026");
    EXPECT_EQ(toText(u"as it is"), u"as it is");
}

TEST(ChangeType, GivesTheTagThatWasAskedFor) {
    for (const VarType type : {VarType::Empty, VarType::Null, VarType::Integer, VarType::Long,
                               VarType::Single, VarType::Double, VarType::Currency, VarType::Date,
                               VarType::String, VarType::Boolean, VarType::Byte}) {
        EXPECT_EQ(changeType(u"1", type).type(), type);
    }
    EXPECT_EQ(changeType(u"1", VarType::Variant).type(), VarType::String);
    EXPECT_EQ(changeType(Object(), VarType::Object).type(), VarType::Object);
    EXPECT_EQ(changeType(ErrorValue{1}, VarType::Error).type(), VarType::Error);
}

TEST(ChangeType, LeavesArraysAsTheyAre) {
    const Variant array(Array<std::int32_t>(0, 1));
    EXPECT_EQ(changeType(array, array.type()).type(), array.type());
    EXPECT_EQ(raisedBy([&] { changeType(array, VarType::Long); }), 13);
    EXPECT_EQ(raisedBy([&] { changeType(1, array.type()); }), 13);
}

}  // namespace
}  // namespace orvane
