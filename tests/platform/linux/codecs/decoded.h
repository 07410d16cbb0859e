#pragma once

#include "platform/linux/codecs/bytes.h"
#include "platform/linux/codecs/decoders.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstring>
#include <memory>
#include <span>
#include <vector>

namespace orvane::codecs::test {

struct Colour {
    int red;
    int green;
    int blue;

    bool operator==(const Colour&) const = default;
};

inline void PrintTo(const Colour& colour, std::ostream* to) {
    *to << '(' << colour.red << ' ' << colour.green << ' ' << colour.blue << ')';
}

/// A file's decoding, freed with it.
class Decoded {
public:
    explicit Decoded(std::span<const uint8_t> file, const Limits& limits = {})
        : result(decodeAny(file, picture, limits)) {}
    explicit Decoded(const Bytes& file, const Limits& limits = {})
        : Decoded(std::span(file.data()), limits) {}
    Decoded(const Decoded&) = delete;
    Decoded& operator=(const Decoded&) = delete;
    ~Decoded() { release(picture); }

    /// Palette index of a pixel of 1, 4 or 8 bits.
    int index(int x, int y) const {
        const int bits = picture.bitsPerPixel;
        const int perByte = 8 / bits;
        const int shift = (perByte - 1 - x % perByte) * bits;
        return at(y, x / perByte) >> shift & ((1 << bits) - 1);
    }

    /// Colour of a pixel of any depth.
    Colour colour(int x, int y) const {
        const int depth = picture.kind == ORVANE_PICTURE_ICON ? 32 : picture.bitsPerPixel;
        if (depth <= 8) return paletteColour(index(x, y));
        if (depth == 16) {
            const auto pixel = static_cast<uint32_t>(at(y, x * 2) | at(y, x * 2 + 1) << 8);
            return {channel(pixel, picture.redMask), channel(pixel, picture.greenMask),
                    channel(pixel, picture.blueMask)};
        }
        const int size = depth / 8;
        return {at(y, x * size + 2), at(y, x * size + 1), at(y, x * size)};
    }

    /// Fourth byte of a pixel of 32 bits.
    int alpha(int x, int y) const { return at(y, x * 4 + 3); }

    /// An icon's mask bit.
    int masked(int x, int y) const {
        return picture.mask[static_cast<size_t>(y) * picture.maskStride +
                            static_cast<size_t>(x / 8)] >>
                   (7 - x % 8) &
               1;
    }

    Colour paletteColour(int entry) const {
        const uint8_t* colour = picture.palette + static_cast<size_t>(entry) * 4;
        return {colour[2], colour[1], colour[0]};
    }

    OrvaneDecoded picture{};
    OrvaneCodecResult result;

private:
    int at(int y, int byte) const {
        return picture.pixels[static_cast<size_t>(y) * picture.stride + static_cast<size_t>(byte)];
    }

    static int channel(uint32_t pixel, uint32_t mask) {
        const int shift = std::countr_zero(mask);
        const auto top = static_cast<int>(mask >> shift);
        return (static_cast<int>((pixel & mask) >> shift) * 255 + top / 2) / top;
    }
};

/// Decodes every beginning of the file. Each sits in memory of its own, so that a read behind its
/// end is seen. The first `mustFail` of them have to be refused; all that are refused leave
/// nothing.
inline void decodeEveryBeginning(const Bytes& file, size_t mustFail) {
    for (size_t length = 0; length < file.size(); ++length) {
        const auto start = std::make_unique<uint8_t[]>(length);
        std::copy_n(file.data().data(), length, start.get());
        const Decoded decoded(std::span<const uint8_t>(start.get(), length));
        if (length < mustFail) {
            EXPECT_NE(decoded.result, ORVANE_CODEC_OK) << "the first " << length << " bytes";
        }
        if (decoded.result != ORVANE_CODEC_OK) {
            const OrvaneDecoded nothing{};
            EXPECT_EQ(std::memcmp(&decoded.picture, &nothing, sizeof nothing), 0) << length;
        }
    }
}

}  // namespace orvane::codecs::test
