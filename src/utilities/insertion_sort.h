#pragma once

#include <cstddef>
#include <span>
#include <utility>

namespace orvane {

/// Sorts `elements` ascending by insertion; stable. `above(a, b)` tells whether `a` is greater.
///
/// An error of a comparison goes to the caller with the elements as single assignments leave them:
/// those above the key moved up by one, the lowest of them still in its old place too, and the key
/// gone.
template <class T, class Above>
void insertionSort(std::span<T> elements, Above above) {
    for (std::size_t i = 1; i < elements.size(); ++i) {
        T key = elements[i];
        std::size_t j = i;
        try {
            while (j > 0 && above(elements[j - 1], key)) {
                elements[j] = std::move(elements[j - 1]);
                --j;
            }
        } catch (...) {
            if (j < i) elements[j] = elements[j + 1];
            throw;
        }
        elements[j] = std::move(key);
    }
}

}  // namespace orvane
