#pragma once

#include "platform/linux/codecs/tiff_layout.h"

#include <array>
#include <cstdint>
#include <vector>

namespace orvane::codecs {

/// Turns rows of samples, as libtiff gives them, into pixels of blue, green, red and a fourth byte:
/// the alpha channel, or 0 where there is none.
class TiffSamples {
public:
    /// The colour map is read from the file.
    TiffSamples(const TiffFile& file, const TiffLayout& layout);

    /// A row of `count` pixels with their samples side by side.
    void unpack(const uint8_t* row, uint32_t count, uint8_t* pixels);
    /// A row of `count` samples of one plane into their place in the pixels. The colours of inks
    /// are no colours before `finish`.
    void unpackPlane(const uint8_t* row, uint32_t count, uint32_t sample, uint8_t* pixels);
    /// Makes colours of inks, once all planes are there.
    void finish(uint32_t count, uint8_t* pixels) const;

private:
    const uint8_t* toBytes(const uint8_t* row, size_t count);

    const TiffLayout& layout_;
    /// The pixel of each index or value of grey, for samples of 8 bits at most.
    std::array<uint32_t, 256> pixelOf_{};
    std::vector<uint8_t> bytes_;
};

}  // namespace orvane::codecs
