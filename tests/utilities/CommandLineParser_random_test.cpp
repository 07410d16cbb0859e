#include "utilities/CommandLineParser.h"

#include "utilities/command_line_reference.h"

#include "support/rounds.h"

#include <gtest/gtest.h>

#include <random>

namespace orvane {
namespace {

using namespace std::literals;

/// Every token, the program name's place included.
std::vector<std::u16string> tokensOf(CommandLineParser& parser) {
    std::vector<std::u16string> tokens;
    for (std::int32_t index = -1; index < parser.Count(); ++index) {
        tokens.push_back(parser.Item(index).units());
    }
    return tokens;
}

TEST(CommandLineParserRandom, AgreesWithTheRulesOnRandomLines) {
    const Ref<CommandLineParser> parser = make<CommandLineParser>();
    // Mostly the characters that decide something.
    constexpr std::u16string_view kUnits = u"  \"\"ab\\\t\r\n\u00A0\u0416\0"sv;
    std::mt19937 random(20);
    int compared = 0;
    for (int run = 0; run < test::rounds(20000); ++run) {
        std::u16string line(random() % 24, u'\0');
        for (char16_t& unit : line)
            unit = kUnits[random() % kUnits.size()];
        const std::vector<std::u16string> expected = test::referenceTokens(line);
        parser->SetNewCommandLine(line, false);
        // An empty collection still answers for the program name.
        if (expected.empty()) {
            ASSERT_EQ(parser->Count(), 0);
            continue;
        }
        ASSERT_EQ(tokensOf(*parser), expected) << "run " << run;
        ++compared;
    }
    EXPECT_GT(compared, test::rounds(15000));
}

TEST(CommandLineParserRandom, TheReferenceSplitsAsTheRulesSay) {
    using Tokens = std::vector<std::u16string>;
    EXPECT_EQ(test::referenceTokens(u"a \"b c\"d \"\" \"e"),
              (Tokens{u"a", u"b c", u"d", u"", u"e"}));
    EXPECT_EQ(test::referenceTokens(u" \t "), Tokens());
}

}  // namespace
}  // namespace orvane
