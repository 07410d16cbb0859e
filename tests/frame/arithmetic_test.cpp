#include "frame/arithmetic.h"

#include "support/raised_error.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

using std::int16_t;
using std::int32_t;
using test::raisedBy;

static_assert(checkedAdd(int32_t{2}, int32_t{3}) == 5, "usable at compile time");

template <class T>
class CheckedArithmetic : public testing::Test {
protected:
    static constexpr T kLeast = std::numeric_limits<T>::min();
    static constexpr T kMost = std::numeric_limits<T>::max();
    static constexpr T kOne = 1;
    static constexpr T kMinusOne = -1;
    static constexpr T kTwo = 2;
    static constexpr T kZero = 0;
};
using CheckedTypes = testing::Types<int16_t, int32_t>;
TYPED_TEST_SUITE(CheckedArithmetic, CheckedTypes);

TYPED_TEST(CheckedArithmetic, AddsUpToTheBounds) {
    EXPECT_EQ(checkedAdd(TypeParam(this->kMost - 1), this->kOne), this->kMost);
    EXPECT_EQ(checkedAdd(TypeParam(this->kLeast + 1), this->kMinusOne), this->kLeast);
    EXPECT_EQ(raisedBy([&] { checkedAdd(this->kMost, this->kOne); }), 6);
    EXPECT_EQ(raisedBy([&] { checkedAdd(this->kLeast, this->kMinusOne); }), 6);
}

TYPED_TEST(CheckedArithmetic, SubtractsDownToTheBounds) {
    EXPECT_EQ(checkedSubtract(this->kMinusOne, this->kMost), this->kLeast);
    EXPECT_EQ(raisedBy([&] { checkedSubtract(this->kLeast, this->kOne); }), 6);
    EXPECT_EQ(raisedBy([&] { checkedSubtract(this->kZero, this->kLeast); }), 6);
}

TYPED_TEST(CheckedArithmetic, MultipliesUpToTheBounds) {
    EXPECT_EQ(checkedMultiply(TypeParam(this->kLeast / 2), this->kTwo), this->kLeast);
    EXPECT_EQ(raisedBy([&] { checkedMultiply(TypeParam(this->kMost / 2 + 1), this->kTwo); }), 6);
    EXPECT_EQ(raisedBy([&] { checkedMultiply(this->kLeast, this->kMinusOne); }), 6);
}

TYPED_TEST(CheckedArithmetic, LeastValueHasNoOpposite) {
    EXPECT_EQ(checkedNegate(this->kMost), -this->kMost);
    EXPECT_EQ(checkedAbsolute(TypeParam(-this->kMost)), this->kMost);
    EXPECT_EQ(raisedBy([&] { checkedNegate(this->kLeast); }), 6);
    EXPECT_EQ(raisedBy([&] { checkedAbsolute(this->kLeast); }), 6);
}

TYPED_TEST(CheckedArithmetic, DividesTowardZero) {
    EXPECT_EQ(checkedDivide(TypeParam(-7), this->kTwo), -3);
    EXPECT_EQ(checkedRemainder(TypeParam(-7), this->kTwo), -1);
    EXPECT_EQ(checkedRemainder(this->kLeast, this->kMinusOne), 0);
    EXPECT_EQ(raisedBy([&] { checkedDivide(this->kLeast, this->kMinusOne); }), 6);
}

TYPED_TEST(CheckedArithmetic, WholeDivisionByZeroRaises11) {
    EXPECT_EQ(raisedBy([&] { checkedDivide(this->kOne, this->kZero); }), 11);
    EXPECT_EQ(raisedBy([&] { checkedRemainder(this->kOne, this->kZero); }), 11);
}

TEST(Narrow, KeepsWhatFitsAndRaises6Otherwise) {
    EXPECT_EQ(toInteger16(32767), 32767);
    EXPECT_EQ(toInteger16(-32768), -32768);
    EXPECT_EQ(raisedBy([] { toInteger16(32768); }), 6);
    EXPECT_EQ(raisedBy([] { toInteger16(-32769); }), 6);
    EXPECT_EQ(toLong32(std::int64_t{-2147483647} - 1), INT32_MIN);
    EXPECT_EQ(raisedBy([] { toLong32(0x80000000U); }), 6);
    EXPECT_EQ(raisedBy([] { narrow<std::uint8_t>(-1); }), 6);
    EXPECT_EQ(raisedBy([] { narrow<std::uint8_t>(256); }), 6);
}

TEST(CheckedIndex, CountsFromTheLowerBound) {
    EXPECT_EQ(checkedIndex(-5, -5, 5), 0U);
    EXPECT_EQ(checkedIndex(5, -5, 5), 10U);
    EXPECT_EQ(checkedIndex(INT32_MAX, INT32_MIN, INT32_MAX), 0xFFFFFFFFU);
    EXPECT_EQ(raisedBy([] { checkedIndex(6, -5, 5); }), 9);
    EXPECT_EQ(raisedBy([] { checkedIndex(-6, -5, 5); }), 9);
}

TEST(FloatingDivision, TellsZeroDivisorsFromOverflow) {
    EXPECT_EQ(checkedDivide(1.0, 4.0), 0.25);
    EXPECT_EQ(raisedBy([] { checkedDivide(1.0, 0.0); }), 11);
    EXPECT_EQ(raisedBy([] { checkedDivide(0.0, 0.0); }), 6);
    EXPECT_EQ(raisedBy([] { checkedDivide(1e308, 1e-10); }), 6);
}

TEST(CheckedResult, InvalidResultsRaise6) {
    EXPECT_EQ(checkedResult(1.5), 1.5);
    EXPECT_EQ(raisedBy([] { checkedResult(std::numeric_limits<double>::quiet_NaN()); }), 6);
    EXPECT_EQ(raisedBy([] { checkedResult(-std::numeric_limits<double>::infinity()); }), 6);
}

}  // namespace
}  // namespace orvane
