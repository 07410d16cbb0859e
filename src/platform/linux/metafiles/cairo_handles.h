#pragma once

#include <cairo.h>

#include <memory>

namespace orvane::metafiles {

/// Gives back what the drawing library counts references of.
template <auto destroy>
struct Destroy {
    template <typename T>
    void operator()(T* object) const {
        destroy(object);
    }
};

using SurfaceHandle = std::unique_ptr<cairo_surface_t, Destroy<cairo_surface_destroy>>;
using ContextHandle = std::unique_ptr<cairo_t, Destroy<cairo_destroy>>;
using PatternHandle = std::unique_ptr<cairo_pattern_t, Destroy<cairo_pattern_destroy>>;
using FontFaceHandle = std::unique_ptr<cairo_font_face_t, Destroy<cairo_font_face_destroy>>;
using ScaledFontHandle = std::unique_ptr<cairo_scaled_font_t, Destroy<cairo_scaled_font_destroy>>;
using FontOptionsHandle =
    std::unique_ptr<cairo_font_options_t, Destroy<cairo_font_options_destroy>>;

}  // namespace orvane::metafiles
