#include "platform/linux/codecs/rle.h"

#include "platform/linux/codecs/surface.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <vector>

namespace orvane::codecs {

namespace {

// Codes that follow a count of zero.
constexpr uint8_t kEndOfLine = 0;
constexpr uint8_t kEndOfBitmap = 1;
constexpr uint8_t kDelta = 2;

/// Works on a row of one byte a pixel: the surface's own for RLE8, a spare one for RLE4 that is
/// packed into the surface when its row is over. Rows only ever go up, so one is enough.
class RleUnpacker {
public:
    RleUnpacker(std::span<const uint8_t> data, OrvaneDecoded& out)
        : data_(data), out_(out), width_(static_cast<uint32_t>(out.width)),
          height_(static_cast<uint32_t>(out.height)), nibbles_(out.bitsPerPixel == 4),
          spare_(nibbles_ ? width_ + 1 : 0) {}

    void run() {
        while (y_ < height_ && data_.size() >= 2 && step()) {
        }
        if (y_ < height_) finishRow();
    }

private:
    // One code; false when the bitmap ends.
    bool step() {
        const uint8_t count = data_[0];
        const uint8_t value = data_[1];
        data_ = data_.subspan(2);
        if (count != 0) {
            putRun(count, value);
            return true;
        }
        switch (value) {
        case kEndOfLine:
            nextRow(1);
            return true;
        case kEndOfBitmap:
            return false;
        case kDelta:
            return jump();
        default:
            putLiterals(value);
            return true;
        }
    }

    bool jump() {
        if (data_.size() < 2) return false;
        const uint8_t right = data_[0];
        const uint8_t up = data_[1];
        data_ = data_.subspan(2);
        const uint32_t x = std::min(width_, x_ + right);
        if (up != 0) nextRow(up);
        x_ = x;
        return true;
    }

    void putRun(uint32_t count, uint8_t value) {
        const uint32_t length = std::min(count, width_ - x_);
        uint8_t* to = row() + x_;
        if (nibbles_) {
            const auto first = static_cast<uint8_t>(value >> 4);
            const auto second = static_cast<uint8_t>(value & 15);
            for (uint32_t i = 0; i < length; ++i)
                to[i] = i % 2 == 0 ? first : second;
        } else {
            std::memset(to, value, length);
        }
        x_ += length;
    }

    void putLiterals(uint32_t count) {
        const size_t bytes = nibbles_ ? (count + 1) / 2 : count;
        const size_t present = std::min(bytes, data_.size());
        const auto held = static_cast<uint32_t>(nibbles_ ? present * 2 : present);
        const uint32_t length = std::min({count, width_ - x_, held});
        uint8_t* to = row() + x_;
        if (nibbles_) {
            for (uint32_t i = 0; i < length; ++i)
                to[i] = static_cast<uint8_t>(i % 2 == 0 ? data_[i / 2] >> 4 : data_[i / 2] & 15);
        } else {
            std::copy_n(data_.data(), length, to);
        }
        x_ += length;
        // Literals are padded to 16 bits.
        data_ = data_.subspan(std::min(bytes + bytes % 2, data_.size()));
    }

    uint8_t* row() {
        touched_ = true;
        return nibbles_ ? spare_.data() : surfaceRow();
    }

    uint8_t* surfaceRow() { return pixelRow(out_, height_ - 1 - y_); }

    void nextRow(uint32_t rows) {
        finishRow();
        y_ = y_ + rows < height_ ? y_ + rows : height_;
        x_ = 0;
    }

    void finishRow() {
        if (nibbles_ && touched_) {
            uint8_t* to = surfaceRow();
            // The spare row has one pixel more than the picture for the last pair's sake.
            for (uint32_t x = 0; x < width_; x += 2)
                to[x / 2] = static_cast<uint8_t>(spare_[x] << 4 | spare_[x + 1]);
            std::fill(spare_.begin(), spare_.end(), uint8_t{0});
        }
        touched_ = false;
    }

    std::span<const uint8_t> data_;
    OrvaneDecoded& out_;
    uint32_t width_;
    uint32_t height_;
    bool nibbles_;
    std::vector<uint8_t> spare_;
    uint32_t x_ = 0;
    uint32_t y_ = 0;
    bool touched_ = false;
};

}  // namespace

void unpackRle(std::span<const uint8_t> data, OrvaneDecoded& out) {
    RleUnpacker(data, out).run();
}

}  // namespace orvane::codecs
