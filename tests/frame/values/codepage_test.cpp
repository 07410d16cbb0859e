#include "frame/values/codepage.h"

#include "platform/kernel32.h"

#include <gtest/gtest.h>

#include <numeric>
#include <set>

namespace orvane {
namespace {

std::vector<std::uint8_t> allBytes() {
    std::vector<std::uint8_t> bytes(256);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    return bytes;
}

/// A unit that the ANSI code page lacks.
char16_t foreignUnit() {
    const auto& page = platform::ansiCodePage();
    const std::set<char16_t> known(page.begin(), page.end());
    char16_t unit = 0x4E00;
    while (known.contains(unit))
        ++unit;
    return unit;
}

TEST(AnsiCodePage, EveryByteComesBack) {
    const auto bytes = allBytes();
    const WString text = fromAnsi(bytes);
    ASSERT_EQ(text.size(), 256U);
    const std::string back = toAnsi(text);
    EXPECT_EQ(std::vector<std::uint8_t>(back.begin(), back.end()), bytes);
}

TEST(AnsiCodePage, UnitsAreThoseOfThePlatform) {
    for (const std::uint8_t byte : allBytes()) {
        EXPECT_EQ(ansiUnit(byte), platform::ansiCodePage()[byte]) << int{byte};
        EXPECT_EQ(ansiByte(ansiUnit(byte)), byte);
    }
}

TEST(AnsiCodePage, UnitThatItLacksBecomesAQuestionMark) {
    EXPECT_EQ(toAnsi(std::u16string{u'a', foreignUnit(), u'b'}), "a?b");
    EXPECT_EQ(toAnsi(u"?"), "?");
}

TEST(AnsiCodePage, NulIsAByteLikeAnyOther) {
    EXPECT_EQ(toAnsi(WStringView(u"a\0b", 3)), std::string("a\0b", 3));
    EXPECT_EQ(fromAnsi(std::string_view("a\0b", 3)).size(), 3U);
}

TEST(AnsiCodePage, KeepsNullAndEmptyApart) {
    EXPECT_TRUE(fromAnsi(std::string_view()).isNull());
    EXPECT_FALSE(fromAnsi(std::string_view("")).isNull());
    EXPECT_EQ(toAnsi(WStringView()), "");
}

#ifndef _WIN32
TEST(AnsiCodePage, TextsOfEveryLengthComeBackWhateverStandsWhere) {
    // Runs of ASCII of every length, broken by other bytes at every place of a block.
    for (std::size_t length = 0; length < 70; ++length) {
        for (std::size_t place = 0; place <= length; ++place) {
            std::string bytes(length, 'a');
            if (place < length) bytes[place] = '\xC0';
            const WString text = fromAnsi(bytes);
            ASSERT_EQ(text.size(), length);
            for (std::size_t i = 0; i < length; ++i)
                ASSERT_EQ(text[i], ansiUnit(static_cast<std::uint8_t>(bytes[i])));
            ASSERT_EQ(toAnsi(text), bytes);
        }
    }
}

TEST(AnsiCodePage, LongTextsComeBack) {
    std::string bytes;
    for (std::size_t i = 0; i < 20000; ++i)
        bytes += static_cast<char>(i % 100 < 80 ? 'a' + i % 26 : i);
    const WString text = fromAnsi(bytes);
    ASSERT_EQ(text.size(), bytes.size());
    for (std::size_t i = 0; i < bytes.size(); ++i)
        ASSERT_EQ(text[i], ansiUnit(static_cast<std::uint8_t>(bytes[i]))) << i;
    EXPECT_EQ(toAnsi(text), bytes);
}

TEST(AnsiCodePage, UnitsAbove127AreNeverTakenForAscii) {
    for (std::uint32_t unit = 0x80; unit < 0x10000; unit += 0x3F) {
        std::u16string text(32, u'a');
        text[9] = static_cast<char16_t>(unit);
        std::string expected(32, 'a');
        expected[9] = static_cast<char>(ansiByte(text[9]));
        ASSERT_EQ(toAnsi(text), expected) << unit;
    }
}

TEST(AnsiCodePage, BytesThatLieReadyTakeWhatFits) {
    std::vector<std::uint8_t> bytes(4, 'x');
    toAnsi(u"ab", std::span(bytes).first(3));
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), "abxx");
    toAnsi(u"abcdef", bytes);
    EXPECT_EQ(std::string(bytes.begin(), bytes.end()), "abcd");
    toAnsi(u"abcdef", std::span<std::uint8_t>());
}

TEST(AnsiCodePage, IsCyrillicOnLinux) {
    EXPECT_EQ(ansiUnit(0xC0), 0x0410);
    EXPECT_EQ(toAnsi(u"Ящик"), "\xDF\xF9\xE8\xEA");
}

TEST(OemCodePage, IsCyrillicOnLinux) {
    EXPECT_EQ(toOem(u"Ящик"), "\x9F\xE9\xA8\xAA");
}
#endif

TEST(OemCodePage, EveryByteComesBack) {
    const auto bytes = allBytes();
    const std::string raw(bytes.begin(), bytes.end());
    EXPECT_EQ(toOem(fromOem(raw)), raw);
    EXPECT_EQ(toOem(std::u16string{u'a', char16_t{0xFFFE}}), "a?");
}

TEST(ByteArrays, CountFrom0AndEmptyOnesHaveTheUpperBoundMinus1) {
    const auto bytes = toAnsiArray(u"ab");
    EXPECT_EQ(bytes.lowerBound(), 0);
    EXPECT_EQ(bytes.upperBound(), 1);
    EXPECT_EQ(bytes.at(1), 'b');
    EXPECT_EQ(toAnsiArray(u"").upperBound(), -1);
}

TEST(ByteArrays, ComeBackWhateverTheirBounds) {
    Array<std::uint8_t> bytes(5, 6);
    bytes.at(5) = 'x';
    bytes.at(6) = 'y';
    EXPECT_EQ(fromAnsiArray(bytes), u"xy");
    EXPECT_TRUE(fromAnsiArray(Array<std::uint8_t>()).isNull());
}

}  // namespace
}  // namespace orvane
