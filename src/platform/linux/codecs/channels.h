#pragma once

#include <array>
#include <cstdint>

namespace orvane::codecs {

/// Where a pixel of 16 or 32 bits has its channels. A mask of 0 means that the channel isn't there.
struct ChannelMasks {
    uint32_t red = 0;
    uint32_t green = 0;
    uint32_t blue = 0;
    uint32_t alpha = 0;
};

/// Takes one channel out of a pixel and scales it to another number of bits.
class Channel {
public:
    /// The channel under `mask`, one run of bits (see `isRun`), scaled to `bits` bits (1 to 8).
    /// Without a mask every pixel has the value `absent`. Of a channel wider than 8 bits the upper
    /// 8 count.
    Channel(uint32_t mask, uint32_t bits, uint8_t absent);

    uint32_t operator()(uint32_t pixel) const { return scaled_[(pixel >> shift_) & keep_]; }

    /// Whether the set bits of `mask` are one unbroken run; 0 is one too.
    static bool isRun(uint32_t mask);

private:
    uint32_t shift_ = 0;
    uint32_t keep_ = 0;
    std::array<uint8_t, 256> scaled_{};
};

/// The four channels of a pixel.
struct Channels {
    Channel red;
    Channel green;
    Channel blue;
    Channel alpha;

    /// Scaled to the bits given for red and blue, for green, and to 8 for alpha. Alpha is 255 where
    /// the masks have none.
    Channels(const ChannelMasks& masks, uint32_t redBlueBits, uint32_t greenBits)
        : red(masks.red, redBlueBits, 0), green(masks.green, greenBits, 0),
          blue(masks.blue, redBlueBits, 0), alpha(masks.alpha, 8, 255) {}
};

}  // namespace orvane::codecs
