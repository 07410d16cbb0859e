#pragma once

#include "frame/values/array.h"

#include <array>
#include <cstdint>
#include <optional>

namespace orvane {

/// What a decoder makes of a file.
struct DecodedImage {
    std::int32_t Width = 0;
    std::int32_t Height = 0;
    std::int32_t BitsPerPixel = 0;
    /// 256 entries of blue, green, red and 0, for 8 bits per pixel only.
    std::optional<std::array<std::uint32_t, 256>> Palette;
    /// Indices from 1: rows from the top, each `GetRowStride` bytes long; 24-bit pixels in blue,
    /// green, red order, 8-bit pixels as palette indices.
    Array<std::uint8_t> Pixels;
};

}  // namespace orvane
