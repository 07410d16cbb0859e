#include "platform/linux/codecs/decoded.h"

#include <vector>

namespace orvane::codecs::test {
namespace {

struct Image {
    int width = 1;
    int height = 1;
    int bits = 32;
    Bytes dib;
};

/// A header, its colours, and no pixels yet.
Bytes header(int width, int height, int bits, int64_t colours = 0) {
    Bytes dib;
    dib.u32(40).u32(width).u32(height * 2).u16(1).u16(bits).u32(0);
    return dib.u32(0).u32(0).u32(0).u32(colours).u32(0);
}

/// An image with every pixel of one colour and nothing masked.
Image plain(int width, int height, int bits, Colour colour) {
    Image image{width, height, bits, header(width, height, bits)};
    if (bits <= 8) {
        image.dib.u8({colour.blue, colour.green, colour.red, 0});
        image.dib.zeroes((size_t{4} << bits) - 4);
    }
    for (int y = 0; y < height; ++y) {
        Bytes row;
        for (int x = 0; bits > 8 && x < width; ++x) {
            row.u8({colour.blue, colour.green, colour.red});
            if (bits == 32) row.u8({255});
        }
        image.dib.add(row).zeroes(
            paddedRowBytes(static_cast<uint64_t>(width), static_cast<uint32_t>(bits)) - row.size());
    }
    image.dib.zeroes(paddedRowBytes(static_cast<uint64_t>(width), 1) * static_cast<size_t>(height));
    return image;
}

Bytes file(int type, const std::vector<Image>& images, int hotspotX = 1, int hotspotY = 0) {
    Bytes bytes;
    bytes.u16(0).u16(type).u16(static_cast<int64_t>(images.size()));
    size_t offset = 6 + 16 * images.size();
    for (const Image& image : images) {
        bytes.u8({image.width, image.height, 0, 0}).u16(hotspotX).u16(hotspotY);
        bytes.u32(static_cast<int64_t>(image.dib.size())).u32(static_cast<int64_t>(offset));
        offset += image.dib.size();
    }
    for (const Image& image : images)
        bytes.add(image.dib);
    return bytes;
}

Image png() {
    Image image;
    image.dib.u8({0x89, 'P', 'N', 'G', 13, 10, 26, 10}).zeroes(40);
    return image;
}

constexpr Colour kBlack{0, 0, 0};
constexpr Colour kRed{255, 0, 0};
constexpr Colour kGreen{0, 255, 0};
constexpr Colour kBlue{0, 0, 255};

TEST(Icon, AnIconHasItsHotSpotInTheMiddle) {
    const Decoded decoded(file(1, {plain(16, 24, 24, kRed)}));
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.kind, ORVANE_PICTURE_ICON);
    EXPECT_EQ(decoded.picture.isIcon, 1);
    EXPECT_EQ(decoded.picture.width, 16);
    EXPECT_EQ(decoded.picture.height, 24);
    EXPECT_EQ(decoded.picture.bitsPerPixel, 24);
    EXPECT_EQ(decoded.picture.hotspotX, 8);
    EXPECT_EQ(decoded.picture.hotspotY, 12);
    EXPECT_EQ(decoded.picture.stride, 64u);
    EXPECT_EQ(decoded.picture.maskStride, 4u);
    EXPECT_EQ(decoded.picture.maskBytes, 96u);
    EXPECT_EQ(decoded.colour(15, 23), kRed);
    EXPECT_EQ(decoded.alpha(15, 23), 255);
}

TEST(Icon, ACursorHasItsOwnHotSpot) {
    const Decoded decoded(file(2, {plain(32, 32, 8, kRed)}, 5, 7));
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.kind, ORVANE_PICTURE_ICON);
    EXPECT_EQ(decoded.picture.isIcon, 0);
    EXPECT_EQ(decoded.picture.hotspotX, 5);
    EXPECT_EQ(decoded.picture.hotspotY, 7);
}

TEST(Icon, ColourAndMaskRowsComeFromTheBottomUp) {
    Image image{2, 2, 1, header(2, 2, 1)};
    image.dib.u8({0, 0, 0, 0, 0, 0, 255, 0});
    image.dib.u8({0x40, 0, 0, 0, 0x80, 0, 0, 0}).u8({0x80, 0, 0, 0, 0, 0, 0, 0});
    const Decoded decoded(file(1, {image}));
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.bitsPerPixel, 1);
    EXPECT_EQ(decoded.colour(0, 0), kRed);
    EXPECT_EQ(decoded.colour(1, 0), kBlack);
    EXPECT_EQ(decoded.colour(0, 1), kBlack);
    EXPECT_EQ(decoded.colour(1, 1), kRed);
    EXPECT_EQ(decoded.masked(0, 0), 0);
    EXPECT_EQ(decoded.masked(0, 1), 1);
    EXPECT_EQ(decoded.masked(1, 1), 0);
    EXPECT_EQ(decoded.alpha(0, 1), 0);
    EXPECT_EQ(decoded.alpha(1, 1), 255);
}

TEST(Icon, FourBitsReadThroughTheirPalette) {
    Image image{3, 1, 4, header(3, 1, 4, 3)};
    image.dib.u8({0, 0, 255, 0, 0, 255, 0, 0, 255, 0, 0, 0}).u8({0x20, 0x10, 0, 0}).zeroes(4);
    const Decoded decoded(file(1, {image}));
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.colour(0, 0), kBlue);
    EXPECT_EQ(decoded.colour(1, 0), kRed);
    EXPECT_EQ(decoded.colour(2, 0), kGreen);
}

TEST(Icon, SixteenBitsAreStretchedToEight) {
    Image image{2, 1, 16, header(2, 1, 16)};
    image.dib.u16(0x7c00).u16(0x83e0).zeroes(4);
    const Decoded decoded(file(1, {image}));
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.colour(0, 0), kRed);
    EXPECT_EQ(decoded.colour(1, 0), kGreen);
    EXPECT_EQ(decoded.alpha(1, 0), 255);
}

TEST(Icon, AlphaOfTheFileIsKeptBesideTheMask) {
    Image image{2, 1, 32, header(2, 1, 32)};
    image.dib.u8({1, 2, 3, 128, 4, 5, 6, 0}).u8({0x80, 0, 0, 0});
    const Decoded decoded(file(1, {image}));
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.alpha(0, 0), 128);
    EXPECT_EQ(decoded.alpha(1, 0), 0);
    EXPECT_EQ(decoded.masked(0, 0), 1);
    EXPECT_EQ(decoded.masked(1, 0), 0);
}

TEST(Icon, WithoutAnyAlphaTheMaskDecides) {
    Image image{2, 1, 32, header(2, 1, 32)};
    image.dib.u8({1, 2, 3, 0, 4, 5, 6, 0}).u8({0x80, 0, 0, 0});
    const Decoded decoded(file(1, {image}));
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.alpha(0, 0), 0);
    EXPECT_EQ(decoded.alpha(1, 0), 255);
}

TEST(Icon, AnImageWithAlphaMayLackItsMask) {
    Image image{2, 1, 32, header(2, 1, 32)};
    image.dib.u8({1, 2, 3, 255, 4, 5, 6, 0});
    const Decoded decoded(file(1, {image}));
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.masked(0, 0), 0);
    EXPECT_EQ(decoded.masked(1, 0), 1);
}

TEST(Icon, TheImageClosestToTheDefaultSizeIsTaken) {
    const auto width = [](const std::vector<Image>& images) {
        return Decoded(file(1, images)).picture.width;
    };
    const Image small = plain(16, 16, 24, kRed);
    const Image usual = plain(32, 32, 24, kRed);
    const Image large = plain(48, 48, 24, kRed);
    EXPECT_EQ(width({small, large, usual}), 32);
    EXPECT_EQ(width({small, large}), 48);
    EXPECT_EQ(width({plain(24, 24, 24, kRed), large}), 24);
}

TEST(Icon, TheDeeperOfTwoSizesIsTakenThenTheFirst) {
    const Decoded deeper(file(1, {plain(32, 32, 4, kRed), plain(32, 32, 24, kGreen)}));
    EXPECT_EQ(deeper.picture.bitsPerPixel, 24);
    const Decoded first(file(1, {plain(32, 32, 24, kBlue), plain(32, 32, 24, kGreen)}));
    ASSERT_EQ(first.result, ORVANE_CODEC_OK);
    EXPECT_EQ(first.colour(0, 0), kBlue);
}

TEST(Icon, SizesComeFromTheImageNotTheDirectory) {
    Image image = plain(16, 8, 24, kRed);
    image.width = 200;
    image.height = 0;
    const Decoded decoded(file(1, {image}));
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.width, 16);
    EXPECT_EQ(decoded.picture.height, 8);
}

TEST(Icon, APngIsOnlyEverPassedOver) {
    EXPECT_EQ(Decoded(file(1, {png()})).result, ORVANE_CODEC_UNSUPPORTED);
    const Decoded decoded(file(1, {png(), plain(8, 8, 24, kRed)}));
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.width, 8);
}

TEST(Icon, ADamagedImageGivesWayToTheNext) {
    Image cut = plain(32, 32, 24, kRed);
    cut.dib = header(32, 32, 24).zeroes(10);
    const Decoded decoded(file(1, {cut, plain(8, 8, 24, kGreen)}));
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.colour(0, 0), kGreen);
    EXPECT_EQ(Decoded(file(1, {cut})).result, ORVANE_CODEC_DAMAGED);
}

TEST(Icon, RunLengthsAreUnsupported) {
    Image image = plain(4, 4, 8, kRed);
    image.dib.patch(16, 1, 4);
    EXPECT_EQ(Decoded(file(1, {image})).result, ORVANE_CODEC_UNSUPPORTED);
}

TEST(Icon, APaletteThatLeavesTheImageIsDamage) {
    Image image = plain(4, 4, 32, kRed);
    image.dib.patch(32, 0x0ebdbfef, 4);
    EXPECT_EQ(Decoded(file(1, {image})).result, ORVANE_CODEC_DAMAGED);
}

TEST(Icon, AnotherDirectoryIsNotRecognised) {
    EXPECT_EQ(Decoded(file(3, {plain(4, 4, 24, kRed)})).result, ORVANE_CODEC_NOT_RECOGNISED);
    EXPECT_EQ(Decoded(file(1, {})).result, ORVANE_CODEC_NOT_RECOGNISED);
}

TEST(Icon, MoreThanTheFileHoldsIsRefusedBeforeMemoryIsTaken) {
    const Limits nothing{0, 0};
    Image image = plain(4, 4, 24, kRed);
    EXPECT_EQ(Decoded(file(1, {image}), nothing).result, ORVANE_CODEC_OUT_OF_MEMORY);
    image.dib.patch(4, 0x7fffffff, 4).patch(8, 0x7fffffff, 4);
    EXPECT_EQ(Decoded(file(1, {image}), nothing).result, ORVANE_CODEC_DAMAGED);
}

TEST(Icon, EveryBeginningIsRefused) {
    for (const int bits : {1, 4, 8, 16, 24, 32}) {
        const Bytes bytes = file(1, {plain(5, 3, bits, kRed)});
        decodeEveryBeginning(bytes, bytes.size());
    }
}

}  // namespace
}  // namespace orvane::codecs::test
