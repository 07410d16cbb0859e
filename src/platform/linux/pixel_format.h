#pragma once

#include "platform/gdi32.h"

#include <cstdint>
#include <span>
#include <vector>

namespace orvane::platform {

/// How the pixels of a row are stored: 1, 4 and 8 bits are indices into a palette (leftmost pixel
/// in the highest bits), 16 and 32 bits little-endian numbers with channel masks, 24 bits the bytes
/// blue, green, red.
///
/// Two forms of a pixel stand between formats: its raw number as stored, and its colour as
/// 0x00RRGGBB, the form of a palette entry too.
struct PixelFormat {
    std::uint32_t bits = 0;
    std::uint32_t redMask = 0;
    std::uint32_t greenMask = 0;
    std::uint32_t blueMask = 0;
    std::vector<std::uint32_t> palette;  ///< 2 to the `bits` entries; empty above 8 bits

    friend bool operator==(const PixelFormat&, const PixelFormat&) = default;

    bool isIndexed() const { return bits <= 8; }

    /// The format of a depth with the channels usual for it (16: 5-5-5) and a black palette.
    static PixelFormat ofDepth(std::uint32_t bits);

    /// The format that a header describes; `bits` is 0 when it is none that is known here. The
    /// compressions known are 0 (none) and, for 16 and 32 bits, 3 (masks in the colour table).
    static PixelFormat ofHeader(const BitmapInfo& info);
};

/// True for the depths that surfaces have: 1, 4, 8, 16, 24, 32.
bool isDepth(std::uint32_t bits);

/// Bytes of a row, padded to a multiple of 4.
std::uint64_t rowStride(std::uint32_t width, std::uint32_t bits);

/// Reads the raw numbers of `out.size()` pixels of a row from pixel `first` on.
void readRaw(const std::uint8_t* row, std::uint32_t bits, std::uint32_t first,
             std::span<std::uint32_t> out);

/// Writes raw numbers to a row from pixel `first` on; other pixels of the row stay.
void writeRaw(std::uint8_t* row, std::uint32_t bits, std::uint32_t first,
              std::span<const std::uint32_t> raw);

/// Turns raw numbers of `format` into colours, in place.
void toColors(const PixelFormat& format, std::span<std::uint32_t> pixels);

/// Turns colours into raw numbers of `format`, in place. With a palette the nearest entry is taken,
/// the first of several.
void fromColors(const PixelFormat& format, std::span<std::uint32_t> pixels);

}  // namespace orvane::platform
