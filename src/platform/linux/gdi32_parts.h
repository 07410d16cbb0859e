#pragma once

#include "platform/gdi32.h"

/// The functions behind the `Gdi32` table; each file beside this header carries out one group.
namespace orvane::platform {

// gdi32_contexts.cpp, with what gdi32_objects.h has
DeviceContext createCompatibleContext(DeviceContext reference);
bool deleteContext(DeviceContext dc);
std::int32_t saveContext(DeviceContext dc);
bool restoreContext(DeviceContext dc, std::int32_t state);

// gdi32_attributes.cpp
std::int32_t setMapMode(DeviceContext dc, std::int32_t mode);
std::uint32_t bkColor(DeviceContext dc);
std::uint32_t setBkColor(DeviceContext dc, std::uint32_t color);
std::int32_t bkMode(DeviceContext dc);
std::int32_t setBkMode(DeviceContext dc, std::int32_t mode);
std::int32_t rop2(DeviceContext dc);
std::int32_t setRop2(DeviceContext dc, std::int32_t operation);
bool currentPosition(DeviceContext dc, Point& position);
bool moveTo(DeviceContext dc, std::int32_t x, std::int32_t y, Point* former);

// gdi32_tools.cpp
BrushHandle createSolidBrush(std::uint32_t color);
BrushHandle createBrush(const LogBrush& facts);
PenHandle createPen(std::uint32_t style, std::int32_t width, std::uint32_t color);
PenHandle createPenIndirect(const LogPen& facts);
std::int32_t penFacts(PenHandle pen, LogPen& facts);
std::int32_t brushFacts(BrushHandle brush, LogBrush& facts);

// gdi32_drawing.cpp
bool rectangle(DeviceContext dc, std::int32_t left, std::int32_t top, std::int32_t right,
               std::int32_t bottom);
bool bitBlt(DeviceContext target, std::int32_t x, std::int32_t y, std::int32_t width,
            std::int32_t height, DeviceContext source, std::int32_t sourceX, std::int32_t sourceY,
            std::uint32_t rasterOperation);
std::int32_t stretchDIBits(DeviceContext dc, std::int32_t x, std::int32_t y, std::int32_t width,
                           std::int32_t height, std::int32_t sourceX, std::int32_t sourceY,
                           std::int32_t sourceWidth, std::int32_t sourceHeight,
                           std::span<const std::uint8_t> bits, const BitmapInfo& info,
                           std::uint32_t usage, std::uint32_t rasterOperation);

}  // namespace orvane::platform
