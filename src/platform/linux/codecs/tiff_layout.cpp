#include "platform/linux/codecs/tiff_layout.h"

#include "platform/linux/codecs/images.h"

#include <algorithm>
#include <array>

namespace orvane::codecs {

namespace {

/// The compressions that GDI+ reads; libtiff has more.
bool isReadable(uint16_t compression) {
    constexpr std::array kReadable = {
        COMPRESSION_NONE,      COMPRESSION_CCITTRLE, COMPRESSION_CCITTFAX3,
        COMPRESSION_CCITTFAX4, COMPRESSION_LZW,      COMPRESSION_ADOBE_DEFLATE,
        COMPRESSION_DEFLATE,   COMPRESSION_PACKBITS, COMPRESSION_JPEG};
    return std::ranges::find(kReadable, compression) != kReadable.end() &&
           TIFFIsCODECConfigured(compression) != 0;
}

bool isFax(uint16_t compression) {
    return compression == COMPRESSION_CCITTRLE || compression == COMPRESSION_CCITTFAX3 ||
           compression == COMPRESSION_CCITTFAX4;
}

/// The most bytes that a byte of stored data can unpack to.
uint64_t mostFromByte(uint16_t compression) {
    switch (compression) {
    case COMPRESSION_NONE:
        return 1;
    case COMPRESSION_PACKBITS:
        return 64;  // 128 bytes from 2
    case COMPRESSION_LZW:
        return 4096;  // a code of 9 bits at least for 4096 bytes at most
    case COMPRESSION_ADOBE_DEFLATE:
    case COMPRESSION_DEFLATE:
        return 1032;  // 258 bytes from 2 bits
    default:
        // JPEG: 8 blocks of 64 samples, and twice the samples where colours have fewer.
        return 1024;
    }
}

/// Bytes of stored data, as far as the file holds them. Strips may share theirs.
uint64_t storedBytes(const TiffFile& file, const TiffLayout& layout) {
    uint64_t stored = 0;
    const uint32_t stated =
        layout.tiled ? TIFFNumberOfTiles(file.get()) : TIFFNumberOfStrips(file.get());
    // More than there are bytes to list them in have no data.
    const auto count = static_cast<uint32_t>(std::min<uint64_t>(stated, file.size()));
    for (uint32_t i = 0; i < count; ++i) {
        const uint64_t offset = TIFFGetStrileOffset(file.get(), i);
        const uint64_t bytes = TIFFGetStrileByteCount(file.get(), i);
        if (offset < file.size()) stored += std::min(bytes, file.size() - offset);
    }
    return stored;
}

/// Whether the stored data can amount to the page at all.
bool canHoldPage(const TiffFile& file, const TiffLayout& layout) {
    const uint64_t stored = storedBytes(file, layout);
    const uint16_t compression = file.number(TIFFTAG_COMPRESSION);
    // A blank row takes a bit, however wide it is.
    if (isFax(compression)) return layout.height / 8 <= stored;
    const uint64_t row = (uint64_t{layout.width} * layout.bits * layout.samples + 7) / 8;
    return row * layout.height / mostFromByte(compression) <= stored;
}

void readAlpha(const TiffFile& file, TiffLayout& layout) {
    if (layout.samples <= layout.colourSamples()) return;
    uint16_t count = 0;
    uint16_t* kinds = nullptr;
    TIFFGetFieldDefaulted(file.get(), TIFFTAG_EXTRASAMPLES, &count, &kinds);
    // A further sample that nothing is said of counts as alpha, too.
    layout.alpha = true;
    if (count > 0 && kinds[0] == EXTRASAMPLE_ASSOCALPHA) {
        layout.alphaKind = AlphaKind::premultiplied;
    }
}

/// How the photometric interpretation reads; false when it isn't read here.
bool readColours(const TiffFile& file, TiffLayout& layout) {
    const bool jpeg = file.number(TIFFTAG_COMPRESSION) == COMPRESSION_JPEG;
    switch (file.number(TIFFTAG_PHOTOMETRIC)) {
    case PHOTOMETRIC_MINISWHITE:
        layout.whiteIsZero = true;
        [[fallthrough]];
    case PHOTOMETRIC_MINISBLACK:
        layout.colours = TiffColours::grey;
        return true;
    case PHOTOMETRIC_PALETTE:
        layout.colours = TiffColours::palette;
        return layout.bits <= 8 && layout.samples == 1;
    case PHOTOMETRIC_RGB:
        layout.colours = TiffColours::rgb;
        return true;
    case PHOTOMETRIC_SEPARATED:
        layout.colours = TiffColours::cmyk;
        return file.number(TIFFTAG_INKSET) == INKSET_CMYK &&
               (layout.bits == 8 || layout.bits == 16);
    case PHOTOMETRIC_YCBCR:
        if (jpeg && !layout.separate) {
            TIFFSetField(file.get(), TIFFTAG_JPEGCOLORMODE, JPEGCOLORMODE_RGB);
            layout.colours = TiffColours::rgb;
        } else {
            layout.colours = TiffColours::converted;
        }
        return layout.bits == 8 && layout.samples == 3;
    default:
        return false;
    }
}

/// Grey of fewer than 8 bits goes without alpha, and so do inks in planes of their own.
bool readsTogether(const TiffLayout& layout) {
    if (!layout.alpha) return true;
    if (layout.colours == TiffColours::grey) return layout.bits >= 8;
    return layout.colours != TiffColours::cmyk || !layout.separate;
}

uint32_t pixelFormatOf(const TiffLayout& layout) {
    using namespace pixel_format;
    const bool premultiplied = layout.alphaKind == AlphaKind::premultiplied;
    const bool deep = layout.bits > 8;
    if (layout.alpha) {
        if (deep) return premultiplied ? k64bppPArgb : k64bppArgb;
        return premultiplied ? k32bppPArgb : k32bppArgb;
    }
    switch (layout.colours) {
    case TiffColours::rgb:
    case TiffColours::converted:
        return deep ? k48bppRgb : k24bppRgb;
    case TiffColours::cmyk:
        return deep ? k64bppArgb : k32bppArgb;
    case TiffColours::grey:
    case TiffColours::palette:
        break;
    }
    if (layout.bits == 1) return k1bppIndexed;
    if (layout.bits == 8) return k8bppIndexed;
    // GDI+ has indices of 4 bits for colours only, and nothing between.
    return layout.bits == 4 && layout.colours == TiffColours::palette ? k4bppIndexed : k32bppArgb;
}

/// Floating-point numbers of 16 bits are read where nothing stands between them and a colour.
bool readSampleFormat(const TiffFile& file, TiffLayout& layout) {
    switch (file.number(TIFFTAG_SAMPLEFORMAT)) {
    case SAMPLEFORMAT_UINT:
    case SAMPLEFORMAT_INT:
    case SAMPLEFORMAT_VOID:
        return true;
    case SAMPLEFORMAT_IEEEFP:
        layout.floats = true;
        return layout.bits == 16 &&
               (layout.colours == TiffColours::grey || layout.colours == TiffColours::rgb);
    default:
        return false;
    }
}

}  // namespace

uint32_t TiffLayout::colourSamples() const {
    switch (colours) {
    case TiffColours::grey:
    case TiffColours::palette:
        return 1;
    case TiffColours::rgb:
    case TiffColours::converted:
        return 3;
    case TiffColours::cmyk:
        return 4;
    }
    return 0;
}

OrvaneCodecResult readTiffLayout(const TiffFile& file, const Limits& limits, TiffLayout& layout) {
    TIFF* const tiff = file.get();
    TIFFGetField(tiff, TIFFTAG_IMAGEWIDTH, &layout.width);
    TIFFGetField(tiff, TIFFTAG_IMAGELENGTH, &layout.height);
    if (layout.width == 0 || layout.height == 0 || layout.width > INT32_MAX ||
        layout.height > INT32_MAX) {
        return ORVANE_CODEC_DAMAGED;
    }
    // Below 2^31 both, so the product can't wrap.
    if (uint64_t{layout.width} * 4 * layout.height > limits.surfaceBytes) {
        return ORVANE_CODEC_OUT_OF_MEMORY;
    }
    layout.bits = file.number(TIFFTAG_BITSPERSAMPLE);
    layout.samples = file.number(TIFFTAG_SAMPLESPERPIXEL);
    layout.separate =
        file.number(TIFFTAG_PLANARCONFIG) == PLANARCONFIG_SEPARATE && layout.samples > 1;
    layout.tiled = TIFFIsTiled(tiff) != 0;
    if (layout.bits < 1 || layout.bits > 16 || layout.samples < 1) return ORVANE_CODEC_UNSUPPORTED;
    uint16_t photometric = 0;
    if (TIFFGetField(tiff, TIFFTAG_PHOTOMETRIC, &photometric) == 0) return ORVANE_CODEC_DAMAGED;
    if (!isReadable(file.number(TIFFTAG_COMPRESSION)) || !readColours(file, layout) ||
        !readSampleFormat(file, layout)) {
        return ORVANE_CODEC_UNSUPPORTED;
    }
    readAlpha(file, layout);
    if (layout.samples != layout.usedSamples() || !readsTogether(layout)) {
        return ORVANE_CODEC_UNSUPPORTED;
    }
    if (!canHoldPage(file, layout)) return ORVANE_CODEC_DAMAGED;
    layout.pixelFormat = pixelFormatOf(layout);
    return ORVANE_CODEC_OK;
}

}  // namespace orvane::codecs
