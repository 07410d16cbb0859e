#include "pictures/decoded_targa.h"
#include "pictures/peak_memory.h"

#include <gtest/gtest.h>

/// Sizes: which ones the 16-bit arithmetic refuses, and that a refused one costs no memory.
namespace orvane {
namespace {

using test::Bytes;
using test::DecodedTarga;
using test::TargaFile;

constexpr auto kTop = TargaFile::kTopLeft;
constexpr auto kBottom = TargaFile::kBottomLeft;
constexpr std::uint8_t kNoDepth = 8;

bool loads(const TargaFile& file) {
    EXPECT_TRUE(agrees(file));
    return DecodedTarga(file).success;
}

TEST(CFileTGALimits, TheWidthOfEveryFileEndsAt10922) {
    for (const std::uint8_t type : test::kTargaTypes) {
        for (const std::uint8_t depth : {kNoDepth, std::uint8_t{16}, std::uint8_t{24}}) {
            const auto file = [&](int width) {
                return TargaFile{.type = type, .depth = depth, .width = width, .height = 2};
            };
            EXPECT_TRUE(loads(file(10921)));
            EXPECT_TRUE(loads(file(10922)));
            EXPECT_FALSE(loads(file(10923)));
            EXPECT_FALSE(loads(file(32767)));
        }
    }
}

TEST(CFileTGALimits, TheWidthOfUncompressed32BitRowsEndsAt8191) {
    const auto file = [](int width) { return TargaFile{.depth = 32, .width = width}; };
    EXPECT_TRUE(loads(file(8191)));
    EXPECT_FALSE(loads(file(8192)));
    EXPECT_FALSE(loads(file(10922)));
}

TEST(CFileTGALimits, TheWidthOfRunLength32BitFilesEndsAt10922) {
    const auto file = [](int width) {
        return TargaFile{.type = 10, .depth = 32, .descriptor = kBottom, .width = width};
    };
    EXPECT_TRUE(loads(file(8192)));
    EXPECT_TRUE(loads(file(10922)));
    EXPECT_FALSE(loads(file(10923)));
}

TEST(CFileTGALimits, ANegativeOrZeroSizeFails) {
    for (const std::uint8_t type : test::kTargaTypes) {
        for (const std::uint8_t depth : {kNoDepth, std::uint8_t{24}}) {
            for (const int size : {0, -1, -2, -3, -10922, -32768}) {
                TargaFile file{.type = type, .depth = depth, .width = size, .height = 3};
                EXPECT_FALSE(loads(file)) << size;
                std::swap(file.width, file.height);
                EXPECT_FALSE(loads(file)) << size;
                file.width = size;
                EXPECT_FALSE(loads(file)) << size;
            }
        }
    }
}

TEST(CFileTGALimits, AnUncompressedFileOfAnyHeightLoads) {
    EXPECT_TRUE(loads({.descriptor = kTop, .width = 1, .height = 32767}));
    EXPECT_TRUE(loads({.descriptor = kBottom, .width = 1, .height = 32767}));
}

/// Each way to a picture of 1 GiB that can't load.
TEST(CFileTGALimits, AHugePictureThatMustFailTakesNoMemory) {
    const std::vector<TargaFile> bombs{
        {.width = -1, .height = 4095},  // 65535 x 4095 in the file
        {.type = 10, .width = -1, .height = 4095},
        {.width = 10923, .height = 32767},
        {.type = 10, .width = 10923, .height = 32767},
        {.depth = 32, .width = 10922, .height = 32767},
        {.depth = 32, .width = 8192, .height = 32767},
        {.depth = 32, .descriptor = kBottom, .width = 10922, .height = 32767},
        {.depth = 32, .descriptor = kBottom, .width = 8191, .height = 32767},
        {.type = 10, .depth = 16, .width = 10920, .height = 32767},
        {.type = 10, .depth = 24, .width = 10920, .height = 32767},
        {.type = 10, .depth = 32, .width = 10920, .height = 32767},
        {.width = 32767, .height = 32767},
        {.width = 10922, .height = -1},
        {.type = 3, .width = 10922, .height = 32767},
    };
    const test::PeakMemory peak;
    for (const TargaFile& bomb : bombs) {
        Bytes bytes = bomb.bytes();
        bytes.push_back(0);
        ASSERT_EQ(bytes.size(), 19U);
        const DecodedTarga found(bytes);
        EXPECT_FALSE(found.success);
        EXPECT_FALSE(found.image.Pixels.isAllocated());
    }
    EXPECT_LT(peak.growth(), 16 << 10);
}

}  // namespace
}  // namespace orvane
