#include "platform/linux/metafiles/figures.h"
#include "platform/linux/metafiles/letters.h"
#include "platform/linux/metafiles/painter.h"

#include <algorithm>
#include <cmath>
#include <numbers>

// Text: lines of letters, each put where the record says or where the font has it.

namespace orvane::metafiles {

namespace {

// Bits of the alignment.
constexpr std::uint32_t kUpdatesPosition = 1;
constexpr std::uint32_t kHorizontal = 6;
constexpr std::uint32_t kRight = 2;
constexpr std::uint32_t kCenter = 6;
constexpr std::uint32_t kVertical = 24;
constexpr std::uint32_t kBottom = 8;
constexpr std::uint32_t kBaseline = 24;

Matrix turned(double tenths) {
    const double angle = -tenths / 10 * std::numbers::pi / 180;
    return {std::cos(angle), std::sin(angle), -std::sin(angle), std::cos(angle), 0, 0};
}

/// A rectangle along the line, from its left end, above and below the baseline.
Path stripe(const Matrix& way, double left, double right, double top, double bottom) {
    const Point corners[] = {rounded(way.apply({left, top})), rounded(way.apply({right, top})),
                             rounded(way.apply({right, bottom})),
                             rounded(way.apply({left, bottom}))};
    Path path;
    path.addLines(corners, true);
    return path;
}

/// Adds the outlines that the context's path has.
void addOutlines(cairo_t* context, Path& path) {
    cairo_path_t* const found = cairo_copy_path(context);
    for (int i = 0; found->data != nullptr && i < found->num_data;
         i += found->data[i].header.length) {
        const cairo_path_data_t* const data = found->data + i;
        const auto point = [&](int index) {
            return Point{data[index].point.x, data[index].point.y};
        };
        if (data->header.type == CAIRO_PATH_MOVE_TO) path.moveTo(point(1));
        else if (data->header.type == CAIRO_PATH_LINE_TO) path.lineTo(point(1));
        else if (data->header.type == CAIRO_PATH_CURVE_TO)
            path.curveTo(point(1), point(2), point(3));
        else path.close();
    }
    cairo_path_destroy(found);
}

/// Where each letter begins along its line, and one place more behind the last.
std::vector<Point> placesOf(const TextRun& run, const Letters& letters, const State& state) {
    std::vector<Point> places{{0, 0}};
    for (std::size_t i = 0; i < run.text.size(); ++i) {
        Point step{letters.advance(i) + state.charExtra, 0};
        if (run.text[i] == U' ') step.x += state.breakExtra;
        if (i < run.advances.size()) step = {run.advances[i].x, -run.advances[i].y};
        places.push_back({places.back().x + step.x, places.back().y + step.y});
    }
    return places;
}

double baselineOf(const Letters& letters, std::uint32_t align) {
    if ((align & kVertical) == kBaseline) return 0;
    return (align & kVertical) == kBottom ? -letters.descent() : letters.ascent();
}

double startOf(double width, std::uint32_t align) {
    if ((align & kHorizontal) == kCenter) return -width / 2;
    return (align & kHorizontal) == kRight ? -width : 0;
}

}  // namespace

void Painter::drawText(const TextRun& run) {
    const Point corners[] = {{run.box.left, run.box.top},
                             {run.box.right, run.box.top},
                             {run.box.right, run.box.bottom},
                             {run.box.left, run.box.bottom}};
    const Path box = lines(state.mapping, corners, true);
    if (run.fillsBox && !inBracket_) {
        Brush ground;
        ground.color = state.backColor;
        paint(0xF0, ground, box.bounds(), [&](cairo_t* to) {
            box.put(to, 0);
            cairo_fill(to);
        });
    }
    if (run.text.empty()) return;
    const Region before = state.clip;
    if (run.clipsToBox)
        intersectClip(Region::ofPath(box, CAIRO_FILL_RULE_WINDING, whole_.bounds()),
                      Region::Mode::both);
    const Matrix letterMatrix = state.mapping.text();
    const double aspect = std::abs(letterMatrix.yy / letterMatrix.xx);
    const bool keepsShape = !run.isStretched && std::isnormal(aspect);
    const Letters letters(state.font, run.text, keepsShape ? std::clamp(aspect, 0.01, 100.0) : 1);
    const std::vector<Point> places = placesOf(run, letters, state);
    const bool moves = (state.textAlign & kUpdatesPosition) != 0;
    const Point at = toDevice(moves ? state.current : run.at);
    const Matrix line = turned(state.font.escapement).then(letterMatrix);
    const double width = places.back().x;
    const Point start =
        line.apply({startOf(width, state.textAlign), baselineOf(letters, state.textAlign)});
    Matrix way = line;
    way.dx = at.x + start.x;
    way.dy = at.y + start.y;
    drawLetters(letters, places, way, run.fillsBox);
    if (moves && (state.textAlign & kHorizontal) != kCenter) {
        // A line that ends at its place moves it to where it begins.
        const bool back = (state.textAlign & kHorizontal) == kRight;
        state.current.x += back ? -width : width;
    }
    state.clip = before;
}

void Painter::drawLetters(const Letters& letters, const std::vector<Point>& places,
                          const Matrix& way, bool hasGround) {
    const double width = places.back().x;
    Brush ink;
    const auto fillStripe = [&](const Path& path, ColorRef color) {
        ink.color = color;
        paint(0xF0, ink, path.bounds(), [&](cairo_t* to) {
            path.put(to, 0);
            cairo_fill(to);
        });
    };
    if (state.isOpaque && !hasGround && !inBracket_)
        fillStripe(stripe(way, 0, width, -letters.ascent(), letters.descent()), state.backColor);
    const ContextHandle on = context(canvas_.get());
    if (!letters.put(on.get(), places, way)) return;
    if (inBracket_) {
        addOutlines(on.get(), path_);
        return;
    }
    ink.color = state.textColor;
    setInk(on.get(), ink);
    cairo_set_antialias(on.get(), CAIRO_ANTIALIAS_GRAY);
    cairo_set_fill_rule(on.get(), CAIRO_FILL_RULE_WINDING);
    cairo_fill(on.get());
    const double thick = letters.lineThickness();
    if (state.font.isUnderlined)
        fillStripe(stripe(way, 0, width, thick, 2 * thick), state.textColor);
    if (state.font.isStruckOut)
        fillStripe(stripe(way, 0, width, -5 * thick, -4 * thick), state.textColor);
}

}  // namespace orvane::metafiles
