#include "platform/linux/metafiles/charsets.h"
#include "platform/linux/metafiles/wmf_player.h"

#include <algorithm>
#include <utility>

// Objects have no numbers of their own: one that is made takes the first place that is free.

namespace orvane::metafiles {

namespace {

/// A text of at most so many bytes, up to its NUL.
std::span<const std::uint8_t> textAt(const codecs::Reader& r, std::uint64_t offset,
                                     std::uint64_t most) {
    const auto bytes = r.bytes(offset, most);
    const auto end = std::find(bytes.begin(), bytes.end(), std::uint8_t{0});
    return bytes.first(static_cast<std::size_t>(end - bytes.begin()));
}

}  // namespace

void WmfPlayer::add(Object object) {
    const auto free = std::find_if(objects_.begin(), objects_.end(), [](const Object& place) {
        return std::holds_alternative<std::monostate>(place);
    });
    if (free != objects_.end()) *free = std::move(object);
    else objects_.push_back(std::move(object));
}

const Object& WmfPlayer::objectAt(std::uint32_t index) const {
    static const Object kNone;
    return index < objects_.size() ? objects_[index] : kNone;
}

std::vector<Box> WmfPlayer::regionAt(std::uint32_t index) const {
    const auto* const boxes = std::get_if<std::vector<Box>>(&objectAt(index));
    return boxes == nullptr ? std::vector<Box>{} : *boxes;
}

bool WmfPlayer::isRegion(std::uint32_t index) const {
    return std::holds_alternative<std::vector<Box>>(objectAt(index));
}

Brush WmfPlayer::brushAt(std::uint32_t index) const {
    const auto* const brush = std::get_if<Brush>(&objectAt(index));
    return brush == nullptr ? brushOf(1, 0, 0) : *brush;
}

void WmfPlayer::createPen(const Reader& r) {
    add(simplePen(r.u16(0), r.i16(2), r.u32(6)));
}

void WmfPlayer::createBrush(const Reader& r) {
    add(brushOf(r.u16(0), r.u32(2), r.u16(6)));
}

void WmfPlayer::createFont(const Reader& r) {
    Font font;
    font.height = r.i16(0);
    font.width = r.i16(2);
    font.escapement = r.i16(4);
    font.weight = r.i16(8);
    readFontStyle(r.part(10), font);
    font.face = utf8(decoded(textAt(r, 18, 32), font.charset).text);
    add(std::move(font));
}

void WmfPlayer::createPalette(const Reader& r) {
    add(paletteOf(r.part(4), r.u16(2)));
}

// A region is bands of rows, each with the left and right ends of its runs between two counts.
void WmfPlayer::createRegion(const Reader& r) {
    std::vector<Box> boxes;
    const std::size_t scans = r.u16(10);
    std::uint64_t at = 22;
    for (std::size_t i = 0; i < scans && r.holds(at, 8); ++i) {
        const std::uint64_t ends = r.u16(at);
        const double top = r.i16(at + 2);
        const double bottom = r.i16(at + 4);
        for (std::uint64_t end = 0; end + 1 < ends && r.holds(at + 6 + end * 2, 4); end += 2)
            boxes.push_back(
                {double(r.i16(at + 6 + end * 2)), top, double(r.i16(at + 8 + end * 2)), bottom});
        at += 8 + ends * 2;
    }
    add(std::move(boxes));
}

void WmfPlayer::createPatternBrush(const Reader& r) {
    // Behind the bitmap's 14 bytes lie 18 that mean nothing.
    add(brushOf(imageOfDeviceBitmap(r, 32)));
}

void WmfPlayer::createDibPatternBrush(const Reader& r) {
    add(brushOf(imageOfPackedDib(r.part(4), r.u16(2), painter_.state.palette.colors)));
}

void WmfPlayer::createBitmap(const Reader&) {
    // Nothing can be drawn with it, but it has its place.
    add(Palette{});
}

void WmfPlayer::selectObject(const Reader& r) {
    select(painter_, objectAt(r.u16(0)));
}

void WmfPlayer::deleteObject(const Reader& r) {
    const std::size_t index = r.u16(0);
    if (index < objects_.size()) objects_[index] = std::monostate{};
}

}  // namespace orvane::metafiles
