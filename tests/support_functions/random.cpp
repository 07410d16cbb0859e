#include "support/random.h"

#include "frame/random.h"

#include <gtest/gtest.h>

#include <array>
#include <set>

namespace orvane {
namespace {

constexpr std::int32_t kLongMin = INT32_MIN;
constexpr std::int32_t kLongMax = INT32_MAX;

// The first numbers of the published algorithm for this seed, computed apart from this code.
TEST(RandomGenerator, FollowsThePublishedSequence) {
    RandomGenerator generator;
    generator.seed(42);
    EXPECT_EQ(generator.next32(), 1776835114U);
    EXPECT_EQ(generator.next32(), 4165204688U);
    EXPECT_EQ(generator.next32(), 17111135U);
    EXPECT_EQ(generator.next32(), 2317295270U);
}

TEST(RandomGenerator, RepeatsItsSequenceForTheSameSeed) {
    RandomGenerator first;
    RandomGenerator second;
    first.seed(7);
    second.seed(7);
    for (int i = 0; i < 100; ++i)
        ASSERT_EQ(first.next32(), second.next32());
}

TEST(RandomGenerator, StartsElsewhereForAnotherSeed) {
    std::set<std::uint32_t> starts;
    for (std::uint64_t seed = 0; seed < 1000; ++seed) {
        RandomGenerator generator;
        generator.seed(seed);
        starts.insert(generator.next32());
    }
    EXPECT_GE(starts.size(), 999U);
}

TEST(RandomGenerator, ReachesBothBoundsAndNothingOutside) {
    RandomGenerator generator;
    std::set<std::int32_t> seen;
    for (int i = 0; i < 1000; ++i)
        seen.insert(generator.uniform(-2, 3));
    EXPECT_EQ(seen, (std::set<std::int32_t>{-2, -1, 0, 1, 2, 3}));
}

TEST(RandomGenerator, MakesAllNumbersEquallyLikely) {
    RandomGenerator generator;
    std::array<int, 7> counts{};
    for (int i = 0; i < 70000; ++i)
        ++counts[static_cast<std::size_t>(generator.uniform(0, 6))];
    // Five standard deviations of a count around its mean of 10000.
    for (const int count : counts)
        EXPECT_NEAR(count, 10000, 463);
}

TEST(RandomGenerator, IsUnbiasedWhereARangeDoesNotDivideTheGeneratorsOwn) {
    // Into 3 * 2^30 numbers a plain remainder would put a third of them twice as often.
    RandomGenerator generator;
    std::array<int, 3> thirds{};
    for (int i = 0; i < 30000; ++i) {
        const std::int64_t place =
            std::int64_t{generator.uniform(kLongMin, 0x3FFFFFFF)} - std::int64_t{kLongMin};
        ++thirds[static_cast<std::size_t>(place >> 30)];
    }
    for (const int third : thirds)
        EXPECT_NEAR(third, 10000, 408);
}

TEST(RandomGenerator, CoversTheWholeRangeOfALongWithoutOverflow) {
    RandomGenerator generator;
    std::array<int, 4> quarters{};
    for (int i = 0; i < 4000; ++i) {
        const std::int64_t place = std::int64_t{generator.uniform(kLongMin, kLongMax)} - kLongMin;
        ++quarters[static_cast<std::size_t>(place >> 30)];
    }
    for (const int quarter : quarters)
        EXPECT_NEAR(quarter, 1000, 137);
}

TEST(GetRnd, OfOneNumberIsThatNumber) {
    EXPECT_EQ(nqGetRnd(5, 5), 5);
    EXPECT_EQ(nqGetRnd(kLongMin, kLongMin), kLongMin);
    EXPECT_EQ(nqGetRnd(kLongMax, kLongMax), kLongMax);
}

TEST(GetRnd, StaysInclusiveOfBothBounds) {
    std::set<std::int32_t> seen;
    for (int i = 0; i < 10000; ++i)
        seen.insert(nqGetRnd(0, 255));
    EXPECT_EQ(seen.size(), 256U);
    EXPECT_EQ(*seen.begin(), 0);
    EXPECT_EQ(*seen.rbegin(), 255);
}

TEST(GetRnd, TakesBoundsInTheWrongOrder) {
    std::set<std::int32_t> seen;
    for (int i = 0; i < 1000; ++i)
        seen.insert(nqGetRnd(2, -1));
    EXPECT_EQ(seen, (std::set<std::int32_t>{-1, 0, 1, 2}));
}

TEST(GetRnd, DrawsOnTheApartmentsGenerator) {
    RandomGenerator same = apartmentRandom();
    EXPECT_EQ(nqGetRnd(kLongMin, kLongMax), static_cast<std::int32_t>(same.next32()));
    EXPECT_EQ(nqGetRnd(1, 1000000), same.uniform(1, 1000000));
}

}  // namespace
}  // namespace orvane
