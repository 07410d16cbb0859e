#pragma once

#include "rgb_image.h"

#include <cstdint>
#include <span>

namespace orvane::tool {

/// The pixels of an ICO or CUR file over a ground of one colour: by the alpha channel of an image
/// that has any, else by its mask.
///
/// Of several images the largest is taken, of those that are bitmaps with a header of 40 bytes and
/// without compression; PNG images are passed over. Throws Failure when there is none.
RgbImage rgbFromIcon(std::span<const std::uint8_t> icon, Rgb ground);

}  // namespace orvane::tool
