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

/// `POINT`, in pixels.
struct Point {
    std::int32_t x = 0;
    std::int32_t y = 0;
};
void describe(std::string& out, const Point& point);

/// `LOGPEN`: `width.x` is the width, `width.y` means nothing. Colours are 0x00BBGGRR.
struct LogPen {
    std::uint32_t style = 0;
    Point width;
    std::uint32_t color = 0;
};
static_assert(sizeof(LogPen) == 16);
void describe(std::string& out, const LogPen& pen);

/// `LOGBRUSH`: style 0 is a solid colour.
struct LogBrush {
    std::uint32_t style = 0;
    std::uint32_t color = 0;
    std::uint32_t hatch = 0;
};
static_assert(sizeof(LogBrush) == 12);
void describe(std::string& out, const LogBrush& brush);

void describe(std::string& out, const GdiObject& object);

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

inline constexpr std::uint32_t kPenSolid = 0;
inline constexpr std::uint32_t kPenNull = 5;
inline constexpr std::uint32_t kPenInsideFrame = 6;
inline constexpr std::uint32_t kBrushSolid = 0;
inline constexpr std::uint32_t kBrushNull = 1;
inline constexpr std::int32_t kMapModeText = 1;  ///< a unit is a pixel, y downwards
inline constexpr std::int32_t kBackgroundTransparent = 1;
inline constexpr std::int32_t kBackgroundOpaque = 2;
inline constexpr std::int32_t kRop2CopyPen = 13;
inline constexpr std::uint32_t kColorInvalid = 0xFFFFFFFF;

struct Gdi32 {
    /// A memory device context; `reference` none is the screen.
    Operation<DeviceContext(DeviceContext reference)> CreateCompatibleDC{"gdi32",
                                                                         "CreateCompatibleDC",
                                                                         DeviceContext::none,
                                                                         kErrorNotEnoughMemory,
                                                                         {"dc", Holding::kResult}};
    /// What is selected in the context stays alive.
    Operation<bool(DeviceContext dc)> DeleteDC{
        "gdi32", "DeleteDC", false, kErrorInvalidHandle, {"dc", Holding::kNothing, 0}};
    /// Puts the context's state on its stack: what is selected, colours, modes and the position.
    /// The number of states there then are, 0 when it failed.
    Operation<std::int32_t(DeviceContext dc)> SaveDC{"gdi32", "SaveDC", 0, kErrorInvalidHandle};
    /// Takes up the state with this number of `SaveDC`, or from the end when it is negative (-1 is
    /// the last), and drops it with those after it. Fails when there is no such state.
    Operation<bool(DeviceContext dc, std::int32_t state)> RestoreDC{"gdi32", "RestoreDC", false,
                                                                    kErrorInvalidParameter};

    /// A bitmap with the header's depth; `bits` is the address of its first stored row.
    Operation<BitmapHandle(DeviceContext dc, const BitmapInfo& info, std::uint32_t usage,
                           void*& bits)>
        CreateDIBSection{"gdi32",
                         "CreateDIBSection",
                         BitmapHandle::none,
                         kErrorNotEnoughMemory,
                         {"gdi object", Holding::kResult}};
    /// A bitmap of the depth of the one that is selected in `dc`, or of the screen's for its
    /// context.
    Operation<BitmapHandle(DeviceContext dc, std::int32_t width, std::int32_t height)>
        CreateCompatibleBitmap{"gdi32",
                               "CreateCompatibleBitmap",
                               BitmapHandle::none,
                               kErrorNotEnoughMemory,
                               {"gdi object", Holding::kResult}};
    Operation<BrushHandle(std::uint32_t color)> CreateSolidBrush{"gdi32",
                                                                 "CreateSolidBrush",
                                                                 BrushHandle::none,
                                                                 kErrorNotEnoughMemory,
                                                                 {"gdi object", Holding::kResult}};
    Operation<BrushHandle(const LogBrush& brush)> CreateBrushIndirect{
        "gdi32",
        "CreateBrushIndirect",
        BrushHandle::none,
        kErrorInvalidParameter,
        {"gdi object", Holding::kResult}};
    /// A pen of one of the styles 0 to 6; any other style makes a solid one. The sign of the width
    /// doesn't count, and a width of 0 draws one pixel.
    Operation<PenHandle(std::uint32_t style, std::int32_t width, std::uint32_t color)> CreatePen{
        "gdi32",
        "CreatePen",
        PenHandle::none,
        kErrorNotEnoughMemory,
        {"gdi object", Holding::kResult}};
    Operation<PenHandle(const LogPen& pen)> CreatePenIndirect{"gdi32",
                                                              "CreatePenIndirect",
                                                              PenHandle::none,
                                                              kErrorNotEnoughMemory,
                                                              {"gdi object", Holding::kResult}};
    /// Selects a bitmap, brush or pen; the one of its kind that was selected before, or none when
    /// it failed. A bitmap is selected in one memory context at a time.
    Operation<GdiObject(DeviceContext dc, GdiObject object)> SelectObject{
        "gdi32", "SelectObject", {}, kErrorInvalidHandle};
    /// Deletes an object. One that is selected goes when it no longer is.
    Operation<bool(GdiObject object)> DeleteObject{
        "gdi32", "DeleteObject", false, kErrorInvalidHandle, {"gdi object", Holding::kNothing, 0}};
    /// The size of the record (24), or 0 when the handle is not a bitmap's.
    Operation<std::int32_t(BitmapHandle bitmap, BitmapFacts& facts)> GetObjectA{
        "gdi32", "GetObjectA", 0, kErrorInvalidHandle};
    /// `GetObjectA` of a pen: the size of the record (16), or 0 when the handle is not a pen's.
    Operation<std::int32_t(PenHandle pen, LogPen& facts)> GetPen{"gdi32", "GetObjectA", 0,
                                                                 kErrorInvalidHandle};
    /// `GetObjectA` of a brush: the size of the record (12), or 0 when the handle is not a brush's.
    Operation<std::int32_t(BrushHandle brush, LogBrush& facts)> GetBrush{"gdi32", "GetObjectA", 0,
                                                                         kErrorInvalidHandle};

    // The attributes of a context. Setting one gives the former value.
    Operation<std::int32_t(DeviceContext dc, std::int32_t mode)> SetMapMode{"gdi32", "SetMapMode",
                                                                            0, kErrorInvalidHandle};
    Operation<std::uint32_t(DeviceContext dc)> GetBkColor{"gdi32", "GetBkColor", kColorInvalid,
                                                          kErrorInvalidHandle};
    Operation<std::uint32_t(DeviceContext dc, std::uint32_t color)> SetBkColor{
        "gdi32", "SetBkColor", kColorInvalid, kErrorInvalidHandle};
    Operation<std::int32_t(DeviceContext dc)> GetBkMode{"gdi32", "GetBkMode", 0,
                                                        kErrorInvalidHandle};
    Operation<std::int32_t(DeviceContext dc, std::int32_t mode)> SetBkMode{"gdi32", "SetBkMode", 0,
                                                                           kErrorInvalidHandle};
    Operation<std::int32_t(DeviceContext dc)> GetROP2{"gdi32", "GetROP2", 0, kErrorInvalidHandle};
    /// One of the 16 operations on pen and target, 1 to 16.
    Operation<std::int32_t(DeviceContext dc, std::int32_t operation)> SetROP2{
        "gdi32", "SetROP2", 0, kErrorInvalidParameter};
    Operation<bool(DeviceContext dc, Point& position)> GetCurrentPositionEx{
        "gdi32", "GetCurrentPositionEx", false, kErrorInvalidHandle};
    /// `former` (null for no interest) gets the position that it was.
    Operation<bool(DeviceContext dc, std::int32_t x, std::int32_t y, Point* former)> MoveToEx{
        "gdi32", "MoveToEx", false, kErrorInvalidHandle};

    /// A frame with the pen around an area filled with the brush. The right column and the bottom
    /// row are those before `right` and `bottom`.
    Operation<bool(DeviceContext dc, std::int32_t left, std::int32_t top, std::int32_t right,
                   std::int32_t bottom)>
        Rectangle{"gdi32", "Rectangle", false, kErrorInvalidHandle};
    /// Combines the pixels of the source, the target and the target's brush.
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

    template <class Visitor>
    constexpr void visit(Visitor&& visitor) {
        visitor(CreateCompatibleDC, DeleteDC, SaveDC, RestoreDC, CreateDIBSection,
                CreateCompatibleBitmap, CreateSolidBrush, CreateBrushIndirect, CreatePen,
                CreatePenIndirect, SelectObject, DeleteObject, GetObjectA, GetPen, GetBrush,
                SetMapMode, GetBkColor, SetBkColor, GetBkMode, SetBkMode, GetROP2, SetROP2,
                GetCurrentPositionEx, MoveToEx, Rectangle, BitBlt, StretchDIBits);
    }
};
extern Gdi32 gdi32;

}  // namespace orvane::platform
