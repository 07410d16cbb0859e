#include "platform/common/canvas.h"
#include "platform/user32.h"

#include <gtest/gtest.h>

// The ternary raster operations and what they take their colours from, on every platform.
namespace orvane::platform {
namespace {

/// The code of an operation: its number is what counts, no system has looked at the low half since
/// the times of 16 bits.
constexpr std::uint32_t codeOf(std::uint32_t number) {
    return number << 16;
}

/// What an operation makes of three bytes, bit by bit: its number is the table of its results.
std::uint8_t resultOf(std::uint32_t number, std::uint32_t pattern, std::uint32_t source,
                      std::uint32_t target) {
    std::uint32_t result = 0;
    for (std::uint32_t bit = 0; bit < 8; ++bit) {
        const std::uint32_t index =
            ((pattern >> bit) & 1) << 2 | ((source >> bit) & 1) << 1 | ((target >> bit) & 1);
        result |= ((number >> index) & 1) << bit;
    }
    return static_cast<std::uint8_t>(result);
}

TEST(TableDrawing, EachOfThe256OperationsIsTheTableThatItsNumberIs) {
    // Bit 7 of these three bytes is the combination of all ones, bit 0 that of all zeroes.
    constexpr std::uint8_t kSource = 0xCC;
    constexpr std::uint8_t kTarget = 0xAA;
    for (const std::uint16_t bits : std::initializer_list<std::uint16_t>{24, 32}) {
        const Canvas target(infoOf(3, -2, bits));
        const Canvas source(infoOf(3, -2, bits));
        const Selected brush(target.dc, gdi32.CreateSolidBrush(0xF0F0F0));
        source.clear(kSource);
        for (std::uint32_t number = 0; number < 256; ++number) {
            target.clear(kTarget);
            EXPECT_TRUE(gdi32.BitBlt(target.dc, 0, 0, 3, 2, source.dc, 0, 0, codeOf(number)));
            const Bytes stored = target.stored();
            for (std::size_t i = 0; i < 3; ++i) {
                EXPECT_EQ(stored[i], number) << bits << " bits, byte " << i;
            }
        }
    }
}

TEST(TableDrawing, EachOperationWorksOnAnyBytes) {
    constexpr std::uint32_t kBytes[][3] = {
        {0x00, 0xFF, 0x5A}, {0x12, 0x34, 0x56}, {0xFF, 0x80, 0x01}, {0x0F, 0x55, 0x33}};
    const Canvas target(infoOf(2, 1, 24));
    const Canvas source(infoOf(2, 1, 24));
    for (const auto& [pattern, from, to] : kBytes) {
        const Selected brush(target.dc, gdi32.CreateSolidBrush(pattern * 0x010101));
        source.clear(static_cast<std::uint8_t>(from));
        for (std::uint32_t number = 0; number < 256; ++number) {
            target.clear(static_cast<std::uint8_t>(to));
            EXPECT_TRUE(gdi32.BitBlt(target.dc, 0, 0, 2, 1, source.dc, 0, 0, codeOf(number)));
            EXPECT_EQ(target.stored()[4], resultOf(number, pattern, from, to)) << number;
        }
    }
}

TEST(TableDrawing, APatternHasTheBrushsColourInTheTargetsOrderOfChannels) {
    const Canvas target(infoOf(1, 1, 32));
    const Selected brush(target.dc, gdi32.CreateSolidBrush(0x332211));
    EXPECT_TRUE(gdi32.BitBlt(target.dc, 0, 0, 1, 1, DeviceContext::none, 0, 0, codeOf(0xF0)));
    EXPECT_EQ(target.pixels()[0], 0x112233u);
}

TEST(TableDrawing, AnOperationWithoutASourceTakesNone) {
    const Canvas target(infoOf(4, -2, 32));
    EXPECT_TRUE(gdi32.BitBlt(target.dc, 1, 0, 2, 1, DeviceContext::none, 0, 0, codeOf(0xFF)));
    EXPECT_EQ(target.pixels()[0], 0u);
    EXPECT_EQ(target.pixels()[1] & 0xFFFFFF, 0xFFFFFFu);
    EXPECT_EQ(target.pixels()[2] & 0xFFFFFF, 0xFFFFFFu);
    EXPECT_EQ(target.pixels()[3], 0u);
    EXPECT_EQ(target.pixels()[4], 0u);
}

TEST(TableDrawing, AnOperationWithASourceFailsWithoutOne) {
    const Canvas target(infoOf(1, 1, 32));
    EXPECT_FALSE(gdi32.BitBlt(target.dc, 0, 0, 1, 1, DeviceContext::none, 0, 0, kSrcCopy));
    EXPECT_EQ(lastError(), kErrorInvalidHandle);
    EXPECT_FALSE(gdi32.BitBlt(DeviceContext::none, 0, 0, 1, 1, target.dc, 0, 0, kSrcCopy));
    EXPECT_EQ(lastError(), kErrorInvalidHandle);
}

TEST(TableDrawing, ABrushThatIsNoneLeavesThePatternsTargetAsItIs) {
    const Canvas target(infoOf(2, 1, 32));
    const Selected brush(target.dc, gdi32.CreateBrushIndirect({kBrushNull, 0, 0}));
    target.clear(0x11);
    EXPECT_TRUE(gdi32.BitBlt(target.dc, 0, 0, 2, 1, DeviceContext::none, 0, 0, codeOf(0xF0)));
    EXPECT_TRUE(gdi32.BitBlt(target.dc, 0, 0, 2, 1, target.dc, 0, 0, codeOf(0xC0)));
    EXPECT_EQ(target.pixels()[0], 0x11111111u);
}

TEST(TableDrawing, AnAreaMayMoveOverItselfInEveryDirection) {
    for (const bool topDown : {true, false}) {
        for (std::int32_t dx = -2; dx <= 2; ++dx) {
            for (std::int32_t dy = -2; dy <= 2; ++dy) {
                const Canvas canvas(infoOf(8, topDown ? -8 : 8, 32));
                for (std::uint32_t i = 0; i < 64; ++i) {
                    canvas.pixels()[i] = i + 1;
                }
                const std::int32_t storedDy = topDown ? dy : -dy;
                EXPECT_TRUE(
                    gdi32.BitBlt(canvas.dc, 2 + dx, 2 + dy, 4, 4, canvas.dc, 2, 2, kSrcCopy));
                for (std::int32_t y = 0; y < 8; ++y) {
                    for (std::int32_t x = 0; x < 8; ++x) {
                        const bool isInside =
                            x >= 2 + dx && x < 6 + dx && y >= 2 + storedDy && y < 6 + storedDy;
                        const std::int32_t from =
                            isInside ? (y - storedDy) * 8 + x - dx : y * 8 + x;
                        EXPECT_EQ(canvas.pixels()[y * 8 + x], static_cast<std::uint32_t>(from + 1))
                            << dx << ", " << dy;
                    }
                }
            }
        }
    }
}

TEST(TableDrawing, NegativeSizesEndAtThePosition) {
    const Canvas target(infoOf(4, -1, 32));
    const Canvas source(infoOf(4, -1, 32));
    for (std::uint32_t i = 0; i < 4; ++i) {
        source.pixels()[i] = i + 1;
    }
    EXPECT_TRUE(gdi32.BitBlt(target.dc, 2, 0, -2, -1, source.dc, 3, 0, kSrcCopy));
    EXPECT_EQ(target.pixels()[0], 0u);
    EXPECT_EQ(target.pixels()[1], 3u);
    EXPECT_EQ(target.pixels()[2], 4u);
    EXPECT_EQ(target.pixels()[3], 0u);
}

/// A context with a black-and-white bitmap of 4 by 1 pixels that has no colours of its own.
class Monochrome : public testing::Test {
protected:
    Monochrome() {
        dc_ = gdi32.CreateCompatibleDC(DeviceContext::none);
        bitmap_ = gdi32.CreateCompatibleBitmap(dc_, 4, 1);
        former_ = gdi32.SelectObject(dc_, bitmap_);
    }
    ~Monochrome() override {
        gdi32.SelectObject(dc_, former_);
        EXPECT_TRUE(gdi32.DeleteObject(bitmap_));
        EXPECT_TRUE(gdi32.DeleteDC(dc_));
    }

    DeviceContext dc_;
    BitmapHandle bitmap_;
    GdiObject former_;
    const Canvas canvas_{infoOf(4, -1, 32)};
};

TEST_F(Monochrome, IsWhiteWhereTheSourceHasItsContextsBackgroundColour) {
    canvas_.pixels()[0] = 0x112233;
    canvas_.pixels()[1] = 0xFFFFFF;
    canvas_.pixels()[2] = 0x112233;
    gdi32.SetBkColor(canvas_.dc, 0x332211);
    EXPECT_TRUE(gdi32.BitBlt(dc_, 0, 0, 4, 1, canvas_.dc, 0, 0, kSrcCopy));
    gdi32.SetBkColor(canvas_.dc, 0xFFFFFF);
    EXPECT_TRUE(gdi32.BitBlt(canvas_.dc, 0, 0, 4, 1, dc_, 0, 0, kSrcCopy));
    EXPECT_EQ(canvas_.pixels()[0] & 0xFFFFFF, 0xFFFFFFu);
    EXPECT_EQ(canvas_.pixels()[1] & 0xFFFFFF, 0u);
    EXPECT_EQ(canvas_.pixels()[2] & 0xFFFFFF, 0xFFFFFFu);
    EXPECT_EQ(canvas_.pixels()[3] & 0xFFFFFF, 0u);
}

TEST_F(Monochrome, OnAColouredTargetHasThatContextsColours) {
    EXPECT_TRUE(gdi32.BitBlt(dc_, 0, 0, 2, 1, DeviceContext::none, 0, 0, codeOf(0xFF)));
    EXPECT_TRUE(gdi32.BitBlt(dc_, 2, 0, 2, 1, DeviceContext::none, 0, 0, codeOf(0x00)));
    gdi32.SetBkColor(canvas_.dc, 0x332211);
    EXPECT_TRUE(gdi32.BitBlt(canvas_.dc, 0, 0, 4, 1, dc_, 0, 0, kSrcCopy));
    EXPECT_EQ(canvas_.pixels()[1], 0x112233u);
    EXPECT_EQ(canvas_.pixels()[2], 0u);
}

TEST_F(Monochrome, OnABlackAndWhiteTargetStaysAsItIs) {
    const DeviceContext other = gdi32.CreateCompatibleDC(DeviceContext::none);
    const BitmapHandle bitmap = gdi32.CreateCompatibleBitmap(other, 4, 1);
    const GdiObject former = gdi32.SelectObject(other, bitmap);
    EXPECT_TRUE(gdi32.BitBlt(dc_, 1, 0, 2, 1, DeviceContext::none, 0, 0, codeOf(0xFF)));
    gdi32.SetBkColor(other, 0x332211);
    EXPECT_TRUE(gdi32.BitBlt(other, 0, 0, 4, 1, dc_, 0, 0, kSrcCopy));
    EXPECT_TRUE(gdi32.BitBlt(canvas_.dc, 0, 0, 4, 1, other, 0, 0, kSrcCopy));
    EXPECT_EQ(canvas_.pixels()[0] & 0xFFFFFF, 0u);
    EXPECT_EQ(canvas_.pixels()[1] & 0xFFFFFF, 0xFFFFFFu);
    EXPECT_EQ(canvas_.pixels()[2] & 0xFFFFFF, 0xFFFFFFu);
    EXPECT_EQ(canvas_.pixels()[3] & 0xFFFFFF, 0u);
    gdi32.SelectObject(other, former);
    EXPECT_TRUE(gdi32.DeleteObject(bitmap));
    EXPECT_TRUE(gdi32.DeleteDC(other));
}

TEST(TableDrawing, DepthsAreConvertedBeforeTheyAreCombined) {
    BitmapInfo info = infoOf(2, -1, 8);
    info.bmiColors[1] = 0x00FF00FF;
    info.bmiColors[2] = 0x0000FF00;
    const Canvas indexed(info);
    const Canvas target(infoOf(2, -1, 24));
    auto* indices = static_cast<std::uint8_t*>(indexed.bits);
    indices[0] = 1;
    indices[1] = 2;
    target.clear(0xFF);
    // Exclusive or of the colours, not of the numbers that stand for them.
    EXPECT_TRUE(gdi32.BitBlt(target.dc, 0, 0, 2, 1, indexed.dc, 0, 0, 0x00660046));
    const Bytes stored = target.stored();
    EXPECT_EQ(Bytes(stored.begin(), stored.begin() + 6), (Bytes{0, 255, 0, 255, 0, 255}));
}

}  // namespace
}  // namespace orvane::platform
