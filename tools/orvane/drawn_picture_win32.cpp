#include "drawn_picture.h"

#include <windows.h>

#include <ole2.h>
#include <olectl.h>

#include <algorithm>
#include <cstdint>

namespace orvane::tool {

namespace {

constexpr int kHimetricPerInch = 2540;
/// The longer side of a metafile, which has no pixels of its own.
constexpr int kMetafileSide = 480;
/// No icon is larger; what says so is refused before memory is taken.
constexpr int kMostSide = 4096;

/// A device context in memory with a bitmap of 32 bits, rows from the top.
class Drawing {
public:
    Drawing(int width, int height) : dc_(::CreateCompatibleDC(nullptr)) {
        BITMAPINFO info{};
        info.bmiHeader.biSize = sizeof(info.bmiHeader);
        info.bmiHeader.biWidth = width;
        info.bmiHeader.biHeight = -height;
        info.bmiHeader.biPlanes = 1;
        info.bmiHeader.biBitCount = 32;
        void* bits = nullptr;
        bitmap_ = ::CreateDIBSection(dc_, &info, DIB_RGB_COLORS, &bits, nullptr, 0);
        if (bitmap_ == nullptr) return;
        pixels_ = static_cast<std::uint32_t*>(bits);
        before_ = ::SelectObject(dc_, bitmap_);
    }
    Drawing(const Drawing&) = delete;
    Drawing& operator=(const Drawing&) = delete;
    ~Drawing() {
        if (before_ != nullptr) ::SelectObject(dc_, before_);
        if (bitmap_ != nullptr) ::DeleteObject(bitmap_);
        if (dc_ != nullptr) ::DeleteDC(dc_);
    }

    HDC dc() const { return dc_; }
    /// Null when there is no memory for the bitmap.
    std::uint32_t* pixels() const { return pixels_; }

private:
    HDC dc_;
    HBITMAP bitmap_ = nullptr;
    HGDIOBJ before_ = nullptr;
    std::uint32_t* pixels_ = nullptr;
};

/// The size to draw at for one in hundredths of a millimetre; nothing for an empty one.
SIZE pixelsOf(const LoadedPicture& loaded, LONG width, LONG height) {
    if (width <= 0 || height <= 0) return {0, 0};
    if (!loaded.isIcon()) {
        const LONG side = std::max(width, height);
        return {std::max(::MulDiv(width, kMetafileSide, side), 1),
                std::max(::MulDiv(height, kMetafileSide, side), 1)};
    }
    const HDC screen = ::GetDC(nullptr);
    const SIZE size{::MulDiv(width, ::GetDeviceCaps(screen, LOGPIXELSX), kHimetricPerInch),
                    ::MulDiv(height, ::GetDeviceCaps(screen, LOGPIXELSY), kHimetricPerInch)};
    ::ReleaseDC(nullptr, screen);
    return size;
}

}  // namespace

std::optional<RgbImage> drawnPicture(Library&, const LoadedPicture& loaded, Rgb ground) {
    const auto picture = loaded.picture.query<IPicture>(IID_IPicture);
    OLE_XSIZE_HIMETRIC width = 0;
    OLE_YSIZE_HIMETRIC height = 0;
    if (!picture || FAILED(picture->get_Width(&width)) || FAILED(picture->get_Height(&height))) {
        return {};
    }
    const SIZE size = pixelsOf(loaded, width, height);
    if (size.cx < 1 || size.cy < 1 || size.cx > kMostSide || size.cy > kMostSide) return {};
    const Drawing drawing(size.cx, size.cy);
    RgbImage image(static_cast<std::uint32_t>(size.cx), static_cast<std::uint32_t>(size.cy));
    if (drawing.pixels() == nullptr) return {};
    const std::uint32_t behind =
        std::uint32_t{ground.red} << 16 | std::uint32_t{ground.green} << 8 | ground.blue;
    std::fill_n(drawing.pixels(), image.pixels.size(), behind);
    // The source is measured from its bottom, upwards.
    const RECT bounds{0, 0, size.cx, size.cy};
    if (FAILED(picture->Render(drawing.dc(), 0, 0, size.cx, size.cy, 0, height, width, -height,
                               &bounds))) {
        return {};
    }
    ::GdiFlush();
    std::transform(drawing.pixels(), drawing.pixels() + image.pixels.size(), image.pixels.begin(),
                   [](std::uint32_t pixel) {
                       return Rgb{static_cast<std::uint8_t>(pixel >> 16),
                                  static_cast<std::uint8_t>(pixel >> 8),
                                  static_cast<std::uint8_t>(pixel)};
                   });
    return image;
}

}  // namespace orvane::tool
