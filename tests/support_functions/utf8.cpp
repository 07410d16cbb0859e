#include "support/utf8.h"

#include <gtest/gtest.h>

#include <string>

namespace orvane {
namespace {

using namespace std::literals;

TEST(EncodeUtf8, GivesEachCharacterItsShortestForm) {
    EXPECT_EQ(encodeUtf8(u"\0\x7F"sv), "\0\x7F"sv);
    EXPECT_EQ(encodeUtf8(u"\u0080\u07FF"), "\xC2\x80\xDF\xBF");
    EXPECT_EQ(encodeUtf8(u"\u0800\uFFFF"), "\xE0\xA0\x80\xEF\xBF\xBF");
    EXPECT_EQ(encodeUtf8(u"\U00010000\U0010FFFF"), "\xF0\x90\x80\x80\xF4\x8F\xBF\xBF");
}

TEST(EncodeUtf8, ReplacesSurrogatesWithoutAPartner) {
    EXPECT_EQ(encodeUtf8(u"\xD800"), "\xEF\xBF\xBD");
    EXPECT_EQ(encodeUtf8(u"\xDC00\xD800"), "\xEF\xBF\xBD\xEF\xBF\xBD");
    EXPECT_EQ(encodeUtf8(u"\xD800x"), "\xEF\xBF\xBDx");
    EXPECT_EQ(encodeUtf8(u"\xD800\xD83D\xDE00"), "\xEF\xBF\xBD\xF0\x9F\x98\x80");
}

TEST(DecodeUtf8, TakesBackEveryCharacter) {
    for (char32_t character = 0; character <= 0x10FFFF; ++character) {
        if (character >= 0xD800 && character <= 0xDFFF) continue;
        std::u16string text;
        if (character < 0x10000) {
            text = {static_cast<char16_t>(character)};
        } else {
            text = {static_cast<char16_t>(0xD7C0 + (character >> 10)),
                    static_cast<char16_t>(0xDC00 + (character & 0x3FF))};
        }
        ASSERT_EQ(decodeUtf8(encodeUtf8(text)), text) << std::hex << std::uint32_t{character};
    }
}

TEST(DecodeUtf8, ReplacesBytesThatStartNoCharacter) {
    EXPECT_EQ(decodeUtf8("\x80\xBFx\xFE\xFF"), u"\uFFFD\uFFFDx\uFFFD\uFFFD");
}

TEST(DecodeUtf8, ReplacesLongForms) {
    EXPECT_EQ(decodeUtf8("\xC0\x80"), u"\uFFFD\uFFFD");
    EXPECT_EQ(decodeUtf8("\xC1\xBF"), u"\uFFFD\uFFFD");
    EXPECT_EQ(decodeUtf8("\xE0\x9F\xBF"), u"\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(decodeUtf8("\xF0\x8F\xBF\xBF"), u"\uFFFD\uFFFD\uFFFD\uFFFD");
}

TEST(DecodeUtf8, ReplacesSurrogatesAndWhatIsPastTheLastCharacter) {
    EXPECT_EQ(decodeUtf8("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(decodeUtf8("\xF4\x90\x80\x80"), u"\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(decodeUtf8("\xF5\x80"), u"\uFFFD\uFFFD");
}

TEST(DecodeUtf8, ReplacesTheStartOfACharacterOnce) {
    EXPECT_EQ(decodeUtf8("\xE4\xB8"), u"\uFFFD");
    EXPECT_EQ(decodeUtf8("\xF0\x9F\x98"), u"\uFFFD");
    EXPECT_EQ(decodeUtf8("\xF0\x9F\x98x"), u"\uFFFDx");
    EXPECT_EQ(decodeUtf8("\xE4\xB8\xE4\xB8\xAD"), u"\uFFFD\u4E2D");
}

}  // namespace
}  // namespace orvane
