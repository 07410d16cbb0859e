#include "frame/values/compare.h"

#include "frame/errors.h"
#include "frame/values/conversions.h"

#include <cstdint>
#include <type_traits>
#include <variant>

namespace orvane {
namespace {

using Comparison = std::optional<std::partial_ordering>;

// The tags come down to these for a comparison: Empty, Null, whole numbers, Currency, floating
// numbers (with Date), texts and Error values.
using Operand = std::variant<std::monostate, Variant::NullTag, std::int32_t, Currency, double,
                             WStringView, ErrorValue>;

/// A value that is neither a reference nor an object. The operand views the value's own text.
Operand operandOf(const Variant& plain) {
    return plain.visit([](const auto& content) -> Operand {
        using T = std::decay_t<decltype(content)>;
        if constexpr (std::is_same_v<T, bool>) {
            return std::int32_t{content ? -1 : 0};
        } else if constexpr (std::is_integral_v<T>) {
            return std::int32_t{content};
        } else if constexpr (std::is_same_v<T, float>) {
            return static_cast<double>(content);
        } else if constexpr (std::is_same_v<T, Date>) {
            return content.days;
        } else if constexpr (std::is_same_v<T, WString>) {
            return content.view();
        } else if constexpr (std::is_constructible_v<Operand, const T&>) {
            return content;
        } else {
            raise(error::kTypeMismatch);
        }
    });
}

/// Hands `use` the operand of a value, read through references and default members.
template <class Use>
Comparison withOperand(const Variant& value, Use use) {
    if (!value.isReference() && value.as<Object>() == nullptr) return use(operandOf(value));
    const Variant plain = plainValue(value);
    return use(operandOf(plain));
}

std::partial_ordering reversed(std::partial_ordering order) {
    return 0 <=> order;
}

struct Comparer {
    using Order = std::partial_ordering;

    Order operator()(std::int32_t left, std::int32_t right) const { return left <=> right; }
    Order operator()(double left, double right) const { return left <=> right; }
    Order operator()(std::int32_t left, double right) const {
        return static_cast<double>(left) <=> right;
    }
    Order operator()(double left, std::int32_t right) const {
        return left <=> static_cast<double>(right);
    }
    Order operator()(Currency left, Currency right) const { return left <=> right; }
    Order operator()(Currency left, std::int32_t right) const { return left <=> exact(right); }
    Order operator()(std::int32_t left, Currency right) const { return exact(left) <=> right; }
    Order operator()(Currency left, double right) const { return floating(left) <=> right; }
    Order operator()(double left, Currency right) const { return left <=> floating(right); }

    Order operator()(WStringView left, WStringView right) const { return left <=> right; }
    Order operator()(WStringView left, auto right) const { return reversed((*this)(right, left)); }
    Order operator()(auto left, WStringView right) const {
        const auto number = numberIn(right);
        return number ? (*this)(left, *number) : Order::less;
    }

    Order operator()(std::monostate, std::monostate) const { return Order::equivalent; }
    Order operator()(std::monostate, WStringView right) const { return WStringView() <=> right; }
    Order operator()(WStringView left, std::monostate) const { return left <=> WStringView(); }
    Order operator()(std::monostate, auto right) const { return (*this)(std::int32_t{0}, right); }
    Order operator()(auto left, std::monostate) const { return (*this)(left, std::int32_t{0}); }

    static Currency exact(std::int32_t value) { return {std::int64_t{value} * 10000}; }
    static double floating(Currency value) { return static_cast<double>(value.scaled) / 10000; }
};

Comparison compareOperands(const Operand& left, const Operand& right) {
    return std::visit(
        [](const auto& first, const auto& second) -> Comparison {
            using First = std::decay_t<decltype(first)>;
            using Second = std::decay_t<decltype(second)>;
            constexpr bool kFirstError = std::is_same_v<First, ErrorValue>;
            constexpr bool kSecondError = std::is_same_v<Second, ErrorValue>;
            if constexpr (kFirstError && kSecondError) {
                return first.code <=> second.code;
            } else if constexpr (kFirstError || kSecondError) {
                raise(error::kTypeMismatch);
            } else if constexpr (std::is_same_v<First, Variant::NullTag> ||
                                 std::is_same_v<Second, Variant::NullTag>) {
                return std::nullopt;
            } else {
                return Comparer()(first, second);
            }
        },
        left, right);
}

template <class Test>
Variant tested(const Comparison& comparison, Test test) {
    return comparison ? Variant(bool{test(*comparison)}) : Variant::null();
}

bool isUnequal(std::partial_ordering order) {
    return order != 0;
}
bool isSame(std::partial_ordering order) {
    return order == 0;
}
bool isBelow(std::partial_ordering order) {
    return order < 0;
}
bool isAtMost(std::partial_ordering order) {
    return order <= 0;
}
bool isAbove(std::partial_ordering order) {
    return order > 0;
}
bool isAtLeast(std::partial_ordering order) {
    return order >= 0;
}

template <class Test>
bool holds(const Comparison& comparison, Test test) {
    return comparison && test(*comparison);
}

}  // namespace

std::optional<std::partial_ordering> compareVariants(const Variant& left, const Variant& right) {
    // What sorts and searches compare most.
    if (const auto* first = left.as<std::int32_t>()) {
        if (const auto* second = right.as<std::int32_t>()) return *first <=> *second;
    } else if (const auto* text = left.as<WString>()) {
        if (const auto* second = right.as<WString>()) return *text <=> *second;
    }
    return withOperand(left, [&](const Operand& first) {
        return withOperand(right,
                           [&](const Operand& second) { return compareOperands(first, second); });
    });
}

Variant variantEquals(const Variant& left, const Variant& right) {
    return tested(compareVariants(left, right), isSame);
}
Variant variantNotEquals(const Variant& left, const Variant& right) {
    return tested(compareVariants(left, right), isUnequal);
}
Variant variantLess(const Variant& left, const Variant& right) {
    return tested(compareVariants(left, right), isBelow);
}
Variant variantLessEqual(const Variant& left, const Variant& right) {
    return tested(compareVariants(left, right), isAtMost);
}
Variant variantGreater(const Variant& left, const Variant& right) {
    return tested(compareVariants(left, right), isAbove);
}
Variant variantGreaterEqual(const Variant& left, const Variant& right) {
    return tested(compareVariants(left, right), isAtLeast);
}

bool isEqual(const Variant& left, const Variant& right) {
    return holds(compareVariants(left, right), isSame);
}
bool isLess(const Variant& left, const Variant& right) {
    return holds(compareVariants(left, right), isBelow);
}
bool isLessEqual(const Variant& left, const Variant& right) {
    return holds(compareVariants(left, right), isAtMost);
}
bool isGreater(const Variant& left, const Variant& right) {
    return holds(compareVariants(left, right), isAbove);
}
bool isGreaterEqual(const Variant& left, const Variant& right) {
    return holds(compareVariants(left, right), isAtLeast);
}

bool conditionHolds(const Variant& condition) {
    if (condition.type() == VarType::Null) return false;
    return toBoolean(condition);
}

}  // namespace orvane
