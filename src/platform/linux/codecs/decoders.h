#pragma once

#include "platform/linux/codecs/codecs.h"
#include "platform/linux/codecs/surface.h"

#include <cstdint>
#include <span>

// One reader per format. `is...` tells by the first bytes, of which `kSignatureBytes` are enough,
// whether a file is of the format at all. The reader takes a whole file and a zeroed `out`, and
// gives NOT_RECOGNISED when it isn't. After any result but OK, and after bad_alloc, which some
// throw, `out` may hold memory: `release` it. decodeAny sees to both.

namespace orvane::codecs {

/// As much of a file's start as any signature needs.
inline constexpr size_t kSignatureBytes = 64;

bool isBmp(std::span<const uint8_t> start);
bool isIcon(std::span<const uint8_t> start);
bool isJpeg(std::span<const uint8_t> start);
bool isGif(std::span<const uint8_t> start);
bool isMetafile(std::span<const uint8_t> start);

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

/// Whether any reader knows a file that starts so.
bool isAny(std::span<const uint8_t> start);

/// Whichever of the above recognises the file. `out` is released after any result but OK.
OrvaneCodecResult decodeAny(std::span<const uint8_t> file, OrvaneDecoded& out,
                            const Limits& limits);

}  // namespace orvane::codecs
