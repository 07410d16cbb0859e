#include "platform/linux/pixel_format.h"

#include <algorithm>
#include <bit>
#include <limits>

namespace orvane::platform {

namespace {

constexpr std::uint32_t kCompressionNone = 0;
constexpr std::uint32_t kCompressionMasks = 3;

/// One channel of a masked format: where it lies and how wide it is.
struct Channel {
    explicit Channel(std::uint32_t mask)
        : mask_(mask), shift_(mask == 0 ? 0 : static_cast<std::uint32_t>(std::countr_zero(mask))),
          most_(mask >> shift_) {}

    /// The channel's value on the scale of 0 to 255, rounded.
    std::uint32_t read(std::uint32_t raw) const {
        if (most_ == 0 || most_ == 255) {
            return (raw & mask_) >> shift_;
        }
        const std::uint64_t value = (raw & mask_) >> shift_;
        return static_cast<std::uint32_t>((value * 255 + most_ / 2) / most_);
    }
    /// The bits of a value of 0 to 255: its highest ones, as many as the channel is wide.
    std::uint32_t write(std::uint32_t value) const {
        const auto width = static_cast<std::uint32_t>(std::bit_width(most_));
        const std::uint64_t scaled =
            width >= 8 ? std::uint64_t{value} << (width - 8) : value >> (8 - width);
        return static_cast<std::uint32_t>(scaled << shift_) & mask_;
    }

private:
    std::uint32_t mask_;
    std::uint32_t shift_;
    std::uint32_t most_;
};

std::uint32_t distance(std::uint32_t one, std::uint32_t other) {
    std::uint32_t sum = 0;
    for (int shift = 0; shift < 24; shift += 8) {
        const int step =
            static_cast<int>((one >> shift) & 0xFF) - static_cast<int>((other >> shift) & 0xFF);
        sum += static_cast<std::uint32_t>(step * step);
    }
    return sum;
}

std::uint32_t nearest(const std::vector<std::uint32_t>& palette, std::uint32_t color) {
    std::uint32_t best = 0;
    std::uint32_t least = std::numeric_limits<std::uint32_t>::max();
    for (std::uint32_t i = 0; i < palette.size() && least != 0; ++i) {
        const std::uint32_t step = distance(palette[i], color);
        if (step < least) {
            least = step;
            best = i;
        }
    }
    return best;
}

}  // namespace

bool isDepth(std::uint32_t bits) {
    return bits == 1 || bits == 4 || bits == 8 || bits == 16 || bits == 24 || bits == 32;
}

std::uint64_t rowStride(std::uint32_t width, std::uint32_t bits) {
    return (std::uint64_t{width} * bits + 31) / 32 * 4;
}

PixelFormat PixelFormat::ofDepth(std::uint32_t bits) {
    PixelFormat format;
    format.bits = bits;
    if (bits == 16) {
        format.redMask = 0x7C00;
        format.greenMask = 0x03E0;
        format.blueMask = 0x001F;
    } else if (bits > 16) {
        format.redMask = 0xFF0000;
        format.greenMask = 0x00FF00;
        format.blueMask = 0x0000FF;
    } else {
        format.palette.resize(std::size_t{1} << bits);
    }
    return format;
}

PixelFormat PixelFormat::ofHeader(const BitmapInfo& info) {
    const bool masks =
        info.biCompression == kCompressionMasks && (info.biBitCount == 16 || info.biBitCount == 32);
    if (!isDepth(info.biBitCount) || (info.biCompression != kCompressionNone && !masks)) {
        return {};
    }
    PixelFormat format = ofDepth(info.biBitCount);
    if (masks) {
        format.redMask = info.bmiColors[0];
        format.greenMask = info.bmiColors[1];
        format.blueMask = info.bmiColors[2];
    }
    for (std::size_t i = 0; i < format.palette.size(); ++i) {
        format.palette[i] = info.bmiColors[i] & 0xFFFFFF;
    }
    return format;
}

void readRaw(const std::uint8_t* row, std::uint32_t bits, std::uint32_t first,
             std::span<std::uint32_t> out) {
    if (bits < 8) {
        const std::uint32_t mask = (1u << bits) - 1;
        for (std::size_t i = 0; i < out.size(); ++i) {
            const std::size_t bit = (first + i) * bits;
            out[i] = (static_cast<std::uint32_t>(row[bit / 8]) >> (8 - bits - bit % 8)) & mask;
        }
        return;
    }
    const std::size_t bytes = bits / 8;
    const std::uint8_t* at = row + first * bytes;
    for (std::uint32_t& raw : out) {
        raw = 0;
        for (std::size_t i = 0; i < bytes; ++i) {
            raw |= static_cast<std::uint32_t>(at[i]) << (8 * i);
        }
        at += bytes;
    }
}

void writeRaw(std::uint8_t* row, std::uint32_t bits, std::uint32_t first,
              std::span<const std::uint32_t> raw) {
    if (bits < 8) {
        const std::uint32_t mask = (1u << bits) - 1;
        for (std::size_t i = 0; i < raw.size(); ++i) {
            const std::size_t bit = (first + i) * bits;
            const std::size_t shift = 8 - bits - bit % 8;
            const std::uint32_t rest = row[bit / 8] & ~(mask << shift);
            row[bit / 8] = static_cast<std::uint8_t>(rest | ((raw[i] & mask) << shift));
        }
        return;
    }
    const std::size_t bytes = bits / 8;
    std::uint8_t* at = row + first * bytes;
    for (const std::uint32_t value : raw) {
        for (std::size_t i = 0; i < bytes; ++i) {
            at[i] = static_cast<std::uint8_t>(value >> (8 * i));
        }
        at += bytes;
    }
}

void toColors(const PixelFormat& format, std::span<std::uint32_t> pixels) {
    if (format.isIndexed()) {
        for (std::uint32_t& pixel : pixels) {
            pixel = format.palette[pixel];
        }
        return;
    }
    const Channel red(format.redMask);
    const Channel green(format.greenMask);
    const Channel blue(format.blueMask);
    for (std::uint32_t& pixel : pixels) {
        pixel = (red.read(pixel) << 16) | (green.read(pixel) << 8) | blue.read(pixel);
    }
}

void fromColors(const PixelFormat& format, std::span<std::uint32_t> pixels) {
    if (format.isIndexed()) {
        // Neighbours are alike more often than not, and a search costs up to 256 steps.
        std::uint32_t color = pixels.empty() ? 0 : ~pixels.front();
        std::uint32_t index = 0;
        for (std::uint32_t& pixel : pixels) {
            index = pixel == color ? index : nearest(format.palette, pixel);
            color = pixel;
            pixel = index;
        }
        return;
    }
    const Channel red(format.redMask);
    const Channel green(format.greenMask);
    const Channel blue(format.blueMask);
    for (std::uint32_t& pixel : pixels) {
        pixel = red.write((pixel >> 16) & 0xFF) | green.write((pixel >> 8) & 0xFF) |
                blue.write(pixel & 0xFF);
    }
}

}  // namespace orvane::platform
