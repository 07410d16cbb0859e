#pragma once

#include "frame/values/wstring.h"

namespace orvane {

/// Writes `text` and a line end to the debug output.
void nqDebugPrint(WStringView text);

/// Hands `text` to the system's debugger output as it is.
void nqOutputDebugString(WStringView text);

}  // namespace orvane
