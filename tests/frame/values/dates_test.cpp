#include "frame/values/conversions.h"

#include "support/raised_error.h"
#include "support/rounds.h"

#include <gtest/gtest.h>

#include <limits>

namespace orvane {
namespace {

using test::raisedBy;

constexpr double kDay = 46347;  // 2026-11-21

TEST(DateToText, LeavesOutWhatIsNotThere) {
    EXPECT_EQ(dateToText({kDay + 0.4375}), u"21.11.2026 10:30:00");
    EXPECT_EQ(dateToText({kDay}), u"21.11.2026");
    EXPECT_EQ(dateToText({0.4375}), u"10:30:00");
    EXPECT_EQ(dateToText({0}), u"00:00:00");
}

TEST(DateToText, CountsBackwardsBeforeDay0) {
    EXPECT_EQ(dateToText({-1}), u"29.12.1899");
    EXPECT_EQ(dateToText({-1.25}), u"29.12.1899 06:00:00");
    EXPECT_EQ(dateToText({-0.25}), u"06:00:00");
}

TEST(DateToText, RoundsToTheNearestSecond) {
    EXPECT_EQ(dateToText({kDay + 59.6 / 86400}), u"21.11.2026 00:01:00");
    EXPECT_EQ(dateToText({kDay + 86399.7 / 86400}), u"22.11.2026");
    EXPECT_EQ(dateToText({-2 - 86399.7 / 86400}), u"29.12.1899");
    EXPECT_EQ(dateToText({-1 - 86399.7 / 86400}), u"00:00:00");
}

TEST(DateToText, ReachesTheBoundsOfTheCalendar) {
    EXPECT_EQ(dateToText({-657434}), u"01.01.0100");
    EXPECT_EQ(dateToText({2958465}), u"31.12.9999");
    EXPECT_EQ(dateToText({2958465.9999999}), u"31.12.9999 23:59:59");
    EXPECT_EQ(raisedBy([] { dateToText({-657435}); }), 6);
    EXPECT_EQ(raisedBy([] { dateToText({2958466}); }), 6);
    EXPECT_EQ(raisedBy([] { dateToText({std::numeric_limits<double>::quiet_NaN()}); }), 6);
}

TEST(DateToText, KnowsLeapYears) {
    EXPECT_EQ(dateToText({60}), u"28.02.1900");
    EXPECT_EQ(dateToText({61}), u"01.03.1900");
    EXPECT_EQ(dateToText({36585}), u"29.02.2000");
    EXPECT_EQ(dateToText({36586}), u"01.03.2000");
}

TEST(TextToDate, ReadsBothForms) {
    EXPECT_EQ(textToDate(u"21.11.2026 10:30:00").days, kDay + 0.4375);
    EXPECT_EQ(textToDate(u"2026-11-21 10:30:00").days, kDay + 0.4375);
    EXPECT_EQ(textToDate(u"21.11.2026 ").days, kDay);
    EXPECT_EQ(textToDate(u"2026-11-21").days, kDay);
    EXPECT_EQ(textToDate(u" 2026-11-21 10:30 ").days, kDay + 0.4375);
    EXPECT_EQ(textToDate(u"10:30:00").days, 0.4375);
    EXPECT_EQ(textToDate(u"29.12.1899 06:00:00").days, -1.25);
    EXPECT_EQ(textToDate(u"29.02.2000").days, 36585);
}

TEST(TextToDate, TakesANumber) {
    EXPECT_EQ(textToDate(u"1.5").days, 1.5);
    EXPECT_EQ(textToDate(u"&H10").days, 16);
    EXPECT_EQ(raisedBy([] { textToDate(u"3000000"); }), 6);
}

TEST(TextToDate, OtherTextRaises13) {
    for (const WStringView text : {u"",
                                   u"31.02.2026",
                                   u"29.02.1900",
                                   u"00.01.2026",
                                   u"01.13.2026",
                                   u"01.00.2026",
                                   u"01.01.0099",
                                   u"1.1.2026",
                                   u"01.01.26",
                                   u"2026-1-1",
                                   u"2026-01-01T10:00",
                                   u"24:00",
                                   u"10:60",
                                   u"10:30:60",
                                   u"10:30:",
                                   u"21.11.2026x",
                                   u"21.11.2026 10",
                                   u"21.11.2026  10:30",
                                   u"2026.11.21",
                                   u"99.99.9999",
                                   u"-1:00"}) {
        EXPECT_EQ(raisedBy([&] { textToDate(text); }), 13) << testing::PrintToString(text);
    }
}

TEST(TextToDate, UndoesDateToTextOnEveryDayOfTheCalendar) {
    // Every tenth under the sanitizers.
    constexpr std::int32_t kStep = 10 / test::rounds(10);
    for (std::int32_t day = -657434; day <= 2958465; day += kStep) {
        const Date date{static_cast<double>(day)};
        ASSERT_EQ(textToDate(dateToText(date)).days, date.days) << day;
    }
}

}  // namespace
}  // namespace orvane
