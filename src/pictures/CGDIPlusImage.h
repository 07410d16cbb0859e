#pragma once

#include "frame/values/wstring.h"
#include "platform/gdiplus.h"

#include <orvane/automation.h>

#include <cstdint>

// The system's headers, which come with the one above, have a macro of this name.
#ifdef LoadImage
#undef LoadImage
#endif

namespace orvane {

/// Holds an image of GDI+, disposed of at the object's end.
class CGDIPlusImage {
public:
    CGDIPlusImage() = default;
    CGDIPlusImage(const CGDIPlusImage&) = delete;
    CGDIPlusImage& operator=(const CGDIPlusImage&) = delete;
    ~CGDIPlusImage() { FreeImage(); }

    platform::GdiplusImage Handle() const { return handle_; }
    /// Loads a file in place of the image that was held. A failure raises 0x80040000 and leaves
    /// none.
    void LoadImage(WStringView fileName);
    void FreeImage();

    /// Sizes in pixels; 0 when GDI+ refuses.
    std::int32_t Width() const;
    std::int32_t Height() const;
    /// The identifier of the file's format in its text form, with braces; "" when GDI+ refuses.
    WString RawFormatCLSID() const;
    /// The pixel format's number; 0 when GDI+ refuses.
    std::int32_t PixelFormat() const;
    /// The bits per pixel of the pixel format; 0 for one that isn't known.
    std::int32_t BPP() const;

private:
    platform::GdiplusImage handle_ = platform::GdiplusImage::none;
};

}  // namespace orvane
