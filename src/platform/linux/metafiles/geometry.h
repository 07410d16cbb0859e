#pragma once

#include <cstdint>

namespace orvane::metafiles {

/// A point or a distance, in the units of the place that says so.
struct Point {
    double x = 0;
    double y = 0;

    friend bool operator==(const Point&, const Point&) = default;
};

/// A rectangle of units or pixels: the right and bottom edges don't belong to it.
struct Box {
    double left = 0;
    double top = 0;
    double right = 0;
    double bottom = 0;

    double width() const { return right - left; }
    double height() const { return bottom - top; }
};

/// x' = xx * x + xy * y + dx, y' = yx * x + yy * y + dy.
struct Matrix {
    double xx = 1;
    double yx = 0;
    double xy = 0;
    double yy = 1;
    double dx = 0;
    double dy = 0;

    Point apply(Point point) const {
        return {xx * point.x + xy * point.y + dx, yx * point.x + yy * point.y + dy};
    }

    /// This one first, `next` after it.
    Matrix then(const Matrix& next) const {
        return {next.xx * xx + next.xy * yx,           next.yx * xx + next.yy * yx,
                next.xx * xy + next.xy * yy,           next.yx * xy + next.yy * yy,
                next.xx * dx + next.xy * dy + next.dx, next.yx * dx + next.yy * dy + next.dy};
    }

    double determinant() const { return xx * yy - xy * yx; }
    /// Whether the axes stay axes.
    bool isUpright() const { return xy == 0 && yx == 0; }
};

}  // namespace orvane::metafiles
