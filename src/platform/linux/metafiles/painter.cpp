#include "platform/linux/metafiles/painter.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>

namespace orvane::metafiles {

namespace {

constexpr std::size_t kMostSaved = 1024;

Region regionOf(const OrvaneCanvas& canvas, const OrvaneMetafileArea& area) {
    const auto side = [](double from, double size) {
        return std::pair{std::min(from, from + size), std::max(from, from + size)};
    };
    const auto [left, right] = side(area.x, area.width);
    const auto [top, bottom] = side(area.y, area.height);
    return Region::ofBox({std::max(left, 0.0), std::max(top, 0.0),
                          std::min(right, static_cast<double>(canvas.width)),
                          std::min(bottom, static_cast<double>(canvas.height))});
}

}  // namespace

Painter::Painter(const OrvaneCanvas& canvas, const OrvaneMetafileArea& area, const Mapping& mapping)
    : canvas_(cairo_image_surface_create_for_data(
          canvas.pixels, CAIRO_FORMAT_RGB24, static_cast<int>(canvas.width),
          static_cast<int>(canvas.height), static_cast<int>(canvas.stride))),
      whole_(regionOf(canvas, area)) {
    if (cairo_surface_status(canvas_.get()) != CAIRO_STATUS_SUCCESS) throw std::bad_alloc();
    state.mapping = mapping;
    state.clip = whole_;
}

void Painter::save() {
    if (saved_.size() < kMostSaved) saved_.push_back(state);
}

void Painter::restore(std::int32_t which) {
    const auto count = static_cast<std::int64_t>(saved_.size());
    const std::int64_t index = which < 0 ? count + which : std::int64_t{which} - 1;
    if (index < 0 || index >= count) return;
    state = std::move(saved_[static_cast<std::size_t>(index)]);
    saved_.resize(static_cast<std::size_t>(index));
}

std::uint32_t Painter::resolved(ColorRef color) const {
    if (color >> 24 != 1) return color & 0xFFFFFF;
    const std::size_t index = color & 0xFFFF;
    return index < state.palette.colors.size() ? state.palette.colors[index] & 0xFFFFFF : 0;
}

void Painter::draw(const Path& figure, Parts parts) {
    if (inBracket_) {
        path_.append(figure);
        hasFigure_ = false;
        return;
    }
    if (parts != Parts::outline) fillInside(figure);
    if (parts != Parts::inside) strokeOutline(figure);
}

void Painter::moveTo(Point to) {
    state.current = to;
    hasFigure_ = false;
}

void Painter::startFigure() {
    if (!hasFigure_) path_.moveTo(toDevice(state.current));
    hasFigure_ = true;
}

void Painter::lineTo(Point to) {
    linesTo({&to, 1});
}

void Painter::linesTo(std::span<const Point> points) {
    if (points.empty()) return;
    Path figure;
    if (inBracket_) startFigure();
    else figure.moveTo(toDevice(state.current));
    Path& into = inBracket_ ? path_ : figure;
    for (const Point& point : points)
        into.lineTo(toDevice(point));
    state.current = points.back();
    if (!inBracket_) strokeOutline(figure);
}

void Painter::curvesTo(std::span<const Point> points) {
    if (points.size() < 3) return;
    Path figure;
    if (inBracket_) startFigure();
    else figure.moveTo(toDevice(state.current));
    Path& into = inBracket_ ? path_ : figure;
    for (std::size_t i = 0; i + 2 < points.size(); i += 3) {
        into.curveTo(toDevice(points[i]), toDevice(points[i + 1]), toDevice(points[i + 2]));
        state.current = points[i + 2];
    }
    if (!inBracket_) strokeOutline(figure);
}

void Painter::arcTo(const Path& arc, Point begin, Point end) {
    lineTo(begin);
    if (inBracket_) {
        path_.continueWith(arc);
    } else {
        strokeOutline(arc);
    }
    state.current = end;
}

void Painter::beginPath() {
    abortPath();
    inBracket_ = true;
}

void Painter::abortPath() {
    path_.clear();
    inBracket_ = false;
    hasFigure_ = false;
    isWidened_ = false;
}

void Painter::closeFigure() {
    if (inBracket_ && !path_.isEmpty()) path_.close();
    hasFigure_ = false;
}

void Painter::drawPath(Parts parts) {
    if (inBracket_) return;
    const Path path = std::exchange(path_, {});
    const bool widened = std::exchange(isWidened_, false);
    if (widened && parts != Parts::outline) {
        // A widened path is the outline of what the pen would have drawn.
        const Box bounds = path.bounds();
        const double width = penWidth();
        paint(rop2(), state.brush, outset(bounds, width * state.miterLimit + 2),
              [&](cairo_t* context) {
                  setPen(context, bounds, width);
                  path.put(context, 0.5);
                  cairo_stroke(context);
              });
        return;
    }
    draw(path, parts);
}

void Painter::clipToPath(Region::Mode mode) {
    if (inBracket_) return;
    const Path path = std::exchange(path_, {});
    isWidened_ = false;
    intersectClip(Region::ofPath(path.closed(), state.fillRule, whole_.bounds()), mode);
}

void Painter::intersectClip(const Region& region, Region::Mode mode) {
    setClip(state.clip.combined(region, mode));
}

void Painter::moveClip(Point distance) {
    const Point pixels = rounded(distance);
    setClip(state.clip.moved(static_cast<int>(pixels.x), static_cast<int>(pixels.y)));
}

void Painter::setPixel(Point at, ColorRef color) {
    const Point pixel = toDevice(at);
    Brush brush;
    brush.color = color;
    const Region region = Region::ofBox({pixel.x, pixel.y, pixel.x + 1, pixel.y + 1});
    fill(region, brush);
}

}  // namespace orvane::metafiles
