#pragma once

#include "frame/values/picture.h"
#include "platform/handles.h"

#include <cstdint>

namespace orvane {

/// A drawing surface: a memory device context with a bitmap, a brush and a pen. It is made blank
/// with a colour or from a picture, painted from other pictures, and read back as a picture.
///
/// Sizes and positions are pixels. Colours are 0x00BBGGRR or any form that `nqTranslateColor`
/// takes, and are read back as plain ones. Before `Create` or `putPicture` reads give 0 (sizes -1,
/// pictures Nothing) and writes do nothing. Every failure of the platform is error 0x80040045 with
/// a description of its own, a bad argument is error 5; the source of both is the class's name.
class COffscreenPicture {
public:
    COffscreenPicture() = default;
    COffscreenPicture(const COffscreenPicture&) = delete;
    COffscreenPicture& operator=(const COffscreenPicture&) = delete;
    ~COffscreenPicture();

    /// Makes a surface of the screen's format and fills it with a colour; brush and pen have that
    /// colour, too. What was there before is destroyed in any case, and after a failure there is
    /// nothing. Raises 5 for a size below 1 and for a colour that is none.
    void Create(std::int32_t width, std::int32_t height, std::uint32_t backColor);
    /// Frees everything.
    void Destroy();

    /// An independent copy of the surface each time. Nothing when it can't be copied.
    orvane::Picture Picture() const;
    /// Makes a surface from a copy of a bitmap picture, assigned by value or by reference; brush
    /// and pen are the context's own until they are set. As `Create` otherwise; raises 5 for
    /// Nothing and for a picture that is no bitmap.
    void putPicture(const orvane::Picture& picture);

    platform::DeviceContext hDC() const { return hDC_; }
    platform::BitmapHandle hBitmap() const { return hBitmap_; }

    /// Copies a piece of a picture to a place. A width or height of -1 is the picture's own.
    void PaintPicture(const orvane::Picture& picture, std::int32_t destX, std::int32_t destY,
                      std::int32_t width, std::int32_t height, std::int32_t srcX, std::int32_t srcY,
                      std::uint32_t rasterOperation);
    /// The same from another surface; raises 5 when that isn't initialised.
    void PaintPicture2(const COffscreenPicture& source, std::int32_t destX, std::int32_t destY,
                       std::int32_t width, std::int32_t height, std::int32_t srcX,
                       std::int32_t srcY, std::uint32_t rasterOperation);

    /// -1 also when the bitmap can't be read.
    std::int32_t Width() const;
    std::int32_t Height() const;
    bool Initialized() const { return Initialized_; }

    std::uint32_t BkColor() const;
    void putBkColor(std::uint32_t color);
    std::int32_t BkMode() const;
    /// Takes 2 (opaque) only; raises 5 for every other value, the transparent mode 1 too.
    void putBkMode(std::int32_t mode);

    /// Of the pen and brush that were made here: 0 before one is set on a surface made from a
    /// picture. Setting one value keeps the others; after a failure the old pen or brush stays.
    std::uint32_t PenColor() const;
    void putPenColor(std::uint32_t color);
    std::int32_t PenWidth() const;
    void putPenWidth(std::int32_t width);
    std::int32_t PenStyle() const;
    void putPenStyle(std::int32_t style);
    std::uint32_t BrushColor() const;
    void putBrushColor(std::uint32_t color);

    /// Setting one coordinate keeps the other.
    std::int32_t CurrentX() const;
    void putCurrentX(std::int32_t x);
    std::int32_t CurrentY() const;
    void putCurrentY(std::int32_t y);
    /// The operation of pen and brush on the surface, 1 to 16.
    std::int32_t ROP2() const;
    void putROP2(std::int32_t operation);

private:
    void start(const char16_t* failure);
    void selectOrDestroy(platform::GdiObject object, const char16_t* failure);

    platform::DeviceContext hDC_ = platform::DeviceContext::none;
    platform::BitmapHandle hBitmap_ = platform::BitmapHandle::none;
    std::int32_t SavedDC_ = 0;
    bool Initialized_ = false;
    platform::BrushHandle hBrush_ = platform::BrushHandle::none;
    platform::PenHandle hPen_ = platform::PenHandle::none;
};

}  // namespace orvane
