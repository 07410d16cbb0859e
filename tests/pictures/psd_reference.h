#pragma once

#include "pictures/reference_image.h"

/// A second decoder of Photoshop documents, slow and literal: four bytes for each pixel in one
/// buffer, every access checked. The reader is compared with it.
namespace orvane::test {

namespace psd_reference {

using reference::CheckedBytes;
using reference::Failure;
using reference::File;
using reference::integer16;
using reference::integer32;

constexpr std::array<int, 4> kChannelOffset{2, 1, 0, 3};
constexpr std::array<std::uint8_t, 4> kChannelDefault{0, 0, 0, 255};

class Decoder {
public:
    explicit Decoder(std::span<const std::uint8_t> bytes) : file_(bytes) {}

    void decode(ReferenceImage& image) {
        if (!readHeader()) return;
        CheckedBytes planes(
            0,
            integer32(std::int64_t{integer32(std::int64_t{integer32(height_ * 4)} * width_)} + 2));
        readImageData(planes);
        image.width = width_;
        image.height = integer32(height_);
        const std::int32_t stride = reference::rowStride(width_, 24);
        const std::int32_t pad = stride - 3 * width_;
        CheckedBytes pixels(1, integer32(stride * height_));
        std::int64_t from = 0;
        std::int64_t to = 1;
        for (std::int64_t y = 0; y < height_; ++y) {
            for (std::int64_t x = 0; x < width_; ++x) {
                for (int k = 0; k < 3; ++k)
                    pixels[to + k] = planes[from + k];
                from += 4;
                to += 3;
            }
            to += pad;
        }
        image.pixels = pixels.take();
        image.success = true;
    }

private:
    std::int32_t shiftLeft(int value, int count) { return integer32(std::int64_t{value} << count); }
    int byte() {
        const int value = file_.byteAt(position_);
        position_ = integer32(std::int64_t{position_} + 1);
        return value;
    }
    std::int32_t readLong() {
        const int first = byte();
        const int second = byte();
        const int third = byte();
        return integer32(std::int64_t{shiftLeft(first, 24)} + shiftLeft(second, 16) +
                         shiftLeft(third, 8) + byte());
    }
    std::int16_t readWord() {
        const int first = byte();
        return integer16(shiftLeft(first, 8) + byte());
    }
    void skip(std::int32_t count) { position_ = integer32(std::int64_t{position_} + count); }

    bool readHeader() {
        if (readLong() != 0x38425053) return false;
        if (readWord() != 1) return false;
        skip(6);
        channels_ = readWord();
        if (channels_ < 0 || channels_ > 16) return false;
        height_ = readLong();
        width_ = readLong();
        if (readWord() != 8) return false;
        if (readWord() != 3) return false;
        for (int section = 0; section < 3; ++section) {
            const std::int32_t length = readLong();
            if (length != 0) skip(length);
        }
        compression_ = readWord();
        return compression_ <= 1;
    }

    void readImageData(CheckedBytes& planes) {
        CheckedBytes data(0, file_.length() - position_);
        for (std::int64_t i = 0; i <= data.upper(); ++i)
            data[i] = file_.byteAt(position_ + i);
        const std::int64_t n = integer32(width_ * height_);
        std::int64_t i = 0;
        if (compression_ != 0) i = integer32(std::int64_t{integer32(channels_ * height_)} * 2);
        for (int c = 0; c < 4; ++c) {
            const int d = kChannelOffset[static_cast<std::size_t>(c)];
            const bool missing = compression_ == 0 ? d > channels_ : !(d < channels_);
            if (missing) {
                for (std::int64_t p = 0; p < n; ++p)
                    planes[p * 4 + d] = kChannelDefault[static_cast<std::size_t>(d)];
            } else if (compression_ == 0) {
                for (std::int64_t p = 0; p < n; ++p)
                    planes[p * 4 + d] = data[i++];
            } else {
                decodePlane(planes, data, i, d, n);
            }
        }
    }

    static void decodePlane(CheckedBytes& planes, CheckedBytes& data, std::int64_t& i, int d,
                            std::int64_t n) {
        std::int64_t p = 0;
        std::int64_t count = 0;
        while (count < n) {
            const int length = data[i++];
            if (length < 128) {
                count += length + 1;
                for (int k = 0; k < length + 1; ++k)
                    planes[4 * p++ + d] = data[i++];
            } else if (length > 128) {
                count += 257 - length;
                const std::uint8_t value = data[i++];
                for (int k = 0; k < 257 - length; ++k)
                    planes[4 * p++ + d] = value;
            }
        }
    }

    File file_;
    std::int32_t position_ = 1;
    std::int16_t channels_ = 0;
    std::int64_t height_ = 0;
    std::int32_t width_ = 0;
    std::int16_t compression_ = 0;
};

}  // namespace psd_reference

/// What a file of these bytes has to decode to.
inline ReferenceImage referencePsd(std::span<const std::uint8_t> bytes) {
    return reference::run<psd_reference::Decoder>(bytes);
}

}  // namespace orvane::test
