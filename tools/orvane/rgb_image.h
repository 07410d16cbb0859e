#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

namespace orvane::tool {

/// A colour of 8 bits a channel.
struct Rgb {
    std::uint8_t red = 0;
    std::uint8_t green = 0;
    std::uint8_t blue = 0;

    friend bool operator==(const Rgb&, const Rgb&) = default;
};

/// Pixels in memory, rows from the top without padding.
struct RgbImage {
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::vector<Rgb> pixels;

    RgbImage() = default;
    RgbImage(std::uint32_t columns, std::uint32_t rows, Rgb ground = {})
        : width(columns), height(rows), pixels(std::size_t{columns} * rows, ground) {}

    Rgb& at(std::uint32_t x, std::uint32_t y) { return pixels[std::size_t{y} * width + x]; }
    const Rgb& at(std::uint32_t x, std::uint32_t y) const {
        return pixels[std::size_t{y} * width + x];
    }

    /// Fills a rectangle, as far as it lies inside.
    void fill(std::uint32_t x, std::uint32_t y, std::uint32_t columns, std::uint32_t rows,
              Rgb colour);
};

/// The image scaled to another size, down by the mean of what falls on a pixel, in linear light, so
/// that fine patterns keep their brightness; up by repeating pixels.
RgbImage scaled(const RgbImage& image, std::uint32_t width, std::uint32_t height);

}  // namespace orvane::tool
