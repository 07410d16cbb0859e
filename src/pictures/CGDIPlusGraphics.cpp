#include "pictures/CGDIPlusGraphics.h"

#include "pictures/gdiplus_status.h"

#include <utility>

namespace orvane {

using platform::GdiplusGraphics;
using platform::GdiplusStatus;

void CGDIPlusGraphics::CreateFromHDC(platform::DeviceContext dc) {
    DeleteGraphics();
    const GdiplusStatus status = platform::gdiplus.GdipCreateFromHDC(dc, handle_);
    if (status != GdiplusStatus::ok) handle_ = GdiplusGraphics::none;
    requireOk(status, u"Can't initialize graphics from device context. ");
}

void CGDIPlusGraphics::DeleteGraphics() {
    if (handle_ == GdiplusGraphics::none) return;
    platform::gdiplus.GdipDeleteGraphics(std::exchange(handle_, GdiplusGraphics::none));
}

}  // namespace orvane
