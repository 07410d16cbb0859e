#pragma once

#include "pictures/reference_image.h"

#include <cmath>

/// A second Targa decoder, slow and literal: bytes one at a time from counted positions, the write
/// position as a running index, every store checked. The reader is compared with it.
namespace orvane::test {

namespace targa_reference {

using reference::Failure;
using reference::File;
using reference::integer16;
using reference::integer32;

inline std::int16_t word(File& file) {
    const std::int32_t low = file.byte();
    const std::int32_t value = file.byte() * 256 + low;
    return static_cast<std::int16_t>(value >= 32768 ? value - 65536 : value);
}

inline std::int64_t roundedHalfToEven(double value) {
    const double below = std::floor(value);
    const auto whole = static_cast<std::int64_t>(below);
    const double rest = value - below;
    if (rest > 0.5 || (rest >= 0.5 && whole % 2 != 0)) return whole + 1;
    return whole;
}

class Decoder {
public:
    explicit Decoder(std::span<const std::uint8_t> bytes) : file_(bytes) {}

    void decode(ReferenceImage& image) {
        readHeader();
        if (imageType_ != 2 && imageType_ != 10) return;
        // Sizes below 1 leave the pixels without a valid range.
        if (width_ < 1 || height_ < 1) throw Failure{};
        image.width = width_;
        image.height = height_;
        stride_ = integer32(std::int64_t{width_} * 3 + 3) & ~3;
        size_ = integer32(std::int64_t{height_} * stride_);
        pad_ = stride_ - integer16(width_ * 3);
        image.pixels.assign(static_cast<std::size_t>(size_), 0);
        pixels_ = image.pixels.data();
        skipColorMap();
        position_ = bottomUp_ ? std::int64_t{height_ - 1} * stride_ + 1 : 1;
        if (depth_ == 16 || depth_ == 24 || depth_ == 32) {
            if (imageType_ == 2) decodeRows();
            else decodePackets();
        }
        image.success = true;
    }

private:
    void readHeader() {
        file_.byte();  // length of the identification field
        colorMapType_ = file_.byte();
        imageType_ = file_.byte();
        word(file_);  // first colour map entry
        colorMapLow_ = file_.byte();
        colorMapHigh_ = file_.byte();
        colorMapEntry_ = file_.byte();
        word(file_);  // origin
        word(file_);
        width_ = word(file_);
        height_ = word(file_);
        depth_ = file_.byte();
        bottomUp_ = (file_.byte() & 32) == 0;
    }

    void skipColorMap() {
        if (colorMapType_ == 0) return;
        const double bytes = colorMapEntry_ / 8.0 * (colorMapHigh_ * 256 + colorMapLow_);
        file_.seek(file_.lastRead() + roundedHalfToEven(bytes));
    }

    void store(std::int64_t index, std::uint8_t value) {
        if (index < 1 || index > size_) throw Failure{};
        pixels_[index - 1] = value;
    }

    struct Pixel {
        std::uint8_t blue, green, red;
    };

    Pixel readPixel() {
        if (depth_ == 16) {
            const int first = file_.byte();
            const int value = file_.byte() * 256 + first;
            return {static_cast<std::uint8_t>((value & 0x1F) * 8),
                    static_cast<std::uint8_t>((value & 0x3E0) / 4),
                    static_cast<std::uint8_t>((value & 0x7C00) / 128)};
        }
        const std::uint8_t blue = file_.byte();
        const std::uint8_t green = file_.byte();
        const std::uint8_t red = file_.byte();
        if (depth_ == 32) file_.byte();
        return {blue, green, red};
    }

    void storePixel(const Pixel& pixel) {
        store(position_, pixel.blue);
        store(position_ + 1, pixel.green);
        store(position_ + 2, pixel.red);
        position_ += 3;
    }

    void decodeRows() {
        if (depth_ == 16) integer16(width_ * 2);
        if (depth_ == 32) integer16(integer16(width_ * 4) - 1);
        for (int row = 0; row < height_; ++row) {
            for (int column = 0; column < width_; ++column)
                storePixel(readPixel());
            position_ += pad_;
            if (bottomUp_) position_ -= (depth_ == 32 ? 3 : 2) * std::int64_t{stride_};
        }
    }

    void storeCounted(const Pixel& pixel) {
        storePixel(pixel);
        if (++column_ != width_) return;
        column_ = 0;
        position_ += pad_;
        if (bottomUp_) position_ -= 2 * std::int64_t{stride_};
    }

    bool goesOn() const {
        if (bottomUp_) return position_ >= 1;
        return position_ - 1 <= std::int64_t{height_} * stride_ - pad_;
    }

    void decodePackets() {
        do {
            const int header = file_.byte();
            const int count = header % 128 + 1;
            if (header >= 128) {
                const Pixel pixel = readPixel();
                for (int i = 0; i < count; ++i)
                    storeCounted(pixel);
            } else {
                for (int i = 0; i < count; ++i)
                    storeCounted(readPixel());
            }
        } while (goesOn());
    }

    File file_;
    std::uint8_t colorMapType_ = 0, imageType_ = 0, colorMapLow_ = 0, colorMapHigh_ = 0;
    std::uint8_t colorMapEntry_ = 0, depth_ = 0;
    std::int16_t width_ = 0, height_ = 0;
    bool bottomUp_ = false;
    std::int32_t stride_ = 0, size_ = 0, pad_ = 0;
    std::uint8_t* pixels_ = nullptr;
    std::int64_t position_ = 1;
    int column_ = 0;
};

}  // namespace targa_reference

/// What a file of these bytes has to decode to.
inline ReferenceImage referenceTarga(std::span<const std::uint8_t> bytes) {
    return reference::run<targa_reference::Decoder>(bytes);
}

}  // namespace orvane::test
