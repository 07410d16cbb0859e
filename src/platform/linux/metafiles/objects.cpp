#include "platform/linux/metafiles/objects.h"

#include <algorithm>
#include <utility>

namespace orvane::metafiles {

namespace {

constexpr std::uint32_t kNullBrushStyle = 1;
constexpr std::uint32_t kHatchedStyle = 2;

Font stockFont(bool fixed) {
    Font font;
    font.height = 16;
    font.weight = fixed ? 400 : 700;
    font.pitchAndFamily = fixed ? 0x31 : 0x22;
    return font;
}

}  // namespace

void select(Painter& painter, const Object& object) {
    State& state = painter.state;
    if (const auto* pen = std::get_if<Pen>(&object)) state.pen = *pen;
    else if (const auto* brush = std::get_if<Brush>(&object)) state.brush = *brush;
    else if (const auto* font = std::get_if<Font>(&object)) state.font = *font;
    else if (const auto* palette = std::get_if<Palette>(&object)) state.palette = *palette;
}

Object stockObject(std::uint32_t number) {
    constexpr ColorRef kBrushes[] = {0xFFFFFF, 0xC0C0C0, 0x808080, 0x404040, 0x000000};
    if (number < 5) return brushOf(0, kBrushes[number], 0);
    switch (number) {
    case 5:
        return brushOf(kNullBrushStyle, 0, 0);
    case 6:
        return simplePen(0, 0, 0xFFFFFF);
    case 7:
    case 19:
        return simplePen(0, 0, 0);
    case 8:
        return simplePen(5, 0, 0);
    case 10:
    case 11:
    case 16:
        return stockFont(true);
    case 12:
    case 13:
    case 14:
    case 17:
        return stockFont(false);
    case 18:
        return brushOf(0, 0xFFFFFF, 0);
    default:
        return {};
    }
}

Pen simplePen(std::uint32_t style, double width, ColorRef color) {
    Pen pen;
    style &= 0x0F;
    pen.style = style <= 6 ? static_cast<PenStyle>(style) : PenStyle::solid;
    pen.width = width;
    pen.color = color;
    return pen;
}

Brush brushOf(std::uint32_t style, ColorRef color, std::uint32_t hatch) {
    Brush brush;
    brush.color = color;
    brush.hatch = hatch;
    if (style == kNullBrushStyle) brush.kind = Brush::Kind::none;
    else if (style == kHatchedStyle) brush.kind = Brush::Kind::hatched;
    return brush;
}

Brush brushOf(ImageHandle image) {
    Brush brush;
    if (image != nullptr) brush.kind = Brush::Kind::image;
    brush.image = std::move(image);
    return brush;
}

void readFontStyle(const codecs::Reader& style, Font& font) {
    font.isItalic = style.u8(0) != 0;
    font.isUnderlined = style.u8(1) != 0;
    font.isStruckOut = style.u8(2) != 0;
    font.charset = style.u8(3);
    font.pitchAndFamily = style.u8(7);
}

Palette paletteOf(const codecs::Reader& colors, std::size_t count) {
    Palette palette;
    for (std::size_t i = 0; i < count && colors.holds(i * 4, 4); ++i)
        palette.colors.push_back(colors.u32(i * 4) & 0xFFFFFF);
    return palette;
}

Region regionOf(const Mapping& mapping, const std::vector<Box>& boxes) {
    std::vector<Box> pixels;
    for (const Box& box : boxes) {
        const Point first = mapping.toDevice({box.left, box.top});
        const Point second = mapping.toDevice({box.right, box.bottom});
        pixels.push_back({std::min(first.x, second.x), std::min(first.y, second.y),
                          std::max(first.x, second.x), std::max(first.y, second.y)});
    }
    return regionOf(pixels);
}

Region regionOf(const std::vector<Box>& boxes) {
    std::vector<cairo_rectangle_int_t> rectangles;
    for (const Box& box : boxes) {
        const Point first = rounded({box.left, box.top});
        const Point second = rounded({box.right, box.bottom});
        if (second.x <= first.x || second.y <= first.y) continue;
        rectangles.push_back({static_cast<int>(first.x), static_cast<int>(first.y),
                              static_cast<int>(second.x - first.x),
                              static_cast<int>(second.y - first.y)});
    }
    return Region(rectangles);
}

}  // namespace orvane::metafiles
