#pragma once

#include "frame/values/wstring.h"
#include "platform/gdiplus.h"

#include <cstdint>

namespace orvane {

/// The library's text for a GDI+ status number. It is asked for failures only, and so has none for
/// success: 0 is "Unknown error", and a number above 20 has itself behind that.
WString GetGdiPlusStatusText(std::int32_t status);

/// Goes on when GDI+ has carried a call out, well or badly; to be called right after it. A function
/// that can't be bound raises what calling a missing library's function raises: 53 without the
/// library, 453 when only the function is missing.
platform::GdiplusStatus requireBound(platform::GdiplusStatus status);

/// Raises 0x80040000 with `what` and the status's text behind it when a call has failed.
void requireOk(platform::GdiplusStatus status, WStringView what);

}  // namespace orvane
