#include "platform/linux/metafiles/figures.h"

#include <algorithm>
#include <cmath>
#include <numbers>
#include <vector>

namespace orvane::metafiles {

namespace {

/// A box on its way to pixels. Where axes stay axes it is one of pixels already, which may lose its
/// last row and column there; else its corners are mapped one by one.
class Frame {
public:
    Frame(const Mapping& mapping, const Box& box) : mapping_(mapping), box_(box) {
        isUpright_ = mapping.whole().isUpright();
        if (!isUpright_) return;
        const Point first = mapping.toDevice({box.left, box.top});
        const Point second = mapping.toDevice({box.right, box.bottom});
        const double edge = mapping.isAdvanced() ? 0 : 1;
        box_ = {std::min(first.x, second.x), std::min(first.y, second.y),
                std::max(first.x, second.x) - edge, std::max(first.y, second.y) - edge};
    }

    const Box& box() const { return box_; }
    bool isEmpty() const { return isUpright_ && (box_.width() < 0 || box_.height() < 0); }
    /// A point of the units, in those of the box.
    Point inside(Point point) const { return isUpright_ ? mapping_.whole().apply(point) : point; }
    /// A distance of the units, in those of the box.
    Point distance(Point size) const {
        if (!isUpright_) return size;
        const Matrix whole = mapping_.whole();
        return {std::abs(whole.xx * size.x), std::abs(whole.yy * size.y)};
    }
    /// A place of the box on the canvas.
    Point toDevice(Point point) const {
        return isUpright_ ? kept(point) : mapping_.toDevice(point);
    }
    /// Whether the hands of a clock go the other way on the canvas.
    bool isMirrored() const { return !isUpright_ && mapping_.whole().determinant() < 0; }

private:
    /// Curves of pixels aren't rounded: a small circle would be no circle.
    static Point kept(Point point) {
        const Point whole = rounded(point);
        return std::abs(whole.x - point.x) <= 1 && std::abs(whole.y - point.y) <= 1 ? point : whole;
    }

    const Mapping& mapping_;
    Box box_;
    bool isUpright_ = false;
};

/// Adds curves along an ellipse from one angle to another, in radians; the hands of a clock go
/// upwards in angles.
void addArc(const Frame& frame, const Box& box, double from, double sweep, Path& path) {
    const Point middle{(box.left + box.right) / 2, (box.top + box.bottom) / 2};
    const double x = box.width() / 2;
    const double y = box.height() / 2;
    const int pieces =
        std::max(1, static_cast<int>(std::ceil(std::abs(sweep) / (std::numbers::pi / 2) - 1e-9)));
    const double step = sweep / pieces;
    const double handle = 4.0 / 3 * std::tan(step / 4);
    for (int i = 0; i < pieces; ++i) {
        const double a = from + i * step;
        const double b = a + step;
        const auto at = [&](double angle, double along) {
            return frame.toDevice({middle.x + x * (std::cos(angle) - along * std::sin(angle)),
                                   middle.y + y * (std::sin(angle) + along * std::cos(angle))});
        };
        path.curveTo(at(a, handle), at(b, -handle), at(b, 0));
    }
}

Point onEllipse(const Frame& frame, const Box& box, double angle) {
    return frame.toDevice({(box.left + box.right) / 2 + box.width() / 2 * std::cos(angle),
                           (box.top + box.bottom) / 2 + box.height() / 2 * std::sin(angle)});
}

constexpr double kQuarter = std::numbers::pi / 2;

/// The angle of a ray through a point, measured on the ellipse made a circle.
double angleOf(const Box& box, Point point) {
    const double x = box.width() == 0 ? 0 : (point.x - (box.left + box.right) / 2) / box.width();
    const double y = box.height() == 0 ? 0 : (point.y - (box.top + box.bottom) / 2) / box.height();
    return std::atan2(y, x);
}

}  // namespace

Path lines(const Mapping& mapping, std::span<const Point> points, bool closed) {
    std::vector<Point> pixels;
    for (const Point& point : points)
        pixels.push_back(mapping.toDevice(point));
    Path path;
    path.addLines(pixels, closed);
    return path;
}

Path curves(const Mapping& mapping, std::span<const Point> points) {
    Path path;
    if (points.empty()) return path;
    path.moveTo(mapping.toDevice(points[0]));
    for (std::size_t i = 1; i + 2 < points.size(); i += 3)
        path.curveTo(mapping.toDevice(points[i]), mapping.toDevice(points[i + 1]),
                     mapping.toDevice(points[i + 2]));
    return path;
}

Path rectangle(const Mapping& mapping, const Box& box) {
    const Frame frame(mapping, box);
    if (frame.isEmpty()) return {};
    const Box& at = frame.box();
    const Point corners[] = {frame.toDevice({at.left, at.top}), frame.toDevice({at.right, at.top}),
                             frame.toDevice({at.right, at.bottom}),
                             frame.toDevice({at.left, at.bottom})};
    Path path;
    path.addLines(corners, true);
    return path;
}

Path roundRectangle(const Mapping& mapping, const Box& box, Point corner) {
    const Frame frame(mapping, box);
    if (frame.isEmpty()) return {};
    const Box at{std::min(frame.box().left, frame.box().right),
                 std::min(frame.box().top, frame.box().bottom),
                 std::max(frame.box().left, frame.box().right),
                 std::max(frame.box().top, frame.box().bottom)};
    const Point size = frame.distance({std::abs(corner.x), std::abs(corner.y)});
    const double w = std::min(size.x, at.width());
    const double h = std::min(size.y, at.height());
    if (w == 0 || h == 0) return rectangle(mapping, box);
    const Box ovals[] = {{at.right - w, at.top, at.right, at.top + h},
                         {at.right - w, at.bottom - h, at.right, at.bottom},
                         {at.left, at.bottom - h, at.left + w, at.bottom},
                         {at.left, at.top, at.left + w, at.top + h}};
    Path path;
    path.moveTo(onEllipse(frame, ovals[0], -kQuarter));
    for (int i = 0; i < 4; ++i) {
        const double from = (i - 1) * kQuarter;
        if (i > 0) path.lineTo(onEllipse(frame, ovals[i], from));
        addArc(frame, ovals[i], from, kQuarter, path);
    }
    path.close();
    return path;
}

Path ellipse(const Mapping& mapping, const Box& box) {
    const Frame frame(mapping, box);
    if (frame.isEmpty()) return {};
    Path path;
    path.moveTo(onEllipse(frame, frame.box(), 0));
    addArc(frame, frame.box(), 0, 4 * kQuarter, path);
    path.close();
    return path;
}

Path arc(const Mapping& mapping, const Box& box, Point start, Point end, bool clockwise,
         ArcEnd close) {
    const Frame frame(mapping, box);
    if (frame.isEmpty()) return {};
    const Box& at = frame.box();
    const double from = angleOf(at, frame.inside(start));
    double sweep = angleOf(at, frame.inside(end)) - from;
    const bool upwards = clockwise != frame.isMirrored();
    if (upwards && sweep <= 0) sweep += 4 * kQuarter;
    if (!upwards && sweep >= 0) sweep -= 4 * kQuarter;
    Path path;
    path.moveTo(onEllipse(frame, at, from));
    addArc(frame, at, from, sweep, path);
    if (close == ArcEnd::pie)
        path.lineTo(frame.toDevice({(at.left + at.right) / 2, (at.top + at.bottom) / 2}));
    if (close != ArcEnd::open) path.close();
    return path;
}

Path angleArc(const Mapping& mapping, Point center, double radius, double start, double sweep) {
    constexpr double kDegree = std::numbers::pi / 180;
    if (!std::isfinite(start) || !std::isfinite(sweep)) return {};
    // Angles are those of the units, so the corners are mapped one by one.
    const auto place = [&](double angle) {
        return mapping.toDevice(
            {center.x + radius * std::cos(angle), center.y - radius * std::sin(angle)});
    };
    const double whole = std::clamp(sweep, -360.0, 360.0) * kDegree;
    const int pieces = std::max(1, static_cast<int>(std::ceil(std::abs(whole) / kQuarter - 1e-9)));
    const double step = whole / pieces;
    const double handle = 4.0 / 3 * std::tan(step / 4) * radius;
    Path path;
    path.moveTo(place(start * kDegree));
    for (int i = 0; i < pieces; ++i) {
        const double a = start * kDegree + i * step;
        const double b = a + step;
        const auto at = [&](double angle, double along) {
            return mapping.toDevice(
                {center.x + radius * std::cos(angle) - along * std::sin(angle),
                 center.y - radius * std::sin(angle) - along * std::cos(angle)});
        };
        path.curveTo(at(a, handle), at(b, -handle), at(b, 0));
    }
    return path;
}

}  // namespace orvane::metafiles
