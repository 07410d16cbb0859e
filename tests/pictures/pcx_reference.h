#pragma once

#include "pictures/reference_image.h"

/// A second PCX decoder, slow and literal: the whole plane buffer, every access checked. The reader
/// is compared with it.
namespace orvane::test {

namespace pcx_reference {

using reference::CheckedBytes;
using reference::Failure;
using reference::File;
using reference::integer16;
using reference::integer32;

class Decoder {
public:
    explicit Decoder(std::span<const std::uint8_t> bytes) : file_(bytes) {}

    void decode(ReferenceImage& image) {
        if (!readHeader(image)) return;
        // A size below 1 fails when the pixels are allocated, also when both are.
        if (image.width < 1 || image.height < 1) throw Failure{};
        if (file_.length() < 129) throw Failure{};
        CheckedBytes body(0, file_.length() - 128);
        file_.seek(129);
        for (std::int64_t i = 0; i < file_.length() - 128; ++i)
            body[i] = file_.byte();
        if (image.bitsPerPixel == 8 && !readPalette(image)) return;
        if (image.bitsPerPixel == 8) decodeOnePlane(body, image);
        else decodeThreePlanes(body, image);
        image.success = true;
    }

private:
    std::int16_t word() {
        const int low = file_.byte();
        return integer16(file_.byte() * 256 + low);
    }

    bool readHeader(ReferenceImage& image) {
        const int manufacturer = file_.byte();
        for (int i = 0; i < 3; ++i)
            file_.byte();
        const std::int16_t xMin = word();
        const std::int16_t yMin = word();
        const std::int16_t xMax = word();
        const std::int16_t yMax = word();
        word();
        word();
        for (int i = 0; i < 49; ++i)
            file_.byte();
        planes_ = file_.byte();
        bytesPerLine_ = word();
        word();
        if (manufacturer != 10) return false;
        image.width = integer16(integer16(xMax - xMin) + 1);
        image.height = integer16(integer16(yMax - yMin) + 1);
        image.bitsPerPixel = planes_ * 8;
        totalBytes_ = integer16(planes_ * bytesPerLine_);
        return true;
    }

    bool readPalette(ReferenceImage& image) {
        file_.seek(file_.length() - 768);
        if (file_.byte() != 12) return false;
        auto& palette = image.palette.emplace();
        for (std::size_t entry = 0; entry < 256; ++entry) {
            palette[entry * 4 + 2] = file_.byte();
            palette[entry * 4 + 1] = file_.byte();
            palette[entry * 4] = file_.byte();
            palette[entry * 4 + 3] = 0;
        }
        return true;
    }

    void decodeOnePlane(CheckedBytes& body, ReferenceImage& image) {
        const std::int32_t stride = reference::rowStride(image.width, 8);
        CheckedBytes pixels(1, std::int64_t{image.height} * stride);
        std::int64_t i = 0;
        for (std::int64_t y = 0; y < image.height; ++y) {
            std::int64_t x = 0;
            while (x < totalBytes_) {
                const int b = body[i];
                if ((b & 0xC0) != 0xC0) {
                    pixels[stride * y + x + 1] = static_cast<std::uint8_t>(b);
                    ++x;
                    ++i;
                    continue;
                }
                std::int64_t length = b & 63;
                const std::uint8_t value = body[i + 1];
                if (length + x > totalBytes_) length = image.width - x;
                for (std::int64_t k = 0; k < length; ++k)
                    pixels[stride * y + x + k + 1] = value;
                x += length;
                i += 2;
            }
        }
        image.pixels = pixels.take();
    }

    void decodeThreePlanes(CheckedBytes& body, ReferenceImage& image) {
        // Files without a plane fail whatever they hold.
        if (planes_ == 0) throw Failure{};
        const std::int32_t stride = reference::rowStride(image.width, 24);
        const std::int32_t pad = stride - 3 * image.width;
        CheckedBytes pixels(1, std::int64_t{image.height} * stride);
        CheckedBytes planes(0, std::int64_t{image.height} * totalBytes_);
        std::int64_t stored = 0;
        for (std::int64_t i = 0; i <= body.upper();) {
            const int b = body[i];
            if ((b & 0xC0) != 0xC0) {
                planes[stored++] = static_cast<std::uint8_t>(b);
                ++i;
                continue;
            }
            const std::uint8_t value = body[i + 1];
            for (int k = 0; k < (b & 63); ++k)
                planes[stored++] = value;
            i += 2;
        }
        std::int64_t target = 1;
        for (std::int64_t y = 0; y < image.height; ++y) {
            for (std::int64_t x = 0; x < image.width; ++x) {
                const std::int64_t s = bytesPerLine_ * y * 3 + x;
                pixels[target] = planes[s + integer16(bytesPerLine_ * 2)];
                pixels[target + 1] = planes[s + bytesPerLine_];
                pixels[target + 2] = planes[s];
                target += 3;
            }
            target += pad;
        }
        image.pixels = pixels.take();
    }

    File file_;
    int planes_ = 0;
    std::int16_t bytesPerLine_ = 0;
    std::int16_t totalBytes_ = 0;
};

}  // namespace pcx_reference

/// What a file of these bytes has to decode to.
inline ReferenceImage referencePcx(std::span<const std::uint8_t> bytes) {
    return reference::run<pcx_reference::Decoder>(bytes);
}

}  // namespace orvane::test
