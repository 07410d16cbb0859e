#include "platform/linux/codecs/canvas.h"

#include <bit>
#include <cstring>

namespace orvane::codecs {

namespace {

static_assert(std::endian::native == std::endian::little, "pixels are read as numbers");

// The four channels of a pixel, each in 16 bits of a number: one multiplication is for all.
constexpr uint64_t kLow = 0x00ff00ff00ff00ff;
constexpr uint64_t kOne = 0x0001000100010001;
constexpr uint64_t kColours = 0x0000ffffffffffff;

uint32_t load(const uint8_t* from) {
    uint32_t pixel = 0;
    std::memcpy(&pixel, from, sizeof pixel);
    return pixel;
}

void store(uint8_t* to, uint32_t pixel) {
    std::memcpy(to, &pixel, sizeof pixel);
}

uint32_t swapped(uint32_t pixel) {
    return std::rotr(__builtin_bswap32(pixel), 8);
}

uint64_t spread(uint32_t pixel) {
    const uint64_t halves = (pixel & 0xffff) | uint64_t{pixel >> 16} << 32;
    return (halves | halves << 8) & kLow;
}

uint32_t gathered(uint64_t channels) {
    const uint64_t halves = (channels | channels >> 8) & 0x0000ffff0000ffff;
    return static_cast<uint32_t>(halves | halves >> 16);
}

/// Products of two bytes over 255, rounded to the nearest; exact.
uint64_t over255(uint64_t products) {
    const uint64_t half = products + 128 * kOne;
    return (half + (half >> 8 & kLow)) >> 8 & kLow;
}

/// Sums of two bytes, 255 at most.
uint64_t atMost255(uint64_t sums) {
    return (sums | (sums >> 8 & kOne) * 255) & kLow;
}

template <AlphaKind kind, ChannelOrder order>
void blend(uint8_t* to, const uint8_t* from, uint32_t count) {
    for (uint32_t x = 0; x < count; ++x, to += 4, from += 4) {
        const uint32_t stored = load(from);
        const uint32_t alpha = stored >> 24;
        if (alpha == 0 && kind == AlphaKind::straight) continue;
        const uint32_t pixel = order == ChannelOrder::redFirst ? swapped(stored) : stored;
        if (alpha == 255) {
            store(to, pixel & 0xffffff);
            continue;
        }
        const uint64_t own =
            kind == AlphaKind::straight ? over255(spread(pixel) * alpha) : spread(pixel);
        const uint64_t under = over255(spread(load(to)) * (255 - alpha));
        store(to, gathered(atMost255(own + under) & kColours));
    }
}

}  // namespace

void blendRow(uint8_t* to, const uint8_t* from, uint32_t count, AlphaKind kind,
              ChannelOrder order) {
    const bool straight = kind == AlphaKind::straight;
    if (order == ChannelOrder::blueFirst) {
        if (straight) blend<AlphaKind::straight, ChannelOrder::blueFirst>(to, from, count);
        else blend<AlphaKind::premultiplied, ChannelOrder::blueFirst>(to, from, count);
    } else {
        if (straight) blend<AlphaKind::straight, ChannelOrder::redFirst>(to, from, count);
        else blend<AlphaKind::premultiplied, ChannelOrder::redFirst>(to, from, count);
    }
}

void storeRow(uint8_t* to, const uint8_t* from, uint32_t count) {
    if (count == 0) return;
    // The fourth byte read is the next pixel's and shifted out; the last one has no next.
    for (uint32_t x = 0; x + 1 < count; ++x, to += 4, from += 3)
        store(to, __builtin_bswap32(load(from)) >> 8);
    const uint8_t last[4] = {from[2], from[1], from[0], 0};
    std::memcpy(to, last, sizeof last);
}

}  // namespace orvane::codecs
