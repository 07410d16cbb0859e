#include "support/torture.h"

#include "support/toy_table.h"

#include <gmock/gmock.h>
#include <gtest/gtest-spi.h>

#include <memory>

namespace orvane::test {
namespace {

using platform::FileHandle;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

// Not of a fixture: EXPECT_NONFATAL_FAILURE takes statements that know no `this`.
Toy toy = boundToy();

TortureOptions toyOptions() {
    return {operationsOf(toy), {}};
}

class TortureTest : public testing::Test {
protected:
    void TearDown() override { toyThings.clear(); }
};

/// Two things opened and closed again, whichever call fails.
bool careful() {
    const FileHandle first = toy.Open("first");
    if (first == FileHandle::none) return false;
    const FileHandle second = toy.Open("second");
    if (second != FileHandle::none) toy.Close(second);
    toy.Close(first);
    return second != FileHandle::none;
}

/// Forgets the first thing when the second can't be had.
void careless() {
    const FileHandle first = toy.Open("first");
    const FileHandle second = toy.Open("second");
    if (second == FileHandle::none) return;
    toy.Close(second);
    toy.Close(first);
}

TEST_F(TortureTest, FailsEachOperationInTurn) {
    std::vector<std::size_t> failedAt;
    const std::size_t failures = torture(
        careful,
        [&](bool outcome, const TortureRun& run) {
            failedAt.push_back(run.failedAt);
            EXPECT_EQ(outcome, run.failedAt == 0);
            EXPECT_EQ(run.failed, run.failedAt == 0 ? "" : "Open");
        },
        toyOptions());
    EXPECT_EQ(failures, 2u);
    EXPECT_THAT(failedAt, ElementsAre(1u, 2u, 0u));
    EXPECT_TRUE(toyThings.empty());
}

TEST_F(TortureTest, LeavesThePlatformsErrorAndResultBehind) {
    torture(
        [] {
            platform::setLastError(77);
            const FileHandle thing = toy.Open("a");
            const std::uint32_t error = platform::lastError();
            if (thing != FileHandle::none) toy.Close(thing);
            return error;
        },
        [](std::uint32_t error, const TortureRun& run) {
            EXPECT_EQ(error, run.failedAt == 1 ? platform::kErrorFileNotFound : 77u);
            EXPECT_THAT(run.calls.front(), StartsWith("Open(\"a\") -> "));
        },
        toyOptions());
}

TEST_F(TortureTest, ReportsWhatAFailureLeftOpen) {
    EXPECT_NONFATAL_FAILURE(torture(
                                careless, [](const TortureRun&) {}, toyOptions()),
                            "from Open(\"first\")");
}

TEST_F(TortureTest, CountsAnOutcomesHandlesAtItsEnd) {
    struct Owner {
        FileHandle thing = toy.Open("owned");
        Owner() = default;
        Owner(const Owner&) = delete;
        Owner& operator=(const Owner&) = delete;
        ~Owner() {
            if (thing != FileHandle::none) toy.Close(thing);
        }
    };
    const std::size_t failures =
        torture([] { return std::make_unique<Owner>(); },
                [](const std::unique_ptr<Owner>& owner, const TortureRun& run) {
                    EXPECT_EQ(toyThings.contains(owner->thing), run.failedAt == 0);
                },
                toyOptions());
    EXPECT_EQ(failures, 1u);
    EXPECT_TRUE(toyThings.empty());
}

TEST_F(TortureTest, SparesNamedOperations) {
    TortureOptions options = toyOptions();
    options.spared = {"Open"};
    EXPECT_EQ(torture(
                  careful, [](bool outcome, const TortureRun&) { EXPECT_TRUE(outcome); }, options),
              0u);
}

TEST_F(TortureTest, FailsACallThatMayTakeAHandleOver) {
    std::vector<std::string> failed;
    torture(
        [] {
            const FileHandle thing = toy.Open("a");
            if (thing == FileHandle::none) return;
            if (toy.Adopt(thing, true) < 0) toy.Close(thing);
        },
        [&failed](const TortureRun& run) { failed.push_back(run.failed); }, toyOptions());
    EXPECT_THAT(failed, ElementsAre("Open", "Adopt", ""));
}

TEST_F(TortureTest, LetsTheCheckUseThePlatform) {
    torture([] { toy.Close(toy.Open("a")); },
            [](const TortureRun& run) {
                const FileHandle thing = toy.Open("checked");
                EXPECT_NE(thing, FileHandle::none);
                toy.Close(thing);
                for (const std::string& call : run.calls) {
                    EXPECT_THAT(call, testing::Not(testing::HasSubstr("checked")));
                }
            },
            toyOptions());
    EXPECT_TRUE(toyThings.empty());
}

TEST_F(TortureTest, PutsTheOperationsBackWhenTheActionThrows) {
    const auto target = toy.Open.target();
    EXPECT_THROW(torture([] { throw 1; }, [](const TortureRun&) {}, toyOptions()), int);
    EXPECT_EQ(toy.Open.target(), target);
}

TEST_F(TortureTest, TakesTheWholePlatformByDefault) {
    std::vector<std::string> failed;
    torture([] { platform::kernel32.GetFileAttributesA("no such file"); },
            [&failed](const TortureRun& run) { failed.push_back(run.failed); });
    EXPECT_THAT(failed, ElementsAre("GetFileAttributesA", ""));
}

}  // namespace
}  // namespace orvane::test
