#include "platform/gdi32.h"

#include "platform/linux/errors.h"
#include "platform/linux/gdi32_objects.h"
#include "platform/linux/gdi32_parts.h"

#include <cstdlib>
#include <limits>
#include <utility>

namespace orvane::platform {

namespace {

// What pictures are shown in: the screens of today are of one kind.
constexpr std::uint32_t kScreenBits = 32;

BitmapHandle createDIBSection(DeviceContext dc, const BitmapInfo& info, std::uint32_t usage,
                              void*& bits) {
    bits = nullptr;
    if (dc != DeviceContext::none && findObject<Context>(dc) == nullptr) {
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
    std::uint8_t* const first = surface->expose();
    const BitmapHandle bitmap = addHandle(std::move(surface));
    bits = bitmap == BitmapHandle::none ? nullptr : first;
    return bitmap;
}

BitmapHandle createCompatibleBitmap(DeviceContext dc, std::int32_t width, std::int32_t height) {
    const auto context = findObject<Context>(dc);
    if (context == nullptr) {
        return BitmapHandle::none;
    }
    const auto model = context->bitmap.object;
    auto surface = Surface::create(
        width, height, model == nullptr ? PixelFormat::ofDepth(kScreenBits) : model->format(),
        false);
    if (surface == nullptr) {
        return BitmapHandle::none;
    }
    surface->isMonochrome = model != nullptr && model->isMonochrome;
    return addHandle(std::move(surface));
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
    table.CreateCompatibleDC.bind<&createCompatibleContext>();
    table.DeleteDC.bind<&deleteContext>();
    table.SaveDC.bind<&saveContext>();
    table.RestoreDC.bind<&restoreContext>();
    table.CreateDIBSection.bind<&createDIBSection>();
    table.CreateCompatibleBitmap.bind<&createCompatibleBitmap>();
    table.CreateSolidBrush.bind<&createSolidBrush>();
    table.CreateBrushIndirect.bind<&createBrush>();
    table.CreatePen.bind<&createPen>();
    table.CreatePenIndirect.bind<&createPenIndirect>();
    table.SelectObject.bind<&selectObject>();
    table.DeleteObject.bind<&deleteObject>();
    table.GetObjectA.bind<&getObject>();
    table.GetPen.bind<&penFacts>();
    table.GetBrush.bind<&brushFacts>();
    table.SetMapMode.bind<&setMapMode>();
    table.GetBkColor.bind<&bkColor>();
    table.SetBkColor.bind<&setBkColor>();
    table.GetBkMode.bind<&bkMode>();
    table.SetBkMode.bind<&setBkMode>();
    table.GetROP2.bind<&rop2>();
    table.SetROP2.bind<&setRop2>();
    table.GetCurrentPositionEx.bind<&currentPosition>();
    table.MoveToEx.bind<&moveTo>();
    table.Rectangle.bind<&rectangle>();
    table.BitBlt.bind<&bitBlt>();
    table.StretchDIBits.bind<&stretchDIBits>();
    return table;
}
#ifndef __SANITIZE_ADDRESS__
// With the sanitizers gcc takes no address of an external function for a constant that is not null.
static_assert(allBound(boundTable()));
#endif

}  // namespace

constinit Gdi32 gdi32 = boundTable();

}  // namespace orvane::platform
