#pragma once

#include "platform/linux/surface.h"

#include <memory>

namespace orvane::platform {

/// A memory device context: what it holds is the bitmap selected in it. Pixels are not guarded:
/// like on the platform, a context is used by one thread at a time.
struct MemoryContext {
    using Handle = DeviceContext;
    static constexpr HandleKind kKind = HandleKind::deviceContext;

    std::shared_ptr<Surface> surface;
    BitmapHandle bitmap = BitmapHandle::none;
};

/// The surface that is selected in a context; null with the last error 6.
std::shared_ptr<Surface> selectedSurface(DeviceContext dc);

/// `DeleteObject`, for owners inside the platform layer.
bool deleteBitmap(BitmapHandle bitmap);

/// `SelectObject`, for the picture object.
BitmapHandle selectBitmap(DeviceContext dc, BitmapHandle bitmap);

}  // namespace orvane::platform
