#pragma once

#include "frame/values/variant.h"

#include <cstdint>

/// Typed arrays from lists of values, and the search in them: what `orvMain`'s members of these
/// names do.
namespace orvane {

/// The values converted to text, under the bounds of `args`. Raises nothing: a value that can't be
/// converted leaves its element empty, and an array that is unallocated or has no elements gives
/// an unallocated one. Of several dimensions the first one's bounds count, and no element is set.
Array<WString> ArrayBSTR(const Array<Variant>& args);

/// The same with the values converted to Longs; what can't be converted stays 0.
Array<std::int32_t> ArrayLong(const Array<Variant>& args);

/// The index of the first element from `startAt` to `endAt` that equals `findWhat` as a `Variant`,
/// else 0. Only `isFound` tells a 0 that was found from none. Bounds that are left out are the
/// array's own. Raises 9 when the walk leaves the array, and for an unallocated one whose bound
/// is needed; what the conversion of a bound and the comparison raise.
std::int32_t InArray(const Array<std::int32_t>& array, const Variant& findWhat,
                     const Variant& startAt, const Variant& endAt, bool& isFound);

/// Whether `InArray` finds it.
bool IsInArray(const Array<std::int32_t>& array, const Variant& findWhat, const Variant& startAt,
               const Variant& endAt);

}  // namespace orvane
