#pragma once

#include "platform/gdiplus.h"

namespace orvane {

/// Holds a graphics object of GDI+, deleted at the object's end.
class CGDIPlusGraphics {
public:
    CGDIPlusGraphics() = default;
    CGDIPlusGraphics(const CGDIPlusGraphics&) = delete;
    CGDIPlusGraphics& operator=(const CGDIPlusGraphics&) = delete;
    ~CGDIPlusGraphics() { DeleteGraphics(); }

    platform::GdiplusGraphics Handle() const { return handle_; }
    /// Graphics on a device context in place of those that were held. A failure raises 0x80040000
    /// and leaves none.
    void CreateFromHDC(platform::DeviceContext dc);
    void DeleteGraphics();

private:
    platform::GdiplusGraphics handle_ = platform::GdiplusGraphics::none;
};

}  // namespace orvane
