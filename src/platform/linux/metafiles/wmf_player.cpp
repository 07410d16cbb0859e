#include "platform/linux/metafiles/wmf_player.h"

#include "platform/linux/metafiles/wmf_fields.h"

#include <algorithm>
#include <utility>

// The walk over the records and those that set the state.

namespace orvane::metafiles {

namespace {

constexpr std::uint32_t kFewestWords = 3;
Point sum(Point a, Point b) {
    return {a.x + b.x, a.y + b.y};
}

/// The pixels of a record's box.
Region boxRegion(const Mapping& mapping, const codecs::Reader& r) {
    return regionOf(mapping, {boxAt(r, 0)});
}

}  // namespace

using P = WmfPlayer;

const WmfPlayer::Function WmfPlayer::kFunctions[] = {
    {0x001E, 0, &P::saveDC},
    {0x00F7, 4, &P::createPalette},
    {0x0102, 2, &P::setBkMode},
    {0x0103, 2, &P::setMapMode},
    {0x0104, 2, &P::setRop2},
    {0x0106, 2, &P::setPolyFillMode},
    {0x0107, 2, &P::setStretchBltMode},
    {0x0108, 2, &P::setTextCharExtra},
    {0x0127, 2, &P::restoreDC},
    {0x012A, 2, &P::invertRegion},
    {0x012B, 2, &P::paintRegion},
    {0x012C, 2, &P::selectClipRegion},
    {0x012D, 2, &P::selectObject},
    {0x012E, 2, &P::setTextAlign},
    {0x0142, 4, &P::createDibPatternBrush},
    {0x01F0, 2, &P::deleteObject},
    {0x01F9, 10, &P::createPatternBrush},
    {0x0201, 4, &P::setBkColor},
    {0x0209, 4, &P::setTextColor},
    {0x020A, 4, &P::setTextJustification},
    {0x020B, 4, &P::setWindowOrg},
    {0x020C, 4, &P::setWindowExt},
    {0x020D, 4, &P::setViewportOrg},
    {0x020E, 4, &P::setViewportExt},
    {0x020F, 4, &P::offsetWindowOrg},
    {0x0211, 4, &P::offsetViewportOrg},
    {0x0213, 4, &P::lineTo},
    {0x0214, 4, &P::moveTo},
    {0x0220, 4, &P::offsetClipRgn},
    {0x0228, 4, &P::fillRegion},
    {0x02FA, 10, &P::createPen},
    {0x02FB, 18, &P::createFont},
    {0x02FC, 8, &P::createBrush},
    {0x0324, 2, &P::polygon},
    {0x0325, 2, &P::polyline},
    {0x0410, 8, &P::scaleWindowExt},
    {0x0412, 8, &P::scaleViewportExt},
    {0x0415, 8, &P::excludeClipRect},
    {0x0416, 8, &P::intersectClipRect},
    {0x0418, 8, &P::ellipse},
    {0x0419, 8, &P::floodFill},
    {0x041B, 8, &P::rectangle},
    {0x041F, 8, &P::setPixel},
    {0x0429, 8, &P::frameRegion},
    {0x0521, 6, &P::textOut},
    {0x0538, 2, &P::polyPolygon},
    {0x0548, 10, &P::extFloodFill},
    {0x061C, 12, &P::roundRect},
    {0x061D, 12, &P::patBlt},
    {0x06FE, 0, &P::createBitmap},
    {0x06FF, 22, &P::createRegion},
    {0x0817, 16, &P::arc},
    {0x081A, 16, &P::pie},
    {0x0830, 16, &P::chord},
    {0x0922, 16, &P::bitBlt},
    {0x0940, 16, &P::dibBitBlt},
    {0x0A32, 8, &P::extTextOut},
    {0x0B23, 20, &P::stretchBlt},
    {0x0B41, 20, &P::dibStretchBlt},
    {0x0D33, 18, &P::setDibToDevice},
    {0x0F43, 22, &P::stretchDib},
};

void WmfPlayer::play(const Reader& records) {
    for (std::uint64_t at = 0; records.holds(at, 6);) {
        const std::uint64_t words = records.u32(at);
        const std::uint16_t function = records.u16(at + 4);
        if (function == 0 || words < kFewestWords || !records.holds(at, words * 2)) return;
        playRecord(function, records.part(at + 6, words * 2 - 6));
        at += words * 2;
    }
}

void WmfPlayer::playRecord(std::uint16_t function, const Reader& record) {
    const auto* const found = std::lower_bound(
        std::begin(kFunctions), std::end(kFunctions), function,
        [](const Function& entry, std::uint16_t number) { return entry.number < number; });
    if (found == std::end(kFunctions) || found->number != function) return;
    if (record.size() >= found->fewestBytes) (this->*found->play)(record);
}

void WmfPlayer::setBkColor(const Reader& r) {
    painter_.state.backColor = r.u32(0);
}

void WmfPlayer::setBkMode(const Reader& r) {
    painter_.state.isOpaque = r.u16(0) != 1;
}

void WmfPlayer::setMapMode(const Reader& r) {
    painter_.state.mapping.setMode(r.u16(0));
}

void WmfPlayer::setRop2(const Reader& r) {
    painter_.state.rop2 = r.u16(0);
}

void WmfPlayer::setPolyFillMode(const Reader& r) {
    painter_.state.fillRule = r.u16(0) == 2 ? CAIRO_FILL_RULE_WINDING : CAIRO_FILL_RULE_EVEN_ODD;
}

void WmfPlayer::setStretchBltMode(const Reader& r) {
    painter_.state.smoothsImages = r.u16(0) == 4;
}

void WmfPlayer::setTextCharExtra(const Reader& r) {
    painter_.state.charExtra = r.i16(0);
}

void WmfPlayer::setTextColor(const Reader& r) {
    painter_.state.textColor = r.u32(0);
}

void WmfPlayer::setTextJustification(const Reader& r) {
    const int breaks = r.i16(0);
    painter_.state.breakExtra = breaks == 0 ? 0 : double(r.i16(2)) / breaks;
}

void WmfPlayer::setTextAlign(const Reader& r) {
    painter_.state.textAlign = r.u16(0);
}

void WmfPlayer::setWindowOrg(const Reader& r) {
    painter_.state.mapping.setWindowOrigin(pointAt(r, 0));
}

void WmfPlayer::setWindowExt(const Reader& r) {
    painter_.state.mapping.setWindowExtent(pointAt(r, 0));
}

void WmfPlayer::setViewportOrg(const Reader& r) {
    painter_.state.mapping.setViewportOrigin(pointAt(r, 0));
}

void WmfPlayer::setViewportExt(const Reader& r) {
    painter_.state.mapping.setViewportExtent(pointAt(r, 0));
}

void WmfPlayer::offsetWindowOrg(const Reader& r) {
    Mapping& mapping = painter_.state.mapping;
    mapping.setWindowOrigin(sum(mapping.windowOrigin(), pointAt(r, 0)));
}

void WmfPlayer::scaleWindowExt(const Reader& r) {
    painter_.state.mapping.scaleWindowExtent({double(r.i16(6)), double(r.i16(2))},
                                             {double(r.i16(4)), double(r.i16(0))});
}

void WmfPlayer::offsetViewportOrg(const Reader& r) {
    Mapping& mapping = painter_.state.mapping;
    mapping.setViewportOrigin(sum(mapping.viewportOrigin(), pointAt(r, 0)));
}

void WmfPlayer::scaleViewportExt(const Reader& r) {
    painter_.state.mapping.scaleViewportExtent({double(r.i16(6)), double(r.i16(2))},
                                               {double(r.i16(4)), double(r.i16(0))});
}

void WmfPlayer::saveDC(const Reader&) {
    painter_.save();
}

void WmfPlayer::restoreDC(const Reader& r) {
    painter_.restore(r.i16(0));
}

void WmfPlayer::excludeClipRect(const Reader& r) {
    painter_.intersectClip(boxRegion(painter_.state.mapping, r), Region::Mode::without);
}

void WmfPlayer::intersectClipRect(const Reader& r) {
    painter_.intersectClip(boxRegion(painter_.state.mapping, r), Region::Mode::both);
}

void WmfPlayer::offsetClipRgn(const Reader& r) {
    const Matrix whole = painter_.state.mapping.whole();
    const Point by = pointAt(r, 0);
    painter_.moveClip({by.x * whole.xx, by.y * whole.yy});
}

void WmfPlayer::selectClipRegion(const Reader& r) {
    const std::uint16_t index = r.u16(0);
    const std::vector<Box> boxes = regionAt(index);
    // No region is no clipping.
    if (boxes.empty()) painter_.resetClip();
    else painter_.setClip(regionOf(boxes));
}

}  // namespace orvane::metafiles
