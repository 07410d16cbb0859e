#include "platform/linux/codecs/decoders.h"
#include "platform/linux/codecs/dib.h"
#include "platform/linux/codecs/reader.h"
#include "platform/linux/codecs/rle.h"

// BMP: a file header of 14 bytes (signature, size, two reserved words, offset of the pixels) and a
// device-independent bitmap. The size is written wrongly by many programs and isn't looked at.
// Refused as unsupported: 2 bits a pixel, JPEG, PNG or CMYK inside, OS/2's Huffman and 24-bit runs.

namespace orvane::codecs {

namespace {

constexpr uint32_t kFileHeader = 14;
constexpr uint16_t kSignature = 0x4d42;  // "BM"

/// Offset of the pixels in the DIB, 0 when it can't be.
uint64_t pixelOffset(const Reader& file, const DibHeader& header) {
    const uint32_t stated = file.u32(10);
    if (stated != 0) return stated >= kFileHeader + header.tableOffset ? stated - kFileHeader : 0;
    // No offset: the pixels follow the colours.
    DibHeader used = header;
    if (used.bits <= 8 && used.colours > 1u << used.bits) used.colours = 1u << used.bits;
    return used.tableEnd();
}

OrvaneCodecResult readPixels(const Reader& dib, const DibHeader& header, uint64_t offset,
                             OrvaneDecoded& out, const Limits& limits) {
    if (!dib.holds(offset, 1)) return ORVANE_CODEC_DAMAGED;
    const bool packed = header.compression != DibCompression::kNone;
    const uint64_t needed = paddedRowBytes(header.width, header.bits) * (header.height - 1) +
                            rowBytes(header.width, header.bits);
    if (!packed && !dib.holds(offset, needed)) return ORVANE_CODEC_DAMAGED;
    const OrvaneCodecResult made =
        makeBitmap(out, header.width, header.height, header.bits, limits);
    if (made != ORVANE_CODEC_OK) return made;
    readColours(dib, header, offset, out);
    if (packed) unpackRle(dib.bytes(offset), out);
    else copyRows(dib.bytes(offset), header, out);
    return ORVANE_CODEC_OK;
}

}  // namespace

bool isBmp(std::span<const uint8_t> start) {
    return Reader(start).u16(0) == kSignature;
}

OrvaneCodecResult decodeBmp(std::span<const uint8_t> file, OrvaneDecoded& out,
                            const Limits& limits) {
    const Reader whole(file);
    if (!isBmp(file)) return ORVANE_CODEC_NOT_RECOGNISED;
    const Reader dib = whole.part(kFileHeader);
    DibHeader header;
    const OrvaneCodecResult read = readDibHeader(dib, header);
    if (read != ORVANE_CODEC_OK) return read;
    if (header.planes != 1) return ORVANE_CODEC_DAMAGED;
    const uint64_t offset = pixelOffset(whole, header);
    return offset == 0 ? ORVANE_CODEC_DAMAGED : readPixels(dib, header, offset, out, limits);
}

}  // namespace orvane::codecs
