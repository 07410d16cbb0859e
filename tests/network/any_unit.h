#pragma once

#include <cstddef>
#include <cstdint>
#include <random>
#include <string>
#include <string_view>

namespace orvane::test {

/// A mebi of units.
inline constexpr std::size_t kMebi = 1U << 20;

/// A text of any units at all, NULs and lone surrogates among them, with the units of `frequent`
/// in every fourth place or so. The same text for the same seed on every platform.
inline std::u16string anyUnits(std::size_t length, std::u16string_view frequent,
                               std::uint32_t seed = 20261121) {
    std::mt19937 random(seed);
    std::u16string text(length, u'\0');
    for (char16_t& unit : text) {
        const auto bits = static_cast<std::uint32_t>(random());
        const bool isFrequent = bits % 4 == 0 && !frequent.empty();
        unit = isFrequent ? frequent[(bits >> 2) % frequent.size()]
                          : static_cast<char16_t>(bits >> 16);
    }
    return text;
}

}  // namespace orvane::test
