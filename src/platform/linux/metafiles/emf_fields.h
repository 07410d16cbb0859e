#pragma once

#include "platform/linux/codecs/reader.h"
#include "platform/linux/metafiles/geometry.h"

#include <bit>

namespace orvane::metafiles {

/// Fields of a record of an enhanced metafile: two or four whole numbers, or numbers of 32 bits
/// with a fraction.
inline Point emfPointAt(const codecs::Reader& r, std::uint64_t offset) {
    return {double(r.i32(offset)), double(r.i32(offset + 4))};
}

inline Box emfBoxAt(const codecs::Reader& r, std::uint64_t offset) {
    return {double(r.i32(offset)), double(r.i32(offset + 4)), double(r.i32(offset + 8)),
            double(r.i32(offset + 12))};
}

inline double emfFloatAt(const codecs::Reader& r, std::uint64_t offset) {
    return double(std::bit_cast<float>(r.u32(offset)));
}

}  // namespace orvane::metafiles
