#include "frame/values/text.h"

#include "platform/kernel32.h"
#include "support/raised_error.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

using test::raisedBy;

std::vector<std::u16string> pieces(WStringView text, WStringView delimiter) {
    const Array<WString> parts = split(text, delimiter);
    std::vector<std::u16string> units;
    for (const WString& part : parts.elements())
        units.push_back(part.units());
    return units;
}

TEST(Left, TakesWhatIsThere) {
    EXPECT_EQ(left(u"abc", 2), u"ab");
    EXPECT_EQ(left(u"abc", 0), u"");
    EXPECT_EQ(left(u"abc", 9), u"abc");
    EXPECT_EQ(raisedBy([] { left(u"abc", -1); }), 5);
}

TEST(Right, TakesWhatIsThere) {
    EXPECT_EQ(right(u"abc", 2), u"bc");
    EXPECT_EQ(right(u"abc", 0), u"");
    EXPECT_EQ(right(u"abc", 9), u"abc");
    EXPECT_EQ(raisedBy([] { right(u"abc", -1); }), 5);
}

TEST(Mid, TakesWhatIsThere) {
    EXPECT_EQ(mid(u"abcd", 2, 2), u"bc");
    EXPECT_EQ(mid(u"abcd", 3), u"cd");
    EXPECT_EQ(mid(u"abcd", 4, 9), u"d");
    EXPECT_EQ(mid(u"abcd", 5, 1), u"");
    EXPECT_EQ(mid(u"abcd", INT32_MAX, INT32_MAX), u"");
    EXPECT_EQ(raisedBy([] { mid(u"abc", 0, 1); }), 5);
    EXPECT_EQ(raisedBy([] { mid(u"abc", 1, -1); }), 5);
}

TEST(AssignMid, NeverChangesTheLength) {
    WString text(u"abcdef");
    assignMid(text, 2, u"XY");
    EXPECT_EQ(text, u"aXYdef");
    assignMid(text, 5, u"12345");
    EXPECT_EQ(text, u"aXYd12");
    assignMid(text, 1, u"zzz", 1);
    EXPECT_EQ(text, u"zXYd12");
    assignMid(text, 3, u"");
    EXPECT_EQ(text, u"zXYd12");
}

TEST(AssignMid, TakesAPartOfTheTargetItself) {
    WString text(u"abcdef");
    assignMid(text, 2, text.view().substr(0, 4));
    EXPECT_EQ(text, u"aabcdf");
}

TEST(AssignMid, PositionOutsideTheTextRaises5) {
    WString text(u"abc");
    EXPECT_EQ(raisedBy([&] { assignMid(text, 0, u"x"); }), 5);
    EXPECT_EQ(raisedBy([&] { assignMid(text, 4, u"x"); }), 5);
    EXPECT_EQ(raisedBy([&] { assignMid(text, 1, u"x", -1); }), 5);
    WString null;
    EXPECT_EQ(raisedBy([&] { assignMid(null, 1, u"x"); }), 5);
    EXPECT_EQ(text, u"abc");
}

TEST(InStr, CountsFrom1AndComparesUnits) {
    EXPECT_EQ(inStr(1, u"abcabc", u"bc"), 2);
    EXPECT_EQ(inStr(3, u"abcabc", u"bc"), 5);
    EXPECT_EQ(inStr(6, u"abcabc", u"bc"), 0);
    EXPECT_EQ(inStr(1, u"abc", u"B"), 0);
    EXPECT_EQ(inStr(1, u"", u"a"), 0);
    EXPECT_EQ(inStr(9, u"abc", u"a"), 0);
    EXPECT_EQ(raisedBy([] { inStr(0, u"abc", u"a"); }), 5);
}

TEST(InStr, EmptyTextIsFoundWhereTheSearchStarts) {
    EXPECT_EQ(inStr(2, u"abc", u""), 2);
    EXPECT_EQ(inStr(4, u"abc", u""), 0);
    EXPECT_EQ(inStr(1, u"", u""), 0);
}

TEST(Split, GivesA0BasedArray) {
    using Pieces = std::vector<std::u16string>;
    EXPECT_EQ(pieces(u"a,b,,c,", u","), (Pieces{u"a", u"b", u"", u"c", u""}));
    EXPECT_EQ(pieces(u"one", u","), (Pieces{u"one"}));
    EXPECT_EQ(pieces(u"a--b-c", u"--"), (Pieces{u"a", u"b-c"}));
    EXPECT_EQ(pieces(u"one", u""), (Pieces{u"one"}));
    EXPECT_EQ(split(u"a,b", u",").lowerBound(), 0);
}

TEST(Split, EmptyTextGivesTheUpperBoundMinus1) {
    EXPECT_EQ(split(u"", u",").upperBound(), -1);
    EXPECT_EQ(split(u"", u",").lowerBound(), 0);
}

TEST(Replace, ReplacesEveryOccurrence) {
    EXPECT_EQ(replace(u"a|b|", u"|", u"<>"), u"a<>b<>");
    EXPECT_EQ(replace(u"aaa", u"aa", u"b"), u"ba");
    EXPECT_EQ(replace(u"aAa", u"a", u""), u"A");
    EXPECT_EQ(replace(u"abc", u"", u"x"), u"abc");
    EXPECT_EQ(replace(u"", u"a", u"x"), u"");
    EXPECT_EQ(replace(u"a", u"a", u"aa"), u"aa");
}

TEST(Replace, ResultBeyondTheLongestTextRaises7) {
    const std::u16string many(0x10000, u'a');
    EXPECT_EQ(raisedBy([&] { replace(many, u"a", many); }), 7);
}

TEST(String, TakesATextOrACode) {
    EXPECT_EQ(string(3, u"xyz"), u"xxx");
    EXPECT_EQ(string(5, 65), u"AAAAA");
    EXPECT_EQ(string(2, 256 + 65), u"AA");
    EXPECT_EQ(string(0, u"x"), u"");
    EXPECT_EQ(stringOf(2, Variant(u"b")), u"bb");
    EXPECT_EQ(stringOf(2, Variant(std::int16_t{66})), u"BB");
    EXPECT_EQ(stringOf(1, Variant(0xC0))[0], platform::ansiCodePage()[0xC0]);
}

TEST(String, RaisesForImpossibleArguments) {
    EXPECT_EQ(raisedBy([] { string(-1, u"x"); }), 5);
    EXPECT_EQ(raisedBy([] { string(-1, 65); }), 5);
    EXPECT_EQ(raisedBy([] { string(1, u""); }), 5);
    EXPECT_EQ(raisedBy([] { string(1, -65); }), 5);
    EXPECT_EQ(raisedBy([] { string(INT32_MAX, u"x"); }), 7);
    EXPECT_EQ(raisedBy([] { stringOf(1, Variant::null()); }), 94);
}

TEST(Case, MapsPairsOfLettersOnly) {
    EXPECT_EQ(uCase(u"aZ9 \u00E9\u00FF\u0451\u044F\u03C2\u03C9\u0561\u1E0B\uFF41"),
              u"AZ9 \u00C9\u0178\u0401\u042F\u03A3\u03A9\u0531\u1E0A\uFF21");
    EXPECT_EQ(lCase(u"aZ9 \u00C9\u0178\u0401\u042F\u03A3\u03A9\u0531\u1E0A\uFF21"),
              u"az9 \u00E9\u00FF\u0451\u044F\u03C3\u03C9\u0561\u1E0B\uFF41");
}

TEST(Case, NoOtherLetterBecomesAnAsciiOne) {
    EXPECT_EQ(uCase(u"\u0131\u017F\u00B5\u00DF"), u"\u0131\u017F\u00B5\u00DF");
    EXPECT_EQ(lCase(u"\u0130\u212A\u1E9E"), u"\u0130\u212A\u1E9E");
}

TEST(Case, MappingsUndoEachOther) {
    int pairs = 0;
    for (unsigned code = 0; code < 0x10000; ++code) {
        const auto unit = static_cast<char16_t>(code);
        if (const char16_t upper = upperUnit(unit); upper != unit && unit != 0x03C2) {
            EXPECT_EQ(lowerUnit(upper), unit) << code;
            EXPECT_EQ(upperUnit(upper), upper) << code;
            ++pairs;
        }
        if (const char16_t lower = lowerUnit(unit); lower != unit) {
            EXPECT_EQ(upperUnit(lower), unit) << code;
            --pairs;
        }
    }
    EXPECT_EQ(pairs, 0);
}

TEST(Case, CyrillicIsWhole) {
    for (char16_t unit = 0x0430; unit <= 0x044F; ++unit) {
        EXPECT_EQ(upperUnit(unit), unit - 0x20);
    }
    for (char16_t unit = 0x0450; unit <= 0x045F; ++unit) {
        EXPECT_EQ(upperUnit(unit), unit - 0x50);
    }
}

TEST(Asc, GivesTheByteOfTheFirstUnit) {
    EXPECT_EQ(asc(u"AB"), 65);
    EXPECT_EQ(asc(std::u16string(1, platform::ansiCodePage()[0xC0])), 0xC0);
    EXPECT_EQ(raisedBy([] { asc(u""); }), 5);
}

TEST(Chr, GivesTheUnitOfAByte) {
    EXPECT_EQ(chr(65), u"A");
    EXPECT_EQ(chr(0), WStringView(u"\0", 1));
    EXPECT_EQ(chr(0xC0)[0], platform::ansiCodePage()[0xC0]);
    EXPECT_EQ(raisedBy([] { chr(-1); }), 5);
    EXPECT_EQ(raisedBy([] { chr(256); }), 5);
}

TEST(Chr, IsUndoneByAsc) {
    for (int byte = 0; byte < 256; ++byte)
        EXPECT_EQ(asc(chr(byte)), byte);
}

TEST(StrConv, TurnsTextIntoBytesAndBack) {
    const Variant bytes = strConv(Variant(chr(0xE0) + u"b"), kToAnsi);
    const auto* array = bytes.asArray<std::uint8_t>();
    ASSERT_NE(array, nullptr);
    ASSERT_EQ(array->upperBound(), 1);
    EXPECT_EQ(array->at(0), 0xE0);
    const Variant text = strConv(bytes, kFromAnsi);
    ASSERT_NE(text.as<WString>(), nullptr);
    EXPECT_EQ(*text.as<WString>(), chr(0xE0) + u"b");
    EXPECT_EQ(*strConv(text, kFromAnsi).as<WString>(), *text.as<WString>());
}

TEST(StrConv, PassesNullAndRefusesOtherModes) {
    EXPECT_EQ(strConv(Variant::null(), kToAnsi).type(), VarType::Null);
    EXPECT_EQ(raisedBy([] { strConv(Variant(u"a"), 1); }), 5);
    EXPECT_EQ(raisedBy([] { strConv(Variant(Array<std::int32_t>(0, 1)), kToAnsi); }), 13);
}

TEST(Trim, TakesBlanksOnly) {
    EXPECT_EQ(trim(u"  a b "), u"a b");
    EXPECT_EQ(leftTrim(u"  a b "), u"a b ");
    EXPECT_EQ(rightTrim(u"  a b "), u"  a b");
    EXPECT_EQ(trim(u"   "), u"");
    EXPECT_EQ(trim(u"\ta\n"), u"\ta\n");
    EXPECT_EQ(trim(u""), u"");
}

}  // namespace
}  // namespace orvane
