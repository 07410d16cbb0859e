#include "platform/linux/metafiles/region.h"

#include "platform/linux/metafiles/cairo_handles.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <vector>

namespace orvane::metafiles {

namespace {

/// Any further, and a sum of two edges might wrap.
int edge(double value) {
    return static_cast<int>(std::clamp(std::floor(value + 0.5), -1e8, 1e8));
}

/// The runs of pixels that are set in a row of a mask, added to `runs`.
void addRuns(const unsigned char* row, int width, int left, int y,
             std::vector<cairo_rectangle_int_t>& runs) {
    for (int x = 0; x < width;) {
        const auto* const begin =
            std::find_if(row + x, row + width, [](auto v) { return v > 127; });
        const auto* const end = std::find_if(begin, row + width, [](auto v) { return v <= 127; });
        if (begin != end) {
            runs.push_back(
                {left + static_cast<int>(begin - row), y, static_cast<int>(end - begin), 1});
        }
        x = static_cast<int>(end - row);
    }
}

}  // namespace

Region::Region(cairo_region_t* region) : region_(region, Destroy{}) {
    if (cairo_region_status(region) != CAIRO_STATUS_SUCCESS) throw std::bad_alloc();
}

Region::Region(std::span<const cairo_rectangle_int_t> rectangles)
    : Region(
          cairo_region_create_rectangles(rectangles.data(), static_cast<int>(rectangles.size()))) {}

Region Region::ofBox(const Box& box) {
    const int left = edge(box.left);
    const int top = edge(box.top);
    const cairo_rectangle_int_t rectangle{left, top, std::max(edge(box.right) - left, 0),
                                          std::max(edge(box.bottom) - top, 0)};
    return Region({&rectangle, 1});
}

Region Region::ofPath(const Path& path, cairo_fill_rule_t rule,
                      const cairo_rectangle_int_t& within) {
    if (within.width <= 0 || within.height <= 0) return {};
    const SurfaceHandle mask(
        cairo_image_surface_create(CAIRO_FORMAT_A8, within.width, within.height));
    cairo_surface_set_device_offset(mask.get(), -within.x, -within.y);
    const ContextHandle context(cairo_create(mask.get()));
    cairo_set_antialias(context.get(), CAIRO_ANTIALIAS_NONE);
    cairo_set_fill_rule(context.get(), rule);
    path.put(context.get(), 0);
    cairo_fill(context.get());
    cairo_surface_flush(mask.get());
    const unsigned char* const pixels = cairo_image_surface_get_data(mask.get());
    if (pixels == nullptr) throw std::bad_alloc();
    const int stride = cairo_image_surface_get_stride(mask.get());
    std::vector<cairo_rectangle_int_t> runs;
    for (int y = 0; y < within.height; ++y) {
        addRuns(pixels + std::ptrdiff_t{y} * stride, within.width, within.x, within.y + y, runs);
    }
    return Region(runs);
}

cairo_region_t* Region::copy() const {
    return cairo_region_copy(region_.get());
}

Region Region::combined(const Region& other, Mode mode) const {
    if (mode == Mode::copy) return other;
    const Region result(copy());
    cairo_region_t* const region = result.region_.get();
    const cairo_region_t* const with = other.region_.get();
    cairo_status_t status = CAIRO_STATUS_SUCCESS;
    switch (mode) {
    case Mode::both:
        status = cairo_region_intersect(region, with);
        break;
    case Mode::either:
        status = cairo_region_union(region, with);
        break;
    case Mode::one:
        status = cairo_region_xor(region, with);
        break;
    case Mode::without:
        status = cairo_region_subtract(region, with);
        break;
    case Mode::copy:
        break;
    }
    if (status != CAIRO_STATUS_SUCCESS) throw std::bad_alloc();
    return result;
}

Region Region::moved(int x, int y) const {
    const Region result(copy());
    cairo_region_translate(result.region_.get(), x, y);
    return result;
}

Region Region::frame(int width, int height) const {
    const Region inner = moved(width, 0)
                             .combined(moved(-width, 0), Mode::both)
                             .combined(moved(0, height), Mode::both)
                             .combined(moved(0, -height), Mode::both);
    return combined(inner, Mode::without);
}

bool Region::isEmpty() const {
    return cairo_region_is_empty(region_.get()) != 0;
}

cairo_rectangle_int_t Region::bounds() const {
    cairo_rectangle_int_t bounds{};
    cairo_region_get_extents(region_.get(), &bounds);
    return bounds;
}

void Region::put(cairo_t* context) const {
    const int count = cairo_region_num_rectangles(region_.get());
    for (int i = 0; i < count; ++i) {
        cairo_rectangle_int_t part{};
        cairo_region_get_rectangle(region_.get(), i, &part);
        cairo_rectangle(context, part.x, part.y, part.width, part.height);
    }
}

void Region::clip(cairo_t* context) const {
    cairo_new_path(context);
    put(context);
    cairo_clip(context);
}

}  // namespace orvane::metafiles
