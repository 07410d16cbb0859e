#pragma once

#include "frame/values/picture.h"
#include "platform/handles.h"

#include <cstdint>

namespace orvane {

/// A `Picture` object over a bitmap, which it owns from now on and deletes at its end. A failure
/// raises the error of the platform's status; the bitmap then still belongs to the caller.
Picture nqGetBitmapFromHandle(platform::BitmapHandle bitmap);

/// A bitmap of its own with the size, depth and pixels of another, which may be selected in a
/// device context; none when it can't be made. The caller deletes it.
platform::BitmapHandle nqCopyBitmap(platform::BitmapHandle bitmap);

/// A colour value as a plain one, 0x00BBGGRR. The highest byte tells the form: 0 a plain colour, 1
/// a number in a palette, 2 the nearest of a palette's colours, 0x80 a number in the system's
/// scheme. `palette` is 0 for the default palette, which no one changes. Raises 5 for any other
/// form and for a number that there is not.
std::uint32_t nqTranslateColor(std::uint32_t color, std::uint32_t palette);

}  // namespace orvane
