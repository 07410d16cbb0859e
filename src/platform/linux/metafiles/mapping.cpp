#include "platform/linux/metafiles/mapping.h"

#include <algorithm>
#include <cmath>

namespace orvane::metafiles {

namespace {

/// The drawing library counts in 1/256 pixels of 32 bits; a sum of two must fit, too.
constexpr double kFarthest = 1 << 20;

double kept(double value) {
    if (std::isnan(value)) return 0;
    return std::clamp(std::floor(value + 0.5), -kFarthest, kFarthest);
}

/// Units in a millimetre of the modes with a unit of length, in their order from lowMetric.
constexpr double kUnitsPerMillimetre[] = {10, 100, 100 / 25.4, 1000 / 25.4, 1440 / 25.4};

Point scaled(Point extent, Point numerator, Point denominator) {
    if (denominator.x == 0 || denominator.y == 0) return extent;
    const Point result{std::trunc(extent.x * numerator.x / denominator.x),
                       std::trunc(extent.y * numerator.y / denominator.y)};
    return {result.x == 0 ? 1 : result.x, result.y == 0 ? 1 : result.y};
}

}  // namespace

Point rounded(Point device) {
    return {kept(device.x), kept(device.y)};
}

void Mapping::setMode(std::int32_t mode) {
    if (mode < 1 || mode > 8) return;
    mode_ = static_cast<MapMode>(mode);
    if (mode_ == MapMode::anisotropic) return;
    if (mode_ == MapMode::text) {
        windowExtent_ = {1, 1};
        viewportExtent_ = {1, 1};
        return;
    }
    // The isotropic mode begins as the one of tenths of a millimetre.
    const int unit = mode_ == MapMode::isotropic ? 0 : mode - static_cast<int>(MapMode::lowMetric);
    const double side = 1000 * kUnitsPerMillimetre[unit];
    windowExtent_ = {side, side};
    viewportExtent_ = {1000 * device_.pixelsPerMillimetreX, -1000 * device_.pixelsPerMillimetreY};
}

void Mapping::setWindowExtent(Point extent) {
    if (!takesExtents() || extent.x == 0 || extent.y == 0) return;
    windowExtent_ = extent;
    keepShape();
}

void Mapping::setViewportExtent(Point extent) {
    if (!takesExtents() || extent.x == 0 || extent.y == 0) return;
    viewportExtent_ = extent;
    keepShape();
}

void Mapping::scaleWindowExtent(Point numerator, Point denominator) {
    setWindowExtent(scaled(windowExtent_, numerator, denominator));
}

void Mapping::scaleViewportExtent(Point numerator, Point denominator) {
    setViewportExtent(scaled(viewportExtent_, numerator, denominator));
}

// Isotropic: the longer side of the viewport shrinks until a unit is as long both ways.
void Mapping::keepShape() {
    if (mode_ != MapMode::isotropic) return;
    const double x = std::abs(viewportExtent_.x / device_.pixelsPerMillimetreX / windowExtent_.x);
    const double y = std::abs(viewportExtent_.y / device_.pixelsPerMillimetreY / windowExtent_.y);
    if (x > y) viewportExtent_.x *= y / x;
    else if (y > x) viewportExtent_.y *= x / y;
}

Matrix Mapping::page() const {
    const double x = viewportExtent_.x / windowExtent_.x;
    const double y = viewportExtent_.y / windowExtent_.y;
    return {x,
            0,
            0,
            y,
            viewportOrigin_.x - windowOrigin_.x * x,
            viewportOrigin_.y - windowOrigin_.y * y};
}

Matrix Mapping::text() const {
    const Matrix paper = page();
    const Matrix upright{std::abs(paper.xx), 0, 0, std::abs(paper.yy), 0, 0};
    const Matrix end{std::abs(last_.xx), 0, 0, std::abs(last_.yy), 0, 0};
    return Matrix{world_.xx, world_.yx, world_.xy, world_.yy, 0, 0}.then(upright).then(end);
}

Point Mapping::toDevice(Point point) const {
    return rounded(whole().apply(point));
}

}  // namespace orvane::metafiles
