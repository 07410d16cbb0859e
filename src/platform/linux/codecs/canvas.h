#pragma once

#include "platform/linux/codecs/codecs.h"

#include <cstdint>

namespace orvane::codecs {

inline uint8_t* canvasRow(const OrvaneCanvas& canvas, uint32_t y) {
    return canvas.pixels + static_cast<ptrdiff_t>(y) * canvas.stride;
}

/// Colour channels beside an alpha channel: as they are, or multiplied by it already.
enum class AlphaKind { straight, premultiplied };

/// Which of red and blue comes first.
enum class ChannelOrder { blueFirst, redFirst };

/// Paints `count` pixels of three colours and alpha over those at `to`, rounding to the nearest.
void blendRow(uint8_t* to, const uint8_t* from, uint32_t count, AlphaKind kind,
              ChannelOrder order = ChannelOrder::blueFirst);

/// Stores `count` pixels of red, green and blue, three bytes each, at `to`.
void storeRow(uint8_t* to, const uint8_t* from, uint32_t count);

}  // namespace orvane::codecs
