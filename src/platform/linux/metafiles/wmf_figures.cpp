#include "platform/linux/metafiles/figures.h"
#include "platform/linux/metafiles/wmf_fields.h"
#include "platform/linux/metafiles/wmf_player.h"

#include <algorithm>

// Records that draw figures.

namespace orvane::metafiles {

namespace {

/// Points of an array stand as they do in memory, x in front of y.
std::vector<Point> pointsAt(const codecs::Reader& r, std::uint64_t offset, std::size_t count) {
    std::vector<Point> points;
    if (!r.holds(offset, std::uint64_t{count} * 4)) return points;
    for (std::size_t i = 0; i < count; ++i, offset += 4)
        points.push_back({double(r.i16(offset)), double(r.i16(offset + 2))});
    return points;
}

}  // namespace

void WmfPlayer::moveTo(const Reader& r) {
    painter_.moveTo(pointAt(r, 0));
}

void WmfPlayer::lineTo(const Reader& r) {
    painter_.lineTo(pointAt(r, 0));
}

void WmfPlayer::setPixel(const Reader& r) {
    painter_.setPixel(pointAt(r, 4), r.u32(0));
}

void WmfPlayer::rectangle(const Reader& r) {
    painter_.draw(metafiles::rectangle(painter_.state.mapping, boxAt(r, 0)), Parts::both);
}

void WmfPlayer::ellipse(const Reader& r) {
    painter_.draw(metafiles::ellipse(painter_.state.mapping, boxAt(r, 0)), Parts::both);
}

void WmfPlayer::roundRect(const Reader& r) {
    painter_.draw(roundRectangle(painter_.state.mapping, boxAt(r, 4), pointAt(r, 0)), Parts::both);
}

void WmfPlayer::drawArc(const Reader& r, ArcEnd end) {
    const Path path = metafiles::arc(painter_.state.mapping, boxAt(r, 8), pointAt(r, 4),
                                     pointAt(r, 0), false, end);
    painter_.draw(path, end == ArcEnd::open ? Parts::outline : Parts::both);
}

void WmfPlayer::arc(const Reader& r) {
    drawArc(r, ArcEnd::open);
}

void WmfPlayer::pie(const Reader& r) {
    drawArc(r, ArcEnd::pie);
}

void WmfPlayer::chord(const Reader& r) {
    drawArc(r, ArcEnd::chord);
}

void WmfPlayer::polygon(const Reader& r) {
    painter_.draw(lines(painter_.state.mapping, pointsAt(r, 2, r.u16(0)), true), Parts::both);
}

void WmfPlayer::polyline(const Reader& r) {
    painter_.draw(lines(painter_.state.mapping, pointsAt(r, 2, r.u16(0)), false), Parts::outline);
}

void WmfPlayer::polyPolygon(const Reader& r) {
    const std::size_t count = r.u16(0);
    std::uint64_t at = 2 + std::uint64_t{count} * 2;
    Path path;
    for (std::size_t i = 0; i < count && at < r.size(); ++i) {
        const std::size_t corners = r.u16(2 + std::uint64_t{i} * 2);
        path.append(lines(painter_.state.mapping, pointsAt(r, at, corners), true));
        at += std::uint64_t{corners} * 4;
    }
    painter_.draw(path, Parts::both);
}

void WmfPlayer::floodFill(const Reader& r) {
    painter_.floodFill(pointAt(r, 4), r.u32(0), true);
}

void WmfPlayer::extFloodFill(const Reader& r) {
    painter_.floodFill(pointAt(r, 6), r.u32(2), r.u16(0) == 0);
}

// Writers disagree on which of the region and the brush comes first; their kinds tell.
void WmfPlayer::fillRegion(const Reader& r) {
    const unsigned first = isRegion(r.u16(0)) ? 0 : 2;
    painter_.fill(regionOf(painter_.state.mapping, regionAt(r.u16(first))),
                  brushAt(r.u16(2 - first)));
}

void WmfPlayer::frameRegion(const Reader& r) {
    const bool isFirst = isRegion(r.u16(0));
    const Point extent = pointAt(r, isFirst ? 4 : 0);
    const Matrix whole = painter_.state.mapping.whole();
    const Point size = rounded({extent.x * whole.xx, extent.y * whole.yy});
    const Region region = regionOf(painter_.state.mapping, regionAt(r.u16(isFirst ? 0 : 6)));
    painter_.fill(region.frame(std::max(1, static_cast<int>(std::abs(size.x))),
                               std::max(1, static_cast<int>(std::abs(size.y)))),
                  brushAt(r.u16(isFirst ? 2 : 4)));
}

void WmfPlayer::invertRegion(const Reader& r) {
    painter_.invert(regionOf(painter_.state.mapping, regionAt(r.u16(0))));
}

void WmfPlayer::paintRegion(const Reader& r) {
    painter_.fill(regionOf(painter_.state.mapping, regionAt(r.u16(0))), painter_.state.brush);
}

}  // namespace orvane::metafiles
