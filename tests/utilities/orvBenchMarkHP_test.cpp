#include "utilities/orvBenchMarkHP.h"

#include "platform/kernel32.h"
#include "platform/user32.h"
#include "support/raised_error.h"
#include "support/recorder.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

using platform::kernel32;
using platform::user32;
using test::raisedBy;
using test::Recorder;
using test::ScopedTarget;

class BenchMarkHP : public testing::Test {
protected:
    /// Marks both ends at these counts.
    void mark(std::int64_t first, std::int64_t last) {
        counter_ = first;
        watch_->FirstMark();
        counter_ = last;
        watch_->LaskMark();
    }

    Ref<orvBenchMarkHP> watch_ = make<orvBenchMarkHP>();
    std::int64_t counter_ = 0;
    std::int64_t frequency_ = 10'000'000;

private:
    ScopedTarget<bool(std::int64_t&)> clock_{kernel32.QueryPerformanceCounter,
                                             [this](std::int64_t& counter) {
                                                 counter = counter_;
                                                 return true;
                                             }};
    ScopedTarget<bool(std::int64_t&)> rate_{kernel32.QueryPerformanceFrequency,
                                            [this](std::int64_t& frequency) {
                                                frequency = frequency_;
                                                return frequency_ != 0;
                                            }};
    ScopedTarget<bool(std::uint32_t)> silence_{user32.MessageBeep,
                                               [](std::uint32_t) { return true; }};
};

TEST_F(BenchMarkHP, GivesZeroWhenNew) {
    EXPECT_EQ(watch_->GetTickDifference(), 0);
    EXPECT_EQ(watch_->GetTickDifferenceMS(), 0);
    EXPECT_EQ(watch_->GetTickDifferenceSec(), 0);
    EXPECT_EQ(watch_->toString(0), u"0 ms.");
}

TEST_F(BenchMarkHP, GivesTheTimeInTicksMillisecondsAndSeconds) {
    mark(1'000'000'000'000, 1'000'025'000'000);
    EXPECT_EQ(watch_->GetTickDifference(), 25'000'000);
    EXPECT_EQ(watch_->GetTickDifferenceMS(), 2500);
    EXPECT_EQ(watch_->GetTickDifferenceSec(), 2.5);
}

TEST_F(BenchMarkHP, GivesTheCountersFrequency) {
    EXPECT_EQ(watch_->GetTickFrequencyPerSec(), 1e7);
    EXPECT_EQ(watch_->GetTickFrequencyPerMS(), 1e4);
    frequency_ = 3579545;
    EXPECT_EQ(watch_->GetTickFrequencyPerMS(), 3579.545);
}

TEST_F(BenchMarkHP, GivesANegativeTimeForTheLastMarkBeforeTheFirst) {
    mark(20'000, 10'000);
    EXPECT_EQ(watch_->GetTickDifference(), -10'000);
    EXPECT_EQ(watch_->GetTickDifferenceMS(), -1);
}

TEST_F(BenchMarkHP, SubtractsTheDoublesOfTheCounters) {
    constexpr std::int64_t kBeyondDoubles = (std::int64_t{1} << 53) + 1;
    mark(0, kBeyondDoubles);
    EXPECT_EQ(watch_->GetTickDifference(), 9007199254740992.0);
    mark(kBeyondDoubles - 1, kBeyondDoubles);
    EXPECT_EQ(watch_->GetTickDifference(), 0);
}

TEST_F(BenchMarkHP, ShowsTheTimeOfAPassThePassesAndTheWholeTime) {
    mark(0, 10'000'000);
    EXPECT_EQ(watch_->toString(4), u"250 ms. / 4 (1000 ms.)");
    EXPECT_EQ(watch_->toString(3), u"333.333333333333 ms. / 3 (1000 ms.)");
}

TEST_F(BenchMarkHP, ShowsTheWholeTimeRounded) {
    mark(0, 26'000);
    EXPECT_EQ(watch_->toString(0), u"3 ms.");
    EXPECT_EQ(watch_->toString(2), u"1.3 ms. / 2 (3 ms.)") << "the time of a pass is not";
    mark(0, 25'000);
    EXPECT_EQ(watch_->toString(0), u"2 ms.") << "a half goes to the even neighbour";
}

TEST_F(BenchMarkHP, ShowsTheWholeTimeAloneForNoPasses) {
    mark(0, 10'000'000);
    EXPECT_EQ(watch_->toString(0), u"1000 ms.");
    EXPECT_EQ(watch_->toString(-1), u"1000 ms.");
    EXPECT_EQ(*watch_->asObject().call(u"toString").as<WString>(), u"1000 ms.");
}

TEST_F(BenchMarkHP, RaisesWithoutACounter) {
    frequency_ = 0;
    EXPECT_EQ(watch_->GetTickFrequencyPerSec(), 0);
    EXPECT_EQ(raisedBy([&] { watch_->GetTickDifferenceMS(); }), error::kOverflow);
    mark(1, 2);
    EXPECT_EQ(watch_->GetTickDifference(), 1);
    for (const int call : {0, 1, 2}) {
        EXPECT_EQ(raisedBy([&] {
                      if (call == 0) watch_->GetTickDifferenceMS();
                      else if (call == 1) watch_->GetTickDifferenceSec();
                      else watch_->toString(1);
                  }),
                  error::kDivisionByZero)
            << call;
    }
}

TEST_F(BenchMarkHP, RaisesOverflowForATextBeyond64Bits) {
    mark(0, std::int64_t{1} << 62);
    frequency_ = 1;
    EXPECT_EQ(raisedBy([&] { watch_->toString(0); }), error::kOverflow);
}

TEST_F(BenchMarkHP, BeepsBeforeTheFirstMarkOnly) {
    Recorder recorder(kernel32, user32);
    watch_->FirstMark();
    watch_->LaskMark();
    EXPECT_TRUE(
        recorder.saw({"MessageBeep(4294967295) -> true", "QueryPerformanceCounter(*) -> true",
                      "QueryPerformanceCounter(*) -> true"}));
}

TEST_F(BenchMarkHP, AsksForTheFrequencyOnEveryCall) {
    Recorder recorder(kernel32);
    watch_->GetTickDifferenceMS();
    watch_->GetTickDifferenceSec();
    watch_->GetTickFrequencyPerMS();
    watch_->GetTickFrequencyPerSec();
    watch_->toString(7);
    EXPECT_EQ(recorder.names(), std::vector<std::string>(5, "QueryPerformanceFrequency"));
}

TEST(BenchMarkHPOnTheRealClock, RunsForward) {
    const Object late = make<orvBenchMarkHP>()->asObject();
    late.call(u"FirstMark");
    std::int64_t now = 0;
    std::int64_t later = 0;
    ASSERT_TRUE(kernel32.QueryPerformanceCounter(now));
    do {
        ASSERT_TRUE(kernel32.QueryPerformanceCounter(later));
    } while (later == now);
    late.call(u"LaskMark");
    EXPECT_GT(*late.call(u"GetTickDifference").as<double>(), 0);
    EXPECT_GT(*late.call(u"GetTickDifferenceMS").as<double>(), 0);
    EXPECT_GT(*late.call(u"GetTickFrequencyPerSec").as<double>(), 0);
}

}  // namespace
}  // namespace orvane
