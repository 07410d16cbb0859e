#include "platform/linux/picture_save.h"

#include <orvane/automation.h>

#include <limits>
#include <span>

namespace orvane::platform {

namespace {

constexpr std::uint32_t kFileHeader = 14;
constexpr std::uint32_t kInfoHeader = 40;
constexpr std::uint32_t kIconEntries = 6 + 16;
constexpr std::uint32_t kCompressionMasks = 3;

/// Little-endian fields, one after the other.
class Writer {
public:
    explicit Writer(std::size_t size) { bytes_.reserve(size); }

    Writer& u8(std::uint32_t value) {
        bytes_.push_back(static_cast<std::uint8_t>(value));
        return *this;
    }
    Writer& u16(std::uint32_t value) { return u8(value).u8(value >> 8); }
    Writer& u32(std::uint32_t value) { return u16(value).u16(value >> 16); }
    Writer& bytes(const std::uint8_t* from, std::size_t count) {
        bytes_.insert(bytes_.end(), from, from + count);
        return *this;
    }
    std::vector<std::uint8_t> take() { return std::move(bytes_); }

private:
    std::vector<std::uint8_t> bytes_;
};

void writeInfoHeader(Writer& out, const Surface& surface, std::uint32_t height,
                     std::uint32_t compression, std::uint64_t pixelBytes) {
    out.u32(kInfoHeader).u32(static_cast<std::uint32_t>(surface.width())).u32(height);
    out.u16(1).u16(surface.format().bits).u32(compression);
    out.u32(static_cast<std::uint32_t>(pixelBytes)).u32(0).u32(0).u32(0).u32(0);
}

/// The rows from the bottom, each cut or padded to the width that files have.
void writeRows(Writer& out, const Surface& surface) {
    const auto stride = static_cast<std::size_t>(
        rowStride(static_cast<std::uint32_t>(surface.width()), surface.format().bits));
    for (std::int32_t y = surface.height() - 1; y >= 0; --y) {
        out.bytes(surface.row(y), stride);
    }
}

std::uint64_t pixelBytesOf(const Surface& surface) {
    return rowStride(static_cast<std::uint32_t>(surface.width()), surface.format().bits) *
           static_cast<std::uint64_t>(surface.height());
}

bool hasUsualMasks(const PixelFormat& format) {
    const PixelFormat usual = PixelFormat::ofDepth(format.bits);
    return format.redMask == usual.redMask && format.greenMask == usual.greenMask &&
           format.blueMask == usual.blueMask;
}

/// The byte in a file's entry for a size: 0 stands for 256 and what is larger.
std::uint32_t entrySize(std::int32_t size) {
    return size > 255 ? 0 : static_cast<std::uint32_t>(size);
}

}  // namespace

std::vector<std::uint8_t> bmpFile(const Surface& surface) {
    const PixelFormat& format = surface.format();
    const bool masks = !hasUsualMasks(format);
    const auto tableBytes =
        masks ? 12u : static_cast<std::uint32_t>(format.palette.size() * sizeof(std::uint32_t));
    const std::uint32_t offset = kFileHeader + kInfoHeader + tableBytes;
    const std::uint64_t size = offset + pixelBytesOf(surface);
    if (size > std::numeric_limits<std::int32_t>::max()) {
        return {};
    }
    Writer out(size);
    out.u8('B').u8('M').u32(static_cast<std::uint32_t>(size)).u32(0).u32(offset);
    writeInfoHeader(out, surface, static_cast<std::uint32_t>(surface.height()),
                    masks ? kCompressionMasks : 0, pixelBytesOf(surface));
    if (masks) {
        out.u32(format.redMask).u32(format.greenMask).u32(format.blueMask);
    }
    for (const std::uint32_t entry : format.palette) {
        out.u32(entry);
    }
    writeRows(out, surface);
    return out.take();
}

std::vector<std::uint8_t> iconFile(const Icon& icon) {
    const std::uint64_t image = kInfoHeader + pixelBytesOf(*icon.color) + pixelBytesOf(*icon.mask);
    if (kIconEntries + image > std::numeric_limits<std::int32_t>::max()) {
        return {};
    }
    Writer out(kIconEntries + image);
    out.u16(0).u16(icon.isIcon ? 1 : 2).u16(1);
    out.u8(entrySize(icon.color->width())).u8(entrySize(icon.color->height())).u16(0);
    // An icon has its planes and depth here, a cursor its hot spot.
    out.u16(icon.isIcon ? 1 : icon.hotspotX).u16(icon.isIcon ? 32 : icon.hotspotY);
    out.u32(static_cast<std::uint32_t>(image)).u32(kIconEntries);
    // The header's height counts picture and mask.
    writeInfoHeader(out, *icon.color, 2 * static_cast<std::uint32_t>(icon.color->height()), 0,
                    pixelBytesOf(*icon.color) + pixelBytesOf(*icon.mask));
    writeRows(out, *icon.color);
    writeRows(out, *icon.mask);
    return out.take();
}

std::vector<std::uint8_t> savedContent(const PictureContent& content) {
    if (content.type == PICTYPE_BITMAP) {
        const auto surface = findObject<Surface>(BitmapHandle{content.handle});
        return surface == nullptr ? std::vector<std::uint8_t>() : bmpFile(*surface);
    }
    if (content.type == PICTYPE_ICON) {
        const auto icon = findObject<Icon>(IconHandle{content.handle});
        return icon == nullptr ? std::vector<std::uint8_t>() : iconFile(*icon);
    }
    const auto metafile = findObject<Metafile>(MetafileHandle{content.handle});
    return metafile == nullptr ? std::vector<std::uint8_t>() : metafile->bytes;
}

}  // namespace orvane::platform
