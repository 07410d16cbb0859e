#include "platform/gdi32.h"
#include "platform/user32.h"

#include <gtest/gtest.h>

#include <array>

namespace orvane::platform {
namespace {

BitmapInfo infoOf(std::int32_t width, std::int32_t height, std::uint16_t bits) {
    BitmapInfo info;
    info.biWidth = width;
    info.biHeight = height;
    info.biBitCount = bits;
    return info;
}

TEST(Gdi32, AFailureAlwaysNamesAReason) {
    setLastError(kErrorSuccess);
    EXPECT_FALSE(gdi32.DeleteDC(DeviceContext{0xDEAD}));
    EXPECT_EQ(lastError(), kErrorInvalidHandle);
    setLastError(kErrorSuccess);
    EXPECT_FALSE(gdi32.DeleteObject(BitmapHandle::none));
    EXPECT_EQ(lastError(), kErrorInvalidHandle);
    setLastError(kErrorSuccess);
    EXPECT_EQ(gdi32.SelectObject(DeviceContext{0xDEAD}, BitmapHandle{0xDEAD}), BitmapHandle::none);
    EXPECT_EQ(lastError(), kErrorInvalidHandle);
    setLastError(kErrorSuccess);
    void* bits = nullptr;
    EXPECT_EQ(gdi32.CreateDIBSection(DeviceContext::none, infoOf(1, -1, 7), kDibRgbColors, bits),
              BitmapHandle::none);
    EXPECT_NE(lastError(), kErrorSuccess);
    setLastError(kErrorSuccess);
    IconFacts facts;
    EXPECT_FALSE(user32.GetIconInfo(IconHandle{0xDEAD}, facts));
    EXPECT_NE(lastError(), kErrorSuccess);
}

TEST(Gdi32, ADeviceContextsHandleIsNoBitmap) {
    const DeviceContext dc = gdi32.CreateCompatibleDC(DeviceContext::none);
    BitmapFacts facts;
    const auto number = static_cast<std::uint32_t>(dc);
    EXPECT_EQ(gdi32.GetObjectA(BitmapHandle{number}, facts), 0);
    EXPECT_EQ(lastError(), kErrorInvalidHandle);
    EXPECT_TRUE(gdi32.DeleteDC(dc));
}

TEST(Gdi32, PixelsThatAreNotThereAreNotRead) {
    const DeviceContext dc = gdi32.CreateCompatibleDC(DeviceContext::none);
    void* bits = nullptr;
    const BitmapHandle bitmap =
        gdi32.CreateDIBSection(DeviceContext::none, infoOf(4, -2, 24), kDibRgbColors, bits);
    const GdiObject former = gdi32.SelectObject(dc, bitmap);
    std::array<std::uint8_t, 24> pixels{};
    pixels.fill(0x55);
    const auto draw = [&](std::size_t size) {
        return gdi32.StretchDIBits(dc, 0, 0, 4, 2, 0, 0, 4, 2, std::span(pixels).first(size),
                                   infoOf(4, -2, 24), kDibRgbColors, kSrcCopy);
    };
    EXPECT_EQ(draw(23), 0);
    EXPECT_EQ(lastError(), kErrorInvalidParameter);
    EXPECT_EQ(*static_cast<std::uint8_t*>(bits), 0);
    EXPECT_EQ(draw(24), 2);
    EXPECT_EQ(*static_cast<std::uint8_t*>(bits), 0x55);
    EXPECT_EQ(gdi32.SelectObject(dc, former), bitmap);
    EXPECT_TRUE(gdi32.DeleteObject(bitmap));
    EXPECT_TRUE(gdi32.DeleteDC(dc));
}

}  // namespace
}  // namespace orvane::platform
