// PNG, JPEG and TIFF files of 4096 x 4096 pixels, from the file to a picture, against a bare loop
// over the codec library alone that yields the same pixels: the whole picture in new memory, laid
// out as a host's bitmap is. PNG and TIFF have 4 bytes a pixel, blue, green, red and 0, JPEG has 3;
// libpng and libjpeg-turbo bring them in this order, what libtiff brings is turned round while it
// is copied to its place. The transparent PNG is laid over one colour by libpng.

#include "bench.h"

#include "main/orvMain.h"
#include "peak_memory.h"

#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <functional>
#include <memory>
#include <vector>

#include <jpeglib.h>
#include <png.h>
#include <tiffio.h>

namespace {

constexpr unsigned kSize = 4096;

constexpr unsigned kTile = 256;
constexpr unsigned kStripRows = 64;

using Row = std::vector<unsigned char>;
using Pixels = std::unique_ptr<unsigned char[]>;

/// Memory for a whole picture, none of it written yet.
Pixels newPixels(std::size_t bytesPerPixel) {
    return Pixels(new unsigned char[bytesPerPixel * kSize * kSize]);
}

/// A row of a picture with slopes, edges and a little noise.
Row rowOf(unsigned y, unsigned channels) {
    Row row;
    row.reserve(kSize * channels);
    unsigned noise = y * 7919 + 1;
    for (unsigned x = 0; x < kSize; ++x) {
        for (unsigned channel = 0; channel < channels; ++channel) {
            noise = noise * 1664525 + 1013904223;
            const unsigned edge = (x / 256 + y / 256) % 2 * 60;
            row.push_back(
                static_cast<unsigned char>((x + channel * y) / 24 + edge + (noise >> 30)));
        }
    }
    return row;
}

void writePng(const char* path, unsigned channels) {
    FILE* file = std::fopen(path, "wb");
    png_structp png = png_create_write_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, file);
    png_set_IHDR(png, info, kSize, kSize, 8,
                 channels == 4 ? PNG_COLOR_TYPE_RGB_ALPHA : PNG_COLOR_TYPE_RGB, PNG_INTERLACE_NONE,
                 PNG_COMPRESSION_TYPE_DEFAULT, PNG_FILTER_TYPE_DEFAULT);
    png_set_compression_level(png, 3);
    png_write_info(png, info);
    for (unsigned y = 0; y < kSize; ++y)
        png_write_row(png, rowOf(y, channels).data());
    png_write_end(png, info);
    png_destroy_write_struct(&png, &info);
    std::fclose(file);
}

void readPng(const char* path) {
    FILE* file = std::fopen(path, "rb");
    png_structp png = png_create_read_struct(PNG_LIBPNG_VER_STRING, nullptr, nullptr, nullptr);
    png_infop info = png_create_info_struct(png);
    png_init_io(png, file);
    png_read_info(png, info);
    png_color_16 face{0, 0xF0, 0xF0, 0xF0, 0xF0};
    png_set_background(png, &face, PNG_BACKGROUND_GAMMA_SCREEN, 0, 1);
    png_set_bgr(png);
    png_set_filler(png, 0, PNG_FILLER_AFTER);
    png_read_update_info(png, info);
    const Pixels pixels = newPixels(4);
    for (unsigned y = 0; y < kSize; ++y)
        png_read_row(png, pixels.get() + std::size_t{y} * kSize * 4, nullptr);
    png_destroy_read_struct(&png, &info, nullptr);
    std::fclose(file);
}

void writeJpeg(const char* path, unsigned) {
    FILE* file = std::fopen(path, "wb");
    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_CreateCompress(&info, JPEG_LIB_VERSION, sizeof info);
    jpeg_stdio_dest(&info, file);
    info.image_width = info.image_height = kSize;
    info.input_components = 3;
    info.in_color_space = JCS_RGB;
    jpeg_set_defaults(&info);
    jpeg_set_quality(&info, 90, TRUE);
    jpeg_start_compress(&info, TRUE);
    for (unsigned y = 0; y < kSize; ++y) {
        Row row = rowOf(y, 3);
        JSAMPROW at = row.data();
        jpeg_write_scanlines(&info, &at, 1);
    }
    jpeg_finish_compress(&info);
    jpeg_destroy_compress(&info);
    std::fclose(file);
}

void readJpeg(const char* path) {
    FILE* file = std::fopen(path, "rb");
    jpeg_decompress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_CreateDecompress(&info, JPEG_LIB_VERSION, sizeof info);
    jpeg_stdio_src(&info, file);
    jpeg_read_header(&info, TRUE);
    info.out_color_space = JCS_EXT_BGR;
    jpeg_start_decompress(&info);
    const Pixels pixels = newPixels(3);
    std::vector<JSAMPROW> rows;
    for (unsigned y = 0; y < kSize; ++y)
        rows.push_back(pixels.get() + std::size_t{y} * kSize * 3);
    while (info.output_scanline < kSize)
        jpeg_read_scanlines(&info, &rows[info.output_scanline], kSize - info.output_scanline);
    jpeg_destroy_decompress(&info);
    std::fclose(file);
}

void writeTiff(const char* path, int compression, int predictor, unsigned tile) {
    TIFF* tiff = TIFFOpen(path, "w");
    TIFFSetField(tiff, TIFFTAG_IMAGEWIDTH, kSize);
    TIFFSetField(tiff, TIFFTAG_IMAGELENGTH, kSize);
    TIFFSetField(tiff, TIFFTAG_BITSPERSAMPLE, 8);
    TIFFSetField(tiff, TIFFTAG_SAMPLESPERPIXEL, 3);
    TIFFSetField(tiff, TIFFTAG_PHOTOMETRIC, PHOTOMETRIC_RGB);
    TIFFSetField(tiff, TIFFTAG_PLANARCONFIG, PLANARCONFIG_CONTIG);
    TIFFSetField(tiff, TIFFTAG_COMPRESSION, compression);
    if (predictor != 0) TIFFSetField(tiff, TIFFTAG_PREDICTOR, predictor);
    if (tile == 0) {
        TIFFSetField(tiff, TIFFTAG_ROWSPERSTRIP, kStripRows);
        for (unsigned y = 0; y < kSize; ++y)
            TIFFWriteScanline(tiff, rowOf(y, 3).data(), y, 0);
    } else {
        TIFFSetField(tiff, TIFFTAG_TILEWIDTH, tile);
        TIFFSetField(tiff, TIFFTAG_TILELENGTH, tile);
        for (unsigned y = 0; y < kSize; y += tile) {
            std::vector<Row> rows;
            for (unsigned i = 0; i < tile; ++i)
                rows.push_back(rowOf(y + i, 3));
            for (unsigned x = 0; x < kSize; x += tile) {
                Row block;
                for (const Row& row : rows)
                    block.insert(block.end(), row.begin() + x * 3, row.begin() + (x + tile) * 3);
                TIFFWriteTile(tiff, block.data(), x, y, 0, 0);
            }
        }
    }
    TIFFClose(tiff);
}

/// Red, green, blue to blue, green, red and 0.
void turnRound(const unsigned char* from, unsigned count, unsigned char* to) {
    for (unsigned i = 0; i < count; ++i, from += 3, to += 4) {
        to[0] = from[2];
        to[1] = from[1];
        to[2] = from[0];
        to[3] = 0;
    }
}

void readTiff(const char* path) {
    TIFF* tiff = TIFFOpen(path, "r");
    const Pixels pixels = newPixels(4);
    const auto at = [&](unsigned x, unsigned y) {
        return pixels.get() + (std::size_t{y} * kSize + x) * 4;
    };
    if (TIFFIsTiled(tiff)) {
        const Pixels tile(new unsigned char[static_cast<std::size_t>(TIFFTileSize(tiff))]);
        for (unsigned i = 0; i < TIFFNumberOfTiles(tiff); ++i) {
            TIFFReadEncodedTile(tiff, i, tile.get(), -1);
            const unsigned x = i % (kSize / kTile) * kTile;
            const unsigned y = i / (kSize / kTile) * kTile;
            for (unsigned row = 0; row < kTile; ++row)
                turnRound(tile.get() + row * kTile * 3, kTile, at(x, y + row));
        }
    } else {
        const Pixels strip(new unsigned char[static_cast<std::size_t>(TIFFStripSize(tiff))]);
        for (unsigned i = 0; i < TIFFNumberOfStrips(tiff); ++i) {
            TIFFReadEncodedStrip(tiff, i, strip.get(), -1);
            turnRound(strip.get(), kSize * kStripRows, at(0, i * kStripRows));
        }
    }
    TIFFClose(tiff);
}

struct Case {
    const char* name;
    long channels;
    std::function<void(const char* path)> write;
    void (*read)(const char* path);
    const char* peer;
};

}  // namespace

/// codecs [WORD]: all cases, or those whose name holds the word.
int main(int count, char** arguments) {
    const char* wanted = count > 1 ? arguments[1] : "";
    const std::string host = orvane::bench::builtFile(arguments[0], "orvane");
    const auto library = orvane::make<orvane::orvMain>();
    char folder[] = "/tmp/orvane-bench-XXXXXX";
    if (mkdtemp(folder) == nullptr) return 1;
    const std::string path = std::string(folder) + "/picture";
    const std::u16string wide(path.begin(), path.end());
    const Case cases[] = {
        {"PNG, 24 bits", 3, [](const char* to) { writePng(to, 3); }, readPng, "libpng"},
        {"PNG, 32 bits with alpha", 4, [](const char* to) { writePng(to, 4); }, readPng, "libpng"},
        {"JPEG", 3, [](const char* to) { writeJpeg(to, 3); }, readJpeg, "libjpeg-turbo"},
        {"TIFF, LZW, strips", 3,
         [](const char* to) { writeTiff(to, COMPRESSION_LZW, PREDICTOR_HORIZONTAL, 0); }, readTiff,
         "libtiff"},
        {"TIFF, Deflate, strips", 3,
         [](const char* to) { writeTiff(to, COMPRESSION_ADOBE_DEFLATE, PREDICTOR_HORIZONTAL, 0); },
         readTiff, "libtiff"},
        {"TIFF, Deflate, tiles", 3,
         [](const char* to) {
             writeTiff(to, COMPRESSION_ADOBE_DEFLATE, PREDICTOR_HORIZONTAL, kTile);
         },
         readTiff, "libtiff"},
        {"TIFF, PackBits, strips", 3,
         [](const char* to) { writeTiff(to, COMPRESSION_PACKBITS, 0, 0); }, readTiff, "libtiff"},
        {"TIFF, not compressed", 3, [](const char* to) { writeTiff(to, COMPRESSION_NONE, 0, 0); },
         readTiff, "libtiff"},
    };
    for (const Case& one : cases) {
        if (std::strstr(one.name, wanted) == nullptr) continue;
        one.write(path.c_str());
        const auto ours = [&] {
            orvane::Ref<orvane::PictureInfo> info;
            if (library->LoadPictureEx(wide, info).isNothing()) std::exit(1);
        };
        const auto [own, peer] = orvane::bench::medianTimes(
            ours, [&] { one.read(path.c_str()); }, 5);
        orvane::bench::printRatio(one.name, own, one.peer, peer);
        orvane::bench::printPeakOfDecoder(host, path, one.channels * kSize * kSize);
    }
    unlink(path.c_str());
    rmdir(folder);
    return 0;
}
