#include "platform/linux/codecs/decoded.h"

namespace orvane::codecs::test {
namespace {

/// What a test varies of a BMP.
struct Bmp {
    int headerSize = 40;
    int width = 1;
    int height = 1;
    int planes = 1;
    int bits = 24;
    int compression = 0;
    int64_t colours = 0;
    /// What stands between the first 40 bytes of the header and the pixels.
    Bytes table;
    Bytes pixels;
    /// Added to the offset of the pixels.
    int gap = 0;

    Bytes build() const {
        Bytes dib;
        dib.u32(headerSize);
        if (headerSize == 12) dib.u16(width).u16(height).u16(planes).u16(bits);
        else dib.u32(width).u32(height).u16(planes).u16(bits);
        if (headerSize >= 40) dib.u32(compression).u32(0).u32(0).u32(0).u32(colours).u32(0);
        dib.add(table).zeroes(static_cast<size_t>(gap));
        Bytes file;
        file.text("BM").u32(0).u32(0).u32(static_cast<int64_t>(14 + dib.size()));
        return file.add(dib).add(pixels);
    }
};

Bytes colours(std::initializer_list<Colour> list, bool fourBytes = true) {
    Bytes table;
    for (const Colour& colour : list) {
        table.u8({colour.blue, colour.green, colour.red});
        if (fourBytes) table.u8({0});
    }
    return table;
}

constexpr Colour kBlack{0, 0, 0};
constexpr Colour kRed{255, 0, 0};
constexpr Colour kGreen{0, 255, 0};
constexpr Colour kBlue{0, 0, 255};
constexpr Colour kWhite{255, 255, 255};

Bytes rgb24() {
    Bmp bmp;
    bmp.width = 2;
    bmp.height = 2;
    bmp.pixels.u8({255, 0, 0, 0, 255, 0, 0, 0, /**/ 0, 0, 255, 255, 255, 255, 0, 0});
    return bmp.build();
}

TEST(Bmp, RowsComeFromTheBottomUpAndLeaveTopDown) {
    const Decoded decoded(rgb24());
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.kind, ORVANE_PICTURE_BITMAP);
    EXPECT_EQ(decoded.picture.width, 2);
    EXPECT_EQ(decoded.picture.height, 2);
    EXPECT_EQ(decoded.picture.bitsPerPixel, 24);
    EXPECT_EQ(decoded.picture.stride, 8u);
    EXPECT_EQ(decoded.picture.pixelBytes, 16u);
    EXPECT_EQ(decoded.picture.transparentIndex, -1);
    EXPECT_EQ(decoded.colour(0, 0), kRed);
    EXPECT_EQ(decoded.colour(1, 0), kWhite);
    EXPECT_EQ(decoded.colour(0, 1), kBlue);
    EXPECT_EQ(decoded.colour(1, 1), kGreen);
}

TEST(Bmp, ANegativeHeightMeansTopDownRows) {
    const Decoded decoded(rgb24().patch(22, -2, 4));
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.height, 2);
    EXPECT_EQ(decoded.colour(0, 0), kBlue);
    EXPECT_EQ(decoded.colour(0, 1), kRed);
}

TEST(Bmp, TheLastRowMayLackItsPadding) {
    Bytes file = rgb24();
    const Bytes whole = file;
    const Decoded decoded(std::span(whole.data()).first(whole.size() - 2));
    EXPECT_EQ(decoded.result, ORVANE_CODEC_OK);
    const Decoded shorter(std::span(whole.data()).first(whole.size() - 3));
    EXPECT_EQ(shorter.result, ORVANE_CODEC_DAMAGED);
}

TEST(Bmp, OneBitKeepsItsDepthAndPalette) {
    Bmp bmp;
    bmp.width = 10;
    bmp.bits = 1;
    bmp.table = colours({kRed, kBlue});
    bmp.pixels.u8({0xa0, 0x40, 0, 0});
    const Decoded decoded(bmp.build());
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.bitsPerPixel, 1);
    EXPECT_EQ(decoded.picture.paletteCount, 2u);
    EXPECT_EQ(decoded.picture.stride, 4u);
    EXPECT_EQ(decoded.colour(0, 0), kBlue);
    EXPECT_EQ(decoded.colour(1, 0), kRed);
    EXPECT_EQ(decoded.colour(9, 0), kBlue);
}

TEST(Bmp, FourBitsPutTheLeftPixelHigh) {
    Bmp bmp;
    bmp.width = 3;
    bmp.bits = 4;
    bmp.colours = 4;
    bmp.table = colours({kBlack, kRed, kGreen, kBlue});
    bmp.pixels.u8({0x12, 0x30, 0, 0});
    const Decoded decoded(bmp.build());
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.bitsPerPixel, 4);
    EXPECT_EQ(decoded.picture.paletteCount, 4u);
    EXPECT_EQ(decoded.colour(0, 0), kRed);
    EXPECT_EQ(decoded.colour(1, 0), kGreen);
    EXPECT_EQ(decoded.colour(2, 0), kBlue);
}

TEST(Bmp, APaletteCutShortByThePixelsIsBlackBehind) {
    Bmp bmp;
    bmp.width = 3;
    bmp.bits = 8;
    bmp.colours = 256;
    bmp.table = colours({kRed, kGreen});
    bmp.pixels.u8({0, 1, 2, 0});
    const Decoded decoded(bmp.build());
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.paletteCount, 2u);
    EXPECT_EQ(decoded.colour(0, 0), kRed);
    EXPECT_EQ(decoded.colour(1, 0), kGreen);
    EXPECT_EQ(decoded.colour(2, 0), kBlack);
}

TEST(Bmp, APaletteLongerThanItsDepthIsCutAndSkipped) {
    Bmp bmp;
    bmp.bits = 1;
    bmp.colours = 3;
    bmp.table = colours({kRed, kGreen, kBlue});
    bmp.pixels.u8({0x80, 0, 0, 0});
    const Decoded decoded(bmp.build());
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.paletteCount, 2u);
    EXPECT_EQ(decoded.colour(0, 0), kGreen);
}

TEST(Bmp, TheOffsetOfThePixelsIsHonoured) {
    Bmp bmp;
    bmp.gap = 100;
    bmp.pixels.u8({255, 0, 0, 0});
    const Decoded decoded(bmp.build());
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.colour(0, 0), kBlue);
}

TEST(Bmp, WithoutAnOffsetThePixelsFollowTheColours) {
    Bmp bmp;
    bmp.bits = 8;
    bmp.colours = 2;
    bmp.table = colours({kRed, kGreen});
    bmp.pixels.u8({1, 0, 0, 0});
    const Decoded decoded(bmp.build().patch(10, 0, 4));
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.colour(0, 0), kGreen);
}

TEST(Bmp, AnOffsetIntoTheHeaderIsDamage) {
    EXPECT_EQ(Decoded(rgb24().patch(10, 53, 4)).result, ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(Decoded(rgb24().patch(10, 0xffffffff, 4)).result, ORVANE_CODEC_DAMAGED);
}

TEST(Bmp, SixteenBitsAreFiveFiveFiveByDefault) {
    Bmp bmp;
    bmp.width = 2;
    bmp.bits = 16;
    bmp.pixels.u16(0x7c00).u16(0x03e0);
    const Decoded decoded(bmp.build());
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.bitsPerPixel, 16);
    EXPECT_EQ(decoded.picture.greenMask, 0x03e0u);
    EXPECT_EQ(decoded.colour(0, 0), kRed);
    EXPECT_EQ(decoded.colour(1, 0), kGreen);
}

TEST(Bmp, SixteenBitsKeepSixBitsOfGreen) {
    Bmp bmp;
    bmp.width = 2;
    bmp.bits = 16;
    bmp.compression = 3;
    bmp.table.u32(0xf800).u32(0x07e0).u32(0x001f);
    bmp.pixels.u16(0x07e0).u16(0x0020);
    const Decoded decoded(bmp.build());
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.greenMask, 0x07e0u);
    EXPECT_EQ(decoded.colour(0, 0), kGreen);
    EXPECT_EQ(decoded.colour(1, 0), (Colour{0, 4, 0}));
}

TEST(Bmp, OddMasksOfSixteenBitsAreStretched) {
    Bmp bmp;
    bmp.headerSize = 56;
    bmp.width = 4;
    bmp.bits = 16;
    bmp.compression = 3;
    bmp.table.u32(0x0f00).u32(0x00f0).u32(0x000f).u32(0xf000);
    bmp.pixels.u16(0x0f00).u16(0x00f0).u16(0x000f).u16(0x0800);
    const Decoded decoded(bmp.build());
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.colour(0, 0), kRed);
    EXPECT_EQ(decoded.colour(1, 0), kGreen);
    EXPECT_EQ(decoded.colour(2, 0), kBlue);
    // 8 of 15 is 17 of 31.
    EXPECT_EQ(decoded.colour(3, 0), (Colour{140, 0, 0}));
}

TEST(Bmp, ThirtyTwoBitsWithoutMasksHaveNoAlpha) {
    Bmp bmp;
    bmp.bits = 32;
    bmp.pixels.u8({1, 2, 3, 4});
    const Decoded decoded(bmp.build());
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.bitsPerPixel, 32);
    EXPECT_EQ(decoded.picture.alphaMask, 0u);
    EXPECT_EQ(decoded.colour(0, 0), (Colour{3, 2, 1}));
}

TEST(Bmp, MasksOfThirtyTwoBitsAreReordered) {
    Bmp bmp;
    bmp.headerSize = 108;
    bmp.bits = 32;
    bmp.compression = 3;
    bmp.table.u32(0x000000ff).u32(0x0000ff00).u32(0x00ff0000).u32(0xff000000);
    bmp.table.zeroes(52);
    bmp.pixels.u8({1, 2, 3, 4});
    const Decoded decoded(bmp.build());
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.alphaMask, 0xff000000u);
    EXPECT_EQ(decoded.colour(0, 0), (Colour{1, 2, 3}));
    EXPECT_EQ(decoded.alpha(0, 0), 4);
}

TEST(Bmp, ChannelsOfTenBitsKeepTheirUpperEight) {
    Bmp bmp;
    bmp.headerSize = 124;
    bmp.bits = 32;
    bmp.compression = 3;
    bmp.table.u32(0x3ff00000).u32(0x000ffc00).u32(0x000003ff).u32(0xc0000000);
    bmp.table.zeroes(68);
    bmp.pixels.u32(int64_t{1} << 30 | 512 << 20 | 1023 << 10 | 7);
    const Decoded decoded(bmp.build());
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.colour(0, 0), (Colour{128, 255, 1}));
    EXPECT_EQ(decoded.alpha(0, 0), 85);
}

TEST(Bmp, AlphaMasksFollowAShortHeader) {
    Bmp bmp;
    bmp.bits = 32;
    bmp.compression = 6;
    bmp.table.u32(0xff0000).u32(0xff00).u32(0xff).u32(0xff000000);
    bmp.pixels.u8({1, 2, 3, 4});
    const Decoded decoded(bmp.build());
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.alphaMask, 0xff000000u);
    EXPECT_EQ(decoded.alpha(0, 0), 4);
}

TEST(Bmp, MasksThatMakeNoChannelAreDamage) {
    const auto result = [](int bits, int64_t red, int64_t green) {
        Bmp bmp;
        bmp.bits = bits;
        bmp.compression = 3;
        bmp.table.u32(red).u32(green).u32(0);
        bmp.pixels.zeroes(4);
        return Decoded(bmp.build()).result;
    };
    EXPECT_EQ(result(32, 0xff0000, 0), ORVANE_CODEC_OK);
    EXPECT_EQ(result(32, 0xf0f000, 0), ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(result(32, 0, 0), ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(result(16, 0x1f0000, 0x1f), ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(result(24, 0xff0000, 0xff00), ORVANE_CODEC_DAMAGED);
}

TEST(Bmp, TheCoreHeaderHasColoursOfThreeBytes) {
    Bmp bmp;
    bmp.headerSize = 12;
    bmp.width = 2;
    bmp.bits = 1;
    bmp.table = colours({kRed, kBlue}, false);
    bmp.pixels.u8({0x40, 0, 0, 0});
    const Decoded decoded(bmp.build());
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.paletteCount, 2u);
    EXPECT_EQ(decoded.colour(0, 0), kRed);
    EXPECT_EQ(decoded.colour(1, 0), kBlue);
}

TEST(Bmp, TheShortestOs2HeaderReadsAsUncompressed) {
    Bmp bmp;
    bmp.headerSize = 16;
    bmp.bits = 1;
    bmp.table = colours({kRed, kBlue});
    bmp.pixels.u8({0x80, 0, 0, 0});
    const Decoded decoded(bmp.build());
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.colour(0, 0), kBlue);
}

TEST(Bmp, TheLongOs2HeaderReads) {
    Bmp bmp;
    bmp.headerSize = 64;
    bmp.bits = 8;
    bmp.colours = 2;
    bmp.table.zeroes(24).add(colours({kRed, kBlue}));
    bmp.pixels.u8({1, 0, 0, 0});
    const Decoded decoded(bmp.build());
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.colour(0, 0), kBlue);
}

TEST(Bmp, Os2MeaningsOfCompressionAreUnsupported) {
    Bmp bmp;
    bmp.headerSize = 64;
    bmp.bits = 1;
    bmp.compression = 3;
    bmp.table.zeroes(24 + 8);
    bmp.pixels.zeroes(4);
    EXPECT_EQ(Decoded(bmp.build()).result, ORVANE_CODEC_UNSUPPORTED);
    bmp.bits = 24;
    bmp.compression = 4;
    EXPECT_EQ(Decoded(bmp.build()).result, ORVANE_CODEC_UNSUPPORTED);
}

TEST(Bmp, DepthsAndCompressionsOfOtherReadersAreUnsupported) {
    Bmp bmp;
    bmp.bits = 2;
    bmp.table.zeroes(16);
    bmp.pixels.zeroes(8);
    EXPECT_EQ(Decoded(bmp.build()).result, ORVANE_CODEC_UNSUPPORTED);
    EXPECT_EQ(Decoded(rgb24().patch(30, 5, 4)).result, ORVANE_CODEC_UNSUPPORTED);
}

TEST(Bmp, HeadersWithoutSenseAreDamage) {
    EXPECT_EQ(Decoded(rgb24().patch(14, 41 * 100, 4)).result, ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(Decoded(rgb24().patch(18, 0, 4)).result, ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(Decoded(rgb24().patch(18, -2, 4)).result, ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(Decoded(rgb24().patch(22, 0, 4)).result, ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(Decoded(rgb24().patch(22, INT32_MIN, 4)).result, ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(Decoded(rgb24().patch(26, 0, 2)).result, ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(Decoded(rgb24().patch(28, 23, 2)).result, ORVANE_CODEC_DAMAGED);
}

TEST(Bmp, MoreThanTheFileHoldsIsRefusedBeforeMemoryIsTaken) {
    // With no memory allowed, only a check ahead of it can find the damage.
    const Limits nothing{0, 0};
    EXPECT_EQ(Decoded(rgb24().patch(18, 0x7fffffff, 4).patch(22, 0x7fffffff, 4), nothing).result,
              ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(Decoded(rgb24(), nothing).result, ORVANE_CODEC_OUT_OF_MEMORY);
}

TEST(Bmp, ASurfaceOfTwoGigabytesIsRefused) {
    Bmp bmp;
    bmp.width = 65536;
    bmp.height = 32768;
    bmp.bits = 8;
    bmp.compression = 1;
    bmp.table.zeroes(1024);
    bmp.pixels.u8({0, 1});
    EXPECT_EQ(Decoded(bmp.build()).result, ORVANE_CODEC_OUT_OF_MEMORY);
}

TEST(Bmp, EveryBeginningIsRefused) {
    const Bytes file = rgb24();
    decodeEveryBeginning(file, file.size() - 2);
    Bmp masks;
    masks.headerSize = 124;
    masks.bits = 16;
    masks.compression = 3;
    masks.table.u32(0xf00).u32(0xf0).u32(0xf).u32(0xf000).zeroes(68);
    masks.pixels.zeroes(4);
    decodeEveryBeginning(masks.build(), masks.build().size() - 2);
}

}  // namespace
}  // namespace orvane::codecs::test
