#pragma once

#include "platform/linux/codecs/reader.h"
#include "platform/linux/metafiles/geometry.h"

namespace orvane::metafiles {

/// A point of a record of a Windows metafile: y stands in front of x.
inline Point pointAt(const codecs::Reader& r, std::uint64_t offset) {
    return {double(r.i16(offset + 2)), double(r.i16(offset))};
}

/// A box: bottom, right, top and left.
inline Box boxAt(const codecs::Reader& r, std::uint64_t offset) {
    return {double(r.i16(offset + 6)), double(r.i16(offset + 4)), double(r.i16(offset + 2)),
            double(r.i16(offset))};
}

}  // namespace orvane::metafiles
