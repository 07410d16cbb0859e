#include "platform/linux/codecs/decoders.h"
#include "platform/linux/codecs/dib.h"
#include "platform/linux/codecs/images.h"
#include "platform/linux/codecs/reader.h"

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <tuple>
#include <vector>

// ICO and CUR: a directory (6 bytes, then 16 an entry) and images, each a device-independent bitmap
// without a file header, its height counting the colour rows and the mask's rows behind them, or a
// whole PNG file, whose alpha makes the mask.
//
// Of several images the loader takes the one closest to 32 x 32, the system's default icon size:
// the least sum of the differences in width and height, then the larger one, then the deeper one,
// then the first. Sizes and depths come from the images themselves, since directories often leave
// the depth out. An image that can't be read gives way to the next best.

namespace orvane::codecs {

namespace {

constexpr uint32_t kDirectory = 6;
constexpr uint32_t kEntry = 16;
constexpr uint16_t kIconType = 1;
constexpr uint16_t kCursorType = 2;
constexpr int64_t kDefaultSize = 32;
// A damaged PNG image may take long until that shows. What is tried: more images than an icon has
// sizes, and as many pixels in all as 256 images of the largest usual size have.
constexpr int kMostPngs = 16;
constexpr uint64_t kMostPngPixels = uint64_t{1} << 24;

struct Candidate {
    Reader image;
    /// Of a PNG image width, height and bits are set alone.
    DibHeader header;
    bool png;
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

uint32_t bigEndian(const Reader& reader, uint64_t at) {
    return uint32_t{reader.u8(at)} << 24 | uint32_t{reader.u8(at + 1)} << 16 |
           uint32_t{reader.u8(at + 2)} << 8 | reader.u8(at + 3);
}

/// What the first chunk of a PNG file says. Its sense is seen to when the image is read.
DibHeader pngHeader(const Reader& png) {
    constexpr uint8_t kChannels[] = {1, 0, 3, 1, 2, 0, 4};
    const uint8_t colour = png.u8(25);
    DibHeader header;
    header.width = bigEndian(png, 16);
    header.height = bigEndian(png, 20);
    header.bits = colour < std::size(kChannels) ? uint32_t{png.u8(24)} * kChannels[colour] : 0;
    return header;
}

uint64_t colourBytes(const DibHeader& header) {
    return paddedRowBytes(header.width, header.bits) * header.height;
}

uint64_t maskBytes(const DibHeader& header) {
    return paddedRowBytes(header.width, 1) * header.height;
}

/// Reads the header of the image that `dib` begins with, its height that of the picture.
OrvaneCodecResult readIconHeader(const Reader& dib, DibHeader& header) {
    const OrvaneCodecResult result = readDibHeader(dib, header);
    if (result != ORVANE_CODEC_OK) return result;
    if (header.compression != DibCompression::kNone) return ORVANE_CODEC_UNSUPPORTED;
    header.height /= 2;
    return header.height != 0 ? ORVANE_CODEC_OK : ORVANE_CODEC_DAMAGED;
}

/// The image of the entry at `at`; empty when it leaves the file. A cursor's image goes to the end
/// of the file: on Windows another function reads cursors, one that doesn't look at the size.
Reader imageOf(const Reader& file, uint64_t at, bool cursor) {
    const uint32_t size = file.u32(at + 8);
    const uint32_t offset = file.u32(at + 12);
    if (!file.holds(at, kEntry)) return Reader({});
    if (cursor) return file.part(offset);
    return file.holds(offset, size) ? file.part(offset, size) : Reader({});
}

void readEntry(const Reader& file, uint64_t at, bool cursor, Directory& directory) {
    Candidate candidate{imageOf(file, at, cursor), {}, false, file.u16(at + 4), file.u16(at + 6)};
    OrvaneCodecResult result = ORVANE_CODEC_OK;
    if (isPng(candidate.image.bytes(0))) {
        candidate.png = true;
        candidate.header = pngHeader(candidate.image);
    } else {
        result = readIconHeader(candidate.image, candidate.header);
    }
    if (result == ORVANE_CODEC_OK) directory.candidates.push_back(candidate);
    if (result == ORVANE_CODEC_UNSUPPORTED) directory.otherwise = result;
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

/// Masks away the pixels without any alpha, for an image that comes without a mask. They become
/// black: another colour would turn round what is behind it where an icon is drawn by its mask.
void maskFromAlpha(OrvaneDecoded& out) {
    const auto width = static_cast<uint32_t>(out.width);
    for (uint32_t y = 0; y < static_cast<uint32_t>(out.height); ++y) {
        uint8_t* const pixels = pixelRow(out, y);
        uint8_t* const mask = out.mask + size_t{y} * out.maskStride;
        for (uint32_t x = 0; x < width; ++x) {
            uint8_t* const pixel = pixels + size_t{x} * 4;
            if (pixel[3] != 0) continue;
            std::fill_n(pixel, 3, uint8_t{0});
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

/// Makes `out` a bitmap of 32 bits with a mask.
OrvaneCodecResult makeImage(OrvaneDecoded& out, uint32_t width, uint32_t height,
                            const Limits& limits) {
    const OrvaneCodecResult made = makeBitmap(out, width, height, 32, limits);
    return made == ORVANE_CODEC_OK ? addMask(out, limits) : made;
}

OrvaneCodecResult readDib(const Candidate& candidate, OrvaneDecoded& out, const Limits& limits) {
    const DibHeader& header = candidate.header;
    const uint64_t colours = colourBytes(header);
    const uint64_t start = header.tableEnd();
    const bool masked = candidate.image.holds(start, colours + maskBytes(header));
    // Some programs leave the mask out of an image that has alpha.
    if (!masked && !(header.bits == 32 && candidate.image.holds(start, colours)))
        return ORVANE_CODEC_DAMAGED;
    const OrvaneCodecResult made = makeImage(out, header.width, header.height, limits);
    if (made != ORVANE_CODEC_OK) return made;
    readColours(candidate.image, header, start, out);
    const bool hasAlpha = expandRows(candidate.image.bytes(start), header, out);
    if (masked) copyMask(candidate.image.bytes(start + colours), header.topDown, out);
    else if (hasAlpha) maskFromAlpha(out);
    if (!hasAlpha) alphaFromMask(out);
    return ORVANE_CODEC_OK;
}

OrvaneCodecResult readPng(const Candidate& candidate, OrvaneDecoded& out, const Limits& limits) {
    const std::span<const uint8_t> png = candidate.image.bytes(0);
    OrvaneImageFacts facts{};
    OrvaneCodecResult result = examinePng(png, facts, limits);
    if (result == ORVANE_CODEC_OK) result = makeImage(out, facts.width, facts.height, limits);
    if (result != ORVANE_CODEC_OK) return result;
    result = unpackPng(
        png, {facts.width, facts.height, out.pixels, static_cast<ptrdiff_t>(out.stride)}, limits);
    if (result == ORVANE_CODEC_OK) maskFromAlpha(out);
    return result;
}

/// The tries at PNG images that an icon has left.
class PngTries {
public:
    /// Whether an image may be tried; it is counted then.
    bool take(const DibHeader& header) {
        // Both are below 2^32, so the product can't wrap.
        const uint64_t pixels = uint64_t{header.width} * header.height;
        if (images_ == 0 || pixels > pixels_) return false;
        --images_;
        pixels_ -= pixels;
        return true;
    }

private:
    int images_ = kMostPngs;
    uint64_t pixels_ = kMostPngPixels;
};

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
        readEntry(whole, kDirectory + uint64_t{index} * kEntry, type == kCursorType, directory);
    std::stable_sort(directory.candidates.begin(), directory.candidates.end(),
                     [](const Candidate& a, const Candidate& b) { return rank(a) < rank(b); });
    PngTries tries;
    for (const Candidate& candidate : directory.candidates) {
        if (candidate.png && !tries.take(candidate.header)) {
            directory.otherwise = ORVANE_CODEC_UNSUPPORTED;
            continue;
        }
        const auto read = candidate.png ? readPng : readDib;
        const OrvaneCodecResult result = read(candidate, out, limits);
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
