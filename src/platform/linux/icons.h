#pragma once

#include "platform/linux/surface.h"

#include <cstdint>
#include <memory>

namespace orvane::platform {

/// An icon or a cursor: a coloured picture of 32 bits and a mask of 1 bit, both of one size. A mask
/// bit of 1 keeps what is behind, 0 takes the colour.
struct Icon {
    using Handle = IconHandle;
    static constexpr HandleKind kKind = HandleKind::icon;

    bool isIcon = true;  ///< false: a cursor
    std::uint32_t hotspotX = 0;
    std::uint32_t hotspotY = 0;
    std::shared_ptr<Surface> color;
    std::shared_ptr<Surface> mask;
};

}  // namespace orvane::platform
