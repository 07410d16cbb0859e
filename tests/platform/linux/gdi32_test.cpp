#include "platform/gdi32.h"

#include "platform/linux/gdi32_objects.h"

#include <gtest/gtest.h>

// What device contexts do here and not on Windows.
namespace orvane::platform {
namespace {

TEST(LinuxContexts, MappingModesWithAnotherUnitAreRefused) {
    const DeviceContext dc = gdi32.CreateCompatibleDC(DeviceContext::none);
    for (const std::int32_t mode : {2, 3, 4, 5, 6, 7, 8}) {
        EXPECT_EQ(gdi32.SetMapMode(dc, mode), 0);
        EXPECT_EQ(lastError(), kErrorInvalidParameter);
    }
    EXPECT_EQ(gdi32.SetMapMode(dc, kMapModeText), kMapModeText);
    EXPECT_TRUE(gdi32.DeleteDC(dc));
}

TEST(LinuxContexts, ColoursOfAPaletteAndHatchesAreRefused) {
    const DeviceContext dc = gdi32.CreateCompatibleDC(DeviceContext::none);
    EXPECT_EQ(gdi32.SetBkColor(dc, 0x01000001), kColorInvalid);
    EXPECT_EQ(gdi32.CreateSolidBrush(0x01000001), BrushHandle::none);
    EXPECT_EQ(gdi32.CreatePen(kPenSolid, 1, 0x99000001), PenHandle::none);
    EXPECT_EQ(gdi32.CreateBrushIndirect({2, 0, 0}), BrushHandle::none);
    EXPECT_EQ(lastError(), kErrorInvalidParameter);
    EXPECT_TRUE(gdi32.DeleteDC(dc));
}

TEST(LinuxContexts, AStateOfADeletedBitmapLeavesTheOneThatIsSelected) {
    const DeviceContext dc = gdi32.CreateCompatibleDC(DeviceContext::none);
    const BitmapHandle first = addHandle(Surface::create(2, 2, PixelFormat::ofDepth(32), true));
    const BitmapHandle second = addHandle(Surface::create(3, 3, PixelFormat::ofDepth(32), true));
    gdi32.SelectObject(dc, first);
    EXPECT_EQ(gdi32.SaveDC(dc), 1);
    gdi32.SelectObject(dc, second);
    EXPECT_TRUE(gdi32.DeleteObject(first));
    EXPECT_TRUE(gdi32.RestoreDC(dc, 1));
    EXPECT_EQ(selectedSurface(dc)->width(), 3);
    EXPECT_TRUE(gdi32.DeleteDC(dc));
    EXPECT_TRUE(gdi32.DeleteObject(second));
    EXPECT_EQ(handles().kindOf(static_cast<std::uint32_t>(first)), HandleKind::none);
    EXPECT_EQ(handles().kindOf(static_cast<std::uint32_t>(second)), HandleKind::none);
}

TEST(LinuxContexts, TheScreenIsNotDrawnOn) {
    const DeviceContext screen = createScreenContext();
    const DeviceContext dc = gdi32.CreateCompatibleDC(DeviceContext::none);
    EXPECT_FALSE(gdi32.Rectangle(screen, 0, 0, 1, 1));
    EXPECT_EQ(lastError(), kErrorInvalidHandle);
    EXPECT_FALSE(gdi32.BitBlt(dc, 0, 0, 1, 1, screen, 0, 0, kSrcCopy));
    EXPECT_FALSE(gdi32.BitBlt(screen, 0, 0, 1, 1, dc, 0, 0, kSrcCopy));
    EXPECT_FALSE(gdi32.DeleteDC(screen));
    EXPECT_EQ(selectedSurface(screen), nullptr);
    EXPECT_TRUE(releaseScreenContext(screen));
    EXPECT_TRUE(gdi32.DeleteDC(dc));
}

}  // namespace
}  // namespace orvane::platform
