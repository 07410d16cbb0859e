#include "pictures/drawn_picture.h"
#include "pictures/metafile_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// Enhanced metafiles as a picture object draws them. Windows itself is the reference: these tests
// pass there, too.

namespace orvane::test {
namespace {

using testing::ElementsAre;

// The types of records.
constexpr std::uint32_t kPolyBezier = 2, kPolygon = 3, kPolyline = 4, kPolylineTo = 6,
                        kPolyPolygon = 8, kSetWindowExt = 9, kSetWindowOrg = 10,
                        kSetViewportExt = 11, kSetViewportOrg = 12, kSetPixel = 15,
                        kSetMapMode = 17, kSetBkMode = 18, kSetPolyFillMode = 19, kSetRop2 = 20,
                        kSetTextAlign = 22, kSetTextColor = 24, kSetBkColor = 25, kOffsetClip = 26,
                        kMoveTo = 27, kExcludeClip = 29, kIntersectClip = 30, kSaveDC = 33,
                        kRestoreDC = 34, kSetWorld = 35, kModifyWorld = 36, kSelectObject = 37,
                        kCreatePen = 38, kCreateBrush = 39, kDeleteObject = 40, kAngleArc = 41,
                        kEllipse = 42, kRectangle = 43, kPie = 47, kSelectPalette = 48,
                        kCreatePalette = 49, kExtFloodFill = 53, kLineTo = 54, kArcTo = 55,
                        kPolyDraw = 56, kSetArcDirection = 57, kBeginPath = 59, kEndPath = 60,
                        kCloseFigure = 61, kFillPath = 62, kStrokeAndFillPath = 63,
                        kStrokePath = 64, kSelectClipPath = 67, kComment = 70, kFillRgn = 71,
                        kPaintRgn = 74, kExtSelectClipRgn = 75, kBitBlt = 76, kStretchBlt = 77,
                        kStretchDibits = 81, kCreateFont = 82, kExtTextOutW = 84, kPolygon16 = 86,
                        kPolyPolygon16 = 91, kMonoBrush = 93, kDibBrush = 94, kExtCreatePen = 95,
                        kAlphaBlend = 114, kTransparentBlt = 116, kGradientFill = 118;

constexpr std::int64_t kStock = 0x80000000;
constexpr std::int64_t kNullBrush = kStock | 5;
constexpr std::int64_t kBlackPen = kStock | 7;
constexpr std::int64_t kNullPen = kStock | 8;
constexpr std::int64_t kRed = 0x0000FF;
constexpr std::int64_t kGreen = 0x00FF00;
constexpr std::int64_t kBlue = 0xFF0000;

/// A file that begins with no pen and a red brush, object 1.
class Drawing : public EmfFile {
public:
    Drawing(int width, int height) : EmfFile(width, height) {
        brush(1, kRed).record(kSelectObject, {kNullPen});
    }

    Drawing& record(std::uint32_t type, std::initializer_list<std::int64_t> numbers = {}) {
        EmfFile::record(type, numbers);
        return *this;
    }
    Drawing& record(std::uint32_t type, const std::string& parameters) {
        EmfFile::record(type, parameters);
        return *this;
    }
    /// Makes a brush and selects it.
    Drawing& brush(int index, std::int64_t color) {
        return record(kCreateBrush, {index, 0, color, 0}).record(kSelectObject, {index});
    }
    Drawing& pen(int index, std::int64_t color, int width = 0) {
        return record(kCreatePen, {index, 0, width, 0, color}).record(kSelectObject, {index});
    }
    /// Exactly these pixels, in the brush's colour.
    Drawing& box(int left, int top, int width, int height) {
        return record(kBitBlt, {0, 0, 0, 0, left, top, width, height, 0x00F00021, 0, 0, 0,
                                0, 0, 0, 0, 0,    0,   0,     0,      0,          0, 0});
    }
};

std::vector<std::string> drawn(const EmfFile& file, int width, int height,
                               std::uint32_t ground = 0xFFFFFF) {
    return asLetters(drawnPixels(file.bytes(), width, height, ground), width);
}

std::string matrix(float xx, float yx, float xy, float yy, float dx, float dy) {
    return Words().f32(xx).f32(yx).f32(xy).f32(yy).f32(dx).f32(dy).bytes();
}

std::string points(std::initializer_list<std::int64_t> numbers) {
    Words out;
    out.u32(0).u32(0).u32(0).u32(0).u32(static_cast<std::int64_t>(numbers.size() / 2));
    for (const std::int64_t number : numbers)
        out.u32(number);
    return out.bytes();
}

std::string smallPoints(std::initializer_list<int> numbers) {
    Words out;
    out.u32(0).u32(0).u32(0).u32(0).u32(static_cast<std::int64_t>(numbers.size() / 2));
    for (const int number : numbers)
        out.u16(number);
    return out.bytes();
}

/// A record's image behind its fields: `headerAt` is where the image begins in the record.
std::string imageFields(int headerAt, const std::string& dib) {
    return Words()
        .u32(headerAt)
        .u32(40)
        .u32(headerAt + 40)
        .u32(static_cast<std::int64_t>(dib.size()) - 40)
        .bytes();
}

/// A blit with a source of its own size.
std::string stretchBlt(int x, int y, int width, int height, std::int64_t operation, int fromWidth,
                       int fromHeight, const std::string& dib) {
    Words out;
    out.u32(0).u32(0).u32(0).u32(0).u32(x).u32(y).u32(width).u32(height).u32(operation);
    out.u32(0).u32(0).add(matrix(1, 0, 0, 1, 0, 0)).u32(0xFFFFFF).u32(0);
    return out.add(imageFields(108, dib)).u32(fromWidth).u32(fromHeight).add(dib).bytes();
}

/// A bitmap of 32 bits, rows from the top.
std::string dib32(int width, int height, std::initializer_list<std::uint32_t> pixels) {
    Words out;
    out.u32(40).u32(width).u32(-height).u16(1).u16(32).u32(0).u32(0).u32(0).u32(0).u32(0).u32(0);
    for (const std::uint32_t pixel : pixels)
        out.u32(pixel);
    return out.bytes();
}

TEST(EmfDrawing, APatternFillsItsPixels) {
    EXPECT_THAT(drawn(Drawing(4, 3).box(1, 1, 2, 1), 4, 3), ElementsAre("....", ".rr.", "...."));
}

TEST(EmfDrawing, TheFrameFillsThePicture) {
    EXPECT_THAT(drawn(Drawing(2, 1).box(1, 0, 1, 1), 6, 2), ElementsAre("...rrr", "...rrr"));
}

TEST(EmfDrawing, AWindowStretchesOverItsViewport) {
    Drawing file(4, 2);
    file.record(kSetMapMode, {8}).record(kSetWindowOrg, {10, 10}).record(kSetWindowExt, {2, 2});
    file.record(kSetViewportOrg, {2, 0}).record(kSetViewportExt, {2, 2}).box(10, 10, 1, 2);
    EXPECT_THAT(drawn(file, 4, 2), ElementsAre("..r.", "..r."));
}

TEST(EmfDrawing, TheWorldIsTransformed) {
    Drawing file(4, 4);
    file.record(kSetWorld, matrix(2, 0, 0, 2, 1, 0)).box(0, 0, 1, 1);
    EXPECT_THAT(drawn(file, 4, 4), ElementsAre(".rr.", ".rr.", "....", "...."));
}

TEST(EmfDrawing, TransformationsAreCombinedInBothOrders) {
    const auto combined = [](std::uint32_t mode) {
        Drawing file(8, 1);
        file.record(kSetWorld, matrix(2, 0, 0, 1, 0, 0));
        file.record(kModifyWorld, Words().add(matrix(1, 0, 0, 1, 2, 0)).u32(mode).bytes());
        return drawn(file.box(0, 0, 1, 1), 8, 1)[0];
    };
    EXPECT_EQ(combined(1), "r.......");
    EXPECT_EQ(combined(2), "....rr..");
    EXPECT_EQ(combined(3), "..rr....");
}

TEST(EmfDrawing, AFigureIsTurned) {
    Drawing file(4, 4);
    file.record(kSetWorld, matrix(0, 1, -1, 0, 4, 0));
    file.record(kPolygon, points({0, 0, 2, 0, 2, 1, 0, 1}));
    EXPECT_THAT(drawn(file, 4, 4), ElementsAre("...r", "...r", "....", "...."));
}

TEST(EmfDrawing, PointsHave16Or32Bits) {
    Drawing file(4, 2);
    file.record(kPolygon, points({0, 0, 2, 0, 2, 1, 0, 1}));
    file.record(kPolygon16, smallPoints({2, 1, 4, 1, 4, 2, 2, 2}));
    EXPECT_THAT(drawn(file, 4, 2), ElementsAre("rr..", "..rr"));
}

TEST(EmfDrawing, PolygonsAreFilledTogether) {
    const auto nested = [](std::int64_t mode) {
        Drawing file(3, 3);
        Words out;
        out.u32(0).u32(0).u32(0).u32(0).u32(2).u32(8).u32(4).u32(4);
        for (const int number : {0, 0, 3, 0, 3, 3, 0, 3, 1, 1, 2, 1, 2, 2, 1, 2})
            out.u16(number);
        file.record(kSetPolyFillMode, {mode}).record(kPolyPolygon16, out.bytes());
        return drawn(file, 3, 3);
    };
    EXPECT_THAT(nested(1), ElementsAre("rrr", "r.r", "rrr"));
    EXPECT_THAT(nested(2), ElementsAre("rrr", "rrr", "rrr"));
}

TEST(EmfDrawing, LinesGoOnWhereTheLastOneEnded) {
    Drawing file(4, 3);
    file.record(kSelectObject, {kBlackPen}).record(kMoveTo, {0, 0}).record(kLineTo, {2, 0});
    file.record(kPolylineTo, points({2, 2, 4, 2}));
    EXPECT_THAT(drawn(file, 4, 3), ElementsAre("###.", "..#.", "..##"));
}

TEST(EmfDrawing, ACurveEndsWhereItSays) {
    Drawing file(9, 5);
    file.record(kSelectObject, {kBlackPen});
    file.record(kPolyBezier, points({0, 4, 0, -1, 8, -1, 8, 4}));
    const auto rows = drawn(file, 9, 5);
    EXPECT_EQ(rows[4][0], '#');
    EXPECT_EQ(rows[0][4], '#');
    EXPECT_EQ(rows[4][4], '.');
    EXPECT_EQ(rows[0][0], '.');
}

TEST(EmfDrawing, APathIsFilledAndDrawnWhole) {
    Drawing file(5, 5);
    file.record(kSelectObject, {kBlackPen}).record(kBeginPath).record(kMoveTo, {0, 0});
    file.record(kLineTo, {4, 0}).record(kLineTo, {4, 4}).record(kLineTo, {0, 4});
    file.record(kCloseFigure).record(kEndPath).record(kStrokeAndFillPath, {0, 0, 0, 0});
    EXPECT_THAT(drawn(file, 5, 5), ElementsAre("#####", "#rrr#", "#rrr#", "#rrr#", "#####"));
}

TEST(EmfDrawing, NothingIsDrawnWhileAPathIsMade) {
    Drawing file(4, 2);
    file.record(kBeginPath).record(kPolygon, points({0, 0, 4, 0, 4, 2, 0, 2})).record(kEndPath);
    EXPECT_THAT(drawn(file, 4, 2), ElementsAre("....", "...."));
    file.record(kFillPath, {0, 0, 0, 0});
    EXPECT_THAT(drawn(file, 4, 2), ElementsAre("rrrr", "rrrr"));
}

TEST(EmfDrawing, APathIsGoneOnceItIsDrawn) {
    Drawing file(2, 1);
    file.record(kBeginPath).record(kPolygon, points({0, 0, 2, 0, 2, 1, 0, 1})).record(kEndPath);
    file.record(kFillPath, {0, 0, 0, 0}).brush(2, kBlue).record(kFillPath, {0, 0, 0, 0});
    EXPECT_THAT(drawn(file, 2, 1), ElementsAre("rr"));
}

TEST(EmfDrawing, AnOpenPathIsDrawnOpen) {
    Drawing file(4, 3);
    file.record(kSelectObject, {kBlackPen}).record(kBeginPath).record(kMoveTo, {0, 0});
    file.record(kLineTo, {2, 0}).record(kLineTo, {2, 2}).record(kEndPath);
    file.record(kStrokePath, {0, 0, 0, 0});
    EXPECT_THAT(drawn(file, 4, 3), ElementsAre("###.", "..#.", "...."));
}

TEST(EmfDrawing, APathCanBeClippedTo) {
    Drawing file(4, 2);
    file.record(kBeginPath).record(kPolygon, points({1, 0, 3, 0, 3, 1, 1, 1})).record(kEndPath);
    file.record(kSelectClipPath, {5}).box(0, 0, 4, 2);
    EXPECT_THAT(drawn(file, 4, 2), ElementsAre(".rr.", "...."));
}

TEST(EmfDrawing, PointsCanTellWhatTheyDraw) {
    Drawing file(4, 3);
    file.record(kSelectObject, {kBlackPen});
    const std::string types = "\x06\x02\x03";  // move, line, line that closes
    file.record(kPolyDraw, Words().add(points({0, 0, 3, 0, 3, 2})).add(types).bytes());
    const auto rows = drawn(file, 4, 3);
    EXPECT_EQ(rows[0], "####");
    EXPECT_EQ(rows[1][3], '#');
    EXPECT_NE(rows[1].substr(0, 3), "...");
}

TEST(EmfDrawing, ArcsTurnAgainstTheClockUnlessTheyAreToldOtherwise) {
    const auto quarters = [](std::int64_t direction) {
        Drawing file(20, 20);
        file.record(kSetArcDirection, {direction});
        file.record(kPie, {0, 0, 20, 20, 20, 10, 10, 0});
        const auto rows = drawn(file, 20, 20);
        return std::string{rows[6][13], rows[6][6], rows[13][6], rows[13][13]};
    };
    EXPECT_EQ(quarters(1), "r...");
    EXPECT_EQ(quarters(2), ".rrr");
}

/// Whether a line runs through a pixel or one beside it.
bool isDrawn(const std::vector<std::string>& rows, std::size_t x, std::size_t y) {
    for (std::size_t row = y - 1; row <= y + 1; ++row) {
        if (rows[row].substr(x - 1, 3).find('#') != std::string::npos) return true;
    }
    return false;
}

TEST(EmfDrawing, AnArcToBeginsWithALineAndMovesThePosition) {
    Drawing file(22, 22);
    file.record(kSelectObject, {kBlackPen}).record(kMoveTo, {10, 20});
    file.record(kArcTo, {0, 0, 21, 21, 21, 10, 10, 0}).record(kLineTo, {10, 8});
    const auto rows = drawn(file, 22, 22);
    EXPECT_TRUE(isDrawn(rows, 15, 15));  // the line to where the arc begins
    EXPECT_TRUE(isDrawn(rows, 18, 4));   // the arc
    EXPECT_TRUE(isDrawn(rows, 10, 5));   // the line from where it ends
    EXPECT_FALSE(isDrawn(rows, 4, 10));
}

TEST(EmfDrawing, AnArcGoesOnWithTheFigureOfAPath) {
    Drawing file(22, 22);
    file.record(kBeginPath).record(kMoveTo, {1, 20}).record(kLineTo, {20, 20});
    file.record(kArcTo, {0, 0, 21, 21, 21, 10, 10, 0}).record(kCloseFigure).record(kEndPath);
    file.record(kFillPath, {0, 0, 0, 0});
    const auto rows = drawn(file, 22, 22);
    EXPECT_EQ(rows[10][10], 'r');
    EXPECT_EQ(rows[5][15], 'r');
    EXPECT_EQ(rows[5][3], '.');
}

TEST(EmfDrawing, AnAngleArcGoesAgainstTheClock) {
    Drawing file(21, 21);
    Words arc;
    arc.u32(10).u32(10).u32(8).f32(0).f32(90);
    file.record(kSelectObject, {kBlackPen}).record(kMoveTo, {18, 10});
    file.record(kAngleArc, arc.bytes());
    const auto rows = drawn(file, 21, 21);
    EXPECT_TRUE(isDrawn(rows, 18, 8));
    EXPECT_TRUE(isDrawn(rows, 16, 4));
    EXPECT_TRUE(isDrawn(rows, 12, 2));
    EXPECT_FALSE(isDrawn(rows, 4, 4));
    EXPECT_FALSE(isDrawn(rows, 16, 16));
}

TEST(EmfDrawing, AnEllipseLacksItsCorners) {
    Drawing file(9, 9);
    file.record(kEllipse, {0, 0, 9, 9});
    const auto rows = drawn(file, 9, 9);
    EXPECT_EQ(rows[0][0], '.');
    EXPECT_EQ(rows[4][4], 'r');
}

TEST(EmfDrawing, APenOfAMillimetreIsAsWideAsItsUnits) {
    Drawing file(6, 6);
    file.pen(2, kBlue, 2).record(kPolyline, points({-4, 3, 12, 3}));
    const auto rows = drawn(file, 6, 6);
    EXPECT_THAT(rows, ElementsAre("......", "......", "bbbbbb", "bbbbbb", "......", "......"));
}

TEST(EmfDrawing, AGeometricPenEndsFlat) {
    Drawing file(8, 5);
    // Geometric, flat ends, mitred corners.
    file.record(kExtCreatePen, {2, 0, 0, 0, 0, 0x00010000 | 0x200 | 0x2000, 3, 0, kBlue, 0, 0});
    file.record(kSelectObject, {2}).record(kPolyline, points({2, 2, 6, 2}));
    const auto rows = drawn(file, 8, 5);
    EXPECT_EQ(rows[2][1], '.');
    EXPECT_EQ(rows[2][3], 'b');
    EXPECT_EQ(rows[1][4], 'b');
    EXPECT_EQ(rows[3][4], 'b');
    EXPECT_EQ(rows[2][7], '.');
    EXPECT_EQ(rows[0][4], '.');
}

TEST(EmfDrawing, APixelIsSet) {
    EXPECT_THAT(drawn(Drawing(2, 1).record(kSetPixel, {1, 0, kBlue}), 2, 1), ElementsAre(".b"));
}

TEST(EmfDrawing, ABrushOfAnImageRepeatsIt) {
    const std::string dib = dib24(2, 1, {0xFF0000, 0x0000FF});
    Drawing file(4, 1);
    file.record(kDibBrush, Words().u32(2).u32(0).add(imageFields(32, dib)).add(dib).bytes());
    file.record(kSelectObject, {2}).box(0, 0, 4, 1);
    EXPECT_THAT(drawn(file, 4, 1), ElementsAre("rbrb"));
}

TEST(EmfDrawing, ABrushOfOneBitTakesTheTextAndBackgroundColour) {
    Words dib;
    dib.u32(40).u32(8).u32(1).u16(1).u16(1).u32(0).u32(0).u32(0).u32(0).u32(2).u32(0);
    dib.u32(0).u32(0xFFFFFF).u32(0xF0);
    Words out;
    out.u32(2).u32(0).u32(32).u32(48).u32(80).u32(4).add(dib.bytes());
    Drawing file(16, 1);
    file.record(kSetTextColor, {kBlue}).record(kSetBkColor, {kGreen});
    file.record(kMonoBrush, out.bytes()).record(kSelectObject, {2}).box(0, 0, 16, 1);
    EXPECT_THAT(drawn(file, 16, 1), ElementsAre("ggggbbbbggggbbbb"));
}

TEST(EmfDrawing, AColourCanBeOneOfAPalette) {
    Drawing file(2, 1);
    // Version, count, and red, green and blue of each colour.
    file.record(kCreatePalette, {5, 0x00020300, kGreen, kBlue}).record(kSelectPalette, {5});
    file.brush(2, 0x02000000 | kBlue).box(0, 0, 1, 1);
    EXPECT_THAT(drawn(file, 2, 1), ElementsAre("b."));
}

TEST(EmfDrawing, AnImageIsStretchedOverItsPlace) {
    const std::string dib = dib24(2, 1, {0xFF0000, 0x0000FF});
    Words out;
    out.u32(0).u32(0).u32(0).u32(0).u32(1).u32(0).u32(0).u32(0).u32(2).u32(1);
    out.add(imageFields(80, dib)).u32(0).u32(0x00CC0020).u32(4).u32(2).add(dib);
    EXPECT_THAT(drawn(Drawing(6, 2).record(kStretchDibits, out.bytes()), 6, 2),
                ElementsAre(".rrbb.", ".rrbb."));
}

TEST(EmfDrawing, ABlitCombinesItsImageWithWhatIsThere) {
    const std::string dib = dib24(2, 1, {0xFF0000, 0x0000FF});
    Drawing file(4, 1);
    file.record(kStretchBlt, stretchBlt(0, 0, 4, 1, 0x00660046, 2, 1, dib));  // SRCINVERT
    EXPECT_THAT(drawn(file, 4, 1, 0xFF00FF), ElementsAre("bbrr"));
}

TEST(EmfDrawing, AnImageIsMixedInByItsOpacity) {
    const std::string dib = dib32(2, 1, {0xFF0000FF, 0x00000000});
    Drawing file(2, 1);
    // The image's own fourth bytes: one pixel is opaque, the other isn't there.
    file.record(kAlphaBlend, stretchBlt(0, 0, 2, 1, 0x01FF0000, 2, 1, dib));
    EXPECT_THAT(drawn(file, 2, 1, 0xFFFF00), ElementsAre("by"));
    Drawing half(1, 1);
    half.record(kAlphaBlend, stretchBlt(0, 0, 1, 1, 0x00800000, 1, 1, dib32(1, 1, {0xFFFFFF})));
    const std::uint32_t grey = drawnPixels(half.bytes(), 1, 1, 0).at(0);
    EXPECT_NEAR(grey & 0xFF, 0x80, 1);
    EXPECT_NEAR(grey >> 16, 0x80, 1);
}

TEST(EmfDrawing, ARectangleFadesFromOneColourToAnother) {
    const auto faded = [](std::int64_t mode, int width, int height) {
        Words out;
        out.u32(0).u32(0).u32(0).u32(0).u32(2).u32(1).u32(mode);
        out.u32(0).u32(0).u16(0).u16(0).u16(0).u16(0);
        out.u32(width).u32(height).u16(0xFF00).u16(0).u16(0).u16(0).u32(0).u32(1);
        return drawnPixels(Drawing(width, height).record(kGradientFill, out.bytes()).bytes(), width,
                           height);
    };
    for (const std::vector<std::uint32_t>& row : {faded(0, 32, 1), faded(1, 1, 32)}) {
        EXPECT_LT(row.front() >> 16, 16u);
        EXPECT_GT(row.back() >> 16, 240u);
        EXPECT_NEAR(row[16] >> 16, 0x80, 8);
        EXPECT_EQ(row[16] & 0xFFFF, 0u);
    }
}

TEST(EmfDrawing, ATriangleFadesBetweenItsCorners) {
    Words out;
    out.u32(0).u32(0).u32(0).u32(0).u32(3).u32(1).u32(2);
    out.u32(0).u32(0).u16(0xFF00).u16(0).u16(0).u16(0);
    out.u32(32).u32(0).u16(0).u16(0xFF00).u16(0).u16(0);
    out.u32(0).u32(32).u16(0).u16(0).u16(0xFF00).u16(0);
    out.u32(0).u32(1).u32(2);
    const auto pixels =
        drawnPixels(Drawing(32, 32).record(kGradientFill, out.bytes()).bytes(), 32, 32);
    EXPECT_GT(pixels[33] >> 16, 200u);
    EXPECT_GT(pixels[28] >> 8 & 0xFF, 180u);
    EXPECT_GT(pixels[32 * 28] & 0xFF, 180u);
    EXPECT_EQ(pixels[32 * 31 + 31], 0xFFFFFFu);
}

TEST(EmfDrawing, ClippingCutsWhatIsDrawn) {
    Drawing file(4, 4);
    file.record(kIntersectClip, {1, 1, 3, 3}).record(kExcludeClip, {1, 1, 2, 2}).box(0, 0, 4, 4);
    EXPECT_THAT(drawn(file, 4, 4), ElementsAre("....", "..r.", ".rr.", "...."));
}

std::string regionOf(std::initializer_list<std::int64_t> numbers) {
    Words out;
    out.u32(32).u32(1).u32(static_cast<std::int64_t>(numbers.size() / 4));
    out.u32(static_cast<std::int64_t>(numbers.size() * 4)).u32(0).u32(0).u32(8).u32(8);
    for (const std::int64_t number : numbers)
        out.u32(number);
    return out.bytes();
}

TEST(EmfDrawing, TheClippingMovesWithItsRecord) {
    Drawing file(4, 1);
    file.record(kIntersectClip, {0, 0, 2, 1}).record(kOffsetClip, {1, 0}).box(0, 0, 4, 1);
    EXPECT_THAT(drawn(file, 4, 1), ElementsAre(".rr."));
}

TEST(EmfDrawing, ARegionIsPaintedWithTheSelectedBrush) {
    Drawing file(3, 1);
    Words out;
    out.u32(0).u32(0).u32(0).u32(0).u32(48).add(regionOf({1, 0, 3, 1}));
    EXPECT_THAT(drawn(file.record(kPaintRgn, out.bytes()), 3, 1), ElementsAre(".rr"));
}

TEST(EmfDrawing, RegionsAreClippedToInFiveWays) {
    const auto clipped = [](std::int64_t mode) {
        Drawing file(4, 1);
        const std::string first = regionOf({0, 0, 2, 1});
        const std::string second = regionOf({1, 0, 3, 1});
        file.record(kExtSelectClipRgn, Words().u32(48).u32(5).add(first).bytes());
        file.record(kExtSelectClipRgn, Words().u32(48).u32(mode).add(second).bytes());
        return drawn(file.box(0, 0, 4, 1), 4, 1)[0];
    };
    EXPECT_EQ(clipped(1), ".r..");
    EXPECT_EQ(clipped(2), "rrr.");
    EXPECT_EQ(clipped(3), "r.r.");
    EXPECT_EQ(clipped(4), "r...");
    EXPECT_EQ(clipped(5), ".rr.");
}

TEST(EmfDrawing, CopyingNoRegionEndsTheClipping) {
    Drawing file(2, 1);
    file.record(kIntersectClip, {0, 0, 1, 1}).record(kExtSelectClipRgn, {0, 5}).box(0, 0, 2, 1);
    EXPECT_THAT(drawn(file, 2, 1), ElementsAre("rr"));
}

TEST(EmfDrawing, ARegionIsFilledWithABrush) {
    Drawing file(4, 2);
    const std::string region = regionOf({0, 0, 2, 1, 2, 1, 4, 2});
    Words out;
    out.u32(0).u32(0).u32(0).u32(0).u32(64).u32(1).add(region);
    file.brush(2, kBlue).record(kFillRgn, out.bytes());
    EXPECT_THAT(drawn(file, 4, 2), ElementsAre("rr..", "..rr"));
}

TEST(EmfDrawing, AStateComesBack) {
    Drawing file(2, 1);
    file.record(kSaveDC).brush(2, kBlue).box(0, 0, 1, 1).record(kRestoreDC, {-1}).box(1, 0, 1, 1);
    EXPECT_THAT(drawn(file, 2, 1), ElementsAre("br"));
}

TEST(EmfDrawing, PensCombineWithWhatIsThere) {
    Drawing file(2, 1);
    file.record(kSetRop2, {7}).record(kPolygon, points({0, 0, 2, 0, 2, 1, 0, 1}));
    EXPECT_THAT(drawn(file, 2, 1, 0xFFFF00), ElementsAre("gg"));
}

TEST(EmfDrawing, AFloodGoesAsFarAsItsColour) {
    Drawing file(4, 1);
    file.brush(2, kBlue).box(2, 0, 1, 1).record(kSelectObject, {1});
    file.record(kExtFloodFill, {0, 0, 0xFFFFFF, 1});
    EXPECT_THAT(drawn(file, 4, 1), ElementsAre("rrb."));
}

/// The columns that letters cover: three capital ones at 100, in a picture of 200 by 40 units that
/// is drawn `width` pixels wide. Mode 1 is the compatible one, 2 the advanced one.
std::pair<int, int> inkOf(std::int64_t align, int width, std::uint32_t mode = 1) {
    Drawing file(200, 40);
    Words font;
    font.u32(2).u32(-24).u32(0).u32(0).u32(0).u32(400).u32(0).u32(0);
    for (const char letter : {'A', 'r', 'i', 'a', 'l'})
        font.u16(letter);
    file.record(kCreateFont, font.add(std::string(320 - font.bytes().size(), '\0')).bytes());
    file.record(kSelectObject, {2}).record(kSetBkMode, {1}).record(kSetTextAlign, {align});
    Words text;
    text.u32(0).u32(0).u32(0).u32(0).u32(mode).f32(1).f32(1).u32(100).u32(4).u32(3).u32(76).u32(0);
    text.u32(0).u32(0).u32(-1).u32(-1).u32(0).u16('H').u16('H').u16('H');
    file.record(kExtTextOutW, text.bytes());
    int first = width;
    int last = -1;
    for (const std::string& row : drawn(file, width, 40)) {
        for (int x = 0; x < width; ++x) {
            if (row[static_cast<std::size_t>(x)] == '.') continue;
            first = std::min(first, x);
            last = std::max(last, x);
        }
    }
    return {first, last};
}

TEST(EmfDrawing, TextStandsWhereItIsAligned) {
    EXPECT_GE(inkOf(0, 200).first, 100);
    EXPECT_GT(inkOf(0, 200).second, 130);
    EXPECT_LE(inkOf(2, 200).second, 100);
    EXPECT_NEAR(inkOf(6, 200).first + inkOf(6, 200).second, 200, 4);
}

TEST(EmfDrawing, TheCompatibleModeKeepsTheShapeOfLetters) {
    const auto [left, right] = inkOf(0, 200);
    const auto [wideLeft, wideRight] = inkOf(0, 400, 1);
    EXPECT_NEAR(wideLeft, 2 * left, 4);
    EXPECT_NEAR(wideRight - wideLeft, right - left, 2);
}

TEST(EmfDrawing, BoxesHaveTheirRightAndBottomEdge) {
    Drawing file(5, 4);
    EXPECT_THAT(drawn(file.record(kRectangle, {0, 0, 3, 2}), 5, 4),
                ElementsAre("rrr..", "rrr..", ".....", "....."));
    Drawing framed(5, 4);
    framed.record(kSelectObject, {kBlackPen}).record(kRectangle, {0, 0, 3, 2});
    EXPECT_THAT(drawn(framed, 5, 4), ElementsAre("####.", "#rr#.", "####.", "....."));
}

TEST(EmfDrawing, WindowsHasObjectsOfItsOwn) {
    Drawing file(3, 3);
    file.record(kSelectObject, {kNullBrush}).record(kSelectObject, {kBlackPen});
    file.record(kRectangle, {0, 0, 2, 2});
    EXPECT_THAT(drawn(file, 3, 3), ElementsAre("###", "#.#", "###"));
}

TEST(EmfDrawing, ObjectsAreNamedByTheirNumbers) {
    Drawing file(3, 1);
    file.brush(7, kBlue).brush(5, kGreen).box(0, 0, 1, 1).record(kDeleteObject, {5});
    file.record(kSelectObject, {7}).box(1, 0, 1, 1).record(kSelectObject, {1}).box(2, 0, 1, 1);
    EXPECT_THAT(drawn(file, 3, 1), ElementsAre("gbr"));
}

TEST(EmfDrawing, CommentsAndUnknownRecordsAreLeftOut) {
    Drawing file(2, 1);
    file.record(kComment, Words().u32(4).add("EMF+").bytes()).record(120, "").box(0, 0, 1, 1);
    EXPECT_THAT(drawn(file, 2, 1), ElementsAre("r."));
}

#ifndef _WIN32

// Wine stretches the letters of some files and not those of this one.
TEST(EmfDrawing, TheAdvancedModeStretchesLetters) {
    const auto [left, right] = inkOf(0, 200);
    const auto [wideLeft, wideRight] = inkOf(0, 400, 2);
    EXPECT_NEAR(wideLeft, 2 * left, 4);
    EXPECT_NEAR(wideRight - wideLeft, 2 * (right - left), 5);
}

// Wine draws nothing for this record.
TEST(EmfDrawing, OneColourOfAnImageStaysAway) {
    const std::string dib = dib24(2, 1, {0xFF0000, 0x0000FF});
    Drawing file(2, 1);
    file.record(kTransparentBlt, stretchBlt(0, 0, 2, 1, kRed, 2, 1, dib));
    EXPECT_THAT(drawn(file, 2, 1), ElementsAre(".b"));
}

// Wine reads on behind these records.

TEST(EmfDrawing, RecordsWithoutAllTheirFieldsAreLeftOut) {
    Drawing file(2, 1);
    file.record(kRectangle, {0}).record(kPolygon, {0, 0, 0, 0, 0x7FFFFFFF, 1, 1});
    file.record(kPolyPolygon, {0, 0, 0, 0, 0x7FFFFFFF, 1, 1}).box(0, 0, 1, 1);
    EXPECT_THAT(drawn(file, 2, 1), ElementsAre("r."));
}

TEST(EmfDrawing, AnImageOutsideItsRecordIsLeftOut) {
    Drawing file(2, 1);
    const std::string dib = dib24(2, 1, {0xFF0000, 0x0000FF});
    Words out;
    out.u32(0).u32(0).u32(0).u32(0).u32(0).u32(0).u32(0).u32(0).u32(2).u32(1);
    out.add(imageFields(4000, dib)).u32(0).u32(0x00CC0020).u32(2).u32(1).add(dib);
    file.record(kStretchDibits, out.bytes()).box(1, 0, 1, 1);
    EXPECT_THAT(drawn(file, 2, 1), ElementsAre(".r"));
}

TEST(EmfDrawing, ARecordWithoutALengthEndsThePlaying) {
    Drawing file(2, 1);
    file.box(0, 0, 1, 1).raw(Words().u32(kSaveDC).u32(0).bytes());
    file.box(1, 0, 1, 1);
    EXPECT_THAT(drawn(file, 2, 1), ElementsAre("r."));
}

#endif

}  // namespace
}  // namespace orvane::test
