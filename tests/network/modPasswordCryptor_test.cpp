#include "network/modPasswordCryptor.h"

#include "frame/random.h"
#include "frame/values/codepage.h"
#include "network/any_unit.h"
#include "support/text.h"

#include <gtest/gtest.h>

#include <set>

namespace orvane {
namespace {

TEST(PasswordCryptor, AnEmptyTextStaysEmpty) {
    EXPECT_EQ(EncryptPassword(u""), u"");
    EXPECT_EQ(DecryptPassword(u""), u"");
    EXPECT_EQ(EncryptPassword(WStringView()), u"");
    EXPECT_EQ(DecryptPassword(WStringView()), u"");
}

TEST(PasswordCryptor, HidesTheBytesInReverseWithFillersBetween) {
    const std::u16string hidden = EncryptPassword(u"ab").units();
    ASSERT_EQ(hidden.size(), 8U);
    EXPECT_EQ(hidden.substr(0, 2), u"9D");
    EXPECT_EQ(hidden.substr(4, 2), u"9E");
    EXPECT_EQ(DecryptPassword(hidden), u"ab");
}

TEST(PasswordCryptor, ShowsATextThatWasHiddenElsewhere) {
    EXPECT_EQ(DecryptPassword(u"9D109EC4"), u"ab");
    EXPECT_EQ(DecryptPassword(u"9d--9eZZ"), u"ab") << "fillers are never read";
}

TEST(PasswordCryptor, FillersAreTheGeneratorsNumbers) {
    apartmentRandom().seed(7);
    const WString hidden = EncryptPassword(u"secret");
    apartmentRandom().seed(7);
    for (std::size_t place = 0; place < 6; ++place) {
        const auto filler = static_cast<std::uint8_t>(apartmentRandom().uniform(0, 255));
        EXPECT_EQ(hidden.view().substr(place * 4 + 2, 2), nqHex1(filler).view());
    }
}

TEST(PasswordCryptor, OnePasswordHasManyForms) {
    std::set<std::u16string> forms;
    for (int i = 0; i < 20; ++i)
        forms.insert(EncryptPassword(u"password").units());
    EXPECT_GT(forms.size(), 15U);
}

TEST(PasswordCryptor, EveryByteComesBack) {
    std::u16string all;
    for (int byte = 0; byte < 256; ++byte)
        all += ansiUnit(static_cast<std::uint8_t>(byte));
    EXPECT_EQ(DecryptPassword(EncryptPassword(all)).units(), all);
}

TEST(PasswordCryptor, ACharacterOutsideTheCodePageBecomesAQuestionMark) {
    EXPECT_EQ(DecryptPassword(EncryptPassword(u"a\u4E00\xD800z")), u"a??z");
}

TEST(PasswordCryptor, ALengthThatIsNoMultipleOfFourIsEmpty) {
    EXPECT_EQ(DecryptPassword(u"9D1"), u"");
    EXPECT_EQ(DecryptPassword(u"9"), u"");
    EXPECT_EQ(DecryptPassword(u"9D109EC49D"), u"");
}

TEST(PasswordCryptor, DigitsThatAreNoneMakeTheWholeEmpty) {
    EXPECT_EQ(DecryptPassword(u"ZZ00"), u"");
    EXPECT_EQ(DecryptPassword(u"9D109EC4ZZ00"), u"");
    EXPECT_EQ(DecryptPassword(u"G00000"), u"");
}

// What the general conversion makes of "&H" and the two characters decides.
TEST(PasswordCryptor, ReadsTwoCharactersAsTheConversionDoes) {
    EXPECT_EQ(DecryptPassword(u"9 xx"), WString(std::u16string(1, ansiUnit(246))))
        << "a blank behind the number is no part of it";
    for (const char16_t* refused : {u" 9xx", u"  xx", u"+1xx", u"-1xx", u"&Hxx", u"1.xx", u"1&xx",
                                    u"0xxx", u"\u0661\u0661xx", u"9\txx", u"1Hxx"}) {
        EXPECT_EQ(DecryptPassword(refused), u"");
    }
    EXPECT_EQ(DecryptPassword(std::u16string(u"9\0xx", 4)), u"");
}

TEST(PasswordCryptor, AMebiComesBack) {
    std::u16string text = test::anyUnits(test::kMebi, u"password");
    for (char16_t& unit : text)
        unit = ansiUnit(static_cast<std::uint8_t>(unit & 0xFF));
    EXPECT_TRUE(DecryptPassword(EncryptPassword(text)).units() == text);
    EXPECT_EQ(DecryptPassword(test::anyUnits(test::kMebi, u"0123456789ABCDEF")), u"");
}

}  // namespace
}  // namespace orvane
