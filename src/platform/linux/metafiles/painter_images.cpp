#include "platform/linux/metafiles/painter.h"
#include "platform/linux/metafiles/raster_operation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <new>

// Images: stretched to where they go, by the nearest pixel unless the state asks for more.

namespace orvane::metafiles {

namespace {

/// Where the corners of an image go: the way from its pixels to those of the canvas. None when that
/// is a line or a point.
bool wayOf(const Box& from, Point origin, Point right, Point down, cairo_matrix_t& matrix) {
    if (from.width() == 0 || from.height() == 0) return false;
    const double xx = (right.x - origin.x) / from.width();
    const double yx = (right.y - origin.y) / from.width();
    const double xy = (down.x - origin.x) / from.height();
    const double yy = (down.y - origin.y) / from.height();
    cairo_matrix_init(&matrix, xx, yx, xy, yy, origin.x - from.left * xx - from.top * xy,
                      origin.y - from.left * yx - from.top * yy);
    return cairo_matrix_invert(&matrix) == CAIRO_STATUS_SUCCESS;
}

/// A copy in which one colour has become transparent and all others opaque.
SurfaceHandle without(const Image& image, std::uint32_t color) {
    const std::uint32_t stored = (color & 0xFF) << 16 | (color & 0xFF00) | (color >> 16 & 0xFF);
    SurfaceHandle copy(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, image.width, image.height));
    auto* const to = cairo_image_surface_get_data(copy.get());
    if (to == nullptr) throw std::bad_alloc();
    const auto* const from = cairo_image_surface_get_data(image.pixels.get());
    const int stride = cairo_image_surface_get_stride(image.pixels.get());
    for (int y = 0; y < image.height; ++y) {
        const auto* const row =
            reinterpret_cast<const std::uint32_t*>(from + std::ptrdiff_t{y} * stride);
        auto* const copied = reinterpret_cast<std::uint32_t*>(
            to + std::ptrdiff_t{y} * cairo_image_surface_get_stride(copy.get()));
        for (int x = 0; x < image.width; ++x) {
            const std::uint32_t pixel = row[x] & 0xFFFFFF;
            copied[x] = pixel == stored ? 0 : 0xFF000000 | pixel;
        }
    }
    cairo_surface_mark_dirty(copy.get());
    return copy;
}

}  // namespace

Corners Painter::placed(const Transfer& transfer) const {
    const auto& [origin, right, down] = transfer.to;
    const Point at = toDevice(origin);
    if (!transfer.keepsSize) return {at, toDevice(right), toDevice(down)};
    return {at, rounded({at.x + right.x - origin.x, at.y}),
            rounded({at.x, at.y + down.y - origin.y})};
}

void Painter::transfer(const Transfer& transfer) {
    const auto operation = static_cast<std::uint8_t>(transfer.operation >> 16);
    const Corners to = placed(transfer);
    const Point corners[] = {
        to.origin,
        to.right,
        {to.right.x + to.down.x - to.origin.x, to.right.y + to.down.y - to.origin.y},
        to.down};
    Path outline;
    outline.addLines(corners, true);
    const Draw shape = [&](cairo_t* on) {
        outline.put(on, 0);
        cairo_fill(on);
    };
    if (transfer.image == nullptr) {
        if (!usesSource(operation)) paint(operation, state.brush, outline.bounds(), shape);
        return;
    }
    ImageHandle image = transfer.image;
    if (image->isMonochrome)
        image = colored(*image, resolved(state.textColor), resolved(state.backColor));
    if (image == nullptr) throw std::bad_alloc();
    cairo_matrix_t way;
    if (!wayOf(transfer.from, to.origin, to.right, to.down, way)) return;
    const SurfaceHandle pixels =
        transfer.transparent ? without(*image, resolved(*transfer.transparent))
        : transfer.hasAlpha  ? SurfaceHandle(cairo_surface_reference(image->pixels.get()))
                             : opaque(*image);
    const Draw stretch = [&](cairo_t* on) {
        const PatternHandle pattern(cairo_pattern_create_for_surface(pixels.get()));
        cairo_pattern_set_matrix(pattern.get(), &way);
        cairo_pattern_set_filter(pattern.get(),
                                 state.smoothsImages ? CAIRO_FILTER_GOOD : CAIRO_FILTER_NEAREST);
        cairo_set_source(on, pattern.get());
        outline.put(on, 0);
        if (!transfer.opacity || *transfer.opacity == 1) {
            cairo_fill(on);
        } else {
            cairo_clip(on);
            cairo_paint_with_alpha(on, *transfer.opacity);
        }
    };
    const bool isPlain = operation == kSourceOnly || transfer.opacity || transfer.transparent;
    if (isPlain) {
        if (!state.clip.isEmpty()) stretch(context(canvas_.get()).get());
    } else if (!usesSource(operation)) {
        paint(operation, state.brush, outline.bounds(), shape);
    } else if (state.brush.kind != Brush::Kind::none || !usesPattern(operation)) {
        combine(operation, outline.bounds(), stretch, state.brush, shape);
    }
}

namespace {

void addStop(cairo_pattern_t* pattern, double offset, const GradientCorner& corner) {
    cairo_pattern_add_color_stop_rgb(pattern, offset, corner.red / 65280.0, corner.green / 65280.0,
                                     corner.blue / 65280.0);
}

}  // namespace

void Painter::fillGradient(const GradientCorner& first, const GradientCorner& second,
                           bool downwards) {
    const Point from = toDevice(first.at);
    const Point to = toDevice(second.at);
    const ContextHandle on = context(canvas_.get());
    const PatternHandle colors(downwards ? cairo_pattern_create_linear(0, from.y, 0, to.y)
                                         : cairo_pattern_create_linear(from.x, 0, to.x, 0));
    addStop(colors.get(), 0, first);
    addStop(colors.get(), 1, second);
    cairo_set_source(on.get(), colors.get());
    cairo_rectangle(on.get(), from.x, from.y, to.x - from.x, to.y - from.y);
    cairo_fill(on.get());
}

// The drawing library's own meshes are cut into pieces all the way to corners far outside, so the
// colours are mixed here: each pixel's by how near it is to the corners.
void Painter::fillGradient(std::span<const GradientCorner, 3> corners) {
    std::array<Point, 3> at;
    for (std::size_t i = 0; i < 3; ++i)
        at[i] = toDevice(corners[i].at);
    const double area =
        (at[1].y - at[2].y) * (at[0].x - at[2].x) + (at[2].x - at[1].x) * (at[0].y - at[2].y);
    Path path;
    path.addLines(at, true);
    const cairo_rectangle_int_t part = common(state.clip.bounds(), path.bounds());
    if (area == 0 || part.width == 0 || part.height == 0) return;
    const auto mixed = [&](int x, int y) {
        const Point from{x + 0.5 - at[2].x, y + 0.5 - at[2].y};
        const double first = ((at[1].y - at[2].y) * from.x + (at[2].x - at[1].x) * from.y) / area;
        const double second = ((at[2].y - at[0].y) * from.x + (at[0].x - at[2].x) * from.y) / area;
        const auto channel = [&](std::uint16_t GradientCorner::*of) {
            const double value = corners[0].*of * first + corners[1].*of * second +
                                 corners[2].*of * (1 - first - second);
            return static_cast<std::uint32_t>(std::clamp(value / 256, 0.0, 255.0));
        };
        return channel(&GradientCorner::red) << 16 | channel(&GradientCorner::green) << 8 |
               channel(&GradientCorner::blue);
    };
    const SurfaceHandle colors(
        cairo_image_surface_create(CAIRO_FORMAT_RGB24, part.width, part.height));
    unsigned char* const pixels = cairo_image_surface_get_data(colors.get());
    if (pixels == nullptr) throw std::bad_alloc();
    for (int y = 0; y < part.height; ++y) {
        auto* const row = reinterpret_cast<std::uint32_t*>(
            pixels + std::ptrdiff_t{y} * cairo_image_surface_get_stride(colors.get()));
        for (int x = 0; x < part.width; ++x)
            row[x] = mixed(part.x + x, part.y + y);
    }
    cairo_surface_mark_dirty(colors.get());
    const ContextHandle on = context(canvas_.get());
    cairo_set_source_surface(on.get(), colors.get(), part.x, part.y);
    path.put(on.get(), 0);
    cairo_fill(on.get());
}

}  // namespace orvane::metafiles
