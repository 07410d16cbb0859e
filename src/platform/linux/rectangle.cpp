#include "platform/linux/rectangle.h"

#include "platform/linux/raster.h"
#include "platform/linux/system_colors.h"

#include <algorithm>
#include <cmath>
#include <span>

namespace orvane::platform {

namespace {

/// Pixels from `left`, `top` to before `right`, `bottom`. Coordinates have 32 bits, so there is
/// room for a pen's width around them.
struct Box {
    std::int64_t left;
    std::int64_t top;
    std::int64_t right;
    std::int64_t bottom;

    bool isEmpty() const { return left >= right || top >= bottom; }
};

/// Lengths of the strokes and gaps of a style, in turn; empty for an unbroken line.
std::span<const std::int32_t> dashesOf(std::uint32_t style) {
    static constexpr std::int32_t kDash[] = {18, 6};
    static constexpr std::int32_t kDot[] = {3, 3};
    static constexpr std::int32_t kDashDot[] = {9, 6, 3, 6};
    static constexpr std::int32_t kDashDotDot[] = {9, 3, 3, 3, 3, 3};
    switch (style) {
    case 1:
        return kDash;
    case 2:
        return kDot;
    case 3:
        return kDashDot;
    case 4:
        return kDashDotDot;
    default:
        return {};
    }
}

/// Draws one rectangle.
class RectangleDrawing {
public:
    RectangleDrawing(Surface& target, const Context& context)
        : target_(target), attributes_(context.attributes), pen_(context.pen.object->facts),
          brush_(context.brush.object->facts),
          operation_(static_cast<BinaryOperation>(attributes_.rop2 - 1)) {}

    void draw(Box box) {
        const std::int64_t width = penWidth();
        if (pen_.style == kPenInsideFrame) {
            box = {box.left + width / 2, box.top + width / 2, box.right - (width - 1) / 2,
                   box.bottom - (width - 1) / 2};
            if (box.isEmpty()) {
                return;
            }
        }
        if (width > 1) {
            frameWide(box, width);
        } else if (width == 1) {
            frameThin(box);
        }
        if (brush_.style != kBrushNull) {
            // Without a pen the last column and row stay as they are.
            paint({box.left + (width + 1) / 2, box.top + (width + 1) / 2, box.right - 1 - width / 2,
                   box.bottom - 1 - width / 2},
                  brush_.color);
        }
    }

private:
    /// In pixels, 0 for a pen that draws nothing.
    std::int64_t penWidth() const {
        return pen_.style == kPenNull
                   ? 0
                   : std::max<std::int64_t>(std::abs(std::int64_t{pen_.width.x}), 1);
    }

    void paint(const Box& box, std::uint32_t color) {
        if (!box.isEmpty()) {
            fill(target_, {box.left, box.top, box.right - box.left, box.bottom - box.top},
                 pixelColor(color), operation_);
        }
    }

    /// The line runs from the right upper corner to the left, down, to the right and up again, each
    /// edge without its last pixel, which is the next one's first.
    void frameThin(const Box& box) {
        const std::int64_t right = box.right - 1;
        const std::int64_t bottom = box.bottom - 1;
        if (box.left == right && box.top == bottom) {
            paint(box, pen_.color);
            return;
        }
        edge(right, box.top, -1, 0, right - box.left);
        edge(box.left, box.top, 0, 1, bottom - box.top);
        edge(box.left, bottom, 1, 0, right - box.left);
        edge(right, bottom, 0, -1, bottom - box.top);
    }

    /// One edge of `length` pixels from x, y on; the dashes go on from the edge before. Gaps have
    /// the background's colour, unless that is transparent.
    void edge(std::int64_t x, std::int64_t y, std::int64_t stepX, std::int64_t stepY,
              std::int64_t length) {
        const std::span<const std::int32_t> dashes = dashesOf(pen_.style);
        while (length > 0) {
            const std::int64_t run =
                dashes.empty() ? length : std::min(length, dashes[dash_] - used_);
            const std::int64_t endX = x + stepX * (run - 1);
            const std::int64_t endY = y + stepY * (run - 1);
            const bool isGap = dash_ % 2 == 1;
            if (!isGap || attributes_.bkMode == kBackgroundOpaque) {
                paint({std::min(x, endX), std::min(y, endY), std::max(x, endX) + 1,
                       std::max(y, endY) + 1},
                      isGap ? attributes_.bkColor : pen_.color);
            }
            x += stepX * run;
            y += stepY * run;
            length -= run;
            used_ += run;
            if (!dashes.empty() && used_ == dashes[dash_]) {
                dash_ = (dash_ + 1) % dashes.size();
                used_ = 0;
            }
        }
    }

    /// An unbroken frame of any style, with the edges in its middle and round corners. Each pixel
    /// is painted once.
    void frameWide(const Box& box, std::int64_t width) {
        const Box outer{box.left - width / 2, box.top - width / 2, box.right + (width - 1) / 2,
                        box.bottom + (width - 1) / 2};
        const Box inner{outer.left + width, outer.top + width, outer.right - width,
                        outer.bottom - width};
        const auto limit = std::int64_t{target_.height()};
        for (std::int64_t y = std::max<std::int64_t>(outer.top, 0);
             y < std::min(outer.bottom, limit); ++y) {
            const std::int64_t toEdge = std::min(y - outer.top, outer.bottom - 1 - y);
            const std::int64_t inset = insetOf(toEdge, width);
            if (y >= inner.top && y < inner.bottom && !inner.isEmpty()) {
                paint({outer.left + inset, y, inner.left, y + 1}, pen_.color);
                paint({inner.right, y, outer.right - inset, y + 1}, pen_.color);
            } else {
                paint({outer.left + inset, y, outer.right - inset, y + 1}, pen_.color);
            }
        }
    }

    /// How many pixels of the row that many below the outermost one lie outside a round corner:
    /// those whose middle is too far from the middle of a pen of this width. The 0.4 is what makes
    /// the small ones as round as on Windows.
    static std::int64_t insetOf(std::int64_t row, std::int64_t width) {
        const double middle = static_cast<double>(width - 1) / 2;
        const double above = middle - static_cast<double>(row);
        if (above <= 0) {
            return 0;
        }
        const double radius = middle + 0.4;
        return static_cast<std::int64_t>(
            std::ceil(middle - std::sqrt(radius * radius - above * above)));
    }

    Surface& target_;
    const ContextAttributes& attributes_;
    const LogPen& pen_;
    const LogBrush& brush_;
    BinaryOperation operation_;
    std::size_t dash_ = 0;
    std::int64_t used_ = 0;
};

}  // namespace

void drawRectangle(Surface& target, const Context& context, Point first, Point last) {
    const Box box{std::min(first.x, last.x), std::min(first.y, last.y), std::max(first.x, last.x),
                  std::max(first.y, last.y)};
    if (!box.isEmpty()) {
        RectangleDrawing(target, context).draw(box);
    }
}

}  // namespace orvane::platform
