#include "platform/linux/metafiles/emf_player.h"

#include "platform/linux/metafiles/emf_fields.h"

#include <algorithm>
#include <cmath>

// The walk over the records and those that set the state.

namespace orvane::metafiles {

namespace {

constexpr std::uint32_t kEnd = 14;

Matrix matrixAt(const codecs::Reader& r, std::uint64_t offset) {
    const auto at = [&](unsigned index) { return emfFloatAt(r, offset + 4 * index); };
    const Matrix matrix{at(0), at(1), at(2), at(3), at(4), at(5)};
    const double sum = matrix.xx + matrix.yx + matrix.xy + matrix.yy + matrix.dx + matrix.dy;
    return std::isfinite(sum) ? matrix : Matrix{};
}

/// The pixels of a record's box.
Region boxRegion(const Mapping& mapping, const codecs::Reader& r) {
    const Box box = emfBoxAt(r, 8);
    return regionOf(mapping, {box});
}

}  // namespace

Mapping emfMapping(const codecs::Reader& file, const OrvaneMetafileArea& area) {
    const Box frame = emfBoxAt(file, 24);
    const Point pixels = emfPointAt(file, 72);
    const Point millimetres = emfPointAt(file, 80);
    DeviceSize device;
    if (pixels.x > 0 && pixels.y > 0 && millimetres.x > 0 && millimetres.y > 0) {
        device = {pixels.x / millimetres.x, pixels.y / millimetres.y};
    }
    const double x = area.width * 100.0 / frame.width();
    const double y = area.height * 100.0 / frame.height();
    return {device, Matrix{x / device.pixelsPerMillimetreX, 0, 0, y / device.pixelsPerMillimetreY,
                           area.x - frame.left * x / 100, area.y - frame.top * y / 100}};
}

using P = EmfPlayer;

const EmfPlayer::Type EmfPlayer::kTypes[] = {
    {2, 28, &P::polyBezier<false>},
    {3, 28, &P::polygon<false>},
    {4, 28, &P::polyline<false>},
    {5, 28, &P::polyBezierTo<false>},
    {6, 28, &P::polylineTo<false>},
    {7, 32, &P::polyPolyline<false>},
    {8, 32, &P::polyPolygon<false>},
    {9, 16, &P::setWindowExt},
    {10, 16, &P::setWindowOrg},
    {11, 16, &P::setViewportExt},
    {12, 16, &P::setViewportOrg},
    {13, 16, &P::setBrushOrg},
    {15, 20, &P::setPixel},
    {17, 12, &P::setMapMode},
    {18, 12, &P::setBkMode},
    {19, 12, &P::setPolyFillMode},
    {20, 12, &P::setRop2},
    {21, 12, &P::setStretchBltMode},
    {22, 12, &P::setTextAlign},
    {24, 12, &P::setTextColor},
    {25, 12, &P::setBkColor},
    {26, 16, &P::offsetClipRgn},
    {27, 16, &P::moveTo},
    {29, 24, &P::excludeClipRect},
    {30, 24, &P::intersectClipRect},
    {31, 24, &P::scaleViewportExt},
    {32, 24, &P::scaleWindowExt},
    {33, 8, &P::saveDC},
    {34, 12, &P::restoreDC},
    {35, 32, &P::setWorldTransform},
    {36, 36, &P::modifyWorldTransform},
    {37, 12, &P::selectObject},
    {38, 28, &P::createPen},
    {39, 24, &P::createBrush},
    {40, 12, &P::deleteObject},
    {41, 28, &P::angleArc},
    {42, 24, &P::ellipse},
    {43, 24, &P::rectangle},
    {44, 32, &P::roundRect},
    {45, 40, &P::arc},
    {46, 40, &P::chord},
    {47, 40, &P::pie},
    {48, 12, &P::selectPalette},
    {49, 16, &P::createPalette},
    {53, 24, &P::extFloodFill},
    {54, 16, &P::lineTo},
    {55, 40, &P::arcTo},
    {56, 28, &P::polyDraw<false>},
    {57, 12, &P::setArcDirection},
    {58, 12, &P::setMiterLimit},
    {59, 8, &P::beginPath},
    {60, 8, &P::endPath},
    {61, 8, &P::closeFigure},
    {62, 8, &P::fillPath},
    {63, 8, &P::strokeAndFillPath},
    {64, 8, &P::strokePath},
    {66, 8, &P::widenPath},
    {67, 12, &P::selectClipPath},
    {68, 8, &P::abortPath},
    {71, 64, &P::fillRgn},
    {72, 72, &P::frameRgn},
    {73, 60, &P::invertRgn},
    {74, 60, &P::paintRgn},
    {75, 16, &P::extSelectClipRgn},
    {76, 100, &P::bitBlt},
    {77, 108, &P::stretchBlt},
    {78, 128, &P::maskBlt},
    {79, 112, &P::plgBlt},
    {80, 76, &P::setDibitsToDevice},
    {81, 80, &P::stretchDibits},
    {82, 104, &P::createFont},
    {83, 76, &P::extTextOutA},
    {84, 76, &P::extTextOutW},
    {85, 28, &P::polyBezier<true>},
    {86, 28, &P::polygon<true>},
    {87, 28, &P::polyline<true>},
    {88, 28, &P::polyBezierTo<true>},
    {89, 28, &P::polylineTo<true>},
    {90, 32, &P::polyPolyline<true>},
    {91, 32, &P::polyPolygon<true>},
    {92, 28, &P::polyDraw<true>},
    {93, 32, &P::createMonoBrush},
    {94, 32, &P::createDibBrush},
    {95, 52, &P::extCreatePen},
    {96, 40, &P::polyTextOutA},
    {97, 40, &P::polyTextOutW},
    {108, 36, &P::smallTextOut},
    {114, 108, &P::alphaBlend},
    {116, 108, &P::transparentBlt},
    {118, 36, &P::gradientFill},
    {120, 16, &P::setTextJustification},
};

void EmfPlayer::play(const Reader& file) {
    for (std::uint64_t at = 0; file.holds(at, 8);) {
        const std::uint32_t type = file.u32(at);
        const std::uint32_t size = file.u32(at + 4);
        if (type == kEnd || size < 8 || !file.holds(at, size)) return;
        playRecord(type, file.part(at, size));
        at += size;
    }
}

void EmfPlayer::playRecord(std::uint32_t type, const Reader& record) {
    const auto* const found = std::lower_bound(
        std::begin(kTypes), std::end(kTypes), type,
        [](const Type& entry, std::uint32_t number) { return entry.number < number; });
    if (found == std::end(kTypes) || found->number != type) return;
    if (record.size() >= found->fewestBytes) (this->*found->play)(record);
}

void EmfPlayer::setWindowExt(const Reader& r) {
    painter_.state.mapping.setWindowExtent(emfPointAt(r, 8));
}

void EmfPlayer::setWindowOrg(const Reader& r) {
    painter_.state.mapping.setWindowOrigin(emfPointAt(r, 8));
}

void EmfPlayer::setViewportExt(const Reader& r) {
    painter_.state.mapping.setViewportExtent(emfPointAt(r, 8));
}

void EmfPlayer::setViewportOrg(const Reader& r) {
    painter_.state.mapping.setViewportOrigin(emfPointAt(r, 8));
}

void EmfPlayer::setBrushOrg(const Reader& r) {
    painter_.state.brushOrigin = rounded(emfPointAt(r, 8));
}

void EmfPlayer::setMapMode(const Reader& r) {
    painter_.state.mapping.setMode(r.i32(8));
}

void EmfPlayer::setBkMode(const Reader& r) {
    painter_.state.isOpaque = r.u32(8) != 1;
}

void EmfPlayer::setPolyFillMode(const Reader& r) {
    painter_.state.fillRule = r.u32(8) == 2 ? CAIRO_FILL_RULE_WINDING : CAIRO_FILL_RULE_EVEN_ODD;
}

void EmfPlayer::setRop2(const Reader& r) {
    painter_.state.rop2 = r.u32(8);
}

void EmfPlayer::setStretchBltMode(const Reader& r) {
    painter_.state.smoothsImages = r.u32(8) == 4;
}

void EmfPlayer::setTextAlign(const Reader& r) {
    painter_.state.textAlign = r.u32(8);
}

void EmfPlayer::setTextColor(const Reader& r) {
    painter_.state.textColor = r.u32(8);
}

void EmfPlayer::setBkColor(const Reader& r) {
    painter_.state.backColor = r.u32(8);
}

void EmfPlayer::setArcDirection(const Reader& r) {
    painter_.state.isClockwise = r.u32(8) == 2;
}

void EmfPlayer::setMiterLimit(const Reader& r) {
    const double limit = emfFloatAt(r, 8);
    if (limit >= 1 && limit <= 1000) painter_.state.miterLimit = limit;
}

void EmfPlayer::setTextJustification(const Reader& r) {
    const std::int32_t breaks = r.i32(12);
    painter_.state.breakExtra = breaks == 0 ? 0 : double(r.i32(8)) / breaks;
}

void EmfPlayer::scaleViewportExt(const Reader& r) {
    painter_.state.mapping.scaleViewportExtent({double(r.i32(8)), double(r.i32(16))},
                                               {double(r.i32(12)), double(r.i32(20))});
}

void EmfPlayer::scaleWindowExt(const Reader& r) {
    painter_.state.mapping.scaleWindowExtent({double(r.i32(8)), double(r.i32(16))},
                                             {double(r.i32(12)), double(r.i32(20))});
}

void EmfPlayer::saveDC(const Reader&) {
    painter_.save();
}

void EmfPlayer::restoreDC(const Reader& r) {
    painter_.restore(r.i32(8));
}

void EmfPlayer::setWorldTransform(const Reader& r) {
    painter_.state.mapping.setWorld(matrixAt(r, 8));
}

void EmfPlayer::modifyWorldTransform(const Reader& r) {
    Mapping& mapping = painter_.state.mapping;
    const Matrix matrix = matrixAt(r, 8);
    switch (r.u32(32)) {
    case 1:
        return mapping.setWorld({});
    case 2:
        return mapping.setWorld(matrix.then(mapping.world()));
    case 3:
        return mapping.setWorld(mapping.world().then(matrix));
    case 4:
        return mapping.setWorld(matrix);
    default:
        return;
    }
}

void EmfPlayer::excludeClipRect(const Reader& r) {
    painter_.intersectClip(boxRegion(painter_.state.mapping, r), Region::Mode::without);
}

void EmfPlayer::intersectClipRect(const Reader& r) {
    painter_.intersectClip(boxRegion(painter_.state.mapping, r), Region::Mode::both);
}

void EmfPlayer::offsetClipRgn(const Reader& r) {
    const Matrix whole = painter_.state.mapping.whole();
    const Point by = emfPointAt(r, 8);
    painter_.moveClip({by.x * whole.xx + by.y * whole.xy, by.x * whole.yx + by.y * whole.yy});
}

// Copying no region ends the clipping; that region's boxes are pixels of the metafile's device.
void EmfPlayer::extSelectClipRgn(const Reader& r) {
    const std::uint32_t mode = r.u32(12);
    if (mode < 1 || mode > 5) return;
    if (r.u32(8) == 0 && mode == 5) return painter_.resetClip();
    if (r.size() < 48) return;
    painter_.intersectClip(regionAt(r, 16), static_cast<Region::Mode>(mode));
}

void EmfPlayer::selectClipPath(const Reader& r) {
    const std::uint32_t mode = r.u32(8);
    if (mode >= 1 && mode <= 5) painter_.clipToPath(static_cast<Region::Mode>(mode));
}

}  // namespace orvane::metafiles
