#include "platform/linux/codecs/decoders.h"
#include "platform/linux/codecs/dib.h"
#include "platform/linux/codecs/reader.h"

#include <algorithm>
#include <cstdlib>
#include <tuple>
#include <vector>

// ICO and CUR: a directory (6 bytes, then 16 an entry) and images, each a device-independent bitmap
// without a file header, its height counting the colour rows and the mask's rows behind them.
//
// Of several images the loader takes the one closest to 32 x 32, the system's default icon size:
// the least sum of the differences in width and height, then the larger one, then the deeper one,
// then the first. Sizes and depths come from the images themselves, since directories often leave
// the depth out. An image that can't be read gives way to the next best. PNG images are never
// taken: the loader is older than they are.

namespace orvane::codecs {

namespace {

constexpr uint32_t kDirectory = 6;
constexpr uint32_t kEntry = 16;
constexpr uint16_t kIconType = 1;
constexpr uint16_t kCursorType = 2;
constexpr uint32_t kPngSignature = 0x474e5089;
constexpr int64_t kDefaultSize = 32;

struct Candidate {
    Reader dib;
    DibHeader header;
    uint16_t hotspotX;
    uint16_t hotspotY;
};

/// Orders candidates: the smallest is the best.
auto rank(const Candidate& candidate) {
    const int64_t width = candidate.header.width;
    const int64_t height = candidate.header.height;
    return std::tuple(std::abs(width - kDefaultSize) + std::abs(height - kDefaultSize),
                      -width - height, -int64_t{candidate.header.bits});
}

struct Directory {
    std::vector<Candidate> candidates;
    /// What to answer when no candidate can be read.
    OrvaneCodecResult otherwise = ORVANE_CODEC_DAMAGED;
};

void readEntry(const Reader& file, uint64_t at, Directory& directory) {
    const uint32_t size = file.u32(at + 8);
    const uint32_t offset = file.u32(at + 12);
    if (!file.holds(at, kEntry) || !file.holds(offset, size)) return;
    const Reader image = file.part(offset, size);
    if (image.u32(0) == kPngSignature) {
        directory.otherwise = ORVANE_CODEC_UNSUPPORTED;
        return;
    }
    DibHeader header;
    OrvaneCodecResult result = readDibHeader(image, header);
    if (result == ORVANE_CODEC_OK && header.compression != DibCompression::kNone)
        result = ORVANE_CODEC_UNSUPPORTED;
    if (result == ORVANE_CODEC_UNSUPPORTED) directory.otherwise = result;
    header.height /= 2;
    if (result == ORVANE_CODEC_OK && header.height != 0)
        directory.candidates.push_back({image, header, file.u16(at + 4), file.u16(at + 6)});
}

/// Copies the mask's rows. `rows` holds them all.
void copyMask(std::span<const uint8_t> rows, bool topDown, OrvaneDecoded& out) {
    const auto height = static_cast<uint32_t>(out.height);
    for (uint32_t y = 0; y < height; ++y) {
        const size_t stored = topDown ? y : height - 1 - y;
        std::copy_n(rows.data() + stored * out.maskStride, out.maskStride,
                    out.mask + size_t{y} * out.maskStride);
    }
}

/// Masks away the pixels without any alpha, for an image that comes without a mask.
void maskFromAlpha(OrvaneDecoded& out) {
    const auto width = static_cast<uint32_t>(out.width);
    for (uint32_t y = 0; y < static_cast<uint32_t>(out.height); ++y) {
        const uint8_t* alpha = pixelRow(out, y) + 3;
        uint8_t* mask = out.mask + size_t{y} * out.maskStride;
        for (uint32_t x = 0; x < width; ++x) {
            if (alpha[size_t{x} * 4] == 0)
                mask[x / 8] = static_cast<uint8_t>(mask[x / 8] | 0x80 >> x % 8);
        }
    }
}

/// Gives the pixels an alpha of 0 where the mask keeps the screen and of 255 elsewhere.
void alphaFromMask(OrvaneDecoded& out) {
    const auto width = static_cast<uint32_t>(out.width);
    for (uint32_t y = 0; y < static_cast<uint32_t>(out.height); ++y) {
        const uint8_t* mask = out.mask + size_t{y} * out.maskStride;
        uint8_t* alpha = pixelRow(out, y) + 3;
        for (uint32_t x = 0; x < width; ++x)
            alpha[size_t{x} * 4] = (mask[x / 8] & 0x80 >> x % 8) != 0 ? uint8_t{0} : uint8_t{255};
    }
}

OrvaneCodecResult readImage(const Candidate& candidate, OrvaneDecoded& out, const Limits& limits) {
    const DibHeader& header = candidate.header;
    const uint64_t colourBytes = paddedRowBytes(header.width, header.bits) * header.height;
    const uint64_t maskBytes = paddedRowBytes(header.width, 1) * header.height;
    const uint64_t start = header.tableEnd();
    const bool masked = candidate.dib.holds(start, colourBytes + maskBytes);
    // Some programs leave the mask out of an image that has alpha.
    if (!masked && !(header.bits == 32 && candidate.dib.holds(start, colourBytes)))
        return ORVANE_CODEC_DAMAGED;
    OrvaneCodecResult made = makeBitmap(out, header.width, header.height, 32, limits);
    if (made == ORVANE_CODEC_OK) made = addMask(out, limits);
    if (made != ORVANE_CODEC_OK) return made;
    readColours(candidate.dib, header, start, out);
    const bool hasAlpha = expandRows(candidate.dib.bytes(start), header, out);
    if (masked) copyMask(candidate.dib.bytes(start + colourBytes), header.topDown, out);
    else if (hasAlpha) maskFromAlpha(out);
    if (!hasAlpha) alphaFromMask(out);
    return ORVANE_CODEC_OK;
}

void describe(const Candidate& candidate, bool isIcon, OrvaneDecoded& out) {
    out.kind = ORVANE_PICTURE_ICON;
    out.isIcon = isIcon ? 1 : 0;
    out.bitsPerPixel = static_cast<int32_t>(candidate.header.bits);
    out.hotspotX = isIcon ? out.width / 2 : candidate.hotspotX;
    out.hotspotY = isIcon ? out.height / 2 : candidate.hotspotY;
    out.alphaMask = 0xff000000u;
}

}  // namespace

bool isIcon(std::span<const uint8_t> start) {
    const Reader reader(start);
    const uint16_t type = reader.u16(2);
    return reader.holds(0, kDirectory) && reader.u16(0) == 0 && reader.u16(4) != 0 &&
           (type == kIconType || type == kCursorType);
}

OrvaneCodecResult decodeIcon(std::span<const uint8_t> file, OrvaneDecoded& out,
                             const Limits& limits) {
    const Reader whole(file);
    const uint16_t type = whole.u16(2);
    const uint16_t count = whole.u16(4);
    if (!isIcon(file)) return ORVANE_CODEC_NOT_RECOGNISED;
    Directory directory;
    for (uint32_t index = 0; index < count; ++index)
        readEntry(whole, kDirectory + uint64_t{index} * kEntry, directory);
    std::stable_sort(directory.candidates.begin(), directory.candidates.end(),
                     [](const Candidate& a, const Candidate& b) { return rank(a) < rank(b); });
    for (const Candidate& candidate : directory.candidates) {
        const OrvaneCodecResult result = readImage(candidate, out, limits);
        if (result == ORVANE_CODEC_OK) {
            describe(candidate, type == kIconType, out);
            return ORVANE_CODEC_OK;
        }
        release(out);
        if (result == ORVANE_CODEC_OUT_OF_MEMORY) directory.otherwise = result;
    }
    return directory.otherwise;
}

}  // namespace orvane::codecs
