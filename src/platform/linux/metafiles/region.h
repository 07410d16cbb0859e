#pragma once

#include "platform/linux/metafiles/path.h"

#include <cairo.h>

#include <cstdint>
#include <memory>
#include <span>

namespace orvane::metafiles {

/// A set of pixels: what a device context clips to and what region records fill.
class Region {
public:
    /// How Windows numbers the ways to combine two.
    enum class Mode : std::int32_t { both = 1, either = 2, one = 3, without = 4, copy = 5 };

    Region() : Region(std::span<const cairo_rectangle_int_t>{}) {}
    explicit Region(std::span<const cairo_rectangle_int_t> rectangles);
    /// The pixels of a box whose edges are whole numbers; none of an empty one.
    static Region ofBox(const Box& box);
    /// The pixels of `within` that lie inside a path.
    static Region ofPath(const Path& path, cairo_fill_rule_t rule,
                         const cairo_rectangle_int_t& within);

    Region combined(const Region& other, Mode mode) const;
    Region moved(int x, int y) const;
    /// The pixels of this one that touch its outside: a frame so thick.
    Region frame(int width, int height) const;
    bool isEmpty() const;
    cairo_rectangle_int_t bounds() const;
    /// Clips the context to it.
    void clip(cairo_t* context) const;
    /// Adds its rectangles to the context's path.
    void put(cairo_t* context) const;

private:
    struct Destroy {
        void operator()(cairo_region_t* region) const { cairo_region_destroy(region); }
    };

    explicit Region(cairo_region_t* region);
    cairo_region_t* copy() const;

    /// Never changed once it is made.
    std::shared_ptr<cairo_region_t> region_;
};

}  // namespace orvane::metafiles
