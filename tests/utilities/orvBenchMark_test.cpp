#include "utilities/orvBenchMark.h"

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

class BenchMark : public testing::Test {
protected:
    /// Marks both ends at these ticks.
    void mark(std::uint32_t first, std::uint32_t last) {
        tick_ = first;
        watch_->FirstMark();
        tick_ = last;
        watch_->LaskMark();
    }

    Ref<orvBenchMark> watch_ = make<orvBenchMark>();
    std::uint32_t tick_ = 0;

private:
    ScopedTarget<std::uint32_t()> clock_{kernel32.GetTickCount, [this] { return tick_; }};
    ScopedTarget<bool(std::uint32_t)> silence_{user32.MessageBeep,
                                               [](std::uint32_t) { return true; }};
};

TEST_F(BenchMark, GivesZeroWhenNew) {
    EXPECT_EQ(watch_->GetTickDifferenceMS(), 0);
    EXPECT_EQ(watch_->toString(0), u"0 ms.");
}

TEST_F(BenchMark, GivesTheDifferenceOfTheTicks) {
    mark(5000, 6000);
    EXPECT_EQ(watch_->GetTickDifferenceMS(), 1000);
}

TEST_F(BenchMark, GivesANegativeDifferenceForTheLastMarkBeforeTheFirst) {
    mark(6000, 5000);
    EXPECT_EQ(watch_->GetTickDifferenceMS(), -1000);
    EXPECT_EQ(watch_->toString(0), u"-1000 ms.");
}

TEST_F(BenchMark, CountsFromZeroWithoutAFirstMark) {
    tick_ = 1234;
    watch_->LaskMark();
    EXPECT_EQ(watch_->GetTickDifferenceMS(), 1234);
}

TEST_F(BenchMark, TreatsTicksAsLongs) {
    mark(0xFFFFFFFF, 5);
    EXPECT_EQ(watch_->GetTickDifferenceMS(), 6);
    mark(0x7FFFFFFF, 0x80000000);
    EXPECT_EQ(raisedBy([&] { watch_->GetTickDifferenceMS(); }), error::kOverflow);
    EXPECT_EQ(raisedBy([&] { watch_->toString(1); }), error::kOverflow);
}

TEST_F(BenchMark, ShowsTheTimeOfAPassThePassesAndTheWholeTime) {
    mark(0, 1000);
    EXPECT_EQ(watch_->toString(4), u"250 ms. / 4 (1000 ms.)");
    EXPECT_EQ(watch_->toString(3), u"333.333333333333 ms. / 3 (1000 ms.)");
    mark(0, 1250);
    EXPECT_EQ(watch_->toString(1000), u"1.25 ms. / 1000 (1250 ms.)");
}

TEST_F(BenchMark, ShowsTheWholeTimeAloneForNoPasses) {
    mark(0, 1000);
    EXPECT_EQ(watch_->toString(0), u"1000 ms.");
    EXPECT_EQ(watch_->toString(-4), u"1000 ms.");
    const Object late = watch_->asObject();
    EXPECT_EQ(*late.call(u"toString").as<WString>(), u"1000 ms.");
    EXPECT_EQ(*late.call(u"toString", {0}).as<WString>(), u"1000 ms.");
    EXPECT_EQ(*late.call(u"toString", {4}).as<WString>(), u"250 ms. / 4 (1000 ms.)");
}

TEST_F(BenchMark, BeepsBeforeTheFirstMarkOnly) {
    Recorder recorder(kernel32, user32);
    watch_->FirstMark();
    watch_->LaskMark();
    watch_->GetTickDifferenceMS();
    EXPECT_TRUE(recorder.saw(
        {"MessageBeep(4294967295) -> true", "GetTickCount() -> 0", "GetTickCount() -> 0"}));
}

TEST_F(BenchMark, MeasuresWithoutASound) {
    ScopedTarget broken(user32.MessageBeep, [](std::uint32_t) { return false; });
    mark(10, 15);
    EXPECT_EQ(watch_->GetTickDifferenceMS(), 5);
}

TEST(BenchMarkOnTheRealClock, RunsForward) {
    const Object late = make<orvBenchMark>()->asObject();
    late.call(u"FirstMark");
    late.call(u"LaskMark");
    EXPECT_GE(*late.call(u"GetTickDifferenceMS").as<std::int32_t>(), 0);
}

}  // namespace
}  // namespace orvane
