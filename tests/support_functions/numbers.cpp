#include "support/numbers.h"

#include "support/raised_error.h"

#include <gtest/gtest.h>

#include <cmath>
#include <limits>

namespace orvane {
namespace {

using test::raisedBy;

constexpr double kInfinity = std::numeric_limits<double>::infinity();
constexpr double kTwo63 = 9223372036854775808.0;

TEST(FormatLong, IsPlainDecimal) {
    EXPECT_EQ(nqFormatLong(0), u"0");
    EXPECT_EQ(nqFormatLong(1250000), u"1250000");
    EXPECT_EQ(nqFormatLong(INT32_MIN), u"-2147483648");
}

TEST(FormatDouble, HasADecimalPointAndNoNeedlessDigits) {
    EXPECT_EQ(nqFormatDouble(1.25), u"1.25");
    EXPECT_EQ(nqFormatDouble(250), u"250");
    EXPECT_EQ(nqFormatDouble(-0.5), u"-0.5");
}

TEST(FormatInt64, ShowsAllDigits) {
    EXPECT_EQ(nqFormatInt64(1e18), u"1000000000000000000");
    EXPECT_EQ(nqFormatInt64(-kTwo63), u"-9223372036854775808");
    EXPECT_EQ(nqFormatInt64(-0.0), u"0");
}

TEST(FormatInt64, RoundsAHalfToItsEvenNeighbour) {
    EXPECT_EQ(nqFormatInt64(2.5), u"2");
    EXPECT_EQ(nqFormatInt64(3.5), u"4");
    EXPECT_EQ(nqFormatInt64(-2.51), u"-3");
}

TEST(FormatInt64, RaisesOverflowOutsideTheRange) {
    EXPECT_EQ(raisedBy([] { nqFormatInt64(kTwo63); }), 6);
    EXPECT_EQ(raisedBy([] { nqFormatInt64(std::nan("")); }), 6);
}

TEST(FormatByteSize, TakesTheLargestUnitThatLeavesAtLeastOne) {
    EXPECT_EQ(nqFormatByteSizeEx(0), u"0 байт");
    EXPECT_EQ(nqFormatByteSizeEx(1023), u"1023 байт");
    EXPECT_EQ(nqFormatByteSizeEx(1024), u"1 КБ");
    EXPECT_EQ(nqFormatByteSizeEx(1536), u"1.5 КБ");
    EXPECT_EQ(nqFormatByteSizeEx(1048576), u"1 МБ");
    EXPECT_EQ(nqFormatByteSizeEx(4294967296.0), u"4 ГБ");
    EXPECT_EQ(nqFormatByteSizeEx(1099511627776.0), u"1 ТБ");
    EXPECT_EQ(nqFormatByteSizeEx(2048 * 1099511627776.0), u"2048 ТБ");
}

TEST(FormatByteSize, KeepsTwoDecimals) {
    EXPECT_EQ(nqFormatByteSizeEx(1234567), u"1.18 МБ");
    EXPECT_EQ(nqFormatByteSizeEx(3000000000.0), u"2.79 ГБ");
}

TEST(FormatByteSize, GoesToTheNextUnitWhenRoundingReachesIt) {
    EXPECT_EQ(nqFormatByteSizeEx(1048575), u"1 МБ");
    EXPECT_EQ(nqFormatByteSizeEx(1048570), u"1023.99 КБ");
}

TEST(FormatByteSize, KeepsTheSignOfADifference) {
    EXPECT_EQ(nqFormatByteSizeEx(-2048), u"-2 КБ");
}

TEST(FormatByteSize, RaisesOverflowForWhatIsNoNumber) {
    EXPECT_EQ(raisedBy([] { nqFormatByteSizeEx(kInfinity); }), 6);
    EXPECT_EQ(raisedBy([] { nqFormatByteSizeEx(std::nan("")); }), 6);
}

TEST(LargeInteger, IsItsHighWordTimes2To32PlusItsLowWord) {
    EXPECT_EQ(nqLargeIntegerToDouble(0), 0.0);
    EXPECT_EQ(nqLargeIntegerToDouble(0x1'FFFF'FFFF), 8589934591.0);
    EXPECT_EQ(nqLargeIntegerToDouble(-1), -1.0);
    EXPECT_EQ(nqLargeIntegerToDouble(INT64_MIN), -kTwo63);
    EXPECT_EQ(nqLargeIntegerToDouble(INT64_MAX), kTwo63);
}

TEST(LargeInteger, ComesBackFromADouble) {
    EXPECT_EQ(nqDoubleToLargeInteger(8589934591.0), 0x1'FFFF'FFFF);
    EXPECT_EQ(nqDoubleToLargeInteger(-kTwo63), INT64_MIN);
    EXPECT_EQ(nqDoubleToLargeInteger(-1), -1);
}

TEST(LargeInteger, IsRoundedToTheNearestWithAHalfToEven) {
    EXPECT_EQ(nqDoubleToLargeInteger(82500.5), 82500);
    EXPECT_EQ(nqDoubleToLargeInteger(82501.5), 82502);
    EXPECT_EQ(nqDoubleToLargeInteger(-0.6), -1);
}

TEST(LargeInteger, RaisesOverflowOutsideTheRange) {
    EXPECT_EQ(raisedBy([] { nqDoubleToLargeInteger(kTwo63); }), 6);
    EXPECT_EQ(raisedBy([] { nqDoubleToLargeInteger(-kTwo63 * 1.01); }), 6);
    EXPECT_EQ(raisedBy([] { nqDoubleToLargeInteger(kInfinity); }), 6);
    EXPECT_EQ(raisedBy([] { nqDoubleToLargeInteger(std::nan("")); }), 6);
}

TEST(LoWord, IsTheLow16BitsAsASignedNumber) {
    EXPECT_EQ(nqLoWord(0x12345678), 0x5678);
    EXPECT_EQ(nqLoWord(0x0000FFFF), -1);
    EXPECT_EQ(nqLoWord(0x00018000), -32768);
    EXPECT_EQ(nqLoWord(-2), -2);
}

TEST(MakeLong, PutsTheHalvesSideBySide) {
    EXPECT_EQ(nqMakeLong(2, 2), 0x00020002);
    EXPECT_EQ(nqMakeLong(-1, 0), 0x0000FFFF);
    EXPECT_EQ(nqMakeLong(0, -1), -65536);
    EXPECT_EQ(nqMakeLong(-1, -1), -1);
    EXPECT_EQ(nqMakeLong(0, INT16_MIN), INT32_MIN);
}

TEST(ErrorNumber, IsShownInDecimalAndInHexadecimal) {
    EXPECT_EQ(nqGetErrorNumber(5), u"5 (0x00000005)");
    EXPECT_EQ(nqGetErrorNumber(0), u"0 (0x00000000)");
    EXPECT_EQ(nqGetErrorNumber(static_cast<std::int32_t>(0x80040000)), u"-2147221504 (0x80040000)");
}

}  // namespace
}  // namespace orvane
