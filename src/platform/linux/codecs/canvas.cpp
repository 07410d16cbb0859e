#include "platform/linux/codecs/canvas.h"

#include <algorithm>
#include <cstring>

namespace orvane::codecs {

namespace {

/// A product of two channels, rounded to the nearest; exact for the products of bytes.
uint32_t over255(uint32_t product) {
    return (product + 128 + ((product + 128) >> 8)) >> 8;
}

}  // namespace

void blendRow(uint8_t* to, const uint8_t* from, uint32_t count, AlphaKind kind) {
    for (uint32_t x = 0; x < count; ++x, to += 4, from += 4) {
        const uint32_t alpha = from[3];
        if (alpha == 0 && kind == AlphaKind::straight) continue;
        const uint32_t own = kind == AlphaKind::straight ? alpha : 255;
        for (int channel = 0; channel < 3; ++channel) {
            const uint32_t sum =
                over255(from[channel] * own) + over255(to[channel] * (255 - alpha));
            to[channel] = static_cast<uint8_t>(std::min(sum, 255u));
        }
        to[3] = 0;
    }
}

}  // namespace orvane::codecs
