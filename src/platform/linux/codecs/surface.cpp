#include "platform/linux/codecs/surface.h"

#include "platform/linux/large_pages.h"

#include <cstdlib>
#include <cstring>

namespace orvane::codecs {

OrvaneCodecResult makeBitmap(OrvaneDecoded& out, uint32_t width, uint32_t height,
                             uint32_t bitsPerPixel, const Limits& limits) {
    const uint64_t stride = paddedRowBytes(width, bitsPerPixel);
    // Width and height are below 2^31, so the product of row and rows can't wrap 64 bits.
    if (width > INT32_MAX || height > INT32_MAX || stride * height > limits.surfaceBytes)
        return ORVANE_CODEC_OUT_OF_MEMORY;
    out.pixels = static_cast<uint8_t*>(std::calloc(height, stride));
    if (out.pixels == nullptr) return ORVANE_CODEC_OUT_OF_MEMORY;
    platform::preferLargePages(out.pixels, stride * height);
    out.kind = ORVANE_PICTURE_BITMAP;
    out.width = static_cast<int32_t>(width);
    out.height = static_cast<int32_t>(height);
    out.bitsPerPixel = static_cast<int32_t>(bitsPerPixel);
    out.stride = static_cast<uint32_t>(stride);
    out.pixelBytes = stride * height;
    out.transparentIndex = -1;
    if (bitsPerPixel == 16) {
        out.redMask = 0x7c00;
        out.greenMask = 0x03e0;
        out.blueMask = 0x001f;
    } else if (bitsPerPixel == 32) {
        out.redMask = 0xff0000;
        out.greenMask = 0xff00;
        out.blueMask = 0xff;
    }
    return ORVANE_CODEC_OK;
}

OrvaneCodecResult addMask(OrvaneDecoded& out, const Limits& limits) {
    const uint64_t stride = paddedRowBytes(static_cast<uint32_t>(out.width), 1);
    const auto height = static_cast<uint32_t>(out.height);
    if (stride * height > limits.surfaceBytes) return ORVANE_CODEC_OUT_OF_MEMORY;
    out.mask = static_cast<uint8_t*>(std::calloc(height, stride));
    if (out.mask == nullptr) return ORVANE_CODEC_OUT_OF_MEMORY;
    out.maskStride = static_cast<uint32_t>(stride);
    out.maskBytes = stride * height;
    return ORVANE_CODEC_OK;
}

OrvaneCodecResult keepFile(OrvaneDecoded& out, std::span<const uint8_t> file) {
    out.file = static_cast<uint8_t*>(std::malloc(file.size()));
    if (out.file == nullptr) return ORVANE_CODEC_OUT_OF_MEMORY;
    std::memcpy(out.file, file.data(), file.size());
    out.fileBytes = file.size();
    return ORVANE_CODEC_OK;
}

void setColour(OrvaneDecoded& out, uint32_t index, uint8_t red, uint8_t green, uint8_t blue) {
    uint8_t* entry = out.palette + size_t{index} * 4;
    entry[0] = blue;
    entry[1] = green;
    entry[2] = red;
    entry[3] = 0;
}

void clear(OrvaneDecoded& decoded) {
    std::memset(&decoded, 0, sizeof decoded);
}

void release(OrvaneDecoded& decoded) {
    std::free(decoded.pixels);
    std::free(decoded.mask);
    std::free(decoded.file);
    clear(decoded);
}

}  // namespace orvane::codecs
