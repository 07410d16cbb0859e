#include "platform/gdi32.h"
#include "platform/gdiplus.h"
#include "support/png_file.h"
#include "support/recorder.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <span>

/// GDI+ as both platforms carry it out.
namespace orvane::platform {
namespace {

constexpr std::uint32_t kGround = 0x00203040;

class GdiplusTable : public test::TempDirTest {
protected:
    GdiplusTable() { EXPECT_EQ(gdiplus.GdiplusStartup(token_, {}), GdiplusStatus::ok); }
    ~GdiplusTable() override {
        if (token_ != GdiplusToken::none) gdiplus.GdiplusShutdown(token_);
    }

    static test::PngFile redAndClear() {
        test::PngFile file;
        file.width = 3;
        file.height = 2;
        file.colour = 6;
        file.sample = [](std::uint32_t x, std::uint32_t, int channel) {
            if (channel == 3) return x == 0 ? 0 : 255;
            return channel == 0 ? 255 : 0;
        };
        return file;
    }

    GdiplusStatus load(const std::string& name, GdiplusImage& image) {
        return gdiplus.GdipLoadImageFromFile(std::u16string(name.begin(), name.end()), image);
    }

    GdiplusImage loaded() {
        GdiplusImage image{};
        EXPECT_EQ(load(dir_.write("a.png", redAndClear().bytes()), image), GdiplusStatus::ok);
        return image;
    }

    GdiplusToken token_ = GdiplusToken::none;
};

TEST_F(GdiplusTable, AnImageTellsWhatItIs) {
    const GdiplusImage image = loaded();
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t pixels = 0;
    ClassIdBytes format;
    EXPECT_EQ(gdiplus.GdipGetImageWidth(image, width), GdiplusStatus::ok);
    EXPECT_EQ(gdiplus.GdipGetImageHeight(image, height), GdiplusStatus::ok);
    EXPECT_EQ(gdiplus.GdipGetImagePixelFormat(image, pixels), GdiplusStatus::ok);
    EXPECT_EQ(gdiplus.GdipGetImageRawFormat(image, format), GdiplusStatus::ok);
    EXPECT_EQ(width, 3u);
    EXPECT_EQ(height, 2u);
    EXPECT_EQ(pixels, 0x26200Au);
    EXPECT_EQ(described(format), "af3c6bb92807d3119d7b0000f81ef32e");
    EXPECT_EQ(gdiplus.GdipDisposeImage(image), GdiplusStatus::ok);
}

TEST_F(GdiplusTable, WhatIsNoImageIsRefused) {
    GdiplusImage image{5};
    EXPECT_NE(load(dir_.write("text.txt", "no image at all"), image), GdiplusStatus::ok);
    EXPECT_EQ(image, GdiplusImage::none);
    EXPECT_NE(load(dir_.file("gone.png"), image), GdiplusStatus::ok);
    EXPECT_EQ(image, GdiplusImage::none);
}

/// Draws the image at a place of a surface of 24 bits filled with the ground's colour.
class GdiplusDrawing : public GdiplusTable {
protected:
    GdiplusDrawing() {
        BitmapInfo info;
        info.biWidth = 5;
        info.biHeight = -4;
        info.biBitCount = 32;
        void* bits = nullptr;
        bitmap_ = gdi32.CreateDIBSection(DeviceContext::none, info, kDibRgbColors, bits);
        pixels_ = std::span(static_cast<std::uint32_t*>(bits), 20);
        std::ranges::fill(pixels_, kGround);
        dc_ = gdi32.CreateCompatibleDC(DeviceContext::none);
        former_ = gdi32.SelectObject(dc_, bitmap_);
        EXPECT_EQ(gdiplus.GdipCreateFromHDC(dc_, graphics_), GdiplusStatus::ok);
    }
    ~GdiplusDrawing() override {
        EXPECT_EQ(gdiplus.GdipDeleteGraphics(graphics_), GdiplusStatus::ok);
        gdi32.SelectObject(dc_, former_);
        gdi32.DeleteDC(dc_);
        gdi32.DeleteObject(bitmap_);
    }

    std::uint32_t pixel(std::size_t x, std::size_t y) const {
        return pixels_[y * 5 + x] & 0xFFFFFF;
    }

    BitmapHandle bitmap_{};
    DeviceContext dc_{};
    decltype(gdi32.SelectObject(DeviceContext{}, BitmapHandle{})) former_{};
    std::span<std::uint32_t> pixels_;
    GdiplusGraphics graphics_{};
};

TEST_F(GdiplusDrawing, AnImageIsDrawnOverWhatIsThere) {
    const GdiplusImage image = loaded();
    EXPECT_EQ(gdiplus.GdipDrawImageRectI(graphics_, image, 1, 1, 3, 2), GdiplusStatus::ok);
    EXPECT_EQ(pixel(0, 0), kGround);
    EXPECT_EQ(pixel(1, 1), kGround) << "a transparent pixel";
    EXPECT_EQ(pixel(2, 1), 0xFF0000u);
    EXPECT_EQ(pixel(3, 2), 0xFF0000u);
    EXPECT_EQ(pixel(4, 2), kGround);
    gdiplus.GdipDisposeImage(image);
}

TEST_F(GdiplusDrawing, WhatLiesOutsideIsLeftOut) {
    const GdiplusImage image = loaded();
    EXPECT_EQ(gdiplus.GdipDrawImageRectI(graphics_, image, -2, 3, 3, 2), GdiplusStatus::ok);
    EXPECT_EQ(pixel(0, 3), 0xFF0000u);
    EXPECT_EQ(pixel(1, 3), kGround);
    gdiplus.GdipDisposeImage(image);
}

TEST_F(GdiplusDrawing, NoImageIsRefused) {
    EXPECT_EQ(gdiplus.GdipDrawImageRectI(graphics_, GdiplusImage::none, 0, 0, 3, 2),
              GdiplusStatus::invalidParameter);
}

TEST_F(GdiplusTable, WhatIsNoneIsRefused) {
    std::uint32_t value = 0;
    ClassIdBytes format;
    GdiplusGraphics graphics{};
    EXPECT_NE(gdiplus.GdipGetImageWidth(GdiplusImage::none, value), GdiplusStatus::ok);
    EXPECT_NE(gdiplus.GdipGetImageHeight(GdiplusImage::none, value), GdiplusStatus::ok);
    EXPECT_NE(gdiplus.GdipGetImagePixelFormat(GdiplusImage::none, value), GdiplusStatus::ok);
    EXPECT_NE(gdiplus.GdipGetImageRawFormat(GdiplusImage::none, format), GdiplusStatus::ok);
    EXPECT_NE(gdiplus.GdipDisposeImage(GdiplusImage::none), GdiplusStatus::ok);
    EXPECT_NE(gdiplus.GdipCreateFromHDC(DeviceContext::none, graphics), GdiplusStatus::ok);
    EXPECT_NE(gdiplus.GdipDeleteGraphics(GdiplusGraphics::none), GdiplusStatus::ok);
}

TEST(GdiplusStart, AnotherVersionIsRefused) {
    GdiplusToken token{};
    GdiplusStartupInput input;
    input.version = 77;
    EXPECT_EQ(gdiplus.GdiplusStartup(token, input), GdiplusStatus::unsupportedVersion);
    EXPECT_EQ(token, GdiplusToken::none);
}

TEST_F(GdiplusTable, AShimSeesEveryFailureAndNothingStaysOpen) {
    test::Recorder recorder(gdiplus);
    GdiplusImage image{};
    load(dir_.write("text.txt", "no image"), image);
    EXPECT_TRUE(recorder.calls().back().failed);
    image = loaded();
    EXPECT_EQ(recorder.leftOpen().size(), 1u);
    gdiplus.GdipDisposeImage(image);
    EXPECT_EQ(recorder.leftOpen(), std::vector<std::string>());
}

}  // namespace
}  // namespace orvane::platform
