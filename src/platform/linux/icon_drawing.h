#pragma once

#include "platform/linux/icons.h"
#include "platform/linux/raster.h"

namespace orvane::platform {

/// Draws a part of an icon or cursor on an area of a surface, stretched if their sizes differ: by
/// its alpha channel where that tells more than the mask, else by the mask, which can turn the
/// colours behind it round. Throws std::bad_alloc.
void drawIcon(Surface& target, Area to, const Icon& icon, Area from);

}  // namespace orvane::platform
