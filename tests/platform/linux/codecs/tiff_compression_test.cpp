#include "platform/linux/codecs/painted.h"
#include "support/allocations.h"
#include "support/tiff_file.h"

#include <malloc.h>
#include <tiffio.h>

#include <algorithm>
#include <cstring>
#include <string>

// Compressed files, by libtiff's own encoder.

namespace orvane::codecs::test {
namespace {

struct Memory {
    std::vector<uint8_t> bytes;
    uint64_t position = 0;
};

tmsize_t readMemory(thandle_t handle, void* to, tmsize_t size) {
    Memory& memory = *static_cast<Memory*>(handle);
    if (memory.position >= memory.bytes.size()) return 0;
    const size_t count = std::min(static_cast<size_t>(size), memory.bytes.size() - memory.position);
    std::memcpy(to, memory.bytes.data() + memory.position, count);
    memory.position += count;
    return static_cast<tmsize_t>(count);
}

tmsize_t writeMemory(thandle_t handle, void* from, tmsize_t size) {
    Memory& memory = *static_cast<Memory*>(handle);
    const uint64_t end = memory.position + static_cast<uint64_t>(size);
    if (memory.bytes.size() < end) memory.bytes.resize(end);
    std::memcpy(memory.bytes.data() + memory.position, from, static_cast<size_t>(size));
    memory.position = end;
    return size;
}

toff_t seekMemory(thandle_t handle, toff_t offset, int whence) {
    Memory& memory = *static_cast<Memory*>(handle);
    const uint64_t from = whence == SEEK_CUR   ? memory.position
                          : whence == SEEK_END ? memory.bytes.size()
                                               : 0;
    memory.position = from + offset;
    return memory.position;
}

int closeMemory(thandle_t) {
    return 0;
}

toff_t sizeOfMemory(thandle_t handle) {
    return static_cast<Memory*>(handle)->bytes.size();
}

struct Kind {
    const char* name;
    int compression;
    int photometric;
    int bits;
    int predictor = 1;
    bool tiled = false;
    int fillOrder = 1;
    int subsampling = 1;
};

void PrintTo(const Kind& kind, std::ostream* to) {
    *to << kind.name;
}

constexpr uint32_t kWidth = 40;
constexpr uint32_t kHeight = 24;

int samplesOf(const Kind& kind) {
    const bool colours =
        kind.photometric == PHOTOMETRIC_RGB || kind.photometric == PHOTOMETRIC_YCBCR;
    return kind.photometric == PHOTOMETRIC_SEPARATED ? 4 : colours ? 3 : 1;
}

/// One row of a picture with large areas and edges.
std::vector<uint8_t> rowOf(const Kind& kind, uint32_t y, uint32_t columns) {
    std::vector<uint8_t> row;
    if (kind.bits == 1) {
        row.resize((columns + 7) / 8);
        for (uint32_t x = 0; x < columns; ++x) {
            if ((x / 5 + y / 3) % 2 == 0) row[x / 8] |= static_cast<uint8_t>(0x80 >> x % 8);
        }
        return row;
    }
    for (uint32_t x = 0; x < columns; ++x) {
        for (int sample = 0; sample < samplesOf(kind); ++sample) {
            const auto value =
                static_cast<uint8_t>(static_cast<int>(x / 8 * 37 + y / 8 * 11) + sample * 60);
            row.push_back(value);
            if (kind.bits == 16) row.push_back(value);
        }
    }
    return row;
}

std::vector<uint8_t> build(const Kind& kind) {
    Memory memory;
    TIFF* tiff = TIFFClientOpen("", "w", &memory, readMemory, writeMemory, seekMemory, closeMemory,
                                sizeOfMemory, nullptr, nullptr);
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, kWidth);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, kHeight);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, kind.bits);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, samplesOf(kind));
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, kind.photometric);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, kind.compression);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_FILLORDER, kind.fillOrder);
    if (kind.predictor != 1) TIFFSetField(tiff, TIFFTAG_PREDICTOR, kind.predictor);
    if (kind.photometric == PHOTOMETRIC_YCBCR) {
        TIFFSetField(tiff, TIFFTAG_YCBCRSUBSAMPLING, kind.subsampling, kind.subsampling);
        if (kind.compression == COMPRESSION_JPEG) {
            TIFFSetField(tiff, TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
        }
    }
    if (kind.compression == COMPRESSION_JPEG) TIFFSetField(tiff, TIFFTAG_JPEGQUALITY, 100);
    if (kind.tiled) {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, 16);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, 16);
        for (uint32_t y = 0; y < kHeight; y += 16) {
            for (uint32_t x = 0; x < kWidth; x += 16) {
                std::vector<uint8_t> tile;
                for (uint32_t i = 0; i < 16; ++i) {
                    const std::vector<uint8_t> row = rowOf(kind, y + i, 48);
                    const size_t bytes = row.size() / 3;
                    const auto from = row.begin() + static_cast<ptrdiff_t>(x / 16 * bytes);
                    tile.insert(tile.end(), from, from + static_cast<ptrdiff_t>(bytes));
                }
                TIFFWriteTile(tiff, tile.data(), x, y, 0, 0);
            }
        }
    } else {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, 16);
        for (uint32_t y = 0; y < kHeight; ++y) {
            std::vector<uint8_t> row = rowOf(kind, y, kWidth);
            TIFFWriteScanline(tiff, row.data(), y, 0);
        }
    }
    TIFFClose(tiff);
    return memory.bytes;
}

Painted expectedPixel(const Kind& kind, uint32_t x, uint32_t y) {
    const std::vector<uint8_t> row = rowOf(kind, y, kWidth);
    if (kind.bits == 1) {
        const bool set = (row[x / 8] >> (7 - x % 8) & 1) != 0;
        const int level = set == (kind.photometric == PHOTOMETRIC_MINISBLACK) ? 255 : 0;
        return {level, level, level};
    }
    const size_t size = static_cast<size_t>(samplesOf(kind)) * static_cast<size_t>(kind.bits / 8);
    const uint8_t* at = row.data() + size * x;
    const size_t step = static_cast<size_t>(kind.bits / 8);
    if (kind.photometric == PHOTOMETRIC_SEPARATED) {
        const auto left = [at](int ink) { return (255 - at[ink]) * (255 - at[3]) / 255; };
        return {left(0), left(1), left(2)};
    }
    if (samplesOf(kind) == 1) return {at[0], at[0], at[0]};
    return {at[0], at[step], at[2 * step]};
}

constexpr int kRgb = PHOTOMETRIC_RGB;
constexpr int kGrey = PHOTOMETRIC_MINISBLACK;
constexpr int kWhiteIsZero = PHOTOMETRIC_MINISWHITE;
constexpr Kind kKinds[] = {
    {"LzwRgb", COMPRESSION_LZW, kRgb, 8},
    {"LzwRgbPredicted", COMPRESSION_LZW, kRgb, 8, 2},
    {"LzwRgb16Predicted", COMPRESSION_LZW, kRgb, 16, 2},
    {"LzwTiles", COMPRESSION_LZW, kRgb, 8, 2, true},
    {"LzwGrey", COMPRESSION_LZW, kGrey, 8},
    {"PackBitsRgb", COMPRESSION_PACKBITS, kRgb, 8},
    {"PackBitsBlackAndWhite", COMPRESSION_PACKBITS, kWhiteIsZero, 1},
    {"PackBitsTiles", COMPRESSION_PACKBITS, kRgb, 8, 1, true},
    {"DeflateRgb", COMPRESSION_ADOBE_DEFLATE, kRgb, 8},
    {"DeflateRgbPredicted", COMPRESSION_ADOBE_DEFLATE, kRgb, 8, 2},
    {"DeflateRgb16", COMPRESSION_ADOBE_DEFLATE, kRgb, 16},
    {"DeflateTiles", COMPRESSION_ADOBE_DEFLATE, kRgb, 8, 1, true},
    {"DeflateByItsFirstNumber", COMPRESSION_DEFLATE, kRgb, 8},
    {"CcittModified", COMPRESSION_CCITTRLE, kWhiteIsZero, 1},
    {"CcittGroup3", COMPRESSION_CCITTFAX3, kWhiteIsZero, 1},
    {"CcittGroup3BlackIsZero", COMPRESSION_CCITTFAX3, kGrey, 1},
    {"CcittGroup3BitsReversed", COMPRESSION_CCITTFAX3, kWhiteIsZero, 1, 1, false, 2},
    {"CcittGroup4", COMPRESSION_CCITTFAX4, kWhiteIsZero, 1},
    {"CcittGroup4Tiles", COMPRESSION_CCITTFAX4, kWhiteIsZero, 1, 1, true},
    {"JpegGrey", COMPRESSION_JPEG, kGrey, 8},
    {"JpegRgb", COMPRESSION_JPEG, kRgb, 8},
    {"JpegDifferences", COMPRESSION_JPEG, PHOTOMETRIC_YCBCR, 8},
    {"JpegFewerDifferences", COMPRESSION_JPEG, PHOTOMETRIC_YCBCR, 8, 1, false, 1, 2},
    {"JpegTiles", COMPRESSION_JPEG, PHOTOMETRIC_YCBCR, 8, 1, true},
    {"JpegInks", COMPRESSION_JPEG, PHOTOMETRIC_SEPARATED, 8},
};

class CompressedTiff : public testing::TestWithParam<Kind> {};

TEST_P(CompressedTiff, IsPaintedPixelForPixel) {
    const Kind& kind = GetParam();
    const Image image(build(kind));
    ASSERT_EQ(image.painted, ORVANE_CODEC_OK);
    const int allowed = kind.compression == COMPRESSION_JPEG ? 6 : 0;
    // Fewer differences make soft edges between the areas of 8 x 8 pixels.
    const auto onEdge = [&kind](uint32_t at) { return kind.subsampling > 1 && (at + 2) % 8 < 4; };
    for (uint32_t y = 0; y < kHeight; ++y) {
        for (uint32_t x = 0; x < kWidth; ++x) {
            if (onEdge(x) || onEdge(y)) continue;
            const Painted pixel = image.pixel(x, y);
            const Painted expected = expectedPixel(kind, x, y);
            ASSERT_LE(std::abs(pixel.red - expected.red), allowed) << x << ", " << y;
            ASSERT_LE(std::abs(pixel.green - expected.green), allowed) << x << ", " << y;
            ASSERT_LE(std::abs(pixel.blue - expected.blue), allowed) << x << ", " << y;
        }
    }
}

TEST_P(CompressedTiff, EveryBeginningIsSafe) {
    paintEveryBeginning(build(GetParam()), 8);
}

INSTANTIATE_TEST_SUITE_P(Kinds, CompressedTiff, testing::ValuesIn(kKinds),
                         [](const testing::TestParamInfo<Kind>& kind) {
                             return std::string(kind.param.name);
                         });

TEST(CompressedTiff, StoredDifferencesAreConverted) {
    const Kind kind{"", COMPRESSION_NONE, PHOTOMETRIC_YCBCR, 8};
    const Image image(build(kind));
    ASSERT_EQ(image.painted, ORVANE_CODEC_OK);
    EXPECT_EQ(image.facts.pixelFormat, pixel_format::k24bppRgb);
    // Y 0, Cb 60, Cr 120: red and blue are below what there is.
    EXPECT_EQ(image.pixel(0, 0).red, 0);
    EXPECT_NEAR(image.pixel(0, 0).green, 29, 2);
    EXPECT_EQ(image.pixel(0, 0).blue, 0);
}

/// An A4 page of a fax, blank, by libtiff.
std::vector<uint8_t> blankFax(int compression, uint32_t rowsPerStrip) {
    constexpr uint32_t kFaxWidth = 1728;
    constexpr uint32_t kFaxHeight = 2200;
    Memory memory;
    TIFF* tiff = TIFFClientOpen("", "w", &memory, readMemory, writeMemory, seekMemory, closeMemory,
                                sizeOfMemory, nullptr, nullptr);
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, kFaxWidth);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, kFaxHeight);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 1);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 1);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_MINISWHITE);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, compression);
    TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, rowsPerStrip);
    if (compression == COMPRESSION_CCITTFAX3) {
        TIFFSetField(tiff, TIFFTAG_GROUP3OPTIONS, GROUP3OPT_2DENCODING);
    }
    std::vector<uint8_t> row(kFaxWidth / 8);
    for (uint32_t y = 0; y < kFaxHeight; ++y)
        TIFFWriteScanline(tiff, row.data(), y, 0);
    TIFFClose(tiff);
    return memory.bytes;
}

TEST(CompressedTiff, ABlankFaxIsAllWhite) {
    for (const int compression :
         {COMPRESSION_CCITTRLE, COMPRESSION_CCITTFAX3, COMPRESSION_CCITTFAX4}) {
        for (const uint32_t rowsPerStrip : {7u, 2200u}) {
            SCOPED_TRACE(testing::Message() << compression << " in strips of " << rowsPerStrip);
            const Image image(blankFax(compression, rowsPerStrip));
            ASSERT_EQ(image.painted, ORVANE_CODEC_OK);
            for (uint32_t y = 0; y < image.facts.height; ++y)
                ASSERT_EQ(image.pixel(y % 1728, y), (Painted{255, 255, 255})) << y;
        }
    }
}

/// A fax of 8 bits a row that says it has `height` rows.
std::vector<uint8_t> faxOfHeight(uint32_t height) {
    constexpr uint32_t kRows = 40;
    orvane::test::TiffFile file;
    file.width = 8;
    file.height = kRows;
    file.bits = file.samples = 1;
    file.photometric = PHOTOMETRIC_MINISWHITE;
    file.rowsPerStrip = 100000;
    file.tags[259] = COMPRESSION_CCITTFAX4;
    file.sample = [](uint32_t, uint32_t, int) { return 1; };
    std::vector<uint8_t> bytes = file.bytes();
    // The second entry of the directory is the height.
    const size_t at = size_t{bytes[4]} + bytes[5] * 256u + 2 + 12 + 8;
    for (size_t i = 0; i < 4; ++i)
        bytes[at + i] = static_cast<uint8_t>(height >> 8 * i);
    return bytes;
}

TEST(CompressedTiff, AFaxHasNoMoreRowsThanBits) {
    const Image image(faxOfHeight(320));
    ASSERT_EQ(image.painted, ORVANE_CODEC_OK);
    EXPECT_EQ(image.pixel(7, 319), (Painted{255, 255, 255}));
    EXPECT_EQ(Image(faxOfHeight(328)).examined, ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(Image(faxOfHeight(23000)).examined, ORVANE_CODEC_DAMAGED);
}

TEST(CompressedTiff, NothingIsLostWhenMemoryForTheConversionRunsOut) {
    const Kind kind{"", COMPRESSION_NONE, PHOTOMETRIC_YCBCR, 8};
    const std::vector<uint8_t> file = build(kind);
    std::vector<uint8_t> pixels(size_t{kWidth} * kHeight * 4);
    const OrvaneCanvas canvas{kWidth, kHeight, pixels.data(), ptrdiff_t{kWidth} * 4};
    const auto paint = [&] {
        const orvane::test::ShortMemory shortMemory(pixels.size());
        return paintAny(file, canvas, {});
    };
    EXPECT_EQ(paint(), ORVANE_CODEC_OUT_OF_MEMORY);
    // With the sanitizer, which has a heap of its own, its search for leaks tells.
    const size_t before = mallinfo2().uordblks;
    for (int i = 0; i < 10; ++i)
        paint();
    EXPECT_EQ(mallinfo2().uordblks, before);
}

}  // namespace
}  // namespace orvane::codecs::test
