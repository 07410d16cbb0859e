#pragma once

#include <cstddef>
#include <cstdint>

namespace orvane {

/// `count` pixels of 24 bits at `target` from as many bytes of each colour.
void interleave(const std::uint8_t* blue, const std::uint8_t* green, const std::uint8_t* red,
                std::uint8_t* target, std::size_t count);

}  // namespace orvane
