#include "platform/common/canvas.h"
#include "platform/user32.h"

#include <gtest/gtest.h>

// Contexts, what is selected in them, and their state, on every platform.
namespace orvane::platform {
namespace {

/// A memory context for each test.
class TableContexts : public testing::Test {
protected:
    TableContexts() : dc_(gdi32.CreateCompatibleDC(DeviceContext::none)) {}
    ~TableContexts() override { EXPECT_TRUE(gdi32.DeleteDC(dc_)); }

    static bool isThere(PenHandle pen) {
        LogPen facts;
        return gdi32.GetPen(pen, facts) != 0;
    }
    static bool isThere(BrushHandle brush) {
        LogBrush facts;
        return gdi32.GetBrush(brush, facts) != 0;
    }
    static bool isThere(BitmapHandle bitmap) {
        BitmapFacts facts;
        return gdi32.GetObjectA(bitmap, facts) != 0;
    }
    static BitmapHandle section() {
        void* bits = nullptr;
        return gdi32.CreateDIBSection(DeviceContext::none, infoOf(2, -2, 32), kDibRgbColors, bits);
    }

    DeviceContext dc_;
};

TEST_F(TableContexts, BeginWithThePlatformsAttributes) {
    EXPECT_EQ(gdi32.GetBkColor(dc_), 0xFFFFFFu);
    EXPECT_EQ(gdi32.GetBkMode(dc_), kBackgroundOpaque);
    EXPECT_EQ(gdi32.GetROP2(dc_), kRop2CopyPen);
    EXPECT_EQ(gdi32.SetMapMode(dc_, kMapModeText), kMapModeText);
    Point position{7, 7};
    EXPECT_TRUE(gdi32.GetCurrentPositionEx(dc_, position));
    EXPECT_EQ(position.x, 0);
    EXPECT_EQ(position.y, 0);
}

TEST_F(TableContexts, SettingAnAttributeGivesItsFormerValue) {
    EXPECT_EQ(gdi32.SetBkColor(dc_, 0x123456), 0xFFFFFFu);
    EXPECT_EQ(gdi32.SetBkColor(dc_, 0), 0x123456u);
    EXPECT_EQ(gdi32.SetBkMode(dc_, kBackgroundTransparent), kBackgroundOpaque);
    EXPECT_EQ(gdi32.SetBkMode(dc_, kBackgroundOpaque), kBackgroundTransparent);
    for (std::int32_t operation = 1; operation <= 16; ++operation) {
        EXPECT_EQ(gdi32.SetROP2(dc_, operation), operation == 1 ? kRop2CopyPen : operation - 1);
        EXPECT_EQ(gdi32.GetROP2(dc_), operation);
    }
    Point former{1, 1};
    EXPECT_TRUE(gdi32.MoveToEx(dc_, 3, -4, &former));
    EXPECT_EQ(former.x, 0);
    EXPECT_TRUE(gdi32.MoveToEx(dc_, 5, 6, nullptr));
    EXPECT_TRUE(gdi32.MoveToEx(dc_, 0, 0, &former));
    EXPECT_EQ(former.x, 5);
    EXPECT_EQ(former.y, 6);
}

TEST_F(TableContexts, RefuseValuesThatThereAreNot) {
    for (const std::int32_t operation : {-1, 0, 17}) {
        EXPECT_EQ(gdi32.SetROP2(dc_, operation), 0);
        EXPECT_EQ(lastError(), kErrorInvalidParameter);
    }
    for (const std::int32_t mode : {-1, 0, 3}) {
        EXPECT_EQ(gdi32.SetBkMode(dc_, mode), 0);
        EXPECT_EQ(lastError(), kErrorInvalidParameter);
    }
    for (const std::int32_t mode : {-1, 0, 9}) {
        EXPECT_EQ(gdi32.SetMapMode(dc_, mode), 0);
    }
}

TEST_F(TableContexts, OfNoContextNothingIsKnown) {
    constexpr DeviceContext kNone{0xDEAD};
    EXPECT_EQ(gdi32.GetBkColor(kNone), kColorInvalid);
    EXPECT_EQ(gdi32.SetBkColor(kNone, 0), kColorInvalid);
    EXPECT_EQ(gdi32.GetBkMode(kNone), 0);
    EXPECT_EQ(gdi32.SetBkMode(kNone, kBackgroundOpaque), 0);
    EXPECT_EQ(gdi32.GetROP2(kNone), 0);
    EXPECT_EQ(gdi32.SetROP2(kNone, 1), 0);
    EXPECT_EQ(gdi32.SetMapMode(kNone, kMapModeText), 0);
    Point position;
    EXPECT_FALSE(gdi32.GetCurrentPositionEx(kNone, position));
    EXPECT_FALSE(gdi32.MoveToEx(kNone, 0, 0, nullptr));
    EXPECT_EQ(gdi32.SaveDC(kNone), 0);
    EXPECT_FALSE(gdi32.RestoreDC(kNone, 1));
    EXPECT_EQ(lastError(), kErrorInvalidHandle);
}

TEST_F(TableContexts, SaveAndRestoreWhatIsSetAndSelected) {
    const PenHandle pen = gdi32.CreatePen(kPenSolid, 1, 0);
    const BrushHandle brush = gdi32.CreateSolidBrush(0);
    const BitmapHandle bitmap = section();
    EXPECT_EQ(gdi32.SaveDC(dc_), 1);
    const GdiObject ownPen = gdi32.SelectObject(dc_, pen);
    const GdiObject ownBrush = gdi32.SelectObject(dc_, brush);
    const GdiObject ownBitmap = gdi32.SelectObject(dc_, bitmap);
    gdi32.SetBkColor(dc_, 0x112233);
    gdi32.SetBkMode(dc_, kBackgroundTransparent);
    gdi32.SetROP2(dc_, 7);
    gdi32.MoveToEx(dc_, 3, 4, nullptr);
    EXPECT_TRUE(gdi32.RestoreDC(dc_, 1));
    EXPECT_EQ(gdi32.GetBkColor(dc_), 0xFFFFFFu);
    EXPECT_EQ(gdi32.GetBkMode(dc_), kBackgroundOpaque);
    EXPECT_EQ(gdi32.GetROP2(dc_), kRop2CopyPen);
    Point position{9, 9};
    EXPECT_TRUE(gdi32.GetCurrentPositionEx(dc_, position));
    EXPECT_EQ(position.x, 0);
    EXPECT_EQ(gdi32.SelectObject(dc_, pen), ownPen);
    EXPECT_EQ(gdi32.SelectObject(dc_, brush), ownBrush);
    EXPECT_EQ(gdi32.SelectObject(dc_, bitmap), ownBitmap);
    gdi32.SelectObject(dc_, ownPen);
    gdi32.SelectObject(dc_, ownBrush);
    gdi32.SelectObject(dc_, ownBitmap);
    EXPECT_TRUE(gdi32.DeleteObject(pen));
    EXPECT_TRUE(gdi32.DeleteObject(brush));
    EXPECT_TRUE(gdi32.DeleteObject(bitmap));
    EXPECT_FALSE(isThere(pen) || isThere(brush) || isThere(bitmap));
}

TEST_F(TableContexts, StatesAreCountedFromTheFirstAndFromTheLast) {
    const auto x = [this] {
        Point position;
        gdi32.GetCurrentPositionEx(dc_, position);
        return position.x;
    };
    for (std::int32_t state = 1; state <= 4; ++state) {
        gdi32.MoveToEx(dc_, state, 0, nullptr);
        EXPECT_EQ(gdi32.SaveDC(dc_), state);
    }
    EXPECT_TRUE(gdi32.RestoreDC(dc_, -1));
    EXPECT_EQ(x(), 4);
    EXPECT_TRUE(gdi32.RestoreDC(dc_, 2));
    EXPECT_EQ(x(), 2);
    EXPECT_FALSE(gdi32.RestoreDC(dc_, 2)) << "it went with the one before";
    EXPECT_FALSE(gdi32.RestoreDC(dc_, 3));
    EXPECT_FALSE(gdi32.RestoreDC(dc_, 0));
    EXPECT_FALSE(gdi32.RestoreDC(dc_, -2));
    EXPECT_EQ(x(), 2);
    EXPECT_EQ(gdi32.SaveDC(dc_), 2);
    EXPECT_TRUE(gdi32.RestoreDC(dc_, -2));
    EXPECT_EQ(x(), 1);
    EXPECT_FALSE(gdi32.RestoreDC(dc_, -1));
}

TEST_F(TableContexts, WhatIsDeletedWhileItIsSelectedGoesAfterwards) {
    const PenHandle pen = gdi32.CreatePen(kPenSolid, 1, 0);
    const BrushHandle brush = gdi32.CreateSolidBrush(0);
    const BitmapHandle bitmap = section();
    const GdiObject ownPen = gdi32.SelectObject(dc_, pen);
    const GdiObject ownBrush = gdi32.SelectObject(dc_, brush);
    const GdiObject ownBitmap = gdi32.SelectObject(dc_, bitmap);
    EXPECT_TRUE(gdi32.DeleteObject(pen));
    EXPECT_TRUE(gdi32.DeleteObject(brush));
    EXPECT_TRUE(gdi32.DeleteObject(bitmap));
    EXPECT_TRUE(isThere(pen) && isThere(brush) && isThere(bitmap));
    EXPECT_TRUE(gdi32.Rectangle(dc_, 0, 0, 2, 2));
    EXPECT_EQ(gdi32.SelectObject(dc_, ownPen), pen);
    EXPECT_EQ(gdi32.SelectObject(dc_, ownBrush), brush);
    EXPECT_EQ(gdi32.SelectObject(dc_, ownBitmap), bitmap);
    EXPECT_FALSE(isThere(pen) || isThere(brush) || isThere(bitmap));
}

TEST_F(TableContexts, LeaveWhatIsSelectedAliveAtTheirEnd) {
    const DeviceContext other = gdi32.CreateCompatibleDC(dc_);
    const PenHandle pen = gdi32.CreatePen(kPenSolid, 1, 0);
    const BrushHandle brush = gdi32.CreateSolidBrush(0);
    const BitmapHandle bitmap = section();
    gdi32.SelectObject(other, pen);
    gdi32.SelectObject(other, brush);
    gdi32.SelectObject(other, bitmap);
    EXPECT_TRUE(gdi32.DeleteDC(other));
    EXPECT_TRUE(isThere(pen) && isThere(brush) && isThere(bitmap));
    EXPECT_TRUE(gdi32.DeleteObject(pen));
    EXPECT_TRUE(gdi32.DeleteObject(brush));
    EXPECT_TRUE(gdi32.DeleteObject(bitmap));
    EXPECT_FALSE(isThere(pen) || isThere(brush) || isThere(bitmap));
}

TEST_F(TableContexts, APenServesSeveral) {
    const DeviceContext other = gdi32.CreateCompatibleDC(dc_);
    const PenHandle pen = gdi32.CreatePen(kPenSolid, 1, 0);
    const GdiObject own = gdi32.SelectObject(dc_, pen);
    EXPECT_FALSE(gdi32.SelectObject(other, pen).isNone());
    EXPECT_TRUE(gdi32.DeleteDC(other));
    EXPECT_EQ(gdi32.SelectObject(dc_, own), pen);
    EXPECT_TRUE(gdi32.DeleteObject(pen));
    EXPECT_FALSE(isThere(pen));
}

TEST_F(TableContexts, ABitmapIsSelectedAgainWhereItIs) {
    const BitmapHandle bitmap = section();
    const GdiObject own = gdi32.SelectObject(dc_, bitmap);
    EXPECT_EQ(gdi32.SelectObject(dc_, bitmap), bitmap);
    EXPECT_EQ(gdi32.SelectObject(dc_, own), bitmap);
    EXPECT_TRUE(gdi32.DeleteObject(bitmap));
    EXPECT_FALSE(isThere(bitmap));
}

TEST_F(TableContexts, SelectWhatIsThereOnly) {
    EXPECT_TRUE(gdi32.SelectObject(dc_, GdiObject()).isNone());
    EXPECT_TRUE(gdi32.SelectObject(dc_, BitmapHandle{0xDEAD}).isNone());
    const PenHandle pen = gdi32.CreatePen(kPenSolid, 1, 0);
    EXPECT_TRUE(gdi32.DeleteObject(pen));
    EXPECT_TRUE(gdi32.SelectObject(dc_, pen).isNone());
    EXPECT_FALSE(gdi32.DeleteObject(pen));
    EXPECT_EQ(lastError(), kErrorInvalidHandle);
}

TEST(TablePens, TellWhatTheyWereMadeOf) {
    for (std::uint32_t style = 0; style <= 6; ++style) {
        for (const bool indirect : {false, true}) {
            const PenHandle pen = indirect ? gdi32.CreatePenIndirect({style, {3, 77}, 0x112233})
                                           : gdi32.CreatePen(style, 3, 0x112233);
            LogPen facts;
            EXPECT_EQ(gdi32.GetPen(pen, facts), 16);
            EXPECT_EQ(facts.style, style);
            // A pen that draws nothing is the system's own.
            EXPECT_EQ(facts.width.x, style == kPenNull ? 1 : 3);
            EXPECT_EQ(facts.color, style == kPenNull ? 0 : 0x112233u);
            EXPECT_TRUE(gdi32.DeleteObject(pen));
        }
    }
}

TEST(TablePens, OfAnUnknownStyleAreSolid) {
    for (const std::uint32_t style : {7u, 8u, 99u, 0xFFFFFFFFu}) {
        const PenHandle pen = gdi32.CreatePenIndirect({style, {2, 0}, 5});
        LogPen facts;
        EXPECT_EQ(gdi32.GetPen(pen, facts), 16);
        EXPECT_EQ(facts.style, kPenSolid);
        EXPECT_EQ(facts.width.x, 2);
        EXPECT_EQ(facts.color, 5u);
        EXPECT_TRUE(gdi32.DeleteObject(pen));
    }
}

TEST(TablePens, HaveAWidthWithoutASign) {
    for (const std::int32_t width : {-7, 0, 1, 2147483647}) {
        const PenHandle pen = gdi32.CreatePen(kPenSolid, width, 0);
        LogPen facts;
        EXPECT_EQ(gdi32.GetPen(pen, facts), 16);
        EXPECT_EQ(facts.width.x, width < 0 ? -width : width);
        EXPECT_TRUE(gdi32.DeleteObject(pen));
    }
}

TEST(TableBrushes, TellWhatTheyWereMadeOf) {
    const BrushHandle solid = gdi32.CreateSolidBrush(0x112233);
    const BrushHandle same = gdi32.CreateBrushIndirect({kBrushSolid, 0x112233, 0});
    for (const BrushHandle brush : {solid, same}) {
        LogBrush facts{9, 9, 9};
        EXPECT_EQ(gdi32.GetBrush(brush, facts), 12);
        EXPECT_EQ(facts.style, kBrushSolid);
        EXPECT_EQ(facts.color, 0x112233u);
        EXPECT_TRUE(gdi32.DeleteObject(brush));
        EXPECT_EQ(gdi32.GetBrush(brush, facts), 0);
        EXPECT_EQ(lastError(), kErrorInvalidHandle);
    }
    const BrushHandle none = gdi32.CreateBrushIndirect({kBrushNull, 0x112233, 0});
    LogBrush facts;
    EXPECT_EQ(gdi32.GetBrush(none, facts), 12);
    EXPECT_EQ(facts.style, kBrushNull);
    EXPECT_TRUE(gdi32.DeleteObject(none));
}

TEST(TableBrushes, OfAStyleThatThereIsNotAreRefused) {
    for (const std::uint32_t style : {4u, 10u, 99u}) {
        EXPECT_EQ(gdi32.CreateBrushIndirect({style, 0, 0}), BrushHandle::none);
        EXPECT_EQ(lastError(), kErrorInvalidParameter);
    }
}

TEST(TableRecords, AreOfOneKindOfObject) {
    const PenHandle pen = gdi32.CreatePen(kPenSolid, 1, 0);
    const BrushHandle brush = gdi32.CreateSolidBrush(0);
    LogPen penFacts;
    LogBrush brushFacts;
    BitmapFacts bitmapFacts;
    EXPECT_EQ(gdi32.GetPen(PenHandle{GdiObject(brush).number}, penFacts), 0);
    EXPECT_EQ(gdi32.GetBrush(BrushHandle{GdiObject(pen).number}, brushFacts), 0);
    EXPECT_EQ(gdi32.GetObjectA(BitmapHandle{GdiObject(pen).number}, bitmapFacts), 0);
    EXPECT_EQ(gdi32.GetPen(PenHandle::none, penFacts), 0);
    EXPECT_EQ(gdi32.GetBrush(BrushHandle::none, brushFacts), 0);
    EXPECT_TRUE(gdi32.DeleteObject(pen));
    EXPECT_TRUE(gdi32.DeleteObject(brush));
}

TEST(TableScreen, HasTheFormatOfPicturesOnIt) {
    const WindowHandle desktop = user32.GetDesktopWindow();
    EXPECT_NE(desktop, WindowHandle::none);
    const DeviceContext screen = user32.GetDC(desktop);
    ASSERT_NE(screen, DeviceContext::none);
    const BitmapHandle bitmap = gdi32.CreateCompatibleBitmap(screen, 7, 5);
    BitmapFacts facts;
    EXPECT_EQ(gdi32.GetObjectA(bitmap, facts), 24);
    EXPECT_EQ(facts.width, 7);
    EXPECT_EQ(facts.height, 5);
    EXPECT_EQ(facts.bitsPixel, 32) << "the tests have a display of 24 bits in 32";
    const DeviceContext dc = gdi32.CreateCompatibleDC(screen);
    EXPECT_TRUE(gdi32.SelectObject(screen, bitmap).isNone()) << "a screen has no bitmap";
    EXPECT_FALSE(gdi32.SelectObject(dc, bitmap).isNone());
    EXPECT_TRUE(user32.ReleaseDC(desktop, screen));
    EXPECT_FALSE(user32.ReleaseDC(desktop, screen));
    EXPECT_EQ(lastError(), kErrorInvalidHandle);
    EXPECT_FALSE(user32.ReleaseDC(desktop, dc)) << "not the screen's";
    EXPECT_TRUE(gdi32.DeleteDC(dc));
    EXPECT_TRUE(gdi32.DeleteObject(bitmap));
}

TEST(TableScreen, NewBitmapsAreBlack) {
    const DeviceContext screen = user32.GetDC(WindowHandle::none);
    const BitmapHandle bitmap = gdi32.CreateCompatibleBitmap(screen, 2, 1);
    EXPECT_TRUE(user32.ReleaseDC(WindowHandle::none, screen));
    const Canvas canvas(infoOf(2, -1, 32));
    canvas.clear(0x55);
    const DeviceContext dc = gdi32.CreateCompatibleDC(DeviceContext::none);
    EXPECT_FALSE(gdi32.SelectObject(dc, bitmap).isNone());
    EXPECT_TRUE(gdi32.BitBlt(canvas.dc, 0, 0, 2, 1, dc, 0, 0, kSrcCopy));
    EXPECT_EQ(canvas.pixels()[1] & 0xFFFFFF, 0u);
    EXPECT_TRUE(gdi32.DeleteDC(dc));
    EXPECT_TRUE(gdi32.DeleteObject(bitmap));
}

TEST(TableScreen, BitmapsThatNobodyHasTheMemoryForAreRefused) {
    const DeviceContext screen = user32.GetDC(WindowHandle::none);
    EXPECT_EQ(gdi32.CreateCompatibleBitmap(screen, 100000, 100000), BitmapHandle::none);
    EXPECT_NE(lastError(), kErrorSuccess);
    EXPECT_EQ(gdi32.CreateCompatibleBitmap(DeviceContext::none, 1, 1), BitmapHandle::none);
    EXPECT_NE(lastError(), kErrorSuccess);
    EXPECT_TRUE(user32.ReleaseDC(WindowHandle::none, screen));
}

TEST(TableScreen, HasAColourForEachNumberOfTheScheme) {
    std::uint32_t all = 0;
    for (std::int32_t index = 0; index <= 30; ++index) {
        all |= user32.GetSysColor(index);
    }
    EXPECT_EQ(all & 0xFF000000u, 0u);
    EXPECT_NE(user32.GetSysColor(5), user32.GetSysColor(8)) << "a window and its text";
    EXPECT_EQ(user32.GetSysColor(-1), 0u);
    EXPECT_EQ(user32.GetSysColor(31), 0u);
}

TEST(TableImages, AreCopiedWithTheirDepthAndColoursAlsoWhileTheyAreSelected) {
    for (const std::uint16_t bits : std::initializer_list<std::uint16_t>{1, 4, 8, 16, 24, 32}) {
        BitmapInfo info = infoOf(3, -2, bits);
        info.bmiColors[0] = 0x102030;
        info.bmiColors[1] = 0x405060;
        info.bmiColors[5] = 0x708090;
        const Canvas canvas(info);
        canvas.clear(0x55);
        const BitmapHandle copy =
            user32.CopyImage(canvas.bitmap, kImageBitmap, 0, 0, kCreateDibSection);
        ASSERT_NE(copy, BitmapHandle::none);
        EXPECT_NE(copy, canvas.bitmap);
        BitmapFacts facts;
        EXPECT_EQ(gdi32.GetObjectA(copy, facts), 24);
        EXPECT_EQ(facts.width, 3);
        EXPECT_EQ(facts.height, 2);
        EXPECT_EQ(facts.bitsPixel, bits);
        const Canvas before(infoOf(3, -2, 24));
        const Canvas after(infoOf(3, -2, 24));
        EXPECT_TRUE(gdi32.BitBlt(before.dc, 0, 0, 3, 2, canvas.dc, 0, 0, kSrcCopy));
        canvas.clear(0);
        const DeviceContext dc = gdi32.CreateCompatibleDC(DeviceContext::none);
        EXPECT_FALSE(gdi32.SelectObject(dc, copy).isNone());
        EXPECT_TRUE(gdi32.BitBlt(after.dc, 0, 0, 3, 2, dc, 0, 0, kSrcCopy));
        EXPECT_EQ(after.stored(), before.stored()) << bits;
        EXPECT_TRUE(gdi32.DeleteDC(dc));
        EXPECT_TRUE(gdi32.DeleteObject(copy));
    }
    EXPECT_EQ(user32.CopyImage(BitmapHandle{0xDEAD}, kImageBitmap, 0, 0, kCreateDibSection),
              BitmapHandle::none);
    EXPECT_EQ(lastError(), kErrorInvalidHandle);
}

}  // namespace
}  // namespace orvane::platform
