#pragma once

#include "frame/values/array.h"

#include <cstddef>
#include <cstdint>

/// The lines of PCX files, from the run-length code behind the header into rows of pixels.
namespace orvane::pcx {

/// What is decoded: `size` bytes, and zeros behind them that are read but not decoded.
struct Body {
    static constexpr std::int32_t kSlack = 8;

    Array<std::uint8_t> bytes;
    std::size_t size = 0;
};

/// Sizes in pixels and bytes, none of them negative, width and height above 0.
struct Layout {
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t stride = 0;        ///< of a row of pixels
    std::int32_t bytesPerLine = 0;  ///< of a line of one plane
    std::int32_t totalBytes = 0;    ///< of the lines of all planes together
};

/// Whether a body of `bodySize` bytes can hold this picture of one plane; what can't must fail,
/// so that no memory need be taken for it.
bool canHoldIndices(const Layout& layout, std::int64_t bodySize);

/// Whether the lines of the planes reach to the last pixel; otherwise reading them must fail.
bool canHoldPlanes(const Layout& layout);

/// One plane of palette indices into zeroed rows; `canHoldIndices` must have said yes. False when
/// the body ends in a line.
bool readIndices(const Body& body, const Layout& layout, std::uint8_t* pixels);

/// Red, green and blue lines into zeroed rows of 24 bits; `canHoldPlanes` must have said yes. False
/// for a body with more than the lines, which is known only when all rows are done; a body with
/// less leaves the rest of the rows black.
bool readPlanes(const Body& body, const Layout& layout, std::uint8_t* pixels);

}  // namespace orvane::pcx
