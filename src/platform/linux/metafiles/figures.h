#pragma once

#include "platform/linux/metafiles/mapping.h"
#include "platform/linux/metafiles/path.h"

#include <span>

namespace orvane::metafiles {

/// Figures from units to pixels. The mapping tells whether the right and bottom edges of a box
/// belong to the figure that is drawn in it.

Path lines(const Mapping& mapping, std::span<const Point> points, bool closed);
/// A point, and three for each curve.
Path curves(const Mapping& mapping, std::span<const Point> points);
Path rectangle(const Mapping& mapping, const Box& box);
/// `corner`: width and height of the ellipse that rounds the corners.
Path roundRectangle(const Mapping& mapping, const Box& box, Point corner);
Path ellipse(const Mapping& mapping, const Box& box);

/// How an arc of an ellipse is closed.
enum class ArcEnd { open, chord, pie };
/// The arc between the rays from the middle of the box through two points.
Path arc(const Mapping& mapping, const Box& box, Point start, Point end, bool clockwise,
         ArcEnd close);
/// The arc of a circle from an angle on, in degrees against the clock.
Path angleArc(const Mapping& mapping, Point center, double radius, double start, double sweep);

}  // namespace orvane::metafiles
