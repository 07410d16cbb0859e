#pragma once

#include "frame/binary_file.h"

#include <cstdint>

/// The pixel data of Targa files, from a file at its first pixel into rows of 24 bits.
namespace orvane::targa {

/// Where the pixels go: zeroed rows from the top, `stride` bytes each.
struct Rows {
    std::uint8_t* pixels;
    std::int32_t width;
    std::int32_t height;
    std::int32_t stride;
    bool bottomUp;  ///< the first stored row is the bottom one

    /// The memory of the row that is stored as number `index` from 0.
    std::uint8_t* stored(std::int32_t index) const {
        const std::int64_t row = bottomUp ? height - 1 - index : index;
        return pixels + row * stride;
    }
};

/// Uncompressed pixels of 2, 3 or 4 bytes, a row in one read. Always true.
template <int bytesPerPixel>
bool readRows(BinaryFile& file, const Rows& rows);

/// Run-length packets, which may cross row ends. False for a packet that runs past the last pixel.
template <int bytesPerPixel>
bool readRuns(BinaryFile& file, const Rows& rows);

extern template bool readRows<2>(BinaryFile&, const Rows&);
extern template bool readRows<3>(BinaryFile&, const Rows&);
extern template bool readRows<4>(BinaryFile&, const Rows&);
extern template bool readRuns<2>(BinaryFile&, const Rows&);
extern template bool readRuns<3>(BinaryFile&, const Rows&);
extern template bool readRuns<4>(BinaryFile&, const Rows&);

}  // namespace orvane::targa
