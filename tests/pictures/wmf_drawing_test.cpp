#include "pictures/drawn_picture.h"
#include "pictures/metafile_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

// Windows metafiles as a picture object draws them. Windows itself is the reference: these tests
// pass there, too.

namespace orvane::test {
namespace {

using testing::ElementsAre;

// The functions of records.
constexpr std::uint16_t kSaveDC = 0x001E, kSetBkMode = 0x0102, kSetMapMode = 0x0103,
                        kSetRop2 = 0x0104, kSetPolyFillMode = 0x0106, kRestoreDC = 0x0127,
                        kInvertRegion = 0x012A, kPaintRegion = 0x012B, kSelectClipRegion = 0x012C,
                        kSelectObject = 0x012D, kSetTextAlign = 0x012E, kDibPatternBrush = 0x0142,
                        kDeleteObject = 0x01F0, kPatternBrush = 0x01F9, kSetBkColor = 0x0201,
                        kSetTextColor = 0x0209, kSetWindowOrg = 0x020B, kSetWindowExt = 0x020C,
                        kOffsetWindowOrg = 0x020F, kLineTo = 0x0213, kMoveTo = 0x0214,
                        kOffsetClipRgn = 0x0220, kFillRegion = 0x0228, kCreatePen = 0x02FA,
                        kCreateFont = 0x02FB, kCreateBrush = 0x02FC, kPolygon = 0x0324,
                        kPolyline = 0x0325, kScaleWindowExt = 0x0410, kExcludeClip = 0x0415,
                        kIntersectClip = 0x0416, kEllipse = 0x0418, kRectangle = 0x041B,
                        kSetPixel = 0x041F, kFrameRegion = 0x0429, kTextOut = 0x0521,
                        kPolyPolygon = 0x0538, kExtFloodFill = 0x0548, kRoundRect = 0x061C,
                        kPatBlt = 0x061D, kCreateRegion = 0x06FF, kPie = 0x081A, kBitBlt = 0x0922,
                        kDibBitBlt = 0x0940, kExtTextOut = 0x0A32, kDibStretchBlt = 0x0B41,
                        kSetDibToDevice = 0x0D33, kStretchDib = 0x0F43;

constexpr int kNoPen = 5;
constexpr int kNoBrush = 1;
constexpr int kHatched = 2;
// Colours as two words, red in the lowest byte.
constexpr int kRed[] = {0x00FF, 0};
constexpr int kGreen[] = {0xFF00, 0};
constexpr int kBlue[] = {0, 0x00FF};
constexpr int kBlack[] = {0, 0};
constexpr int kWhite[] = {0xFFFF, 0x00FF};

/// A file that begins with an object of each kind: 0 no pen, 1 a red brush, both selected.
class Drawing : public WmfFile {
public:
    Drawing(int width, int height, bool setsWindow = true) : WmfFile(width, height, setsWindow) {
        pen(kNoPen, kBlack).brush(0, kRed).select(0).select(1);
    }

    Drawing& record(std::uint16_t function, std::initializer_list<int> words = {}) {
        WmfFile::record(function, words);
        return *this;
    }
    Drawing& record(std::uint16_t function, const std::string& parameters) {
        WmfFile::record(function, parameters);
        return *this;
    }
    Drawing& pen(int style, const int (&color)[2], int width = 0) {
        record(kCreatePen, {style, width, 0, color[0], color[1]});
        return *this;
    }
    Drawing& brush(int style, const int (&color)[2], int hatch = 0) {
        record(kCreateBrush, {style, color[0], color[1], hatch});
        return *this;
    }
    Drawing& select(int index) {
        record(kSelectObject, {index});
        return *this;
    }
    Drawing& rectangle(int left, int top, int right, int bottom) {
        record(kRectangle, {bottom, right, top, left});
        return *this;
    }
    Drawing& patBlt(int x, int y, int width, int height, std::uint32_t operation = 0x00F00021) {
        record(kPatBlt, {static_cast<int>(operation & 0xFFFF), static_cast<int>(operation >> 16),
                         height, width, y, x});
        return *this;
    }
    /// A region of one band.
    Drawing& region(int left, int top, int right, int bottom) {
        record(kCreateRegion,
               {0, 6, 0, 0, 0, 1, 2, left, top, right, bottom, 2, top, bottom, left, right, 2});
        return *this;
    }
};

std::vector<std::string> drawn(const WmfFile& file, int width, int height,
                               std::uint32_t ground = 0xFFFFFF) {
    return asLetters(drawnPixels(file.bytes(), width, height, ground), width);
}

TEST(WmfDrawing, APatternFillsItsPixels) {
    EXPECT_THAT(drawn(Drawing(4, 3).patBlt(1, 1, 2, 1), 4, 3), ElementsAre("....", ".rr.", "...."));
}

TEST(WmfDrawing, AWindowStretchesOverThePicture) {
    EXPECT_THAT(drawn(Drawing(2, 2).patBlt(1, 0, 1, 1), 4, 4),
                ElementsAre("..rr", "..rr", "....", "...."));
}

TEST(WmfDrawing, WithoutAWindowUnitsAreHundredthsOfAMillimetre) {
    // Four pixels at 96 an inch are 106 hundredths of a millimetre.
    EXPECT_THAT(drawn(Drawing(4, 4, false).patBlt(53, 0, 53, 106), 4, 4),
                ElementsAre("..rr", "..rr", "..rr", "..rr"));
}

TEST(WmfDrawing, TheWindowsOriginCanBeMovedAndItsExtentScaled) {
    Drawing file(4, 2);
    file.record(kSetWindowOrg, {0, -1}).record(kOffsetWindowOrg, {0, -1});
    file.patBlt(0, 0, 1, 1);
    file.record(kScaleWindowExt, {1, 2, 1, 2});
    file.patBlt(0, 1, 4, 2);
    EXPECT_THAT(drawn(file, 4, 2), ElementsAre("..r.", ".rr."));
}

TEST(WmfDrawing, AnUpsideDownWindowTurnsThePicture) {
    Drawing file(3, 3);
    file.record(kSetWindowOrg, {3, 0}).record(kSetWindowExt, {-3, 3});
    file.patBlt(0, 3, 1, -1);
    EXPECT_THAT(drawn(file, 3, 3), ElementsAre("r..", "...", "..."));
}

TEST(WmfDrawing, ARectangleWithoutAPenIsAPixelSmaller) {
    EXPECT_THAT(drawn(Drawing(5, 4).rectangle(0, 0, 4, 4), 5, 4),
                ElementsAre("rrr..", "rrr..", "rrr..", "....."));
}

TEST(WmfDrawing, ARectangleLacksItsRightAndBottomEdge) {
    Drawing file(5, 5);
    file.pen(0, kBlack).select(2).rectangle(0, 0, 4, 4);
    EXPECT_THAT(drawn(file, 5, 5), ElementsAre("####.", "#rr#.", "#rr#.", "####.", "....."));
}

TEST(WmfDrawing, APolygonIsClosedAndFilled) {
    Drawing file(5, 5);
    file.pen(0, kBlack).select(2).record(kPolygon, {4, 0, 0, 4, 0, 4, 4, 0, 4});
    EXPECT_THAT(drawn(file, 5, 5), ElementsAre("#####", "#rrr#", "#rrr#", "#rrr#", "#####"));
}

TEST(WmfDrawing, ALineLacksItsLastPixel) {
    Drawing file(5, 3);
    file.pen(0, kBlack).select(2).record(kMoveTo, {1, 1}).record(kLineTo, {1, 4});
    EXPECT_THAT(drawn(file, 5, 3), ElementsAre(".....", ".###.", "....."));
}

TEST(WmfDrawing, LinesGoOnWhereTheLastOneEnded) {
    Drawing file(4, 4);
    file.pen(0, kBlack).select(2).record(kMoveTo, {0, 0});
    file.record(kLineTo, {0, 3}).record(kLineTo, {3, 3});
    EXPECT_THAT(drawn(file, 4, 4), ElementsAre("####", "...#", "...#", "...."));
}

TEST(WmfDrawing, AWidePenCoversItsWidth) {
    Drawing file(6, 5);
    file.pen(0, kBlack, 3).select(2).record(kPolyline, {2, -5, 2, 12, 2});
    EXPECT_THAT(drawn(file, 6, 5), ElementsAre("......", "######", "######", "######", "......"));
}

TEST(WmfDrawing, FillModesDifferWhereFiguresLieInEachOther) {
    const auto nested = [](int mode) {
        Drawing file(6, 6);
        file.record(kSetPolyFillMode, {mode});
        file.record(kPolyPolygon, {2, 4, 4, 0, 0, 6, 0, 6, 6, 0, 6, 2, 2, 4, 2, 4, 4, 2, 4});
        return drawn(file, 6, 6);
    };
    EXPECT_THAT(nested(1), ElementsAre("rrrrrr", "rrrrrr", "rr..rr", "rr..rr", "rrrrrr", "rrrrrr"));
    EXPECT_THAT(nested(2), ElementsAre("rrrrrr", "rrrrrr", "rrrrrr", "rrrrrr", "rrrrrr", "rrrrrr"));
}

TEST(WmfDrawing, AnEllipseTouchesTheEdgesOfItsBox) {
    Drawing file(24, 24);
    file.pen(0, kBlack).select(2).record(kEllipse, {20, 22, 4, 2});
    const auto rows = drawn(file, 24, 24);
    EXPECT_EQ(rows[3], std::string(24, '.'));
    EXPECT_NE(rows[4].find('#'), std::string::npos);
    EXPECT_NE(rows[19].find('#'), std::string::npos);
    EXPECT_EQ(rows[20], std::string(24, '.'));
    EXPECT_EQ(rows[11][1], '.');
    EXPECT_EQ(rows[11][2], '#');
    EXPECT_EQ(rows[11][21], '#');
    EXPECT_EQ(rows[11][22], '.');
    EXPECT_EQ(rows[11][12], 'r');
    EXPECT_EQ(rows[4][2], '.');
}

TEST(WmfDrawing, APieIsCutAgainstTheClock) {
    Drawing file(20, 20);
    // From the right to the top: the upper right quarter.
    file.record(kPie, {0, 10, 10, 20, 20, 20, 0, 0});
    const auto rows = drawn(file, 20, 20);
    EXPECT_EQ(rows[6][13], 'r');
    EXPECT_EQ(rows[6][6], '.');
    EXPECT_EQ(rows[13][6], '.');
    EXPECT_EQ(rows[13][13], '.');
}

TEST(WmfDrawing, ARoundedRectangleLacksItsCorners) {
    Drawing file(21, 21);
    file.pen(0, kBlack).select(2).record(kRoundRect, {8, 8, 21, 21, 0, 0});
    const auto rows = drawn(file, 21, 21);
    EXPECT_EQ(rows[0][0], '.');
    EXPECT_EQ(rows[20][20], '.');
    EXPECT_EQ(rows[0][10], '#');
    EXPECT_EQ(rows[20][10], '#');
    EXPECT_EQ(rows[10][0], '#');
    EXPECT_EQ(rows[10][20], '#');
    EXPECT_EQ(rows[10][10], 'r');
}

TEST(WmfDrawing, APixelIsSet) {
    Drawing file(3, 2);
    file.record(kSetPixel, {kBlue[0], kBlue[1], 1, 2});
    EXPECT_THAT(drawn(file, 3, 2), ElementsAre("...", "..b"));
}

TEST(WmfDrawing, PenOperationsCombineWithWhatIsThere) {
    const auto with = [](int rop2) {
        Drawing file(2, 2);
        file.record(kSetRop2, {rop2}).record(kPolygon, {4, 0, 0, 2, 0, 2, 2, 0, 2});
        return drawn(file, 2, 2, 0xFFFF00)[0][0];
    };
    // A red brush on yellow, of the letters that there are.
    EXPECT_EQ(with(1), '#');   // black
    EXPECT_EQ(with(2), 'b');   // neither
    EXPECT_EQ(with(3), 'g');   // target and not the pen
    EXPECT_EQ(with(4), 'c');   // not the pen
    EXPECT_EQ(with(5), '#');   // the pen and not the target
    EXPECT_EQ(with(6), 'b');   // not the target
    EXPECT_EQ(with(7), 'g');   // one of them
    EXPECT_EQ(with(8), 'c');   // not both
    EXPECT_EQ(with(9), 'r');   // both
    EXPECT_EQ(with(10), 'm');  // both or neither
    EXPECT_EQ(with(11), 'y');  // the target
    EXPECT_EQ(with(13), 'r');  // the pen
    EXPECT_EQ(with(15), 'y');  // either
    EXPECT_EQ(with(16), '.');  // white
}

TEST(WmfDrawing, PatternOperationsCombineWithWhatIsThere) {
    const auto with = [](std::uint32_t operation) {
        return drawn(Drawing(1, 1).patBlt(0, 0, 1, 1, operation), 1, 1, 0x00FFFF)[0][0];
    };
    EXPECT_EQ(with(0x005A0049), '.');  // PATINVERT: red on cyan
    EXPECT_EQ(with(0x00550009), 'r');  // DSTINVERT
    EXPECT_EQ(with(0x00000042), '#');  // BLACKNESS
    EXPECT_EQ(with(0x00FF0062), '.');  // WHITENESS
}

TEST(WmfDrawing, AHatchShowsTheBackgroundUnlessItIsTransparent) {
    const auto colors = [](int mode) {
        Drawing file(16, 16);
        file.brush(kHatched, kBlue, 4).select(2).record(kSetBkMode, {mode});
        file.record(kSetBkColor, {kGreen[0], kGreen[1]}).patBlt(0, 0, 16, 16);
        std::map<char, int> counts;
        for (const std::string& row : drawn(file, 16, 16))
            for (const char letter : row)
                ++counts[letter];
        return counts;
    };
    // A cross in each tile of eight: fifteen of its pixels.
    EXPECT_THAT(colors(2), ElementsAre(std::pair('b', 60), std::pair('g', 196)));
    EXPECT_THAT(colors(1), ElementsAre(std::pair('.', 196), std::pair('b', 60)));
}

TEST(WmfDrawing, ABrushOfAnImageRepeatsIt) {
    Drawing file(4, 2);
    file.record(kDibPatternBrush,
                Words().u16(5).u16(0).add(dib24(2, 1, {0xFF0000, 0x0000FF})).bytes());
    file.select(2).patBlt(0, 0, 4, 2);
    EXPECT_THAT(drawn(file, 4, 2), ElementsAre("rbrb", "rbrb"));
}

TEST(WmfDrawing, AnImageIsStretchedOverItsPlace) {
    const std::string image = dib24(2, 2, {0xFF0000, 0x00FF00, 0x0000FF, 0x000000});
    Drawing file(6, 4);
    file.record(kStretchDib, Words()
                                 .u32(0x00CC0020)
                                 .u16(0)
                                 .u16(2)
                                 .u16(2)
                                 .u16(0)
                                 .u16(0)
                                 .u16(4)
                                 .u16(4)
                                 .u16(0)
                                 .u16(1)
                                 .add(image)
                                 .bytes());
    EXPECT_THAT(drawn(file, 6, 4), ElementsAre(".rrgg.", ".rrgg.", ".bb##.", ".bb##."));
}

TEST(WmfDrawing, APartOfAnImageIsMeasuredFromItsBottom) {
    const std::string image = dib24(2, 2, {0xFF0000, 0x00FF00, 0x0000FF, 0x000000});
    Drawing file(2, 1);
    file.record(kStretchDib, Words()
                                 .u32(0x00CC0020)
                                 .u16(0)
                                 .u16(1)
                                 .u16(2)
                                 .u16(0)
                                 .u16(0)
                                 .u16(1)
                                 .u16(2)
                                 .u16(0)
                                 .u16(0)
                                 .add(image)
                                 .bytes());
    EXPECT_THAT(drawn(file, 2, 1), ElementsAre("b#"));
}

TEST(WmfDrawing, AMaskAndAnImageMakeASprite) {
    const std::string mask = dib24(2, 1, {0xFFFFFF, 0x000000});
    const std::string image = dib24(2, 1, {0x000000, 0x0000FF});
    const auto blit = [](std::uint32_t operation, const std::string& dib) {
        return Words().u32(operation).u16(0).u16(0).u16(1).u16(2).u16(0).u16(0).add(dib).bytes();
    };
    Drawing file(2, 1);
    file.record(kDibBitBlt, blit(0x008800C6, mask));   // SRCAND
    file.record(kDibBitBlt, blit(0x00EE0086, image));  // SRCPAINT
    EXPECT_THAT(drawn(file, 2, 1, 0xFFFF00), ElementsAre("yb"));
}

TEST(WmfDrawing, AnImageCanBeCutOutAndStretched) {
    const std::string image = dib24(3, 1, {0xFF0000, 0x00FF00, 0x0000FF});
    Drawing file(4, 1);
    file.record(kDibStretchBlt, Words()
                                    .u32(0x00CC0020)
                                    .u16(1)
                                    .u16(2)
                                    .u16(0)
                                    .u16(1)
                                    .u16(1)
                                    .u16(4)
                                    .u16(0)
                                    .u16(0)
                                    .add(image)
                                    .bytes());
    EXPECT_THAT(drawn(file, 4, 1), ElementsAre("ggbb"));
}

TEST(WmfDrawing, ABlitWithoutAnImageTakesTheBrush) {
    Drawing file(2, 1);
    // The word before the size stands where an image's would.
    file.record(kDibBitBlt, {0x0021, 0x00F0, 0, 0, 0, 1, 1, 0, 1});
    EXPECT_THAT(drawn(file, 2, 1), ElementsAre(".r"));
}

TEST(WmfDrawing, AnImageForTheDeviceKeepsItsSize) {
    const std::string image = dib24(2, 1, {0xFF0000, 0x0000FF});
    Drawing file(2, 1);
    file.record(
        kSetDibToDevice,
        Words().u16(0).u16(1).u16(0).u16(0).u16(0).u16(1).u16(2).u16(0).u16(0).add(image).bytes());
    EXPECT_THAT(drawn(file, 6, 2), ElementsAre("rb....", "......"));
}

TEST(WmfDrawing, ClippingCutsWhatIsDrawn) {
    Drawing file(4, 4);
    file.record(kIntersectClip, {3, 3, 1, 1}).record(kExcludeClip, {2, 2, 1, 1});
    file.patBlt(0, 0, 4, 4);
    EXPECT_THAT(drawn(file, 4, 4), ElementsAre("....", "..r.", ".rr.", "...."));
}

TEST(WmfDrawing, TheClippingMovesWithItsRecord) {
    Drawing file(4, 1);
    file.record(kIntersectClip, {1, 2, 0, 0}).record(kOffsetClipRgn, {0, 2});
    file.patBlt(0, 0, 4, 1);
    EXPECT_THAT(drawn(file, 4, 1), ElementsAre("..rr"));
}

TEST(WmfDrawing, RegionsAreFilledFramedInvertedAndClippedTo) {
    Drawing file(8, 4);
    file.region(0, 0, 4, 4).brush(0, kBlue);  // 2 and 3
    file.record(kFillRegion, {3, 2});
    file.record(kFrameRegion, {1, 1, 1, 2});
    file.region(4, 0, 6, 4).record(kInvertRegion, {4});
    file.region(6, 0, 8, 2).record(kPaintRegion, {5});
    EXPECT_THAT(drawn(file, 8, 4), ElementsAre("rrrr##rr", "rbbr##rr", "rbbr##..", "rrrr##.."));
    Drawing clipped(4, 2);
    clipped.region(1, 0, 3, 1).record(kSelectClipRegion, {2}).patBlt(0, 0, 4, 2);
    EXPECT_THAT(drawn(clipped, 4, 2), ElementsAre(".rr.", "...."));
}

TEST(WmfDrawing, AStateComesBack) {
    Drawing file(4, 1);
    file.record(kSaveDC).brush(0, kBlue).select(2).patBlt(0, 0, 1, 1);
    file.record(kIntersectClip, {1, 1, 0, 0}).record(kRestoreDC, {-1});
    file.patBlt(2, 0, 1, 1);
    EXPECT_THAT(drawn(file, 4, 1), ElementsAre("b.r."));
}

TEST(WmfDrawing, StatesHaveNumbers) {
    Drawing file(3, 1);
    file.record(kSaveDC).brush(0, kBlue).select(2).record(kSaveDC).brush(0, kGreen).select(3);
    file.record(kRestoreDC, {1}).patBlt(0, 0, 1, 1);
    // The second state went with the first one.
    file.select(3).record(kRestoreDC, {-1}).patBlt(1, 0, 1, 1);
    EXPECT_THAT(drawn(file, 3, 1), ElementsAre("rg."));
}

TEST(WmfDrawing, AnObjectTakesTheFirstFreePlace) {
    Drawing file(2, 1);
    file.brush(0, kBlue).record(kDeleteObject, {0}).brush(0, kGreen);
    file.select(0).patBlt(0, 0, 1, 1).select(2).patBlt(1, 0, 1, 1);
    EXPECT_THAT(drawn(file, 2, 1), ElementsAre("gb"));
}

TEST(WmfDrawing, ASelectedObjectThatIsDeletedStays) {
    Drawing file(1, 1);
    file.brush(0, kBlue).select(2).record(kDeleteObject, {2}).patBlt(0, 0, 1, 1);
    EXPECT_THAT(drawn(file, 1, 1), ElementsAre("b"));
}

TEST(WmfDrawing, WithoutABrushNothingIsFilled) {
    Drawing file(3, 3);
    file.pen(0, kBlack).brush(kNoBrush, kBlack).select(2).select(3).rectangle(0, 0, 3, 3);
    EXPECT_THAT(drawn(file, 3, 3), ElementsAre("###", "#.#", "###"));
}

TEST(WmfDrawing, AFloodGoesAsFarAsItsColour) {
    Drawing file(5, 3);
    file.brush(0, kBlue).select(2).patBlt(2, 0, 1, 3).select(1);
    file.record(kExtFloodFill, {1, kWhite[0], kWhite[1], 1, 0});
    EXPECT_THAT(drawn(file, 5, 3), ElementsAre("rrb..", "rrb..", "rrb.."));
}

TEST(WmfDrawing, AFloodGoesUntilAColour) {
    Drawing file(5, 1);
    file.brush(0, kBlue).select(2).patBlt(1, 0, 1, 1).brush(0, kGreen).select(3);
    file.patBlt(3, 0, 1, 1).select(1);
    file.record(kExtFloodFill, {0, kGreen[0], kGreen[1], 0, 0});
    EXPECT_THAT(drawn(file, 5, 1), ElementsAre("rrrg."));
}

/// Columns in which letters have left something.
std::pair<int, int> inkOf(const WmfFile& file, int width, int height) {
    int first = width;
    int last = -1;
    for (const std::string& row : drawn(file, width, height)) {
        for (int x = 0; x < width; ++x) {
            if (row[static_cast<std::size_t>(x)] == '.') continue;
            first = std::min(first, x);
            last = std::max(last, x);
        }
    }
    return {first, last};
}

Drawing textFile(int align, int width = 200) {
    Drawing file(width, 40);
    Words font;
    font.u16(-24).u16(0).u16(0).u16(0).u16(400).u8(0).u8(0).u8(0).u8(204).u8(0).u8(0).u8(0).u8(
        0x22);
    file.record(kCreateFont, font.add(std::string("Arial\0", 6)).bytes()).select(2);
    file.record(kSetBkMode, {1}).record(kSetTextAlign, {align});
    return file;
}

std::string textOut(int x, int y, const std::string& text) {
    return Words().u16(static_cast<int>(text.size())).add(text).padTo(2).u16(y).u16(x).bytes();
}

TEST(WmfDrawing, TextStandsWhereItIsAligned) {
    const auto ink = [](int align) {
        Drawing file = textFile(align);
        return inkOf(file.record(kTextOut, textOut(100, 4, "HHH")), 200, 40);
    };
    const auto [left, right] = ink(0);
    EXPECT_GE(left, 100);
    EXPECT_GT(right, left + 30);
    const auto rightAligned = ink(2);
    EXPECT_LE(rightAligned.second, 100);
    EXPECT_NEAR(rightAligned.second - rightAligned.first, right - left, 2);
    const auto centred = ink(6);
    EXPECT_NEAR((centred.first + centred.second) / 2.0, 100, 2);
}

TEST(WmfDrawing, DistancesMoveTheLettersApart) {
    Drawing close = textFile(0);
    Drawing wide = textFile(0);
    close.record(kExtTextOut,
                 Words().u16(4).u16(0).u16(2).u16(0).add("II").u16(20).u16(20).bytes());
    wide.record(kExtTextOut, Words().u16(4).u16(0).u16(2).u16(0).add("II").u16(90).u16(90).bytes());
    const auto [closeLeft, closeRight] = inkOf(close, 200, 40);
    const auto [wideLeft, wideRight] = inkOf(wide, 200, 40);
    EXPECT_EQ(closeLeft, wideLeft);
    EXPECT_NEAR(wideRight - closeRight, 70, 1);
}

TEST(WmfDrawing, TextCanBringItsGround) {
    Drawing file = textFile(0);
    file.record(kSetBkColor, {kGreen[0], kGreen[1]});
    file.record(kExtTextOut, {0, 0, 0, 2, 10, 5, 20, 15});
    const auto rows = drawn(file, 200, 40);
    EXPECT_EQ(rows[5].substr(9, 12), ".gggggggggg.");
    EXPECT_EQ(rows[4], std::string(200, '.'));
    EXPECT_EQ(rows[14].substr(9, 12), ".gggggggggg.");
    EXPECT_EQ(rows[15], std::string(200, '.'));
}

TEST(WmfDrawing, TextCanBeCutToABox) {
    Drawing file = textFile(0);
    const std::string text = "HHHHHHHH";
    file.record(
        kExtTextOut,
        Words().u16(0).u16(0).u16(8).u16(4).u16(10).u16(0).u16(40).u16(40).add(text).bytes());
    const auto [left, right] = inkOf(file, 200, 40);
    EXPECT_GE(left, 10);
    EXPECT_LT(right, 40);
    EXPECT_GT(right, 30);
}

TEST(WmfDrawing, LettersKeepTheirShapeInAWindowThatIsStretchedOneWay) {
    Drawing file = textFile(0, 100);
    file.record(kTextOut, textOut(20, 4, "H"));
    const auto [left, right] = inkOf(file, 100, 40);
    const auto [wideLeft, wideRight] = inkOf(file, 200, 40);
    EXPECT_NEAR(wideLeft, 2 * left, 4);
    EXPECT_NEAR(wideRight - wideLeft, right - left, 1);
}

TEST(WmfDrawing, TextIsReadInTheCodePageOfItsFont) {
    // 0xC8 is a Cyrillic letter in the font's character set, as wide as any other capital letter.
    Drawing file = textFile(0);
    const auto [left, right] = inkOf(file.record(kTextOut, textOut(50, 4, "\xC8")), 200, 40);
    EXPECT_GE(left, 50);
    EXPECT_GT(right - left, 8);
    EXPECT_LT(right - left, 30);
}

TEST(WmfDrawing, LettersOfAnySizeLeaveTheRestOfThePictureAlone) {
    for (const int height : {-32767, -1, 0, 1, 32767}) {
        Drawing file(2, 1);
        Words font;
        font.u16(height).u16(0).u16(0).u16(0).u16(400).u32(0).u32(0).add("Arial");
        file.record(kCreateFont, font.bytes()).select(2);
        // A unit is five hundred pixels while the letters are drawn.
        file.record(kSaveDC).record(kSetWindowExt, {1, 1}).record(kTextOut, textOut(0, 0, "H"));
        file.record(kRestoreDC, {-1}).patBlt(0, 0, 2, 1);
        EXPECT_THAT(drawn(file, 1000, 1)[0], testing::StrEq(std::string(1000, 'r'))) << height;
    }
}

TEST(WmfDrawing, LongAndShortFontsDiffer) {
    Drawing file = textFile(0);
    const auto rows = drawn(file.record(kTextOut, textOut(20, 4, "H")), 200, 40);
    int count = 0;
    for (const std::string& row : rows)
        count += row == std::string(200, '.') ? 0 : 1;
    // A capital letter is some seven tenths of the font's 24 pixels.
    EXPECT_GE(count, 15);
    EXPECT_LE(count, 20);
}

TEST(WmfDrawing, UnknownAndShortRecordsAreLeftOut) {
    Drawing file(2, 1);
    file.record(0x7777, {1, 2, 3}).record(kRectangle, {1}).patBlt(0, 0, 1, 1);
    EXPECT_THAT(drawn(file, 2, 1), ElementsAre("r."));
}

TEST(WmfDrawing, MetricModesMeasureFromBelow) {
    Drawing file(96, 96);
    // Thousandths of an inch, y upwards; the viewport's origin is the picture's.
    file.record(kSetMapMode, {5}).record(kSetWindowOrg, {0, 0});
    file.patBlt(0, 0, 500, -250);
    const auto rows = drawn(file, 96, 96);
    EXPECT_EQ(rows[0], std::string(48, 'r') + std::string(48, '.'));
    EXPECT_EQ(rows[23], std::string(48, 'r') + std::string(48, '.'));
    EXPECT_EQ(rows[24], std::string(96, '.'));
}

#ifndef _WIN32

// Wine leaves the next two records out, or reads them as they were before Windows 3.

TEST(WmfDrawing, ABrushOfABitmapTakesTheTextAndBackgroundColour) {
    Drawing file(16, 1);
    Words bitmap;
    bitmap.u16(0).u16(8).u16(8).u16(2).u8(1).u8(1).u32(0);
    for (int i = 0; i < 9; ++i)
        bitmap.u16(0);
    for (int y = 0; y < 8; ++y)
        bitmap.u8(0xF0).u8(0);
    file.record(kSetTextColor, {kBlue[0], kBlue[1]}).record(kSetBkColor, {kGreen[0], kGreen[1]});
    file.record(kPatternBrush, bitmap.bytes()).select(2).patBlt(0, 0, 16, 1);
    EXPECT_THAT(drawn(file, 16, 1), ElementsAre("ggggbbbbggggbbbb"));
}

TEST(WmfDrawing, AnOldBitmapTakesTheTextAndBackgroundColour) {
    Drawing file(4, 1);
    file.record(kSetTextColor, {kRed[0], kRed[1]}).record(kSetBkColor, {kBlue[0], kBlue[1]});
    file.record(kBitBlt, Words()
                             .u32(0x00CC0020)
                             .u16(0)
                             .u16(0)
                             .u16(1)
                             .u16(4)
                             .u16(0)
                             .u16(0)
                             .u16(0)
                             .u16(4)
                             .u16(1)
                             .u16(2)
                             .u8(1)
                             .u8(1)
                             .u8(0x50)
                             .u8(0)
                             .bytes());
    EXPECT_THAT(drawn(file, 4, 1), ElementsAre("rbrb"));
}

// Wine looks for the brush in front of the region only.
TEST(WmfDrawing, TheRegionMayStandInFrontOfTheBrush) {
    Drawing file(4, 4);
    file.region(0, 0, 4, 4).brush(0, kBlue);  // 2 and 3
    file.record(kFillRegion, {2, 3}).record(kFrameRegion, {2, 1, 1, 1});
    EXPECT_THAT(drawn(file, 4, 4), ElementsAre("rrrr", "rbbr", "rbbr", "rrrr"));
}

// Wine reads on behind the record.
TEST(WmfDrawing, APolygonWithoutAllItsPointsIsLeftOut) {
    Drawing file(2, 1);
    file.record(kPolygon, {200, 0, 0, 2, 0}).patBlt(0, 0, 1, 1);
    EXPECT_THAT(drawn(file, 2, 1), ElementsAre("r."));
}

#endif

}  // namespace
}  // namespace orvane::test
