#include "platform/linux/gdi32_objects.h"
#include "platform/linux/icon_drawing.h"
#include "platform/linux/picture.h"
#include "platform/linux/raster.h"

#include <new>

namespace orvane::platform {

namespace {

constexpr HRESULT kInvalidPropertyValue = hresultFrom(0x800A017C);  // CTL_E_INVALIDPROPERTYVALUE

/// A length on one scale as the same part of another, rounded.
std::int64_t scaled(std::int64_t value, std::int64_t size, std::int64_t whole) {
    const std::int64_t product = value * size;
    return (product + (product < 0 ? -whole : whole) / 2) / whole;
}

}  // namespace

HRESULT Picture::Render(HDC dc, LONG x, LONG y, LONG cx, LONG cy, OLE_XPOS_HIMETRIC xSource,
                        OLE_YPOS_HIMETRIC ySource, OLE_XSIZE_HIMETRIC cxSource,
                        OLE_YSIZE_HIMETRIC cySource, const RECT*) {
    if (cx == 0 || cy == 0 || cxSource == 0 || cySource == 0) {
        return kInvalidPropertyValue;
    }
    if (content_.type == PICTYPE_NONE) {
        return S_OK;
    }
    std::shared_ptr<Surface> picture;
    std::shared_ptr<Icon> icon;
    if (content_.type == PICTYPE_BITMAP) {
        picture = findObject<Surface>(BitmapHandle{content_.handle});
    } else if (content_.type == PICTYPE_ICON) {
        icon = findObject<Icon>(IconHandle{content_.handle});
        picture = icon == nullptr ? nullptr : icon->color;
    } else {
        return E_NOTIMPL;
    }
    const auto target =
        selectedSurface(static_cast<DeviceContext>(reinterpret_cast<std::uintptr_t>(dc)));
    if (picture == nullptr || target == nullptr) {
        return E_FAIL;
    }
    // The source is measured from its bottom, upwards.
    const std::int64_t top = std::int64_t{content_.height} - ySource;
    const Area from{scaled(xSource, picture->width(), content_.width),
                    scaled(top, picture->height(), content_.height),
                    scaled(cxSource, picture->width(), content_.width),
                    scaled(-std::int64_t{cySource}, picture->height(), content_.height)};
    const Area to{x, y, cx, cy};
    try {
        target->own();
        if (icon != nullptr) {
            drawIcon(*target, to, *icon, from);
        } else {
            transfer(*target, to, viewOf(*picture), from, kSrcCopy);
        }
        return S_OK;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

}  // namespace orvane::platform
