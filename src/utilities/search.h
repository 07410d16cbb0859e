#pragma once

#include "frame/values/compare.h"
#include "frame/values/conversions.h"

#include <cstdint>

namespace orvane {

/// Walks upward from `startAt` to `endAt` and gives the first position whose element equals
/// `findWhat` as a `Variant`, or 0 with `isFound` False when there is none. A bound that was left
/// out is asked for with `lowest()` or `highest()`, an element with `elementAt(position)` when it
/// is its turn; what these raise and what the comparison raises goes to the caller.
template <class Lowest, class Highest, class ElementAt>
std::int32_t search(const Variant& findWhat, const Variant& startAt, const Variant& endAt,
                    bool& isFound, Lowest&& lowest, Highest&& highest, ElementAt&& elementAt) {
    isFound = false;
    const std::int64_t first = startAt.isMissing() ? lowest() : toLong(startAt);
    const std::int64_t last = endAt.isMissing() ? highest() : toLong(endAt);
    // Wider than a Long, so that the walk ends at the greatest one, too.
    for (std::int64_t next = first; next <= last; ++next) {
        const auto position = static_cast<std::int32_t>(next);
        if (isEqual(findWhat, elementAt(position))) {
            isFound = true;
            return position;
        }
    }
    return 0;
}

}  // namespace orvane
