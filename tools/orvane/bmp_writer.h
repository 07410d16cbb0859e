#pragma once

#include "rgb_image.h"

#include <cstdint>
#include <vector>

namespace orvane::tool {

/// The image as a BMP file: a header of 40 bytes, 24 bits a pixel, rows from the bottom.
std::vector<std::uint8_t> bmpFromRgb(const RgbImage& image);

}  // namespace orvane::tool
