#include "frame/values/wstring.h"

#include "frame/values/text.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

TEST(WString, EmptyAndNullCompareEqualAndBothHaveLength0) {
    const WString null;
    const WString empty(u"");
    EXPECT_TRUE(null.isNull());
    EXPECT_FALSE(empty.isNull());
    EXPECT_EQ(null, empty);
    EXPECT_EQ(null <=> empty, std::strong_ordering::equal);
    EXPECT_EQ(null, u"");
    EXPECT_EQ(len(null), 0);
    EXPECT_EQ(len(empty), 0);
}

TEST(WString, RemembersNullOnTheWayThroughAView) {
    EXPECT_EQ(WString().data(), nullptr);
    EXPECT_TRUE(WString(WString().view()).isNull());
    EXPECT_FALSE(WString(WString(u"").view()).isNull());
    EXPECT_FALSE((WString() + u"").isNull());
}

TEST(WString, HoldsAnyUnit) {
    const WString text(std::u16string(u"a\0b\xD800", 4));
    EXPECT_EQ(len(text), 4);
    EXPECT_EQ(text[1], u'\0');
    EXPECT_NE(text, u"a");
}

TEST(WString, ComparesUnits) {
    EXPECT_LT(WString(u"Z"), WString(u"a"));
    EXPECT_LT(WString(u"a"), WString(u"aa"));
    EXPECT_LT(WString(u"\xD800\xDC00"), WString(u"\xFFFD"));
}

TEST(WString, Concatenates) {
    EXPECT_EQ(u"a" + WString(u"b") + u"c" + WString(u"d"), u"abcd");
}

}  // namespace
}  // namespace orvane
