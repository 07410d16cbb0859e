#pragma once

#include "pictures/BitmapHolder.h"

namespace orvane {

/// A bitmap that a `CCompatibleDC` made.
class CCompatibleBitmap final : public BitmapHolder {};

}  // namespace orvane
