#pragma once

#include "platform/linux/codecs/codecs.h"
#include "platform/linux/codecs/surface.h"

#include <cstdint>
#include <span>

// One reader per format. Each takes a whole file and a zeroed `out`, and gives NOT_RECOGNISED when
// the file's signature is another one. After any result but OK, and after bad_alloc, which some
// throw, `out` may hold memory: `release` it. decodeAny sees to both.

namespace orvane::codecs {

/// BMP with any header from OS/2 1.x to version 5; see bmp.cpp for the variants.
OrvaneCodecResult decodeBmp(std::span<const uint8_t> file, OrvaneDecoded& out,
                            const Limits& limits);

/// ICO and CUR; see icon.cpp for which image of a file is taken.
OrvaneCodecResult decodeIcon(std::span<const uint8_t> file, OrvaneDecoded& out,
                             const Limits& limits);

/// JPEG: sequential, progressive and arithmetic, of 1, 3 or 4 channels; always 24 bits deep.
OrvaneCodecResult decodeJpeg(std::span<const uint8_t> file, OrvaneDecoded& out,
                             const Limits& limits);

/// GIF: the first frame, as a bitmap with a palette of 1, 4 or 8 bits.
OrvaneCodecResult decodeGif(std::span<const uint8_t> file, OrvaneDecoded& out,
                            const Limits& limits);

/// WMF with a placeable header, and EMF.
OrvaneCodecResult decodeMetafile(std::span<const uint8_t> file, OrvaneDecoded& out,
                                 const Limits& limits);

/// Whichever of the above recognises the file. `out` is released after any result but OK.
OrvaneCodecResult decodeAny(std::span<const uint8_t> file, OrvaneDecoded& out,
                            const Limits& limits);

}  // namespace orvane::codecs
