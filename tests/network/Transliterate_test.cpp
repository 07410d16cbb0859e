#include "network/Transliterate.h"

#include "network/any_unit.h"
#include "network/transliterate_reference.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

TEST(TransliterateTest, AHedgehogBegins) {
    EXPECT_EQ(Transliterate(u"Ёж"), u"JOj");
}

TEST(TransliterateTest, KnowsEachLetter) {
    for (const auto& [letter, latin] : test::kReplacements) {
        EXPECT_EQ(Transliterate(letter), latin);
        EXPECT_EQ(WStringView(letter).size(), 1U);
    }
}

// That is why one pass is enough.
TEST(TransliterateTest, NoReplacementHoldsALetterThatAnotherOneLooksFor) {
    for (const auto& [letter, latin] : test::kReplacements)
        EXPECT_EQ(Transliterate(latin), latin);
}

TEST(TransliterateTest, IsTheLibrarysOwnTable) {
    EXPECT_EQ(Transliterate(u"Объём, Щука и Цапля; йод; ЭЮЯ Ъь"),
              u"Ob'jom, SHuka i TSaplja; iod; EJUJA ''");
}

TEST(TransliterateTest, EveryUnitIsWhatTheReplacementsMakeOfIt) {
    std::u16string all;
    for (std::uint32_t unit = 0; unit <= 0xFFFF; ++unit)
        all += static_cast<char16_t>(unit);
    EXPECT_EQ(Transliterate(all), test::referenceTransliterate(all));
    EXPECT_EQ(Transliterate(all).size(), all.size() + 14U) << "fourteen letters become two";
}

TEST(TransliterateTest, LettersBesideTheTableStay) {
    const char16_t* others = u"ЀЂІЏѐђіџѢѣ\u0490\u0491";
    EXPECT_EQ(Transliterate(others), others);
}

TEST(TransliterateTest, AnEmptyTextStaysEmpty) {
    EXPECT_EQ(Transliterate(u""), u"");
    EXPECT_EQ(Transliterate(WStringView()), u"");
}

TEST(TransliterateTest, AnyTextIsWhatTheReplacementsMakeOfIt) {
    for (std::uint32_t seed = 0; seed < 200; ++seed) {
        const std::u16string text = test::anyUnits(seed, u"ЁёЖжЩщЪъЯяAja'", seed);
        EXPECT_EQ(Transliterate(text), test::referenceTransliterate(text));
    }
    const std::u16string mebi = test::anyUnits(test::kMebi, u"ЁЯж");
    EXPECT_TRUE(Transliterate(mebi) == test::referenceTransliterate(mebi));
}

}  // namespace
}  // namespace orvane
