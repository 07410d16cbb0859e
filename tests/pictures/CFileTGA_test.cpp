#include "pictures/CFileTGA.h"

#include "frame/values/codepage.h"
#include "pictures/decoded_targa.h"
#include "support/recorder.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

using test::Bytes;
using test::countedBytes;
using test::DecodedTarga;
using test::TargaFile;

/// Colours by their bytes in a file: blue, green, red.
const Bytes kFirst{1, 2, 3};
const Bytes kSecond{4, 5, 6};

TargaFile uncompressed(std::uint8_t depth, std::uint8_t origin, int width, int height) {
    return {.depth = depth,
            .descriptor = origin,
            .width = width,
            .height = height,
            .body = countedBytes(width * height * (depth / 8))};
}

TargaFile runLength(std::uint8_t depth, std::uint8_t origin, int width, int height) {
    return {.type = 10,
            .depth = depth,
            .descriptor = origin,
            .width = width,
            .height = height,
            .body = test::rawPackets(width * height, depth / 8, width * height)};
}

constexpr auto kTop = TargaFile::kTopLeft;
constexpr auto kBottom = TargaFile::kBottomLeft;

TEST(CFileTGA, AFileShorterThanThreeBytesIsRefusedWithoutError) {
    const test::TempDir dir;
    for (const Bytes& bytes : {Bytes{}, Bytes{0}, Bytes{0, 0}}) {
        const WString name = fromAnsi(dir.write("short.tga", bytes));
        EXPECT_FALSE(CFileTGA().Verify(name));
        EXPECT_TRUE(CFileTGA().LoadPicture(name, nullptr).isNothing());
        EXPECT_FALSE(DecodedTarga(bytes).success);
    }
}

TEST(CFileTGA, ABottomLeftUncompressed32BitFileLoadsWithOneRowOnly) {
    EXPECT_TRUE(DecodedTarga(uncompressed(32, kBottom, 5, 1)).success);
    for (const int height : {2, 3, 4, 5, 100}) {
        EXPECT_FALSE(DecodedTarga(uncompressed(32, kBottom, 5, height)).success) << height;
    }
}

TEST(CFileTGA, ATopLeftUncompressed32BitFileOfAnyHeightLoads) {
    for (const int height : {1, 2, 3, 100}) {
        EXPECT_TRUE(DecodedTarga(uncompressed(32, kTop, 5, height)).success) << height;
    }
}

TEST(CFileTGA, ABottomLeftUncompressed24BitFileLoadsWithItsRowsReversed) {
    TargaFile file{.descriptor = kBottom, .width = 1, .height = 2, .body = {1, 2, 3, 4, 5, 6}};
    const DecodedTarga two(file);
    EXPECT_EQ(two.pixel(0, 0), kSecond);
    EXPECT_EQ(two.pixel(0, 1), kFirst);
    for (const int height : {1, 2, 3, 50}) {
        const DecodedTarga any(uncompressed(24, kBottom, 3, height));
        ASSERT_TRUE(any.success);
        EXPECT_EQ(any.pixel(0, height - 1), kFirst);
    }
}

TEST(CFileTGA, ATopLeftRunLengthFileWithoutRowPaddingFails) {
    for (const std::uint8_t depth : test::kTargaDepths) {
        for (const int width : {4, 8, 12}) {
            EXPECT_FALSE(DecodedTarga(runLength(depth, kTop, width, 2)).success) << width;
        }
        for (const int width : {1, 2, 3, 5, 6, 7, 9}) {
            EXPECT_TRUE(DecodedTarga(runLength(depth, kTop, width, 2)).success) << width;
        }
    }
}

TEST(CFileTGA, ABottomLeftRunLengthFileLoadsAtAnyWidth) {
    for (const std::uint8_t depth : test::kTargaDepths) {
        for (int width = 1; width <= 12; ++width) {
            EXPECT_TRUE(DecodedTarga(runLength(depth, kBottom, width, 3)).success) << width;
        }
    }
}

TEST(CFileTGA, APacketThatRunsPastTheLastPixelFails) {
    for (const std::uint8_t origin : {kTop, kBottom}) {
        TargaFile file{.type = 10, .descriptor = origin, .width = 3, .height = 2};
        file.body = {0x80 | 5, 1, 2, 3};
        EXPECT_TRUE(DecodedTarga(file).success);
        file.body = {0x80 | 6, 1, 2, 3};
        EXPECT_FALSE(DecodedTarga(file).success);
        file.body = test::rawPackets(7, 3, 7);
        EXPECT_FALSE(DecodedTarga(file).success);
    }
}

TEST(CFileTGA, AFileOfDepth8IsABlackPictureOfItsSize) {
    for (const std::uint8_t type : test::kTargaTypes) {
        const DecodedTarga found(
            TargaFile{.type = type, .depth = 8, .width = 4, .height = 3, .body = countedBytes(12)});
        ASSERT_TRUE(found.success);
        EXPECT_EQ(found.image.Width, 4);
        EXPECT_EQ(found.image.Height, 3);
        EXPECT_EQ(found.pixels(), Bytes(36, 0));
    }
}

TEST(CFileTGA, EveryDepthBut16And24And32IsBlack) {
    for (int depth = 0; depth < 256; ++depth) {
        const DecodedTarga found(
            TargaFile{.depth = static_cast<std::uint8_t>(depth), .body = Bytes(4, 0xFF)});
        ASSERT_TRUE(found.success);
        const bool read = depth == 16 || depth == 24 || depth == 32;
        EXPECT_EQ(found.pixel(0, 0) == Bytes(3, 0), !read) << depth;
    }
}

TEST(CFileTGA, AnIdentificationFieldIsReadAsPixels) {
    TargaFile file{.width = 9, .height = 1, .idLength = 26};
    file.body = Bytes(26, 0x77);
    file.body.insert(file.body.end(), {1, 2, 3, 4, 5, 6});
    const DecodedTarga found(file);
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.pixel(0, 0), Bytes(3, 0x77));
    EXPECT_EQ(found.pixel(8, 0), (Bytes{0x77, 0x77, 1}));
}

TEST(CFileTGA, FiveBitsOfAComponentGoUpByThree) {
    const DecodedTarga found(
        TargaFile{.depth = 16,
                  .width = 5,
                  .height = 1,
                  .body = {0xFF, 0x7F, 0x00, 0x80, 0x1F, 0x00, 0xE0, 0x03, 0x00, 0x7C}});
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.pixel(0, 0), (Bytes{248, 248, 248}));
    EXPECT_EQ(found.pixel(1, 0), (Bytes{0, 0, 0})) << "bit 15 is ignored";
    EXPECT_EQ(found.pixel(2, 0), (Bytes{248, 0, 0}));
    EXPECT_EQ(found.pixel(3, 0), (Bytes{0, 248, 0}));
    EXPECT_EQ(found.pixel(4, 0), (Bytes{0, 0, 248}));
}

TEST(CFileTGA, Every16BitPixelConvertsAsTheReferenceSays) {
    for (int high = 0; high < 256; ++high) {
        TargaFile file{.depth = 16, .width = 256, .height = 1};
        for (int low = 0; low < 256; ++low) {
            file.body.push_back(static_cast<std::uint8_t>(low));
            file.body.push_back(static_cast<std::uint8_t>(high));
        }
        ASSERT_TRUE(agrees(file)) << high;
    }
}

TEST(CFileTGA, TheAlphaByteIsDropped) {
    const DecodedTarga found(
        TargaFile{.depth = 32, .width = 2, .height = 1, .body = {1, 2, 3, 99, 4, 5, 6, 88}});
    EXPECT_EQ(found.pixel(0, 0), kFirst);
    EXPECT_EQ(found.pixel(1, 0), kSecond);
}

TEST(CFileTGA, OnlyBit5OfTheDescriptorCounts) {
    for (int descriptor = 0; descriptor < 256; ++descriptor) {
        const DecodedTarga found(TargaFile{.descriptor = static_cast<std::uint8_t>(descriptor),
                                           .width = 1,
                                           .height = 2,
                                           .body = {1, 2, 3, 4, 5, 6}});
        ASSERT_TRUE(found.success);
        EXPECT_EQ(found.pixel(0, (descriptor & 0x20) != 0 ? 0 : 1), kFirst) << descriptor;
    }
}

TEST(CFileTGA, OnlyTypes2And10AreWanted) {
    const test::TempDir dir;
    for (int type = 0; type < 256; ++type) {
        const TargaFile file{.type = static_cast<std::uint8_t>(type), .body = {0, 1, 2, 3}};
        const bool wanted = type == 2 || type == 10;
        const WString name = fromAnsi(dir.write("typed.tga", file.bytes()));
        ASSERT_EQ(CFileTGA().Verify(name), wanted) << type;
        ASSERT_EQ(DecodedTarga(file).success, wanted) << type;
    }
}

TEST(CFileTGA, VerifyTestsNoOtherField) {
    const test::TempDir dir;
    EXPECT_TRUE(CFileTGA().Verify(fromAnsi(dir.write("a", Bytes{255, 255, 2}))));
    EXPECT_TRUE(CFileTGA().Verify(fromAnsi(dir.write("b", Bytes{0, 0, 10, 255, 255, 255}))));
}

TEST(CFileTGA, WhatFollowsThePixelsIsNotRead) {
    TargaFile file = uncompressed(24, kTop, 3, 3);
    const Bytes plain = DecodedTarga(file).pixels();
    const std::string_view footer = "TRUEVISION-XFILE.";
    file.body.insert(file.body.end(), footer.begin(), footer.end());
    EXPECT_EQ(DecodedTarga(file).pixels(), plain);
}

TEST(CFileTGA, RowsArePaddedToFourBytesWithZeros) {
    for (int width = 1; width <= 12; ++width) {
        const DecodedTarga found(uncompressed(24, kTop, width, 2));
        const auto stride = static_cast<std::size_t>((width * 3 + 3) / 4 * 4);
        const Bytes pixels = found.pixels();
        ASSERT_EQ(pixels.size(), 2 * stride);
        for (auto at = static_cast<std::size_t>(width) * 3; at < stride; ++at) {
            EXPECT_EQ(pixels[at], 0);
            EXPECT_EQ(pixels[stride + at], 0);
        }
    }
}

TEST(CFileTGA, PacketsMayCrossRowEnds) {
    for (const std::uint8_t origin : {kTop, kBottom}) {
        TargaFile file{.type = 10, .descriptor = origin, .width = 3, .height = 3};
        file.body = {0x80 | 3, 9, 9, 9, 0, 1, 2, 3, 0x80 | 3, 7, 7, 7};
        const DecodedTarga found(file);
        ASSERT_TRUE(found.success);
        const bool top = origin == kTop;
        EXPECT_EQ(found.pixel(0, 1), Bytes(3, 9));
        EXPECT_EQ(found.pixel(1, 1), kFirst);
        EXPECT_EQ(found.pixel(2, 1), Bytes(3, 7));
        EXPECT_EQ(found.pixel(2, top ? 0 : 2), Bytes(3, 9));
        EXPECT_EQ(found.pixel(0, top ? 2 : 0), Bytes(3, 7));
    }
}

TEST(CFileTGA, OneRowIsOneReadOfTheFile) {
    // Rows longer than what is buffered go straight from the file.
    const DecodedTarga wide(uncompressed(24, kTop, 10922, 20));
    ASSERT_TRUE(wide.success);
    EXPECT_LE(wide.reads, 22);
}

}  // namespace
}  // namespace orvane
