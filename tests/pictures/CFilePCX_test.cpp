#include "pictures/decoded_pcx.h"

#include "frame/values/codepage.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

using test::Bytes;
using test::DecodedPcx;
using test::indexedPcx;
using test::PcxFile;
using test::pcxLiterals;
using test::pcxRun;
using test::planarPcx;

Bytes joined(const std::vector<Bytes>& parts) {
    Bytes all;
    for (const Bytes& part : parts)
        test::add(all, part);
    return all;
}

TEST(CFilePCX, ThePaddingByteOfALineLandsInTheRowPadding) {
    const DecodedPcx found(indexedPcx(3, 2, 4));
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.image.BitsPerPixel, 8);
    EXPECT_EQ(found.pixels(), (Bytes{1, 2, 3, 4, 5, 6, 7, 8}));
}

TEST(CFilePCX, ARunThatOverrunsTheLineIsCutToTheWidthAndTheLineGoesOnWithTheFollowingData) {
    PcxFile file{.width = 3, .height = 2, .bytesPerLine = 4};
    file.body = joined({pcxRun(5, 9), {7}, pcxLiterals(4)});
    const DecodedPcx found(file);
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.pixels(), (Bytes{9, 9, 9, 7, 1, 2, 3, 4}));
}

TEST(CFilePCX, ARunThatOverrunsTheLineMayBecomeLongerThanItWas) {
    PcxFile file{.width = 70, .height = 2, .bytesPerLine = 2};
    file.body = joined({pcxRun(3, 9), pcxRun(3, 8)});
    const DecodedPcx found(file);
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.pixel(69, 0), Bytes{9});
    EXPECT_EQ(found.pixel(69, 1), Bytes{8});
}

TEST(CFilePCX, ARunThatOverrunsTheLineFromItsPaddingLeadsBackToTheWidth) {
    PcxFile file{.width = 1, .height = 1, .bytesPerLine = 4};
    // Three bytes, a run that stores nothing, and from the width on the three that follow.
    file.body = joined({{1, 2, 3}, pcxRun(2, 9), {5, 6, 7}});
    const DecodedPcx found(file);
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.pixels(), (Bytes{1, 5, 6, 7}));
}

TEST(CFilePCX, ARunThatEndsWithTheLineIsNotCut) {
    PcxFile file{.width = 3, .height = 1, .bytesPerLine = 4, .body = pcxRun(4, 9)};
    EXPECT_EQ(DecodedPcx(file).pixels(), Bytes(4, 9));
}

TEST(CFilePCX, ARunOfLength0StoresNothingAndTakesTwoBytes) {
    PcxFile file{.width = 4, .height = 1, .bytesPerLine = 4};
    file.body = joined({{1}, pcxRun(0, 99), {2}, pcxRun(0, 0xC5), {3, 4}});
    const DecodedPcx indexed(file);
    ASSERT_TRUE(indexed.success);
    EXPECT_EQ(indexed.pixels(), (Bytes{1, 2, 3, 4}));

    PcxFile planar{.width = 1, .height = 1, .planes = 3, .bytesPerLine = 1, .palette = false};
    planar.body = joined({{1}, pcxRun(0, 99), {2}, pcxRun(0, 0xC5), {3}});
    const DecodedPcx found(planar);
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.pixel(0, 0), (Bytes{3, 2, 1}));
}

TEST(CFilePCX, A24BitFileWithAnyTrailingByteFails) {
    for (const int width : {1, 2, 3, 4, 5, 70}) {
        PcxFile file = planarPcx(width, 3, width);
        EXPECT_TRUE(DecodedPcx(file).success) << "exact";
        file.body.push_back(0);
        EXPECT_FALSE(DecodedPcx(file).success) << "one byte more";
        file.body.back() = 7;
        EXPECT_FALSE(DecodedPcx(file).success);
        file.palette = true;
        EXPECT_FALSE(DecodedPcx(file).success);
    }
}

TEST(CFilePCX, TrailingRunsOfLength0AreNoTrailingData) {
    PcxFile file = planarPcx(3, 3, 4);
    test::add(file.body, pcxRun(0, 9));
    test::add(file.body, pcxRun(0, 0));
    EXPECT_TRUE(DecodedPcx(file).success);
}

TEST(CFilePCX, ARunInThePlaceOfTheLastByteMayReachOneByteTooFar) {
    // The zero byte that every body ends with has a place behind the lines. The value of a run that
    // the file ends with takes that byte instead, so the run itself may take the place.
    PcxFile file{.width = 1, .height = 1, .planes = 3, .bytesPerLine = 1, .palette = false};
    file.body = {1, 2, 0xC2};
    EXPECT_TRUE(DecodedPcx(file).success);
    EXPECT_EQ(DecodedPcx(file).pixel(0, 0), (Bytes{0, 2, 1}));
    file.body = {1, 2, 0xC3};
    EXPECT_FALSE(DecodedPcx(file).success);
    file.body = {0xC4, 9};
    EXPECT_FALSE(DecodedPcx(file).success) << "the place is taken by the zero byte";
}

TEST(CFilePCX, ThreePlanesAreRedGreenAndBlueLines) {
    PcxFile file{.width = 2, .height = 2, .planes = 3, .bytesPerLine = 2, .palette = false};
    file.body = {1, 2, 3, 4, 5, 6, 11, 12, 13, 14, 15, 16};
    const DecodedPcx found(file);
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.image.BitsPerPixel, 24);
    EXPECT_FALSE(found.image.Palette);
    EXPECT_EQ(found.pixels(), (Bytes{5, 3, 1, 6, 4, 2, 0, 0, 15, 13, 11, 16, 14, 12, 0, 0}));
}

TEST(CFilePCX, RunsOfThreePlanesMayCrossLinesAndRows) {
    PcxFile file{.width = 5, .height = 4, .planes = 3, .bytesPerLine = 6, .palette = false};
    file.body = joined({pcxRun(63, 50), pcxRun(9, 60)});
    const DecodedPcx found(file);
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.pixel(0, 0), Bytes(3, 50));
    EXPECT_EQ(found.pixel(4, 3), (Bytes{60, 60, 50}));
    EXPECT_EQ(found.pixel(2, 3), (Bytes{60, 50, 50}));
}

TEST(CFilePCX, ThreePlanesOfOneByteLessThanTheWidthTakeTheLastColumnFromTheNextLine) {
    PcxFile file{.width = 2, .height = 2, .planes = 3, .bytesPerLine = 1, .palette = false};
    file.body = {1, 2, 3, 4, 5, 6};
    const DecodedPcx found(file);
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.pixel(1, 0), (Bytes{4, 3, 2}));
    EXPECT_EQ(found.pixel(1, 1), (Bytes{0, 6, 5}));
    file.width = 3;
    EXPECT_FALSE(DecodedPcx(file).success) << "the last blue byte lies behind the lines";
}

TEST(CFilePCX, A24BitFileThatEndsInItsLinesIsBlackFromThere) {
    PcxFile file = planarPcx(2, 3, 2);
    file.body.resize(7);
    const DecodedPcx found(file);
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.pixel(1, 0), (Bytes{6, 4, 2}));
    EXPECT_EQ(found.pixel(0, 1), (Bytes{0, 0, 7}));
    EXPECT_EQ(found.pixel(1, 2), Bytes(3, 0));
}

TEST(CFilePCX, An8BitFileThatEndsInItsLinesFails) {
    PcxFile file = indexedPcx(3, 1, 4);
    // The palette's own bytes are decoded when the lines go on into them.
    EXPECT_TRUE(DecodedPcx(file).success);
    file.height = 150;
    EXPECT_TRUE(DecodedPcx(file).success);
    file.height = 20000;
    EXPECT_FALSE(DecodedPcx(file).success);
}

TEST(CFilePCX, WhatAn8BitFileHasBehindItsLinesIsNotRead) {
    PcxFile file = indexedPcx(4, 2, 4);
    const Bytes plain = DecodedPcx(file).pixels();
    test::add(file.body, Bytes(50, 0xFF));
    EXPECT_EQ(DecodedPcx(file).pixels(), plain);
}

TEST(CFilePCX, OnlyTheManufacturer10IsWanted) {
    const test::TempDir dir;
    for (int manufacturer = 0; manufacturer < 256; ++manufacturer) {
        PcxFile file = indexedPcx(2, 2, 2);
        file.manufacturer = static_cast<std::uint8_t>(manufacturer);
        const WString name = fromAnsi(dir.write("file.pcx", file.bytes()));
        ASSERT_EQ(CFilePCX().Verify(name), manufacturer == 10);
        ASSERT_EQ(DecodedPcx(file).success, manufacturer == 10);
    }
}

TEST(CFilePCX, VerifyTestsNoOtherField) {
    const test::TempDir dir;
    EXPECT_TRUE(CFilePCX().Verify(fromAnsi(dir.write("a", Bytes{10}))));
    EXPECT_TRUE(CFilePCX().Verify(fromAnsi(dir.write("b", Bytes{10, 255, 255}))));
    EXPECT_FALSE(CFilePCX().Verify(fromAnsi(dir.write("c", Bytes{}))));
}

TEST(CFilePCX, VersionEncodingAndBitsAreIgnored) {
    for (int value = 0; value < 256; ++value) {
        PcxFile file = indexedPcx(3, 2, 3);
        file.version = file.encoding = file.bits = static_cast<std::uint8_t>(value);
        ASSERT_TRUE(test::agrees(file));
        ASSERT_TRUE(DecodedPcx(file).success);
    }
}

TEST(CFilePCX, ThePaletteIsStoredAsBlueGreenRedAndZero) {
    const DecodedPcx found(indexedPcx(3, 2, 3));
    ASSERT_TRUE(found.success);
    const Bytes colors = PcxFile::colors();
    const Bytes palette = found.palette();
    ASSERT_EQ(palette.size(), 1024U);
    for (std::size_t i = 0; i < 256; ++i) {
        ASSERT_EQ(palette[i * 4], colors[i * 3 + 2]);
        ASSERT_EQ(palette[i * 4 + 1], colors[i * 3 + 1]);
        ASSERT_EQ(palette[i * 4 + 2], colors[i * 3]);
        ASSERT_EQ(palette[i * 4 + 3], 0);
    }
}

TEST(CFilePCX, OnePlaneWithoutThePalettesMarkerIsRefused) {
    for (int marker = 0; marker < 256; ++marker) {
        Bytes bytes = indexedPcx(3, 2, 3).bytes();
        bytes[bytes.size() - 769] = static_cast<std::uint8_t>(marker);
        ASSERT_EQ(DecodedPcx(bytes).success, marker == 12);
    }
    // The usual file of one plane and one bit.
    const PcxFile bits{
        .width = 16, .height = 2, .bytesPerLine = 2, .body = {1, 2, 3, 4}, .palette = false};
    EXPECT_FALSE(DecodedPcx(bits).success);
}

TEST(CFilePCX, ThePaletteMayLieOverTheHeaderAndTheLines) {
    // 769 bytes from the end stands the version, which nobody reads.
    Bytes bytes = indexedPcx(3, 2, 3).bytes();
    bytes.resize(1 + 769, 0x22);
    bytes[1] = 12;
    const DecodedPcx found(bytes);
    ASSERT_TRUE(found.success);
    EXPECT_TRUE(found.isLike(test::referencePcx(bytes)));
    EXPECT_EQ(found.palette()[2], 1) << "the encoding";
}

TEST(CFilePCX, OnePlaneInAFileShorterThanItsPaletteFails) {
    for (const std::size_t size : {129U, 700U, 767U, 768U, 769U}) {
        Bytes bytes = indexedPcx(1, 1, 1).bytes();
        bytes.resize(size, 12);
        EXPECT_FALSE(DecodedPcx(bytes).success) << size;
    }
}

TEST(CFilePCX, AFileThatEndsWithItsHeaderOrEarlierFails) {
    for (const int planes : {1, 3}) {
        const Bytes whole = planarPcx(1, 1, 1, planes).bytes();
        for (std::size_t size = 0; size <= 128; ++size)
            ASSERT_FALSE(DecodedPcx(std::span(whole).first(size)).success) << size;
    }
    Bytes bytes = planarPcx(1, 1, 1).bytes();
    bytes.resize(129);
    EXPECT_TRUE(DecodedPcx(bytes).success);
}

TEST(CFilePCX, FourPlanesKeep32BitsOverRowsOf24) {
    const DecodedPcx found(planarPcx(5, 3, 5, 4));
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.image.BitsPerPixel, 32);
    EXPECT_TRUE(test::agrees(planarPcx(5, 3, 5, 4)));
    // The second row begins three lines on, not four.
    EXPECT_EQ(found.pixels()[16], 15 + 11);
    EXPECT_EQ(found.image.Pixels.size(), 5U * 4 * 3) << "what the picture is built from";
}

TEST(CFilePCX, TwoPlanesKeep16BitsAndLoadAsOnePixelOnly) {
    const DecodedPcx found(planarPcx(1, 1, 2, 2));
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.image.BitsPerPixel, 16);
    EXPECT_EQ(found.pixels(), (Bytes{0, 3, 1, 0}));
    EXPECT_FALSE(DecodedPcx(planarPcx(2, 1, 2, 2)).success);
    EXPECT_FALSE(DecodedPcx(planarPcx(1, 2, 2, 2)).success);
}

TEST(CFilePCX, EveryNumberOfPlanesAgreesWithTheReference) {
    for (int planes = 0; planes < 256; ++planes) {
        for (const int width : {1, 2, 3, 7}) {
            PcxFile file = planarPcx(width, 2, 2, planes);
            ASSERT_TRUE(test::agrees(file)) << planes;
            file.body.clear();
            ASSERT_TRUE(test::agrees(file)) << planes;
        }
    }
}

TEST(CFilePCX, FilesWithoutPlanesFail) {
    EXPECT_FALSE(DecodedPcx(planarPcx(1, 1, 1, 0)).success);
    PcxFile file = planarPcx(1, 1, 0, 0);
    file.body = pcxRun(0, 1);
    EXPECT_FALSE(DecodedPcx(file).success);
}

TEST(CFilePCX, LinesOfNoBytesTakeNoneOfTheBody) {
    const PcxFile indexed{.width = 5, .height = 3, .bytesPerLine = 0};
    const DecodedPcx found(indexed);
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.pixels(), Bytes(24, 0));
    EXPECT_TRUE(test::agrees(PcxFile{.width = 1,
                                     .height = 3,
                                     .planes = 3,
                                     .bytesPerLine = 0,
                                     .body = pcxRun(0, 1),
                                     .palette = false}));
}

TEST(CFilePCX, TheSizeIsTheDifferenceOfTheCornersPlusOne) {
    PcxFile file = indexedPcx(3, 2, 3);
    file.xMin = 1000;
    file.yMin = 32700;
    const DecodedPcx found(file);
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.image.Width, 3);
    EXPECT_EQ(found.image.Height, 2);
}

}  // namespace
}  // namespace orvane
