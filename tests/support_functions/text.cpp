#include "support/text.h"

#include "support/raised_error.h"

#include <gtest/gtest.h>

#include <vector>

namespace orvane {
namespace {

using namespace std::literals;
using test::raisedBy;

constexpr std::int32_t kLongMin = INT32_MIN;

Array<std::uint8_t> bytesOf(std::initializer_list<std::uint8_t> bytes) {
    return Array<std::uint8_t>::of(bytes);
}

/// A byte string of all 256 bytes in order.
WString allBytes() {
    std::vector<std::uint8_t> bytes;
    for (unsigned byte = 0; byte < 256; ++byte)
        bytes.push_back(static_cast<std::uint8_t>(byte));
    return nqStrConvW(Array<std::uint8_t>::of(bytes));
}

/// `nqTrimEx2` with the one switch of this number on, from 0.
WString trimOne(WStringView text, unsigned number) {
    const auto on = [number](unsigned place) { return place == number; };
    return nqTrimEx2(text, on(0), on(1), on(2), on(3), on(4), on(5), on(6), on(7), on(8), on(9));
}

TEST(TrimEx, RemovesBlanksTabsLineEndsAndNulsAtBothEnds) {
    EXPECT_EQ(nqTrimEx(u"\0 \t\r\nab\n\r\t \0"sv), u"ab");
}

TEST(TrimEx, KeepsThemInside) {
    EXPECT_EQ(nqTrimEx(u" a \t\r\n\0b "sv), u"a \t\r\n\0b"sv);
}

TEST(TrimEx, KeepsWhatIsNoBlank) {
    EXPECT_EQ(nqTrimEx(u"\v\f\u00A0\"'x'\"\u00A0\f\v"), u"\v\f\u00A0\"'x'\"\u00A0\f\v");
}

TEST(TrimEx, OfBlanksOnlyIsEmpty) {
    EXPECT_EQ(nqTrimEx(u" \t \r\n "), u"");
}

TEST(TrimEx, OfAnEmptyAndOfANullTextIsEmpty) {
    EXPECT_EQ(nqTrimEx(u""), u"");
    EXPECT_EQ(nqTrimEx({}), u"");
}

TEST(TrimEx2, WithTheFirstFiveSwitchesIsTrimEx) {
    const WString text(u"\0 \t\r\n\v x \v\n\r\t \0"sv);
    const WString trimmed =
        nqTrimEx2(text, true, true, true, true, true, false, false, false, false, false);
    EXPECT_EQ(trimmed, nqTrimEx(text));
    EXPECT_EQ(trimmed, u"\v x \v");
}

TEST(TrimEx2, WithTheLastFiveSwitchesTrimsQuotesAndRareBlanks) {
    EXPECT_EQ(nqTrimEx2(u"\"\u00A0'C:\\a b'\f\v\"", false, false, false, false, false, true, true,
                        true, true, true),
              u"C:\\a b");
}

TEST(TrimEx2, EachSwitchTrimsItsOwnCharacterOnly) {
    constexpr char16_t kCharacters[] = {u' ',  u'\t', u'\r',     u'\n', u'\0',
                                        u'\v', u'\f', u'\u00A0', u'"',  u'\''};
    for (unsigned number = 0; number < 10; ++number) {
        for (unsigned other = 0; other < 10; ++other) {
            const std::u16string text = {kCharacters[other], u'x', kCharacters[other]};
            const std::u16string expected = number == other ? u"x" : text;
            EXPECT_EQ(trimOne(text, number), WStringView(expected)) << number << ", " << other;
        }
    }
}

TEST(TrimEx2, WithoutASwitchChangesNothing) {
    EXPECT_EQ(trimOne(u" \t'x'\r\n ", 10), u" \t'x'\r\n ");
}

TEST(TrimCRLF, RemovesAllLineEndsAtBothEnds) {
    EXPECT_EQ(nqTrimCRLF(u"\r\n\n\ra\r\nb\r\n\r\n\r"), u"a\r\nb");
}

TEST(TrimCRLF, KeepsBlanks) {
    EXPECT_EQ(nqTrimCRLF(u" a \r\n"), u" a ");
}

TEST(CutLeft, TakesTheFirstUnitsAway) {
    EXPECT_EQ(nqCutLeft(u"Version 1.2", 8), u"1.2");
    EXPECT_EQ(nqCutLeft(u"abc", 0), u"abc");
}

TEST(CutLeft, WithACountEqualToTheLengthIsEmpty) {
    EXPECT_EQ(nqCutLeft(u"abc", 3), u"");
}

TEST(CutLeft, WithACountBeyondTheLengthIsEmpty) {
    EXPECT_EQ(nqCutLeft(u"abc", INT32_MAX), u"");
    EXPECT_EQ(nqCutLeft({}, 4), u"");
}

TEST(CutLeft, WithANegativeCountRaises5) {
    EXPECT_EQ(raisedBy([] { nqCutLeft(u"abc", -1); }), 5);
    EXPECT_EQ(raisedBy([] { nqCutLeft(u"abc", kLongMin); }), 5);
}

TEST(CutRight, TakesTheLastUnitsAway) {
    EXPECT_EQ(nqCutRight(u"abcdef", 4), u"ab");
    EXPECT_EQ(nqCutRight(u"abc", 0), u"abc");
}

TEST(CutRight, WithACountUpToOrBeyondTheLengthIsEmpty) {
    EXPECT_EQ(nqCutRight(u"abc", 3), u"");
    EXPECT_EQ(nqCutRight(u"abc", 4), u"");
    EXPECT_EQ(nqCutRight(u"", 4), u"");
}

TEST(CutRight, WithANegativeCountRaises5) {
    EXPECT_EQ(raisedBy([] { nqCutRight(u"abc", -1); }), 5);
}

TEST(StringFromPointerA, ReadsUpToTheNulThroughTheAnsiCodePage) {
    const char bytes[] = {'a', '\xC0', '\0', 'b', '\0'};
    EXPECT_EQ(nqGetStringFromPointerA(bytes), u"a\u0410");
}

TEST(StringFromPointerA, OfNullIsNullAndOfNothingIsEmpty) {
    EXPECT_TRUE(nqGetStringFromPointerA(nullptr).isNull());
    EXPECT_FALSE(nqGetStringFromPointerA("").isNull());
    EXPECT_EQ(nqGetStringFromPointerA(""), u"");
}

TEST(StringFromPointerW, ReadsUpToTheNul) {
    EXPECT_EQ(nqGetStringFromPointerW(u"\u0416\u4E2D\0x"), u"\u0416\u4E2D");
}

TEST(StringFromPointerW, OfNullIsNullAndOfNothingIsEmpty) {
    EXPECT_TRUE(nqGetStringFromPointerW(nullptr).isNull());
    EXPECT_FALSE(nqGetStringFromPointerW(u"").isNull());
}

TEST(StringFrom2NullBufferA, KeepsTheNulsBetweenItems) {
    EXPECT_EQ(nqGetStringFrom2NullBufferA("C:\\dir\0a.txt\0b.txt\0\0rest"),
              u"C:\\dir\0a.txt\0b.txt"sv);
}

TEST(StringFrom2NullBufferA, OfOneItemIsThatItem) {
    EXPECT_EQ(nqGetStringFrom2NullBufferA("C:\\dir\\\xC0.txt\0\0"), u"C:\\dir\\\u0410.txt");
}

TEST(StringFrom2NullBufferA, EndsAtAnEmptyFirstItem) {
    EXPECT_EQ(nqGetStringFrom2NullBufferA("\0rest"), u"");
}

TEST(StringFrom2NullBufferA, OfNullIsNull) {
    EXPECT_TRUE(nqGetStringFrom2NullBufferA(nullptr).isNull());
}

TEST(StrConvB, GivesOneByteForEachUnitFromIndex0) {
    const Array<std::uint8_t> bytes = nqStrConvB(u"A\u0410\0z"sv);
    EXPECT_EQ(bytes.lowerBound(), 0);
    ASSERT_EQ(bytes.upperBound(), 3);
    EXPECT_EQ(bytes.at(0), 0x41);
    EXPECT_EQ(bytes.at(1), 0xC0);
    EXPECT_EQ(bytes.at(2), 0);
    EXPECT_EQ(bytes.at(3), 0x7A);
}

TEST(StrConvB, OfAnEmptyTextHasNoElements) {
    for (const WStringView text : {WStringView(), WStringView(u"")}) {
        const Array<std::uint8_t> bytes = nqStrConvB(text);
        EXPECT_EQ(bytes.lowerBound(), 0);
        EXPECT_EQ(bytes.upperBound(), -1);
    }
}

TEST(StrConvB, GivesAQuestionMarkForAUnitThatTheCodePageLacks) {
    const Array<std::uint8_t> bytes = nqStrConvB(u"\u4E2D\u0100");
    ASSERT_EQ(bytes.size(), 2U);
    EXPECT_EQ(bytes.at(0), '?');
    EXPECT_EQ(bytes.at(1), '?');
}

TEST(StrConvW, FollowedByStrConvBGivesTheSameBytesBack) {
    const WString text = allBytes();
    ASSERT_EQ(text.size(), 256U);
    const Array<std::uint8_t> bytes = nqStrConvB(text);
    ASSERT_EQ(bytes.size(), 256U);
    for (std::int32_t byte = 0; byte < 256; ++byte)
        EXPECT_EQ(bytes.at(byte), byte);
}

TEST(StrConvW, TakesAnArrayWithAnyLowerBound) {
    Array<std::uint8_t> bytes(5, 6);
    bytes.at(5) = 0x1F;
    bytes.at(6) = 0x8B;
    EXPECT_EQ(nqStrConvW(bytes), u"\x1F\u2039");
}

TEST(StrConvW, OfAnUnallocatedOrEmptyArrayIsEmpty) {
    EXPECT_EQ(nqStrConvW({}), u"");
    EXPECT_EQ(nqStrConvW(Array<std::uint8_t>::empty()), u"");
}

TEST(UnicodeToUtf8, GivesTheBytesAsAByteString) {
    // U+0410 is D0 90 in UTF-8; these bytes are the units U+0420 and U+0452 of the code page.
    EXPECT_EQ(nqUNICODEToUTF8(u"a\u0410"), u"a\u0420\u0452");
}

TEST(UnicodeToUtf8, ReplacesALoneSurrogate) {
    const Array<std::uint8_t> bytes = nqStrConvB(nqUNICODEToUTF8(u"\xD800"));
    ASSERT_EQ(bytes.size(), 3U);
    EXPECT_EQ(bytes.at(0), 0xEF);
    EXPECT_EQ(bytes.at(1), 0xBF);
    EXPECT_EQ(bytes.at(2), 0xBD);
}

TEST(Utf8ToUnicode, ReadsTheBytesOfAByteString) {
    EXPECT_EQ(nqUTF8ToUNICODE(nqStrConvW(bytesOf({0xF0, 0x9F, 0x98, 0x80, 0x00, 0xD0, 0x90}))),
              u"\xD83D\xDE00\0\u0410"sv);
}

TEST(Utf8ToUnicode, TakesBackWhatUnicodeToUtf8Gave) {
    const WStringView text = u"plain \u00E9\u0416\u4E2D\uFFFD \xD83D\xDE00\0end"sv;
    EXPECT_EQ(nqUTF8ToUNICODE(nqUNICODEToUTF8(text)), text);
}

TEST(Utf8ToUnicode, ReplacesWhatIsNoUtf8) {
    EXPECT_EQ(nqUTF8ToUNICODE(nqStrConvW(bytesOf({'a', 0xFF, 'b'}))), u"a\uFFFDb");
}

TEST(AnsiToOem, GivesTheOemBytesAsAByteString) {
    // In the code page 866 U+0410 is the byte 80 and U+0430 the byte A0.
    const Array<std::uint8_t> bytes = nqStrConvB(nqAnsiToOem(u"z\u0410\u0430"));
    ASSERT_EQ(bytes.size(), 3U);
    EXPECT_EQ(bytes.at(0), 'z');
    EXPECT_EQ(bytes.at(1), 0x80);
    EXPECT_EQ(bytes.at(2), 0xA0);
}

TEST(AnsiToOem, GivesAQuestionMarkForAUnitThatTheOemCodePageLacks) {
    EXPECT_EQ(nqAnsiToOem(u"\u4E2D"), u"?");
}

TEST(Hex, HasTheFixedWidthOfItsTypeInUpperCase) {
    EXPECT_EQ(nqHex1(0), u"00");
    EXPECT_EQ(nqHex1(0xAF), u"AF");
    EXPECT_EQ(nqHex2(0x0419), u"0419");
    EXPECT_EQ(nqHex4(0xBEEF), u"0000BEEF");
}

TEST(Hex, OfANegativeNumberIsItsBitPattern) {
    EXPECT_EQ(nqHex2(-1), u"FFFF");
    EXPECT_EQ(nqHex4(-1), u"FFFFFFFF");
    EXPECT_EQ(nqHex4(kLongMin), u"80000000");
}

TEST(Hex, OfAnAddressHasAPrefixAndIsTenUnitsWide) {
    EXPECT_EQ(nqHexEx4(0), u"0x00000000");
    EXPECT_EQ(nqHexEx4(-0x10000), u"0xFFFF0000");
}

}  // namespace
}  // namespace orvane
