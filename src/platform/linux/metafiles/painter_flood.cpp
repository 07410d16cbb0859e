#include "platform/linux/metafiles/painter.h"

#include <cstddef>
#include <utility>
#include <vector>

namespace orvane::metafiles {

namespace {

/// The pixels that a flood reaches, as runs of rows.
class Flood {
public:
    Flood(cairo_surface_t* surface, const cairo_rectangle_int_t& within, std::uint32_t color,
          bool untilColor)
        : surface_(surface), within_(within), color_(color), untilColor_(untilColor),
          seen_(static_cast<std::size_t>(within.width) * static_cast<std::size_t>(within.height)) {}

    std::vector<cairo_rectangle_int_t> from(int x, int y) {
        std::vector<std::pair<int, int>> open{{x, y}};
        std::vector<cairo_rectangle_int_t> runs;
        while (!open.empty()) {
            const auto [startX, startY] = open.back();
            open.pop_back();
            if (!takes(startX, startY)) continue;
            int left = startX;
            while (takes(left - 1, startY))
                --left;
            int right = left;
            for (; takes(right, startY); ++right)
                mark(right, startY);
            runs.push_back({left, startY, right - left, 1});
            for (const int next : {startY - 1, startY + 1})
                addStarts(left, right, next, open);
        }
        return runs;
    }

private:
    std::size_t index(int x, int y) const {
        return static_cast<std::size_t>(y - within_.y) * static_cast<std::size_t>(within_.width) +
               static_cast<std::size_t>(x - within_.x);
    }
    void mark(int x, int y) { seen_[index(x, y)] = true; }

    bool takes(int x, int y) const {
        if (x < within_.x || y < within_.y || x >= within_.x + within_.width ||
            y >= within_.y + within_.height || seen_[index(x, y)]) {
            return false;
        }
        const auto* const row = reinterpret_cast<const std::uint32_t*>(
            cairo_image_surface_get_data(surface_) +
            std::ptrdiff_t{y} * cairo_image_surface_get_stride(surface_));
        return ((row[x] & 0xFFFFFF) == color_) != untilColor_;
    }

    void addStarts(int left, int right, int y, std::vector<std::pair<int, int>>& open) const {
        for (int x = left; x < right; ++x) {
            if (takes(x, y) && (x == left || !takes(x - 1, y))) open.emplace_back(x, y);
        }
    }

    cairo_surface_t* surface_;
    cairo_rectangle_int_t within_;
    std::uint32_t color_;
    bool untilColor_;
    std::vector<bool> seen_;
};

}  // namespace

void Painter::floodFill(Point from, ColorRef color, bool untilColor) {
    const cairo_rectangle_int_t within = state.clip.bounds();
    if (within.width == 0 || within.height == 0) return;
    const Point at = toDevice(from);
    const std::uint32_t wanted = resolved(color);
    const std::uint32_t stored = (wanted & 0xFF) << 16 | (wanted & 0xFF00) | (wanted >> 16 & 0xFF);
    cairo_surface_flush(canvas_.get());
    Flood flood(canvas_.get(), within, stored, untilColor);
    fill(Region(flood.from(static_cast<int>(at.x), static_cast<int>(at.y))), state.brush);
}

}  // namespace orvane::metafiles
