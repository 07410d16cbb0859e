#include "platform/gdi32.h"

#include "platform/win32/system.h"

#include <algorithm>

namespace orvane::platform {

namespace win32 {

namespace {

static_assert(sizeof(BITMAPINFOHEADER) == 40 && sizeof(BITMAP) == 24);

HDC systemContext(DeviceContext dc) {
    return systemHandle<HDC>(dc);
}

HBITMAP systemBitmap(BitmapHandle bitmap) {
    return systemHandle<HBITMAP>(bitmap);
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

BitmapHandle selectObject(DeviceContext dc, BitmapHandle bitmap) {
    return orError(kErrorInvalidHandle, BitmapHandle::none, [=] {
        return ownHandle<BitmapHandle>(::SelectObject(systemContext(dc), systemBitmap(bitmap)));
    });
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

bool deleteObject(BitmapHandle bitmap) {
    return orError(kErrorInvalidHandle, false,
                   [bitmap] { return ::DeleteObject(systemBitmap(bitmap)) != 0; });
}

std::int32_t getObject(BitmapHandle bitmap, BitmapFacts& facts) {
    // Other objects fill less or more than a bitmap's record.
    if (::GetObjectType(systemBitmap(bitmap)) != OBJ_BITMAP) return failed(kErrorInvalidHandle, 0);
    BITMAP record{};
    const int size = orError(kErrorInvalidHandle, 0, [&] {
        return ::GetObjectA(systemBitmap(bitmap), sizeof(record), &record);
    });
    if (size == 0) return 0;
    facts = {record.bmWidth, record.bmHeight, record.bmWidthBytes, record.bmPlanes,
             record.bmBitsPixel};
    return size;
}

constexpr Gdi32 bound() {
    Gdi32 table;
    table.CreateCompatibleDC.bind<createCompatibleDc>();
    table.DeleteDC.bind<deleteDc>();
    table.CreateDIBSection.bind<createDibSection>();
    table.CreateCompatibleBitmap.bind<createCompatibleBitmap>();
    table.SelectObject.bind<selectObject>();
    table.BitBlt.bind<bitBlt>();
    table.StretchDIBits.bind<stretchDiBits>();
    table.DeleteObject.bind<deleteObject>();
    table.GetObjectA.bind<getObject>();
    return table;
}
static_assert(allBound(bound()));

}  // namespace

}  // namespace win32

constinit Gdi32 gdi32 = win32::bound();

}  // namespace orvane::platform
