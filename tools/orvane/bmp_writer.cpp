#include "bmp_writer.h"

#include <cstddef>

namespace orvane::tool {

namespace {

constexpr std::uint32_t kHeaders = 54;
constexpr std::uint32_t kInfoHeader = 40;

void put16(std::vector<std::uint8_t>& bytes, std::uint32_t number) {
    bytes.push_back(static_cast<std::uint8_t>(number));
    bytes.push_back(static_cast<std::uint8_t>(number >> 8));
}

void put32(std::vector<std::uint8_t>& bytes, std::uint32_t number) {
    put16(bytes, number);
    put16(bytes, number >> 16);
}

/// Both headers; what isn't written here is nothing: no compression, no resolution, no palette.
std::vector<std::uint8_t> headers(const RgbImage& image, std::uint32_t pixelBytes) {
    std::vector<std::uint8_t> bytes = {'B', 'M'};
    bytes.reserve(std::size_t{kHeaders} + pixelBytes);
    put32(bytes, kHeaders + pixelBytes);
    put32(bytes, 0);
    put32(bytes, kHeaders);
    put32(bytes, kInfoHeader);
    put32(bytes, image.width);
    put32(bytes, image.height);
    put16(bytes, 1);
    put16(bytes, 24);
    put32(bytes, 0);
    put32(bytes, pixelBytes);
    bytes.resize(kHeaders);
    return bytes;
}

}  // namespace

std::vector<std::uint8_t> bmpFromRgb(const RgbImage& image) {
    const std::size_t padding = image.width % 4;
    const std::size_t stride = std::size_t{image.width} * 3 + padding;
    std::vector<std::uint8_t> bmp =
        headers(image, static_cast<std::uint32_t>(stride * image.height));
    for (std::uint32_t y = image.height; y-- > 0;) {
        for (std::uint32_t x = 0; x < image.width; ++x) {
            const Rgb& pixel = image.at(x, y);
            bmp.push_back(pixel.blue);
            bmp.push_back(pixel.green);
            bmp.push_back(pixel.red);
        }
        bmp.resize(bmp.size() + padding);
    }
    return bmp;
}

}  // namespace orvane::tool
