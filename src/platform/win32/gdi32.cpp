#include "platform/gdi32.h"

#include "platform/win32/system.h"

#include <algorithm>

namespace orvane::platform {

namespace win32 {

namespace {

static_assert(sizeof(BITMAPINFOHEADER) == 40 && sizeof(BITMAP) == 24);
static_assert(sizeof(LOGPEN) == sizeof(LogPen) && sizeof(LOGBRUSH) == sizeof(LogBrush));
static_assert(sizeof(POINT) == sizeof(Point));

HDC systemContext(DeviceContext dc) {
    return systemHandle<HDC>(dc);
}

LOGPEN systemPen(const LogPen& pen) {
    return {pen.style, {pen.width.x, pen.width.y}, pen.color};
}

LOGBRUSH systemBrush(const LogBrush& brush) {
    return {brush.style, brush.color, brush.hatch};
}

/// Our record has the system's layout, with all 256 entries of the colour table.
const BITMAPINFO* systemInfo(const BitmapInfo& info) {
    return reinterpret_cast<const BITMAPINFO*>(&info);
}

DeviceContext createCompatibleDc(DeviceContext reference) {
    return orError(kErrorNotEnoughMemory, DeviceContext::none, [reference] {
        return ownHandle<DeviceContext>(::CreateCompatibleDC(systemContext(reference)));
    });
}

bool deleteDc(DeviceContext dc) {
    return orError(kErrorInvalidHandle, false, [dc] { return ::DeleteDC(systemContext(dc)) != 0; });
}

std::int32_t saveDc(DeviceContext dc) {
    return orError(kErrorInvalidHandle, 0, [dc] { return ::SaveDC(systemContext(dc)); });
}

bool restoreDc(DeviceContext dc, std::int32_t state) {
    return orError(kErrorInvalidParameter, false,
                   [=] { return ::RestoreDC(systemContext(dc), state) != 0; });
}

BitmapHandle createDibSection(DeviceContext dc, const BitmapInfo& info, std::uint32_t usage,
                              void*& bits) {
    return orError(kErrorNotEnoughMemory, BitmapHandle::none, [&] {
        return ownHandle<BitmapHandle>(
            ::CreateDIBSection(systemContext(dc), systemInfo(info), usage, &bits, nullptr, 0));
    });
}

BitmapHandle createCompatibleBitmap(DeviceContext dc, std::int32_t width, std::int32_t height) {
    return orError(kErrorNotEnoughMemory, BitmapHandle::none, [=] {
        return ownHandle<BitmapHandle>(::CreateCompatibleBitmap(systemContext(dc), width, height));
    });
}

BrushHandle createSolidBrush(std::uint32_t color) {
    return orError(kErrorNotEnoughMemory, BrushHandle::none,
                   [=] { return ownHandle<BrushHandle>(::CreateSolidBrush(color)); });
}

BrushHandle createBrushIndirect(const LogBrush& brush) {
    const LOGBRUSH record = systemBrush(brush);
    return orError(kErrorInvalidParameter, BrushHandle::none,
                   [&] { return ownHandle<BrushHandle>(::CreateBrushIndirect(&record)); });
}

PenHandle createPen(std::uint32_t style, std::int32_t width, std::uint32_t color) {
    return orError(kErrorNotEnoughMemory, PenHandle::none, [=] {
        return ownHandle<PenHandle>(::CreatePen(static_cast<int>(style), width, color));
    });
}

PenHandle createPenIndirect(const LogPen& pen) {
    const LOGPEN record = systemPen(pen);
    return orError(kErrorNotEnoughMemory, PenHandle::none,
                   [&] { return ownHandle<PenHandle>(::CreatePenIndirect(&record)); });
}

GdiObject selectObject(DeviceContext dc, GdiObject object) {
    return orError(kErrorInvalidHandle, GdiObject(), [=] {
        return ownHandle<BitmapHandle>(::SelectObject(systemContext(dc), systemHandle(object)));
    });
}

bool deleteObject(GdiObject object) {
    return orError(kErrorInvalidHandle, false,
                   [object] { return ::DeleteObject(systemHandle(object)) != 0; });
}

/// Fills a system record for an object of the kind that the record is for; others fill less or
/// more than that. The record's size, or 0.
template <class Record>
std::int32_t recordOf(GdiObject object, DWORD kind, Record& record) {
    if (::GetObjectType(systemHandle(object)) != kind) return failed(kErrorInvalidHandle, 0);
    return orError(kErrorInvalidHandle, 0,
                   [&] { return ::GetObjectA(systemHandle(object), sizeof(record), &record); });
}

std::int32_t getObject(BitmapHandle bitmap, BitmapFacts& facts) {
    BITMAP record{};
    const int size = recordOf(bitmap, OBJ_BITMAP, record);
    if (size == 0) return 0;
    facts = {record.bmWidth, record.bmHeight, record.bmWidthBytes, record.bmPlanes,
             record.bmBitsPixel};
    return size;
}

std::int32_t getPen(PenHandle pen, LogPen& facts) {
    LOGPEN record{};
    const int size = recordOf(pen, OBJ_PEN, record);
    if (size == 0) return 0;
    facts = {record.lopnStyle, {record.lopnWidth.x, record.lopnWidth.y}, record.lopnColor};
    return size;
}

std::int32_t getBrush(BrushHandle brush, LogBrush& facts) {
    LOGBRUSH record{};
    const int size = recordOf(brush, OBJ_BRUSH, record);
    if (size == 0) return 0;
    facts = {record.lbStyle, record.lbColor, static_cast<std::uint32_t>(record.lbHatch)};
    return size;
}

std::int32_t setMapMode(DeviceContext dc, std::int32_t mode) {
    return orError(kErrorInvalidHandle, 0, [=] { return ::SetMapMode(systemContext(dc), mode); });
}

std::uint32_t getBkColor(DeviceContext dc) {
    return orError(kErrorInvalidHandle, kColorInvalid,
                   [dc] { return std::uint32_t{::GetBkColor(systemContext(dc))}; });
}

std::uint32_t setBkColor(DeviceContext dc, std::uint32_t color) {
    return orError(kErrorInvalidHandle, kColorInvalid,
                   [=] { return std::uint32_t{::SetBkColor(systemContext(dc), color)}; });
}

std::int32_t getBkMode(DeviceContext dc) {
    return orError(kErrorInvalidHandle, 0, [dc] { return ::GetBkMode(systemContext(dc)); });
}

std::int32_t setBkMode(DeviceContext dc, std::int32_t mode) {
    return orError(kErrorInvalidHandle, 0, [=] { return ::SetBkMode(systemContext(dc), mode); });
}

std::int32_t getRop2(DeviceContext dc) {
    return orError(kErrorInvalidHandle, 0, [dc] { return ::GetROP2(systemContext(dc)); });
}

std::int32_t setRop2(DeviceContext dc, std::int32_t operation) {
    return orError(kErrorInvalidParameter, 0,
                   [=] { return ::SetROP2(systemContext(dc), operation); });
}

bool getCurrentPosition(DeviceContext dc, Point& position) {
    POINT point{};
    const bool done = orError(kErrorInvalidHandle, false, [&] {
        return ::GetCurrentPositionEx(systemContext(dc), &point) != 0;
    });
    if (done) position = {point.x, point.y};
    return done;
}

bool moveTo(DeviceContext dc, std::int32_t x, std::int32_t y, Point* former) {
    POINT point{};
    const bool done = orError(kErrorInvalidHandle, false,
                              [&] { return ::MoveToEx(systemContext(dc), x, y, &point) != 0; });
    if (done && former != nullptr) *former = {point.x, point.y};
    return done;
}

bool rectangle(DeviceContext dc, std::int32_t left, std::int32_t top, std::int32_t right,
               std::int32_t bottom) {
    return orError(kErrorInvalidHandle, false,
                   [=] { return ::Rectangle(systemContext(dc), left, top, right, bottom) != 0; });
}

bool bitBlt(DeviceContext target, std::int32_t x, std::int32_t y, std::int32_t width,
            std::int32_t height, DeviceContext source, std::int32_t sourceX, std::int32_t sourceY,
            std::uint32_t rasterOperation) {
    return orError(kErrorInvalidHandle, false, [=] {
        return ::BitBlt(systemContext(target), x, y, width, height, systemContext(source), sourceX,
                        sourceY, rasterOperation) != 0;
    });
}

/// The bytes that a header's pixels take: the system would read that many wherever the block ends.
std::uint64_t sizeOfPixels(const BitmapInfo& info) {
    if (info.biCompression != BI_RGB && info.biCompression != BI_BITFIELDS) return info.biSizeImage;
    const auto width = static_cast<std::uint64_t>(std::max<std::int64_t>(info.biWidth, 0));
    const std::int64_t height = info.biHeight;
    const auto rows = static_cast<std::uint64_t>(height < 0 ? -height : height);
    return (width * info.biBitCount + 31) / 32 * 4 * rows;
}

std::int32_t stretchDiBits(DeviceContext dc, std::int32_t x, std::int32_t y, std::int32_t width,
                           std::int32_t height, std::int32_t sourceX, std::int32_t sourceY,
                           std::int32_t sourceWidth, std::int32_t sourceHeight,
                           std::span<const std::uint8_t> bits, const BitmapInfo& info,
                           std::uint32_t usage, std::uint32_t rasterOperation) {
    if (bits.size() < sizeOfPixels(info)) return failed(kErrorInvalidParameter, 0);
    return orError(kErrorInvalidHandle, 0, [&] {
        const int rows =
            ::StretchDIBits(systemContext(dc), x, y, width, height, sourceX, sourceY, sourceWidth,
                            sourceHeight, bits.data(), systemInfo(info), usage, rasterOperation);
        return std::max(rows, 0);
    });
}

constexpr Gdi32 bound() {
    Gdi32 table;
    table.CreateCompatibleDC.bind<createCompatibleDc>();
    table.DeleteDC.bind<deleteDc>();
    table.SaveDC.bind<saveDc>();
    table.RestoreDC.bind<restoreDc>();
    table.CreateDIBSection.bind<createDibSection>();
    table.CreateCompatibleBitmap.bind<createCompatibleBitmap>();
    table.CreateSolidBrush.bind<createSolidBrush>();
    table.CreateBrushIndirect.bind<createBrushIndirect>();
    table.CreatePen.bind<createPen>();
    table.CreatePenIndirect.bind<createPenIndirect>();
    table.SelectObject.bind<selectObject>();
    table.DeleteObject.bind<deleteObject>();
    table.GetObjectA.bind<getObject>();
    table.GetPen.bind<getPen>();
    table.GetBrush.bind<getBrush>();
    table.SetMapMode.bind<setMapMode>();
    table.GetBkColor.bind<getBkColor>();
    table.SetBkColor.bind<setBkColor>();
    table.GetBkMode.bind<getBkMode>();
    table.SetBkMode.bind<setBkMode>();
    table.GetROP2.bind<getRop2>();
    table.SetROP2.bind<setRop2>();
    table.GetCurrentPositionEx.bind<getCurrentPosition>();
    table.MoveToEx.bind<moveTo>();
    table.Rectangle.bind<rectangle>();
    table.BitBlt.bind<bitBlt>();
    table.StretchDIBits.bind<stretchDiBits>();
    return table;
}
static_assert(allBound(bound()));

}  // namespace

}  // namespace win32

constinit Gdi32 gdi32 = win32::bound();

}  // namespace orvane::platform
