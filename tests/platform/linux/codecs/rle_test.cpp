#include "platform/linux/codecs/decoded.h"

#include <string>

namespace orvane::codecs::test {
namespace {

Bytes packed(int bits, int width, int height, std::initializer_list<int> codes) {
    Bytes file;
    const int colours = 1 << bits;
    file.text("BM").u32(0).u32(0).u32(14 + 40 + colours * 4);
    file.u32(40).u32(width).u32(height).u16(1).u16(bits).u32(bits == 8 ? 1 : 2);
    file.u32(0).u32(0).u32(0).u32(0).u32(0);
    for (int index = 0; index < colours; ++index)
        file.u8({index, index, index, 0});
    return file.u8(codes);
}

/// The picture's indices, a digit each, rows from the top with a bar between.
std::string indices(const Decoded& decoded) {
    if (decoded.result != ORVANE_CODEC_OK) return "result " + std::to_string(decoded.result);
    std::string digits;
    for (int y = 0; y < decoded.picture.height; ++y) {
        if (y != 0) digits += '|';
        for (int x = 0; x < decoded.picture.width; ++x)
            digits += static_cast<char>('0' + decoded.index(x, y));
    }
    return digits;
}

std::string rle8(int width, int height, std::initializer_list<int> codes) {
    return indices(Decoded(packed(8, width, height, codes)));
}

std::string rle4(int width, int height, std::initializer_list<int> codes) {
    return indices(Decoded(packed(4, width, height, codes)));
}

TEST(Rle, TheDepthStays) {
    EXPECT_EQ(Decoded(packed(8, 1, 1, {1, 1})).picture.bitsPerPixel, 8);
    EXPECT_EQ(Decoded(packed(4, 1, 1, {1, 1})).picture.bitsPerPixel, 4);
}

TEST(Rle, RunsFillRowsFromTheBottom) {
    EXPECT_EQ(rle8(4, 2, {3, 1, 1, 2, 0, 0, 4, 3, 0, 1}), "3333|1112");
}

TEST(Rle, ARunOfNibblesAlternates) {
    EXPECT_EQ(rle4(5, 1, {5, 0x12, 0, 1}), "12121");
}

TEST(Rle, LiteralsArePaddedToTwoBytes) {
    EXPECT_EQ(rle8(4, 1, {0, 3, 1, 2, 3, 99, 1, 4, 0, 1}), "1234");
    EXPECT_EQ(rle4(6, 1, {0, 5, 0x12, 0x34, 0x50, 99, 1, 0x60, 0, 1}), "123456");
    EXPECT_EQ(rle4(4, 1, {0, 3, 0x12, 0x30, 1, 0x40, 0, 1}), "1234");
}

TEST(Rle, AnEndOfLineLeavesTheRestAtZero) {
    EXPECT_EQ(rle8(3, 2, {1, 1, 0, 0, 3, 2, 0, 1}), "222|100");
    EXPECT_EQ(rle4(3, 2, {1, 0x11, 0, 0, 3, 0x22, 0, 1}), "222|100");
}

TEST(Rle, ADeltaJumpsRightAndUp) {
    EXPECT_EQ(rle8(4, 3, {1, 1, 0, 2, 2, 1, 1, 2, 0, 1}), "0000|0002|1000");
    EXPECT_EQ(rle4(4, 3, {1, 0x11, 0, 2, 2, 1, 1, 0x22, 0, 1}), "0000|0002|1000");
}

TEST(Rle, ADeltaWithinARowKeepsTheRow) {
    EXPECT_EQ(rle4(4, 1, {1, 0x11, 0, 2, 1, 0, 2, 0x23, 0, 1}), "1023");
}

TEST(Rle, ADeltaPastTheEdgesStaysHarmless) {
    EXPECT_EQ(rle8(2, 2, {0, 2, 255, 0, 5, 9, 0, 0, 2, 3, 0, 1}), "33|00");
    EXPECT_EQ(rle8(2, 2, {1, 1, 0, 2, 0, 255, 5, 9, 0, 1}), "00|10");
}

TEST(Rle, RunsAndLiteralsAreCutAtTheRightEdge) {
    EXPECT_EQ(rle8(2, 2, {200, 1, 0, 0, 0, 4, 1, 2, 3, 4, 0, 1}), "12|11");
    EXPECT_EQ(rle4(3, 2, {200, 0x12, 0, 0, 0, 8, 0x12, 0x34, 0x56, 0x78, 0, 1}), "123|121");
}

TEST(Rle, RowsAboveTheTopAreIgnored) {
    EXPECT_EQ(rle8(2, 1, {2, 1, 0, 0, 2, 2, 0, 0, 2, 3, 0, 1}), "11");
}

TEST(Rle, WhatFollowsTheEndOfTheBitmapIsIgnored) {
    EXPECT_EQ(rle8(2, 1, {1, 1, 0, 1, 1, 2}), "10");
}

TEST(Rle, DataThatEndsEarlyLeavesTheRestAtZero) {
    EXPECT_EQ(rle8(4, 2, {2, 1}), "0000|1100");
    EXPECT_EQ(rle8(4, 1, {0, 4, 1, 2}), "1200");
    EXPECT_EQ(rle4(4, 1, {0, 4, 0x12}), "1200");
    EXPECT_EQ(rle8(2, 1, {1, 1, 0, 2, 1}), "10");
    EXPECT_EQ(rle4(2, 1, {1}), "00");
}

TEST(Rle, RunLengthsNeedTheirDepthAndUpwardRows) {
    const Bytes file = packed(8, 2, 1, {2, 1, 0, 1});
    EXPECT_EQ(Decoded(Bytes(file).patch(30, 2, 4)).result, ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(Decoded(Bytes(file).patch(28, 24, 2)).result, ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(Decoded(Bytes(file).patch(22, -1, 4)).result, ORVANE_CODEC_DAMAGED);
}

TEST(Rle, EveryBeginningIsSafe) {
    const auto codes = {3, 1, 0, 5, 1, 2, 3, 4, 5, 0, 0, 2, 1, 1, 2, 7, 0, 0, 9, 8, 0, 1};
    for (const int bits : {4, 8}) {
        const size_t header = 54 + (size_t{4} << bits);
        decodeEveryBeginning(packed(bits, 7, 5, codes), header + 1);
    }
}

}  // namespace
}  // namespace orvane::codecs::test
