#pragma once

#include "platform/linux/gdi32_objects.h"

namespace orvane::platform {

/// Draws a rectangle with the context's pen, brush, colours and ROP2 on `target`: the frame lies on
/// the edges from `first` to before `last`, whichever way round the two are.
void drawRectangle(Surface& target, const Context& context, Point first, Point last);

}  // namespace orvane::platform
