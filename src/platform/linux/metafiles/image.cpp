#include "platform/linux/metafiles/image.h"

#include "platform/linux/codecs/dib.h"
#include "platform/linux/codecs/rle.h"
#include "platform/linux/codecs/surface.h"

#include <algorithm>
#include <cstring>

namespace orvane::metafiles {

namespace {

using codecs::DibCompression;
using codecs::DibHeader;
using codecs::Reader;

/// The drawing library takes no longer sides.
constexpr std::uint32_t kLongestSide = 32767;
/// Packed rows say little of how much they unpack to.
constexpr std::uint64_t kMostUnpacked = std::uint64_t{1} << 26;

/// A decoded bitmap, freed at the end.
struct Decoded : OrvaneDecoded {
    Decoded() : OrvaneDecoded{} {}
    Decoded(const Decoded&) = delete;
    Decoded& operator=(const Decoded&) = delete;
    ~Decoded() { codecs::release(*this); }

    bool make(const DibHeader& header, std::uint32_t bits) {
        return codecs::makeBitmap(*this, header.width, header.height, bits, {}) == ORVANE_CODEC_OK;
    }
};

void readPalette(const Reader& info, const DibHeader& header, std::uint32_t usage, Colors palette,
                 OrvaneDecoded& out) {
    if (usage != kPaletteIndices) {
        codecs::readColours(info, header, UINT64_MAX, out);
        return;
    }
    const std::uint32_t count = std::min(header.colours, 1u << header.bits);
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::size_t index = info.u16(header.tableOffset + std::uint64_t{i} * 2);
        const std::uint32_t color = index < palette.size() ? palette[index] : 0;
        codecs::setColour(out, i, static_cast<std::uint8_t>(color),
                          static_cast<std::uint8_t>(color >> 8),
                          static_cast<std::uint8_t>(color >> 16));
    }
}

std::shared_ptr<Image> emptyImage(std::uint32_t width, std::uint32_t height) {
    auto image = std::make_shared<Image>();
    image->width = static_cast<int>(width);
    image->height = static_cast<int>(height);
    image->pixels.reset(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, image->width, image->height));
    return cairo_image_surface_get_data(image->pixels.get()) == nullptr ? nullptr : image;
}

unsigned char* rowOf(const Image& image, int y) {
    return cairo_image_surface_get_data(image.pixels.get()) +
           std::ptrdiff_t{y} * cairo_image_surface_get_stride(image.pixels.get());
}

/// A surface of 32 bits as an image.
ImageHandle imageOf(const OrvaneDecoded& decoded) {
    const auto image = emptyImage(static_cast<std::uint32_t>(decoded.width),
                                  static_cast<std::uint32_t>(decoded.height));
    if (image == nullptr) return nullptr;
    for (int y = 0; y < image->height; ++y) {
        std::memcpy(rowOf(*image, y), decoded.pixels + std::size_t(y) * decoded.stride,
                    std::size_t(image->width) * 4);
    }
    cairo_surface_mark_dirty(image->pixels.get());
    return image;
}

/// Rows that runs are unpacked into, which `header` then describes.
bool unpack(const Reader& bits, DibHeader& header, Decoded& rows) {
    if (std::uint64_t{header.width} * header.height > kMostUnpacked) return false;
    if (!rows.make(header, header.bits)) return false;
    codecs::unpackRle(bits.bytes(0), rows);
    header.compression = DibCompression::kNone;
    header.topDown = true;
    return true;
}

}  // namespace

ImageHandle imageOfDib(const Reader& info, const Reader& bits, std::uint32_t usage,
                       Colors palette) {
    DibHeader header;
    if (codecs::readDibHeader(info, header) != ORVANE_CODEC_OK) return nullptr;
    if (header.width > kLongestSide || header.height > kLongestSide) return nullptr;
    Decoded unpacked;
    std::span<const std::uint8_t> rows = bits.bytes(0);
    if (header.compression != DibCompression::kNone) {
        if (!unpack(bits, header, unpacked)) return nullptr;
        rows = {unpacked.pixels, unpacked.pixelBytes};
    }
    const std::uint64_t needed =
        codecs::paddedRowBytes(header.width, header.bits) * (header.height - 1) +
        codecs::rowBytes(header.width, header.bits);
    Decoded decoded;
    if (rows.size() < needed || !decoded.make(header, 32)) return nullptr;
    if (header.bits <= 8) readPalette(info, header, usage, palette, decoded);
    codecs::expandRows(rows, header, decoded);
    return imageOf(decoded);
}

ImageHandle imageOfPackedDib(const Reader& dib, std::uint32_t usage, Colors palette) {
    DibHeader header;
    if (codecs::readDibHeader(dib, header) != ORVANE_CODEC_OK) return nullptr;
    if (header.bits <= 8) header.colours = std::min(header.colours, 1u << header.bits);
    if (usage == kPaletteIndices) header.colourBytes = 2;
    return imageOfDib(dib, dib.part(header.tableEnd()), usage, palette);
}

ImageHandle imageOfDeviceBitmap(const Reader& bitmap, std::uint64_t rowsOffset) {
    const std::int32_t width = bitmap.i16(2);
    const std::int32_t height = bitmap.i16(4);
    const std::uint64_t rowBytes = bitmap.u16(6);
    if (width <= 0 || height <= 0 || bitmap.u8(8) != 1 || bitmap.u8(9) != 1) return nullptr;
    if (rowBytes * 8 < static_cast<std::uint64_t>(width) ||
        !bitmap.holds(rowsOffset, rowBytes * static_cast<std::uint64_t>(height))) {
        return nullptr;
    }
    const auto image =
        emptyImage(static_cast<std::uint32_t>(width), static_cast<std::uint32_t>(height));
    if (image == nullptr) return nullptr;
    image->isMonochrome = true;
    for (int y = 0; y < height; ++y) {
        auto* const row = reinterpret_cast<std::uint32_t*>(rowOf(*image, y));
        const std::uint64_t start = rowsOffset + rowBytes * static_cast<std::uint64_t>(y);
        for (int x = 0; x < width; ++x) {
            const bool white =
                (bitmap.u8(start + static_cast<std::uint64_t>(x / 8)) << (x % 8) & 0x80) != 0;
            row[x] = white ? 0xFFFFFF : 0;
        }
    }
    cairo_surface_mark_dirty(image->pixels.get());
    return image;
}

ImageHandle colored(const Image& image, std::uint32_t black, std::uint32_t white) {
    const auto result = emptyImage(static_cast<std::uint32_t>(image.width),
                                   static_cast<std::uint32_t>(image.height));
    if (result == nullptr) return nullptr;
    const auto stored = [](std::uint32_t color) {
        return (color & 0xFF) << 16 | (color & 0xFF00) | (color >> 16 & 0xFF);
    };
    for (int y = 0; y < image.height; ++y) {
        const auto* const from = reinterpret_cast<const std::uint32_t*>(rowOf(image, y));
        auto* const to = reinterpret_cast<std::uint32_t*>(rowOf(*result, y));
        std::transform(from, from + image.width, to, [&](std::uint32_t pixel) {
            return stored((pixel & 0xFFFFFF) == 0 ? black : white);
        });
    }
    cairo_surface_mark_dirty(result->pixels.get());
    return result;
}

}  // namespace orvane::metafiles
