#pragma once

#include "frame/random.h"
#include "frame/values/compare.h"
#include "support/random.h"

#include <array>
#include <cstdint>
#include <utility>
#include <vector>

/// The quick sort as it is written down, statement by statement: slow, and without any doubt.
namespace orvane::test {

template <class T>
struct Order {
    static bool above(const T& left, const T& right) { return left > right; }
    static bool atMost(const T& left, const T& right) { return left <= right; }
    static bool atLeast(const T& left, const T& right) { return left >= right; }
};
template <>
struct Order<Variant> {
    static bool above(const Variant& left, const Variant& right) { return isGreater(left, right); }
    static bool atMost(const Variant& left, const Variant& right) {
        return isLessEqual(left, right);
    }
    static bool atLeast(const Variant& left, const Variant& right) {
        return isGreaterEqual(left, right);
    }
};

/// False when it would never end, as with two elements that compare with nothing.
template <class T>
bool literalQuickSort(T* array, std::int32_t low, std::int32_t high) {
    if (low >= high) return true;
    if (high - low == 1) {
        if (Order<T>::above(array[low], array[high])) std::swap(array[low], array[high]);
        return true;
    }
    const std::int32_t drawn = nqGetRnd(low, high);
    std::swap(array[high], array[drawn]);
    const T partition = array[high];
    std::int32_t i = low;
    std::int32_t j = high;
    int passes = 0;
    do {
        if (++passes > high - low + 2) return false;
        i = low;
        j = high;
        while (Order<T>::atMost(array[i], partition) && i < j)
            ++i;
        while (Order<T>::atLeast(array[j], partition) && j > i)
            --j;
        if (i < j) std::swap(array[i], array[j]);
    } while (i < j);
    std::swap(array[i], array[high]);
    if (i - low < high - i) {
        return literalQuickSort(array, low, i - 1) && literalQuickSort(array, i + 1, high);
    }
    return literalQuickSort(array, i + 1, high) && literalQuickSort(array, low, i - 1);
}

/// What `action` leaves the generator with when it starts at `seed`: its next numbers.
template <class Action>
std::array<std::uint32_t, 4> numbersAfter(std::uint64_t seed, Action&& action) {
    apartmentRandom().seed(seed);
    action();
    std::array<std::uint32_t, 4> next{};
    for (std::uint32_t& number : next)
        number = apartmentRandom().next32();
    return next;
}

}  // namespace orvane::test
