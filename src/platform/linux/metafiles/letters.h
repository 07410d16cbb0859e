#pragma once

#include "platform/linux/metafiles/cairo_handles.h"
#include "platform/linux/metafiles/drawing_tools.h"
#include "platform/linux/metafiles/geometry.h"

#include <string>
#include <vector>

namespace orvane::metafiles {

/// The letters of a text in a font, measured in units of the records.
class Letters {
public:
    /// `aspect`: the width of letters for the height that they have, 1 for what the font says. A
    /// font that sets a width has its own.
    Letters(const Font& font, const std::u32string& text, double aspect);

    /// From the place of a letter to that of the next one.
    double advance(std::size_t index) const;
    double ascent() const { return ascent_; }
    double descent() const { return descent_; }
    double lineThickness() const { return size_ / 16; }

    /// Makes their outlines the context's path, each at its place along a line; `way` leads from
    /// the line to pixels. False when there is nothing to draw.
    bool put(cairo_t* context, const std::vector<Point>& places, const Matrix& way) const;

private:
    FontFaceHandle face_;
    std::vector<unsigned long> glyphs_;
    std::vector<double> advances_;
    double size_ = 0;     ///< of the letters, upwards
    double stretch_ = 1;  ///< of their width
    double ascent_ = 0;
    double descent_ = 0;
};

}  // namespace orvane::metafiles
