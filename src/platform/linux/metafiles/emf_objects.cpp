#include "platform/linux/metafiles/charsets.h"
#include "platform/linux/metafiles/emf_player.h"

#include <utility>

// Objects have the numbers that their records give them; those with the highest bit are Windows'
// own.

namespace orvane::metafiles {

namespace {

constexpr std::uint32_t kStock = 0x80000000;
constexpr std::uint32_t kGeometric = 0x00010000;

}  // namespace

const Object& EmfPlayer::objectAt(std::uint32_t index) const {
    static const Object kNone;
    const auto found = objects_.find(index);
    return found == objects_.end() ? kNone : found->second;
}

Brush EmfPlayer::brushAt(std::uint32_t index) const {
    const Object object = (index & kStock) != 0 ? stockObject(index & ~kStock) : objectAt(index);
    const auto* const brush = std::get_if<Brush>(&object);
    return brush == nullptr ? brushOf(1, 0, 0) : *brush;
}

void EmfPlayer::selectObject(const Reader& r) {
    const std::uint32_t index = r.u32(8);
    if ((index & kStock) != 0) select(painter_, stockObject(index & ~kStock));
    else select(painter_, objectAt(index));
}

void EmfPlayer::deleteObject(const Reader& r) {
    objects_.erase(r.u32(8));
}

void EmfPlayer::createPen(const Reader& r) {
    objects_[r.u32(8)] = simplePen(r.u32(12), r.i32(16), r.u32(24));
}

void EmfPlayer::extCreatePen(const Reader& r) {
    const std::uint32_t style = r.u32(28);
    Pen pen;
    pen.kind = (style & kGeometric) != 0 ? PenKind::geometric : PenKind::cosmetic;
    const std::uint32_t dashes = style & 0x0F;
    pen.style = dashes <= 8 ? static_cast<PenStyle>(dashes) : PenStyle::solid;
    const std::uint32_t end = style >> 8 & 0x0F;
    const std::uint32_t join = style >> 12 & 0x0F;
    pen.end = end <= 2 ? static_cast<PenEnd>(end) : PenEnd::round;
    pen.join = join <= 2 ? static_cast<PenJoin>(join) : PenJoin::round;
    pen.width = r.u32(32);
    if (pen.kind == PenKind::cosmetic) pen.width = 1;
    // A pen with a brush that draws nothing draws nothing.
    if (r.u32(36) == 1) pen.style = PenStyle::none;
    pen.color = r.u32(40);
    for (std::uint64_t i = 0; i < r.u32(48) && i < 16 && r.holds(52 + i * 4, 4); ++i)
        pen.dashes.push_back(r.u32(52 + i * 4));
    objects_[r.u32(8)] = std::move(pen);
}

void EmfPlayer::createBrush(const Reader& r) {
    objects_[r.u32(8)] = brushOf(r.u32(12), r.u32(16), r.u32(20));
}

void EmfPlayer::createMonoBrush(const Reader& r) {
    ImageHandle image = imageAt(r, 12, 16);
    if (image != nullptr) {
        // Set bits are the background, the others the text.
        auto own = std::make_shared<Image>();
        own->pixels.reset(cairo_surface_reference(image->pixels.get()));
        own->width = image->width;
        own->height = image->height;
        own->isMonochrome = true;
        image = std::move(own);
    }
    objects_[r.u32(8)] = brushOf(std::move(image));
}

void EmfPlayer::createDibBrush(const Reader& r) {
    objects_[r.u32(8)] = brushOf(imageAt(r, 12, 16));
}

void EmfPlayer::createPalette(const Reader& r) {
    objects_[r.u32(8)] = paletteOf(r.part(16), r.u16(14));
}

void EmfPlayer::selectPalette(const Reader& r) {
    select(painter_, objectAt(r.u32(8)));
}

void EmfPlayer::createFont(const Reader& r) {
    Font font;
    font.height = r.i32(12);
    font.width = r.i32(16);
    font.escapement = r.i32(20);
    font.weight = r.i32(28);
    readFontStyle(r.part(32), font);
    font.face = utf8FaceName(r.bytes(40, 64));
    objects_[r.u32(8)] = std::move(font);
}

}  // namespace orvane::metafiles
