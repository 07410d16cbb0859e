#include "platform/linux/metafiles/painter.h"
#include "platform/linux/metafiles/raster_operation.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <new>

// How figures get their pixels: pens and brushes as sources of the drawing library, and the raster
// operations that it lacks.

namespace orvane::metafiles {

namespace {

/// The sixteen ways to combine a pen with what is there, as ternary operations.
constexpr std::array<std::uint8_t, 17> kRop2 = {0xF0, 0x00, 0x05, 0x0A, 0x0F, 0x50,
                                                0x55, 0x5A, 0x5F, 0xA0, 0xA5, 0xAA,
                                                0xAF, 0xF0, 0xF5, 0xFA, 0xFF};

/// Dashes would be made one by one along lines that leave far beyond the picture.
constexpr double kFarthestDashed = 32768;

void setColor(cairo_t* context, std::uint32_t color) {
    cairo_set_source_rgb(context, (color & 0xFF) / 255.0, (color >> 8 & 0xFF) / 255.0,
                         (color >> 16 & 0xFF) / 255.0);
}

/// Lengths of dashes and gaps: of simple pens in pixels, of geometric ones in widths.
std::vector<double> dashesOf(const Pen& pen, double width, double scale) {
    static constexpr double kSimple[][6] = {{18, 6}, {3, 3}, {9, 6, 3, 6}, {9, 3, 3, 3, 3, 3}};
    static constexpr double kGeometric[][6] = {{3, 1}, {1, 1}, {3, 1, 1, 1}, {3, 1, 1, 1, 1, 1}};
    static constexpr std::size_t kCounts[] = {2, 2, 4, 6};
    std::vector<double> dashes;
    if (pen.style == PenStyle::alternate) return {1, 1};
    if (pen.style == PenStyle::user) {
        for (const double dash : pen.dashes)
            dashes.push_back(pen.kind == PenKind::geometric ? dash * scale : dash);
        // A dash of nothing at all would never end.
        const bool ends =
            std::any_of(dashes.begin(), dashes.end(), [](auto d) { return d >= 0.5; });
        return ends ? dashes : std::vector<double>{};
    }
    if (pen.style < PenStyle::dash || pen.style > PenStyle::dashDotDot) return {};
    // A simple pen of more than a pixel has no dashes.
    if (pen.kind == PenKind::simple && width > 1) return {};
    const auto index = static_cast<std::size_t>(pen.style) - 1;
    const bool grows = pen.kind == PenKind::geometric;
    for (std::size_t i = 0; i < kCounts[index]; ++i)
        dashes.push_back(grows ? kGeometric[index][i] * width : kSimple[index][i]);
    return dashes;
}

cairo_line_cap_t capOf(const Pen& pen, double width) {
    if (width <= 1 || pen.end == PenEnd::flat) return CAIRO_LINE_CAP_BUTT;
    return pen.end == PenEnd::square ? CAIRO_LINE_CAP_SQUARE : CAIRO_LINE_CAP_ROUND;
}

cairo_line_join_t joinOf(const Pen& pen, double width) {
    // Round joins of thin lines fill a gap of one pixel between them.
    if (pen.join == PenJoin::miter || width <= 1) return CAIRO_LINE_JOIN_MITER;
    return pen.join == PenJoin::bevel ? CAIRO_LINE_JOIN_BEVEL : CAIRO_LINE_JOIN_ROUND;
}

const std::uint32_t* pixelsOf(cairo_surface_t* surface, int y) {
    return reinterpret_cast<const std::uint32_t*>(cairo_image_surface_get_data(surface) +
                                                  std::ptrdiff_t{y} *
                                                      cairo_image_surface_get_stride(surface));
}

}  // namespace

cairo_rectangle_int_t common(const cairo_rectangle_int_t& clip, const Box& bounds) {
    const int left = std::max(clip.x, static_cast<int>(std::floor(bounds.left)));
    const int top = std::max(clip.y, static_cast<int>(std::floor(bounds.top)));
    const int right = std::min(clip.x + clip.width, static_cast<int>(std::ceil(bounds.right)));
    const int bottom = std::min(clip.y + clip.height, static_cast<int>(std::ceil(bounds.bottom)));
    return {left, top, std::max(right - left, 0), std::max(bottom - top, 0)};
}

Box outset(const Box& box, double by) {
    return {box.left - by, box.top - by, box.right + by, box.bottom + by};
}

SurfaceHandle opaque(const Image& image) {
    return SurfaceHandle(cairo_image_surface_create_for_data(
        cairo_image_surface_get_data(image.pixels.get()), CAIRO_FORMAT_RGB24, image.width,
        image.height, cairo_image_surface_get_stride(image.pixels.get())));
}

std::uint8_t Painter::rop2() const {
    return kRop2[state.rop2 < kRop2.size() ? state.rop2 : 0];
}

ContextHandle Painter::context(cairo_surface_t* surface) const {
    ContextHandle context(cairo_create(surface));
    cairo_set_antialias(context.get(), CAIRO_ANTIALIAS_NONE);
    cairo_set_tolerance(context.get(), 0.25);
    state.clip.clip(context.get());
    cairo_set_fill_rule(context.get(), state.fillRule);
    return context;
}

// A hatch is a tile of eight pixels; the background shows where the mode is opaque.
PatternHandle Painter::hatching(const Brush& brush) const {
    static constexpr std::array<std::array<std::uint8_t, 8>, 6> kTiles = {{
        {0, 0, 0, 0xFF, 0, 0, 0, 0},
        {0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08},
        {0x80, 0x40, 0x20, 0x10, 0x08, 0x04, 0x02, 0x01},
        {0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80},
        {0x08, 0x08, 0x08, 0xFF, 0x08, 0x08, 0x08, 0x08},
        {0x81, 0x42, 0x24, 0x18, 0x18, 0x24, 0x42, 0x81},
    }};
    const auto& tile = kTiles[brush.hatch < kTiles.size() ? brush.hatch : 0];
    const SurfaceHandle surface(cairo_image_surface_create(CAIRO_FORMAT_ARGB32, 8, 8));
    const auto premultiplied = [](std::uint32_t color) {
        return 0xFF000000 | (color & 0xFF) << 16 | (color & 0xFF00) | (color >> 16 & 0xFF);
    };
    const std::uint32_t line = premultiplied(resolved(brush.color));
    const std::uint32_t gap = state.isOpaque ? premultiplied(resolved(state.backColor)) : 0;
    for (int y = 0; y < 8; ++y) {
        auto* const row = const_cast<std::uint32_t*>(pixelsOf(surface.get(), y));
        for (int x = 0; x < 8; ++x)
            row[x] = (tile[std::size_t(y)] << x & 0x80) != 0 ? line : gap;
    }
    cairo_surface_mark_dirty(surface.get());
    return PatternHandle(cairo_pattern_create_for_surface(surface.get()));
}

void Painter::setInk(cairo_t* context, const Brush& brush) const {
    if (brush.kind == Brush::Kind::solid || (brush.kind == Brush::Kind::image && !brush.image)) {
        setColor(context, resolved(brush.color));
        return;
    }
    PatternHandle pattern;
    if (brush.kind == Brush::Kind::hatched) {
        pattern = hatching(brush);
    } else {
        ImageHandle image = brush.image;
        if (image->isMonochrome)
            image = colored(*image, resolved(state.textColor), resolved(state.backColor));
        if (image == nullptr) throw std::bad_alloc();
        // The copy is the context's: `image` may be gone when it is drawn with.
        const SurfaceHandle tile(
            cairo_image_surface_create(CAIRO_FORMAT_RGB24, image->width, image->height));
        const ContextHandle copy(cairo_create(tile.get()));
        cairo_set_source_surface(copy.get(), opaque(*image).get(), 0, 0);
        cairo_paint(copy.get());
        pattern.reset(cairo_pattern_create_for_surface(tile.get()));
    }
    cairo_pattern_set_extend(pattern.get(), CAIRO_EXTEND_REPEAT);
    cairo_pattern_set_filter(pattern.get(), CAIRO_FILTER_NEAREST);
    cairo_matrix_t matrix;
    cairo_matrix_init_translate(&matrix, -state.brushOrigin.x, -state.brushOrigin.y);
    cairo_pattern_set_matrix(pattern.get(), &matrix);
    cairo_set_source(context, pattern.get());
}

void Painter::paint(std::uint8_t operation, const Brush& brush, const Box& bounds,
                    const Draw& shape) {
    if (operation == kNoOperation || state.clip.isEmpty()) return;
    if (brush.kind == Brush::Kind::none && usesPattern(operation)) return;
    if (operation == kPatternOnly) {
        const ContextHandle direct = context(canvas_.get());
        setInk(direct.get(), brush);
        shape(direct.get());
        return;
    }
    const Brush solid;
    const Brush& ink = brush.kind == Brush::Kind::none ? solid : brush;
    combine(operation, bounds, nullptr, ink, shape);
}

// What is drawn goes to a layer of its own first; where it has pixels they are combined with those
// of the canvas.
void Painter::combine(std::uint8_t operation, const Box& bounds, const Draw& image,
                      const Brush& pattern, const Draw& shape) {
    const cairo_rectangle_int_t part = common(state.clip.bounds(), bounds);
    if (part.width == 0 || part.height == 0) return;
    const auto layer = [&](const Draw& draw) {
        SurfaceHandle surface(
            cairo_image_surface_create(CAIRO_FORMAT_ARGB32, part.width, part.height));
        cairo_surface_set_device_offset(surface.get(), -part.x, -part.y);
        draw(context(surface.get()).get());
        cairo_surface_flush(surface.get());
        if (cairo_image_surface_get_data(surface.get()) == nullptr) throw std::bad_alloc();
        return surface;
    };
    const SurfaceHandle inks = layer([&](cairo_t* to) {
        if (pattern.kind == Brush::Kind::none) cairo_set_source_rgb(to, 0, 0, 0);
        else setInk(to, pattern);
        shape(to);
    });
    const SurfaceHandle images = image ? layer(image) : nullptr;
    cairo_surface_flush(canvas_.get());
    for (int y = 0; y < part.height; ++y) {
        const std::uint32_t* const ink = pixelsOf(inks.get(), y);
        const std::uint32_t* const source = images ? pixelsOf(images.get(), y) : ink;
        auto* const to = const_cast<std::uint32_t*>(pixelsOf(canvas_.get(), part.y + y)) + part.x;
        for (int x = 0; x < part.width; ++x) {
            // Gaps of a hatch stay as they are.
            if (ink[x] >> 24 == 0 || source[x] >> 24 == 0) continue;
            to[x] = applied(operation, ink[x], source[x], to[x]) & 0xFFFFFF;
        }
    }
    cairo_surface_mark_dirty(canvas_.get());
}

void Painter::fillInside(const Path& figure) {
    paint(rop2(), state.brush, figure.bounds(), [&](cairo_t* context) {
        figure.put(context, 0);
        cairo_fill(context);
    });
}

double Painter::penWidth() const {
    if (state.pen.kind == PenKind::cosmetic) return std::max(1.0, state.pen.width);
    const Matrix whole = state.mapping.whole();
    const double width = std::abs(state.pen.width) * std::hypot(whole.xx, whole.yx);
    return std::isfinite(width) ? std::clamp(std::floor(width + 0.5), 1.0, 32767.0) : 1;
}

void Painter::setPen(cairo_t* context, const Box& bounds, double width) const {
    const Pen& pen = state.pen;
    cairo_set_line_width(context, width);
    cairo_set_line_cap(context, capOf(pen, width));
    cairo_set_line_join(context, joinOf(pen, width));
    cairo_set_miter_limit(context, std::max(1.0, state.miterLimit));
    const Matrix whole = state.mapping.whole();
    const std::vector<double> dashes = dashesOf(pen, width, std::hypot(whole.xx, whole.yx));
    if (dashes.empty() || bounds.width() > kFarthestDashed || bounds.height() > kFarthestDashed)
        return;
    cairo_set_dash(context, dashes.data(), static_cast<int>(dashes.size()), 0);
}

void Painter::strokeOutline(const Path& figure) {
    const Pen& pen = state.pen;
    if (pen.style == PenStyle::none) return;
    const double width = penWidth();
    const Path line = width <= 1 ? figure.withoutLastPixels() : figure;
    const Box bounds = figure.bounds();
    const Box reach = outset(bounds, width * std::max(1.0, state.miterLimit) + 2);
    const auto stroke = [&](ColorRef color, bool dashed) {
        Brush ink;
        ink.color = color;
        paint(rop2(), ink, reach, [&](cairo_t* context) {
            setPen(context, bounds, width);
            if (!dashed) cairo_set_dash(context, nullptr, 0, 0);
            // A line runs through the middle of its pixels.
            line.put(context, 0.5);
            cairo_stroke(context);
        });
    };
    // The gaps of a simple pen show the background colour.
    const bool hasGaps = pen.style >= PenStyle::dash && pen.style <= PenStyle::dashDotDot;
    if (hasGaps && pen.kind == PenKind::simple && state.isOpaque && width <= 1)
        stroke(state.backColor, false);
    stroke(pen.color, true);
}

void Painter::fill(const Region& region, const Brush& brush) {
    const cairo_rectangle_int_t bounds = region.bounds();
    const Box box{double(bounds.x), double(bounds.y), double(bounds.x) + bounds.width,
                  double(bounds.y) + bounds.height};
    paint(rop2(), brush, box, [&](cairo_t* context) {
        cairo_new_path(context);
        region.put(context);
        cairo_fill(context);
    });
}

void Painter::invert(const Region& region) {
    const std::uint32_t before = state.rop2;
    state.rop2 = 6;
    fill(region, {});
    state.rop2 = before;
}

}  // namespace orvane::metafiles
