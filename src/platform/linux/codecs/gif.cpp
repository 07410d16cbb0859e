#include "platform/linux/codecs/decoders.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <vector>

#include <gif_lib.h>

// GIF through giflib: the first frame, placed on its logical screen. The bitmap has the smallest
// depth of 1, 4 and 8 bits that its colour table fits. Transparent pixels keep their index and with
// it the table's colour, as on Windows; the index is told beside them. A frame that is cut short
// makes the whole file fail; what follows the frame isn't looked at.

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

/// Where the frame lies on the picture.
struct Layout {
    uint32_t width;
    uint32_t height;
    uint32_t left;
    uint32_t top;
};

/// The picture is the logical screen, unless the frame leaves it: such a screen is a writer's
/// mistake, and the frame alone is the picture.
Layout layOut(const GifFileType& gif) {
    const GifImageDesc& frame = gif.Image;
    if (frame.Left + frame.Width > gif.SWidth || frame.Top + frame.Height > gif.SHeight)
        return {static_cast<uint32_t>(frame.Width), static_cast<uint32_t>(frame.Height), 0, 0};
    return {static_cast<uint32_t>(gif.SWidth), static_cast<uint32_t>(gif.SHeight),
            static_cast<uint32_t>(frame.Left), static_cast<uint32_t>(frame.Top)};
}

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

/// Decodes the frame's rows one by one and puts them on the picture.
class FrameReader {
public:
    FrameReader(GifFileType& gif, const Layout& layout, uint8_t background, OrvaneDecoded& out)
        : gif_(gif), layout_(layout), background_(background), out_(out),
          row_(layout.width, background) {}

    bool read() {
        fillAround();
        if (!gif_.Image.Interlace) return readRows(0, 1);
        return readRows(0, 8) && readRows(4, 8) && readRows(2, 4) && readRows(1, 2);
    }

private:
    void fillAround() {
        if (background_ == 0) return;
        const uint32_t bottom = layout_.top + static_cast<uint32_t>(gif_.Image.Height);
        for (uint32_t y = 0; y < layout_.height; ++y) {
            if (y < layout_.top || y >= bottom) packRow(row_, out_, y);
        }
    }

    bool readRows(uint32_t first, uint32_t step) {
        for (uint32_t y = first; y < static_cast<uint32_t>(gif_.Image.Height); y += step) {
            uint8_t* line = row_.data() + layout_.left;
            const int width = gif_.Image.Width;
            if (DGifGetLine(&gif_, line, width) == GIF_ERROR) return false;
            const uint32_t colours = out_.paletteCount;
            for (int x = 0; x < width; ++x)
                line[x] = line[x] < colours ? line[x] : uint8_t{0};
            packRow(row_, out_, layout_.top + y);
        }
        return true;
    }

    GifFileType& gif_;
    Layout layout_;
    uint8_t background_;
    OrvaneDecoded& out_;
    /// A row of the picture, one byte a pixel; beside the frame it always holds the background.
    std::vector<uint8_t> row_;
};

void setColours(const ColorMapObject& map, OrvaneDecoded& out) {
    out.paletteCount = static_cast<uint32_t>(map.ColorCount);
    for (uint32_t index = 0; index < out.paletteCount; ++index) {
        const GifColorType& colour = map.Colors[index];
        setColour(out, index, colour.Red, colour.Green, colour.Blue);
    }
}

/// What the screen shows beside the frame: nothing where the frame has a transparent colour, else
/// the background, which counts in the screen's own table only.
uint8_t backgroundOf(const GifFileType& gif, const OrvaneDecoded& out) {
    if (out.transparentIndex >= 0) return static_cast<uint8_t>(out.transparentIndex);
    const bool own = gif.Image.ColorMap == nullptr && gif.SBackGroundColor >= 0 &&
                     static_cast<uint32_t>(gif.SBackGroundColor) < out.paletteCount;
    return own ? static_cast<uint8_t>(gif.SBackGroundColor) : uint8_t{0};
}

OrvaneCodecResult readFrame(GifFileType& gif, int transparent, size_t fileSize, OrvaneDecoded& out,
                            const Limits& limits) {
    const GifImageDesc& frame = gif.Image;
    const ColorMapObject* map = frame.ColorMap != nullptr ? frame.ColorMap : gif.SColorMap;
    if (map == nullptr) return ORVANE_CODEC_UNSUPPORTED;
    if (frame.Width <= 0 || frame.Height <= 0) return ORVANE_CODEC_DAMAGED;
    const uint64_t pixels =
        static_cast<uint64_t>(frame.Width) * static_cast<uint64_t>(frame.Height);
    if (pixels / kMostPixelsPerByte > fileSize) return ORVANE_CODEC_DAMAGED;
    const int tableBits = map->BitsPerPixel;
    const uint32_t depth = tableBits <= 1 ? 1 : tableBits <= 4 ? 4 : 8;
    const Layout layout = layOut(gif);
    const OrvaneCodecResult made = makeBitmap(out, layout.width, layout.height, depth, limits);
    if (made != ORVANE_CODEC_OK) return made;
    setColours(*map, out);
    if (transparent >= 0 && transparent < map->ColorCount) out.transparentIndex = transparent;
    return FrameReader(gif, layout, backgroundOf(gif, out), out).read() ? ORVANE_CODEC_OK
                                                                        : ORVANE_CODEC_DAMAGED;
}

}  // namespace

OrvaneCodecResult decodeGif(std::span<const uint8_t> file, OrvaneDecoded& out,
                            const Limits& limits) {
    if (file.size() < 3 || std::memcmp(file.data(), "GIF", 3) != 0)
        return ORVANE_CODEC_NOT_RECOGNISED;
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
