#include "platform/common/canvas.h"

#include <gtest/gtest.h>

#include <cstring>
#include <vector>

// What device contexts and bitmaps promise on every platform.
namespace orvane::platform {
namespace {

// 2 by 2: blue, green / red, white; each row padded to 8 bytes.
const Bytes kTopDown24 = {255, 0, 0, 0, 255, 0, 0, 0, 0, 0, 255, 255, 255, 255, 0, 0};
const Bytes kBottomUp24 = {0, 0, 255, 255, 255, 255, 0, 0, 255, 0, 0, 0, 255, 0, 0, 0};

TEST(TableBitmaps, ASectionHasTheHeadersDepth) {
    for (const std::uint16_t bits : std::initializer_list<std::uint16_t>{1, 4, 8, 16, 24, 32}) {
        const Canvas canvas(infoOf(5, -3, bits));
        ASSERT_NE(canvas.bitmap, BitmapHandle::none) << bits;
        ASSERT_NE(canvas.bits, nullptr);
        BitmapFacts facts;
        EXPECT_EQ(gdi32.GetObjectA(canvas.bitmap, facts), 24);
        EXPECT_EQ(facts.width, 5);
        EXPECT_EQ(facts.height, 3);
        EXPECT_EQ(facts.planes, 1);
        EXPECT_EQ(facts.bitsPixel, bits);
        EXPECT_EQ(facts.widthBytes, (5 * bits + 31) / 32 * 4);
    }
}

TEST(TableBitmaps, ACompatibleBitmapTakesTheSelectedSectionsDepth) {
    for (const std::uint16_t bits : std::initializer_list<std::uint16_t>{8, 24, 32}) {
        const Canvas canvas(infoOf(1, -1, bits));
        const BitmapHandle bitmap = gdi32.CreateCompatibleBitmap(canvas.dc, 7, 5);
        BitmapFacts facts;
        EXPECT_EQ(gdi32.GetObjectA(bitmap, facts), 24);
        EXPECT_EQ(facts.width, 7);
        EXPECT_EQ(facts.height, 5);
        EXPECT_EQ(facts.bitsPixel, bits);
        EXPECT_TRUE(gdi32.DeleteObject(bitmap));
    }
}

TEST(TableBitmaps, ANewContextIsBlackAndWhite) {
    const DeviceContext dc = gdi32.CreateCompatibleDC(DeviceContext::none);
    const BitmapHandle bitmap = gdi32.CreateCompatibleBitmap(dc, 7, 5);
    BitmapFacts facts;
    EXPECT_EQ(gdi32.GetObjectA(bitmap, facts), 24);
    EXPECT_EQ(facts.bitsPixel, 1);
    EXPECT_TRUE(gdi32.DeleteObject(bitmap));
    EXPECT_TRUE(gdi32.DeleteDC(dc));
}

TEST(TableBitmaps, ABitmapIsInOneContextAtATime) {
    const Canvas canvas(infoOf(1, -1, 24));
    const DeviceContext other = gdi32.CreateCompatibleDC(DeviceContext::none);
    EXPECT_EQ(gdi32.SelectObject(other, canvas.bitmap), BitmapHandle::none);
    EXPECT_TRUE(gdi32.DeleteDC(other));
}

TEST(TableBitmaps, ABitmapOutlivesItsContext) {
    const DeviceContext dc = gdi32.CreateCompatibleDC(DeviceContext::none);
    void* bits = nullptr;
    const BitmapHandle bitmap =
        gdi32.CreateDIBSection(DeviceContext::none, infoOf(1, -1, 24), kDibRgbColors, bits);
    EXPECT_NE(gdi32.SelectObject(dc, bitmap), BitmapHandle::none);
    EXPECT_TRUE(gdi32.DeleteDC(dc));
    BitmapFacts facts;
    EXPECT_EQ(gdi32.GetObjectA(bitmap, facts), 24);
    EXPECT_TRUE(gdi32.DeleteObject(bitmap));
    EXPECT_EQ(gdi32.GetObjectA(bitmap, facts), 0);
}

TEST(TableBitmaps, RowsAreStoredAsTheHeightSays) {
    const Canvas topDown(infoOf(2, -2, 24));
    EXPECT_EQ(topDown.draw(infoOf(2, -2, 24), kTopDown24), 2);
    EXPECT_EQ(topDown.stored(), kTopDown24);
    const Canvas bottomUp(infoOf(2, 2, 24));
    EXPECT_EQ(bottomUp.draw(infoOf(2, -2, 24), kTopDown24), 2);
    EXPECT_EQ(bottomUp.stored(), kBottomUp24);
    const Canvas turned(infoOf(2, -2, 24));
    EXPECT_EQ(turned.draw(infoOf(2, 2, 24), kBottomUp24), 2);
    EXPECT_EQ(turned.stored(), kTopDown24);
}

TEST(TableBitmaps, APaletteIsAppliedOnTheWayTo24Bits) {
    BitmapInfo info = infoOf(2, -2, 8);
    info.bmiColors[7] = 0x0000FF;
    info.bmiColors[8] = 0x00FF00;
    info.bmiColors[9] = 0xFF0000;
    info.bmiColors[255] = 0xFFFFFF;
    const Canvas canvas(infoOf(2, -2, 24));
    EXPECT_EQ(canvas.draw(info, {7, 8, 0, 0, 9, 255, 0, 0}), 2);
    EXPECT_EQ(canvas.stored(), kTopDown24);
}

TEST(TableBitmaps, ThirtyTwoBitsBecomeTwentyFour) {
    const Canvas canvas(infoOf(2, -2, 24));
    EXPECT_EQ(canvas.draw(infoOf(2, -2, 32),
                          {255, 0, 0, 9, 0, 255, 0, 9, 0, 0, 255, 9, 255, 255, 255, 9}),
              2);
    EXPECT_EQ(canvas.stored(), kTopDown24);
}

TEST(TableBitmaps, DrawingIsCutAtTheTarget) {
    const Canvas canvas(infoOf(2, -2, 24));
    EXPECT_NE(gdi32.StretchDIBits(canvas.dc, 1, 1, 2, 2, 0, 0, 2, 2, kTopDown24, infoOf(2, -2, 24),
                                  kDibRgbColors, kSrcCopy),
              0);
    EXPECT_EQ(canvas.stored(), (Bytes{0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 255, 0, 0, 0, 0}));
}

TEST(TableBitmaps, WholeFactorsRepeatPixels) {
    const Canvas canvas(infoOf(4, -1, 32));
    EXPECT_NE(canvas.draw(infoOf(2, -1, 32), {1, 2, 3, 0, 4, 5, 6, 0}), 0);
    EXPECT_EQ(canvas.stored(), (Bytes{1, 2, 3, 0, 1, 2, 3, 0, 4, 5, 6, 0, 4, 5, 6, 0}));
}

TEST(TableBitmaps, MissingPixelsAreRefused) {
    const Canvas canvas(infoOf(2, -2, 24));
    EXPECT_EQ(canvas.draw(infoOf(2, -2, 24), Bytes(15, 0x55)), 0);
    EXPECT_EQ(lastError(), kErrorInvalidParameter);
    EXPECT_EQ(canvas.stored(), Bytes(16, 0));
}

TEST(TableBitmaps, RasterOperationsCombineBits) {
    struct Case {
        std::uint32_t operation;
        std::uint8_t result;  // of the source 0x0F and the target 0x33
    };
    constexpr Case kCases[] = {
        {kSrcCopy, 0x0F},   {0x008800C6, 0x03}, {0x00EE0086, 0x3F}, {0x00660046, 0x3C},
        {0x00330008, 0xF0}, {0x00000042, 0x00}, {0x00FF0062, 0xFF}, {0x00550009, 0xCC},
        {0x00440328, 0x0C}, {0x00F00021, 0xFF},  // the pattern is a white brush
    };
    for (const Case& step : kCases) {
        const Canvas target(infoOf(2, -1, 24));
        const Canvas source(infoOf(2, -1, 24));
        std::memset(target.bits, 0x33, 6);
        std::memset(source.bits, 0x0F, 6);
        EXPECT_TRUE(gdi32.BitBlt(target.dc, 0, 0, 2, 1, source.dc, 0, 0, step.operation));
        Bytes expected(6, step.result);
        expected.resize(8);
        EXPECT_EQ(target.stored(), expected) << std::hex << step.operation;
    }
}

TEST(TableBitmaps, APieceIsCopiedToItsPlace) {
    const Canvas target(infoOf(3, -2, 32));
    const Canvas source(infoOf(3, -2, 32));
    auto* pixels = static_cast<std::uint32_t*>(source.bits);
    for (std::uint32_t i = 0; i < 6; ++i) {
        pixels[i] = i + 1;
    }
    EXPECT_TRUE(gdi32.BitBlt(target.dc, 0, 1, 2, 1, source.dc, 1, 0, kSrcCopy));
    const auto* copied = static_cast<const std::uint32_t*>(target.bits);
    EXPECT_EQ(std::vector<std::uint32_t>(copied, copied + 6),
              (std::vector<std::uint32_t>{0, 0, 0, 2, 3, 0}));
}

TEST(TableBitmaps, APictureMayMoveOverItself) {
    const Canvas canvas(infoOf(4, -2, 32));
    auto* pixels = static_cast<std::uint32_t*>(canvas.bits);
    for (std::uint32_t i = 0; i < 8; ++i) {
        pixels[i] = i + 1;
    }
    EXPECT_TRUE(gdi32.BitBlt(canvas.dc, 1, 1, 3, 1, canvas.dc, 0, 1, kSrcCopy));
    EXPECT_TRUE(gdi32.BitBlt(canvas.dc, 0, 0, 3, 1, canvas.dc, 1, 0, kSrcCopy));
    EXPECT_EQ(std::vector<std::uint32_t>(pixels, pixels + 8),
              (std::vector<std::uint32_t>{2, 3, 4, 4, 5, 5, 6, 7}));
}

}  // namespace
}  // namespace orvane::platform
