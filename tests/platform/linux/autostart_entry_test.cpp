#include "platform/linux/autostart/entry.h"

#include "exec_reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <random>
#include <set>

namespace orvane::platform::autostart {
namespace {

using test::argumentsOf;
using testing::ElementsAre;
using testing::IsEmpty;

bool none(const std::string&) {
    return false;
}
bool spacedProgram(const std::string& path) {
    return path == "/opt/my app/run" || path == "/opt/my app/run it";
}

using Words = std::vector<std::string>;

TEST(AutostartWords, StandBetweenBlanks) {
    EXPECT_THAT(wordsOf("prog -a  b\tc\n", none), ElementsAre("prog", "-a", "b", "c"));
    EXPECT_THAT(wordsOf("  prog  ", none), ElementsAre("prog"));
}

TEST(AutostartWords, BlankLineHasNone) {
    EXPECT_THAT(wordsOf("", none), IsEmpty());
    EXPECT_THAT(wordsOf(std::string_view(" \t\r\n\0", 5), none), IsEmpty());
}

TEST(AutostartWords, ProgramInQuotesMayHoldBlanks) {
    EXPECT_THAT(wordsOf("\"/opt/my app/run\" x", none), ElementsAre("/opt/my app/run", "x"));
    EXPECT_THAT(wordsOf("\"/opt/a\"x", none), ElementsAre("/opt/a", "x"));
    EXPECT_THAT(wordsOf("\"/opt/no end", none), ElementsAre("/opt/no end"));
    EXPECT_THAT(wordsOf("\"/back\\slash\\\" x", none), ElementsAre("/back\\slash\\", "x"));
}

TEST(AutostartWords, ProgramWithoutQuotesEndsWhereItIsOne) {
    EXPECT_THAT(wordsOf("/opt/my app/run", spacedProgram), ElementsAre("/opt/my app/run"));
    EXPECT_THAT(wordsOf("/opt/my app/run it -x", spacedProgram),
                ElementsAre("/opt/my app/run", "it", "-x"));
}

TEST(AutostartWords, ProgramThatIsNowhereEndsAtTheFirstBlank) {
    EXPECT_THAT(wordsOf("/opt/your app/run", spacedProgram), ElementsAre("/opt/your", "app/run"));
    EXPECT_THAT(wordsOf("my app", [](const std::string&) { return true; }),
                ElementsAre("my", "app"));
}

TEST(AutostartWords, QuotesGroupArguments) {
    EXPECT_THAT(wordsOf("p \"a b\" c\" \"d \"\" e", none), ElementsAre("p", "a b", "c d", "", "e"));
    EXPECT_THAT(wordsOf("p \"no end", none), ElementsAre("p", "no end"));
}

TEST(AutostartWords, BackslashesBeforeAQuoteEscape) {
    EXPECT_THAT(wordsOf(R"(p a\"b "a\" b" c:\d "e\\" f)", none),
                ElementsAre("p", "a\"b", "a\" b", "c:\\d", "e\\", "f"));
    EXPECT_THAT(wordsOf(R"(p \\\\ \)", none), ElementsAre("p", "\\\\\\\\", "\\"));
}

TEST(AutostartExec, PlainWordsStayAsTheyAre) {
    EXPECT_EQ(execValue({"/usr/bin/prog-1.2", "--file=a_b", "x@y:z,1+2"}),
              "/usr/bin/prog-1.2 --file=a_b x@y:z,1+2");
}

TEST(AutostartExec, ReservedCharactersAreQuotedAndEscaped) {
    EXPECT_EQ(execValue({"/my app/p"}), "\"/my app/p\"");
    EXPECT_EQ(execValue({"p", "$HOME"}), "p \"\\\\$HOME\"");
    EXPECT_EQ(execValue({"p", "a\"b"}), "p \"a\\\\\"b\"");
    EXPECT_EQ(execValue({"p", "a\\b"}), "p \"a\\\\\\\\b\"");
    EXPECT_EQ(execValue({"p", "`x`"}), "p \"\\\\`x\\\\`\"");
    EXPECT_EQ(execValue({"p", "a;b&c"}), "p \"a;b&c\"");
    EXPECT_EQ(execValue({"p", ""}), "p \"\"");
    EXPECT_EQ(execValue({"p", "a\nb\tc\rd"}), "p \"a\\nb\\tc\\rd\"");
}

TEST(AutostartExec, PercentSignsAreNoFieldCodes) {
    EXPECT_EQ(execValue({"p", "%f", "100%"}), "p %%f 100%%");
}

TEST(AutostartExec, DesktopReadsTheWordsBack) {
    std::minstd_rand random(99);
    constexpr char kUnits[] = "ab \\\"`$%'\n\t\r~;#=\xD0\xB6";
    for (int round = 0; round < 5000; ++round) {
        Words words;
        for (auto count = random() % 4 + 1; count > 0; --count) {
            std::string word;
            for (auto length = random() % 8; length > 0; --length)
                word += kUnits[random() % (sizeof kUnits - 1)];
            words.push_back(word);
        }
        const auto read = argumentsOf(execValue(words));
        ASSERT_TRUE(read.has_value()) << execValue(words);
        ASSERT_EQ(*read, words);
    }
}

TEST(AutostartEntry, HoldsWhatTheDesktopNeeds) {
    EXPECT_EQ(entryText(u"{AF6DF20F}", u"\"/opt/my app/run\" -x", none),
              "[Desktop Entry]\n"
              "Type=Application\n"
              "Name=run\n"
              "Comment={AF6DF20F}\n"
              "Exec=\"/opt/my app/run\" -x\n");
}

TEST(AutostartEntry, TextsAreUtf8AndStayOnTheirLines) {
    const std::string text = entryText(u" \u0436\n[x]\\", u"/\u0436/\U0001F600 \xD800", none);
    EXPECT_EQ(text, "[Desktop Entry]\nType=Application\nName=\xF0\x9F\x98\x80\n"
                    "Comment=\\s\xD0\xB6\\n[x]\\\\\n"
                    "Exec=\"/\xD0\xB6/\xF0\x9F\x98\x80\" \"\xEF\xBF\xBD\"\n");
}

TEST(AutostartEntry, BlankCommandLineHasNone) {
    EXPECT_EQ(entryText(u"name", u"", none), "");
    EXPECT_EQ(entryText(u"name", u" \t", none), "");
}

TEST(AutostartEntryName, IsSafeForAnyName) {
    EXPECT_EQ(entryName(Scope::user, u"{AF6DF20F-C1A6}"),
              "orvane-user-_7baf6df20f-c1a6_7d.desktop");
    EXPECT_EQ(entryName(Scope::machine, u"../\u0416 _.X"),
              "orvane-machine-.._2f_d0_96_20_5f.x.desktop");
    EXPECT_EQ(entryName(Scope::user, u""), "orvane-user-.desktop");
}

TEST(AutostartEntryName, LongNamesHaveOnesOfTheirOwn) {
    std::set<std::string> names;
    for (const std::size_t length : {100U, 200U, 201U, 16383U}) {
        for (const char16_t unit : {u'A', u'{', u'\u0416'}) {
            const std::string name = entryName(Scope::user, std::u16string(length, unit));
            EXPECT_LE(name.size(), 255U);
            EXPECT_TRUE(names.insert(name).second) << name;
        }
    }
    EXPECT_FALSE(names.contains(entryName(Scope::user, u"_HASH-")));
}

}  // namespace
}  // namespace orvane::platform::autostart
