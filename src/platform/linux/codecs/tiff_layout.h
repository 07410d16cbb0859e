#pragma once

#include "platform/linux/codecs/canvas.h"
#include "platform/linux/codecs/tiff_file.h"

#include <cstdint>

namespace orvane::codecs {

/// How the samples of a page become colours.
enum class TiffColours { grey, palette, rgb, cmyk, converted };

/// What the tags of a page say, checked for sense and for being read here.
struct TiffLayout {
    uint32_t width = 0;
    uint32_t height = 0;
    uint32_t bits = 0;     ///< of a sample, 1 to 16
    uint32_t samples = 0;  ///< of a pixel
    TiffColours colours = TiffColours::grey;
    bool whiteIsZero = false;
    bool separate = false;  ///< each sample in a plane of its own
    bool tiled = false;
    bool floats = false;  ///< samples are floating-point numbers of 16 bits
    /// Whether the first sample behind the colours is an alpha channel, and of which kind.
    bool alpha = false;
    AlphaKind alphaKind = AlphaKind::straight;
    uint32_t pixelFormat = 0;

    /// Samples that are colours.
    uint32_t colourSamples() const;
    /// Those and the alpha channel.
    uint32_t usedSamples() const { return colourSamples() + (alpha ? 1 : 0); }
};

/// Reads the first page's tags. Gives OK, DAMAGED, UNSUPPORTED or OUT_OF_MEMORY. Has libtiff
/// convert what is stored as JPEG with brightness and two colour differences.
OrvaneCodecResult readTiffLayout(const TiffFile& file, const Limits& limits, TiffLayout& layout);

}  // namespace orvane::codecs
