#include "platform/linux/row_copy.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace orvane::platform {

static_assert(std::endian::native == std::endian::little, "pixels are stored as numbers");

namespace {

bool isPlain(const PixelFormat& format, std::uint32_t bits) {
    return format == PixelFormat::ofDepth(bits);
}

/// Writes the low three bytes of a pixel.
void put24(std::uint8_t* to, std::uint32_t pixel) {
    to[0] = static_cast<std::uint8_t>(pixel);
    to[1] = static_cast<std::uint8_t>(pixel >> 8);
    to[2] = static_cast<std::uint8_t>(pixel >> 16);
}

}  // namespace

RowCopy::RowCopy(const PixelFormat& source, const PixelFormat& target, bool monochrome)
    : sourceBytes_(source.bits / 8), targetBytes_(target.bits / 8) {
    if (monochrome || source.bits < 8 || target.bits < 8) {
        return;
    }
    if (source == target) {
        copy_ = &RowCopy::same;
        return;
    }
    const bool to24 = isPlain(target, 24);
    const bool to32 = isPlain(target, 32);
    if (source.bits == 8 && (to24 || to32)) {
        std::copy(source.palette.begin(), source.palette.end(), palette_.begin());
        copy_ = to24 ? &RowCopy::paletteTo24 : &RowCopy::paletteTo32;
    } else if (isPlain(source, 24) && to32) {
        copy_ = &RowCopy::widen;
    } else if (isPlain(source, 32) && to24) {
        copy_ = &RowCopy::narrow;
    }
}

void RowCopy::same(const RowCopy& self, std::uint8_t* target, const std::uint8_t* source,
                   std::size_t count) {
    std::memmove(target, source, count * self.sourceBytes_);
}

void RowCopy::paletteTo24(const RowCopy& self, std::uint8_t* target, const std::uint8_t* source,
                          std::size_t count) {
    if (count == 0) {
        return;
    }
    // Four bytes at a time; the next pixel overwrites the fourth. The last one has no next.
    for (std::size_t i = 0; i + 1 < count; ++i, target += 3) {
        std::memcpy(target, &self.palette_[source[i]], 4);
    }
    put24(target, self.palette_[source[count - 1]]);
}

void RowCopy::paletteTo32(const RowCopy& self, std::uint8_t* target, const std::uint8_t* source,
                          std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        std::memcpy(target + i * 4, &self.palette_[source[i]], 4);
    }
}

void RowCopy::widen(const RowCopy&, std::uint8_t* target, const std::uint8_t* source,
                    std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        target[i * 4] = source[i * 3];
        target[i * 4 + 1] = source[i * 3 + 1];
        target[i * 4 + 2] = source[i * 3 + 2];
        target[i * 4 + 3] = 0;
    }
}

void RowCopy::narrow(const RowCopy&, std::uint8_t* target, const std::uint8_t* source,
                     std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        target[i * 3] = source[i * 4];
        target[i * 3 + 1] = source[i * 4 + 1];
        target[i * 3 + 2] = source[i * 4 + 2];
    }
}

}  // namespace orvane::platform
