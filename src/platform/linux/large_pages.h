#pragma once

#include <cstddef>
#include <cstdint>
#include <sys/mman.h>

namespace orvane::platform {

/// Asks for pages of 2 MiB, where the system has them, in memory that wasn't written yet: touching
/// a picture's memory for the first time costs more than filling it otherwise. The ends that share
/// their pages with other memory are left alone.
inline void preferLargePages(void* memory, std::size_t size) {
    constexpr std::uintptr_t kLargePage = std::uintptr_t{2} << 20;
    const auto start = reinterpret_cast<std::uintptr_t>(memory);
    const std::uintptr_t first = (start + kLargePage - 1) & ~(kLargePage - 1);
    const std::uintptr_t end = (start + size) & ~(kLargePage - 1);
    if (first < end) {
        ::madvise(static_cast<std::uint8_t*>(memory) + (first - start), end - first, MADV_HUGEPAGE);
    }
}

}  // namespace orvane::platform
