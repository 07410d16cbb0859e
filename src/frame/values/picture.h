#pragma once

#include "frame/values/object.h"

#include <cstdint>

namespace orvane {

/// A picture: an object over a bitmap, an icon or a metafile. Its properties raise 91 on Nothing.
class Picture : public Object {
public:
    enum class Type : std::int16_t {
        none = 0,
        bitmap = 1,
        metafile = 2,
        icon = 3,
        enhancedMetafile = 4
    };

    Picture() = default;
    Picture(std::nullptr_t) {}
    explicit Picture(Object object) : Object(std::move(object)) {}

    /// The platform handle of the bitmap, icon or metafile.
    std::uint32_t handle() const;
    Type type() const;
};

}  // namespace orvane
