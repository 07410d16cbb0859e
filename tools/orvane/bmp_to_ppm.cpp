#include "bmp_to_ppm.h"

#include "system.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstdlib>
#include <string>

namespace orvane::tool {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t kFileHeader = 14;
constexpr std::size_t kInfoHeader = 40;
/// What memory of 32 bits can hold three bytes each of.
constexpr std::uint64_t kMostPixels = 0x7FFF0000 / 3;
constexpr std::uint32_t kUncompressed = 0;
constexpr std::uint32_t kCompressionMasks = 3;

std::uint32_t number(Bytes bytes, std::size_t at, std::size_t size) {
    if (at > bytes.size() || bytes.size() - at < size) throw Failure("the bitmap is cut short");
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i) {
        value |= std::uint32_t{bytes[at + i]} << (8 * i);
    }
    return value;
}

std::uint32_t u16(Bytes bytes, std::size_t at) {
    return number(bytes, at, 2);
}

std::uint32_t u32(Bytes bytes, std::size_t at) {
    return number(bytes, at, 4);
}

/// Where a channel lies in a pixel, and its values from 0 to 255.
class Channel {
public:
    Channel() = default;
    explicit Channel(std::uint32_t mask) {
        if (mask == 0) return;
        // Of a channel with more than 8 bits the upper 8 count.
        const int width = 32 - std::countl_zero(mask) - std::countr_zero(mask);
        shift_ = std::countr_zero(mask) + std::max(width - 8, 0);
        most_ = mask >> shift_;
        for (std::uint32_t value = 0; value <= most_; ++value) {
            values_[value] = static_cast<std::uint8_t>((value * 255 + most_ / 2) / most_);
        }
    }

    std::uint8_t of(std::uint32_t pixel) const { return values_[pixel >> shift_ & most_]; }

private:
    int shift_ = 0;
    std::uint32_t most_ = 0;
    std::array<std::uint8_t, 256> values_{};
};

struct Bitmap {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    bool fromTop = false;
    std::uint32_t bits = 0;
    std::array<Channel, 3> channels;  ///< red, green, blue, for 16 and 32 bits
    std::array<std::array<std::uint8_t, 3>, 256> palette{};
    std::size_t stride = 0;
    Bytes rows;
};

void readChannels(Bytes bmp, bool masks, Bitmap& bitmap) {
    std::array<std::uint32_t, 3> mask = {0xFF0000, 0xFF00, 0xFF};
    if (bitmap.bits == 16) mask = {0x7C00, 0x3E0, 0x1F};
    for (std::size_t i = 0; i < 3; ++i) {
        if (masks) mask[i] = u32(bmp, kFileHeader + kInfoHeader + 4 * i);
        bitmap.channels[i] = Channel(mask[i]);
    }
}

void readPalette(Bytes bmp, std::size_t at, std::size_t end, Bitmap& bitmap) {
    const std::size_t given = u32(bmp, kFileHeader + 32);
    const std::size_t all = std::size_t{1} << bitmap.bits;
    const std::size_t room = end > at ? (end - at) / 4 : 0;
    const std::size_t count = std::min(given == 0 ? all : std::min(given, all), room);
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint32_t entry = u32(bmp, at + 4 * i);
        bitmap.palette[i] = {static_cast<std::uint8_t>(entry >> 16),
                             static_cast<std::uint8_t>(entry >> 8),
                             static_cast<std::uint8_t>(entry)};
    }
}

void readSize(Bytes bmp, Bitmap& bitmap) {
    const auto width = static_cast<std::int32_t>(u32(bmp, kFileHeader + 4));
    const std::int64_t height = static_cast<std::int32_t>(u32(bmp, kFileHeader + 8));
    if (width <= 0 || height == 0) throw Failure("the bitmap is empty");
    bitmap.width = static_cast<std::uint32_t>(width);
    bitmap.height = static_cast<std::uint32_t>(std::abs(height));
    bitmap.fromTop = height < 0;
}

void readFormat(Bytes bmp, std::size_t pixels, Bitmap& bitmap) {
    const std::size_t header = u32(bmp, kFileHeader);
    const std::uint32_t compression = u32(bmp, kFileHeader + 16);
    bitmap.bits = u16(bmp, kFileHeader + 14);
    constexpr std::array<std::uint32_t, 6> kDepths = {1, 4, 8, 16, 24, 32};
    const bool inWords = bitmap.bits == 16 || bitmap.bits == 32;
    const bool masks = compression == kCompressionMasks && inWords;
    if (header < kInfoHeader || std::ranges::find(kDepths, bitmap.bits) == kDepths.end() ||
        (compression != kUncompressed && !masks)) {
        throw Failure("a bitmap of this kind can't be converted");
    }
    if (inWords) readChannels(bmp, masks, bitmap);
    if (bitmap.bits <= 8) readPalette(bmp, kFileHeader + header, pixels, bitmap);
}

Bitmap readBitmap(Bytes bmp) {
    if (u16(bmp, 0) != 0x4D42) throw Failure("the picture is no bitmap");
    const std::size_t pixels = u32(bmp, 10);
    Bitmap bitmap;
    readSize(bmp, bitmap);
    readFormat(bmp, pixels, bitmap);
    const std::uint64_t stride = (std::uint64_t{bitmap.width} * bitmap.bits + 31) / 32 * 4;
    if (pixels > bmp.size() || (bmp.size() - pixels) / stride < bitmap.height) {
        throw Failure("the bitmap is cut short");
    }
    bitmap.stride = static_cast<std::size_t>(stride);
    bitmap.rows = bmp.subspan(pixels);
    return bitmap;
}

void convertIndexed(const Bitmap& bitmap, const std::uint8_t* from, std::uint8_t* to) {
    const std::uint32_t perByte = 8 / bitmap.bits;
    const std::uint32_t most = (1u << bitmap.bits) - 1;
    for (std::uint32_t x = 0; x < bitmap.width; ++x) {
        const std::uint32_t shift = (perByte - 1 - x % perByte) * bitmap.bits;
        const std::uint32_t index = from[x / perByte];
        to = std::ranges::copy(bitmap.palette[index >> shift & most], to).out;
    }
}

void convertTriples(const Bitmap& bitmap, const std::uint8_t* from, std::uint8_t* to) {
    for (std::uint32_t x = 0; x < bitmap.width; ++x, from += 3) {
        for (const std::size_t channel : {2u, 1u, 0u})
            *to++ = from[channel];
    }
}

void convertWords(const Bitmap& bitmap, const std::uint8_t* from, std::uint8_t* to) {
    const std::size_t size = bitmap.bits / 8;
    for (std::uint32_t x = 0; x < bitmap.width; ++x, from += size) {
        std::uint32_t pixel = from[0] | std::uint32_t{from[1]} << 8;
        if (size == 4) pixel |= std::uint32_t{from[2]} << 16 | std::uint32_t{from[3]} << 24;
        for (const Channel& channel : bitmap.channels)
            *to++ = channel.of(pixel);
    }
}

/// Writes the rows one behind the other to `to`, three bytes a pixel.
void convertRows(const Bitmap& bitmap, std::uint8_t* to) {
    const std::size_t row = std::size_t{bitmap.width} * 3;
    const auto convert = bitmap.bits <= 8    ? convertIndexed
                         : bitmap.bits == 24 ? convertTriples
                                             : convertWords;
    for (std::uint32_t y = 0; y < bitmap.height; ++y) {
        const std::size_t source = bitmap.fromTop ? y : bitmap.height - 1 - y;
        convert(bitmap, bitmap.rows.data() + source * bitmap.stride, to + row * y);
    }
}

/// The bitmap, when memory can hold three bytes for each of its pixels.
Bitmap readConvertible(Bytes bmp) {
    Bitmap bitmap = readBitmap(bmp);
    const std::uint64_t pixels = std::uint64_t{bitmap.width} * bitmap.height;
    if (pixels > kMostPixels) throw Failure("the bitmap is too large");
    return bitmap;
}

}  // namespace

std::vector<std::uint8_t> ppmFromBmp(Bytes bmp) {
    const Bitmap bitmap = readConvertible(bmp);
    const std::string header =
        "P6\n" + std::to_string(bitmap.width) + " " + std::to_string(bitmap.height) + "\n255\n";
    std::vector<std::uint8_t> ppm(header.begin(), header.end());
    ppm.resize(header.size() + std::size_t{bitmap.width} * 3 * bitmap.height);
    convertRows(bitmap, ppm.data() + header.size());
    return ppm;
}

RgbImage rgbFromBmp(Bytes bmp) {
    const Bitmap bitmap = readConvertible(bmp);
    RgbImage image(bitmap.width, bitmap.height);
    static_assert(sizeof(Rgb) == 3);
    convertRows(bitmap, &image.pixels.front().red);
    return image;
}

}  // namespace orvane::tool
