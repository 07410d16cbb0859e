#include "platform/linux/codecs/canvas.h"
#include "platform/linux/codecs/channels.h"
#include "platform/linux/codecs/decoders.h"
#include "platform/linux/codecs/images.h"

#include <cstring>
#include <vector>

// The other formats of GDI+, through the decoders of the host's loader: BMP, JPEG, GIF and icons.
// Cursors and metafiles are none of them.

namespace orvane::codecs {

namespace {

/// A decoded file, freed with it.
class Decoded {
public:
    Decoded(std::span<const uint8_t> file, const Limits& limits)
        : result(decodeAny(file, picture, limits)) {}
    Decoded(const Decoded&) = delete;
    Decoded& operator=(const Decoded&) = delete;
    ~Decoded() { release(picture); }

    OrvaneDecoded picture{};
    OrvaneCodecResult result;
};

bool isImage(const OrvaneDecoded& picture) {
    return picture.kind == ORVANE_PICTURE_BITMAP ||
           (picture.kind == ORVANE_PICTURE_ICON && picture.isIcon != 0);
}

uint32_t formatOf(std::span<const uint8_t> file) {
    if (isBmp(file)) return ORVANE_IMAGE_BMP;
    if (isJpeg(file)) return ORVANE_IMAGE_JPEG;
    return isGif(file) ? ORVANE_IMAGE_GIF : ORVANE_IMAGE_ICON;
}

uint32_t pixelFormatOf(const OrvaneDecoded& picture, uint32_t format) {
    using namespace pixel_format;
    if (picture.kind == ORVANE_PICTURE_ICON) return k32bppArgb;
    if (format == ORVANE_IMAGE_GIF) return k8bppIndexed;
    switch (picture.bitsPerPixel) {
    case 1:
        return k1bppIndexed;
    case 4:
        return k4bppIndexed;
    case 8:
        return k8bppIndexed;
    case 16:
        return picture.greenMask == 0x7e0 ? k16bppRgb565 : k16bppRgb555;
    case 32:
        return k32bppRgb;
    default:
        return k24bppRgb;
    }
}

/// A pixel of any depth as blue, green, red and alpha.
class PixelReader {
public:
    explicit PixelReader(const OrvaneDecoded& picture)
        : picture_(picture),
          bits_(picture.kind == ORVANE_PICTURE_ICON ? 32u
                                                    : static_cast<uint32_t>(picture.bitsPerPixel)),
          channels_({picture.redMask, picture.greenMask, picture.blueMask,
                     picture.kind == ORVANE_PICTURE_ICON ? picture.alphaMask : 0},
                    8, 8) {}

    void read(const uint8_t* row, uint32_t x, uint8_t* to) const {
        if (bits_ <= 8) {
            const uint32_t place = x * bits_;
            const uint32_t index = row[place / 8] >> (8 - bits_ - place % 8) & ((1u << bits_) - 1);
            std::memcpy(to, picture_.palette + size_t{index} * 4, 3);
            const bool seen = static_cast<int32_t>(index) != picture_.transparentIndex;
            to[3] = seen ? uint8_t{255} : uint8_t{0};
        } else if (bits_ == 24) {
            std::memcpy(to, row + size_t{x} * 3, 3);
            to[3] = 255;
        } else {
            uint32_t pixel = 0;
            std::memcpy(&pixel, row + size_t{x} * (bits_ / 8), bits_ / 8);
            to[0] = static_cast<uint8_t>(channels_.blue(pixel));
            to[1] = static_cast<uint8_t>(channels_.green(pixel));
            to[2] = static_cast<uint8_t>(channels_.red(pixel));
            to[3] = static_cast<uint8_t>(channels_.alpha(pixel));
        }
    }

private:
    const OrvaneDecoded& picture_;
    uint32_t bits_;
    Channels channels_;
};

}  // namespace

OrvaneCodecResult examineDecoded(std::span<const uint8_t> file, OrvaneImageFacts& facts,
                                 const Limits& limits) {
    const Decoded decoded(file, limits);
    const OrvaneDecoded& picture = decoded.picture;
    if (decoded.result != ORVANE_CODEC_OK) return decoded.result;
    if (!isImage(picture)) return ORVANE_CODEC_NOT_RECOGNISED;
    const uint32_t format = formatOf(file);
    facts = {static_cast<uint32_t>(picture.width), static_cast<uint32_t>(picture.height), format,
             pixelFormatOf(picture, format)};
    return ORVANE_CODEC_OK;
}

OrvaneCodecResult paintDecoded(std::span<const uint8_t> file, const OrvaneCanvas& canvas,
                               const Limits& limits) {
    const Decoded decoded(file, limits);
    const OrvaneDecoded& picture = decoded.picture;
    if (decoded.result != ORVANE_CODEC_OK) return decoded.result;
    if (!isImage(picture) || static_cast<uint32_t>(picture.width) != canvas.width ||
        static_cast<uint32_t>(picture.height) != canvas.height) {
        return ORVANE_CODEC_UNSUPPORTED;
    }
    const PixelReader reader(picture);
    std::vector<uint8_t> row(size_t{canvas.width} * 4);
    for (uint32_t y = 0; y < canvas.height; ++y) {
        const uint8_t* from = picture.pixels + size_t{y} * picture.stride;
        for (uint32_t x = 0; x < canvas.width; ++x)
            reader.read(from, x, row.data() + size_t{x} * 4);
        blendRow(canvasRow(canvas, y), row.data(), canvas.width, AlphaKind::straight);
    }
    return ORVANE_CODEC_OK;
}

}  // namespace orvane::codecs
