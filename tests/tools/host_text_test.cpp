#include "orvane/host.h"

#include <gtest/gtest.h>

#include <new>

/// The strings that the client for hosts makes.
namespace orvane::host {
namespace {

/// A text of any length, of which nothing may be read behind its first unit.
std::u16string_view claimed(std::size_t units) {
    static constexpr char16_t kUnit = u'x';
    return {&kUnit, units};
}

TEST(HostText, LongestTextHasAByteCountOf31Bits) {
    EXPECT_EQ(kLongestText, 0x3FFFFFFFU);
}

TEST(HostText, LongerTextIsShortMemory) {
    // 2 GiB of bytes, and counts that come out as 0 and 2 in 32 bits.
    for (const std::size_t units : {0x40000000U, 0x7FFFFFFFU, 0x80000000U, 0x80000001U}) {
        EXPECT_THROW(newText(claimed(units)), std::bad_alloc) << units;
        EXPECT_THROW(Text{claimed(units)}, std::bad_alloc) << units;
    }
}

TEST(HostText, TextKeepsItsUnits) {
    using namespace std::literals;
    for (const auto text : {u""sv, u"a"sv, u"\0b\0"sv, u"\u0416\xD800"sv})
        EXPECT_EQ(Text(text).view(), text);
    EXPECT_EQ(Text().view(), u"");
}

}  // namespace
}  // namespace orvane::host
