#include "platform/linux/errors.h"
#include "platform/linux/gdi32_objects.h"
#include "platform/linux/gdi32_parts.h"
#include "platform/linux/raster.h"
#include "platform/linux/rectangle.h"
#include "platform/linux/system_colors.h"

#include <cstdlib>
#include <limits>
#include <new>

namespace orvane::platform {

namespace {

/// A context that can be drawn on, with its surface; none with the last error 6 for any other.
struct Drawing {
    explicit Drawing(DeviceContext dc) : context(findObject<Context>(dc)) {
        if (context != nullptr && surface() == nullptr) {
            setLastError(kErrorInvalidHandle);
        }
    }
    explicit operator bool() const { return context != nullptr && surface() != nullptr; }
    Surface* surface() const { return context->bitmap.object.get(); }

    std::shared_ptr<Context> context;
};

/// Calls `draw`; false with the last error 8 when there was no memory for it.
template <class Draw>
bool drawn(Draw&& draw) {
    try {
        draw();
        return true;
    } catch (const std::bad_alloc&) {
        return failWith(kErrorNotEnoughMemory, false);
    }
}

/// What a call names: with a negative size the pixel at the position and those before it.
Area areaOf(std::int32_t x, std::int32_t y, std::int32_t width, std::int32_t height) {
    return {std::int64_t{x} + (width < 0 ? 1 : 0), std::int64_t{y} + (height < 0 ? 1 : 0), width,
            height};
}

/// Carries a ternary operation out. One that takes the pattern does nothing with a brush that has
/// none.
void combine(const Drawing& target, Area to, const PixelView& source, Area from,
             std::uint32_t rasterOperation, std::uint32_t sourceBackground) {
    const LogBrush& brush = target.context->brush.object->facts;
    if (brush.style == kBrushNull && usesPattern(rasterOperation)) {
        return;
    }
    const ContextAttributes& attributes = target.context->attributes;
    const OperationColors colors{pixelColor(brush.color), pixelColor(attributes.textColor),
                                 pixelColor(attributes.bkColor), sourceBackground};
    if (usesSource(rasterOperation)) {
        transfer(*target.surface(), to, source, from, rasterOperation, colors);
    } else {
        fill(*target.surface(), to, colors.pattern, withoutSource(rasterOperation));
    }
}

/// The pixels that a header describes in `bits`; a view without a format when the header is none
/// that can be read or claims more than there is.
PixelView describedPixels(std::span<const std::uint8_t> bits, const BitmapInfo& info,
                          const PixelFormat& format) {
    if (format.bits == 0 || info.biSize != 40 || info.biWidth <= 0 || info.biHeight == 0 ||
        info.biHeight == std::numeric_limits<std::int32_t>::min()) {
        return {};
    }
    const std::int32_t height = std::abs(info.biHeight);
    const std::uint64_t stride = rowStride(static_cast<std::uint32_t>(info.biWidth), format.bits);
    // A row has at most 2^33 bytes, so the product stays below 2^64.
    if (stride * static_cast<std::uint64_t>(height) > bits.size()) {
        return {};
    }
    return {bits.data(), stride, info.biWidth, height, info.biHeight < 0, &format};
}

}  // namespace

bool rectangle(DeviceContext dc, std::int32_t left, std::int32_t top, std::int32_t right,
               std::int32_t bottom) {
    const Drawing target(dc);
    if (!target) {
        return false;
    }
    return drawn([&] {
        drawRectangle(*target.surface(), *target.context, {left, top}, {right, bottom});
    });
}

bool bitBlt(DeviceContext target, std::int32_t x, std::int32_t y, std::int32_t width,
            std::int32_t height, DeviceContext source, std::int32_t sourceX, std::int32_t sourceY,
            std::uint32_t rasterOperation) {
    const Drawing to(target);
    if (!to) {
        return false;
    }
    const Area area = areaOf(x, y, width, height);
    if (!usesSource(rasterOperation)) {
        return drawn([&] { combine(to, area, {}, {}, rasterOperation, 0); });
    }
    const Drawing from(source);
    if (!from) {
        return false;
    }
    return drawn([&] {
        to.surface()->own();
        combine(to, area, viewOf(*from.surface()), areaOf(sourceX, sourceY, width, height),
                rasterOperation, pixelColor(from.context->attributes.bkColor));
    });
}

std::int32_t stretchDIBits(DeviceContext dc, std::int32_t x, std::int32_t y, std::int32_t width,
                           std::int32_t height, std::int32_t sourceX, std::int32_t sourceY,
                           std::int32_t sourceWidth, std::int32_t sourceHeight,
                           std::span<const std::uint8_t> bits, const BitmapInfo& info,
                           std::uint32_t usage, std::uint32_t rasterOperation) {
    const Drawing target(dc);
    if (!target) {
        return 0;
    }
    const PixelFormat format = PixelFormat::ofHeader(info);
    const PixelView source = describedPixels(bits, info, format);
    if (source.format == nullptr || usage != kDibRgbColors) {
        return failWith(kErrorInvalidParameter, 0);
    }
    // The rows of a bottom-up block are counted from its bottom.
    const std::int64_t top = source.topDown ? std::int64_t{sourceY}
                                            : std::int64_t{source.height} - sourceY - sourceHeight;
    const Area area{x, y, width, height};
    const bool done = drawn([&] {
        combine(target, area, source, {sourceX, top, sourceWidth, sourceHeight}, rasterOperation,
                OperationColors().sourceBackground);
    });
    return done ? source.height : 0;
}

}  // namespace orvane::platform
