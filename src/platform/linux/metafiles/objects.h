#pragma once

#include "platform/linux/metafiles/painter.h"

#include <variant>
#include <vector>

namespace orvane::metafiles {

/// What create records make and select records name: a region is a list of boxes.
using Object = std::variant<std::monostate, Pen, Brush, Font, Palette, std::vector<Box>>;

/// Makes an object the painter's; none does nothing, and so does a region.
void select(Painter& painter, const Object& object);

/// The pen, brush or font that Windows has ready under a number; none for another number.
Object stockObject(std::uint32_t number);

/// The tools that records describe.
Pen simplePen(std::uint32_t style, double width, ColorRef color);
Brush brushOf(std::uint32_t style, ColorRef color, std::uint32_t hatch);

/// A brush of an image; without one it is white.
Brush brushOf(ImageHandle image);
/// The last fields of a font's record: eight bytes from whether it is italic to its family.
void readFontStyle(const codecs::Reader& style, Font& font);
/// Colours of four bytes each: red, green, blue and one that means nothing.
Palette paletteOf(const codecs::Reader& colors, std::size_t count);

/// The pixels of boxes of units.
Region regionOf(const Mapping& mapping, const std::vector<Box>& boxes);
/// The same of boxes of pixels.
Region regionOf(const std::vector<Box>& boxes);

}  // namespace orvane::metafiles
