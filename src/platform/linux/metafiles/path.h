#pragma once

#include "platform/linux/metafiles/geometry.h"

#include <cairo.h>

#include <array>
#include <cstddef>
#include <span>
#include <vector>

namespace orvane::metafiles {

/// Figures of lines and curves, in pixels of the canvas.
class Path {
public:
    void moveTo(Point to);
    void lineTo(Point to);
    void curveTo(Point first, Point second, Point to);
    /// Ends the figure where it began.
    void close();
    /// A figure of straight lines.
    void addLines(std::span<const Point> points, bool closed);
    void append(const Path& other);
    /// Goes on with a figure that begins where this path ends.
    void continueWith(const Path& figure);
    void clear() { elements_.clear(); }
    bool isEmpty() const { return elements_.empty(); }
    /// Closes every figure that isn't: an area has no open side.
    Path closed() const;

    /// Moves the ends of open figures a little against their direction, so that a thin line has its
    /// first pixel and lacks its last one, whichever way it goes.
    Path withoutLastPixels() const;

    /// Makes it the context's path, moved by `offset` both ways.
    void put(cairo_t* context, double offset) const;
    /// What holds every point, control points included.
    Box bounds() const;

private:
    enum class Kind : unsigned char { move, line, curve, close };
    struct Element {
        Kind kind;
        std::array<Point, 3> points;
    };

    static std::size_t endOf(Kind kind) { return kind == Kind::curve ? 2 : 0; }

    std::vector<Element> elements_;
};

}  // namespace orvane::metafiles
