#pragma once

#include "platform/linux/surface.h"

#include <cstdint>

/// Copies of pixels between surfaces and blocks of pixels. What writes to a surface throws
/// std::bad_alloc when there is no memory to work in.
namespace orvane::platform {

/// Pixels to read. Those of a surface, or of a block that a caller describes with a header.
struct PixelView {
    const std::uint8_t* bits = nullptr;
    std::size_t stride = 0;
    std::int32_t width = 0;
    std::int32_t height = 0;
    bool topDown = true;
    const PixelFormat* format = nullptr;
    bool isMonochrome = false;  ///< as of a surface

    /// Row `y` from the top.
    const std::uint8_t* row(std::int32_t y) const {
        return bits + static_cast<std::size_t>(topDown ? y : height - 1 - y) * stride;
    }
};

PixelView viewOf(const Surface& surface);

/// A rectangle of pixels, y from the top. A negative width or height turns it round: it then lies
/// left of x or above y, and what is copied between two of opposite sign is mirrored.
struct Area {
    std::int64_t x = 0;
    std::int64_t y = 0;
    std::int64_t width = 0;
    std::int64_t height = 0;
};

/// The colours (0x00RRGGBB) that an operation takes beside those of the pixels, with the values of
/// new device contexts.
struct OperationColors {
    std::uint32_t pattern = 0xFFFFFF;           ///< of the target's brush
    std::uint32_t text = 0;                     ///< of the target: black of a monochrome source
    std::uint32_t background = 0xFFFFFF;        ///< of the target: its white
    std::uint32_t sourceBackground = 0xFFFFFF;  ///< what is white on a monochrome target
};

/// True when the result of a ternary raster operation depends on the source's pixels.
bool usesSource(std::uint32_t rasterOperation);
/// True when it depends on the pattern.
bool usesPattern(std::uint32_t rasterOperation);

/// A binary operation on a colour and the target's pixels: its result for the four combinations of
/// a bit of the colour and one of the target, both set in the highest bit.
enum class BinaryOperation : std::uint8_t {};
inline constexpr BinaryOperation kCopyColor{0b1100};
/// What a ternary operation does that takes no source.
BinaryOperation withoutSource(std::uint32_t rasterOperation);

/// Combines the pixels of `from` with those of `to` by a ternary raster operation. Areas of
/// different sizes are matched by the nearest pixel. What lies outside the target is left out, and
/// so is what would come from outside the source. Source and target may overlap when the sizes are
/// the same; a target that is the source, too, owns its pixels before they are viewed.
void transfer(Surface& target, Area to, const PixelView& source, Area from,
              std::uint32_t rasterOperation, const OperationColors& colors = {});

/// Combines a colour (0x00RRGGBB) with the pixels of `to`.
void fill(Surface& target, Area to, std::uint32_t color, BinaryOperation operation);

}  // namespace orvane::platform
