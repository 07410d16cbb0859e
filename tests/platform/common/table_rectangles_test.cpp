#include "platform/common/canvas.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

// `Rectangle` on every platform: where the pen draws, where the brush fills, and how both combine
// with what is there.
namespace orvane::platform {
namespace {

constexpr std::uint32_t kGround = 0x111111;
constexpr std::uint32_t kPen = 0x0000FF;  // colours of pens and brushes are 0x00BBGGRR
constexpr std::uint32_t kBrush = 0x00FF00;
constexpr std::uint32_t kGap = 0xFF0000;

using Rows = std::vector<std::string>;

/// A canvas of 32 bits with the pen and brush of a test.
class Rectangles : public testing::Test {
protected:
    void SetUp() override {
        clear();
        EXPECT_EQ(gdi32.SetBkColor(canvas_.dc, kGap), 0xFFFFFFu);
    }

    void clear(std::uint32_t color = kGround) const {
        std::fill_n(canvas_.pixels(), kWidth * kHeight, color);
    }

    bool draw(std::uint32_t style, std::int32_t width, std::int32_t left, std::int32_t top,
              std::int32_t right, std::int32_t bottom) {
        const Selected pen(canvas_.dc, gdi32.CreatePen(style, width, kPen));
        const Selected brush(canvas_.dc, gdi32.CreateSolidBrush(kBrush));
        return gdi32.Rectangle(canvas_.dc, left, top, right, bottom);
    }

    /// The first 14 columns of the picture.
    Rows seenLeft() const {
        Rows rows = seen();
        for (std::string& row : rows) {
            row.resize(14);
        }
        return rows;
    }

    /// The picture with a letter for each colour.
    Rows seen() const {
        Rows rows;
        for (std::int32_t y = 0; y < kHeight; ++y) {
            std::string row;
            for (std::int32_t x = 0; x < kWidth; ++x) {
                row += letterOf(canvas_.pixels()[y * kWidth + x]);
            }
            rows.push_back(row);
        }
        return rows;
    }

    static char letterOf(std::uint32_t pixel) {
        switch (pixel) {  // 0x00RRGGBB
        case kGround:
            return '.';
        case 0xFF0000:
            return 'P';
        case 0x00FF00:
            return 'b';
        case 0x0000FF:
            return '-';
        default:
            return '?';
        }
    }

    static constexpr std::int32_t kWidth = 30;
    static constexpr std::int32_t kHeight = 10;
    const Canvas canvas_{infoOf(kWidth, -kHeight, 32)};
};

TEST_F(Rectangles, EndBeforeTheRightAndTheBottom) {
    EXPECT_TRUE(draw(kPenSolid, 1, 2, 1, 9, 6));
    EXPECT_EQ(seenLeft(),
              (Rows{"..............", "..PPPPPPP.....", "..PbbbbbP.....", "..PbbbbbP.....",
                    "..PbbbbbP.....", "..PPPPPPP.....", "..............", "..............",
                    "..............", ".............."}));
}

TEST_F(Rectangles, AreTheSameWhicheverCornerComesFirst) {
    EXPECT_TRUE(draw(kPenSolid, 1, 2, 1, 9, 6));
    const Rows expected = seen();
    clear();
    EXPECT_TRUE(draw(kPenSolid, 1, 9, 6, 2, 1));
    EXPECT_EQ(seen(), expected);
}

TEST_F(Rectangles, WithoutAWidthOrHeightDrawNothing) {
    const Rows before = seen();
    EXPECT_TRUE(draw(kPenSolid, 1, 2, 2, 2, 8));
    EXPECT_TRUE(draw(kPenSolid, 3, 2, 2, 8, 2));
    EXPECT_EQ(seen(), before);
}

TEST_F(Rectangles, OfOneRowOrColumnAreThePensAlone) {
    EXPECT_TRUE(draw(kPenSolid, 1, 1, 1, 4, 2));
    EXPECT_TRUE(draw(kPenSolid, 1, 6, 1, 7, 4));
    EXPECT_TRUE(draw(kPenSolid, 1, 9, 1, 11, 3));
    EXPECT_EQ(seen()[1].substr(0, 12), ".PPP..P..PP.");
    EXPECT_EQ(seen()[2].substr(0, 12), "......P..PP.");
    EXPECT_EQ(seen()[3].substr(0, 12), "......P.....");
}

TEST_F(Rectangles, OfOnePixelAreThatPixel) {
    EXPECT_TRUE(draw(kPenSolid, 1, 1, 1, 2, 2));
#ifdef _WIN32
    // A frame has the first pixel of each edge. Wine doesn't count the edges that have no length.
    EXPECT_TRUE(seen()[1][1] == 'P' || seen()[1][1] == '.');
#else
    EXPECT_EQ(seen()[1][1], 'P');
#endif
}

TEST_F(Rectangles, AreCutAtTheSurface) {
    EXPECT_TRUE(draw(kPenSolid, 1, -5, -5, 3, 3));
    EXPECT_TRUE(draw(kPenSolid, 1, 26, 8, 100, 100));
    EXPECT_EQ(seen()[0].substr(0, 5), "bbP..");
    EXPECT_EQ(seen()[2].substr(0, 5), "PPP..");
    EXPECT_EQ(seen()[8].substr(24), "..PPPP");
    EXPECT_EQ(seen()[9].substr(24), "..Pbbb");
}

TEST_F(Rectangles, AWidthOfZeroIsOnePixel) {
    EXPECT_TRUE(draw(kPenSolid, 0, 0, 0, 3, 3));
    EXPECT_EQ(seenLeft()[0], "PPP...........");
    EXPECT_EQ(seenLeft()[1], "PbP...........");
}

TEST_F(Rectangles, WithoutAPenAreOnePixelSmaller) {
    EXPECT_TRUE(draw(kPenNull, 1, 2, 1, 9, 6));
    EXPECT_EQ(seenLeft(),
              (Rows{"..............", "..bbbbbb......", "..bbbbbb......", "..bbbbbb......",
                    "..bbbbbb......", "..............", "..............", "..............",
                    "..............", ".............."}));
}

TEST_F(Rectangles, WithoutABrushAreAFrame) {
    const Selected pen(canvas_.dc, gdi32.CreatePen(kPenSolid, 1, kPen));
    const Selected brush(canvas_.dc, gdi32.CreateBrushIndirect({kBrushNull, 0, 0}));
    EXPECT_TRUE(gdi32.Rectangle(canvas_.dc, 0, 0, 4, 4));
    EXPECT_EQ(seenLeft()[0], "PPPP..........");
    EXPECT_EQ(seenLeft()[1], "P..P..........");
    EXPECT_EQ(seenLeft()[3], "PPPP..........");
}

TEST_F(Rectangles, AWidePenHasTheEdgeInItsMiddle) {
    EXPECT_TRUE(draw(kPenSolid, 2, 2, 2, 9, 7));
    EXPECT_EQ(seenLeft(),
              (Rows{"..............", ".PPPPPPPP.....", ".PPPPPPPP.....", ".PPbbbbPP.....",
                    ".PPbbbbPP.....", ".PPPPPPPP.....", ".PPPPPPPP.....", "..............",
                    "..............", ".............."}));
}

TEST_F(Rectangles, AWidePenIsRoundAtTheCorners) {
    EXPECT_TRUE(draw(kPenSolid, 3, 2, 2, 11, 8));
    EXPECT_EQ(seenLeft(),
              (Rows{"..............", "..PPPPPPPPP...", ".PPPPPPPPPPP..", ".PPPPPPPPPPP..",
                    ".PPPbbbbbPPP..", ".PPPbbbbbPPP..", ".PPPPPPPPPPP..", ".PPPPPPPPPPP..",
                    "..PPPPPPPPP...", ".............."}));
}

TEST_F(Rectangles, AVeryWidePenLeavesNoInside) {
    EXPECT_TRUE(draw(kPenSolid, 6, 4, 4, 10, 6));
    EXPECT_EQ(seenLeft(),
              (Rows{"..............", "...PPPPPPP....", "..PPPPPPPPP...", ".PPPPPPPPPPP..",
                    ".PPPPPPPPPPP..", ".PPPPPPPPPPP..", "..PPPPPPPPP...", "...PPPPPPP....",
                    "..............", ".............."}));
}

TEST_F(Rectangles, APenInsideTheFrameStaysInside) {
    EXPECT_TRUE(draw(kPenInsideFrame, 3, 1, 1, 12, 9));
    EXPECT_EQ(seenLeft(),
              (Rows{"..............", "..PPPPPPPPP...", ".PPPPPPPPPPP..", ".PPPPPPPPPPP..",
                    ".PPPbbbbbPPP..", ".PPPbbbbbPPP..", ".PPPPPPPPPPP..", ".PPPPPPPPPPP..",
                    "..PPPPPPPPP...", ".............."}));
}

TEST_F(Rectangles, DashesRunRoundFromTheUpperRightCornerToTheLeft) {
    struct Case {
        std::uint32_t style;
        const char* rows[4];  // the first, the second, the fifth and the last of the frame
    };
    constexpr Case kCases[] = {
        {1,
         {".PPP------PPPPPPPPPPPPPPPPPP..", ".PbbbbbbbbbbbbbbbbbbbbbbbbbP..",
          ".PbbbbbbbbbbbbbbbbbbbbbbbbbP..", ".PPPPPPPPP------PPPPPPPPPPPP.."}},
        {2,
         {".PPP---PPP---PPP---PPP---PPP..", ".-bbbbbbbbbbbbbbbbbbbbbbbbb-..",
          ".PbbbbbbbbbbbbbbbbbbbbbbbbbP..", ".---PPP---PPP---PPP---PPP---.."}},
        {3,
         {".PPP------PPP------PPPPPPPPP..", ".PbbbbbbbbbbbbbbbbbbbbbbbbbP..",
          ".Pbbbbbbbbbbbbbbbbbbbbbbbbb-..", ".------PPP------PPPPPPPPP---.."}},
        {4,
         {".PPP---PPP---PPP---PPPPPPPPP..", ".Pbbbbbbbbbbbbbbbbbbbbbbbbb-..",
          ".PbbbbbbbbbbbbbbbbbbbbbbbbbP..", ".---PPP---PPP---PPPPPPPPP---.."}},
    };
    for (const bool opaque : {true, false}) {
        gdi32.SetBkMode(canvas_.dc, opaque ? kBackgroundOpaque : kBackgroundTransparent);
        for (const Case& step : kCases) {
            clear();
            EXPECT_TRUE(draw(step.style, 1, 1, 1, 28, 9));
            const Rows rows = seen();
            const std::string found[] = {rows[1], rows[2], rows[5], rows[8]};
            for (std::size_t i = 0; i < 4; ++i) {
                std::string expected = step.rows[i];
                if (!opaque) std::replace(expected.begin(), expected.end(), '-', '.');
                EXPECT_EQ(found[i], expected) << "style " << step.style << ", row " << i;
            }
        }
    }
}

TEST_F(Rectangles, AWidePenHasNoDashes) {
    for (const std::uint32_t style : {1u, 2u, 3u, 4u}) {
        clear();
        EXPECT_TRUE(draw(style, 2, 2, 2, 9, 7));
        EXPECT_EQ(seen()[1].substr(0, 10), ".PPPPPPPP.") << style;
        EXPECT_EQ(seen()[3].substr(0, 10), ".PPbbbbPP.") << style;
    }
}

TEST_F(Rectangles, PenAndBrushAreCombinedWithTheSurfaceByEachOfThe16Operations) {
    // Both bits of the pen with both of the surface: the result is the operation's own number
    // less one.
    constexpr std::uint32_t kColor = 0x0C0C0C;
    constexpr std::uint32_t kSurface = 0x0A0A0A;
    for (std::int32_t operation = 1; operation <= 16; ++operation) {
        clear(kSurface);
        const Selected pen(canvas_.dc, gdi32.CreatePen(kPenSolid, 1, kColor));
        const Selected brush(canvas_.dc, gdi32.CreateSolidBrush(kColor));
        EXPECT_NE(gdi32.SetROP2(canvas_.dc, operation), 0);
        EXPECT_TRUE(gdi32.Rectangle(canvas_.dc, 0, 0, 5, 5));
        const auto expected = 0x010101u * static_cast<std::uint32_t>(operation - 1);
        EXPECT_EQ(canvas_.pixels()[0] & 0x0F0F0F, expected) << operation;
        EXPECT_EQ(canvas_.pixels()[kWidth * 2 + 2] & 0x0F0F0F, expected) << operation;
        EXPECT_EQ(canvas_.pixels()[kWidth * 2 + 6], kSurface) << operation;
    }
}

TEST_F(Rectangles, EachPixelOfAWideFrameIsPaintedOnce) {
    EXPECT_NE(gdi32.SetROP2(canvas_.dc, 7), 0);  // exclusive or: twice is not at all
    const Selected pen(canvas_.dc, gdi32.CreatePen(kPenSolid, 4, 0x000001));
    const Selected brush(canvas_.dc, gdi32.CreateBrushIndirect({kBrushNull, 0, 0}));
    EXPECT_TRUE(gdi32.Rectangle(canvas_.dc, 2, 2, 12, 8));
    for (std::int32_t i = 0; i < kWidth * kHeight; ++i) {
        const std::int32_t x = i % kWidth;
        const std::int32_t y = i / kWidth;
        const bool isCorner = (x == 0 || x == 12) && (y == 0 || y == 8);
        const bool isInside = x >= 4 && x < 9 && y >= 4 && y < 5;
        const bool isOutside = x > 12 || y > 8;
        EXPECT_EQ(canvas_.pixels()[i], isCorner || isInside || isOutside ? kGround : 0x101111u)
            << x << ", " << y;
    }
}

TEST_F(Rectangles, NeedASurface) {
    EXPECT_FALSE(gdi32.Rectangle(DeviceContext{0xDEAD}, 0, 0, 1, 1));
    EXPECT_EQ(lastError(), kErrorInvalidHandle);
}

// The same on the other depths: the frame in the pen's colour, the inside in the brush's.
TEST(RectanglesOfAllDepths, HaveTheNearestColours) {
    for (const std::uint16_t bits : std::initializer_list<std::uint16_t>{8, 16, 24, 32}) {
        BitmapInfo info = infoOf(8, -4, bits);
        info.bmiColors[3] = 0xFF0000;  // 0x00RRGGBB
        info.bmiColors[9] = 0x00FF00;
        const Canvas canvas(info);
        {
            const Selected pen(canvas.dc, gdi32.CreatePen(kPenSolid, 1, kPen));
            const Selected brush(canvas.dc, gdi32.CreateSolidBrush(kBrush));
            EXPECT_TRUE(gdi32.Rectangle(canvas.dc, 0, 0, 3, 3));
        }
        const Bytes stored = canvas.stored();
        const std::size_t stride = stored.size() / 4;
        const std::size_t size = bits / 8;
        const Bytes frame(stored.begin(), stored.begin() + static_cast<std::ptrdiff_t>(size));
        const auto middle = stored.begin() + static_cast<std::ptrdiff_t>(stride + size);
        const Bytes inside(middle, middle + static_cast<std::ptrdiff_t>(size));
        const Bytes right(middle + static_cast<std::ptrdiff_t>(2 * size),
                          middle + static_cast<std::ptrdiff_t>(3 * size));
        switch (bits) {
        case 8:
            EXPECT_EQ(frame, Bytes{3});
            EXPECT_EQ(inside, Bytes{9});
            break;
        case 16:
            EXPECT_EQ(frame, (Bytes{0x00, 0x7C}));
            EXPECT_EQ(inside, (Bytes{0xE0, 0x03}));
            break;
        default:
            EXPECT_EQ(Bytes(frame.begin(), frame.begin() + 3), (Bytes{0, 0, 255}));
            EXPECT_EQ(Bytes(inside.begin(), inside.begin() + 3), (Bytes{0, 255, 0}));
        }
        EXPECT_EQ(right, Bytes(size, 0)) << bits;
    }
}

}  // namespace
}  // namespace orvane::platform
