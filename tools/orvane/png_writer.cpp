#include "png_writer.h"

#include "system.h"

#include <cstdlib>
#include <initializer_list>
#include <string_view>

#include <zlib.h>

namespace orvane::tool {

namespace {

using Bytes = std::vector<std::uint8_t>;

void append(Bytes& out, std::uint32_t number) {
    for (int shift = 24; shift >= 0; shift -= 8)
        out.push_back(static_cast<std::uint8_t>(number >> shift));
}

void addChunk(Bytes& out, std::string_view type, const Bytes& content) {
    append(out, static_cast<std::uint32_t>(content.size()));
    const std::size_t start = out.size();
    out.insert(out.end(), type.begin(), type.end());
    out.insert(out.end(), content.begin(), content.end());
    append(out, static_cast<std::uint32_t>(
                    crc32(0, out.data() + start, static_cast<uInt>(out.size() - start))));
}

Bytes compressed(const Bytes& bytes) {
    uLongf size = compressBound(static_cast<uLong>(bytes.size()));
    Bytes out(size);
    if (compress2(out.data(), &size, bytes.data(), static_cast<uLong>(bytes.size()), 6) != Z_OK) {
        throw Failure("the picture can't be compressed");
    }
    out.resize(size);
    return out;
}

std::uint8_t paeth(int left, int above, int corner) {
    const int guess = left + above - corner;
    const int toLeft = std::abs(guess - left);
    const int toAbove = std::abs(guess - above);
    const int toCorner = std::abs(guess - corner);
    if (toLeft <= toAbove && toLeft <= toCorner) return static_cast<std::uint8_t>(left);
    return static_cast<std::uint8_t>(toAbove <= toCorner ? above : corner);
}

/// Rows as the differences that the format's filter 4 makes: small numbers where colours change
/// slowly.
Bytes filtered(const RgbImage& image) {
    constexpr std::uint8_t kPaeth = 4;
    const std::size_t row = std::size_t{image.width} * 3;
    Bytes out;
    out.reserve((row + 1) * image.height);
    Bytes above(row);
    Bytes current(row);
    for (std::uint32_t y = 0; y < image.height; ++y) {
        for (std::uint32_t x = 0; x < image.width; ++x) {
            const Rgb& pixel = image.at(x, y);
            std::uint8_t* to = current.data() + std::size_t{x} * 3;
            to[0] = pixel.red;
            to[1] = pixel.green;
            to[2] = pixel.blue;
        }
        out.push_back(kPaeth);
        for (std::size_t i = 0; i < row; ++i) {
            const int left = i < 3 ? 0 : current[i - 3];
            const int corner = i < 3 ? 0 : above[i - 3];
            out.push_back(static_cast<std::uint8_t>(current[i] - paeth(left, above[i], corner)));
        }
        std::swap(above, current);
    }
    return out;
}

}  // namespace

std::vector<std::uint8_t> pngOf(const RgbImage& image) {
    Bytes out = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    Bytes header;
    append(header, image.width);
    append(header, image.height);
    // 8 bits, true colour, and the only compression, filters and order of rows that is used here.
    for (const std::uint8_t value : std::initializer_list<std::uint8_t>{8, 2, 0, 0, 0})
        header.push_back(value);
    addChunk(out, "IHDR", header);
    addChunk(out, "IDAT", compressed(filtered(image)));
    addChunk(out, "IEND", {});
    return out;
}

}  // namespace orvane::tool
