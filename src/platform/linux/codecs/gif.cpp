#include "platform/linux/codecs/decoders.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include <gif_lib.h>

// GIF through giflib: the first frame alone, whatever screen it lies on, as on Windows. The bitmap
// has the smallest depth of 1, 4 and 8 bits that its colour table fits. Transparent pixels keep
// their index and with it the table's colour; the index is told beside them. A frame that is cut
// short makes the whole file fail; what follows the frame isn't looked at.

namespace orvane::codecs {

namespace {

/// A code of at least 2 bits stands for 4096 pixels at most: what a byte of a file can amount to.
constexpr uint64_t kMostPixelsPerByte = 4 * 4096;

/// The bytes left to giflib.
struct Source {
    std::span<const uint8_t> left;
    bool ended = false;
};

int readSource(GifFileType* gif, GifByteType* to, int count) {
    Source& source = *static_cast<Source*>(gif->UserData);
    // A file without the zero that ends its frame's data has all its pixels nevertheless.
    if (source.left.empty() && count == 1 && !source.ended) {
        source.ended = true;
        *to = 0;
        return 1;
    }
    const size_t length = std::min(static_cast<size_t>(count), source.left.size());
    std::copy_n(source.left.data(), length, to);
    source.left = source.left.subspan(length);
    return static_cast<int>(length);
}

struct CloseGif {
    void operator()(GifFileType* gif) const { DGifCloseFile(gif, nullptr); }
};
using Gif = std::unique_ptr<GifFileType, CloseGif>;

/// Skips an extension; keeps the transparent index of a graphic control extension.
bool readExtension(GifFileType& gif, int& transparent) {
    int code = 0;
    GifByteType* block = nullptr;
    if (DGifGetExtension(&gif, &code, &block) == GIF_ERROR) return false;
    while (block != nullptr) {
        GraphicsControlBlock control{};
        if (code == GRAPHICS_EXT_FUNC_CODE &&
            DGifExtensionToGCB(block[0], block + 1, &control) == GIF_OK)
            transparent = control.TransparentColor;
        if (DGifGetExtensionNext(&gif, &block) == GIF_ERROR) return false;
    }
    return true;
}

/// Goes to the first frame's pixels. False when there is none.
bool findFrame(GifFileType& gif, int& transparent) {
    while (true) {
        GifRecordType record = UNDEFINED_RECORD_TYPE;
        if (DGifGetRecordType(&gif, &record) == GIF_ERROR) return false;
        if (record == IMAGE_DESC_RECORD_TYPE) return DGifGetImageDesc(&gif) == GIF_OK;
        if (record != EXTENSION_RECORD_TYPE || !readExtension(gif, transparent)) return false;
    }
}

void packRow(const std::vector<uint8_t>& row, OrvaneDecoded& out, uint32_t y) {
    uint8_t* to = pixelRow(out, y);
    const auto width = static_cast<uint32_t>(out.width);
    if (out.bitsPerPixel == 8) {
        std::memcpy(to, row.data(), width);
        return;
    }
    const auto bits = static_cast<uint32_t>(out.bitsPerPixel);
    const uint32_t last = 8 / bits - 1;
    uint32_t held = 0;
    for (uint32_t x = 0; x < width; ++x) {
        held = held << bits | row[x];
        if ((x & last) == last) *to++ = static_cast<uint8_t>(held);
    }
    const uint32_t rest = width & last;
    if (rest != 0) *to = static_cast<uint8_t>(held << (last + 1 - rest) * bits);
}

/// Decodes the rows `first`, `first + step`, ... of the frame into the picture.
bool readRows(GifFileType& gif, uint32_t first, uint32_t step, OrvaneDecoded& out) {
    const auto height = static_cast<uint32_t>(out.height);
    std::vector<uint8_t> row(static_cast<size_t>(out.width));
    for (uint32_t y = first; y < height; y += step) {
        if (DGifGetLine(&gif, row.data(), out.width) == GIF_ERROR) return false;
        for (uint8_t& index : row)
            index = index < out.paletteCount ? index : uint8_t{0};
        packRow(row, out, y);
    }
    return true;
}

bool readPixels(GifFileType& gif, OrvaneDecoded& out) {
    if (!gif.Image.Interlace) return readRows(gif, 0, 1, out);
    return readRows(gif, 0, 8, out) && readRows(gif, 4, 8, out) && readRows(gif, 2, 4, out) &&
           readRows(gif, 1, 2, out);
}

void setColours(const ColorMapObject& map, OrvaneDecoded& out) {
    out.paletteCount = static_cast<uint32_t>(map.ColorCount);
    for (uint32_t index = 0; index < out.paletteCount; ++index) {
        const GifColorType& colour = map.Colors[index];
        setColour(out, index, colour.Red, colour.Green, colour.Blue);
    }
}

OrvaneCodecResult readFrame(GifFileType& gif, int transparent, size_t fileSize, OrvaneDecoded& out,
                            const Limits& limits) {
    const GifImageDesc& frame = gif.Image;
    const ColorMapObject* map = frame.ColorMap != nullptr ? frame.ColorMap : gif.SColorMap;
    if (map == nullptr) return ORVANE_CODEC_UNSUPPORTED;
    if (frame.Width <= 0 || frame.Height <= 0) return ORVANE_CODEC_DAMAGED;
    const auto width = static_cast<uint32_t>(frame.Width);
    const auto height = static_cast<uint32_t>(frame.Height);
    if (uint64_t{width} * height / kMostPixelsPerByte > fileSize) return ORVANE_CODEC_DAMAGED;
    const int tableBits = map->BitsPerPixel;
    const uint32_t depth = tableBits <= 1 ? 1 : tableBits <= 4 ? 4 : 8;
    const OrvaneCodecResult made = makeBitmap(out, width, height, depth, limits);
    if (made != ORVANE_CODEC_OK) return made;
    setColours(*map, out);
    if (transparent >= 0 && transparent < map->ColorCount) out.transparentIndex = transparent;
    return readPixels(gif, out) ? ORVANE_CODEC_OK : ORVANE_CODEC_DAMAGED;
}

}  // namespace

bool isGif(std::span<const uint8_t> start) {
    return start.size() >= 3 && std::memcmp(start.data(), "GIF", 3) == 0;
}

OrvaneCodecResult decodeGif(std::span<const uint8_t> file, OrvaneDecoded& out,
                            const Limits& limits) {
    if (!isGif(file)) return ORVANE_CODEC_NOT_RECOGNISED;
    Source source{file};
    int error = 0;
    const Gif gif(DGifOpen(&source, readSource, &error));
    if (gif == nullptr)
        return error == D_GIF_ERR_NOT_ENOUGH_MEM ? ORVANE_CODEC_OUT_OF_MEMORY
                                                 : ORVANE_CODEC_DAMAGED;
    int transparent = NO_TRANSPARENT_COLOR;
    if (!findFrame(*gif, transparent)) return ORVANE_CODEC_DAMAGED;
    return readFrame(*gif, transparent, file.size(), out, limits);
}

}  // namespace orvane::codecs
