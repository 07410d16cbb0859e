#pragma once

#include <cstddef>
#include <string>

namespace orvane {

/// `size` zeroed bytes, or null when there are none. Large blocks come from the platform as pages
/// that take memory only when they are touched.
void* allocateZeroed(std::size_t size);

/// Frees what `allocateZeroed` gave for the same size; null is none.
void freeZeroed(void* block, std::size_t size);

/// An empty text with room for `units` units, which are to be written soon.
std::u16string textWithRoom(std::size_t units);

}  // namespace orvane
