#include "pictures/CGDIPlusHelper.h"

#include "frame/errors.h"
#include "frame/values/text.h"
#include "pictures/gdiplus_status.h"
#include "support/file_names.h"
#include "support/text.h"

#include <utility>

namespace orvane {

using platform::GdiplusStatus;
using platform::GdiplusToken;

namespace {

/// The system colour of button faces, as a colour value of the host's runtime.
constexpr std::uint32_t kButtonFace = 0x8000000F;

template <class Part>
Part& made(std::unique_ptr<Part>& part) {
    if (!part) part = std::make_unique<Part>();
    return *part;
}

}  // namespace

// What GDI+ has handed out goes back while it still runs.
CGDIPlusHelper::~CGDIPlusHelper() {
    graphics_.reset();
    image_.reset();
    offscreen_.reset();
    if (token_ != GdiplusToken::none) {
        platform::gdiplus.GdiplusShutdown(std::exchange(token_, GdiplusToken::none));
    }
}

void CGDIPlusHelper::StartGdiPlus() {
    if (token_ != GdiplusToken::none) return;
    const GdiplusStatus status =
        platform::gdiplus.GdiplusStartup(token_, platform::GdiplusStartupInput{});
    if (status != GdiplusStatus::ok) token_ = GdiplusToken::none;
    requireOk(status, u"Can't initialize GDI+ ");
}

Picture CGDIPlusHelper::LoadPicture(WStringView fileName, PictureSize& size,
                                    WString& rawFormatCLSID, std::int32_t& bitsPerPixel) {
    if (!nqIsFileExist(fileName)) {
        raise(error::kFileNotFound, u"File not found: '" + WString(fileName) + u"'");
    }
    StartGdiPlus();
    CGDIPlusImage& image = made(image_);
    image.LoadImage(fileName);
    const PictureSize found{image.Width(), image.Height()};
    COffscreenPicture& offscreen = made(offscreen_);
    offscreen.Create(found.Width, found.Height, kButtonFace);
    CGDIPlusGraphics& graphics = made(graphics_);
    graphics.CreateFromHDC(offscreen.hDC());
    requireOk(platform::gdiplus.GdipDrawImageRectI(graphics.Handle(), image.Handle(), 0, 0,
                                                   found.Width, found.Height),
              u"Can't draw image. ");
    Picture picture = offscreen.Picture();
    size = found;
    rawFormatCLSID = nqTrimEx(uCase(image.RawFormatCLSID()));
    bitsPerPixel = image.BPP();
    return picture;
}

}  // namespace orvane
