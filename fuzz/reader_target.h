#pragma once

#include "pictures/DecodedImage.h"
#include "pictures/memory_file.h"
#include "pictures/reference_image.h"
#include "target.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <span>

/// A file for one of the readers that have a reference: both come to the same outcome and the same
/// pixels.
namespace orvane::fuzz {

/// As many bytes as the reference gets through in time.
constexpr std::int64_t kMostBytes = 1 << 18;

inline void requireSame(const DecodedImage& image, const test::ReferenceImage& expected) {
    require(image.Width == expected.width && image.Height == expected.height);
    require(image.BitsPerPixel == expected.bitsPerPixel);
    require(image.Palette.has_value() == expected.palette.has_value());
    require(!image.Palette ||
            std::memcmp(image.Palette->data(), expected.palette->data(), 1024) == 0);
    const auto found = image.Pixels.elements();
    require(found.size() >= expected.pixels.size());
    const auto more = found.subspan(expected.pixels.size());
    require(std::ranges::equal(found.first(expected.pixels.size()), expected.pixels));
    // Rows of 32 bits, which no decoder makes, find zeros behind the pixels.
    require(more.empty() || image.BitsPerPixel == 32);
    require(std::ranges::all_of(more, [](std::uint8_t byte) { return byte == 0; }));
}

/// Runs the reader, and the reference where the file is small enough for it.
template <class Reader>
void compare(bool (*read)(WStringView, DecodedImage&), bool wanted,
             const test::ReferenceImage& expected, std::span<const std::uint8_t> bytes) {
    const test::MemoryFile file(bytes);
    require(Reader().Verify(u"memory.file") == wanted);
    if (expected.unknown) return;
    DecodedImage image;
    const bool success = read(u"memory.file", image);
    require(file.open() == 0);
    require(success == expected.success);
    if (success) requireSame(image, expected);
}

}  // namespace orvane::fuzz
