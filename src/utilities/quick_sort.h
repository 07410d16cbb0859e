#pragma once

#include "frame/values/variant.h"

#include <cstdint>
#include <span>

/// Quick sort with a random pivot, ascending and in place: for each range of three elements or
/// more one number is drawn with `nqGetRnd`, the smaller side of the pivot is sorted first (the
/// right one when both are equal), and both scans for an exchange start at the ends of the range.
/// `lower` is the index that the first element has in its array.
///
/// The stack stays shallow: at most one level for every halving of the number of elements.
namespace orvane {

void quickSort(std::span<std::int32_t> elements, std::int32_t lower);
/// By units, binary.
void quickSort(std::span<WString> elements, std::int32_t lower);
/// By the comparison of Variants; its errors go to the caller, with the exchanges so far done. A
/// comparison with Null ends a scan. Nulls, which no place suits, end up anywhere.
void quickSort(std::span<Variant> elements, std::int32_t lower);

}  // namespace orvane
