#include "platform/linux/gdi32_objects.h"
#include "platform/linux/icon_drawing.h"
#include "platform/linux/metafiles_module.h"
#include "platform/linux/picture.h"
#include "platform/linux/raster.h"

#include <algorithm>
#include <cstdint>
#include <new>

namespace orvane::platform {

namespace {

constexpr HRESULT kInvalidPropertyValue = hresultFrom(0x800A017C);  // CTL_E_INVALIDPROPERTYVALUE

/// A length on one scale as the same part of another, rounded.
std::int64_t scaled(std::int64_t value, std::int64_t size, std::int64_t whole) {
    const std::int64_t product = value * size;
    return (product + (product < 0 ? -whole : whole) / 2) / whole;
}

/// A part of a picture and where it goes.
struct Drawing {
    Area from;
    Area to;
};

/// The pixels of `surface` that lie in `area`.
Area inside(const Surface& surface, const Area& area) {
    const auto [left, right] = std::minmax({area.x, area.x + area.width});
    const auto [top, bottom] = std::minmax({area.y, area.y + area.height});
    const std::int64_t x = std::max<std::int64_t>(left, 0);
    const std::int64_t y = std::max<std::int64_t>(top, 0);
    return {x, y, std::max<std::int64_t>(std::min<std::int64_t>(right, surface.width()) - x, 0),
            std::max<std::int64_t>(std::min<std::int64_t>(bottom, surface.height()) - y, 0)};
}

/// Where the whole of a picture goes when a part of it goes to `to`: its left and width, or its top
/// and height.
bool wholeOf(std::int64_t to, std::int64_t toSize, std::int64_t from, std::int64_t fromSize,
             std::int64_t size, std::int32_t& start, std::int32_t& length) {
    const std::int64_t first = to - from * toSize / fromSize;
    const std::int64_t last = first + size * toSize / fromSize;
    if (first != static_cast<std::int32_t>(first) || last != static_cast<std::int32_t>(last) ||
        last - first != static_cast<std::int32_t>(last - first)) {
        return false;
    }
    start = static_cast<std::int32_t>(first);
    length = static_cast<std::int32_t>(last - first);
    return true;
}

/// Plays a metafile, whose size is `size`, over what the target shows. The module draws on pixels
/// of 32 bits: those of the target's part come and go.
HRESULT playMetafile(Surface& target, const Metafile& metafile, const Drawing& drawing,
                     const Area& size) {
    const OrvaneMetafileTable* const table = metafileTable();
    if (table == nullptr) {
        return E_FAIL;
    }
    const Area part = inside(target, drawing.to);
    if (part.width == 0 || part.height == 0) {
        return S_OK;
    }
    const auto pixels =
        Surface::create(static_cast<std::int32_t>(part.width),
                        static_cast<std::int32_t>(part.height), PixelFormat::ofDepth(32), true);
    if (pixels == nullptr) {
        return E_OUTOFMEMORY;
    }
    OrvaneMetafileArea area{};
    if (!wholeOf(drawing.to.x - part.x, drawing.to.width, drawing.from.x, drawing.from.width,
                 size.width, area.x, area.width) ||
        !wholeOf(drawing.to.y - part.y, drawing.to.height, drawing.from.y, drawing.from.height,
                 size.height, area.y, area.height)) {
        return E_FAIL;
    }
    const Area all{0, 0, part.width, part.height};
    transfer(*pixels, all, viewOf(target), part, kSrcCopy);
    const OrvaneCanvas canvas{static_cast<std::uint32_t>(part.width),
                              static_cast<std::uint32_t>(part.height), pixels->ownRow(0),
                              static_cast<std::ptrdiff_t>(pixels->stride())};
    const int result = table->play(metafile.bytes.data(), metafile.bytes.size(), &canvas, &area);
    if (result != ORVANE_CODEC_OK) {
        return result == ORVANE_CODEC_OUT_OF_MEMORY ? E_OUTOFMEMORY : E_FAIL;
    }
    transfer(target, part, viewOf(*pixels), all, kSrcCopy);
    return S_OK;
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
    std::shared_ptr<Metafile> metafile;
    if (content_.type == PICTYPE_BITMAP) {
        picture = findObject<Surface>(BitmapHandle{content_.handle});
    } else if (content_.type == PICTYPE_ICON) {
        icon = findObject<Icon>(IconHandle{content_.handle});
        picture = icon == nullptr ? nullptr : icon->color;
    } else {
        metafile = findObject<Metafile>(MetafileHandle{content_.handle});
    }
    const auto target =
        selectedSurface(static_cast<DeviceContext>(reinterpret_cast<std::uintptr_t>(dc)));
    if ((picture == nullptr && metafile == nullptr) || target == nullptr) {
        return E_FAIL;
    }
    // The source is measured from its bottom, upwards.
    const std::int64_t top = std::int64_t{content_.height} - ySource;
    const Area to{x, y, cx, cy};
    try {
        target->own();
        if (metafile != nullptr) {
            return playMetafile(*target, *metafile,
                                {{xSource, top, cxSource, -std::int64_t{cySource}}, to},
                                {0, 0, content_.width, content_.height});
        }
        const Area from{scaled(xSource, picture->width(), content_.width),
                        scaled(top, picture->height(), content_.height),
                        scaled(cxSource, picture->width(), content_.width),
                        scaled(-std::int64_t{cySource}, picture->height(), content_.height)};
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
