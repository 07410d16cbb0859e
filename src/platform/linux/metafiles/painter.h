#pragma once

#include "platform/linux/metafiles/drawing_tools.h"
#include "platform/linux/metafiles/mapping.h"
#include "platform/linux/metafiles/metafiles.h"
#include "platform/linux/metafiles/path.h"
#include "platform/linux/metafiles/region.h"
#include "platform/linux/metafiles/text_run.h"

#include <functional>
#include <optional>
#include <vector>

namespace orvane::metafiles {

class Letters;

/// What a device context keeps, with the values it begins with.
struct State {
    Mapping mapping;
    Pen pen;
    Brush brush;
    Font font;
    Palette palette;
    ColorRef textColor = 0;
    ColorRef backColor = 0xFFFFFF;
    bool isOpaque = true;
    std::uint32_t rop2 = 13;
    cairo_fill_rule_t fillRule = CAIRO_FILL_RULE_EVEN_ODD;
    bool smoothsImages = false;
    std::uint32_t textAlign = 0;
    double charExtra = 0;
    double breakExtra = 0;
    bool isClockwise = false;
    double miterLimit = 10;
    Point current;      ///< units
    Point brushOrigin;  ///< pixels
    Region clip;
};

/// Which part of a figure is drawn.
enum class Parts { outline, inside, both };

/// Where three corners of an image go: those of its top left, top right and bottom left.
struct Corners {
    Point origin;
    Point right;
    Point down;

    static Corners of(double x, double y, double width, double height) {
        return {{x, y}, {x + width, y}, {x, y + height}};
    }
};

/// An image on its way to the canvas.
struct Transfer {
    ImageHandle image;  ///< none for an operation without a source
    Box from;           ///< pixels of the image
    Corners to;         ///< units
    /// Whether the size of `to` is one of pixels.
    bool keepsSize = false;
    std::uint32_t operation = 0x00CC0020;
    /// Blending, in place of the operation: 0 to 1, and whether the fourth bytes count.
    std::optional<double> opacity;
    bool hasAlpha = false;
    /// A colour of the image that stays away.
    std::optional<ColorRef> transparent;
};

/// A corner of a gradient: units, and a colour of 16 bits a channel.
struct GradientCorner {
    Point at;
    std::uint16_t red = 0;
    std::uint16_t green = 0;
    std::uint16_t blue = 0;
};

/// The pixels of an image without a look at their fourth bytes. Not to outlive it.
SurfaceHandle opaque(const Image& image);

Box outset(const Box& box, double by);

/// The pixels of `clip` that `bounds` touches.
cairo_rectangle_int_t common(const cairo_rectangle_int_t& clip, const Box& bounds);

/// Draws on a canvas as a Windows device context does: hard edges, raster operations, one state.
///
/// Edges are hard because metafiles put areas side by side, and smoothed ones would show the seams.
class Painter {
public:
    /// Draws within `area` only. `mapping` is where the state begins.
    Painter(const OrvaneCanvas& canvas, const OrvaneMetafileArea& area, const Mapping& mapping);

    State state;

    void save();
    /// Back to the state with this number, the first being 1, or from the end when it is below 0.
    void restore(std::int32_t which);

    /// Figures in pixels; within a path bracket they become part of the path.
    void draw(const Path& figure, Parts parts);
    void lineTo(Point to);
    void moveTo(Point to);
    /// Lines, or curves of three points each, from the current position, which moves on.
    void linesTo(std::span<const Point> points);
    void curvesTo(std::span<const Point> points);
    /// An arc: a line to where it begins, the arc, and the position behind it.
    void arcTo(const Path& arc, Point begin, Point end);

    void beginPath();
    void endPath() { inBracket_ = false; }
    void abortPath();
    void closeFigure();
    void widenPath() { isWidened_ = true; }
    void drawPath(Parts parts);
    void clipToPath(Region::Mode mode);

    void drawText(const TextRun& run);
    void transfer(const Transfer& transfer);
    /// A rectangle that goes from one corner's colour to the other's, or a triangle.
    void fillGradient(const GradientCorner& first, const GradientCorner& second, bool downwards);
    void fillGradient(std::span<const GradientCorner, 3> corners);
    void setPixel(Point at, ColorRef color);
    /// Fills with the brush from a place to where another colour begins, or as far as one goes.
    void floodFill(Point from, ColorRef color, bool untilColor);

    void fill(const Region& region, const Brush& brush);
    void invert(const Region& region);
    void intersectClip(const Region& region, Region::Mode mode);
    void setClip(const Region& region) { state.clip = region.combined(whole_, Region::Mode::both); }
    void resetClip() { state.clip = whole_; }
    void moveClip(Point distance);

    /// The colour itself, 0x00BBGGRR.
    std::uint32_t resolved(ColorRef color) const;
    Point toDevice(Point point) const { return state.mapping.toDevice(point); }

private:
    using Draw = std::function<void(cairo_t*)>;

    ContextHandle context(cairo_surface_t* surface) const;
    /// Draws `shape` in the brush's colour, hatch or image, combined with what is there.
    void paint(std::uint8_t operation, const Brush& brush, const Box& bounds, const Draw& shape);
    /// The same with an image beside the brush.
    void combine(std::uint8_t operation, const Box& bounds, const Draw& image, const Brush& pattern,
                 const Draw& shape);
    void setInk(cairo_t* context, const Brush& brush) const;
    PatternHandle hatching(const Brush& brush) const;
    void fillInside(const Path& figure);
    void strokeOutline(const Path& figure);
    void setPen(cairo_t* context, const Box& bounds, double width) const;
    double penWidth() const;
    std::uint8_t rop2() const;
    Corners placed(const Transfer& transfer) const;
    void drawLetters(const Letters& letters, const std::vector<Point>& places, const Matrix& way,
                     bool hasGround);
    void startFigure();

    SurfaceHandle canvas_;
    Region whole_;
    std::vector<State> saved_;
    Path path_;
    bool inBracket_ = false;
    bool hasFigure_ = false;
    bool isWidened_ = false;
};

}  // namespace orvane::metafiles
