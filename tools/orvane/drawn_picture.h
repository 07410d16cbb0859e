#pragma once

#include "library.h"
#include "rgb_image.h"

#include <optional>

namespace orvane::tool {

/// The pixels of a picture that isn't a bitmap, drawn over a ground of one colour: icons and
/// cursors as large as they are, metafiles, on Windows alone, as large as a thumbnail needs. None
/// for what the system can't draw.
std::optional<RgbImage> drawnPicture(const LoadedPicture& loaded, Rgb ground);

}  // namespace orvane::tool
