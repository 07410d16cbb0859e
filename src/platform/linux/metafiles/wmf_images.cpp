#include "platform/linux/metafiles/charsets.h"
#include "platform/linux/metafiles/wmf_fields.h"
#include "platform/linux/metafiles/wmf_player.h"

#include <algorithm>

// Records that draw text and images.

namespace orvane::metafiles {

namespace {

constexpr std::uint16_t kFillsBox = 2;
constexpr std::uint16_t kClipsToBox = 4;

Corners cornersAt(Point origin, Point size) {
    return Corners::of(origin.x, origin.y, size.x, size.y);
}

}  // namespace

void WmfPlayer::drawCharacters(const Reader& text, TextRun& run, const Reader& advances) {
    const Characters characters = decoded(text.bytes(0), painter_.state.font.charset);
    run.text = characters.text;
    std::uint64_t unit = 0;
    for (const std::size_t units : characters.units) {
        Point step;
        if (!advances.holds(unit * 2, units * 2)) break;
        for (std::size_t i = 0; i < units; ++i, ++unit)
            step.x += advances.i16(unit * 2);
        run.advances.push_back(step);
    }
    painter_.drawText(run);
}

void WmfPlayer::textOut(const Reader& r) {
    const std::uint64_t count = r.u16(0);
    const std::uint64_t padded = (count + 1) / 2 * 2;
    if (!r.holds(2, padded + 4)) return;
    TextRun run;
    run.at = pointAt(r, 2 + padded);
    drawCharacters(r.part(2, count), run, Reader({}));
}

void WmfPlayer::extTextOut(const Reader& r) {
    TextRun run;
    run.at = pointAt(r, 0);
    const std::uint64_t count = r.u16(4);
    const std::uint16_t options = r.u16(6);
    run.fillsBox = (options & kFillsBox) != 0;
    run.clipsToBox = (options & kClipsToBox) != 0;
    std::uint64_t at = 8;
    if (run.fillsBox || run.clipsToBox) {
        run.box = {double(r.i16(8)), double(r.i16(10)), double(r.i16(12)), double(r.i16(14))};
        at = 16;
    }
    if (!r.holds(at, count)) return;
    drawCharacters(r.part(at, count), run, r.part(at + (count + 1) / 2 * 2));
}

void WmfPlayer::patBlt(const Reader& r) {
    Transfer transfer;
    transfer.operation = r.u32(0);
    transfer.to = cornersAt(pointAt(r, 8), pointAt(r, 4));
    painter_.transfer(transfer);
}

// A record without an image has a word in its place that means nothing.
void WmfPlayer::blit(const Reader& r, bool isDib, bool stretches) {
    Transfer transfer;
    transfer.operation = r.u32(0);
    const std::uint64_t header = stretches ? 20 : 16;
    const bool hasImage = r.size() > header + 2;
    const std::uint64_t sizeAt = (stretches ? 12u : 8u) + (hasImage ? 0u : 2u);
    const Point source = pointAt(r, stretches ? 8 : 4);
    const Point to = pointAt(r, sizeAt);
    transfer.to = cornersAt(pointAt(r, sizeAt + 4), to);
    if (hasImage) {
        const Reader image = r.part(header);
        transfer.image = isDib ? imageOfPackedDib(image, 0, painter_.state.palette.colors)
                               : imageOfDeviceBitmap(image, 10);
        if (transfer.image == nullptr) return;
        const Point from = stretches ? pointAt(r, 4) : to;
        transfer.from = {source.x, source.y, source.x + from.x, source.y + from.y};
    }
    painter_.transfer(transfer);
}

void WmfPlayer::bitBlt(const Reader& r) {
    blit(r, false, false);
}

void WmfPlayer::stretchBlt(const Reader& r) {
    blit(r, false, true);
}

void WmfPlayer::dibBitBlt(const Reader& r) {
    blit(r, true, false);
}

void WmfPlayer::dibStretchBlt(const Reader& r) {
    blit(r, true, true);
}

void WmfPlayer::stretchDib(const Reader& r) {
    Transfer transfer;
    transfer.operation = r.u32(0);
    transfer.image = imageOfPackedDib(r.part(22), r.u16(4), painter_.state.palette.colors);
    if (transfer.image == nullptr) return;
    const Point size = pointAt(r, 6);
    const Point from = pointAt(r, 10);
    // The source is measured from the image's bottom.
    const double top = transfer.image->height - from.y - size.y;
    transfer.from = {from.x, top, from.x + size.x, top + size.y};
    transfer.to = cornersAt(pointAt(r, 18), pointAt(r, 14));
    painter_.transfer(transfer);
}

void WmfPlayer::setDibToDevice(const Reader& r) {
    Transfer transfer;
    transfer.image = imageOfPackedDib(r.part(18), r.u16(0), painter_.state.palette.colors);
    if (transfer.image == nullptr) return;
    const Point from = pointAt(r, 6);
    const Point size{double(r.u16(12)), double(r.u16(10))};
    const double top = transfer.image->height - from.y - size.y;
    transfer.from = {from.x, top, from.x + size.x, top + size.y};
    transfer.to = cornersAt(pointAt(r, 14), size);
    transfer.keepsSize = true;
    painter_.transfer(transfer);
}

}  // namespace orvane::metafiles
