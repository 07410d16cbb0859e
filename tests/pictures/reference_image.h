#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <optional>
#include <span>
#include <vector>

/// What the slow and literal decoders of the tests have in common: files, arrays and arithmetic
/// that check every step. The readers are compared with those decoders.
namespace orvane::test {

struct ReferenceImage {
    bool success = false;
    /// Too large for a decoder of this kind: nothing is known about the outcome.
    bool unknown = false;
    std::int32_t width = 0;
    std::int32_t height = 0;
    std::int32_t bitsPerPixel = 24;
    /// Blue, green, red and 0 of 256 colours.
    std::optional<std::array<std::uint8_t, 1024>> palette;
    std::vector<std::uint8_t> pixels;  ///< rows from the top, padded to 4 bytes
};

namespace reference {

/// What stands for a run-time error.
struct Failure {};

/// An array that would take too long to fill.
struct TooLarge {};
/// How large arrays get. A fuzzer, which has less time for an input, sets less.
inline std::int64_t mostBytes = 1 << 24;

inline std::int16_t integer16(std::int64_t value) {
    if (value < INT16_MIN || value > INT16_MAX) throw Failure{};
    return static_cast<std::int16_t>(value);
}

inline std::int32_t integer32(std::int64_t value) {
    if (value < INT32_MIN || value > INT32_MAX) throw Failure{};
    return static_cast<std::int32_t>(value);
}

/// Bytes with indices from `lower` to `upper`, zero at first.
class CheckedBytes {
public:
    CheckedBytes(std::int32_t lower, std::int64_t upper) : lower_(lower) {
        if (integer32(upper) < lower) throw Failure{};
        if (upper - lower >= mostBytes) throw TooLarge{};
        bytes_.resize(static_cast<std::size_t>(upper - lower + 1));
    }

    std::uint8_t& operator[](std::int64_t index) {
        if (index < lower_ || index - lower_ >= static_cast<std::int64_t>(bytes_.size())) {
            throw Failure{};
        }
        return bytes_[static_cast<std::size_t>(index - lower_)];
    }
    std::int64_t upper() const { return lower_ + static_cast<std::int64_t>(bytes_.size()) - 1; }
    std::vector<std::uint8_t> take() { return std::move(bytes_); }

private:
    std::int32_t lower_;
    std::vector<std::uint8_t> bytes_;
};

/// A file with positions from 1; reads past its end give zeros.
class File {
public:
    explicit File(std::span<const std::uint8_t> bytes) : bytes_(bytes) {}

    std::int64_t length() const { return static_cast<std::int64_t>(bytes_.size()); }
    std::uint8_t byteAt(std::int64_t position) const {
        if (position < 1) throw Failure{};
        return position <= length() ? bytes_[static_cast<std::size_t>(position - 1)]
                                    : std::uint8_t{0};
    }
    std::uint8_t byte() { return byteAt(position_++); }
    std::int64_t lastRead() const { return position_ - 1; }
    void seek(std::int64_t position) { position_ = position; }

private:
    std::span<const std::uint8_t> bytes_;
    std::int64_t position_ = 1;
};

/// Runs a decoder to its end or its failure.
template <class Decoder>
ReferenceImage run(std::span<const std::uint8_t> bytes) {
    ReferenceImage image;
    try {
        Decoder(bytes).decode(image);
    } catch (const Failure&) {
        image.success = false;
    } catch (const TooLarge&) {
        image.unknown = true;
    }
    return image;
}

/// Bytes in a row of 8 or 24 bits.
inline std::int32_t rowStride(std::int32_t width, int bits) {
    if (bits == 8) return integer32(std::int64_t{width} + 3) & ~3;
    return integer32(std::int64_t{width} * 3 + 3) & ~3;
}

}  // namespace reference
}  // namespace orvane::test
