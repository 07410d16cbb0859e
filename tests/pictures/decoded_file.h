#pragma once

#include "pictures/DecodedImage.h"
#include "pictures/bytes.h"
#include "pictures/memory_file.h"
#include "pictures/reference_image.h"

#include <gtest/gtest.h>

#include <cstring>
#include <span>

namespace orvane::test {

/// What a reader makes of a file of these bytes; checks that it closes the file.
struct DecodedFile {
    using Read = bool (*)(WStringView, DecodedImage&);

    DecodedFile(Read read, std::span<const std::uint8_t> bytes) {
        const MemoryFile file(bytes);
        success = read(u"memory.file", image);
        reads = file.reads();
        EXPECT_EQ(file.open(), 0);
    }

    Bytes pixels() const {
        return {image.Pixels.elements().begin(), image.Pixels.elements().end()};
    }
    /// A pixel of 24 bits or the byte of one of 8, counted from the top left.
    Bytes pixel(std::int32_t x, std::int32_t y) const {
        const std::int32_t size = image.BitsPerPixel == 8 ? 1 : 3;
        const std::int32_t stride = (image.Width * size + 3) / 4 * 4;
        const auto at = static_cast<std::size_t>(y * stride + x * size);
        const auto bytes = image.Pixels.elements().subspan(at, static_cast<std::size_t>(size));
        return {bytes.begin(), bytes.end()};
    }
    /// The palette's bytes; none without a palette.
    Bytes palette() const {
        Bytes bytes(image.Palette ? 1024 : 0);
        if (image.Palette) std::memcpy(bytes.data(), image.Palette->data(), bytes.size());
        return bytes;
    }

    /// Whether a reference came to the same: the outcome and, of a picture, everything.
    testing::AssertionResult isLike(const ReferenceImage& expected) const {
        if (success != expected.success) {
            return testing::AssertionFailure() << "success is " << success;
        }
        if (!success) return testing::AssertionSuccess();
        if (image.Width != expected.width || image.Height != expected.height ||
            image.BitsPerPixel != expected.bitsPerPixel) {
            return testing::AssertionFailure() << "size " << image.Width << " x " << image.Height
                                               << ", " << image.BitsPerPixel << " bits";
        }
        const Bytes wanted =
            expected.palette ? Bytes(expected.palette->begin(), expected.palette->end()) : Bytes();
        if (palette() != wanted) return testing::AssertionFailure() << "the palettes differ";
        Bytes pixelsAndMore = expected.pixels;
        // Rows of 32 bits, which the decoder doesn't make, find zeros behind the pixels.
        if (image.BitsPerPixel == 32) pixelsAndMore.resize(image.Pixels.size());
        if (image.Pixels.lowerBound() != 1 || pixels() != pixelsAndMore) {
            return testing::AssertionFailure() << "the pixels differ";
        }
        return testing::AssertionSuccess();
    }

    DecodedImage image;
    bool success = false;
    int reads = 0;
};

}  // namespace orvane::test
