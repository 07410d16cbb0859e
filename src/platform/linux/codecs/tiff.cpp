#include "platform/linux/codecs/canvas.h"
#include "platform/linux/codecs/images.h"
#include "platform/linux/codecs/tiff_samples.h"

#include <algorithm>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <vector>

// TIFF through libtiff: the first page, in strips or tiles, with every compression that libtiff has
// here. Grey, palettes, RGB, inks and brightness with colour differences; samples of 1 to 16 bits.
// The orientation tag is left alone, as GDI+ leaves it, and so are profiles. BigTIFF is another
// format to GDI+.

namespace orvane::codecs {

namespace {

/// Bytes of a tile that need no thought.
constexpr uint64_t kUsualTile = uint64_t{16} << 20;
/// A strip above this is unpacked row by row, which takes longer and no memory.
constexpr uint64_t kMostOfStrip = uint64_t{64} << 20;

struct Free {
    void operator()(uint8_t* memory) const { std::free(memory); }
};

/// Where unpacked pixels go: straight into the canvas, or, where they have to be complete before
/// they are painted, into memory beside it.
class Pixels {
public:
    Pixels(const OrvaneCanvas& canvas, const TiffLayout& layout)
        : canvas_(canvas), layout_(layout) {}

    /// Takes memory if any is needed; gives OK or OUT_OF_MEMORY.
    OrvaneCodecResult prepare(const Limits& limits) {
        const bool inks = layout_.colours == TiffColours::cmyk;
        whole_ = layout_.separate && (layout_.alpha || inks);
        beside_ = layout_.alpha || whole_;
        if (!beside_) return ORVANE_CODEC_OK;
        const uint64_t rows = whole_ ? canvas_.height : 1;
        const uint64_t size = uint64_t{canvas_.width} * 4 * rows;
        if (size > limits.surfaceBytes) return ORVANE_CODEC_OUT_OF_MEMORY;
        memory_.reset(static_cast<uint8_t*>(std::calloc(1, size)));
        return memory_ == nullptr ? ORVANE_CODEC_OUT_OF_MEMORY : ORVANE_CODEC_OK;
    }

    /// Where the pixels from column `x` on of row `y` go.
    uint8_t* at(uint32_t x, uint32_t y) {
        if (!beside_) return canvasRow(canvas_, y) + size_t{x} * 4;
        const size_t row = whole_ ? y : 0;
        return memory_.get() + (row * canvas_.width + x) * 4;
    }

    /// Paints `count` pixels that are complete now.
    void complete(uint32_t x, uint32_t y, uint32_t count) {
        if (!beside_ || whole_) return;
        blendRow(canvasRow(canvas_, y) + size_t{x} * 4, at(x, y), count, layout_.alphaKind);
    }

    /// Paints all rows, once the last plane is there.
    void completeAll(const TiffSamples& samples) {
        for (uint32_t y = 0; whole_ && y < canvas_.height; ++y) {
            samples.finish(canvas_.width, at(0, y));
            if (layout_.alpha) {
                blendRow(canvasRow(canvas_, y), at(0, y), canvas_.width, layout_.alphaKind);
            } else {
                std::memcpy(canvasRow(canvas_, y), at(0, y), size_t{canvas_.width} * 4);
            }
        }
    }

private:
    const OrvaneCanvas& canvas_;
    const TiffLayout& layout_;
    bool whole_ = false;
    bool beside_ = false;
    std::unique_ptr<uint8_t, Free> memory_;
};

/// One painting of a page.
class Painter {
public:
    Painter(const TiffFile& file, const TiffLayout& layout, const OrvaneCanvas& canvas,
            const Limits& limits)
        : tiff_(file.get()), layout_(layout), canvas_(canvas), limits_(limits),
          samples_(file, layout), pixels_(canvas, layout) {}

    OrvaneCodecResult run() {
        if (layout_.colours == TiffColours::converted) return convert();
        const OrvaneCodecResult prepared = pixels_.prepare(limits_);
        if (prepared != ORVANE_CODEC_OK) return prepared;
        const uint32_t planes = layout_.separate ? layout_.usedSamples() : 1;
        for (uint32_t plane = 0; plane < planes; ++plane) {
            const OrvaneCodecResult read = layout_.tiled ? readTiles(plane) : readRows(plane);
            if (read != ORVANE_CODEC_OK) return read;
        }
        pixels_.completeAll(samples_);
        return ORVANE_CODEC_OK;
    }

private:
    /// Bytes of `count` pixels of a plane.
    uint64_t rowBytes(uint64_t count) const {
        return (count * layout_.bits * (layout_.separate ? 1 : layout_.samples) + 7) / 8;
    }

    void unpack(const uint8_t* row, uint32_t x, uint32_t y, uint32_t count, uint32_t plane) {
        uint8_t* const to = pixels_.at(x, y);
        if (layout_.separate) {
            samples_.unpackPlane(row, count, plane, to);
        } else {
            samples_.unpack(row, count, to);
            pixels_.complete(x, y, count);
        }
    }

    OrvaneCodecResult readRows(uint32_t plane) {
        const uint64_t size = TIFFScanlineSize64(tiff_);
        if (size < rowBytes(layout_.width)) return ORVANE_CODEC_DAMAGED;
        if (size > limits_.workBytes) return ORVANE_CODEC_OUT_OF_MEMORY;
        uint32_t stripRows = 0;
        TIFFGetFieldDefaulted(tiff_, TIFFTAG_ROWSPERSTRIP, &stripRows);
        stripRows = std::min(stripRows, layout_.height);
        const bool whole = stripRows != 0 && size * stripRows <= kMostOfStrip &&
                           size * stripRows <= limits_.workBytes;
        return whole ? readStrips(plane, size, stripRows) : readScanlines(plane, size);
    }

    /// Strips at once: libtiff unpacks a whole one much faster than its rows, and turns to the
    /// better of its libraries for that.
    OrvaneCodecResult readStrips(uint32_t plane, uint64_t stride, uint32_t stripRows) {
        const std::unique_ptr<uint8_t, Free> strip(
            static_cast<uint8_t*>(std::calloc(stripRows, stride)));
        if (strip == nullptr) return ORVANE_CODEC_OUT_OF_MEMORY;
        uint32_t rows = 0;
        for (uint32_t y = 0; y < layout_.height; y += rows) {
            rows = std::min(stripRows, layout_.height - y);
            const uint32_t number = TIFFComputeStrip(tiff_, y, static_cast<uint16_t>(plane));
            const auto size = static_cast<tmsize_t>(stride * rows);
            if (TIFFReadEncodedStrip(tiff_, number, strip.get(), size) < 0) {
                return ORVANE_CODEC_DAMAGED;
            }
            for (uint32_t i = 0; i < rows; ++i)
                unpack(strip.get() + i * stride, 0, y + i, layout_.width, plane);
        }
        return ORVANE_CODEC_OK;
    }

    OrvaneCodecResult readScanlines(uint32_t plane, uint64_t size) {
        std::vector<uint8_t> row(size);
        for (uint32_t y = 0; y < layout_.height; ++y) {
            if (TIFFReadScanline(tiff_, row.data(), y, static_cast<uint16_t>(plane)) < 0) {
                return ORVANE_CODEC_DAMAGED;
            }
            unpack(row.data(), 0, y, layout_.width, plane);
        }
        return ORVANE_CODEC_OK;
    }

    OrvaneCodecResult readTiles(uint32_t plane) {
        uint32_t width = 0;
        uint32_t height = 0;
        TIFFGetField(tiff_, TIFFTAG_TILEWIDTH, &width);
        TIFFGetField(tiff_, TIFFTAG_TILELENGTH, &height);
        const uint64_t size = TIFFTileSize64(tiff_);
        const uint64_t stride = TIFFTileRowSize64(tiff_);
        if (width == 0 || height == 0 || stride < rowBytes(width) || size / height < stride) {
            return ORVANE_CODEC_DAMAGED;
        }
        // A tile is larger than its page for the sake of whole tiles, not by orders.
        const uint64_t page = rowBytes(layout_.width) * layout_.height;
        if (size > kUsualTile && size / 4 > page) return ORVANE_CODEC_DAMAGED;
        if (size > limits_.workBytes) return ORVANE_CODEC_OUT_OF_MEMORY;
        tile_.resize(size);
        for (uint32_t y = 0; y < layout_.height; y += std::min(height, layout_.height - y)) {
            for (uint32_t x = 0; x < layout_.width; x += std::min(width, layout_.width - x)) {
                if (TIFFReadTile(tiff_, tile_.data(), x, y, 0, static_cast<uint16_t>(plane)) < 0) {
                    return ORVANE_CODEC_DAMAGED;
                }
                const uint32_t count = std::min(width, layout_.width - x);
                for (uint32_t i = 0; i < std::min(height, layout_.height - y); ++i)
                    unpack(tile_.data() + i * stride, x, y + i, count, plane);
            }
        }
        return ORVANE_CODEC_OK;
    }

    /// libtiff's own way to colours, for brightness with colour differences.
    OrvaneCodecResult convert() {
        const uint64_t count = uint64_t{layout_.width} * layout_.height;
        if (count * 4 > limits_.surfaceBytes) return ORVANE_CODEC_OUT_OF_MEMORY;
        // Taken before libtiff takes anything, because it may throw.
        std::vector<uint32_t> raster(count);
        TIFFRGBAImage image{};
        char message[1024];
        if (TIFFRGBAImageBegin(&image, tiff_, 1, message) == 0) return ORVANE_CODEC_UNSUPPORTED;
        image.orientation = ORIENTATION_TOPLEFT;
        image.req_orientation = ORIENTATION_TOPLEFT;
        const int done = TIFFRGBAImageGet(&image, raster.data(), layout_.width, layout_.height);
        TIFFRGBAImageEnd(&image);
        if (done == 0) return ORVANE_CODEC_DAMAGED;
        for (uint32_t y = 0; y < layout_.height; ++y) {
            uint8_t* to = canvasRow(canvas_, y);
            const uint32_t* from = raster.data() + size_t{y} * layout_.width;
            for (uint32_t x = 0; x < layout_.width; ++x, to += 4) {
                to[0] = static_cast<uint8_t>(TIFFGetB(from[x]));
                to[1] = static_cast<uint8_t>(TIFFGetG(from[x]));
                to[2] = static_cast<uint8_t>(TIFFGetR(from[x]));
                to[3] = 0;
            }
        }
        return ORVANE_CODEC_OK;
    }

    TIFF* tiff_;
    const TiffLayout& layout_;
    const OrvaneCanvas& canvas_;
    const Limits& limits_;
    TiffSamples samples_;
    Pixels pixels_;
    std::vector<uint8_t> tile_;
};

}  // namespace

bool isTiff(std::span<const uint8_t> start) {
    if (start.size() < 4) return false;
    const bool little = std::memcmp(start.data(), "II*\0", 4) == 0;
    return little || std::memcmp(start.data(), "MM\0*", 4) == 0;
}

OrvaneCodecResult examineTiff(std::span<const uint8_t> file, OrvaneImageFacts& facts,
                              const Limits& limits) {
    if (!isTiff(file)) return ORVANE_CODEC_NOT_RECOGNISED;
    const TiffFile tiff(file, limits);
    if (!tiff.isOpen()) return ORVANE_CODEC_DAMAGED;
    TiffLayout layout;
    const OrvaneCodecResult read = readTiffLayout(tiff, limits, layout);
    if (read != ORVANE_CODEC_OK) return read;
    facts = {layout.width, layout.height, ORVANE_IMAGE_TIFF, layout.pixelFormat};
    return ORVANE_CODEC_OK;
}

OrvaneCodecResult paintTiff(std::span<const uint8_t> file, const OrvaneCanvas& canvas,
                            const Limits& limits) {
    if (!isTiff(file)) return ORVANE_CODEC_NOT_RECOGNISED;
    const TiffFile tiff(file, limits);
    if (!tiff.isOpen()) return ORVANE_CODEC_DAMAGED;
    TiffLayout layout;
    const OrvaneCodecResult read = readTiffLayout(tiff, limits, layout);
    if (read != ORVANE_CODEC_OK) return read;
    if (layout.width != canvas.width || layout.height != canvas.height) {
        return ORVANE_CODEC_UNSUPPORTED;
    }
    return Painter(tiff, layout, canvas, limits).run();
}

}  // namespace orvane::codecs
