#include "platform/linux/metafiles/charsets.h"
#include "platform/linux/metafiles/emf_fields.h"
#include "platform/linux/metafiles/emf_player.h"

#include <algorithm>
#include <cstring>

// Records that draw text and images.

namespace orvane::metafiles {

namespace {

constexpr std::uint32_t kFillsBox = 0x2;
constexpr std::uint32_t kClipsToBox = 0x4;
constexpr std::uint32_t kGlyphs = 0x10;
constexpr std::uint32_t kNoBox = 0x100;
constexpr std::uint32_t kSmallCharacters = 0x200;
constexpr std::uint32_t kPairs = 0x2000;

constexpr std::uint64_t kTextBytes = 40;

/// Records of text tell in which mode they were made.
bool isAdvanced(const codecs::Reader& record) {
    return record.u32(24) == 2;
}

Corners cornersAt(const codecs::Reader& r, std::uint64_t origin, std::uint64_t size) {
    const Point at = emfPointAt(r, origin);
    const Point extent = emfPointAt(r, size);
    return Corners::of(at.x, at.y, extent.x, extent.y);
}

Box boxOf(Point origin, Point size) {
    return {origin.x, origin.y, origin.x + size.x, origin.y + size.y};
}

// Records of printers name glyphs in place of characters. Without that very font nobody knows them,
// but most fonts have their first ones in the order of ASCII, from the blank on.
void lettersOfGlyphs(Characters& characters) {
    for (char32_t& letter : characters.text)
        letter = letter >= 3 && letter < 98 ? letter + 29 : U' ';
}

/// Gives an image the fourth bytes of a mask of the same size: opaque where it is white.
ImageHandle masked(const Image& image, const Image& mask, int x, int y) {
    auto result = std::make_shared<Image>();
    result->width = image.width;
    result->height = image.height;
    result->pixels.reset(
        cairo_image_surface_create(CAIRO_FORMAT_ARGB32, image.width, image.height));
    const auto row = [](const Image& of, int at) {
        return reinterpret_cast<std::uint32_t*>(
            cairo_image_surface_get_data(of.pixels.get()) +
            std::ptrdiff_t{at} * cairo_image_surface_get_stride(of.pixels.get()));
    };
    if (cairo_image_surface_get_data(result->pixels.get()) == nullptr) return nullptr;
    for (int to = 0; to < image.height; ++to) {
        const std::int64_t maskRow = std::int64_t{to} + y;
        for (int column = 0; column < image.width; ++column) {
            const std::int64_t maskColumn = std::int64_t{column} + x;
            const bool inside =
                maskRow >= 0 && maskRow < mask.height && maskColumn >= 0 && maskColumn < mask.width;
            const bool shows =
                inside && (row(mask, static_cast<int>(maskRow))[maskColumn] & 0xFFFFFF) != 0;
            row(*result, to)[column] = shows ? 0xFF000000 | (row(image, to)[column] & 0xFFFFFF) : 0;
        }
    }
    cairo_surface_mark_dirty(result->pixels.get());
    return result;
}

}  // namespace

void EmfPlayer::drawCharacters(const Characters& characters, TextRun& run, const Reader& advances,
                               bool pairs) {
    run.text = characters.text;
    const std::uint64_t bytes = pairs ? 8 : 4;
    std::uint64_t at = 0;
    for (const std::size_t units : characters.units) {
        if (!advances.holds(at, units * bytes)) break;
        Point step;
        for (std::size_t i = 0; i < units; ++i, at += bytes) {
            step.x += advances.i32(at);
            if (pairs) step.y += advances.i32(at + 4);
        }
        run.advances.push_back(step);
    }
    painter_.drawText(run);
}

// Where it stands, how many characters, where they lie in the record, options, a box, and where the
// distances lie (40 bytes).
void EmfPlayer::drawText(const Reader& record, std::uint64_t at, bool wide) {
    TextRun run;
    run.at = emfPointAt(record, at);
    const std::uint64_t count = record.u32(at + 8);
    const std::uint64_t textAt = record.u32(at + 12);
    const std::uint32_t options = record.u32(at + 16);
    const std::uint64_t advancesAt = record.u32(at + 36);
    run.isStretched = isAdvanced(record);
    run.fillsBox = (options & kFillsBox) != 0;
    run.clipsToBox = (options & kClipsToBox) != 0;
    run.box = emfBoxAt(record, at + 20);
    const std::uint64_t bytes = count * (wide ? 2 : 1);
    if (!record.holds(textAt, bytes)) return;
    Characters characters = wide
                                ? decodedUtf16(record.bytes(textAt, bytes))
                                : decoded(record.bytes(textAt, bytes), painter_.state.font.charset);
    if ((options & kGlyphs) != 0) lettersOfGlyphs(characters);
    const bool pairs = (options & kPairs) != 0;
    const Reader advances =
        advancesAt == 0 ? Reader({}) : record.part(advancesAt, count * (pairs ? 8 : 4));
    drawCharacters(characters, run, advances, pairs);
}

void EmfPlayer::extTextOutA(const Reader& r) {
    drawText(r, 36, false);
}

void EmfPlayer::extTextOutW(const Reader& r) {
    drawText(r, 36, true);
}

void EmfPlayer::polyTextOutA(const Reader& r) {
    for (std::uint64_t i = 0; i < r.u32(36) && r.holds(40 + i * kTextBytes, kTextBytes); ++i)
        drawText(r, 40 + i * kTextBytes, false);
}

void EmfPlayer::polyTextOutW(const Reader& r) {
    for (std::uint64_t i = 0; i < r.u32(36) && r.holds(40 + i * kTextBytes, kTextBytes); ++i)
        drawText(r, 40 + i * kTextBytes, true);
}

void EmfPlayer::smallTextOut(const Reader& r) {
    TextRun run;
    run.at = emfPointAt(r, 8);
    run.isStretched = isAdvanced(r);
    const std::uint64_t count = r.u32(16);
    const std::uint32_t options = r.u32(20);
    std::uint64_t at = 36;
    if ((options & kNoBox) == 0) {
        run.box = emfBoxAt(r, at);
        run.fillsBox = (options & kFillsBox) != 0;
        run.clipsToBox = (options & kClipsToBox) != 0;
        at += 16;
    }
    const bool small = (options & kSmallCharacters) != 0;
    const std::uint64_t bytes = count * (small ? 1 : 2);
    if (!r.holds(at, bytes)) return;
    Characters characters;
    if (small) {
        // The low halves of UTF-16 units.
        for (const std::uint8_t unit : r.bytes(at, bytes))
            characters.add(unit, 1);
    } else {
        characters = decodedUtf16(r.bytes(at, bytes));
    }
    if ((options & kGlyphs) != 0) lettersOfGlyphs(characters);
    drawCharacters(characters, run, Reader({}), false);
}

// The offset and size of the header, and those of the pixels.
ImageHandle EmfPlayer::imageAt(const Reader& r, std::uint64_t usageAt,
                               std::uint64_t offsetsAt) const {
    const std::uint32_t headerBytes = r.u32(offsetsAt + 4);
    if (headerBytes == 0) return nullptr;
    return imageOfDib(r.part(r.u32(offsetsAt), headerBytes),
                      r.part(r.u32(offsetsAt + 8), r.u32(offsetsAt + 12)), r.u32(usageAt),
                      painter_.state.palette.colors);
}

// What the records of blits have in common, up to the size of the source, which only some have.
Transfer EmfPlayer::blit(const Reader& r, bool stretches) const {
    Transfer transfer;
    transfer.to = cornersAt(r, 24, 32);
    transfer.operation = r.u32(40);
    transfer.image = imageAt(r, 80, 84);
    transfer.from = boxOf(emfPointAt(r, 44), emfPointAt(r, stretches ? 100 : 32));
    return transfer;
}

void EmfPlayer::bitBlt(const Reader& r) {
    painter_.transfer(blit(r, false));
}

void EmfPlayer::stretchBlt(const Reader& r) {
    painter_.transfer(blit(r, true));
}

// Where the mask is set one operation counts, elsewhere another: the one that is asked for in
// practice leaves what is there.
void EmfPlayer::maskBlt(const Reader& r) {
    Transfer transfer = blit(r, false);
    const ImageHandle mask = imageAt(r, 108, 112);
    const bool keepsOutside = r.u32(40) >> 24 == 0xAA;
    if (mask != nullptr && transfer.image != nullptr && keepsOutside) {
        const Point at = emfPointAt(r, 100);
        transfer.image = masked(*transfer.image, *mask, static_cast<int>(at.x - transfer.from.left),
                                static_cast<int>(at.y - transfer.from.top));
        transfer.hasAlpha = true;
    }
    painter_.transfer(transfer);
}

void EmfPlayer::plgBlt(const Reader& r) {
    Transfer transfer;
    transfer.to = {emfPointAt(r, 24), emfPointAt(r, 32), emfPointAt(r, 40)};
    transfer.from = boxOf(emfPointAt(r, 48), emfPointAt(r, 56));
    transfer.image = imageAt(r, 92, 96);
    if (transfer.image != nullptr) painter_.transfer(transfer);
}

void EmfPlayer::setDibitsToDevice(const Reader& r) {
    Transfer transfer;
    transfer.image = imageAt(r, 64, 48);
    if (transfer.image == nullptr) return;
    const Point from = emfPointAt(r, 32);
    const Point size = emfPointAt(r, 40);
    const double top = transfer.image->height - from.y - size.y;
    transfer.from = boxOf({from.x, top}, size);
    transfer.to = cornersAt(r, 24, 40);
    transfer.keepsSize = true;
    painter_.transfer(transfer);
}

void EmfPlayer::stretchDibits(const Reader& r) {
    Transfer transfer;
    transfer.image = imageAt(r, 64, 48);
    transfer.operation = r.u32(68);
    transfer.to = cornersAt(r, 24, 72);
    if (transfer.image != nullptr) {
        // The source is measured from the image's bottom.
        const Point from = emfPointAt(r, 32);
        const Point size = emfPointAt(r, 40);
        transfer.from = boxOf({from.x, transfer.image->height - from.y - size.y}, size);
    }
    painter_.transfer(transfer);
}

// Operation, flags, opacity and whether the image's fourth bytes count, one byte each.
void EmfPlayer::alphaBlend(const Reader& r) {
    Transfer transfer = blit(r, true);
    if (transfer.image == nullptr) return;
    transfer.operation = 0x00CC0020;
    transfer.opacity = r.u8(42) / 255.0;
    transfer.hasAlpha = r.u8(43) == 1;
    painter_.transfer(transfer);
}

void EmfPlayer::transparentBlt(const Reader& r) {
    Transfer transfer = blit(r, true);
    if (transfer.image == nullptr) return;
    transfer.transparent = transfer.operation;
    transfer.operation = 0x00CC0020;
    painter_.transfer(transfer);
}

}  // namespace orvane::metafiles
