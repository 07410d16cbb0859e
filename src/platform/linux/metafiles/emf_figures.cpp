#include "platform/linux/metafiles/emf_fields.h"
#include "platform/linux/metafiles/emf_player.h"
#include "platform/linux/metafiles/figures.h"

#include <algorithm>
#include <array>
#include <cmath>

// Records that draw figures.

namespace orvane::metafiles {

namespace {

constexpr std::uint64_t pointBytes(bool small) {
    return small ? 4 : 8;
}

/// Points of 16 or 32 bits; none when the record doesn't hold them all.
std::vector<Point> pointsAt(const codecs::Reader& r, std::uint64_t offset, std::uint64_t count,
                            bool small) {
    std::vector<Point> points;
    if (!r.holds(offset, count * pointBytes(small))) return points;
    points.reserve(count);
    for (std::uint64_t i = 0; i < count; ++i, offset += pointBytes(small))
        points.push_back(small ? Point{double(r.i16(offset)), double(r.i16(offset + 2))}
                               : emfPointAt(r, offset));
    return points;
}

/// The points of a record that has one array: bounds, count, points.
std::vector<Point> onlyPoints(const codecs::Reader& r, bool small) {
    return pointsAt(r, 28, r.u32(24), small);
}

}  // namespace

void EmfPlayer::moveTo(const Reader& r) {
    painter_.moveTo(emfPointAt(r, 8));
}

void EmfPlayer::lineTo(const Reader& r) {
    painter_.lineTo(emfPointAt(r, 8));
}

void EmfPlayer::setPixel(const Reader& r) {
    painter_.setPixel(emfPointAt(r, 8), r.u32(16));
}

void EmfPlayer::rectangle(const Reader& r) {
    painter_.draw(metafiles::rectangle(painter_.state.mapping, emfBoxAt(r, 8)), Parts::both);
}

void EmfPlayer::ellipse(const Reader& r) {
    painter_.draw(metafiles::ellipse(painter_.state.mapping, emfBoxAt(r, 8)), Parts::both);
}

void EmfPlayer::roundRect(const Reader& r) {
    painter_.draw(roundRectangle(painter_.state.mapping, emfBoxAt(r, 8), emfPointAt(r, 24)),
                  Parts::both);
}

void EmfPlayer::drawArc(const Reader& r, ArcEnd end) {
    const State& state = painter_.state;
    const Path path = metafiles::arc(state.mapping, emfBoxAt(r, 8), emfPointAt(r, 24),
                                     emfPointAt(r, 32), state.isClockwise, end);
    painter_.draw(path, end == ArcEnd::open ? Parts::outline : Parts::both);
}

void EmfPlayer::arc(const Reader& r) {
    drawArc(r, ArcEnd::open);
}

void EmfPlayer::chord(const Reader& r) {
    drawArc(r, ArcEnd::chord);
}

void EmfPlayer::pie(const Reader& r) {
    drawArc(r, ArcEnd::pie);
}

// A line leads to where the arc begins, and the position is where it ends.
void EmfPlayer::arcTo(const Reader& r) {
    const Box box = emfBoxAt(r, 8);
    const auto onArc = [&](Point ray) {
        const Point middle{(box.left + box.right) / 2, (box.top + box.bottom) / 2};
        const double x = box.width() == 0 ? 0 : (ray.x - middle.x) / box.width();
        const double y = box.height() == 0 ? 0 : (ray.y - middle.y) / box.height();
        const double angle = std::atan2(y, x);
        return Point{middle.x + box.width() / 2 * std::cos(angle),
                     middle.y + box.height() / 2 * std::sin(angle)};
    };
    const Point start = emfPointAt(r, 24);
    const Point end = emfPointAt(r, 32);
    const State& state = painter_.state;
    const Path path =
        metafiles::arc(state.mapping, box, start, end, state.isClockwise, ArcEnd::open);
    painter_.arcTo(path, onArc(start), onArc(end));
}

void EmfPlayer::angleArc(const Reader& r) {
    constexpr double kDegree = 3.14159265358979323846 / 180;
    const Point center = emfPointAt(r, 8);
    const double radius = r.u32(16);
    const double start = emfFloatAt(r, 20);
    const double sweep = emfFloatAt(r, 24);
    if (!std::isfinite(start) || !std::isfinite(sweep)) return;
    const auto at = [&](double angle) {
        return Point{center.x + radius * std::cos(angle * kDegree),
                     center.y - radius * std::sin(angle * kDegree)};
    };
    painter_.arcTo(metafiles::angleArc(painter_.state.mapping, center, radius, start, sweep),
                   at(start), at(start + sweep));
}

void EmfPlayer::extFloodFill(const Reader& r) {
    painter_.floodFill(emfPointAt(r, 8), r.u32(16), r.u32(20) == 0);
}

template <bool kSmall>
void EmfPlayer::polyBezier(const Reader& r) {
    painter_.draw(curves(painter_.state.mapping, onlyPoints(r, kSmall)), Parts::outline);
}

template <bool kSmall>
void EmfPlayer::polygon(const Reader& r) {
    painter_.draw(lines(painter_.state.mapping, onlyPoints(r, kSmall), true), Parts::both);
}

template <bool kSmall>
void EmfPlayer::polyline(const Reader& r) {
    painter_.draw(lines(painter_.state.mapping, onlyPoints(r, kSmall), false), Parts::outline);
}

template <bool kSmall>
void EmfPlayer::polyBezierTo(const Reader& r) {
    painter_.curvesTo(onlyPoints(r, kSmall));
}

template <bool kSmall>
void EmfPlayer::polylineTo(const Reader& r) {
    painter_.linesTo(onlyPoints(r, kSmall));
}

void EmfPlayer::polyPoly(const Reader& r, bool small, bool closed) {
    const std::uint64_t count = r.u32(24);
    if (!r.holds(32, count * 4)) return;
    std::uint64_t at = 32 + count * 4;
    Path path;
    for (std::uint64_t i = 0; i < count && at < r.size(); ++i) {
        const std::uint64_t points = r.u32(32 + i * 4);
        path.append(lines(painter_.state.mapping, pointsAt(r, at, points, small), closed));
        at += points * pointBytes(small);
    }
    painter_.draw(path, closed ? Parts::both : Parts::outline);
}

template <bool kSmall>
void EmfPlayer::polyPolyline(const Reader& r) {
    polyPoly(r, kSmall, false);
}

template <bool kSmall>
void EmfPlayer::polyPolygon(const Reader& r) {
    polyPoly(r, kSmall, true);
}

// Each point has a type: 6 moves, 2 is the end of a line, three of 4 are a curve; 1 closes.
template <bool kSmall>
void EmfPlayer::polyDraw(const Reader& r) {
    const std::vector<Point> points = onlyPoints(r, kSmall);
    const std::uint64_t types = 28 + points.size() * pointBytes(kSmall);
    Point begin = painter_.state.current;
    for (std::size_t i = 0; i < points.size(); ++i) {
        std::uint8_t type = r.u8(types + i);
        if ((type & 6) == 6) {
            painter_.moveTo(points[i]);
            begin = points[i];
        } else if ((type & 2) != 0) {
            painter_.lineTo(points[i]);
        } else if ((type & 4) != 0 && i + 2 < points.size()) {
            painter_.curvesTo(std::span(points).subspan(i, 3));
            i += 2;
            type = r.u8(types + i);
        }
        if ((type & 1) != 0) painter_.lineTo(begin);
    }
}

template void EmfPlayer::polyBezier<false>(const Reader&);
template void EmfPlayer::polyBezier<true>(const Reader&);
template void EmfPlayer::polygon<false>(const Reader&);
template void EmfPlayer::polygon<true>(const Reader&);
template void EmfPlayer::polyline<false>(const Reader&);
template void EmfPlayer::polyline<true>(const Reader&);
template void EmfPlayer::polyBezierTo<false>(const Reader&);
template void EmfPlayer::polyBezierTo<true>(const Reader&);
template void EmfPlayer::polylineTo<false>(const Reader&);
template void EmfPlayer::polylineTo<true>(const Reader&);
template void EmfPlayer::polyPolyline<false>(const Reader&);
template void EmfPlayer::polyPolyline<true>(const Reader&);
template void EmfPlayer::polyPolygon<false>(const Reader&);
template void EmfPlayer::polyPolygon<true>(const Reader&);
template void EmfPlayer::polyDraw<false>(const Reader&);
template void EmfPlayer::polyDraw<true>(const Reader&);

void EmfPlayer::beginPath(const Reader&) {
    painter_.beginPath();
}

void EmfPlayer::endPath(const Reader&) {
    painter_.endPath();
}

void EmfPlayer::closeFigure(const Reader&) {
    painter_.closeFigure();
}

void EmfPlayer::fillPath(const Reader&) {
    painter_.drawPath(Parts::inside);
}

void EmfPlayer::strokeAndFillPath(const Reader&) {
    painter_.drawPath(Parts::both);
}

void EmfPlayer::strokePath(const Reader&) {
    painter_.drawPath(Parts::outline);
}

void EmfPlayer::widenPath(const Reader&) {
    painter_.widenPath();
}

void EmfPlayer::abortPath(const Reader&) {
    painter_.abortPath();
}

// A region: a header of 32 bytes with the count of its boxes, and the boxes, which are pixels of
// the device that the metafile was made on.
Region EmfPlayer::regionAt(const Reader& r, std::uint64_t at) const {
    const std::uint64_t count = r.u32(at + 8);
    std::vector<Box> boxes;
    for (std::uint64_t i = 0; i < count && r.holds(at + 32 + i * 16, 16); ++i)
        boxes.push_back(emfBoxAt(r, at + 32 + i * 16));
    return regionOf(painter_.state.mapping.lastOnly(), boxes);
}

void EmfPlayer::fillRgn(const Reader& r) {
    painter_.fill(regionAt(r, 32), brushAt(r.u32(28)));
}

void EmfPlayer::frameRgn(const Reader& r) {
    const Matrix whole = painter_.state.mapping.whole();
    const Point size = rounded({r.i32(32) * whole.xx, r.i32(36) * whole.yy});
    painter_.fill(regionAt(r, 40).frame(std::max(1, static_cast<int>(std::abs(size.x))),
                                        std::max(1, static_cast<int>(std::abs(size.y)))),
                  brushAt(r.u32(28)));
}

void EmfPlayer::invertRgn(const Reader& r) {
    painter_.invert(regionAt(r, 28));
}

void EmfPlayer::paintRgn(const Reader& r) {
    painter_.fill(regionAt(r, 28), painter_.state.brush);
}

// Corners of 16 bytes (a point and four channels), then pairs or triples of their numbers.
void EmfPlayer::gradientFill(const Reader& r) {
    const std::uint64_t corners = r.u32(24);
    const std::uint64_t meshes = r.u32(28);
    const std::uint32_t mode = r.u32(32);
    if (mode > 2 || !r.holds(36, corners * 16)) return;
    const auto corner = [&](std::uint64_t numberAt) {
        const std::uint64_t at = 36 + std::min<std::uint64_t>(r.u32(numberAt), corners - 1) * 16;
        return GradientCorner{emfPointAt(r, at), r.u16(at + 8), r.u16(at + 10), r.u16(at + 12)};
    };
    const std::uint64_t meshBytes = mode == 2 ? 12 : 8;
    for (std::uint64_t i = 0; i < meshes && corners > 0; ++i) {
        const std::uint64_t at = 36 + corners * 16 + i * meshBytes;
        if (!r.holds(at, meshBytes)) return;
        if (mode == 2) {
            const std::array triangle{corner(at), corner(at + 4), corner(at + 8)};
            painter_.fillGradient(triangle);
        } else {
            painter_.fillGradient(corner(at), corner(at + 4), mode == 1);
        }
    }
}

}  // namespace orvane::metafiles
