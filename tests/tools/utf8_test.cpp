#include "json.h"
#include "utf8.h"

#include <gtest/gtest.h>

namespace orvane::tool {
namespace {

using namespace std::string_view_literals;

TEST(Utf8, CharactersOfEveryLengthGoBothWays) {
    const std::string bytes =
        "a\x7F\xC2\x80\xD0\x96\xDF\xBF\xE0\xA0\x80\xEF\xBF\xBF\xF0\x90\x80\x80"
        "\xF4\x8F\xBF\xBF";
    const std::u16string units = u"a\x7F\u0080\u0416\u07FF\u0800\uFFFF\U00010000\U0010FFFF";
    EXPECT_EQ(toUtf16(bytes), units);
    EXPECT_EQ(toUtf8(units), bytes);
}

TEST(Utf8, WhatIsNoCharacterIsReplacedByteForByte) {
    EXPECT_EQ(toUtf16("\xFFz"), u"\uFFFDz");
    EXPECT_EQ(toUtf16("\xC0\x80"), u"\uFFFD\uFFFD");  // longer than it needs to be
    EXPECT_EQ(toUtf16("\xE0\x9F\xBF"), u"\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(toUtf16("\xED\xA0\x80"), u"\uFFFD\uFFFD\uFFFD");  // a surrogate
    EXPECT_EQ(toUtf16("\xF4\x90\x80\x80"), u"\uFFFD\uFFFD\uFFFD\uFFFD");
    EXPECT_EQ(toUtf16("\xE2\x82"), u"\uFFFD\uFFFD");  // cut
    EXPECT_EQ(toUtf16("\xD0z"), u"\uFFFDz");
}

TEST(Utf8, LoneSurrogatesAreReplaced) {
    const std::u16string units = {u'a', 0xDC00, 0xD800, u'b', 0xD800};
    EXPECT_EQ(toUtf8(units), "a\xEF\xBF\xBD\xEF\xBF\xBD"
                             "b\xEF\xBF\xBD");
}

TEST(Utf8, PrintableTextHasNoControlCharacters) {
    EXPECT_EQ(printable("a\\ \xD0\x96\n\x7F\xFF\xC2\x9B"), "a\\ \xD0\x96\\x0A\\x7F\\xFF\\xC2\\x9B");
}

TEST(Json, StringsAreEscaped) {
    EXPECT_EQ(jsonString("a\"b\\c/\xD0\x96"), "\"a\\\"b\\\\c/\xD0\x96\"");
    EXPECT_EQ(jsonString("\n\r\t\b\x1F\x7F\0"sv), "\"\\n\\r\\t\\u0008\\u001f\\u007f\\u0000\"");
    EXPECT_EQ(jsonString("\xFF"), "\"\xEF\xBF\xBD\"");
}

TEST(Json, ObjectsKeepTheOrderOfTheirMembers) {
    EXPECT_EQ(JsonObject().done(), "{}");
    EXPECT_EQ(
        JsonObject().text("b", "x").number("a", -1).object("c", JsonObject().number("d", 2)).done(),
        R"({"b":"x","a":-1,"c":{"d":2}})");
}

}  // namespace
}  // namespace orvane::tool
