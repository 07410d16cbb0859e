#pragma once

#include "frame/binary_file.h"
#include "frame/values/picture.h"
#include "pictures/DecodedImage.h"

#include <cstdint>

/// What the decoders share: from decoded pixels to a `Picture`, and small arithmetic.
namespace orvane {

/// A 24-bit `Picture` of an image, whatever the depth of the screen; a palette is applied on the
/// way. Raises 51 when the platform can't make the bitmap (a picture too large for the system).
Picture CreatePictureFromImage(const DecodedImage& image);

/// Bytes per row, padded to a multiple of 4: for 8 and 24 bits per pixel; 0 for anything else.
std::int32_t GetRowStride(std::int32_t width, std::int32_t bitsPerPixel);

/// `value` times 2 to the `count`, through floating point; raises 6 outside 32 bits.
std::int32_t ShiftLeft(std::int32_t value, std::int32_t count);

/// `value` divided by 2 to the `count`, toward zero; raises 6 when that power is above 32 bits.
std::int32_t ShiftRight(std::int32_t value, std::int32_t count);

/// Two bytes as a number, with `littleEndian` the second one as the high byte. It goes into a
/// 16-bit field: raises 6 from 32768 on.
std::int16_t ReadWord(BinaryFile& file, bool littleEndian);

}  // namespace orvane
