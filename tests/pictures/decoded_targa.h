#pragma once

#include "pictures/CFileTGA.h"
#include "pictures/memory_file.h"
#include "pictures/targa_file.h"
#include "pictures/targa_reference.h"

#include <gtest/gtest.h>

#include <span>
#include <vector>

namespace orvane::test {

/// What the reader makes of a file of these bytes; checks that it closes the file.
struct DecodedTarga {
    explicit DecodedTarga(std::span<const std::uint8_t> bytes) {
        const MemoryFile file(bytes);
        success = CFileTGA::ReadTGA(u"memory.tga", image);
        reads = file.reads();
        EXPECT_EQ(file.open(), 0);
    }
    explicit DecodedTarga(const TargaFile& file) : DecodedTarga(file.bytes()) {}

    Bytes pixels() const {
        return {image.Pixels.elements().begin(), image.Pixels.elements().end()};
    }
    /// The three bytes of a pixel, counted from the top left.
    Bytes pixel(std::int32_t x, std::int32_t y) const {
        const std::int32_t stride = (image.Width * 3 + 3) / 4 * 4;
        const auto at = static_cast<std::size_t>(y * stride + x * 3);
        const auto bytes = image.Pixels.elements().subspan(at, 3);
        return {bytes.begin(), bytes.end()};
    }

    DecodedImage image;
    bool success = false;
    int reads = 0;
};

/// Whether the reader and the reference agree on a file: the outcome and, of a picture, its size
/// and all pixels.
inline testing::AssertionResult agrees(std::span<const std::uint8_t> bytes) {
    const ReferenceImage expected = referenceTarga(bytes);
    const DecodedTarga found(bytes);
    if (found.success != expected.success) {
        return testing::AssertionFailure() << "success is " << found.success;
    }
    if (!expected.success) return testing::AssertionSuccess();
    const DecodedImage& image = found.image;
    if (image.Width != expected.width || image.Height != expected.height ||
        image.BitsPerPixel != 24 || image.Palette.has_value()) {
        return testing::AssertionFailure() << "size " << image.Width << " x " << image.Height;
    }
    if (image.Pixels.lowerBound() != 1 || found.pixels() != expected.pixels) {
        return testing::AssertionFailure() << "the pixels differ";
    }
    return testing::AssertionSuccess();
}
inline testing::AssertionResult agrees(const TargaFile& file) {
    return agrees(file.bytes());
}

}  // namespace orvane::test
