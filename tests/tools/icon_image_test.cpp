#include "icon_image.h"
#include "system.h"

#include <gtest/gtest.h>

#include <cstdint>
#include <vector>

namespace orvane::tool {
namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr Rgb kGround{100, 100, 100};

void append(Bytes& bytes, std::uint64_t value, int size) {
    for (int i = 0; i < size; ++i)
        bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

/// An image: the header, then `rest`, the colour table and the rows.
Bytes image(std::uint32_t width, std::uint32_t height, std::uint32_t bits, const Bytes& rest,
            std::uint32_t compression = 0) {
    Bytes bytes;
    for (const std::uint32_t field : {40u, width, height * 2})
        append(bytes, field, 4);
    append(bytes, 1, 2);
    append(bytes, bits, 2);
    append(bytes, compression, 4);
    bytes.resize(40);
    bytes.insert(bytes.end(), rest.begin(), rest.end());
    return bytes;
}

Bytes icon(const std::vector<Bytes>& images) {
    Bytes bytes;
    append(bytes, 0, 2);
    append(bytes, 1, 2);
    append(bytes, images.size(), 2);
    std::size_t offset = 6 + 16 * images.size();
    for (const Bytes& one : images) {
        append(bytes, 0, 8);
        append(bytes, one.size(), 4);
        append(bytes, offset, 4);
        offset += one.size();
    }
    for (const Bytes& one : images)
        bytes.insert(bytes.end(), one.begin(), one.end());
    return bytes;
}

TEST(IconImage, TheMaskShowsTheGround) {
    const Bytes rest = {0,    0, 255, 255, 255, 255, 0, 0,   // the lower row: red, white, padding
                        255,  0, 0,   0,   255, 0,   0, 0,   // the upper row: blue, green, padding
                        0x40, 0, 0,   0,   0,   0,   0, 0};  // the white pixel is masked
    const RgbImage shown = rgbFromIcon(icon({image(2, 2, 24, rest)}), kGround);
    ASSERT_EQ(shown.width, 2u);
    ASSERT_EQ(shown.height, 2u);
    EXPECT_EQ(shown.at(0, 0), (Rgb{0, 0, 255}));
    EXPECT_EQ(shown.at(1, 0), (Rgb{0, 255, 0}));
    EXPECT_EQ(shown.at(0, 1), (Rgb{255, 0, 0}));
    EXPECT_EQ(shown.at(1, 1), kGround);
}

TEST(IconImage, AlphaCountsBeforeTheMask) {
    const Bytes rest = {0, 0, 200, 255, 0, 0, 200, 51, 0, 0, 200, 0, 0xE0, 0, 0, 0};
    const RgbImage shown = rgbFromIcon(icon({image(3, 1, 32, rest)}), kGround);
    EXPECT_EQ(shown.at(0, 0), (Rgb{200, 0, 0}));
    EXPECT_EQ(shown.at(1, 0), (Rgb{120, 80, 80}));
    EXPECT_EQ(shown.at(2, 0), kGround);
}

TEST(IconImage, WithoutAnyAlphaTheMaskCounts) {
    const Bytes rest = {1, 2, 3, 0, 1, 2, 3, 0, 0x80, 0, 0, 0};
    const RgbImage shown = rgbFromIcon(icon({image(2, 1, 32, rest)}), kGround);
    EXPECT_EQ(shown.at(0, 0), kGround);
    EXPECT_EQ(shown.at(1, 0), (Rgb{3, 2, 1}));
}

TEST(IconImage, AnImageWithoutAMaskCoversEverything) {
    const Bytes rest = {1, 2, 3, 0};
    EXPECT_EQ(rgbFromIcon(icon({image(1, 1, 32, rest)}), kGround).at(0, 0), (Rgb{3, 2, 1}));
}

TEST(IconImage, ColoursComeFromATable) {
    const Bytes rest = {0, 0, 0, 0, 9, 8, 7, 0, 0x40, 0, 0, 0, 0, 0, 0, 0};
    const RgbImage shown = rgbFromIcon(icon({image(2, 1, 1, rest)}), kGround);
    EXPECT_EQ(shown.at(0, 0), (Rgb{0, 0, 0}));
    EXPECT_EQ(shown.at(1, 0), (Rgb{7, 8, 9}));
}

TEST(IconImage, TheLargestImageThatCanBeReadIsTaken) {
    const Bytes small = image(1, 1, 32, Bytes(8));
    const Bytes large = image(2, 2, 32, Bytes(24));
    const Bytes packed = image(9, 9, 32, Bytes(999), 1);
    const Bytes cut = image(8, 8, 32, Bytes(8));
    const Bytes png = {0x89, 'P', 'N', 'G', 13, 10, 26, 10};
    EXPECT_EQ(rgbFromIcon(icon({small, png, large, packed, cut}), kGround).width, 2u);
}

TEST(IconImage, WhatIsNoIconFails) {
    EXPECT_THROW(rgbFromIcon({}, kGround), Failure);
    EXPECT_THROW(rgbFromIcon(icon({}), kGround), Failure);
    EXPECT_THROW(rgbFromIcon(icon({image(0, 1, 32, Bytes(8))}), kGround), Failure);
    EXPECT_THROW(rgbFromIcon(icon({image(1, 0, 32, Bytes(8))}), kGround), Failure);
    EXPECT_THROW(rgbFromIcon(icon({image(0x7FFFFFFF, 1, 32, Bytes(8))}), kGround), Failure);
    EXPECT_THROW(rgbFromIcon(icon({image(1, 1, 7, Bytes(8))}), kGround), Failure);
}

TEST(IconImage, EveryBeginningFails) {
    const Bytes whole = icon({image(2, 2, 24, Bytes(24))});
    for (std::size_t length = 0; length < whole.size(); ++length)
        EXPECT_THROW(
            rgbFromIcon(Bytes(whole.begin(), whole.begin() + static_cast<int>(length)), kGround),
            Failure)
            << length;
}

}  // namespace
}  // namespace orvane::tool
