#pragma once

#include "library.h"
#include "rgb_image.h"

#include <optional>

namespace orvane::tool {

/// The pixels of a picture that isn't a bitmap, drawn over a ground of one colour: icons and
/// cursors as large as they are, metafiles, which have no pixels of their own, with 480 on the
/// longer side. None for what the system can't draw.
std::optional<RgbImage> drawnPicture(Library& library, const LoadedPicture& loaded, Rgb ground);

}  // namespace orvane::tool
