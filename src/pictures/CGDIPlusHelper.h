#pragma once

#include "frame/values/picture.h"
#include "frame/values/wstring.h"
#include "pictures/CGDIPlusGraphics.h"
#include "pictures/CGDIPlusImage.h"
#include "pictures/COffscreenPicture.h"
#include "platform/gdiplus.h"

#include <cstdint>
#include <memory>

namespace orvane {

/// A width and a height in pixels.
struct PictureSize {
    std::int32_t Width = 0;
    std::int32_t Height = 0;
};

/// Loads pictures with GDI+, which is started with the first one and shut down at the object's end.
/// Between two loads it keeps the last image, its graphics and the surface that it was drawn on.
class CGDIPlusHelper {
public:
    CGDIPlusHelper() = default;
    CGDIPlusHelper(const CGDIPlusHelper&) = delete;
    CGDIPlusHelper& operator=(const CGDIPlusHelper&) = delete;
    ~CGDIPlusHelper();

    /// The picture in a file, drawn over the system's button-face colour, as a bitmap in the
    /// screen's format. The other arguments are set when it succeeds: the size, the identifier of
    /// the file's format as an upper-case text in braces, and the file's own bits per pixel.
    ///
    /// Raises 53 when the file is not there, 0x80040000 with a text for what GDI+ refuses, and what
    /// the surface raises.
    Picture LoadPicture(WStringView fileName, PictureSize& size, WString& rawFormatCLSID,
                        std::int32_t& bitsPerPixel);

private:
    void StartGdiPlus();

    platform::GdiplusToken token_ = platform::GdiplusToken::none;
    std::unique_ptr<CGDIPlusImage> image_;
    std::unique_ptr<CGDIPlusGraphics> graphics_;
    std::unique_ptr<COffscreenPicture> offscreen_;
};

}  // namespace orvane
