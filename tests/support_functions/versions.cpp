#include "support/versions.h"

#include "support/raised_error.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

using test::raisedBy;

TEST(FormatVersion, WritesTheLibrarysOwnVersionAsItsVersionBlockDoes) {
    EXPECT_EQ(nqFormatVersion(3, 1, 251), u"3.01.0251");
}

TEST(FormatVersion, FillsTheLaterPartsAndKeepsLongOnes) {
    EXPECT_EQ(nqFormatVersion(0, 0, 0), u"0.00.0000");
    EXPECT_EQ(nqFormatVersion(12, 345, 67890), u"12.345.67890");
    EXPECT_EQ(nqFormatVersion(INT32_MAX, INT32_MAX, INT32_MAX),
              u"2147483647.2147483647.2147483647");
}

TEST(FormatVersion, PutsASignInFrontOfTheFill) {
    EXPECT_EQ(nqFormatVersion(-1, -2, -3), u"-1.-02.-0003");
}

TEST(FormatVersionShort, IsTwoNumbersAndADot) {
    EXPECT_EQ(nqFormatVersionShort(1, 2), u"1.2");
    EXPECT_EQ(nqFormatVersionShort(0, 0), u"0.0");
    EXPECT_EQ(nqFormatVersionShort(10, 10), u"10.10");
}

TEST(FormatVersionShort, RefusesANegativePart) {
    EXPECT_EQ(raisedBy([] { nqFormatVersionShort(-1, 0); }), 5);
    EXPECT_EQ(raisedBy([] { nqFormatVersionShort(0, -1); }), 5);
}

}  // namespace
}  // namespace orvane
