#include "pictures/decoded_psd.h"

#include "frame/values/codepage.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

using test::Bytes;
using test::DecodedPsd;
using test::literalPacket;
using test::packedPlanes;
using test::PsdFile;
using test::runPacket;

/// Planes of 2 x 2 pixels.
const Bytes kFirst{1, 2, 3, 4};
const Bytes kSecond{11, 12, 13, 14};
const Bytes kThird{21, 22, 23, 24};
const Bytes kFourth{31, 32, 33, 34};

PsdFile raw(int channels, const std::vector<Bytes>& planes) {
    PsdFile file{.channels = channels, .height = 2, .width = 2, .compression = 0};
    for (const Bytes& plane : planes)
        test::add(file.data, plane);
    return file;
}

PsdFile packed(int channels, const std::vector<Bytes>& planes) {
    return {
        .channels = channels, .height = 2, .width = 2, .data = packedPlanes(channels, 2, planes)};
}

/// Three packed planes in literal packets.
PsdFile packedRgb() {
    return packed(3, {literalPacket(kFirst), literalPacket(kSecond), literalPacket(kThird)});
}

/// Blue, green, red of 2 x 2 pixels and the padding.
Bytes pixelsOf(const Bytes& blue, const Bytes& green, const Bytes& red) {
    return {blue[0], green[0], red[0], blue[1], green[1], red[1], 0, 0,
            blue[2], green[2], red[2], blue[3], green[3], red[3], 0, 0};
}

const Bytes kNone(4, 0);

TEST(CFilePSD, ChannelsComeAsRedGreenBlue) {
    EXPECT_EQ(DecodedPsd(packedRgb()).pixels(), pixelsOf(kThird, kSecond, kFirst));
    const DecodedPsd found(raw(4, {kFirst, kSecond, kThird, kFourth}));
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.pixels(), pixelsOf(kThird, kSecond, kFirst));
    EXPECT_EQ(found.image.BitsPerPixel, 24);
    EXPECT_FALSE(found.image.Palette);
}

TEST(CFilePSD, ADepthOf16IsRefused) {
    for (int depth = 0; depth <= 64; ++depth) {
        PsdFile file = packedRgb();
        file.depth = depth;
        EXPECT_EQ(DecodedPsd(file).success, depth == 8) << depth;
    }
}

TEST(CFilePSD, NoChannelsArePackedBlack) {
    const DecodedPsd found(PsdFile{.channels = 0, .height = 3, .width = 5, .data = {99}});
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.pixels(), Bytes(48, 0));
    EXPECT_FALSE(DecodedPsd(PsdFile{.channels = 0, .height = 3, .width = 5}).success)
        << "image data there must be";
}

TEST(CFilePSD, AFirstByteOf128IsSkippedAndCountsNothing) {
    PsdFile file = packed(3, {{128, 3, 1, 2, 3, 4},
                              {1, 11, 12, 128, 128, 128, 1, 13, 14},
                              {128, 128, 0, 21, 128, 0, 22, 0, 23, 0, 24}});
    const DecodedPsd found(file);
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.pixels(), pixelsOf(kThird, kSecond, kFirst));
}

TEST(CFilePSD, AFirstByteOf128AfterThePlaneBelongsToTheNextOne) {
    PsdFile file = packedRgb();
    file.data.push_back(128);
    EXPECT_TRUE(DecodedPsd(file).success);
    file.data.pop_back();
    file.data.pop_back();
    EXPECT_FALSE(DecodedPsd(file).success);
}

TEST(CFilePSD, LayersAreSkippedByTheirLength) {
    PsdFile file = packedRgb();
    const Bytes plain = DecodedPsd(file).pixels();
    for (const std::size_t size : {1U, 2U, 3U, 1000U, 70000U}) {
        file.layers = Bytes(size, 0x38);
        EXPECT_EQ(DecodedPsd(file).pixels(), plain);
        file.resources = Bytes(size + 5, 0xFF);
        file.colorModeData = Bytes(size + 768, 0x80);
        const DecodedPsd found(file);
        ASSERT_TRUE(found.success);
        EXPECT_EQ(found.pixels(), plain);
    }
}

TEST(CFilePSD, RawDataOfThreeChannelsNeedsAFourthPlaneBehindIt) {
    EXPECT_FALSE(DecodedPsd(raw(3, {kFirst, kSecond, kThird})).success);
    EXPECT_FALSE(DecodedPsd(raw(3, {kFirst, kSecond, kThird, {1, 2, 3}})).success);
    const DecodedPsd found(raw(3, {kFirst, kSecond, kThird, kFourth}));
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.pixels(), pixelsOf(kThird, kSecond, kFirst));
}

TEST(CFilePSD, PackedDataOfThreeChannelsNeedsNoFourthPlane) {
    EXPECT_TRUE(DecodedPsd(packedRgb()).success);
}

TEST(CFilePSD, PackedDataOfFourChannelsNeedsItsFourthPlane) {
    const std::vector<Bytes> planes{literalPacket(kFirst), literalPacket(kSecond),
                                    literalPacket(kThird)};
    EXPECT_FALSE(DecodedPsd(packed(4, planes)).success);
    std::vector<Bytes> four = planes;
    four.push_back(runPacket(4, 9));
    EXPECT_EQ(DecodedPsd(packed(4, four)).pixels(), pixelsOf(kThird, kSecond, kFirst));
    four.back() = runPacket(3, 9);
    EXPECT_FALSE(DecodedPsd(packed(4, four)).success);
}

TEST(CFilePSD, FewerChannelsOfPackedDataFillTheLaterPlaces) {
    EXPECT_EQ(DecodedPsd(packed(2, {literalPacket(kFirst), literalPacket(kSecond)})).pixels(),
              pixelsOf(kSecond, kFirst, kNone));
    EXPECT_EQ(DecodedPsd(packed(1, {literalPacket(kFirst)})).pixels(),
              pixelsOf(kFirst, kNone, kNone));
}

TEST(CFilePSD, FewerChannelsOfRawDataTakeAPlaneMoreThanThereAre) {
    EXPECT_EQ(DecodedPsd(raw(2, {kFirst, kSecond, kThird})).pixels(),
              pixelsOf(kThird, kSecond, kFirst));
    EXPECT_FALSE(DecodedPsd(raw(2, {kFirst, kSecond})).success);
    EXPECT_EQ(DecodedPsd(raw(1, {kFirst, kSecond})).pixels(), pixelsOf(kSecond, kFirst, kNone));
    EXPECT_FALSE(DecodedPsd(raw(1, {kFirst})).success);
    EXPECT_EQ(DecodedPsd(raw(0, {kFirst})).pixels(), pixelsOf(kFirst, kNone, kNone));
    EXPECT_FALSE(DecodedPsd(raw(0, {{1, 2, 3}})).success);
}

TEST(CFilePSD, MoreThanFourChannelsAreIgnored) {
    std::vector<Bytes> planes;
    for (const Bytes& plane : {kFirst, kSecond, kThird, kFourth})
        planes.push_back(literalPacket(plane));
    for (int channels = 5; channels <= 16; ++channels) {
        const Bytes expected = pixelsOf(kThird, kSecond, kFirst);
        EXPECT_EQ(DecodedPsd(packed(channels, planes)).pixels(), expected);
        EXPECT_EQ(DecodedPsd(raw(channels, {kFirst, kSecond, kThird, kFourth})).pixels(), expected);
    }
}

TEST(CFilePSD, MoreThan16ChannelsAreRefused) {
    for (const int channels : {17, 18, 256, 32767, 32768, 65535}) {
        EXPECT_FALSE(DecodedPsd(PsdFile{.channels = channels, .data = Bytes(200000, 0)}).success)
            << channels;
    }
}

TEST(CFilePSD, ThePlanesAreOneStreamEachAcrossTheRows) {
    PsdFile file{.channels = 3, .height = 5, .width = 3};
    file.data = packedPlanes(3, 5, {runPacket(15, 1), runPacket(15, 2), runPacket(15, 3)});
    const DecodedPsd found(file);
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.pixel(0, 0), (Bytes{3, 2, 1}));
    EXPECT_EQ(found.pixel(2, 4), (Bytes{3, 2, 1}));
}

TEST(CFilePSD, APacketOfAColourMayOverrunItsPlaneByOnePixel) {
    for (int place = 0; place < 4; ++place) {
        for (int tooMany = 0; tooMany <= 3; ++tooMany) {
            for (const bool run : {false, true}) {
                std::vector<Bytes> planes(4, runPacket(4, 9));
                planes[static_cast<std::size_t>(place)] =
                    run ? runPacket(4 + tooMany, 9)
                        : literalPacket(Bytes(static_cast<std::size_t>(4 + tooMany), 9));
                const PsdFile file = packed(4, planes);
                // Of the fourth plane, alpha, the byte behind the last one is out of bounds.
                EXPECT_EQ(DecodedPsd(file).success, tooMany <= (place == 3 ? 0 : 1))
                    << place << ", " << tooMany;
                EXPECT_TRUE(test::agrees(file));
            }
        }
    }
}

TEST(CFilePSD, TheNextPlaneBeginsBehindAPacketThatOverruns) {
    PsdFile file =
        packed(3, {literalPacket({1, 2, 3, 4, 5}), literalPacket(kSecond), literalPacket(kThird)});
    const DecodedPsd found(file);
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.pixels(), pixelsOf(kThird, kSecond, kFirst));
}

TEST(CFilePSD, TheRowLengthsAreNotUsed) {
    PsdFile file = packedRgb();
    const Bytes plain = DecodedPsd(file).pixels();
    for (std::size_t i = 0; i < 12; ++i)
        file.data[i] = static_cast<std::uint8_t>(i * 37);
    EXPECT_EQ(DecodedPsd(file).pixels(), plain);
}

TEST(CFilePSD, TheRowLengthsStandForAllChannels) {
    // Sixteen channels of which four are read.
    PsdFile file{.channels = 16, .height = 2, .width = 2};
    file.data = test::rowLengths(32);
    for (int plane = 0; plane < 4; ++plane)
        test::add(file.data, runPacket(4, static_cast<std::uint8_t>(plane + 1)));
    EXPECT_EQ(DecodedPsd(file).pixel(0, 0), (Bytes{3, 2, 1}));
}

TEST(CFilePSD, WhatFollowsTheImageDataIsNotRead) {
    PsdFile file = packedRgb();
    const Bytes plain = DecodedPsd(file).pixels();
    test::add(file.data, Bytes(500, 0xFF));
    EXPECT_EQ(DecodedPsd(file).pixels(), plain);
}

TEST(CFilePSD, OnlyTheCompressions0And1AreRead) {
    for (const int compression : {2, 3, 4, 255, 256, 32767, 32768, 65535}) {
        PsdFile file = packedRgb();
        file.compression = compression;
        EXPECT_FALSE(DecodedPsd(file).success) << compression;
    }
}

TEST(CFilePSD, OnlyRgbIsRead) {
    for (int mode = 0; mode < 16; ++mode) {
        PsdFile file = packedRgb();
        file.mode = mode;
        EXPECT_EQ(DecodedPsd(file).success, mode == 3) << mode;
    }
}

TEST(CFilePSD, OnlyVersion1IsRead) {
    for (const int version : {0, 2, 3, 256, 257, 65535}) {
        PsdFile file = packedRgb();
        file.version = version;
        EXPECT_FALSE(DecodedPsd(file).success) << version;
    }
}

TEST(CFilePSD, VerifyTestsTheSignatureAlone) {
    const test::TempDir dir;
    const auto verify = [&dir](const Bytes& bytes) {
        return CFilePSD().Verify(fromAnsi(dir.write("file.psd", bytes)));
    };
    EXPECT_TRUE(verify({'8', 'B', 'P', 'S'}));
    EXPECT_TRUE(verify({'8', 'B', 'P', 'S', 0xFF, 0xFF}));
    EXPECT_FALSE(verify({'8', 'B', 'P'}));
    EXPECT_FALSE(verify({'8', 'B', 'P', 's'}));
    EXPECT_FALSE(verify({'S', 'P', 'B', '8'}));
    EXPECT_FALSE(verify({0xB8, 'B', 'P', 'S'})) << "too large for 32 bits with a sign";
    EXPECT_FALSE(verify({}));
}

TEST(CFilePSD, TheImageDataIsOneReadOfTheFile) {
    PsdFile file{.channels = 3, .height = 200, .width = 300};
    const Bytes plane = test::literalPackets(test::countedBytes(200 * 300), 100);
    file.data = packedPlanes(3, 200, {plane, plane, plane});
    const DecodedPsd found(file);
    ASSERT_TRUE(found.success);
    EXPECT_LE(found.reads, 2) << "the header's block, and the rest";
}

}  // namespace
}  // namespace orvane
