#include "platform/linux/surface.h"

#include "platform/gdi32.h"
#include "platform/linux/errors.h"
#include "platform/linux/gdi32_objects.h"
#include "platform/linux/raster.h"
#include "platform/user32.h"

#include <gtest/gtest.h>

#include <sys/resource.h>
#include <utility>
#include <vector>

// Copies share their pixels until one of them is written to: who copies a picture only to hand it
// on pays nothing.
namespace orvane::platform {
namespace {

constexpr std::uint32_t kRed = 0xFF0000;
constexpr std::uint32_t kGreen = 0x00FF00;

std::shared_ptr<Surface> filled(std::uint32_t color) {
    auto surface = Surface::create(3, 2, PixelFormat::ofDepth(32), false);
    fill(*surface, {0, 0, 3, 2}, color, kCopyColor);
    return surface;
}

std::vector<std::uint32_t> pixelsOf(const Surface& surface) {
    std::vector<std::uint32_t> pixels;
    for (std::int32_t y = 0; y < surface.height(); ++y) {
        std::vector<std::uint32_t> row(static_cast<std::size_t>(surface.width()));
        readRaw(surface.row(y), surface.format().bits, 0, row);
        pixels.insert(pixels.end(), row.begin(), row.end());
    }
    return pixels;
}

std::vector<std::uint32_t> all(std::uint32_t color) {
    return std::vector<std::uint32_t>(6, color);
}

TEST(LinuxSurfaces, ACopySharesItsPixelsUntilEitherIsWrittenTo) {
    for (const bool writesToCopy : {false, true}) {
        const auto original = filled(kRed);
        const auto copy = original->copy();
        ASSERT_NE(copy, nullptr);
        EXPECT_EQ(copy->bits(), original->bits());
        fill(writesToCopy ? *copy : *original, {0, 0, 3, 2}, kGreen, kCopyColor);
        EXPECT_NE(copy->bits(), original->bits());
        EXPECT_EQ(pixelsOf(*original), all(writesToCopy ? kRed : kGreen));
        EXPECT_EQ(pixelsOf(*copy), all(writesToCopy ? kGreen : kRed));
    }
}

TEST(LinuxSurfaces, ACopyIsLikeItsOriginal) {
    auto original = Surface::create(5, 7, PixelFormat::ofDepth(1), false);
    original->isMonochrome = true;
    const auto copy = original->copy();
    EXPECT_EQ(copy->width(), 5);
    EXPECT_EQ(copy->height(), 7);
    EXPECT_EQ(copy->stride(), original->stride());
    EXPECT_EQ(copy->isTopDown(), original->isTopDown());
    EXPECT_EQ(copy->format(), original->format());
    EXPECT_TRUE(copy->isMonochrome);
    EXPECT_EQ(copy->selections, 0u);
}

TEST(LinuxSurfaces, ACopyOutlivesItsOriginal) {
    auto original = filled(kRed);
    const auto copy = original->copy();
    const std::uint8_t* const bits = original->bits();
    original.reset();
    EXPECT_EQ(pixelsOf(*copy), all(kRed));
    copy->own();
    EXPECT_EQ(copy->bits(), bits) << "nobody shares them any more";
}

TEST(LinuxSurfaces, PixelsOfAnotherOwnerGoBackWithTheLastSurface) {
    std::vector<std::uint8_t> pixels(24);
    int released = 0;
    auto original = Surface::adopt(3, 2, PixelFormat::ofDepth(32), 12,
                                   PixelBlock(pixels.data(), 24, [&] { ++released; }));
    auto copy = original->copy();
    auto written = original->copy();
    fill(*written, {0, 0, 3, 2}, kGreen, kCopyColor);
    original.reset();
    EXPECT_EQ(released, 0);
    copy.reset();
    EXPECT_EQ(released, 1);
    EXPECT_EQ(pixelsOf(*written), all(kGreen));
}

TEST(LinuxSurfaces, WhatAHostWritesToASectionIsInNoCopy) {
    BitmapInfo info;
    info.biSize = 40;
    info.biWidth = 3;
    info.biHeight = 2;
    info.biPlanes = 1;
    info.biBitCount = 32;
    void* bits = nullptr;
    const BitmapHandle section =
        gdi32.CreateDIBSection(DeviceContext::none, info, kDibRgbColors, bits);
    ASSERT_NE(bits, nullptr);
    const BitmapHandle copy = user32.CopyImage(section, kImageBitmap, 0, 0, kCreateDibSection);
    for (int i = 0; i < 6; ++i) {
        static_cast<std::uint32_t*>(bits)[i] = kGreen;
    }
    EXPECT_EQ(pixelsOf(*findObject<Surface>(section)), all(kGreen));
    EXPECT_EQ(pixelsOf(*findObject<Surface>(copy)), all(0));
    EXPECT_TRUE(gdi32.DeleteObject(section));
    EXPECT_TRUE(gdi32.DeleteObject(copy));
}

TEST(LinuxSurfaces, ABitmapThatIsCopiedToItselfLeavesItsCopyAlone) {
    const BitmapHandle bitmap = addHandle(Surface::create(4, 1, PixelFormat::ofDepth(32), true));
    const auto surface = findObject<Surface>(bitmap);
    const std::vector<std::uint32_t> before = {1, 2, 3, 4};
    writeRaw(surface->ownRow(0), 32, 0, before);
    const BitmapHandle copy = user32.CopyImage(bitmap, kImageBitmap, 0, 0, kCreateDibSection);
    const DeviceContext dc = gdi32.CreateCompatibleDC(DeviceContext::none);
    gdi32.SelectObject(dc, bitmap);
    EXPECT_TRUE(gdi32.BitBlt(dc, 1, 0, 3, 1, dc, 0, 0, kSrcCopy));
    EXPECT_EQ(pixelsOf(*surface), (std::vector<std::uint32_t>{1, 1, 2, 3}));
    EXPECT_EQ(pixelsOf(*findObject<Surface>(copy)), before);
    EXPECT_TRUE(gdi32.DeleteDC(dc));
    EXPECT_TRUE(gdi32.DeleteObject(bitmap));
    EXPECT_TRUE(gdi32.DeleteObject(copy));
}

/// Draws on a bitmap of 64 MiB that has a copy, while the process may take no more memory; ends the
/// process with the number of the first operation that doesn't fail as it should, or with 0.
[[noreturn]] void drawWithoutMemory() {
    const BitmapHandle bitmap =
        addHandle(Surface::create(4096, 4096, PixelFormat::ofDepth(32), true));
    const BitmapHandle copy = user32.CopyImage(bitmap, kImageBitmap, 0, 0, kCreateDibSection);
    const DeviceContext dc = gdi32.CreateCompatibleDC(DeviceContext::none);
    gdi32.SelectObject(dc, bitmap);
    const rlimit none{0, 0};
    ::setrlimit(RLIMIT_AS, &none);
    const auto failed = [](bool result) { return !result && lastError() == kErrorNotEnoughMemory; };
    BitmapInfo info;
    info.biSize = 40;
    info.biWidth = info.biHeight = info.biPlanes = 1;
    info.biBitCount = 32;
    const std::vector<std::uint8_t> pixel(4);
    if (!failed(gdi32.Rectangle(dc, 0, 0, 9, 9))) std::_Exit(1);
    if (!failed(gdi32.BitBlt(dc, 0, 0, 9, 9, dc, 1, 1, kSrcCopy))) std::_Exit(2);
    if (!failed(gdi32.StretchDIBits(dc, 0, 0, 9, 9, 0, 0, 1, 1, pixel, info, kDibRgbColors,
                                    kSrcCopy) != 0)) {
        std::_Exit(3);
    }
    // Alone with its pixels it needs no memory for them.
    gdi32.DeleteObject(copy);
    std::_Exit(gdi32.Rectangle(dc, 0, 0, 9, 9) ? 0 : 4);
}

TEST(LinuxSurfaces, DrawingFailsWhenThereIsNoMemoryForPixelsOfItsOwn) {
#ifdef __SANITIZE_ADDRESS__
    GTEST_SKIP() << "the sanitizer's own memory can't be limited";
#endif
    EXPECT_EXIT(drawWithoutMemory(), testing::ExitedWithCode(0), "");
}

}  // namespace
}  // namespace orvane::platform
