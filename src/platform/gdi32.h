#pragma once

#include "platform/handles.h"
#include "platform/operation.h"

#include <array>

namespace orvane::platform {

/// `BITMAP`, as `GetObjectA` fills it.
struct BitmapFacts {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t widthBytes = 0;
    std::uint16_t planes = 0;
    std::uint16_t bitsPixel = 0;
};
void describe(std::string& out, const BitmapFacts& facts);

/// `BITMAPINFO`: a header of 40 bytes and a colour table of 256 entries (blue, green, red, 0).
/// A negative height means rows from the top.
struct BitmapInfo {
    std::uint32_t biSize = 40;
    std::int32_t biWidth = 0;
    std::int32_t biHeight = 0;
    std::uint16_t biPlanes = 1;
    std::uint16_t biBitCount = 0;
    std::uint32_t biCompression = 0;
    std::uint32_t biSizeImage = 0;
    std::int32_t biXPelsPerMeter = 0;
    std::int32_t biYPelsPerMeter = 0;
    std::uint32_t biClrUsed = 0;
    std::uint32_t biClrImportant = 0;
    std::array<std::uint32_t, 256> bmiColors{};
};
static_assert(sizeof(BitmapInfo) == 40 + 1024);
void describe(std::string& out, const BitmapInfo& info);

inline constexpr std::uint32_t kDibRgbColors = 0;
inline constexpr std::uint32_t kSrcCopy = 0x00CC0020;

struct Gdi32 {
    /// A memory device context; `reference` none is the screen.
    Operation<DeviceContext(DeviceContext reference)> CreateCompatibleDC{"gdi32",
                                                                         "CreateCompatibleDC",
                                                                         DeviceContext::none,
                                                                         kErrorNotEnoughMemory,
                                                                         {"dc", Holding::kResult}};
    Operation<bool(DeviceContext dc)> DeleteDC{
        "gdi32", "DeleteDC", false, kErrorInvalidHandle, {"dc", Holding::kNothing, 0}};
    /// A bitmap with the header's depth; `bits` is the address of its first stored row.
    Operation<BitmapHandle(DeviceContext dc, const BitmapInfo& info, std::uint32_t usage,
                           void*& bits)>
        CreateDIBSection{"gdi32",
                         "CreateDIBSection",
                         BitmapHandle::none,
                         kErrorNotEnoughMemory,
                         {"bitmap", Holding::kResult}};
    /// A bitmap of the depth of the one that is selected in `dc`.
    Operation<BitmapHandle(DeviceContext dc, std::int32_t width, std::int32_t height)>
        CreateCompatibleBitmap{"gdi32",
                               "CreateCompatibleBitmap",
                               BitmapHandle::none,
                               kErrorNotEnoughMemory,
                               {"bitmap", Holding::kResult}};
    /// Selects a bitmap; the one that was selected before, or none when it failed.
    Operation<BitmapHandle(DeviceContext dc, BitmapHandle bitmap)> SelectObject{
        "gdi32", "SelectObject", BitmapHandle::none, kErrorInvalidHandle};
    Operation<bool(DeviceContext target, std::int32_t x, std::int32_t y, std::int32_t width,
                   std::int32_t height, DeviceContext source, std::int32_t sourceX,
                   std::int32_t sourceY, std::uint32_t rasterOperation)>
        BitBlt{"gdi32", "BitBlt", false, kErrorInvalidHandle};
    /// Copies a block of pixels into the selected bitmap; the number of rows, 0 when it failed.
    Operation<std::int32_t(DeviceContext dc, std::int32_t x, std::int32_t y, std::int32_t width,
                           std::int32_t height, std::int32_t sourceX, std::int32_t sourceY,
                           std::int32_t sourceWidth, std::int32_t sourceHeight,
                           std::span<const std::uint8_t> bits, const BitmapInfo& info,
                           std::uint32_t usage, std::uint32_t rasterOperation)>
        StretchDIBits{"gdi32", "StretchDIBits", 0, kErrorInvalidHandle};
    /// Deletes a bitmap; one that is selected in a device context stays and the call fails.
    Operation<bool(BitmapHandle bitmap)> DeleteObject{
        "gdi32", "DeleteObject", false, kErrorInvalidHandle, {"bitmap", Holding::kNothing, 0}};
    /// The size of the record (24), or 0 when the handle is not a bitmap's.
    Operation<std::int32_t(BitmapHandle bitmap, BitmapFacts& facts)> GetObjectA{
        "gdi32", "GetObjectA", 0, kErrorInvalidHandle};

    template <class Visitor>
    constexpr void visit(Visitor&& visitor) {
        visitor(CreateCompatibleDC, DeleteDC, CreateDIBSection, CreateCompatibleBitmap,
                SelectObject, BitBlt, StretchDIBits, DeleteObject, GetObjectA);
    }
};
extern Gdi32 gdi32;

}  // namespace orvane::platform
