#include "platform/linux/metafiles/path.h"

#include <algorithm>
#include <cmath>

namespace orvane::metafiles {

void Path::moveTo(Point to) {
    elements_.push_back({Kind::move, {to}});
}

void Path::lineTo(Point to) {
    elements_.push_back({Kind::line, {to}});
}

void Path::curveTo(Point first, Point second, Point to) {
    elements_.push_back({Kind::curve, {first, second, to}});
}

void Path::close() {
    elements_.push_back({Kind::close, {}});
}

void Path::addLines(std::span<const Point> points, bool closed) {
    if (points.empty()) return;
    moveTo(points.front());
    for (const Point& point : points.subspan(1))
        lineTo(point);
    if (closed) close();
}

void Path::append(const Path& other) {
    elements_.insert(elements_.end(), other.elements_.begin(), other.elements_.end());
}

void Path::continueWith(const Path& figure) {
    if (figure.isEmpty()) return;
    elements_.insert(elements_.end(), figure.elements_.begin() + 1, figure.elements_.end());
}

Path Path::closed() const {
    Path result;
    bool open = false;
    for (const Element& element : elements_) {
        if (element.kind == Kind::move && open) result.close();
        open = element.kind == Kind::line || element.kind == Kind::curve;
        result.elements_.push_back(element);
    }
    if (open) result.close();
    return result;
}

namespace {

/// Less than a pixel, more than the drawing library's smallest step.
constexpr double kLittle = 1.0 / 32;

/// How far to go back along a line between two places.
Point back(Point from, Point to) {
    const double length = std::hypot(to.x - from.x, to.y - from.y);
    if (length == 0) return {};
    return {(from.x - to.x) / length * kLittle, (from.y - to.y) / length * kLittle};
}

}  // namespace

Path Path::withoutLastPixels() const {
    Path result = *this;
    auto& all = result.elements_;
    for (std::size_t i = 0; i + 1 < all.size();) {
        std::size_t end = i + 1;
        while (end < all.size() && (all[end].kind == Kind::line || all[end].kind == Kind::curve))
            ++end;
        const bool isOpen = end == all.size() || all[end].kind != Kind::close;
        if (all[i].kind == Kind::move && end > i + 1 && isOpen) {
            const Element& last = elements_[end - 1];
            const Element& beforeLast = elements_[end - 2];
            const Point from = last.kind == Kind::curve ? last.points[1]
                                                        : beforeLast.points[endOf(beforeLast.kind)];
            const Point first = back(elements_[i].points[0], elements_[i + 1].points[0]);
            Point& begin = all[i].points[0];
            begin = {begin.x + first.x, begin.y + first.y};
            Point& finish = all[end - 1].points[endOf(last.kind)];
            const Point step = back(from, finish);
            finish = {finish.x + step.x, finish.y + step.y};
        }
        i = end;
    }
    return result;
}

void Path::put(cairo_t* context, double offset) const {
    cairo_new_path(context);
    for (const auto& [kind, points] : elements_) {
        const Point end{points[0].x + offset, points[0].y + offset};
        switch (kind) {
        case Kind::move:
            cairo_move_to(context, end.x, end.y);
            break;
        case Kind::line:
            cairo_line_to(context, end.x, end.y);
            break;
        case Kind::curve:
            cairo_curve_to(context, end.x, end.y, points[1].x + offset, points[1].y + offset,
                           points[2].x + offset, points[2].y + offset);
            break;
        case Kind::close:
            cairo_close_path(context);
            break;
        }
    }
}

Box Path::bounds() const {
    Box box;
    bool first = true;
    for (const auto& [kind, points] : elements_) {
        const std::size_t count = kind == Kind::close ? 0 : kind == Kind::curve ? 3 : 1;
        for (std::size_t i = 0; i < count; ++i) {
            const Point point = points[i];
            if (first) box = {point.x, point.y, point.x, point.y};
            first = false;
            box = {std::min(box.left, point.x), std::min(box.top, point.y),
                   std::max(box.right, point.x), std::max(box.bottom, point.y)};
        }
    }
    return box;
}

}  // namespace orvane::metafiles
