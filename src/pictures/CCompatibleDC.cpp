#include "pictures/CCompatibleDC.h"

#include "frame/errors.h"
#include "platform/gdi32.h"

#include <utility>

namespace orvane {

using platform::BitmapHandle;
using platform::DeviceContext;

CCompatibleDC::CCompatibleDC() : dc_(platform::gdi32.CreateCompatibleDC(DeviceContext::none)) {
    if (dc_ == DeviceContext::none) raise(error::kInternal, u"Can't create compatible DC.");
}

CCompatibleDC::~CCompatibleDC() {
    if (!former_.isNone()) platform::gdi32.SelectObject(dc_, former_);
    platform::gdi32.DeleteDC(dc_);
}

std::unique_ptr<CCompatibleBitmap> CCompatibleDC::CreateCompatibleBitmap(std::int32_t width,
                                                                         std::int32_t height) {
    auto bitmap = std::make_unique<CCompatibleBitmap>();
    bitmap->SetHandle(platform::gdi32.CreateCompatibleBitmap(dc_, width, height));
    if (bitmap->hBitmap() == BitmapHandle::none) {
        raise(error::kInternal, u"Can't create compatible bitmap.");
    }
    return bitmap;
}

void CCompatibleDC::SelectBitmap(BitmapHandle bitmap) {
    if (!former_.isNone()) {
        platform::gdi32.SelectObject(dc_, std::exchange(former_, platform::GdiObject()));
    }
    if (bitmap == BitmapHandle::none) return;
    former_ = platform::gdi32.SelectObject(dc_, bitmap);
    if (former_.isNone()) raise(error::kInternal, u"Can't select bitmap.");
}

void CCompatibleDC::BitBlt(DeviceContext destination, std::int32_t destinationX,
                           std::int32_t destinationY, std::int32_t width, std::int32_t height,
                           std::int32_t sourceX, std::int32_t sourceY,
                           std::uint32_t rasterOperation) {
    if (!platform::gdi32.BitBlt(destination, destinationX, destinationY, width, height, dc_,
                                sourceX, sourceY, rasterOperation)) {
        // The missing apostrophe is part of the text that hosts know.
        raise(error::kInternal, u"Cant BitBlt to target DC.");
    }
}

}  // namespace orvane
