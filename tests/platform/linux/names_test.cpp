#include "platform/linux/names.h"

#include "platform/kernel32.h"

#include <gtest/gtest.h>

namespace orvane::platform {
namespace {

TEST(Names, EveryByteComesBack) {
    for (int byte = 0; byte < 256; ++byte) {
        const std::string ansi(1, static_cast<char>(byte));
        EXPECT_EQ(ansiName(systemName(ansi)), ansi) << byte;
    }
}

TEST(Names, CyrillicIsUtf8ForTheSystem) {
    EXPECT_EQ(systemName("\xCF\xF0\xE8 1"), "\u041F\u0440\u0438 1");
    EXPECT_EQ(systemName("\x98"), "\xC2\x98");
    EXPECT_EQ(systemName("\x88"), "\u20AC");
}

TEST(Names, WhatTheCodePageLacksIsAQuestionMark) {
    EXPECT_EQ(ansiName("a\u00E9\u4E2D\U0001F600z"), "a???z");
    EXPECT_FALSE(fitsAnsi("a\u00E9"));
    EXPECT_TRUE(fitsAnsi("\u0416"));
}

TEST(Names, BytesThatAreNoUtf8AreSubstitutedOneByOne) {
    EXPECT_EQ(ansiName("\xFF\xD0"), "??");
    EXPECT_EQ(ansiName("\xC0\xAF"), "??");            // too long a form of "/"
    EXPECT_EQ(ansiName("\xED\xA0\x80"), "???");       // half of a pair
    EXPECT_EQ(ansiName("\xF4\x90\x80\x80"), "????");  // above the last code point
    EXPECT_FALSE(fitsAnsi("\xFF"));
}

TEST(Names, SystemTextsAreUtf16AndBack) {
    EXPECT_EQ(unitsOf("a\u0416\u4E2D\U0001F600"), u"a\u0416\u4E2D\U0001F600");
    EXPECT_EQ(utf8Text(u"a\u0416\u4E2D\U0001F600"), "a\u0416\u4E2D\U0001F600");
    EXPECT_EQ(unitsOf("\xFFz"), u"\uFFFDz");
    const char16_t lone[] = {0xD800, u'z', 0xDC00, 0};
    EXPECT_EQ(utf8Text(lone), "\uFFFDz\uFFFD");
}

TEST(Names, EmptyNamesAndNamesWithANulAreErrors) {
    EXPECT_EQ(nameError(""), kErrorPathNotFound);
    EXPECT_EQ(nameError(std::string_view("a\0b", 3)), kErrorInvalidName);
    EXPECT_EQ(nameError("a"), kErrorSuccess);
}

TEST(CodePages, AreThePublishedOnes) {
    EXPECT_EQ(ansiCodePage()[0xC0], u'\u0410');
    EXPECT_EQ(ansiCodePage()[0xFF], u'\u044F');
    EXPECT_EQ(ansiCodePage()[0x98], u'\x98');
    EXPECT_EQ(ansiCodePage()[0x8B], u'\u2039');
    EXPECT_EQ(oemCodePage()[0x80], u'\u0410');
    EXPECT_EQ(oemCodePage()[0xEF], u'\u044F');
    EXPECT_EQ(oemCodePage()[0xFF], u'\u00A0');
    EXPECT_EQ(oemCodePage()[0x41], u'A');
}

}  // namespace
}  // namespace orvane::platform
