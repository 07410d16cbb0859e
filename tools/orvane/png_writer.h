#pragma once

#include "rgb_image.h"

#include <cstdint>
#include <vector>

namespace orvane::tool {

/// The image as a PNG file (ISO/IEC 15948): true colour of 8 bits, compressed by zlib.
std::vector<std::uint8_t> pngOf(const RgbImage& image);

}  // namespace orvane::tool
