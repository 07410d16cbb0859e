#include "icon_image.h"

#include "bmp_to_ppm.h"
#include "system.h"

#include <algorithm>
#include <optional>
#include <vector>

namespace orvane::tool {

namespace {

using Bytes = std::span<const std::uint8_t>;

constexpr std::size_t kDirectory = 6;
constexpr std::size_t kEntry = 16;
constexpr std::size_t kFileHeader = 14;
constexpr std::size_t kInfoHeader = 40;
/// More than any icon has.
constexpr std::uint32_t kMostSide = 4096;

/// A number at a place of which is known that it is there.
std::uint32_t number(Bytes bytes, std::size_t at, std::size_t size) {
    std::uint32_t value = 0;
    for (std::size_t i = 0; i < size; ++i)
        value |= std::uint32_t{bytes[at + i]} << (8 * i);
    return value;
}

void put32(std::vector<std::uint8_t>& bytes, std::size_t at, std::size_t value) {
    for (std::size_t i = 0; i < 4; ++i)
        bytes[at + i] = static_cast<std::uint8_t>(value >> (8 * i));
}

/// An image inside a file: header, colour table, rows of colours and of the mask, from the bottom.
struct Image {
    Bytes dib;
    std::uint32_t width = 0;
    std::uint32_t height = 0;
    std::uint32_t bits = 0;

    std::size_t stride() const { return (std::size_t{width} * bits + 31) / 32 * 4; }
    std::size_t maskStride() const { return (std::size_t{width} + 31) / 32 * 4; }
    std::size_t colours() const {
        const std::size_t told = number(dib, 32, 4);
        return told == 0 && bits <= 8 ? std::size_t{1} << bits : told;
    }
    std::size_t rows() const { return kInfoHeader + 4 * colours(); }
    std::size_t mask() const { return rows() + stride() * height; }
};

/// The image that an entry names, if it is one that is read here.
std::optional<Image> imageOf(Bytes icon, std::size_t entry) {
    const std::size_t size = number(icon, entry + 8, 4);
    const std::size_t offset = number(icon, entry + 12, 4);
    if (offset > icon.size() || size > icon.size() - offset || size < kInfoHeader) return {};
    Image image{icon.subspan(offset, size)};
    const bool plain = number(image.dib, 0, 4) == kInfoHeader && number(image.dib, 16, 4) == 0;
    image.width = number(image.dib, 4, 4);
    image.height = number(image.dib, 8, 4) / 2;
    image.bits = number(image.dib, 14, 2);
    if (!plain || image.width > kMostSide || image.height > kMostSide || image.bits > 32) return {};
    if (image.width == 0 || image.height == 0 || image.colours() > 256) return {};
    return image.dib.size() >= image.mask() ? std::optional(image) : std::nullopt;
}

/// The colours alone, as the BMP file that they would be by themselves.
RgbImage coloursOf(const Image& image) {
    std::vector<std::uint8_t> bmp(kFileHeader);
    bmp[0] = 'B';
    bmp[1] = 'M';
    const Bytes colours = image.dib.first(image.mask());
    bmp.insert(bmp.end(), colours.begin(), colours.end());
    put32(bmp, 10, kFileHeader + image.rows());
    put32(bmp, kFileHeader + 8, image.height);
    return rgbFromBmp(bmp);
}

/// How much of the ground a pixel covers, up to 255.
class Cover {
public:
    explicit Cover(const Image& image)
        : image_(image),
          masked_(image.dib.size() >= image.mask() + image.maskStride() * image.height) {
        for (std::size_t at = image.rows() + 3; image.bits == 32 && at < image.mask(); at += 4)
            alpha_ = alpha_ || image.dib[at] != 0;
    }

    std::uint32_t at(std::uint32_t x, std::uint32_t y) const {
        const std::size_t row = image_.height - 1 - y;
        if (alpha_) return image_.dib[image_.rows() + row * image_.stride() + x * 4 + 3];
        if (!masked_) return 255;
        const std::uint8_t mask = image_.dib[image_.mask() + row * image_.maskStride() + x / 8];
        return (mask & 0x80 >> x % 8) != 0 ? 0 : 255;
    }

private:
    const Image& image_;
    bool masked_ = false;
    bool alpha_ = false;
};

std::uint8_t mixed(std::uint8_t top, std::uint8_t ground, std::uint32_t cover) {
    return static_cast<std::uint8_t>((top * cover + ground * (255 - cover) + 127) / 255);
}

}  // namespace

RgbImage rgbFromIcon(std::span<const std::uint8_t> icon, Rgb ground) {
    std::optional<Image> best;
    const std::size_t count = icon.size() < kDirectory ? 0 : number(icon, 4, 2);
    for (std::size_t i = 0; i < count && kDirectory + (i + 1) * kEntry <= icon.size(); ++i) {
        const std::optional<Image> image = imageOf(icon, kDirectory + i * kEntry);
        if (image && (!best || image->width * image->height > best->width * best->height)) {
            best = image;
        }
    }
    if (!best) throw Failure("the icon has no image that can be shown");
    RgbImage pixels = coloursOf(*best);
    const Cover cover(*best);
    for (std::uint32_t y = 0; y < pixels.height; ++y) {
        for (std::uint32_t x = 0; x < pixels.width; ++x) {
            Rgb& pixel = pixels.at(x, y);
            const std::uint32_t part = cover.at(x, y);
            pixel = {mixed(pixel.red, ground.red, part), mixed(pixel.green, ground.green, part),
                     mixed(pixel.blue, ground.blue, part)};
        }
    }
    return pixels;
}

}  // namespace orvane::tool
