#include "platform/linux/codecs/decoders.h"

#include <algorithm>
#include <csetjmp>
#include <cstdio>

#include <jerror.h>
#include <jpeglib.h>

// JPEG through libjpeg. Grey, YCbCr, RGB, CMYK and YCCK all become 24 bits. Damage inside the
// compressed data is tolerated as libjpeg tolerates it (with a warning); a file that ends before
// its end marker is refused, as the loader on Windows refuses it.

namespace orvane::codecs {

namespace {

// What a picture's scans may cost. A scan of nothing but zeroes takes a few bytes whatever the
// picture's size, so some files are there to keep the reader busy. Encoders visit each block up to
// seven times, people who try out the format more often, in pictures of a usual size.
constexpr int kMostScans = 500;
constexpr uint64_t kVisitsOfBlock = 12;
constexpr uint64_t kVisitsOfAnyPicture = uint64_t{1} << 23;

/// Huffman coding spends a bit at least on each block, so the file's size bounds the picture's.
constexpr uint64_t kBlocksPerByte = 8;
// Arithmetic coding does not: a blank picture of any size takes no bytes at all. A blank one is
// believed up to 8192 x 8192 pixels, and any other one that is 8 times as dense as Huffman coding
// can be.
constexpr uint64_t kArithmeticBlocksPerByte = 8 * kBlocksPerByte;
constexpr uint64_t kArithmeticBlocks = uint64_t{1} << 20;

/// All state of one decoding. libjpeg leaves by longjmp, so nothing here needs a destructor.
struct Job {
    jpeg_decompress_struct info;
    jpeg_error_mgr errors;
    jpeg_source_mgr source;
    jpeg_progress_mgr progress;
    std::jmp_buf escape;
    OrvaneCodecResult failure;
    /// The scan that is being read, and how many blocks the scans behind it may visit.
    int scan;
    uint64_t visitsLeft;
};

[[noreturn]] void leave(j_common_ptr info, OrvaneCodecResult failure) {
    Job* job = static_cast<Job*>(info->client_data);
    job->failure = failure;
    std::longjmp(job->escape, 1);
}

[[noreturn]] void onError(j_common_ptr info) {
    switch (info->err->msg_code) {
    case JERR_OUT_OF_MEMORY:
    case JERR_NO_BACKING_STORE:
        leave(info, ORVANE_CODEC_OUT_OF_MEMORY);
    case JERR_ARITH_NOTIMPL:
    case JERR_BAD_PRECISION:
    case JERR_CONVERSION_NOTIMPL:
    case JERR_NOT_COMPILED:
    case JERR_SOF_UNSUPPORTED:
        leave(info, ORVANE_CODEC_UNSUPPORTED);
    default:
        leave(info, ORVANE_CODEC_DAMAGED);
    }
}

void onMessage(j_common_ptr info, int level) {
    if (level < 0) ++info->err->num_warnings;
}

void onOutput(j_common_ptr) {}

/// Called at least once in each scan, before its first row.
void onProgress(j_common_ptr common) {
    Job& job = *static_cast<Job*>(common->client_data);
    const jpeg_decompress_struct& info = job.info;
    if (info.input_scan_number == job.scan) return;
    job.scan = info.input_scan_number;
    const uint64_t visits = uint64_t{info.MCUs_per_row} * info.MCU_rows_in_scan *
                            static_cast<uint64_t>(info.blocks_in_MCU);
    if (job.scan > kMostScans || visits > job.visitsLeft) leave(common, ORVANE_CODEC_DAMAGED);
    job.visitsLeft -= visits;
}

void onSource(j_decompress_ptr) {}

boolean onSourceEnd(j_decompress_ptr info) {
    leave(reinterpret_cast<j_common_ptr>(info), ORVANE_CODEC_DAMAGED);
}

void onSkip(j_decompress_ptr info, long count) {
    if (count <= 0) return;
    const auto length = static_cast<size_t>(count);
    if (length > info->src->bytes_in_buffer) onSourceEnd(info);
    info->src->next_input_byte += length;
    info->src->bytes_in_buffer -= length;
}

void prepare(Job& job, std::span<const uint8_t> file, const Limits& limits) {
    jpeg_CreateDecompress(&job.info, JPEG_LIB_VERSION, sizeof job.info);
    job.info.mem->max_memory_to_use = static_cast<long>(limits.workBytes);
    job.source = {file.data(), file.size(), onSource, onSourceEnd, onSkip, jpeg_resync_to_restart,
                  onSource};
    job.info.src = &job.source;
    job.progress.progress_monitor = onProgress;
    job.info.progress = &job.progress;
}

/// Refuses what the file is too small for, and grants the scans their visits.
void checkSize(Job& job, size_t fileSize) {
    const jpeg_decompress_struct& info = job.info;
    const uint64_t most = info.arith_code ? kArithmeticBlocks + fileSize * kArithmeticBlocksPerByte
                                          : fileSize * kBlocksPerByte;
    job.visitsLeft = kVisitsOfAnyPicture;
    for (int index = 0; index < info.num_components; ++index) {
        const jpeg_component_info& component = info.comp_info[index];
        const uint64_t blocks = uint64_t{component.width_in_blocks} * component.height_in_blocks;
        if (blocks > most) leave(reinterpret_cast<j_common_ptr>(&job.info), ORVANE_CODEC_DAMAGED);
        job.visitsLeft += blocks * kVisitsOfBlock;
    }
}

uint8_t scaled(uint32_t colour, uint32_t black) {
    return static_cast<uint8_t>((colour * black + 127) / 255);
}

/// One row of inks (255 is none, as Adobe stores them) to blue, green, red.
void inksToColours(const uint8_t* inks, uint32_t width, uint8_t invert, uint8_t* to) {
    for (uint32_t x = 0; x < width; ++x, inks += 4, to += 3) {
        const uint32_t black = inks[3] ^ invert;
        to[0] = scaled(inks[2] ^ invert, black);
        to[1] = scaled(inks[1] ^ invert, black);
        to[2] = scaled(inks[0] ^ invert, black);
    }
}

/// Rows of four inks come one at a time beside the picture.
void readInks(jpeg_decompress_struct& info, OrvaneDecoded& out) {
    const auto common = reinterpret_cast<j_common_ptr>(&info);
    JSAMPARRAY row = info.mem->alloc_sarray(common, JPOOL_IMAGE, info.output_width * 4, 1);
    // Without Adobe's marker 0 is no ink.
    const uint8_t invert = info.saw_Adobe_marker ? uint8_t{0} : uint8_t{255};
    while (info.output_scanline < info.output_height) {
        uint8_t* const to = pixelRow(out, info.output_scanline);
        jpeg_read_scanlines(&info, row, 1);
        inksToColours(row[0], info.output_width, invert, to);
    }
}

/// libjpeg has several rows at once; what isn't asked for it has to keep.
void readColours(jpeg_decompress_struct& info, OrvaneDecoded& out) {
    constexpr uint32_t kRows = 16;
    JSAMPROW rows[kRows];
    while (info.output_scanline < info.output_height) {
        const uint32_t count = std::min(kRows, info.output_height - info.output_scanline);
        for (uint32_t i = 0; i < count; ++i)
            rows[i] = pixelRow(out, info.output_scanline + i);
        jpeg_read_scanlines(&info, rows, count);
    }
}

/// Every step that may leave by longjmp.
OrvaneCodecResult run(Job& job, std::span<const uint8_t> file, OrvaneDecoded& out,
                      const Limits& limits) {
    jpeg_decompress_struct& info = job.info;
    prepare(job, file, limits);
    jpeg_read_header(&info, TRUE);
    checkSize(job, file.size());
    const OrvaneCodecResult made = makeBitmap(out, info.image_width, info.image_height, 24, limits);
    if (made != ORVANE_CODEC_OK) return made;
    const bool inks = info.jpeg_color_space == JCS_CMYK || info.jpeg_color_space == JCS_YCCK;
    info.out_color_space = inks ? JCS_CMYK : JCS_EXT_BGR;
    jpeg_start_decompress(&info);
    if (inks) readInks(info, out);
    else readColours(info, out);
    jpeg_finish_decompress(&info);
    return ORVANE_CODEC_OK;
}

}  // namespace

bool isJpeg(std::span<const uint8_t> start) {
    return start.size() >= 2 && start[0] == 0xff && start[1] == 0xd8;
}

OrvaneCodecResult decodeJpeg(std::span<const uint8_t> file, OrvaneDecoded& out,
                             const Limits& limits) {
    if (!isJpeg(file)) return ORVANE_CODEC_NOT_RECOGNISED;
    Job job{};
    job.info.err = jpeg_std_error(&job.errors);
    job.errors.error_exit = onError;
    job.errors.emit_message = onMessage;
    job.errors.output_message = onOutput;
    job.info.client_data = &job;
    if (setjmp(job.escape) == 0) job.failure = run(job, file, out, limits);
    jpeg_destroy_decompress(&job.info);
    return job.failure;
}

}  // namespace orvane::codecs
