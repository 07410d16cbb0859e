#pragma once

#include "pictures/BitmapHolder.h"

#include <cstdint>

namespace orvane {

/// A section of one pixel. Selected into a device context, it gives `CreateCompatibleBitmap` a
/// depth that does not depend on the screen's.
class CBackBitmap final : public BitmapHolder {
public:
    /// Creates the section with `bits` per pixel; `palette` (null for none) is 256 entries of
    /// blue, green, red and 0. A failure is not tested.
    void Initialize(std::uint16_t bits, const std::uint32_t* palette);
};

}  // namespace orvane
