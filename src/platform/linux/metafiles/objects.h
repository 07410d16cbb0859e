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

/// The pixels of boxes of units.
Region regionOf(const Mapping& mapping, const std::vector<Box>& boxes);
/// The same of boxes of pixels.
Region regionOf(const std::vector<Box>& boxes);

}  // namespace orvane::metafiles
