#pragma once

#include "frame/values/variant.h"

#include <compare>
#include <optional>

namespace orvane {

/// Compares two values as `Variant`s; no value when either is Null.
///
/// - By-reference values are read through, objects through their default member; its error goes to
///   the caller.
/// - Numbers, Dates and Booleans (True is -1) compare by value: whole numbers and Currency exactly,
///   with a floating type on either side as Double. A floating value that is no number is
///   unordered.
/// - Two texts compare by units.
/// - A number and a text: a text that is a number compares as that number; any other text is
///   unequal to the number and greater.
/// - Empty equals 0, an empty text and Empty.
/// - Error values compare with each other by code. An Error value with anything else, and an array
///   with anything, raise 13.
std::optional<std::partial_ordering> compareVariants(const Variant& left, const Variant& right);

/// The comparison operators: True, False, or Null when either side is Null.
Variant variantEquals(const Variant& left, const Variant& right);
Variant variantNotEquals(const Variant& left, const Variant& right);
Variant variantLess(const Variant& left, const Variant& right);
Variant variantLessEqual(const Variant& left, const Variant& right);
Variant variantGreater(const Variant& left, const Variant& right);
Variant variantGreaterEqual(const Variant& left, const Variant& right);

/// The same for a condition, where Null counts as False.
bool isEqual(const Variant& left, const Variant& right);
bool isLess(const Variant& left, const Variant& right);
bool isLessEqual(const Variant& left, const Variant& right);
bool isGreater(const Variant& left, const Variant& right);
bool isGreaterEqual(const Variant& left, const Variant& right);

/// Whether a condition holds: Null counts as False, everything else is converted to Boolean.
bool conditionHolds(const Variant& condition);

/// `left And right`, bit by bit. Two Booleans give a Boolean, two Bytes a Byte; Booleans, Bytes,
/// Integers and Empty among each other give an Integer; all else is converted to Long and gives
/// one ("True" and "False" count as Booleans). Null And 0 or False is that 0 or False, Null And
/// anything else is Null. Raises 13 for arrays and Error values and the conversion's errors.
Variant andValues(const Variant& left, const Variant& right);

}  // namespace orvane
