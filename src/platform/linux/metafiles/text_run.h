#pragma once

#include "platform/linux/metafiles/geometry.h"

#include <string>
#include <vector>

namespace orvane::metafiles {

/// A line of text as a record has it.
struct TextRun {
    Point at;  ///< units
    std::u32string text;
    /// How far each character is from the next, in units; none for the font's own widths.
    std::vector<Point> advances;
    /// What is filled with the background colour, or what the letters are cut to.
    Box box;
    /// Whether letters are stretched as all else is, in place of keeping their shape where a
    /// picture is stretched one way.
    bool isStretched = false;
    bool fillsBox = false;
    bool clipsToBox = false;
};

}  // namespace orvane::metafiles
