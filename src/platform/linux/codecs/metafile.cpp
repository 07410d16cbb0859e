#include "platform/linux/codecs/decoders.h"
#include "platform/linux/codecs/reader.h"

// Metafiles: only their headers are read. A file shorter than its header says is refused; the
// records are the business of whoever plays them.
//
// WMF needs the placeable header (22 bytes), since without it nothing says how large the picture
// is; the loader refuses one without. Its checksum isn't looked at: many programs write a wrong
// one. EMF has its size as a frame in hundredths of a millimetre.

namespace orvane::codecs {

namespace {

constexpr uint32_t kPlaceableKey = 0x9ac6cdd7;
constexpr uint32_t kPlaceableHeader = 22;
constexpr uint16_t kMemoryMetafile = 1;
constexpr uint16_t kDiskMetafile = 2;
constexpr uint16_t kMetaHeaderWords = 9;
constexpr int64_t kHimetricPerInch = 2540;

constexpr uint32_t kEmrHeader = 1;
constexpr uint32_t kEmfHeader = 88;
constexpr uint32_t kEmfSignature = 0x464d4520;  // " EMF"

bool isMetaHeader(const Reader& at) {
    const uint16_t type = at.u16(0);
    const uint16_t version = at.u16(4);
    return (type == kMemoryMetafile || type == kDiskMetafile) && at.u16(2) == kMetaHeaderWords &&
           (version == 0x0100 || version == 0x0300);
}

bool setSize(int64_t width, int64_t height, OrvaneDecoded& out) {
    if (width <= 0 || height <= 0 || width > INT32_MAX || height > INT32_MAX) return false;
    out.width = static_cast<int32_t>(width);
    out.height = static_cast<int32_t>(height);
    out.transparentIndex = -1;
    return true;
}

OrvaneCodecResult readWmf(std::span<const uint8_t> bytes, OrvaneDecoded& out) {
    const Reader file(bytes);
    const Reader meta = file.part(kPlaceableHeader);
    // The size that the file gives itself, in words.
    const uint64_t words = meta.u32(6);
    if (!isMetaHeader(meta) || words < kMetaHeaderWords || !meta.holds(0, words * 2))
        return ORVANE_CODEC_DAMAGED;
    const int64_t perInch = file.u16(14);
    if (perInch == 0) return ORVANE_CODEC_DAMAGED;
    const auto himetric = [&](int64_t from, int64_t to) {
        const int64_t units = from < to ? to - from : from - to;
        return (units * kHimetricPerInch + perInch / 2) / perInch;
    };
    if (!setSize(himetric(file.i16(6), file.i16(10)), himetric(file.i16(8), file.i16(12)), out))
        return ORVANE_CODEC_DAMAGED;
    out.kind = ORVANE_PICTURE_METAFILE;
    return keepFile(out, bytes);
}

OrvaneCodecResult readEmf(std::span<const uint8_t> bytes, OrvaneDecoded& out) {
    const Reader file(bytes);
    const uint32_t headerSize = file.u32(4);
    const uint32_t size = file.u32(48);
    if (headerSize < kEmfHeader || size < headerSize || !file.holds(0, size))
        return ORVANE_CODEC_DAMAGED;
    const int64_t width = int64_t{file.i32(32)} - file.i32(24);
    const int64_t height = int64_t{file.i32(36)} - file.i32(28);
    if (!setSize(width, height, out)) return ORVANE_CODEC_DAMAGED;
    out.kind = ORVANE_PICTURE_ENHANCED_METAFILE;
    return keepFile(out, bytes);
}

}  // namespace

bool isMetafile(std::span<const uint8_t> start) {
    const Reader reader(start);
    return reader.u32(0) == kPlaceableKey ||
           (reader.u32(0) == kEmrHeader && reader.u32(40) == kEmfSignature) || isMetaHeader(reader);
}

OrvaneCodecResult decodeMetafile(std::span<const uint8_t> file, OrvaneDecoded& out,
                                 const Limits& limits) {
    const Reader reader(file);
    OrvaneCodecResult (*read)(std::span<const uint8_t>, OrvaneDecoded&) = nullptr;
    if (reader.u32(0) == kPlaceableKey) read = readWmf;
    else if (reader.u32(0) == kEmrHeader && reader.u32(40) == kEmfSignature) read = readEmf;
    if (read != nullptr)
        return file.size() <= limits.surfaceBytes ? read(file, out) : ORVANE_CODEC_OUT_OF_MEMORY;
    return isMetaHeader(reader) ? ORVANE_CODEC_UNSUPPORTED : ORVANE_CODEC_NOT_RECOGNISED;
}

}  // namespace orvane::codecs
