#include "platform/linux/gdi32_objects.h"
#include "platform/linux/icons.h"
#include "platform/linux/picture.h"
#include "platform/linux/raster.h"

#include <new>

namespace orvane::platform {

namespace {

constexpr HRESULT kInvalidPropertyValue = hresultFrom(0x800A017C);  // CTL_E_INVALIDPROPERTYVALUE
constexpr std::uint32_t kSrcAnd = 0x008800C6;
constexpr std::uint32_t kSrcInvert = 0x00660046;

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
    std::shared_ptr<Surface> mask;
    if (content_.type == PICTYPE_BITMAP) {
        picture = findObject<Surface>(BitmapHandle{content_.handle});
    } else if (content_.type == PICTYPE_ICON) {
        const auto icon = findObject<Icon>(IconHandle{content_.handle});
        picture = icon == nullptr ? nullptr : icon->color;
        mask = icon == nullptr ? nullptr : icon->mask;
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
        if (mask != nullptr) {
            transfer(*target, to, viewOf(*mask), from, kSrcAnd);
        }
        transfer(*target, to, viewOf(*picture), from, mask == nullptr ? kSrcCopy : kSrcInvert);
        return S_OK;
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    }
}

}  // namespace orvane::platform
