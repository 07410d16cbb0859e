#pragma once

#include "platform/linux/codecs/codecs.h"

#include <cstdint>
#include <span>

namespace orvane::codecs {

/// Unpacks the run lengths of a BMP (RLE4 or RLE8, told by the depth of `out`) into `out`, a bitmap
/// of zeroes.
///
/// Runs are cut at the right edge. Pixels that no run reaches keep index 0: those jumped over,
/// those behind an end of line, and all that is left when the data ends early. May throw bad_alloc.
void unpackRle(std::span<const uint8_t> data, OrvaneDecoded& out);

}  // namespace orvane::codecs
