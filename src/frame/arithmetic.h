#pragma once

#include "frame/errors.h"

#include <cmath>
#include <concepts>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <utility>

namespace orvane {

/// Integer and Long: the types whose arithmetic is checked.
template <class T>
concept CheckedInteger = std::same_as<T, std::int16_t> || std::same_as<T, std::int32_t>;

/// `value` as a narrower (or differently signed) whole number; raises 6 when it does not fit.
template <std::integral To, std::integral From>
constexpr To narrow(From value) {
    if (!std::in_range<To>(value)) raise(error::kOverflow);
    return static_cast<To>(value);
}

/// `narrow` to an Integer.
template <std::integral From>
constexpr std::int16_t toInteger16(From value) {
    return narrow<std::int16_t>(value);
}

/// `narrow` to a Long.
template <std::integral From>
constexpr std::int32_t toLong32(From value) {
    return narrow<std::int32_t>(value);
}

/// `left + right`; raises 6 on overflow.
template <CheckedInteger T>
constexpr T checkedAdd(T left, T right) {
    T result{};
    if (__builtin_add_overflow(left, right, &result)) raise(error::kOverflow);
    return result;
}

/// `left - right`; raises 6 on overflow.
template <CheckedInteger T>
constexpr T checkedSubtract(T left, T right) {
    T result{};
    if (__builtin_sub_overflow(left, right, &result)) raise(error::kOverflow);
    return result;
}

/// `left * right`; raises 6 on overflow.
template <CheckedInteger T>
constexpr T checkedMultiply(T left, T right) {
    T result{};
    if (__builtin_mul_overflow(left, right, &result)) raise(error::kOverflow);
    return result;
}

/// `-value`; raises 6 for the least value, which has no opposite.
template <CheckedInteger T>
constexpr T checkedNegate(T value) {
    return checkedSubtract(T{0}, value);
}

/// The value without its sign; raises 6 for the least value.
template <CheckedInteger T>
constexpr T checkedAbsolute(T value) {
    return value < 0 ? checkedNegate(value) : value;
}

/// Whole-number division, truncated toward zero; raises 11 for a divisor 0 and 6 on overflow.
template <CheckedInteger T>
constexpr T checkedDivide(T dividend, T divisor) {
    if (divisor == 0) raise(error::kDivisionByZero);
    if (divisor == -1) return checkedNegate(dividend);
    return static_cast<T>(dividend / divisor);
}

/// The remainder of `checkedDivide`, with the dividend's sign; raises 11 for a divisor 0.
template <CheckedInteger T>
constexpr T checkedRemainder(T dividend, T divisor) {
    if (divisor == 0) raise(error::kDivisionByZero);
    if (divisor == -1) return 0;
    return static_cast<T>(dividend % divisor);
}

/// The offset of `index` from `lower`, the least index; raises 9 outside `lower` to `upper`.
constexpr std::size_t checkedIndex(std::int32_t index, std::int32_t lower, std::int32_t upper) {
    if (index < lower || index > upper) raise(error::kSubscriptOutOfRange);
    return static_cast<std::size_t>(static_cast<std::int64_t>(index) - lower);
}

/// The result of a floating-point operation; raises 6 when it is infinite or no number.
inline double checkedResult(double result) {
    if (!std::isfinite(result)) raise(error::kOverflow);
    return result;
}

/// `dividend / divisor`; raises 11 when a number is divided by zero, 6 for 0 / 0 and on overflow.
inline double checkedDivide(double dividend, double divisor) {
    if (divisor == 0 && dividend != 0) raise(error::kDivisionByZero);
    return checkedResult(dividend / divisor);
}

}  // namespace orvane
