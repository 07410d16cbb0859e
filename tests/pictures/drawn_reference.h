#pragma once

#include "pictures/reference_image.h"

#include <cstddef>

namespace orvane::test {

/// The pixels of 24 bits that a picture of this image has to show: a palette is applied, rows of
/// 24 bits are taken for rows of 32 where the depth says so, with zeros behind the last one, and
/// depths that are none draw nothing. Depth 16 is left out: its pixels are rounded by the platform.
inline std::vector<std::uint8_t> drawn(const ReferenceImage& image) {
    if (image.bitsPerPixel == 24) return image.pixels;
    const auto width = static_cast<std::size_t>(image.width);
    const std::size_t stride = (width * 3 + 3) / 4 * 4;
    const std::size_t from = image.bitsPerPixel == 8 ? (width + 3) / 4 * 4 : width * 4;
    std::vector<std::uint8_t> rows(stride * static_cast<std::size_t>(image.height));
    if (image.bitsPerPixel != 8 && image.bitsPerPixel != 32) return rows;
    const auto stored = [&image](std::size_t at) {
        return at < image.pixels.size() ? image.pixels[at] : std::uint8_t{0};
    };
    for (std::size_t y = 0; y < static_cast<std::size_t>(image.height); ++y) {
        for (std::size_t x = 0; x < width * 3; ++x) {
            const std::size_t pixel = x / 3;
            rows[y * stride + x] =
                image.palette ? (*image.palette)[std::size_t{stored(y * from + pixel)} * 4 + x % 3]
                              : stored(y * from + pixel * 4 + x % 3);
        }
    }
    return rows;
}

}  // namespace orvane::test
