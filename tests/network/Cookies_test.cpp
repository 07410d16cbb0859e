#include "network/Cookies.h"

#include "network/any_unit.h"
#include "network/cookies_reference.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

TEST(FormattedCookies, LeavesTheAttributesOut) {
    EXPECT_EQ(GetFormattedCookies(u"a=1; path=/; Expires=Wed\r\nb=2\r\n"), u"a=1; b=2; ");
}

TEST(FormattedCookies, TakesTheBlanksAroundNameAndValueAway) {
    EXPECT_EQ(GetFormattedCookies(u"a = 1"), u"a=1; ");
    EXPECT_EQ(GetFormattedCookies(u" \t a\t=\t 1 2 \n"), u"a=1 2; ");
}

TEST(FormattedCookies, ATextWithoutAnEqualsSignGivesNothing) {
    EXPECT_EQ(GetFormattedCookies(u"a; HttpOnly; secure\r\nb"), u"");
}

TEST(FormattedCookies, AnEmptyTextGivesNothing) {
    EXPECT_EQ(GetFormattedCookies(u""), u"");
    EXPECT_EQ(GetFormattedCookies(WStringView()), u"");
    EXPECT_EQ(GetFormattedCookies(u";;\r\n;"), u"");
}

TEST(FormattedCookies, TheThreeAttributesGoInAnyCase) {
    EXPECT_EQ(GetFormattedCookies(u"EXPIRES=1;Domain=2;pAtH=3;path = 4"), u"");
}

TEST(FormattedCookies, OtherNamesStayHoweverLikeTheyAre) {
    EXPECT_EQ(GetFormattedCookies(u"max-age=1;expire=2;paths=3;domains=4;ex pires=5;SameSite=Lax"),
              u"max-age=1; expire=2; paths=3; domains=4; ex pires=5; SameSite=Lax; ");
}

TEST(FormattedCookies, TheValueKeepsItsEqualsSigns) {
    EXPECT_EQ(GetFormattedCookies(u"a=b=c=="), u"a=b=c==; ");
}

TEST(FormattedCookies, NothingIsDeduplicated) {
    EXPECT_EQ(GetFormattedCookies(u"a=1\r\na=1\r\na=2"), u"a=1; a=1; a=2; ");
}

TEST(FormattedCookies, EmptyNamesAndValuesStay) {
    EXPECT_EQ(GetFormattedCookies(u"=1;a=;="), u"=1; a=; =; ");
}

TEST(FormattedCookies, OnlyCRAndLFTogetherSeparate) {
    EXPECT_EQ(GetFormattedCookies(u"a=1\nb=2\rc=3"), u"a=1\nb=2\rc=3; ");
    EXPECT_EQ(GetFormattedCookies(u"a=1\r\r\n\nb=2"), u"a=1; b=2; ");
    EXPECT_EQ(GetFormattedCookies(u"a=1\r"), u"a=1; ");
}

TEST(FormattedCookies, AnExpiredCookieIsSentLikeAnyOther) {
    EXPECT_EQ(GetFormattedCookies(u"a=1; expires=Thu, 01 Jan 1970 00:00:00 GMT\r\n"), u"a=1; ");
}

TEST(FormattedCookies, AreWhatTheStepsMakeOfAnyText) {
    for (std::uint32_t seed = 0; seed < 3000; ++seed) {
        const std::u16string text = test::anyUnits(seed % 60, u"==;; \r\n\r\n\tPATHpath", seed);
        EXPECT_EQ(GetFormattedCookies(text), test::referenceCookies(text));
    }
}

TEST(FormattedCookies, AreWhatTheStepsMakeOfAMebiOfAnything) {
    const std::u16string any = test::anyUnits(test::kMebi, u"==;\r\n a");
    EXPECT_TRUE(GetFormattedCookies(any) == test::referenceCookies(any));
    const std::u16string name(test::kMebi, u'n');
    EXPECT_TRUE(GetFormattedCookies(name + u"=" + name).units() == name + u"=" + name + u"; ");
    EXPECT_EQ(GetFormattedCookies(std::u16string(test::kMebi, u';')), u"");
}

}  // namespace
}  // namespace orvane
