#include "platform/linux/codecs/painted.h"
#include "support/png_file.h"

#include <string>

namespace orvane::codecs::test {
namespace {

using orvane::test::PngFile;

/// A value for each channel of each pixel, with all of 16 bits in use.
int sampleAt(uint32_t x, uint32_t y, int channel) {
    return static_cast<int>(
        (x * 2654435761u + y * 40503u * 977u + static_cast<uint32_t>(channel) * 12289u) >> 7 &
        0xFFFF);
}

PngFile sampleFile(int colour, int depth) {
    PngFile file;
    file.width = 21;
    file.height = 11;
    file.colour = colour;
    file.depth = depth;
    file.sample = sampleAt;
    if (colour == 3) {
        for (int i = 0; i < 3 << depth; ++i)
            file.palette.push_back(static_cast<uint8_t>(i * 83 + 5));
    }
    return file;
}

/// A sample of the file's depth as a channel of 8 bits.
int channelOf(const PngFile& file, uint32_t x, uint32_t y, int channel) {
    const int value = file.sample(x, y, channel) & ((1 << file.depth) - 1);
    if (file.depth == 16) return value >> 8;
    return value * 255 / ((1 << file.depth) - 1);
}

Painted expectedPixel(const PngFile& file, uint32_t x, uint32_t y) {
    const auto at = [&](int channel) { return channelOf(file, x, y, channel); };
    if (file.colour == 3) {
        const auto index = static_cast<size_t>(file.sample(x, y, 0) & ((1 << file.depth) - 1)) * 3;
        return {file.palette[index], file.palette[index + 1], file.palette[index + 2]};
    }
    if (file.colour == 0) return {at(0), at(0), at(0)};
    if (file.colour == 4) return over({at(0), at(0), at(0)}, at(1));
    const Painted colour{at(0), at(1), at(2)};
    return file.colour == 6 ? over(colour, at(3)) : colour;
}

void expectPixels(const PngFile& file, const Image& image) {
    ASSERT_EQ(image.examined, ORVANE_CODEC_OK);
    ASSERT_EQ(image.painted, ORVANE_CODEC_OK);
    for (uint32_t y = 0; y < file.height; ++y) {
        for (uint32_t x = 0; x < file.width; ++x)
            ASSERT_EQ(image.pixel(x, y), expectedPixel(file, x, y)) << x << ", " << y;
    }
}

struct Kind {
    int colour;
    int depth;
    uint32_t pixelFormat;
};

// The rows of GDI+'s formats.
constexpr Kind kKinds[] = {
    {0, 1, 0x30101}, {0, 2, 0x26200A},  {0, 4, 0x26200A},  {0, 8, 0x26200A}, {0, 16, 0x26200A},
    {2, 8, 0x21808}, {2, 16, 0x10300C}, {3, 1, 0x30101},   {3, 2, 0x26200A}, {3, 4, 0x30402},
    {3, 8, 0x30803}, {4, 8, 0x26200A},  {4, 16, 0x26200A}, {6, 8, 0x26200A}, {6, 16, 0x34400D},
};

class EveryPng : public testing::TestWithParam<Kind> {};

TEST_P(EveryPng, TellsItsSizeAndPixelFormat) {
    const Image image(sampleFile(GetParam().colour, GetParam().depth).bytes());
    EXPECT_EQ(image.facts.width, 21u);
    EXPECT_EQ(image.facts.height, 11u);
    EXPECT_EQ(image.facts.format, static_cast<uint32_t>(ORVANE_IMAGE_PNG));
    EXPECT_EQ(image.facts.pixelFormat, GetParam().pixelFormat);
}

TEST_P(EveryPng, IsPaintedPixelForPixel) {
    const PngFile file = sampleFile(GetParam().colour, GetParam().depth);
    expectPixels(file, Image(file.bytes()));
}

TEST_P(EveryPng, IsPaintedTheSameWhenItIsInterlaced) {
    PngFile file = sampleFile(GetParam().colour, GetParam().depth);
    file.interlaced = true;
    expectPixels(file, Image(file.bytes()));
}

TEST_P(EveryPng, IsPaintedOnRowsFromTheBottomUp) {
    const PngFile file = sampleFile(GetParam().colour, GetParam().depth);
    expectPixels(file, Image(file.bytes(), {}, true));
}

TEST_P(EveryPng, IsPaintedTheSameWhateverItsGammaAndBackground) {
    PngFile file = sampleFile(GetParam().colour, GetParam().depth);
    file.extra = PngFile::chunk("gAMA", {0, 1, 0x86, 0xA0});
    const PngFile::Bytes srgb = PngFile::chunk("sRGB", {1});
    file.extra.insert(file.extra.end(), srgb.begin(), srgb.end());
    expectPixels(file, Image(file.bytes()));
}

TEST_P(EveryPng, IsRefusedWhereverItIsCutShort) {
    PngFile file = sampleFile(GetParam().colour, GetParam().depth);
    file.width = 3;
    file.height = 2;
    const std::vector<uint8_t> bytes = file.bytes();
    // The end chunk of 12 bytes, the pixels' sum and their chunk's own of 4 each aren't looked at.
    paintEveryBeginning(bytes, bytes.size() - 20);
}

INSTANTIATE_TEST_SUITE_P(ColourTypes, EveryPng, testing::ValuesIn(kKinds),
                         [](const testing::TestParamInfo<Kind>& kind) {
                             return "Colour" + std::to_string(kind.param.colour) + "Depth" +
                                    std::to_string(kind.param.depth);
                         });

TEST(Png, PaletteEntriesMayBeTransparent) {
    PngFile file = sampleFile(3, 2);
    file.transparency = {0, 128, 255};
    file.sample = [](uint32_t x, uint32_t, int) { return static_cast<int>(x % 4); };
    const Image image(file.bytes());
    ASSERT_EQ(image.painted, ORVANE_CODEC_OK);
    EXPECT_EQ(image.facts.pixelFormat, pixel_format::k32bppArgb);
    EXPECT_EQ(image.pixel(0, 0), kGround);
    EXPECT_EQ(image.pixel(1, 0), over(expectedPixel(file, 1, 0), 128));
    EXPECT_EQ(image.pixel(2, 0), expectedPixel(file, 2, 0));
    EXPECT_EQ(image.pixel(3, 0), expectedPixel(file, 3, 0)) << "an entry without a word is opaque";
}

TEST(Png, InterlacedRowsWithAlphaArePaintedOnce) {
    PngFile file = sampleFile(6, 8);
    file.interlaced = true;
    file.sample = [](uint32_t, uint32_t, int channel) { return channel == 3 ? 100 : 200; };
    const Image image(file.bytes());
    for (uint32_t x = 0; x < file.width; ++x)
        EXPECT_EQ(image.pixel(x, 5), over({200, 200, 200}, 100)) << x;
}

TEST(Png, OneColourMayBeTransparent) {
    PngFile file = sampleFile(2, 8);
    file.transparency = {0, 10, 0, 20, 0, 30};
    file.sample = [](uint32_t x, uint32_t, int channel) {
        return static_cast<int>(x == 4) + (channel + 1) * 10;
    };
    const Image image(file.bytes());
    EXPECT_EQ(image.facts.pixelFormat, pixel_format::k32bppArgb);
    EXPECT_EQ(image.pixel(0, 0), kGround);
    EXPECT_EQ(image.pixel(4, 0), (Painted{11, 21, 31}));
}

TEST(Png, OneGreyMayBeTransparentAtEveryDepth) {
    for (const int depth : {1, 2, 4, 8, 16}) {
        SCOPED_TRACE(depth);
        PngFile file = sampleFile(0, depth);
        file.transparency = {0, 1};
        file.sample = [](uint32_t x, uint32_t, int) { return static_cast<int>(x % 2); };
        const Image image(file.bytes());
        EXPECT_EQ(image.facts.pixelFormat, pixel_format::k32bppArgb);
        EXPECT_EQ(image.pixel(0, 0), (Painted{0, 0, 0}));
        EXPECT_EQ(image.pixel(1, 0), kGround);
    }
}

TEST(Png, OneColourOfSixteenBitsMayBeTransparent) {
    PngFile file = sampleFile(2, 16);
    file.transparency = {1, 2, 3, 4, 5, 6};
    file.sample = [](uint32_t x, uint32_t, int channel) {
        constexpr int kOpen[] = {0x102, 0x304, 0x506};
        return kOpen[channel] + static_cast<int>(x == 4);
    };
    const Image image(file.bytes());
    EXPECT_EQ(image.facts.pixelFormat, pixel_format::k64bppArgb);
    EXPECT_EQ(image.pixel(0, 0), kGround) << "compared in all 16 bits";
    EXPECT_EQ(image.pixel(4, 0), (Painted{1, 3, 5}));
}

TEST(Png, AnIndexBehindThePaletteIsBlack) {
    PngFile file = sampleFile(3, 8);
    file.palette.resize(6);
    file.sample = [](uint32_t x, uint32_t, int) { return static_cast<int>(x); };
    const Image image(file.bytes());
    ASSERT_EQ(image.painted, ORVANE_CODEC_OK);
    EXPECT_EQ(image.pixel(5, 0), (Painted{0, 0, 0}));
}

TEST(Png, ADamagedSumOfTheHeaderIsRefused) {
    std::vector<uint8_t> bytes = sampleFile(2, 8).bytes();
    bytes[30] ^= 1;
    EXPECT_EQ(Image(bytes).examined, ORVANE_CODEC_DAMAGED);
}

TEST(Png, AHeaderThatClaimsMoreThanTheFileCanHoldIsRefusedBeforeMemoryIsTaken) {
    PngFile file = sampleFile(6, 16);
    std::vector<uint8_t> bytes = file.bytes();
    PngFile huge = file;
    huge.width = huge.height = 0x7FFFFFFF;
    huge.sample = nullptr;
    std::vector<uint8_t> header = {0x7F, 0xFF, 0xFF, 0xFF, 0x7F, 0xFF, 0xFF, 0xFF, 16, 6, 0, 0, 0};
    const std::vector<uint8_t> chunk = PngFile::chunk("IHDR", header);
    std::copy(chunk.begin(), chunk.end(), bytes.begin() + 8);
    EXPECT_EQ(Image(bytes).examined, ORVANE_CODEC_DAMAGED);
}

TEST(Png, ATextThatUnpacksToGigabytesIsNotUnpacked) {
    PngFile file = sampleFile(2, 8);
    file.extra = PngFile::chunk("zTXt", std::vector<uint8_t>(1000, 'a'));
    expectPixels(file, Image(file.bytes()));
}

TEST(Png, MemoryForInterlacedRowsIsLimited) {
    PngFile file = sampleFile(6, 8);
    file.interlaced = true;
    EXPECT_EQ(Image(file.bytes(), Limits{100, 1 << 20}).painted, ORVANE_CODEC_OUT_OF_MEMORY);
}

TEST(Png, ACanvasOfAnotherSizeIsRefused) {
    const std::vector<uint8_t> bytes = sampleFile(2, 8).bytes();
    std::vector<uint8_t> pixels(21 * 12 * 4);
    const OrvaneCanvas canvas{21, 12, pixels.data(), 21 * 4};
    EXPECT_EQ(paintPng(bytes, canvas, Limits{}), ORVANE_CODEC_UNSUPPORTED);
}

}  // namespace
}  // namespace orvane::codecs::test
