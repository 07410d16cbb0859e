#include "frame/values/conversions.h"

#include "support/raised_error.h"

#include <gtest/gtest.h>

#include <cmath>

namespace orvane {
namespace {

using test::raisedBy;

TEST(TextToDouble, ReadsEveryFormOfANumber) {
    EXPECT_EQ(textToDouble(u"12"), 12);
    EXPECT_EQ(textToDouble(u"+1.5"), 1.5);
    EXPECT_EQ(textToDouble(u"-.5"), -0.5);
    EXPECT_EQ(textToDouble(u"5."), 5);
    EXPECT_EQ(textToDouble(u"  7  "), 7);
    EXPECT_EQ(textToDouble(u"1e3"), 1000);
    EXPECT_EQ(textToDouble(u"1.25E-2"), 0.0125);
    EXPECT_EQ(textToDouble(u"2E+2"), 200);
    EXPECT_EQ(textToDouble(u"000.10"), 0.1);
    EXPECT_EQ(textToDouble(u"0e99999999999999999999"), 0);
}

TEST(TextToDouble, IsTheNearestDouble) {
    EXPECT_EQ(textToDouble(u"0.1"), 0.1);
    EXPECT_EQ(textToDouble(u"9007199254740993"), 9007199254740992.0);
    EXPECT_EQ(textToDouble(u"9007199254740993.0000000000000000000001"), 9007199254740994.0);
    EXPECT_EQ(textToDouble(u"1.7976931348623157E308"), std::numeric_limits<double>::max());
    EXPECT_EQ(textToDouble(u"4.9E-324"), std::numeric_limits<double>::denorm_min());
    EXPECT_EQ(textToDouble(u"1E-400"), 0);
    EXPECT_EQ(textToDouble(u"1E-99999999999999999999"), 0);
}

TEST(TextToDouble, OutsideTheRangeRaises6) {
    EXPECT_EQ(raisedBy([] { textToDouble(u"1E309"); }), 6);
    EXPECT_EQ(raisedBy([] { textToDouble(u"-1E309"); }), 6);
    EXPECT_EQ(raisedBy([] { textToDouble(u"1E99999999999999999999"); }), 6);
    EXPECT_EQ(raisedBy([] { textToDouble(std::u16string(400, u'9')); }), 6);
}

TEST(TextToDouble, OtherTextRaises13) {
    for (const WStringView text :
         {u"",     u" ",    u"x",   u"1x",      u"x1",     u".",    u"+",    u"-",
          u"+-1",  u"- 1",  u"1 2", u"1,5",     u"1.2.3",  u"e5",   u"1e",   u"1e+",
          u"1e5.", u"1e 5", u"\t1", u"1\n",     u"1d5",    u"inf",  u"nan",  u"0x10",
          u"&",    u"&H",   u"&O",  u"&HG",     u"&O8",    u"-&H1", u"&H 1", u"& H1",
          u"&10",  u"&H1&", u"1%",  u"\u00A01", u"\u0661", u"True"}) {
        EXPECT_EQ(raisedBy([&] { textToDouble(text); }), 13) << testing::PrintToString(text);
    }
    EXPECT_EQ(raisedBy([] { textToDouble(WStringView(u"1\0", 2)); }), 13);
    EXPECT_EQ(raisedBy([] { textToDouble(WStringView()); }), 13);
}

TEST(TextToWhole, RoundsAHalfToItsEvenNeighbour) {
    EXPECT_EQ(textToLong(u"2.5"), 2);
    EXPECT_EQ(textToLong(u"3.5"), 4);
    EXPECT_EQ(textToLong(u"-2.5"), -2);
    EXPECT_EQ(textToLong(u"-3.5"), -4);
    EXPECT_EQ(textToLong(u"0.5"), 0);
    EXPECT_EQ(textToLong(u"0.50000000000000000000000001"), 1);
    EXPECT_EQ(textToLong(u"0.05E1"), 0);
    EXPECT_EQ(textToLong(u"2.6"), 3);
    EXPECT_EQ(textToLong(u"0.4"), 0);
    EXPECT_EQ(textToLong(u"1E-5"), 0);
    EXPECT_EQ(textToLong(u"1.5E1"), 15);
}

TEST(TextToWhole, ReachesTheBoundsOfEachType) {
    EXPECT_EQ(textToLong(u"2147483647"), INT32_MAX);
    EXPECT_EQ(textToLong(u"2147483647.4"), INT32_MAX);
    EXPECT_EQ(textToLong(u"-2147483648"), INT32_MIN);
    EXPECT_EQ(textToLong(u"-2147483648.5"), INT32_MIN);
    EXPECT_EQ(textToInteger(u"32767"), INT16_MAX);
    EXPECT_EQ(textToInteger(u"-32768"), INT16_MIN);
    EXPECT_EQ(textToByte(u"255"), 255);
    EXPECT_EQ(textToByte(u"-0.5"), 0);
}

TEST(TextToWhole, OutsideTheRangeRaises6) {
    EXPECT_EQ(raisedBy([] { textToLong(u"2147483647.5"); }), 6);
    EXPECT_EQ(raisedBy([] { textToLong(u"2147483648"); }), 6);
    EXPECT_EQ(raisedBy([] { textToLong(u"-2147483649"); }), 6);
    EXPECT_EQ(raisedBy([] { textToLong(u"1E30"); }), 6);
    EXPECT_EQ(raisedBy([] { textToLong(u"99999999999999999999"); }), 6);
    EXPECT_EQ(raisedBy([] { textToInteger(u"32768"); }), 6);
    EXPECT_EQ(raisedBy([] { textToInteger(u"-32769"); }), 6);
    EXPECT_EQ(raisedBy([] { textToByte(u"256"); }), 6);
    EXPECT_EQ(raisedBy([] { textToByte(u"-1"); }), 6);
}

TEST(TextToWhole, OtherTextRaises13) {
    EXPECT_EQ(raisedBy([] { textToLong(u""); }), 13);
    EXPECT_EQ(raisedBy([] { textToInteger(u"abc"); }), 13);
    EXPECT_EQ(raisedBy([] { textToByte(u"1 2"); }), 13);
}

TEST(TextPrefixes, DigitsAreABitPattern) {
    EXPECT_EQ(textToInteger(u"&HFFFF"), -1);
    EXPECT_EQ(textToLong(u"&HFFFF"), 65535);
    EXPECT_EQ(textToLong(u"&HFFFFFFFF"), -1);
    EXPECT_EQ(textToDouble(u"&HFFFFFFFF"), -1);
    EXPECT_EQ(textToLong(u"&H80000000"), INT32_MIN);
    EXPECT_EQ(textToLong(u" &hfF "), 255);
    EXPECT_EQ(textToLong(u"&O17"), 15);
    EXPECT_EQ(textToLong(u"&o37777777777"), -1);
    EXPECT_EQ(textToLong(u"&H0000000000000001"), 1);
    EXPECT_EQ(textToByte(u"&HFF"), 255);
    EXPECT_EQ(textToCurrency(u"&H10").scaled, 160000);
}

TEST(TextPrefixes, MoreDigitsThanTheTargetRaise6) {
    EXPECT_EQ(raisedBy([] { textToLong(u"&H100000000"); }), 6);
    EXPECT_EQ(raisedBy([] { textToLong(u"&HFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF"); }), 6);
    EXPECT_EQ(raisedBy([] { textToLong(u"&O40000000000"); }), 6);
    EXPECT_EQ(raisedBy([] { textToDouble(u"&H100000000"); }), 6);
    EXPECT_EQ(raisedBy([] { textToInteger(u"&H10000"); }), 6);
    EXPECT_EQ(raisedBy([] { textToByte(u"&H100"); }), 6);
}

TEST(TextToCurrency, IsExact) {
    EXPECT_EQ(textToCurrency(u"922337203685477.5807").scaled, INT64_MAX);
    EXPECT_EQ(textToCurrency(u"-922337203685477.5808").scaled, INT64_MIN);
    EXPECT_EQ(textToCurrency(u"0.1").scaled, 1000);
    EXPECT_EQ(textToCurrency(u"1.00005").scaled, 10000);
    EXPECT_EQ(textToCurrency(u"1.00015").scaled, 10002);
    EXPECT_EQ(textToCurrency(u"1.00005000000000000000001").scaled, 10001);
    EXPECT_EQ(textToCurrency(u"12E-5").scaled, 1);
    EXPECT_EQ(textToCurrency(u"0.00005").scaled, 0);
    EXPECT_EQ(textToCurrency(u"0.00006").scaled, 1);
}

TEST(TextToCurrency, OutsideTheRangeRaises6) {
    EXPECT_EQ(raisedBy([] { textToCurrency(u"922337203685477.58075"); }), 6);
    EXPECT_EQ(raisedBy([] { textToCurrency(u"922337203685477.5808"); }), 6);
    EXPECT_EQ(raisedBy([] { textToCurrency(u"-922337203685477.5809"); }), 6);
    EXPECT_EQ(raisedBy([] { textToCurrency(u"1E15"); }), 6);
    EXPECT_EQ(raisedBy([] { textToCurrency(u"9999999999999999999999"); }), 6);
    EXPECT_EQ(raisedBy([] { textToCurrency(u"1.0.0"); }), 13);
}

TEST(TextToBoolean, ReadsItsNamesAndNumbers) {
    EXPECT_TRUE(textToBoolean(u"True"));
    EXPECT_TRUE(textToBoolean(u"tRUE"));
    EXPECT_FALSE(textToBoolean(u"FALSE"));
    EXPECT_TRUE(textToBoolean(u"-1"));
    EXPECT_TRUE(textToBoolean(u"0.1"));
    EXPECT_FALSE(textToBoolean(u" 0 "));
    EXPECT_TRUE(textToBoolean(u"&H1"));
    EXPECT_EQ(raisedBy([] { textToBoolean(u"yes"); }), 13);
    EXPECT_EQ(raisedBy([] { textToBoolean(u""); }), 13);
}

TEST(NumberIn, TellsNumbersFromOtherText) {
    EXPECT_EQ(numberIn(u" -2.5 "), -2.5);
    EXPECT_EQ(numberIn(u"&H10"), 16);
    EXPECT_EQ(numberIn(u"abc"), std::nullopt);
    EXPECT_EQ(numberIn(u""), std::nullopt);
    EXPECT_EQ(numberIn(u"1E999"), std::nullopt);
}

}  // namespace
}  // namespace orvane
