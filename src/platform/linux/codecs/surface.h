#pragma once

#include "platform/linux/codecs/codecs.h"

#include <cstddef>
#include <cstdint>
#include <span>

namespace orvane::codecs {

/// What one decoding may take. Every decoder checks it before it asks for memory.
struct Limits {
    /// Bytes of one surface.
    uint64_t surfaceBytes = INT32_MAX;
    /// Bytes that a library may use beside the surface (JPEG's coefficients).
    uint64_t workBytes = uint64_t{1} << 30;
};

/// Bytes of a row of `width` pixels, without padding.
inline uint64_t rowBytes(uint64_t width, uint32_t bitsPerPixel) {
    return (width * bitsPerPixel + 7) / 8;
}

/// Bytes of a row of `width` pixels, padded to a multiple of 4.
inline uint64_t paddedRowBytes(uint64_t width, uint32_t bitsPerPixel) {
    return (rowBytes(width, bitsPerPixel) + 3) & ~uint64_t{3};
}

/// Makes `out` a bitmap of the size given, every byte of it zero, with the channel masks usual for
/// its depth. Gives OK or OUT_OF_MEMORY.
OrvaneCodecResult makeBitmap(OrvaneDecoded& out, uint32_t width, uint32_t height,
                             uint32_t bitsPerPixel, const Limits& limits);

/// Gives `out`, a bitmap of 32 bits, a mask of zeroes. Gives OK or OUT_OF_MEMORY.
OrvaneCodecResult addMask(OrvaneDecoded& out, const Limits& limits);

/// Keeps a copy of the file in `out`. Gives OK or OUT_OF_MEMORY.
OrvaneCodecResult keepFile(OrvaneDecoded& out, std::span<const uint8_t> file);

/// First byte of row `y` from the top.
inline uint8_t* pixelRow(OrvaneDecoded& out, uint32_t y) {
    return out.pixels + static_cast<size_t>(y) * out.stride;
}

/// Sets palette entry `index`.
void setColour(OrvaneDecoded& out, uint32_t index, uint8_t red, uint8_t green, uint8_t blue);

/// Zeroes `decoded`, the bytes between its fields included.
void clear(OrvaneDecoded& decoded);

/// Frees all memory of `decoded` and zeroes it.
void release(OrvaneDecoded& decoded);

}  // namespace orvane::codecs
