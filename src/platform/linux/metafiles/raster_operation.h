#pragma once

#include <cstdint>

namespace orvane::metafiles {

/// The ternary raster operations that need no look at what is there.
inline constexpr std::uint8_t kPatternOnly = 0xF0;
inline constexpr std::uint8_t kSourceOnly = 0xCC;
/// The one that changes nothing.
inline constexpr std::uint8_t kNoOperation = 0xAA;

constexpr bool usesPattern(std::uint8_t operation) {
    return (operation >> 4 & 0x0F) != (operation & 0x0F);
}

constexpr bool usesSource(std::uint8_t operation) {
    return (operation >> 2 & 0x33) != (operation & 0x33);
}

/// A ternary raster operation on three words: bit n of its number is the result for pattern, source
/// and target bits that make up n, the pattern's being the highest.
constexpr std::uint32_t applied(std::uint8_t operation, std::uint32_t pattern, std::uint32_t source,
                                std::uint32_t target) {
    std::uint32_t result = 0;
    for (unsigned combination = 0; combination < 8; ++combination) {
        if ((operation >> combination & 1) == 0) continue;
        result |= ((combination & 4) != 0 ? pattern : ~pattern) &
                  ((combination & 2) != 0 ? source : ~source) &
                  ((combination & 1) != 0 ? target : ~target);
    }
    return result;
}

}  // namespace orvane::metafiles
