#include "pictures/drawn_picture.h"

#include "platform/gdi32.h"
#include "platform/host_runtime.h"

#include "orvane/automation.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace orvane::test {

namespace {

using platform::gdi32;

/// A device context with pixels of 32 bits, rows from the top.
class Canvas {
public:
    Canvas(int width, int height)
        : dc_(gdi32.CreateCompatibleDC(platform::DeviceContext::none)), size_(width * height) {
        platform::BitmapInfo info;
        info.biWidth = width;
        info.biHeight = -height;
        info.biBitCount = 32;
        void* bits = nullptr;
        bitmap_ = gdi32.CreateDIBSection(dc_, info, platform::kDibRgbColors, bits);
        pixels_ = static_cast<std::uint32_t*>(bits);
        former_ = gdi32.SelectObject(dc_, bitmap_);
    }
    Canvas(const Canvas&) = delete;
    Canvas& operator=(const Canvas&) = delete;
    ~Canvas() {
        gdi32.SelectObject(dc_, former_);
        EXPECT_TRUE(gdi32.DeleteObject(bitmap_));
        EXPECT_TRUE(gdi32.DeleteDC(dc_));
    }

    HDC dc() const {
        return reinterpret_cast<HDC>(std::uintptr_t{static_cast<std::uint32_t>(dc_)});
    }
    std::uint32_t* begin() const { return pixels_; }
    std::uint32_t* end() const { return pixels_ + size_; }

private:
    platform::DeviceContext dc_;
    platform::BitmapHandle bitmap_ = platform::BitmapHandle::none;
    platform::GdiObject former_;
    std::uint32_t* pixels_ = nullptr;
    std::ptrdiff_t size_;
};

void render(IPicture& picture, const Canvas& canvas, int width, int height) {
    OLE_XSIZE_HIMETRIC wide = 0;
    OLE_YSIZE_HIMETRIC high = 0;
    ASSERT_EQ(picture.get_Width(&wide), S_OK);
    ASSERT_EQ(picture.get_Height(&high), S_OK);
    // The source is measured from its bottom, upwards.
    ASSERT_EQ(picture.Render(canvas.dc(), 0, 0, width, height, 0, high, wide, -high, nullptr),
              S_OK);
}

}  // namespace

std::vector<std::uint32_t> drawnPixels(const std::string& file, int width, int height,
                                       std::uint32_t ground) {
    const TempDir folder;
    IPictureDisp* loaded = nullptr;
    EXPECT_EQ(platform::hostRuntime.LoadPicture(folder.write("picture", file), loaded), 0);
    if (loaded == nullptr) return {};
    void* found = nullptr;
    EXPECT_EQ(loaded->QueryInterface(IID_IPicture, &found), S_OK);
    auto* const picture = static_cast<IPicture*>(found);
    const Canvas canvas(width, height);
    std::fill(canvas.begin(), canvas.end(), ground);
    render(*picture, canvas, width, height);
    picture->Release();
    loaded->Release();
    std::vector<std::uint32_t> pixels(canvas.begin(), canvas.end());
    for (std::uint32_t& pixel : pixels)
        pixel &= 0xFFFFFF;
    return pixels;
}

std::vector<std::string> asLetters(const std::vector<std::uint32_t>& pixels, int width) {
    std::vector<std::string> rows;
    for (std::size_t at = 0; at + static_cast<std::size_t>(width) <= pixels.size();
         at += static_cast<std::size_t>(width)) {
        std::string row;
        for (int x = 0; x < width; ++x) {
            const auto letter = kLetters.find(pixels[at + static_cast<std::size_t>(x)]);
            row += letter == kLetters.end() ? '?' : letter->second;
        }
        rows.push_back(row);
    }
    return rows;
}

}  // namespace orvane::test
