#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>

/// The image data of Photoshop documents: colour planes one after the other, raw or PackBits.
namespace orvane::psd {

/// The header fields that say how the image data is stored. None is negative.
struct Header {
    std::int32_t channels = 0;
    std::int32_t height = 0;
    std::int32_t width = 0;
    bool packed = false;

    std::int64_t pixels() const { return std::int64_t{height} * width; }
};

/// The bytes that the image data has at the least: a file with fewer must fail, so that no memory
/// need be taken for it.
std::int64_t leastData(const Header& header);

/// The bytes from the start of raw image data that hold the colours; what follows is alpha.
std::int64_t rawColors(const Header& header);

/// The rows of one plane, from the top.
class PlaneRows {
public:
    /// A plane that the file doesn't have: zeros.
    explicit PlaneRows(std::int32_t width);
    /// A plane that begins at `data` and is known to lie there whole; up to `Planes::kSlack` bytes
    /// behind it are read, too.
    PlaneRows(const Header& header, const std::uint8_t* data);

    /// The next row; it stays where it is until the next call.
    const std::uint8_t* next();

private:
    void unpack();

    std::size_t width_;
    const std::uint8_t* data_ = nullptr;
    /// A row of zeros, or the unpacked pixels from `first_` to `last_`; none for a raw plane.
    std::unique_ptr<std::uint8_t[]> buffer_;
    std::size_t first_ = 0;
    std::size_t last_ = 0;
    std::size_t wanted_ = 0;
    std::int64_t packedPixels_ = 0;  ///< still to be unpacked
};

/// The colours of an image, row by row.
class Planes {
public:
    /// What is read behind the data.
    static constexpr std::int32_t kSlack = 64;

    /// Finds the planes in `size` bytes of image data, which stay the caller's: of raw data at
    /// least `rawColors`, of packed data everything that the file has. Raises 9 when a packed plane
    /// doesn't end inside, or runs on past its last pixel by more than can be borne.
    Planes(const Header& header, const std::uint8_t* data, std::size_t size);

    /// Stores the next row as pixels of 24 bits.
    void nextRow(std::uint8_t* target);

private:
    std::size_t width_;
    std::array<std::unique_ptr<PlaneRows>, 3> colors_;  ///< blue, green, red
};

}  // namespace orvane::psd
