#pragma once

#include "rgb_image.h"

#include <cstdint>
#include <string>
#include <string_view>

/// A small font of the tool's own: Latin, Cyrillic, digits and signs in cells of 6 x 9 dots.
namespace orvane::tool {

inline constexpr std::uint32_t kCellWidth = 6;
inline constexpr std::uint32_t kCellHeight = 9;

/// The width of a UTF-8 text in pixels, with `size` pixels a dot.
std::uint32_t textWidth(std::string_view text, std::uint32_t size);

/// Draws a UTF-8 text with its upper left corner at a place, `size` pixels a dot. What the font
/// lacks is a box.
void drawText(RgbImage& image, std::uint32_t x, std::uint32_t y, std::string_view text,
              std::uint32_t size, Rgb colour);

/// A UTF-8 text of `most` characters at most: what is longer loses its middle to an ellipsis, so
/// that both ends, where names differ, stay.
std::string shortened(std::string_view text, std::size_t most);

}  // namespace orvane::tool
