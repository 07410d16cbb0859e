#include "platform/linux/codecs/painted.h"
#include "support/tiff_file.h"

#include <string>
#include <tuple>

namespace orvane::codecs::test {
namespace {

using orvane::test::TiffFile;

int sampleAt(uint32_t x, uint32_t y, int sample) {
    return static_cast<int>(
        (x * 2654435761u + y * 40503u * 977u + static_cast<uint32_t>(sample) * 12289u) >> 7 &
        0xFFFF);
}

TiffFile sampleFile(int photometric, int bits) {
    TiffFile file;
    file.width = 21;
    file.height = 11;
    file.photometric = photometric;
    file.bits = bits;
    file.samples = photometric == 2 ? 3 : photometric == 5 ? 4 : 1;
    file.rowsPerStrip = 4;
    file.sample = sampleAt;
    if (photometric == 3) {
        for (int i = 0; i < 3 << bits; ++i)
            file.palette.push_back(static_cast<uint16_t>(static_cast<unsigned>(i) * 21277U + 300U));
    }
    return file;
}

int valueOf(const TiffFile& file, uint32_t x, uint32_t y, int sample) {
    return file.sample(x, y, sample) & ((1 << file.bits) - 1);
}

int channelOf(const TiffFile& file, uint32_t x, uint32_t y, int sample) {
    const int value = valueOf(file, x, y, sample);
    return file.bits > 8 ? value >> (file.bits - 8) : value * 255 / ((1 << file.bits) - 1);
}

Painted expectedColour(const TiffFile& file, uint32_t x, uint32_t y) {
    const auto at = [&](int sample) { return channelOf(file, x, y, sample); };
    switch (file.photometric) {
    case 0: {
        const int most = (1 << std::min(file.bits, 8)) - 1;
        const int value = file.bits > 8 ? at(0) : valueOf(file, x, y, 0);
        const int level = (most - value) * 255 / most;
        return {level, level, level};
    }
    case 1:
        return {at(0), at(0), at(0)};
    case 3: {
        const size_t count = size_t{1} << file.bits;
        const auto index = static_cast<size_t>(valueOf(file, x, y, 0));
        return {file.palette[index] >> 8, file.palette[count + index] >> 8,
                file.palette[2 * count + index] >> 8};
    }
    case 5: {
        const auto left = [&](int sample) { return (255 - at(sample)) * (255 - at(3)) / 255; };
        return {left(0), left(1), left(2)};
    }
    default:
        return {at(0), at(1), at(2)};
    }
}

void expectPixels(const TiffFile& file) {
    const Image image(file.bytes());
    ASSERT_EQ(image.examined, ORVANE_CODEC_OK);
    ASSERT_EQ(image.painted, ORVANE_CODEC_OK);
    for (uint32_t y = 0; y < file.height; ++y) {
        for (uint32_t x = 0; x < file.width; ++x)
            ASSERT_EQ(image.pixel(x, y), expectedColour(file, x, y)) << x << ", " << y;
    }
}

struct Kind {
    int photometric;
    int bits;
    uint32_t pixelFormat;
};

// The rows of GDI+'s formats, and what is told like them.
constexpr Kind kKinds[] = {
    {0, 1, 0x30101},   {0, 2, 0x26200A},  {0, 4, 0x26200A},  {0, 6, 0x26200A},  {0, 8, 0x30803},
    {0, 12, 0x26200A}, {0, 16, 0x26200A}, {1, 1, 0x30101},   {1, 2, 0x26200A},  {1, 3, 0x26200A},
    {1, 4, 0x26200A},  {1, 5, 0x26200A},  {1, 7, 0x26200A},  {1, 8, 0x30803},   {1, 9, 0x26200A},
    {1, 10, 0x26200A}, {1, 14, 0x26200A}, {1, 16, 0x26200A}, {2, 1, 0x21808},   {2, 2, 0x21808},
    {2, 4, 0x21808},   {2, 5, 0x21808},   {2, 8, 0x21808},   {2, 10, 0x10300C}, {2, 12, 0x10300C},
    {2, 14, 0x10300C}, {2, 16, 0x10300C}, {3, 1, 0x30101},   {3, 2, 0x26200A},  {3, 4, 0x30402},
    {3, 8, 0x30803},   {5, 8, 0x26200A},  {5, 16, 0x34400D},
};

class EveryTiff : public testing::TestWithParam<Kind> {
protected:
    const TiffFile file_ = sampleFile(GetParam().photometric, GetParam().bits);
};

TEST_P(EveryTiff, TellsItsSizeAndPixelFormat) {
    const Image image(file_.bytes());
    EXPECT_EQ(image.facts.width, 21u);
    EXPECT_EQ(image.facts.height, 11u);
    EXPECT_EQ(image.facts.format, static_cast<uint32_t>(ORVANE_IMAGE_TIFF));
    EXPECT_EQ(image.facts.pixelFormat, GetParam().pixelFormat);
}

TEST_P(EveryTiff, IsPaintedPixelForPixelInEitherByteOrder) {
    for (const bool bigEndian : {false, true}) {
        SCOPED_TRACE(bigEndian);
        TiffFile file = file_;
        file.bigEndian = bigEndian;
        expectPixels(file);
    }
}

TEST_P(EveryTiff, IsPaintedTheSameFromTilesAndPlanes) {
    for (const auto& [tile, separate] :
         {std::tuple(16u, false), std::tuple(0u, true), std::tuple(16u, true)}) {
        SCOPED_TRACE(testing::Message() << "tiles of " << tile << ", planes " << separate);
        TiffFile file = file_;
        file.tile = tile;
        file.separate = separate;
        expectPixels(file);
    }
}

TEST_P(EveryTiff, IsPaintedTheSameWhateverItsOrientation) {
    for (int orientation = 1; orientation <= 8; ++orientation) {
        SCOPED_TRACE(orientation);
        TiffFile file = file_;
        file.tags[274] = orientation;
        expectPixels(file);
    }
}

TEST_P(EveryTiff, EveryBeginningIsSafe) {
    TiffFile file = file_;
    file.width = 5;
    file.height = 3;
    file.rowsPerStrip = 2;
    // The directory stands at the end; without its last 4 bytes there is only no next page.
    const std::vector<uint8_t> bytes = file.bytes();
    paintEveryBeginning(bytes, bytes.size() - 16);
}

INSTANTIATE_TEST_SUITE_P(Kinds, EveryTiff, testing::ValuesIn(kKinds),
                         [](const testing::TestParamInfo<Kind>& kind) {
                             return "Photometric" + std::to_string(kind.param.photometric) +
                                    "Bits" + std::to_string(kind.param.bits);
                         });

/// The kind of the further sample, its bits, planes.
using Alpha = std::tuple<int, int, bool>;

class EveryAlpha : public testing::TestWithParam<Alpha> {};

TEST_P(EveryAlpha, IsPaintedOverTheGround) {
    const auto [kind, bits, separate] = GetParam();
    TiffFile file = sampleFile(2, bits);
    file.samples = 4;
    file.extra = kind;
    file.separate = separate;
    const int most = (1 << bits) - 1;
    file.sample = [most](uint32_t x, uint32_t, int sample) {
        if (sample == 3) return static_cast<int>(x) * most / 20;
        return static_cast<int>(x) * most / 40;
    };
    const Image image(file.bytes());
    ASSERT_EQ(image.painted, ORVANE_CODEC_OK);
    const bool premultiplied = kind == 1;
    const uint32_t deep = premultiplied ? pixel_format::k64bppPArgb : pixel_format::k64bppArgb;
    const uint32_t usual = premultiplied ? pixel_format::k32bppPArgb : pixel_format::k32bppArgb;
    EXPECT_EQ(image.facts.pixelFormat, bits > 8 ? deep : usual);
    for (uint32_t x = 0; x < file.width; ++x) {
        const Painted colour = expectedColour(file, x, 0);
        const int alpha = channelOf(file, x, 0, 3);
        const Painted rest = over({0, 0, 0}, alpha);
        const Painted added{colour.red + rest.red, colour.green + rest.green,
                            colour.blue + rest.blue};
        EXPECT_EQ(image.pixel(x, 3), premultiplied ? added : over(colour, alpha)) << x;
    }
}

INSTANTIATE_TEST_SUITE_P(Kinds, EveryAlpha,
                         testing::Combine(testing::Values(-1, 0, 1, 2), testing::Values(4, 8, 16),
                                          testing::Bool()));

TEST(Tiff, GreyMayHaveAlpha) {
    for (const int bits : {8, 16}) {
        for (const bool separate : {false, true}) {
            TiffFile file = sampleFile(1, bits);
            file.samples = 2;
            file.extra = 2;
            file.separate = separate;
            const Image image(file.bytes());
            ASSERT_EQ(image.painted, ORVANE_CODEC_OK);
            const int level = channelOf(file, 5, 5, 0);
            EXPECT_EQ(image.pixel(5, 5), over({level, level, level}, channelOf(file, 5, 5, 1)));
        }
    }
}

TEST(Tiff, APaletteOfEightBitNumbersIsTakenAsItIs) {
    TiffFile file = sampleFile(3, 4);
    for (uint16_t& entry : file.palette)
        entry &= 0xFF;
    const Image image(file.bytes());
    const auto index = static_cast<size_t>(valueOf(file, 2, 2, 0));
    EXPECT_EQ(image.pixel(2, 2),
              (Painted{file.palette[index], file.palette[16 + index], file.palette[32 + index]}));
}

TEST(Tiff, NumbersOfFloatingPointAreColoursFromNoneToFull) {
    TiffFile file = sampleFile(1, 16);
    file.tags[339] = 3;
    file.sample = [](uint32_t x, uint32_t, int) {
        constexpr int kHalves[] = {0x0000, 0x3800, 0x3C00, 0x4000, 0xB800, 0x0001, 0x7C00, 0x7E00};
        return kHalves[x % 8];
    };
    const Image image(file.bytes());
    const int expected[] = {0, 128, 255, 255, 0, 0, 255, 0};
    for (uint32_t x = 0; x < 8; ++x)
        EXPECT_EQ(image.pixel(x, 0).red, expected[x]) << x;
}

TEST(Tiff, OnlyTheFirstPageIsRead) {
    TiffFile file = sampleFile(2, 8);
    std::vector<uint8_t> bytes = file.bytes();
    bytes[bytes.size() - 4] = 0xFF;  // where the next page would stand
    const Image image(bytes);
    EXPECT_EQ(image.painted, ORVANE_CODEC_OK);
    EXPECT_EQ(image.pixel(1, 1), expectedColour(file, 1, 1));
}

TEST(Tiff, WhatGdiPlusDoesNotReadIsRefused) {
    const auto resultWith = [](int photometric, int bits, int tag, int value) {
        TiffFile file = sampleFile(photometric, bits);
        file.tags[tag] = value;
        return Image(file.bytes()).examined;
    };
    EXPECT_EQ(resultWith(2, 8, 262, 8), ORVANE_CODEC_UNSUPPORTED) << "L*a*b*";
    EXPECT_EQ(resultWith(2, 8, 262, 32803), ORVANE_CODEC_UNSUPPORTED) << "a colour filter array";
    EXPECT_EQ(resultWith(1, 8, 259, 34925), ORVANE_CODEC_UNSUPPORTED) << "LZMA";
    EXPECT_EQ(resultWith(1, 8, 259, 50000), ORVANE_CODEC_UNSUPPORTED) << "Zstandard";
    EXPECT_EQ(resultWith(1, 8, 259, 6), ORVANE_CODEC_UNSUPPORTED) << "JPEG in its first form";
    EXPECT_EQ(resultWith(1, 8, 339, 5), ORVANE_CODEC_UNSUPPORTED) << "complex numbers";
    EXPECT_EQ(resultWith(5, 8, 332, 2), ORVANE_CODEC_UNSUPPORTED) << "inks of other names";
    EXPECT_EQ(resultWith(3, 16, 339, 1), ORVANE_CODEC_UNSUPPORTED) << "indices of 16 bits";
}

TEST(Tiff, BigTiffIsAnotherFormat) {
    EXPECT_EQ(Image({'I', 'I', 43, 0, 8, 0, 0, 0, 16, 0, 0, 0, 0, 0, 0, 0}).examined,
              ORVANE_CODEC_NOT_RECOGNISED);
}

TEST(Tiff, AHeaderThatClaimsMoreThanTheFileHoldsIsRefusedBeforeMemoryIsTaken) {
    TiffFile file = sampleFile(2, 8);
    file.width = 15000;
    file.rowsPerStrip = file.height = 2;
    std::vector<uint8_t> bytes = file.bytes();
    const auto directory = static_cast<uint32_t>(bytes[4] | bytes[5] << 8 | bytes[6] << 16);
    // The second entry is the height.
    bytes[directory + 2 + 12 + 8] = 0x98;
    bytes[directory + 2 + 12 + 9] = 0x3A;
    EXPECT_EQ(Image(bytes).examined, ORVANE_CODEC_DAMAGED);
}

TEST(Tiff, AStripHoldsNoMoreThanTheFileWhateverItSays) {
    TiffFile file = sampleFile(2, 8);
    std::vector<uint8_t> bytes = file.bytes();
    const size_t directory = size_t{bytes[4]} + bytes[5] * 256u;
    // Entries of 12 bytes, their values in the last four: 15000 x 15000, one strip of 4 GiB.
    const auto setTag = [&](int tag, uint32_t value) {
        for (size_t at = directory + 2; at < bytes.size() - 12; at += 12) {
            if (bytes[at] + bytes[at + 1] * 256 != tag) continue;
            bytes[at + 4] = 1;
            for (size_t i = 0; i < 4; ++i)
                bytes[at + 8 + i] = static_cast<uint8_t>(value >> 8 * i);
            return;
        }
    };
    setTag(256, 15000);
    setTag(257, 15000);
    setTag(273, 8);
    setTag(278, 15000);
    setTag(279, 0xFFFFFFFF);
    EXPECT_EQ(Image(bytes).examined, ORVANE_CODEC_DAMAGED);
}

TEST(Tiff, AStripBeyondTheMemoryToWorkInIsReadRowByRow) {
    TiffFile file = sampleFile(2, 8);
    file.width = 100;
    file.height = 300;
    file.rowsPerStrip = 300;
    const Image image(file.bytes(), Limits{1 << 20, 20000});
    ASSERT_EQ(image.painted, ORVANE_CODEC_OK);
    for (uint32_t y = 0; y < file.height; ++y)
        ASSERT_EQ(image.pixel(y % 100, y), expectedColour(file, y % 100, y)) << y;
}

TEST(Tiff, TheLastStripMayBeShorter) {
    TiffFile file = sampleFile(2, 8);
    for (const uint32_t rows : {1u, 3u, 10u, 11u}) {
        file.rowsPerStrip = rows;
        expectPixels(file);
    }
}

TEST(Tiff, ASurfaceBeyondTheLimitIsRefused) {
    EXPECT_EQ(Image(sampleFile(2, 8).bytes(), Limits{21 * 11 * 4 - 1, 1 << 20}).examined,
              ORVANE_CODEC_OUT_OF_MEMORY);
}

}  // namespace
}  // namespace orvane::codecs::test
