#pragma once

#include "support/random.h"

#include <cstddef>
#include <cstdint>
#include <utility>

namespace orvane {

/// Sorts what is known to be all equal: nothing but the draws and the exchanges of the pivots is
/// left of the sort of the range.
template <class Elements>
void sortEqualRange(Elements& elements, std::size_t low, std::size_t high) {
    for (; high - low > 1; --high)
        elements.exchange(high, elements.draw(low, high));
}

/// Sorts the range `low` to `high`. The last call of the recursion, that for the larger side, is
/// the loop: it has the same draws in the same order.
///
/// `Elements` has `isAbove` and `exchange` for two places, `draw` for a random place of a range,
/// `partition` for a range whose last element is the pivot, and `isAllEqual` for a range with no
/// element above its pivot.
template <class Elements>
void quickSortRange(Elements& elements, std::size_t low, std::size_t high) {
    while (high - low > 1) {
        elements.exchange(high, elements.draw(low, high));
        const std::size_t middle = elements.partition(low, high);
        if (middle == high && elements.isAllEqual(low, high)) {
            return sortEqualRange(elements, low, high - 1);
        }
        elements.exchange(middle, high);
        if (middle - low < high - middle) {
            if (middle - low > 1) quickSortRange(elements, low, middle - 1);
            if (middle == high) return;
            low = middle + 1;
        } else {
            if (high - middle > 1) quickSortRange(elements, middle + 1, high);
            if (middle == low) return;
            high = middle - 1;
        }
    }
    if (high - low == 1 && elements.isAbove(low, high)) elements.exchange(low, high);
}

/// The elements of a range, however they compare.
template <class T>
class SortedElements {
public:
    SortedElements(T* elements, std::int32_t lower) : elements_(elements), lower_(lower) {}

    void exchange(std::size_t i, std::size_t j) {
        if (i != j) std::swap(elements_[i], elements_[j]);
    }

    std::size_t draw(std::size_t low, std::size_t high) const {
        const std::int32_t drawn = nqGetRnd(indexOf(low), indexOf(high));
        return static_cast<std::size_t>(static_cast<std::int64_t>(drawn) - lower_);
    }

protected:
    T* elements_;

private:
    std::int32_t indexOf(std::size_t place) const {
        return static_cast<std::int32_t>(lower_ + static_cast<std::int64_t>(place));
    }

    std::int32_t lower_;
};

}  // namespace orvane
