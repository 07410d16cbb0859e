#include "platform/linux/codecs/dib.h"

#include "platform/linux/codecs/surface.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace orvane::codecs {

namespace {

constexpr uint32_t kCoreHeader = 12;
constexpr uint32_t kOs2MinHeader = 16;
constexpr uint32_t kOs2Header = 64;
constexpr uint32_t kInfoHeader = 40;
constexpr uint32_t kInfoHeaderMasks = 52;
constexpr uint32_t kInfoHeaderAlpha = 56;
constexpr uint32_t kV4Header = 108;
constexpr uint32_t kV5Header = 124;

constexpr ChannelMasks k555{0x7c00, 0x03e0, 0x001f, 0};
constexpr ChannelMasks k8888{0xff0000, 0x00ff00, 0x0000ff, 0};

// Values of biCompression. OS/2 2.x has other meanings for 3 and 4.
enum Compression : uint32_t {
    kRgb = 0,
    kRle8 = 1,
    kRle4 = 2,
    kBitFields = 3,
    kAlphaBitFields = 6,
};

bool isWindowsHeader(uint32_t size) {
    return size == kInfoHeader || size == kInfoHeaderMasks || size == kInfoHeaderAlpha ||
           size == kV4Header || size == kV5Header;
}

OrvaneCodecResult readCoreHeader(const Reader& dib, DibHeader& header) {
    header.width = dib.u16(4);
    header.height = dib.u16(6);
    header.planes = dib.u16(8);
    header.bits = dib.u16(10);
    header.tableOffset = kCoreHeader;
    header.colourBytes = 3;
    if (header.bits <= 8) header.colours = 1u << header.bits;
    return ORVANE_CODEC_OK;
}

OrvaneCodecResult readMasks(const Reader& dib, uint32_t headerSize, uint32_t compression,
                            DibHeader& header) {
    if (header.bits != 16 && header.bits != 32) return ORVANE_CODEC_DAMAGED;
    const bool withAlpha = compression == kAlphaBitFields || headerSize >= kInfoHeaderAlpha;
    // A header of 40 bytes has its masks between itself and its colours.
    if (headerSize == kInfoHeader) header.tableOffset += withAlpha ? 16 : 12;
    if (!dib.holds(0, header.tableOffset)) return ORVANE_CODEC_DAMAGED;
    header.masks = {dib.u32(40), dib.u32(44), dib.u32(48), withAlpha ? dib.u32(52) : 0};
    const ChannelMasks& masks = header.masks;
    const bool inPixel =
        header.bits == 32 || (masks.red | masks.green | masks.blue | masks.alpha) <= 0xffff;
    const bool runs = Channel::isRun(masks.red) && Channel::isRun(masks.green) &&
                      Channel::isRun(masks.blue) && Channel::isRun(masks.alpha);
    const bool any = (masks.red | masks.green | masks.blue) != 0;
    return inPixel && runs && any ? ORVANE_CODEC_OK : ORVANE_CODEC_DAMAGED;
}

OrvaneCodecResult readCompression(const Reader& dib, uint32_t headerSize, DibHeader& header) {
    const uint32_t compression = headerSize >= 20 ? dib.u32(16) : 0;
    switch (compression) {
    case kRgb:
        return ORVANE_CODEC_OK;
    case kRle8:
        header.compression = DibCompression::kRle8;
        return header.bits == 8 && !header.topDown ? ORVANE_CODEC_OK : ORVANE_CODEC_DAMAGED;
    case kRle4:
        header.compression = DibCompression::kRle4;
        return header.bits == 4 && !header.topDown ? ORVANE_CODEC_OK : ORVANE_CODEC_DAMAGED;
    case kBitFields:
    case kAlphaBitFields:
        if (!isWindowsHeader(headerSize)) return ORVANE_CODEC_UNSUPPORTED;
        return readMasks(dib, headerSize, compression, header);
    default:
        // JPEG or PNG inside, CMYK, OS/2's run lengths of 24 bits: printers' business.
        return ORVANE_CODEC_UNSUPPORTED;
    }
}

OrvaneCodecResult readInfoHeader(const Reader& dib, uint32_t headerSize, DibHeader& header) {
    const Reader fields = dib.part(0, headerSize);
    const int64_t width = fields.i32(4);
    const int64_t height = fields.i32(8);
    if (width < 0) return ORVANE_CODEC_DAMAGED;
    header.width = static_cast<uint32_t>(width);
    header.height = static_cast<uint32_t>(height < 0 ? -height : height);
    header.topDown = height < 0;
    header.planes = fields.u16(12);
    header.bits = fields.u16(14);
    header.tableOffset = headerSize;
    header.colours = fields.u32(32);
    if (header.bits <= 8 && header.colours == 0) header.colours = 1u << header.bits;
    return readCompression(dib, headerSize, header);
}

// Depths that other systems write are told from those that nobody writes.
OrvaneCodecResult checkDepth(uint32_t bits) {
    switch (bits) {
    case 1:
    case 4:
    case 8:
    case 16:
    case 24:
    case 32:
        return ORVANE_CODEC_OK;
    case 2:
    case 48:
    case 64:
        return ORVANE_CODEC_UNSUPPORTED;
    default:
        return ORVANE_CODEC_DAMAGED;
    }
}

/// Calls `convert(from, to)` for each row, from the top of `out` down.
template <class Convert>
void eachRow(std::span<const uint8_t> rows, const DibHeader& header, OrvaneDecoded& out,
             Convert convert) {
    const uint64_t stride = paddedRowBytes(header.width, header.bits);
    const auto height = static_cast<uint32_t>(out.height);
    for (uint32_t y = 0; y < height; ++y) {
        const uint64_t stored = header.topDown ? y : height - 1 - y;
        convert(rows.data() + stored * stride, pixelRow(out, y));
    }
}

uint32_t pixel16(const uint8_t* at) {
    return static_cast<uint32_t>(at[0] | at[1] << 8);
}

uint32_t pixel32(const uint8_t* at) {
    return pixel16(at) | pixel16(at + 2) << 16;
}

bool sameColours(const ChannelMasks& a, const ChannelMasks& b) {
    return a.red == b.red && a.green == b.green && a.blue == b.blue;
}

void copyRows16(std::span<const uint8_t> rows, const DibHeader& header, OrvaneDecoded& out) {
    // The surface knows two layouts. A pixel goes into the one that keeps more of its green.
    constexpr ChannelMasks k565{0xf800, 0x07e0, 0x001f, 0};
    const bool wide = std::popcount(header.masks.green) > 5;
    const ChannelMasks& layout = wide ? k565 : k555;
    out.redMask = layout.red;
    out.greenMask = layout.green;
    out.blueMask = layout.blue;
    const size_t bytes = size_t{header.width} * 2;
    if (sameColours(header.masks, layout)) {
        eachRow(rows, header, out,
                [&](const uint8_t* from, uint8_t* to) { std::memcpy(to, from, bytes); });
        return;
    }
    const Channels channels(header.masks, 5, wide ? 6 : 5);
    const uint32_t redShift = wide ? 11 : 10;
    eachRow(rows, header, out, [&](const uint8_t* from, uint8_t* to) {
        for (size_t at = 0; at < bytes; at += 2) {
            const uint32_t in = pixel16(from + at);
            const uint32_t made =
                channels.red(in) << redShift | channels.green(in) << 5 | channels.blue(in);
            to[at] = static_cast<uint8_t>(made);
            to[at + 1] = static_cast<uint8_t>(made >> 8);
        }
    });
}

void storeChannels(const Channels& channels, uint32_t pixel, uint8_t* to) {
    to[0] = static_cast<uint8_t>(channels.blue(pixel));
    to[1] = static_cast<uint8_t>(channels.green(pixel));
    to[2] = static_cast<uint8_t>(channels.red(pixel));
    to[3] = static_cast<uint8_t>(channels.alpha(pixel));
}

void copyRows32(std::span<const uint8_t> rows, const DibHeader& header, OrvaneDecoded& out) {
    const size_t bytes = size_t{header.width} * 4;
    const uint32_t alpha = header.masks.alpha;
    out.alphaMask = alpha != 0 ? 0xff000000u : 0;
    if (sameColours(header.masks, k8888) && (alpha == 0 || alpha == 0xff000000u)) {
        eachRow(rows, header, out,
                [&](const uint8_t* from, uint8_t* to) { std::memcpy(to, from, bytes); });
        return;
    }
    const Channels channels(header.masks, 8, 8);
    eachRow(rows, header, out, [&](const uint8_t* from, uint8_t* to) {
        for (size_t at = 0; at < bytes; at += 4)
            storeChannels(channels, pixel32(from + at), to + at);
    });
}

void expandIndexed(std::span<const uint8_t> rows, const DibHeader& header, OrvaneDecoded& out) {
    const uint32_t bits = header.bits;
    const uint32_t perByte = 8 / bits;
    const auto perByteShift = static_cast<uint32_t>(std::countr_zero(perByte));
    const uint32_t keep = (1u << bits) - 1;
    eachRow(rows, header, out, [&](const uint8_t* from, uint8_t* to) {
        for (uint32_t x = 0; x < header.width; ++x) {
            const uint32_t shift = (perByte - 1 - (x & (perByte - 1))) * bits;
            const uint32_t index = static_cast<uint32_t>(from[x >> perByteShift]) >> shift & keep;
            std::memcpy(to + size_t{x} * 4, out.palette + size_t{index} * 4, 4);
        }
    });
}

void expand16(std::span<const uint8_t> rows, const DibHeader& header, OrvaneDecoded& out) {
    ChannelMasks masks = header.masks;
    masks.alpha = 0;
    const Channels channels(masks, 8, 8);
    eachRow(rows, header, out, [&](const uint8_t* from, uint8_t* to) {
        for (size_t x = 0; x < header.width; ++x) {
            storeChannels(channels, pixel16(from + x * 2), to + x * 4);
            to[x * 4 + 3] = 0;
        }
    });
}

void expand24(std::span<const uint8_t> rows, const DibHeader& header, OrvaneDecoded& out) {
    eachRow(rows, header, out, [&](const uint8_t* from, uint8_t* to) {
        for (size_t x = 0; x < header.width; ++x)
            std::memcpy(to + x * 4, from + x * 3, 3);
    });
}

bool expand32(std::span<const uint8_t> rows, const DibHeader& header, OrvaneDecoded& out) {
    copyRows32(rows, header, out);
    uint8_t any = 0;
    for (size_t at = 3; at < out.pixelBytes; at += 4)
        any |= out.pixels[at];
    return any != 0;
}

}  // namespace

OrvaneCodecResult readDibHeader(const Reader& dib, DibHeader& header) {
    const uint32_t headerSize = dib.u32(0);
    const bool known = headerSize == kCoreHeader || headerSize == kV4Header ||
                       headerSize == kV5Header ||
                       (headerSize >= kOs2MinHeader && headerSize <= kOs2Header);
    if (!known || !dib.holds(0, headerSize)) return ORVANE_CODEC_DAMAGED;
    header = {};
    const uint32_t bits = headerSize == kCoreHeader ? dib.u16(10) : dib.u16(14);
    if (const OrvaneCodecResult depth = checkDepth(bits); depth != ORVANE_CODEC_OK) return depth;
    header.masks = bits == 16 ? k555 : k8888;
    const OrvaneCodecResult result = headerSize == kCoreHeader
                                         ? readCoreHeader(dib, header)
                                         : readInfoHeader(dib, headerSize, header);
    if (result != ORVANE_CODEC_OK) return result;
    return header.width != 0 && header.height != 0 ? ORVANE_CODEC_OK : ORVANE_CODEC_DAMAGED;
}

void readColours(const Reader& dib, const DibHeader& header, uint64_t end, OrvaneDecoded& out) {
    if (header.bits > 8) return;
    const uint64_t stop = std::min<uint64_t>(end, dib.size());
    const uint64_t room = stop > header.tableOffset ? stop - header.tableOffset : 0;
    const uint64_t most = std::min<uint64_t>(header.colours, uint64_t{1} << header.bits);
    out.paletteCount = static_cast<uint32_t>(std::min(most, room / header.colourBytes));
    const std::span<const uint8_t> table = dib.bytes(header.tableOffset);
    for (uint32_t index = 0; index < out.paletteCount; ++index) {
        const uint8_t* colour = table.data() + size_t{index} * header.colourBytes;
        setColour(out, index, colour[2], colour[1], colour[0]);
    }
}

void copyRows(std::span<const uint8_t> rows, const DibHeader& header, OrvaneDecoded& out) {
    if (header.bits == 16) {
        copyRows16(rows, header, out);
    } else if (header.bits == 32) {
        copyRows32(rows, header, out);
    } else {
        const size_t bytes = rowBytes(header.width, header.bits);
        eachRow(rows, header, out,
                [&](const uint8_t* from, uint8_t* to) { std::memcpy(to, from, bytes); });
    }
}

bool expandRows(std::span<const uint8_t> rows, const DibHeader& header, OrvaneDecoded& out) {
    switch (header.bits) {
    case 16:
        expand16(rows, header, out);
        return false;
    case 24:
        expand24(rows, header, out);
        return false;
    case 32:
        return expand32(rows, header, out);
    default:
        expandIndexed(rows, header, out);
        return false;
    }
}

}  // namespace orvane::codecs
