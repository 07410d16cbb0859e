#include "platform/linux/codecs/tiff_samples.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <cstring>

namespace orvane::codecs {

namespace {

uint32_t pixel(uint32_t red, uint32_t green, uint32_t blue) {
    return red << 16 | green << 8 | blue;
}

void store(uint8_t* to, uint32_t value) {
    std::memcpy(to, &value, sizeof value);
}
static_assert(std::endian::native == std::endian::little);

/// A number between 0 and 1 of 16 bits as a channel: 1 bit sign, 5 exponent, 10 fraction.
uint8_t channelOfFloat(uint16_t half) {
    const int exponent = half >> 10 & 31;
    const double fraction = half & 1023;
    if ((half & 0x8000) != 0) return 0;
    if (exponent == 31) return fraction == 0 ? 255 : 0;
    const double value =
        exponent == 0 ? std::ldexp(fraction, -24) : std::ldexp(1024 + fraction, exponent - 25);
    return static_cast<uint8_t>(std::lround(std::min(value, 1.0) * 255));
}

/// Samples that don't end with a byte, leftmost in the highest bits: the upper 8 bits of larger
/// ones, smaller ones as they are.
void unpackBits(const uint8_t* from, uint32_t bits, size_t count, uint8_t* to) {
    const uint32_t most = (1u << bits) - 1;
    const uint32_t cut = bits > 8 ? bits - 8 : 0;
    uint32_t held = 0;
    uint32_t have = 0;
    for (size_t i = 0; i < count; ++i) {
        while (have < bits) {
            held = held << 8 | *from++;
            have += 8;
        }
        have -= bits;
        to[i] = static_cast<uint8_t>((held >> have & most) >> cut);
    }
}

/// Eight bits of ink each, 255 being full: what is left of the light.
void inksToPixel(const uint8_t* inks, uint8_t* to, uint8_t fourth) {
    const uint32_t paper = 255u - inks[3];
    const uint8_t colours[3] = {static_cast<uint8_t>((255u - inks[2]) * paper / 255),
                                static_cast<uint8_t>((255u - inks[1]) * paper / 255),
                                static_cast<uint8_t>((255u - inks[0]) * paper / 255)};
    std::memcpy(to, colours, sizeof colours);
    to[3] = fourth;
}

void fillGrey(const TiffLayout& layout, std::array<uint32_t, 256>& pixels) {
    const uint32_t most = (1u << std::min(layout.bits, 8u)) - 1;
    for (uint32_t value = 0; value <= most; ++value) {
        const uint32_t level = (layout.whiteIsZero ? most - value : value) * 255 / most;
        pixels[value] = pixel(level, level, level);
    }
}

/// Colour maps have 16 bits a channel; those of writers that put 8 bits there are told by having
/// nothing above.
void fillPalette(const TiffFile& file, const TiffLayout& layout,
                 std::array<uint32_t, 256>& pixels) {
    uint16_t* red = nullptr;
    uint16_t* green = nullptr;
    uint16_t* blue = nullptr;
    if (TIFFGetField(file.get(), TIFFTAG_COLORMAP, &red, &green, &blue) == 0) return;
    const size_t count = size_t{1} << layout.bits;
    uint32_t all = 0;
    for (size_t i = 0; i < count; ++i)
        all |= static_cast<uint32_t>(red[i] | green[i] | blue[i]);
    const uint32_t shift = all > 255 ? 8 : 0;
    const auto byte = [shift](uint16_t channel) { return uint32_t{channel} >> shift & 255; };
    for (size_t i = 0; i < count; ++i)
        pixels[i] = pixel(byte(red[i]), byte(green[i]), byte(blue[i]));
}

}  // namespace

TiffSamples::TiffSamples(const TiffFile& file, const TiffLayout& layout) : layout_(layout) {
    if (layout.colours == TiffColours::palette) fillPalette(file, layout, pixelOf_);
    if (layout.colours == TiffColours::grey) fillGrey(layout, pixelOf_);
}

/// The samples of a row as bytes: indices and grey of up to 8 bits as they are, all else from 0 to
/// 255.
const uint8_t* TiffSamples::toBytes(const uint8_t* row, size_t count) {
    if (layout_.bits == 8) return row;
    bytes_.resize(count);
    if (layout_.bits == 16) {
        for (size_t i = 0; i < count; ++i) {
            uint16_t value = 0;
            std::memcpy(&value, row + i * 2, sizeof value);
            bytes_[i] = layout_.floats ? channelOfFloat(value) : static_cast<uint8_t>(value >> 8);
        }
        return bytes_.data();
    }
    unpackBits(row, layout_.bits, count, bytes_.data());
    if (layout_.bits < 8 && layout_.colours == TiffColours::rgb) {
        const uint32_t most = (1u << layout_.bits) - 1;
        for (uint8_t& byte : bytes_)
            byte = static_cast<uint8_t>(byte * 255u / most);
    }
    return bytes_.data();
}

void TiffSamples::unpack(const uint8_t* row, uint32_t count, uint8_t* pixels) {
    const uint32_t samples = layout_.samples;
    const uint8_t* from = toBytes(row, size_t{count} * samples);
    uint8_t* const end = pixels + size_t{count} * 4;
    switch (layout_.colours) {
    case TiffColours::grey:
    case TiffColours::palette:
        if (layout_.alpha) {
            for (; pixels < end; pixels += 4, from += 2)
                store(pixels, pixelOf_[from[0]] | uint32_t{from[1]} << 24);
        } else {
            for (; pixels < end; pixels += 4, ++from)
                store(pixels, pixelOf_[*from]);
        }
        break;
    case TiffColours::cmyk:
        for (; pixels < end; pixels += 4, from += samples)
            inksToPixel(from, pixels, layout_.alpha ? from[4] : uint8_t{0});
        break;
    case TiffColours::rgb:
    case TiffColours::converted:
        if (layout_.alpha) {
            for (; pixels < end; pixels += 4, from += 4)
                store(pixels, pixel(from[0], from[1], from[2]) | uint32_t{from[3]} << 24);
        } else {
            storeRow(pixels, from, count);
        }
        break;
    }
}

void TiffSamples::unpackPlane(const uint8_t* row, uint32_t count, uint32_t sample,
                              uint8_t* pixels) {
    const uint8_t* from = toBytes(row, count);
    uint8_t* const end = pixels + size_t{count} * 4;
    if (layout_.colours == TiffColours::grey && sample == 0) {
        for (; pixels < end; pixels += 4, ++from)
            store(pixels, pixelOf_[*from] | uint32_t{pixels[3]} << 24);
        return;
    }
    // Red, green, blue and alpha, or four inks, which stay in their order until `finish`.
    constexpr std::array<uint8_t, 4> kPlaces = {2, 1, 0, 3};
    pixels += layout_.colours == TiffColours::grey ? 3 : kPlaces[sample];
    for (; pixels < end; pixels += 4, ++from)
        *pixels = *from;
}

void TiffSamples::finish(uint32_t count, uint8_t* pixels) const {
    if (layout_.colours != TiffColours::cmyk) return;
    for (uint32_t x = 0; x < count; ++x, pixels += 4) {
        const uint8_t inks[4] = {pixels[2], pixels[1], pixels[0], pixels[3]};
        inksToPixel(inks, pixels, 0);
    }
}

}  // namespace orvane::codecs
