#pragma once

#include "platform/linux/metafiles/image.h"

#include <cstdint>
#include <string>
#include <vector>

namespace orvane::metafiles {

/// A colour as a record has it: 0x00BBGGRR, 0x01 and an index of the palette, or 0x02 and a colour
/// to look for in it.
using ColorRef = std::uint32_t;

/// Pens under their Windows numbers.
enum class PenStyle : std::uint8_t {
    solid = 0,
    dash = 1,
    dot = 2,
    dashDot = 3,
    dashDotDot = 4,
    none = 5,
    insideFrame = 6,
    user = 7,
    alternate = 8
};
/// Simple pens are as Windows had them at first; only a geometric one has ends, joins and dashes
/// that grow with its width.
enum class PenKind : std::uint8_t { simple, cosmetic, geometric };
enum class PenEnd : std::uint8_t { round = 0, square = 1, flat = 2 };
enum class PenJoin : std::uint8_t { round = 0, bevel = 1, miter = 2 };

struct Pen {
    PenKind kind = PenKind::simple;
    PenStyle style = PenStyle::solid;
    PenEnd end = PenEnd::round;
    PenJoin join = PenJoin::round;
    /// In units of the records; a cosmetic pen's is in pixels.
    double width = 0;
    ColorRef color = 0;
    /// Of a user's style: lengths of dashes and gaps, as `width` is measured.
    std::vector<double> dashes;
};

struct Brush {
    enum class Kind : std::uint8_t { solid, none, hatched, image };

    Kind kind = Kind::solid;
    ColorRef color = 0xFFFFFF;
    std::uint32_t hatch = 0;  ///< 0 to 5: -, |, \, /, +, x
    ImageHandle image;
};

struct Font {
    /// Above 0 the height of a line, below it that of the letters, 0 for the usual one.
    double height = 0;
    /// Average width of a letter, 0 for that which the height brings.
    double width = 0;
    /// Tenths of a degree against the clock.
    double escapement = 0;
    int weight = 400;
    bool isItalic = false;
    bool isUnderlined = false;
    bool isStruckOut = false;
    std::uint8_t charset = 1;
    std::uint8_t pitchAndFamily = 0;
    /// UTF-8; empty for the usual one.
    std::string face;
};

struct Palette {
    std::vector<std::uint32_t> colors;
};

}  // namespace orvane::metafiles
