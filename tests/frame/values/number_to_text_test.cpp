#include "frame/values/conversions.h"

#include "support/raised_error.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvane {
namespace {

using test::raisedBy;

TEST(DoubleToText, HasUpTo15Digits) {
    EXPECT_EQ(doubleToText(0.1), u"0.1");
    EXPECT_EQ(doubleToText(1.0 / 3), u"0.333333333333333");
    EXPECT_EQ(doubleToText(-2.5), u"-2.5");
    EXPECT_EQ(doubleToText(100), u"100");
    EXPECT_EQ(doubleToText(123456789012345), u"123456789012345");
    EXPECT_EQ(doubleToText(0.1 + 0.2), u"0.3");
}

TEST(DoubleToText, TakesAnExponentWhereItNeedsOne) {
    EXPECT_EQ(doubleToText(1e15), u"1E+15");
    EXPECT_EQ(doubleToText(999999999999999), u"999999999999999");
    EXPECT_EQ(doubleToText(0.0001), u"0.0001");
    EXPECT_EQ(doubleToText(0.00001), u"1E-05");
    EXPECT_EQ(doubleToText(-1.5e300), u"-1.5E+300");
    EXPECT_EQ(doubleToText(5e-324), u"4.94065645841247E-324");
}

TEST(DoubleToText, ZeroHasNoSign) {
    EXPECT_EQ(doubleToText(0.0), u"0");
    EXPECT_EQ(doubleToText(-0.0), u"0");
}

TEST(DoubleToText, WhatIsNoNumberRaises6) {
    EXPECT_EQ(raisedBy([] { doubleToText(std::numeric_limits<double>::quiet_NaN()); }), 6);
    EXPECT_EQ(raisedBy([] { doubleToText(std::numeric_limits<double>::infinity()); }), 6);
    EXPECT_EQ(raisedBy([] { singleToText(-std::numeric_limits<float>::infinity()); }), 6);
}

TEST(SingleToText, HasUpTo7Digits) {
    EXPECT_EQ(singleToText(0.1F), u"0.1");
    EXPECT_EQ(singleToText(1.0F / 3), u"0.3333333");
    EXPECT_EQ(singleToText(1e7F), u"1E+07");
    EXPECT_EQ(singleToText(9999999), u"9999999");
    EXPECT_EQ(singleToText(-0.0F), u"0");
}

TEST(LongToText, ReachesTheBounds) {
    EXPECT_EQ(longToText(0), u"0");
    EXPECT_EQ(longToText(INT32_MAX), u"2147483647");
    EXPECT_EQ(longToText(INT32_MIN), u"-2147483648");
}

TEST(CurrencyToText, ShowsUpTo4Decimals) {
    EXPECT_EQ(currencyToText({0}), u"0");
    EXPECT_EQ(currencyToText({10000}), u"1");
    EXPECT_EQ(currencyToText({12500}), u"1.25");
    EXPECT_EQ(currencyToText({1}), u"0.0001");
    EXPECT_EQ(currencyToText({-500}), u"-0.05");
    EXPECT_EQ(currencyToText({INT64_MAX}), u"922337203685477.5807");
    EXPECT_EQ(currencyToText({INT64_MIN}), u"-922337203685477.5808");
}

TEST(BooleanToText, HasTwoNames) {
    EXPECT_EQ(booleanToText(true), u"True");
    EXPECT_EQ(booleanToText(false), u"False");
}

}  // namespace
}  // namespace orvane
