#pragma once

#include "rgb_image.h"

#include <cstdint>
#include <span>
#include <vector>

namespace orvane::tool {

/// Turns a BMP file into a binary PPM file (P6, 8 bits a channel, rows from the top).
///
/// The BMP has a header of 40 bytes or one of its longer forms, 1, 4, 8, 16, 24 or 32 bits a pixel,
/// rows from either end, and no compression except channel masks. An index behind the colour table
/// is black; a fourth channel is left out. Throws Failure for any other file, and for one that is
/// shorter than its header says.
std::vector<std::uint8_t> ppmFromBmp(std::span<const std::uint8_t> bmp);

/// The pixels of such a BMP file. Throws Failure as above.
RgbImage rgbFromBmp(std::span<const std::uint8_t> bmp);

}  // namespace orvane::tool
