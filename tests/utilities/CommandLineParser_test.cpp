#include "utilities/CommandLineParser.h"

#include "platform/kernel32.h"
#include "support/modules.h"
#include "support/raised_error.h"
#include "support/recorder.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvane {
namespace {

using namespace std::literals;
using platform::kernel32;
using test::raisedBy;
using test::ScopedTarget;

using Tokens = std::vector<std::u16string>;

constexpr std::int32_t kLongMax = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLongMin = std::numeric_limits<std::int32_t>::min();

/// A parser that was made while the system's line was `line`.
Ref<CommandLineParser> parserOfSystemLine(const char16_t* line) {
    ScopedTarget fake(kernel32.GetCommandLineW, [line] { return line; });
    return make<CommandLineParser>();
}

class CommandLine : public testing::Test {
protected:
    /// The parameters of `line` behind a program name that stands in.
    Tokens parameters(std::u16string_view line) {
        parser_->SetNewCommandLine(line, true);
        EXPECT_EQ(parser_->Item(-1), nqGetEXEModulePrettyFileName());
        Tokens found;
        for (std::int32_t index = 0; index < parser_->Count(); ++index) {
            found.push_back(parser_->Item(index).units());
        }
        return found;
    }

    std::int32_t raisedByItem(std::int32_t index) {
        return raisedBy([&] { parser_->Item(index); });
    }

    Ref<CommandLineParser> parser_ = make<CommandLineParser>();
};

TEST_F(CommandLine, OfBlanksOnlyWithoutADummyNameIsEmpty) {
    parser_->SetNewCommandLine(u"   ", false);
    EXPECT_EQ(parser_->Count(), 0);
    EXPECT_EQ(parser_->Item(-1), nqGetEXEModulePrettyFileName());
    EXPECT_EQ(raisedByItem(0), error::kSubscriptOutOfRange);
}

TEST_F(CommandLine, OfBlanksOnlyWithADummyNameHasNoParameters) {
    parser_->SetNewCommandLine(u"   ", true);
    EXPECT_EQ(parser_->Count(), 0);
    EXPECT_EQ(parser_->Item(-1), nqGetEXEModulePrettyFileName());
    EXPECT_EQ(raisedByItem(0), error::kSubscriptOutOfRange);
}

TEST_F(CommandLine, ARunOfBlanksGivesNoEmptyTokens) {
    EXPECT_EQ(parameters(u"one     two"), (Tokens{u"one", u"two"}));
}

TEST_F(CommandLine, TwoQuotesAreOneEmptyToken) {
    EXPECT_EQ(parameters(u"\"\""), (Tokens{u""}));
    EXPECT_EQ(parser_->Count(), 1);
}

TEST_F(CommandLine, AnUnclosedQuoteRunsToTheEnd) {
    EXPECT_EQ(parameters(u"word \"two words"), (Tokens{u"word", u"two words"}));
}

TEST_F(CommandLine, ItemMinusTwoRaisesSubscriptOutOfRangeWhateverTheCount) {
    for (const auto line : {u""sv, u"a"sv, u"a b c"sv}) {
        for (const bool dummy : {false, true}) {
            parser_->SetNewCommandLine(line, dummy);
            EXPECT_EQ(raisedByItem(-2), error::kSubscriptOutOfRange);
        }
    }
}

TEST_F(CommandLine, ASystemLineWithAQuotedPathHasThePathAsItsProgramName) {
    const auto parser = parserOfSystemLine(u"\"C:\\Program Files\\app.exe\" /silent");
    EXPECT_EQ(parser->Item(-1), u"C:\\Program Files\\app.exe");
    EXPECT_EQ(parser->Item(0), u"/silent");
    EXPECT_EQ(parser->Count(), 1);
}

TEST_F(CommandLine, OfTheSystemGetsNoDummyName) {
    const auto parser = parserOfSystemLine(u"app one two");
    EXPECT_EQ(parser->Item(-1), u"app");
    EXPECT_EQ(parser->Count(), 2);
}

TEST_F(CommandLine, OfASystemThatHasNoneIsEmpty) {
    const auto parser = parserOfSystemLine(nullptr);
    EXPECT_EQ(parser->Count(), 0);
    EXPECT_EQ(parser->Item(-1), nqGetEXEModulePrettyFileName());
}

TEST_F(CommandLine, IsAskedForOnceWhenTheParserIsMade) {
    test::Recorder recorder(kernel32);
    const auto parser = make<CommandLineParser>();
    parser->SetNewCommandLine(u"a b", false);
    EXPECT_EQ(recorder.count("GetCommandLineW"), 1U);
}

TEST_F(CommandLine, OfThisProcessBeginsWithItsProgram) {
    EXPECT_NE(parser_->Item(-1).units().find(u"test_utilities"), std::u16string::npos);
}

TEST_F(CommandLine, AWordEndsAtTheNextBlankEvenBetweenQuotes) {
    EXPECT_EQ(parameters(u"a\"b c\"d"), (Tokens{u"a\"b", u"c\"d"}));
}

TEST_F(CommandLine, TextRightBehindAClosingQuoteIsTheNextToken) {
    EXPECT_EQ(parameters(u"\"a b\"c d"), (Tokens{u"a b", u"c", u"d"}));
    EXPECT_EQ(parameters(u"\"a\"\"b\""), (Tokens{u"a", u"b"}));
}

TEST_F(CommandLine, TwoQuotesInARowAreAnEmptyTokenAndNoEscape) {
    EXPECT_EQ(parameters(u"\"\"a\"\""), (Tokens{u"", u"a\"\""}));
    EXPECT_EQ(parameters(u"\"\" \"\""), (Tokens{u"", u""}));
}

TEST_F(CommandLine, ABackslashBeforeAQuoteHasNoMeaning) {
    EXPECT_EQ(parameters(u"\"a\\\" b\""), (Tokens{u"a\\", u"b\""}));
    EXPECT_EQ(parameters(u"\\\"a b\""), (Tokens{u"\\\"a", u"b\""}));
}

TEST_F(CommandLine, AQuoteAtTheEndIsAnEmptyToken) {
    EXPECT_EQ(parameters(u"\""), (Tokens{u""}));
    EXPECT_EQ(parameters(u"a \""), (Tokens{u"a", u""}));
    EXPECT_EQ(parameters(u"\"a\" \"\"\""), (Tokens{u"a", u"", u""}));
}

TEST_F(CommandLine, AnUnclosedQuoteKeepsItsInnerBlanksAndLosesThoseOfTheEnd) {
    EXPECT_EQ(parameters(u"\"  a  b  "), (Tokens{u"  a  b"}));
}

TEST_F(CommandLine, AClosedQuoteKeepsTheBlanksAtItsEnds) {
    EXPECT_EQ(parameters(u"  \" a \"  "), (Tokens{u" a "}));
}

TEST_F(CommandLine, ATabEndsNoWord) {
    EXPECT_EQ(parameters(u"a\tb c"), (Tokens{u"a\tb", u"c"}));
}

TEST_F(CommandLine, LosesTabsLineEndsAndNulsAtBothEnds) {
    EXPECT_EQ(parameters(u"\t\r\n\0 a b \0\n\r\t"sv), (Tokens{u"a", u"b"}));
}

TEST_F(CommandLine, TheRestIsTrimmedBehindEachToken) {
    EXPECT_EQ(parameters(u"a \t\n\0 b \t\"c d\""sv), (Tokens{u"a", u"b", u"c d"}));
    EXPECT_EQ(parameters(u"\"a\"\tb"), (Tokens{u"a", u"b"}));
}

TEST_F(CommandLine, ANulInAWordStays) {
    EXPECT_EQ(parameters(u"a\0b c"sv), (Tokens{u"a\0b"s, u"c"}));
}

TEST_F(CommandLine, OtherBlankCharactersEndNoWord) {
    EXPECT_EQ(parameters(u"a\u00A0b\u2003c\vd"), (Tokens{u"a\u00A0b\u2003c\vd"}));
}

TEST_F(CommandLine, OfNulsOnlyIsEmpty) {
    EXPECT_EQ(parameters(u"\0\0\0"sv), Tokens());
}

TEST_F(CommandLine, ANullTextIsAnEmptyLine) {
    parser_->SetNewCommandLine({}, false);
    EXPECT_EQ(parser_->Count(), 0);
}

TEST_F(CommandLine, WithoutADummyNameTheFirstTokenIsTheProgramName) {
    parser_->SetNewCommandLine(u"a b", false);
    EXPECT_EQ(parser_->Item(-1), u"a");
    EXPECT_EQ(parser_->Item(0), u"b");
    EXPECT_EQ(parser_->Count(), 1);
}

TEST_F(CommandLine, ANewLineReplacesAllOfTheFormerOne) {
    EXPECT_EQ(parameters(u"a b c"), (Tokens{u"a", u"b", u"c"}));
    EXPECT_EQ(parameters(u"d"), (Tokens{u"d"}));
    EXPECT_EQ(parameters(u""), Tokens());
}

TEST_F(CommandLine, ANewLineIsSeenByAllHoldersOfTheParser) {
    const Ref<CommandLineParser> other = parser_;
    const Object late = parser_->asObject();
    other->SetNewCommandLine(u"shared", true);
    EXPECT_EQ(parser_->Item(0), u"shared");
    EXPECT_EQ(*late.get(u"Item", {std::int32_t{0}}).as<WString>(), u"shared");
}

TEST_F(CommandLine, ALateBoundNewLineHasADummyNameUnlessToldOtherwise) {
    const Object late = parser_->asObject();
    late.call(u"SetNewCommandLine", {u"a b"});
    EXPECT_EQ(parser_->Count(), 2);
    late.call(u"SetNewCommandLine", {u"a b", false});
    EXPECT_EQ(*late.get(u"Count").as<std::int32_t>(), 1);
}

TEST_F(CommandLine, AnIndexPastTheEndRaisesSubscriptOutOfRange) {
    parser_->SetNewCommandLine(u"a b", true);
    EXPECT_EQ(raisedByItem(1), 0);
    EXPECT_EQ(raisedByItem(2), error::kSubscriptOutOfRange);
    EXPECT_EQ(raisedByItem(kLongMax - 2), error::kSubscriptOutOfRange);
    EXPECT_EQ(raisedByItem(kLongMin), error::kSubscriptOutOfRange);
}

TEST_F(CommandLine, TheTwoIndicesWhosePlaceIsNoLongRaiseOverflow) {
    for (const auto line : {u""sv, u"a b"sv}) {
        parser_->SetNewCommandLine(line, false);
        EXPECT_EQ(raisedByItem(kLongMax - 1), error::kOverflow);
        EXPECT_EQ(raisedByItem(kLongMax), error::kOverflow);
    }
}

TEST_F(CommandLine, ItemsErrorHasNoTextOfItsOwn) {
    try {
        parser_->Item(-2);
        FAIL() << "nothing was raised";
    } catch (const RuntimeError& raised) {
        EXPECT_EQ(raised.description, standardDescription(error::kSubscriptOutOfRange));
    }
}

TEST_F(CommandLine, OfAMillionUnitsIsSplit) {
    constexpr std::int32_t kWords = 500000;
    std::u16string line;
    for (std::int32_t word = 0; word < kWords; ++word)
        line += u"x ";
    parser_->SetNewCommandLine(line, true);
    EXPECT_EQ(parser_->Count(), kWords);
    EXPECT_EQ(parser_->Item(kWords - 1), u"x");
}

TEST_F(CommandLine, OfAMillionBlanksOrQuotesIsSplit) {
    constexpr std::size_t kSize = 1 << 20;
    EXPECT_EQ(parameters(std::u16string(kSize, u' ')), Tokens());
    EXPECT_EQ(parameters(std::u16string(kSize, u'"')).size(), kSize / 2);
    const std::u16string word(kSize, u'w');
    EXPECT_EQ(parameters(word), Tokens{word});
    EXPECT_EQ(parameters(u"\"" + word), Tokens{word});
}

TEST_F(CommandLine, TakesEveryUnit) {
    std::u16string word;
    for (unsigned unit = 0x21; unit <= 0xFFFF; ++unit)
        word += static_cast<char16_t>(unit);
    EXPECT_EQ(parameters(word), Tokens{word});
}

}  // namespace
}  // namespace orvane
