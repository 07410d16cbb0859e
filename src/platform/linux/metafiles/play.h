#pragma once

#include "platform/linux/metafiles/metafiles.h"

#include <cstdint>
#include <span>

namespace orvane::metafiles {

/// Draws a WMF file with a placeable header or an EMF file, as the module's table has it. Throws
/// std::bad_alloc.
OrvaneCodecResult play(std::span<const uint8_t> file, const OrvaneCanvas& canvas,
                       const OrvaneMetafileArea& area);

}  // namespace orvane::metafiles
