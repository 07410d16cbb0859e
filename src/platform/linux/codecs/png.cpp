#include "platform/linux/codecs/canvas.h"
#include "platform/linux/codecs/images.h"

#include <csetjmp>
#include <cstdlib>
#include <cstring>

#include <png.h>

// PNG through libpng. Pixels are taken as they are stored: like GDI+, no attention is paid to the
// file's gamma, profile and background. Damage anywhere in the pixels fails; what follows them
// isn't looked at.
//
// Pixel formats as GDI+ tells them: a palette of 1, 4 or 8 bits and grey of 1 bit are indexed, true
// colour has 24 bits. All else is told as what it is unpacked to: 32 bits with alpha for other
// depths of grey and for a palette of 2 bits, and for whatever has transparency. Colours of 16 bits
// a channel count in full, 48 and 64; grey of 16 bits counts as 32 like other grey, with alpha or
// without.

namespace orvane::codecs {

namespace {

constexpr size_t kSignature = 8;
/// Deflate's best: 258 bytes from 2 bits.
constexpr uint64_t kMostFromByte = 1032;

/// Texts, profiles and the like, which are of no use here and may unpack to any size.
constexpr png_byte kSkipped[] = "bKGD\0cHRM\0eXIf\0gAMA\0hIST\0iCCP\0iTXt\0oFFs\0pCAL\0pHYs\0"
                                "sBIT\0sCAL\0sPLT\0sRGB\0tEXt\0tIME\0zTXt";
constexpr int kSkippedCount = sizeof kSkipped / 5;

/// All state of one reading. libpng leaves by longjmp, so nothing here needs a destructor.
struct Job {
    png_structp png;
    png_infop info;
    std::span<const uint8_t> left;
    uint8_t* buffer;
    OrvaneCodecResult failure;
    std::jmp_buf escape;
};

[[noreturn]] void leave(Job& job, OrvaneCodecResult failure) {
    job.failure = failure;
    std::longjmp(job.escape, 1);
}

[[noreturn]] void onError(png_structp png, png_const_charp) {
    leave(*static_cast<Job*>(png_get_error_ptr(png)), ORVANE_CODEC_DAMAGED);
}

void onWarning(png_structp, png_const_charp) {}

void onRead(png_structp png, png_bytep to, size_t length) {
    Job& job = *static_cast<Job*>(png_get_io_ptr(png));
    if (length > job.left.size()) leave(job, ORVANE_CODEC_DAMAGED);
    std::memcpy(to, job.left.data(), length);
    job.left = job.left.subspan(length);
}

struct Header {
    png_uint_32 width;
    png_uint_32 height;
    int depth;
    int colour;
    bool transparent;
    bool interlaced;
};

Header readHeader(Job& job, std::span<const uint8_t> file, const Limits& limits) {
    job.png = png_create_read_struct(PNG_LIBPNG_VER_STRING, &job, onError, onWarning);
    if (job.png == nullptr) leave(job, ORVANE_CODEC_OUT_OF_MEMORY);
    job.info = png_create_info_struct(job.png);
    if (job.info == nullptr) leave(job, ORVANE_CODEC_OUT_OF_MEMORY);
    job.left = file;
    png_set_read_fn(job.png, &job, onRead);
    png_set_user_limits(job.png, PNG_UINT_31_MAX, PNG_UINT_31_MAX);
    png_set_chunk_malloc_max(job.png, static_cast<png_alloc_size_t>(limits.workBytes));
    png_set_keep_unknown_chunks(job.png, PNG_HANDLE_CHUNK_NEVER, kSkipped, kSkippedCount);
    png_read_info(job.png, job.info);
    Header header{};
    int interlace = 0;
    png_get_IHDR(job.png, job.info, &header.width, &header.height, &header.depth, &header.colour,
                 &interlace, nullptr, nullptr);
    header.interlaced = interlace != PNG_INTERLACE_NONE;
    header.transparent = png_get_valid(job.png, job.info, PNG_INFO_tRNS) != 0 ||
                         (header.colour & PNG_COLOR_MASK_ALPHA) != 0;
    // Divided, since the product of row and rows may be more than 64 bits.
    const uint64_t row = png_get_rowbytes(job.png, job.info);
    if (header.height > file.size() * kMostFromByte / row) leave(job, ORVANE_CODEC_DAMAGED);
    return header;
}

uint32_t pixelFormatOf(const Header& header) {
    using namespace pixel_format;
    const bool grey = (header.colour & PNG_COLOR_MASK_COLOR) == 0;
    const bool deep = header.depth == 16 && !grey;
    if (header.transparent) return deep ? k64bppArgb : k32bppArgb;
    if (header.colour == PNG_COLOR_TYPE_RGB) return deep ? k48bppRgb : k24bppRgb;
    if (header.depth == 1) return k1bppIndexed;
    if (grey) return k32bppArgb;
    if (header.depth == 4) return k4bppIndexed;
    return header.depth == 8 ? k8bppIndexed : k32bppArgb;
}

/// What every file is unpacked to: red, green, blue of 8 bits, and alpha if there is any.
void unpackSamples(Job& job, const Header& header, const OrvaneCanvas& canvas) {
    if (header.width != canvas.width || header.height != canvas.height) {
        leave(job, ORVANE_CODEC_UNSUPPORTED);
    }
    png_set_expand(job.png);
    png_set_strip_16(job.png);
    png_set_gray_to_rgb(job.png);
}

/// Ends the set-up; `bytes` is how large a pixel has to be then. Gives the number of passes.
int startRows(Job& job, const OrvaneCanvas& canvas, size_t bytes) {
    const int passes = png_set_interlace_handling(job.png);
    png_read_update_info(job.png, job.info);
    if (png_get_rowbytes(job.png, job.info) != size_t{canvas.width} * bytes) {
        leave(job, ORVANE_CODEC_UNSUPPORTED);
    }
    return passes;
}

/// Stores all rows in the canvas's own form, pass by pass where there are several. The fourth byte
/// of an image without alpha is `filler`.
void storeRows(Job& job, const Header& header, const OrvaneCanvas& canvas, uint8_t filler) {
    png_set_bgr(job.png);
    if (!header.transparent) png_set_filler(job.png, filler, PNG_FILLER_AFTER);
    const int passes = startRows(job, canvas, 4);
    for (int pass = 0; pass < passes; ++pass) {
        for (uint32_t y = 0; y < canvas.height; ++y)
            png_read_row(job.png, canvasRow(canvas, y), nullptr);
    }
}

void takeBuffer(Job& job, uint64_t size, const Limits& limits) {
    if (size > limits.surfaceBytes) leave(job, ORVANE_CODEC_OUT_OF_MEMORY);
    job.buffer = static_cast<uint8_t*>(std::malloc(size));
    if (job.buffer == nullptr) leave(job, ORVANE_CODEC_OUT_OF_MEMORY);
}

/// Rows that are complete when they come are turned round here on their way to the canvas: libpng
/// would go over each of them once more for every change.
void paintRows(Job& job, const Header& header, const OrvaneCanvas& canvas, const Limits& limits) {
    const size_t bytes = header.transparent ? 4 : 3;
    startRows(job, canvas, bytes);
    takeBuffer(job, canvas.width * uint64_t{bytes}, limits);
    for (uint32_t y = 0; y < canvas.height; ++y) {
        png_read_row(job.png, job.buffer, nullptr);
        if (header.transparent) {
            blendRow(canvasRow(canvas, y), job.buffer, canvas.width, AlphaKind::straight,
                     ChannelOrder::redFirst);
        } else {
            storeRow(canvasRow(canvas, y), job.buffer, canvas.width);
        }
    }
}

/// Rows that take several passes have to be complete before they are painted.
void paintPasses(Job& job, const Header& header, const OrvaneCanvas& canvas, const Limits& limits) {
    const size_t row = size_t{canvas.width} * 4;
    takeBuffer(job, uint64_t{row} * canvas.height, limits);
    const OrvaneCanvas beside{canvas.width, canvas.height, job.buffer, static_cast<ptrdiff_t>(row)};
    storeRows(job, header, beside, 0);
    for (uint32_t y = 0; y < canvas.height; ++y)
        blendRow(canvasRow(canvas, y), job.buffer + row * y, canvas.width, AlphaKind::straight);
}

void paint(Job& job, std::span<const uint8_t> file, const OrvaneCanvas& canvas,
           const Limits& limits) {
    const Header header = readHeader(job, file, limits);
    unpackSamples(job, header, canvas);
    if (!header.interlaced) paintRows(job, header, canvas, limits);
    else if (header.transparent) paintPasses(job, header, canvas, limits);
    else storeRows(job, header, canvas, 0);
}

/// Runs `step(job)`, which may leave by longjmp, and frees what it took.
template <class Step>
OrvaneCodecResult guarded(Step&& step) {
    Job job{};
    if (setjmp(job.escape) == 0) step(job);
    png_destroy_read_struct(&job.png, &job.info, nullptr);
    std::free(job.buffer);
    return job.failure;
}

}  // namespace

bool isPng(std::span<const uint8_t> start) {
    return start.size() >= kSignature && png_sig_cmp(start.data(), 0, kSignature) == 0;
}

OrvaneCodecResult examinePng(std::span<const uint8_t> file, OrvaneImageFacts& facts,
                             const Limits& limits) {
    if (!isPng(file)) return ORVANE_CODEC_NOT_RECOGNISED;
    return guarded([&](Job& job) {
        const Header header = readHeader(job, file, limits);
        facts = {header.width, header.height, ORVANE_IMAGE_PNG, pixelFormatOf(header)};
    });
}

OrvaneCodecResult paintPng(std::span<const uint8_t> file, const OrvaneCanvas& canvas,
                           const Limits& limits) {
    if (!isPng(file)) return ORVANE_CODEC_NOT_RECOGNISED;
    return guarded([&](Job& job) { paint(job, file, canvas, limits); });
}

OrvaneCodecResult unpackPng(std::span<const uint8_t> file, const OrvaneCanvas& canvas,
                            const Limits& limits) {
    if (!isPng(file)) return ORVANE_CODEC_NOT_RECOGNISED;
    return guarded([&](Job& job) {
        const Header header = readHeader(job, file, limits);
        unpackSamples(job, header, canvas);
        storeRows(job, header, canvas, 255);
    });
}

}  // namespace orvane::codecs
