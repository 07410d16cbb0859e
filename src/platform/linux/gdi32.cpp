#include "platform/gdi32.h"

#include "platform/linux/errors.h"
#include "platform/linux/gdi32_objects.h"
#include "platform/linux/raster.h"

#include <cstdlib>
#include <limits>
#include <mutex>
#include <new>
#include <utility>

namespace orvane::platform {

namespace {

constexpr std::uint32_t kBlack = 0;
constexpr std::uint32_t kWhite = 0xFFFFFF;

// Guards which bitmap is selected where.
constinit std::mutex selection;
constinit BitmapHandle stockBitmap = BitmapHandle::none;

/// The bitmap of every new context: one pixel, black and white. Called with `selection` locked.
BitmapHandle stockHandle() {
    if (stockBitmap == BitmapHandle::none) {
        PixelFormat format = PixelFormat::ofDepth(1);
        format.palette = {kBlack, kWhite};
        auto surface = Surface::create(1, 1, std::move(format), false);
        if (surface == nullptr) {
            return BitmapHandle::none;
        }
        surface->isStock = true;
        surface->isMonochrome = true;
        stockBitmap = addHandle(std::move(surface));
    }
    return stockBitmap;
}

DeviceContext createCompatibleDC(DeviceContext reference) {
    if (reference != DeviceContext::none && findObject<MemoryContext>(reference) == nullptr) {
        return DeviceContext::none;
    }
    try {
        auto context = std::make_shared<MemoryContext>();
        const std::scoped_lock lock(selection);
        context->bitmap = stockHandle();
        context->surface = findObject<Surface>(context->bitmap);
        return context->surface == nullptr ? DeviceContext::none : addHandle(std::move(context));
    } catch (const std::bad_alloc&) {
        return failWith(kErrorNotEnoughMemory, DeviceContext::none);
    }
}

bool deleteDC(DeviceContext dc) {
    const std::scoped_lock lock(selection);
    const auto context = removeHandle<MemoryContext>(dc);
    if (context == nullptr) {
        return false;
    }
    context->surface->selectedIn = DeviceContext::none;
    return true;
}

BitmapHandle createDIBSection(DeviceContext dc, const BitmapInfo& info, std::uint32_t usage,
                              void*& bits) {
    bits = nullptr;
    if (dc != DeviceContext::none && findObject<MemoryContext>(dc) == nullptr) {
        return BitmapHandle::none;
    }
    if (usage != kDibRgbColors || info.biSize != 40 ||
        info.biHeight == std::numeric_limits<std::int32_t>::min()) {
        return failWith(kErrorInvalidParameter, BitmapHandle::none);
    }
    auto surface = Surface::create(info.biWidth, std::abs(info.biHeight),
                                   PixelFormat::ofHeader(info), info.biHeight < 0);
    if (surface == nullptr) {
        return BitmapHandle::none;
    }
    std::uint8_t* const first = surface->bits();
    const BitmapHandle bitmap = addHandle(std::move(surface));
    bits = bitmap == BitmapHandle::none ? nullptr : first;
    return bitmap;
}

BitmapHandle createCompatibleBitmap(DeviceContext dc, std::int32_t width, std::int32_t height) {
    const auto model = selectedSurface(dc);
    if (model == nullptr) {
        return BitmapHandle::none;
    }
    auto surface = Surface::create(width, height, model->format(), false);
    if (surface == nullptr) {
        return BitmapHandle::none;
    }
    surface->isMonochrome = model->isMonochrome;
    return addHandle(std::move(surface));
}

bool bitBlt(DeviceContext target, std::int32_t x, std::int32_t y, std::int32_t width,
            std::int32_t height, DeviceContext source, std::int32_t sourceX, std::int32_t sourceY,
            std::uint32_t rasterOperation) {
    const auto to = selectedSurface(target);
    if (to == nullptr) {
        return false;
    }
    const Area area{x, y, width, height};
    if (!usesSource(rasterOperation)) {
        fill(*to, area, rasterOperation);
        return true;
    }
    const auto from = selectedSurface(source);
    if (from == nullptr) {
        return false;
    }
    transfer(*to, area, viewOf(*from), {sourceX, sourceY, width, height}, rasterOperation);
    return true;
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

std::int32_t stretchDIBits(DeviceContext dc, std::int32_t x, std::int32_t y, std::int32_t width,
                           std::int32_t height, std::int32_t sourceX, std::int32_t sourceY,
                           std::int32_t sourceWidth, std::int32_t sourceHeight,
                           std::span<const std::uint8_t> bits, const BitmapInfo& info,
                           std::uint32_t usage, std::uint32_t rasterOperation) {
    const auto target = selectedSurface(dc);
    if (target == nullptr) {
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
    if (usesSource(rasterOperation)) {
        transfer(*target, area, source, {sourceX, top, sourceWidth, sourceHeight}, rasterOperation);
    } else {
        fill(*target, area, rasterOperation);
    }
    return source.height;
}

std::int32_t getObject(BitmapHandle bitmap, BitmapFacts& facts) {
    constexpr std::int32_t kRecordSize = 24;
    const auto surface = findObject<Surface>(bitmap);
    if (surface == nullptr) {
        return 0;
    }
    facts.width = surface->width();
    facts.height = surface->height();
    facts.widthBytes = static_cast<std::int32_t>(surface->stride());
    facts.planes = 1;
    facts.bitsPixel = static_cast<std::uint16_t>(surface->format().bits);
    return kRecordSize;
}

constexpr Gdi32 boundTable() {
    Gdi32 table;
    table.CreateCompatibleDC.bind<&createCompatibleDC>();
    table.DeleteDC.bind<&deleteDC>();
    table.CreateDIBSection.bind<&createDIBSection>();
    table.CreateCompatibleBitmap.bind<&createCompatibleBitmap>();
    table.SelectObject.bind<&selectBitmap>();
    table.BitBlt.bind<&bitBlt>();
    table.StretchDIBits.bind<&stretchDIBits>();
    table.DeleteObject.bind<&deleteBitmap>();
    table.GetObjectA.bind<&getObject>();
    return table;
}
#ifndef __SANITIZE_ADDRESS__
// With the sanitizers gcc takes no address of an external function for a constant that is not null.
static_assert(allBound(boundTable()));
#endif

}  // namespace

std::shared_ptr<Surface> selectedSurface(DeviceContext dc) {
    const std::scoped_lock lock(selection);
    const auto context = findObject<MemoryContext>(dc);
    return context == nullptr ? nullptr : context->surface;
}

BitmapHandle selectBitmap(DeviceContext dc, BitmapHandle bitmap) {
    const std::scoped_lock lock(selection);
    const auto context = findObject<MemoryContext>(dc);
    const auto surface = findObject<Surface>(bitmap);
    if (context == nullptr || surface == nullptr) {
        return BitmapHandle::none;
    }
    if (surface->selectedIn != DeviceContext::none && surface->selectedIn != dc) {
        return failWith(kErrorInvalidParameter, BitmapHandle::none);
    }
    context->surface->selectedIn = DeviceContext::none;
    surface->selectedIn = surface->isStock ? DeviceContext::none : dc;
    context->surface = surface;
    return std::exchange(context->bitmap, bitmap);
}

// The stock bitmap can't be deleted, and trying to is no failure.
bool deleteBitmap(BitmapHandle bitmap) {
    const std::scoped_lock lock(selection);
    const auto surface = findObject<Surface>(bitmap);
    if (surface == nullptr) {
        return false;
    }
    if (surface->isStock) {
        return true;
    }
    if (surface->selectedIn != DeviceContext::none) {
        return failWith(kErrorInvalidHandle, false);
    }
    return removeHandle<Surface>(bitmap) != nullptr;
}

constinit Gdi32 gdi32 = boundTable();

}  // namespace orvane::platform
