#pragma once

#include "platform/linux/codecs/reader.h"
#include "platform/linux/metafiles/cairo_handles.h"

#include <cstdint>
#include <memory>
#include <span>

namespace orvane::metafiles {

/// Pixels of a record: blue, green, red and a fourth byte that only blending looks at.
struct Image {
    SurfaceHandle pixels;
    int width = 0;
    int height = 0;
    /// Its black and white stand for the text and the background colour of where it is drawn.
    bool isMonochrome = false;
};
using ImageHandle = std::shared_ptr<const Image>;

/// Colours as Windows numbers them, 0x00BBGGRR.
using Colors = std::span<const std::uint32_t>;

/// How a device-independent bitmap's table names colours.
inline constexpr std::uint32_t kPaletteIndices = 1;

/// The image of a device-independent bitmap: `info` begins at its header, `bits` at its first
/// stored row. With `usage` kPaletteIndices its table holds 16-bit indices of `palette`. Null when
/// it makes no sense, is in a form that is not read (JPEG, PNG), or lacks rows.
ImageHandle imageOfDib(const codecs::Reader& info, const codecs::Reader& bits, std::uint32_t usage,
                       Colors palette);

/// The same of one in a piece: its rows follow its table.
ImageHandle imageOfPackedDib(const codecs::Reader& dib, std::uint32_t usage, Colors palette);

/// A device's bitmap of one plane and one bit: type, width, height, bytes of a row, planes and bits
/// a pixel (10 bytes), and the rows from the top. Null for any other.
ImageHandle imageOfDeviceBitmap(const codecs::Reader& bitmap, std::uint64_t rowsOffset);

/// A copy whose black and white have become two colours.
ImageHandle colored(const Image& image, std::uint32_t black, std::uint32_t white);

}  // namespace orvane::metafiles
