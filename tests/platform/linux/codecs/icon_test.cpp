#include "platform/linux/codecs/decoded.h"
#include "support/png_file.h"

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

/// A PNG image, its samples those of `png`.
Image pngImage(const orvane::test::PngFile& png) {
    Image image;
    image.width = static_cast<int>(png.width);
    image.height = static_cast<int>(png.height);
    for (const uint8_t byte : png.bytes())
        image.dib.u8({byte});
    return image;
}

/// A PNG file of a colour type as PNG numbers them.
orvane::test::PngFile pngFile(uint32_t width, uint32_t height, int colour) {
    orvane::test::PngFile png;
    png.width = width;
    png.height = height;
    png.colour = colour;
    return png;
}

/// A PNG image, every sample of it 100.
Image plainPng(uint32_t width, uint32_t height, int colour = 6) {
    orvane::test::PngFile png = pngFile(width, height, colour);
    png.sample = [](uint32_t, uint32_t, int) { return 100; };
    return pngImage(png);
}

/// A PNG image whose pixels can't be unpacked: the block's length isn't confirmed.
Image damagedPng(uint32_t width, uint32_t height) {
    constexpr size_t kLengthAgain = 46;
    Image image = plainPng(width, height);
    image.dib.patch(kLengthAgain, 0, 2);
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
    EXPECT_EQ(decoded.colour(0, 0), (Colour{3, 2, 1}));
    EXPECT_EQ(decoded.colour(1, 0), kBlack);
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

TEST(Icon, APngImageHasItsAlphaAndAMaskFromIt) {
    orvane::test::PngFile png = pngFile(10, 2, 6);
    png.sample = [](uint32_t x, uint32_t y, int channel) {
        return channel == 3 ? static_cast<int>(x + y) * 20 : channel * 10 + static_cast<int>(x) + 1;
    };
    for (const bool interlaced : {false, true}) {
        png.interlaced = interlaced;
        const Decoded decoded(file(1, {pngImage(png)}));
        ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
        EXPECT_EQ(decoded.picture.kind, ORVANE_PICTURE_ICON);
        EXPECT_EQ(decoded.picture.isIcon, 1);
        EXPECT_EQ(decoded.picture.width, 10);
        EXPECT_EQ(decoded.picture.height, 2);
        EXPECT_EQ(decoded.picture.bitsPerPixel, 32);
        EXPECT_EQ(decoded.picture.hotspotX, 5);
        EXPECT_EQ(decoded.picture.hotspotY, 1);
        for (int y = 0; y < 2; ++y) {
            for (int x = 0; x < 10; ++x) {
                // Where nothing is seen nothing may be turned round either.
                EXPECT_EQ(decoded.colour(x, y),
                          x + y == 0 ? kBlack : (Colour{x + 1, 11 + x, 21 + x}));
                EXPECT_EQ(decoded.alpha(x, y), (x + y) * 20);
                EXPECT_EQ(decoded.masked(x, y), x + y == 0 ? 1 : 0);
            }
        }
    }
}

TEST(Icon, AnOpaquePngImageIsMaskedNowhere) {
    const struct {
        int colour;
        int bits;
        Colour expected;
    } rows[] = {{0, 8, {100, 100, 100}}, {2, 24, {100, 100, 100}}, {3, 8, kRed}};
    for (const auto& row : rows) {
        orvane::test::PngFile png = pngFile(3, 3, row.colour);
        if (row.colour == 3) png.palette = {255, 0, 0};
        png.sample = [&row](uint32_t, uint32_t, int) { return row.colour == 3 ? 0 : 100; };
        const Decoded decoded(file(1, {pngImage(png)}));
        ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
        EXPECT_EQ(decoded.picture.bitsPerPixel, row.bits);
        EXPECT_EQ(decoded.colour(2, 2), row.expected);
        EXPECT_EQ(decoded.alpha(2, 2), 255);
        EXPECT_EQ(decoded.masked(2, 2), 0);
    }
}

TEST(Icon, ACursorMayBeAPngImageInside) {
    const Decoded decoded(file(2, {plainPng(32, 32)}, 5, 7));
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.isIcon, 0);
    EXPECT_EQ(decoded.picture.hotspotX, 5);
    EXPECT_EQ(decoded.picture.hotspotY, 7);
}

TEST(Icon, PngImagesAreChosenFromLikeOthers) {
    const auto width = [](const std::vector<Image>& images) {
        return Decoded(file(1, images)).picture.width;
    };
    EXPECT_EQ(width({plain(16, 16, 24, kRed), plainPng(33, 33)}), 33);
    EXPECT_EQ(width({plainPng(256, 256), plain(16, 16, 24, kRed)}), 16);
    EXPECT_EQ(Decoded(file(1, {plain(32, 32, 24, kRed), plainPng(32, 32)})).picture.bitsPerPixel,
              32);
    EXPECT_EQ(Decoded(file(1, {plain(32, 32, 24, kRed), plainPng(32, 32, 2)})).colour(0, 0), kRed);
}

TEST(Icon, ADamagedPngGivesWayToTheNextImage) {
    const Decoded decoded(file(1, {damagedPng(32, 32), plain(8, 8, 24, kRed)}));
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.width, 8);
    EXPECT_EQ(Decoded(file(1, {damagedPng(32, 32)})).result, ORVANE_CODEC_DAMAGED);
    Image headerAlone = plainPng(32, 32);
    headerAlone.dib = Bytes().u8({0x89, 'P', 'N', 'G', 13, 10, 26, 10});
    EXPECT_EQ(Decoded(file(1, {headerAlone})).result, ORVANE_CODEC_DAMAGED);
}

TEST(Icon, OnlySoManyPngImagesAreTried) {
    const auto width = [](size_t damaged) {
        std::vector<Image> images(damaged, damagedPng(32, 32));
        images.push_back(plainPng(8, 8));
        images.push_back(plain(4, 4, 24, kRed));
        return Decoded(file(1, images)).picture.width;
    };
    EXPECT_EQ(width(15), 8);
    EXPECT_EQ(width(16), 4);
}

/// A black PNG image of one bit a pixel.
Image largePng(uint32_t width, uint32_t height) {
    orvane::test::PngFile png = pngFile(width, height, 0);
    png.depth = 1;
    return pngImage(png);
}

TEST(Icon, APngImageOfMorePixelsThanAnyIconHasIsNotTried) {
    const Decoded usual(file(1, {largePng(4096, 512)}));
    ASSERT_EQ(usual.result, ORVANE_CODEC_OK);
    EXPECT_EQ(usual.picture.width, 4096);
    const Image large = largePng(8192, 2049);
    EXPECT_EQ(Decoded(file(1, {large})).result, ORVANE_CODEC_UNSUPPORTED);
    const Decoded next(file(1, {large, plain(8, 8, 24, kRed)}));
    ASSERT_EQ(next.result, ORVANE_CODEC_OK);
    EXPECT_EQ(next.picture.width, 8);
}

TEST(Icon, DamagedPngImagesUseUpThePixelsThatAreTried) {
    constexpr size_t kLengthAgain = 46;
    const Image whole = largePng(8192, 1500);
    Image damaged = whole;
    damaged.dib.patch(kLengthAgain, 1, 2);
    EXPECT_EQ(Decoded(file(1, {whole, damaged})).result, ORVANE_CODEC_OK);
    EXPECT_EQ(Decoded(file(1, {damaged, whole})).result, ORVANE_CODEC_UNSUPPORTED);
}

TEST(Icon, ACursorsImageGoesToTheEndOfTheFileWhateverTheDirectorySays) {
    constexpr size_t kSizeInDirectory = 14;
    for (const int bits : {1, 8, 24, 32}) {
        for (const int64_t size : {0, 8, 63, 0x7fffffff}) {
            Bytes bytes = file(2, {plain(2, 4, bits, kRed)}, 1, 2);
            bytes.patch(kSizeInDirectory, size, 4);
            const Decoded decoded(bytes);
            ASSERT_EQ(decoded.result, ORVANE_CODEC_OK) << bits << ' ' << size;
            EXPECT_EQ(decoded.picture.width, 2);
            EXPECT_EQ(decoded.picture.height, 4);
            EXPECT_EQ(decoded.colour(1, 3), kRed);
            EXPECT_EQ(decoded.masked(1, 3), 0);
        }
    }
}

TEST(Icon, AnIconsImageEndsWhereTheDirectorySays) {
    constexpr size_t kSizeInDirectory = 14;
    for (const int64_t size : {0, 8, 63, 0x7fffffff}) {
        Bytes bytes = file(1, {plain(2, 4, 24, kRed)});
        bytes.patch(kSizeInDirectory, size, 4);
        EXPECT_EQ(Decoded(bytes).result, ORVANE_CODEC_DAMAGED) << size;
    }
    Image unmasked{2, 1, 32, header(2, 1, 32)};
    unmasked.dib.u8({1, 2, 3, 255, 4, 5, 6, 255});
    const Image other{1, 1, 24, Bytes().u8({255, 255, 255, 255}).zeroes(60)};
    const Decoded decoded(file(1, {unmasked, other}));
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.masked(0, 0), 0) << "the next image's bytes are no mask of this one";
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
