#include "pictures/decoded_pcx.h"
#include "pictures/peak_memory.h"

#include <gtest/gtest.h>

/// Sizes: which ones the 16-bit arithmetic refuses, and that a refused one costs no memory.
namespace orvane {
namespace {

using test::Bytes;
using test::DecodedPcx;
using test::PcxFile;

bool loads(const PcxFile& file) {
    EXPECT_TRUE(agrees(file));
    return DecodedPcx(file).success;
}

TEST(CFilePCXLimits, EveryFieldOfTwoBytesFailsFrom32768On) {
    struct Field {
        const char* name;
        std::size_t at;
    };
    constexpr Field kFields[] = {{"Xmin", 4},  {"Ymin", 6},        {"Xmax", 8},
                                 {"Ymax", 10}, {"resolution", 12}, {"resolution", 14},
                                 {"line", 66}, {"palette", 68}};
    for (const Field& field : kFields) {
        Bytes bytes = test::planarPcx(2, 2, 2).bytes();
        bytes[field.at + 1] = 0x80;
        EXPECT_FALSE(DecodedPcx(bytes).success) << field.name;
        EXPECT_FALSE(test::referencePcx(bytes).success) << field.name;
    }
    PcxFile file = test::planarPcx(2, 2, 2);
    file.resolutionX = file.resolutionY = file.paletteKind = 32767;
    EXPECT_TRUE(loads(file));
}

TEST(CFilePCXLimits, WidthAndHeightEndAt32767) {
    PcxFile file = test::planarPcx(32767, 1, 1, 3);
    file.bytesPerLine = 10922;
    EXPECT_FALSE(loads(file)) << "the lines are too short";
    file.planes = 4;
    file.bytesPerLine = 8191;
    EXPECT_FALSE(loads(file));
    file = {.width = 32767, .height = 1, .bytesPerLine = 0};
    EXPECT_TRUE(loads(file));
    file.width = 32768;
    EXPECT_FALSE(loads(file));
    file = {.width = 1, .height = 32767, .bytesPerLine = 0};
    EXPECT_TRUE(loads(file));
    file.height = 32768;
    EXPECT_FALSE(loads(file));
}

TEST(CFilePCXLimits, AWidthAbove10922Loads) {
    PcxFile file = test::planarPcx(10923, 1, 10922);
    EXPECT_TRUE(loads(file)) << "the padding is computed in 32 bits";
}

TEST(CFilePCXLimits, ANegativeOrZeroSizeFails) {
    for (const int planes : {1, 3}) {
        for (const int size : {0, -1, -2, -3, -4, -100}) {
            PcxFile file = planes == 1 ? test::indexedPcx(2, 2, 2) : test::planarPcx(2, 2, 2);
            file.xMin = file.yMin = 200;
            file.width = size;
            EXPECT_FALSE(loads(file)) << size;
            std::swap(file.width, file.height);
            EXPECT_FALSE(loads(file)) << size;
            file.width = size;
            EXPECT_FALSE(loads(file)) << size;
        }
    }
}

TEST(CFilePCXLimits, TheBytesOfARowEndAt32767) {
    const auto file = [](int planes, int bytesPerLine) {
        return PcxFile{.width = 1,
                       .height = 1,
                       .planes = planes,
                       .bytesPerLine = bytesPerLine,
                       .body = {1},
                       .palette = false};
    };
    EXPECT_TRUE(loads(file(3, 10922)));
    EXPECT_FALSE(loads(file(3, 10923)));
    EXPECT_TRUE(loads(file(2, 16383)));
    EXPECT_FALSE(loads(file(2, 16384))) << "twice the line, as the planes are put together";
    EXPECT_TRUE(loads(file(255, 128)));
    EXPECT_FALSE(loads(file(255, 129)));
}

TEST(CFilePCXLimits, OnePlaneWithLinesLongerThanARowFails) {
    for (int width = 1; width <= 9; ++width) {
        const int stride = (width + 3) / 4 * 4;
        for (int line = 0; line <= stride + 5; ++line) {
            PcxFile file = test::indexedPcx(width, 3, line);
            EXPECT_EQ(loads(file), line <= stride) << width << ", " << line;
        }
    }
}

/// Each line of one plane takes two bytes for 63 of it, and one for a single byte more.
TEST(CFilePCXLimits, OnePlaneLoadsFromTheLeastBodyThatHoldsIt) {
    for (const int line : {1, 2, 62, 63, 64, 65, 126, 127, 128, 129, 400}) {
        PcxFile file{.width = line, .height = 7, .bytesPerLine = line};
        for (int y = 0; y < file.height; ++y) {
            for (int left = line; left > 0; left -= 63) {
                if (left == 1) file.body.push_back(5);
                else test::add(file.body, test::pcxRun(std::min(left, 63), 6));
            }
        }
        EXPECT_TRUE(loads(file)) << line;
        // The palette is decoded behind the body: rows enough to use that up, and one byte less.
        Bytes bytes = file.bytes();
        EXPECT_TRUE(DecodedPcx(bytes).isLike(test::referencePcx(bytes)));
        file.height = 2000 / ((line + 62) / 63);
        EXPECT_FALSE(loads(file)) << line;
    }
}

/// Each way to a huge picture that can't load.
TEST(CFilePCXLimits, AHugePictureThatMustFailTakesNoMemory) {
    const std::vector<PcxFile> bombs{
        {.width = 32767, .height = 32767, .bytesPerLine = 32767},
        {.width = 32767, .height = 32767, .bytesPerLine = 1},
        {.width = 32764, .height = 32767, .bytesPerLine = 32765},
        {.width = 32767, .height = 32767, .planes = 3, .bytesPerLine = 10922},
        {.width = 32767, .height = 20000, .planes = 3, .bytesPerLine = 10922},
        {.width = 10924, .height = 32767, .planes = 3, .bytesPerLine = 10922},
        {.width = 10922, .height = 32767, .planes = 2, .bytesPerLine = 16383},
        {.width = 20000, .height = 32767, .planes = 0, .bytesPerLine = 32767},
        {.width = 1, .height = 32767, .planes = 0, .bytesPerLine = 0},
        {.width = 20000, .height = 20000, .planes = 3, .bytesPerLine = 20000},
        {.width = 32767, .height = 32767, .bytesPerLine = 32767, .palette = false},
    };
    const test::PeakMemory peak;
    for (PcxFile bomb : bombs) {
        bomb.body = {1, 2, 3};
        const DecodedPcx found(bomb);
        EXPECT_FALSE(found.success);
        EXPECT_FALSE(found.image.Pixels.isAllocated());
    }
    EXPECT_LT(peak.growth(), 16 << 10);
}

}  // namespace
}  // namespace orvane
