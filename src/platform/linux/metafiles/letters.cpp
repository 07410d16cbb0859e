#include "platform/linux/metafiles/letters.h"

#include "platform/linux/metafiles/charsets.h"

#include <algorithm>
#include <cmath>
#include <string>

namespace orvane::metafiles {

namespace {

/// Fonts are measured at this size: nothing is rounded to pixels then.
constexpr double kMeasure = 1000;
/// Letters of 12 points at 96 pixels an inch, for a font without a height.
constexpr double kUsualSize = 16;

/// Whether letters can have that size in pixels: smaller ones aren't seen, and the drawing library
/// loses memory over those that are larger than FreeType takes.
bool canBeDrawn(double size) {
    return size >= 0.01 && size <= 16384;
}

constexpr unsigned kFixedPitch = 1;
constexpr unsigned kRoman = 0x10;
constexpr unsigned kModern = 0x30;

const char* faceOf(const Font& font) {
    if (!font.face.empty()) return font.face.c_str();
    const unsigned family = font.pitchAndFamily & 0xF0u;
    if (family == kModern || (font.pitchAndFamily & 3u) == kFixedPitch) return "monospace";
    return family == kRoman ? "serif" : "sans-serif";
}

ScaledFontHandle scaledFont(cairo_font_face_t* face, const cairo_matrix_t& letters) {
    cairo_matrix_t identity;
    cairo_matrix_init_identity(&identity);
    const FontOptionsHandle options(cairo_font_options_create());
    cairo_font_options_set_hint_style(options.get(), CAIRO_HINT_STYLE_NONE);
    cairo_font_options_set_hint_metrics(options.get(), CAIRO_HINT_METRICS_OFF);
    return ScaledFontHandle(cairo_scaled_font_create(face, &letters, &identity, options.get()));
}

/// The glyph of a letter and how far it reaches at kMeasure; nothing for what isn't seen.
cairo_glyph_t glyphOf(cairo_scaled_font_t* font, char32_t letter, double& advance) {
    cairo_glyph_t glyph{};
    advance = 0;
    if (letter < 0x20) return glyph;
    const std::string text = utf8({letter});
    cairo_glyph_t* glyphs = &glyph;
    int count = 1;
    const cairo_status_t status =
        cairo_scaled_font_text_to_glyphs(font, 0, 0, text.data(), static_cast<int>(text.size()),
                                         &glyphs, &count, nullptr, nullptr, nullptr);
    if (status != CAIRO_STATUS_SUCCESS || count < 1) return {};
    const cairo_glyph_t found = glyphs[0];
    if (glyphs != &glyph) cairo_glyph_free(glyphs);
    cairo_text_extents_t extents;
    cairo_scaled_font_glyph_extents(font, &found, 1, &extents);
    advance = extents.x_advance;
    return found;
}

}  // namespace

Letters::Letters(const Font& font, const std::u32string& text, double aspect)
    : face_(cairo_toy_font_face_create(
          faceOf(font), font.isItalic ? CAIRO_FONT_SLANT_ITALIC : CAIRO_FONT_SLANT_NORMAL,
          font.weight > 550 ? CAIRO_FONT_WEIGHT_BOLD : CAIRO_FONT_WEIGHT_NORMAL)) {
    cairo_matrix_t measure;
    cairo_matrix_init_scale(&measure, kMeasure, kMeasure);
    const ScaledFontHandle scaled = scaledFont(face_.get(), measure);
    cairo_font_extents_t extents{};
    cairo_scaled_font_extents(scaled.get(), &extents);
    const double line = (extents.ascent + extents.descent) / kMeasure;
    size_ = font.height < 0 ? -font.height : kUsualSize;
    if (font.height > 0) size_ = line > 0 ? font.height / line : font.height;
    size_ = std::min(size_, 1e6);
    stretch_ = aspect;
    if (font.width != 0) {
        double average = 0;
        glyphOf(scaled.get(), U'x', average);
        const double wanted = std::abs(font.width) * kMeasure;
        if (average > 0) stretch_ = std::clamp(wanted / (average * size_), 0.01, 100.0);
    }
    ascent_ = extents.ascent / kMeasure * size_;
    descent_ = extents.descent / kMeasure * size_;
    for (const char32_t letter : text) {
        double advance = 0;
        const cairo_glyph_t glyph = glyphOf(scaled.get(), letter, advance);
        glyphs_.push_back(glyph.index);
        advances_.push_back(advance / kMeasure * size_ * stretch_);
    }
}

double Letters::advance(std::size_t index) const {
    return advances_[index];
}

bool Letters::put(cairo_t* context, const std::vector<Point>& places, const Matrix& way) const {
    cairo_matrix_t letters;
    cairo_matrix_init(&letters, way.xx * size_ * stretch_, way.yx * size_ * stretch_,
                      way.xy * size_, way.yy * size_, 0, 0);
    const double width = std::hypot(letters.xx, letters.yx);
    const double height = std::abs(letters.xx * letters.yy - letters.xy * letters.yx) / width;
    if (!canBeDrawn(width) || !canBeDrawn(height)) return false;
    const ScaledFontHandle font = scaledFont(face_.get(), letters);
    if (cairo_scaled_font_status(font.get()) != CAIRO_STATUS_SUCCESS) return false;
    std::vector<cairo_glyph_t> glyphs;
    for (std::size_t i = 0; i < glyphs_.size(); ++i) {
        const Point at = way.apply(places[i]);
        const bool isFar = !(std::abs(at.x) < 1e5) || !(std::abs(at.y) < 1e5);
        if (glyphs_[i] != 0 && !isFar) glyphs.push_back({glyphs_[i], at.x, at.y});
    }
    cairo_new_path(context);
    cairo_set_scaled_font(context, font.get());
    cairo_glyph_path(context, glyphs.data(), static_cast<int>(glyphs.size()));
    return cairo_status(context) == CAIRO_STATUS_SUCCESS;
}

}  // namespace orvane::metafiles
