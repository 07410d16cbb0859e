#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <string_view>
#include <vector>

namespace orvane::test {

/// A PNG file, built field by field. The pixels are stored in blocks without compression, so that
/// nothing but this header is needed for it.
struct PngFile {
    using Bytes = std::vector<std::uint8_t>;

    std::uint32_t width = 1;
    std::uint32_t height = 1;
    int depth = 8;
    int colour = 2;  ///< 0 grey, 2 true colour, 3 palette, 4 grey with alpha, 6 true colour with it
    bool interlaced = false;
    Bytes palette;       ///< red, green, blue of each entry
    Bytes transparency;  ///< the content of tRNS
    Bytes extra;         ///< whole chunks to stand before the pixels
    /// The value of a channel at a place; what has more bits than `depth` is cut.
    std::function<int(std::uint32_t x, std::uint32_t y, int channel)> sample =
        [](std::uint32_t, std::uint32_t, int) { return 0; };

    static Bytes chunk(std::string_view type, const Bytes& content) {
        Bytes out;
        number(out, static_cast<std::uint32_t>(content.size()));
        Bytes named(type.begin(), type.end());
        named.insert(named.end(), content.begin(), content.end());
        out.insert(out.end(), named.begin(), named.end());
        number(out, checksum(named));
        return out;
    }

    Bytes bytes() const {
        Bytes out = {0x89, 'P', 'N', 'G', 13, 10, 26, 10};
        Bytes header;
        number(header, width);
        number(header, height);
        for (const int value : {depth, colour, 0, 0, interlaced ? 1 : 0})
            header.push_back(static_cast<std::uint8_t>(value));
        append(out, chunk("IHDR", header));
        append(out, extra);
        if (!palette.empty()) append(out, chunk("PLTE", palette));
        if (!transparency.empty()) append(out, chunk("tRNS", transparency));
        append(out, chunk("IDAT", stored(rows())));
        append(out, chunk("IEND", {}));
        return out;
    }

private:
    static void number(Bytes& out, std::uint32_t value) {
        for (int shift = 24; shift >= 0; shift -= 8)
            out.push_back(static_cast<std::uint8_t>(value >> shift));
    }
    static void append(Bytes& out, const Bytes& more) {
        out.insert(out.end(), more.begin(), more.end());
    }

    static std::uint32_t checksum(const Bytes& bytes) {
        std::uint32_t sum = 0xFFFFFFFF;
        for (const std::uint8_t byte : bytes) {
            sum ^= byte;
            for (int bit = 0; bit < 8; ++bit)
                sum = sum >> 1 ^ ((sum & 1) != 0 ? 0xEDB88320 : 0);
        }
        return ~sum;
    }

    /// The zlib form: a header, blocks of up to 65535 bytes as they are, and a sum.
    static Bytes stored(const Bytes& bytes) {
        Bytes out = {0x78, 0x01};
        std::uint32_t a = 1;
        std::uint32_t b = 0;
        std::size_t at = 0;
        do {
            const std::size_t count = bytes.size() - at < 65535 ? bytes.size() - at : 65535;
            out.push_back(at + count == bytes.size() ? 1 : 0);
            for (const std::size_t value : {count, ~count}) {
                out.push_back(static_cast<std::uint8_t>(value));
                out.push_back(static_cast<std::uint8_t>(value >> 8));
            }
            for (std::size_t end = at + count; at < end; ++at) {
                out.push_back(bytes[at]);
                a = (a + bytes[at]) % 65521;
                b = (b + a) % 65521;
            }
        } while (at < bytes.size());
        number(out, b << 16 | a);
        return out;
    }

    int channels() const {
        constexpr std::array kChannels = {1, 0, 3, 1, 2, 0, 4};
        return kChannels[static_cast<std::size_t>(colour)];
    }

    /// The rows of one pass: every `stepX`th pixel from `x` on in every `stepY`th row from `y` on.
    void addPass(Bytes& out, std::uint32_t x0, std::uint32_t y0, std::uint32_t stepX,
                 std::uint32_t stepY) const {
        if (x0 >= width) return;
        for (std::uint32_t y = y0; y < height; y += stepY) {
            out.push_back(0);
            std::uint32_t held = 0;
            int bits = 0;
            const auto put = [&](std::uint32_t value, int count) {
                held = held << count | (value & ((1u << count) - 1));
                for (bits += count; bits >= 8; bits -= 8)
                    out.push_back(static_cast<std::uint8_t>(held >> (bits - 8)));
            };
            for (std::uint32_t x = x0; x < width; x += stepX) {
                for (int channel = 0; channel < channels(); ++channel)
                    put(static_cast<std::uint32_t>(sample(x, y, channel)), depth);
            }
            if (bits > 0) put(0, 8 - bits);
        }
    }

    Bytes rows() const {
        Bytes out;
        if (!interlaced) {
            addPass(out, 0, 0, 1, 1);
            return out;
        }
        addPass(out, 0, 0, 8, 8);
        addPass(out, 4, 0, 8, 8);
        addPass(out, 0, 4, 4, 8);
        addPass(out, 2, 0, 4, 4);
        addPass(out, 0, 2, 2, 4);
        addPass(out, 1, 0, 2, 2);
        addPass(out, 0, 1, 1, 2);
        return out;
    }
};

}  // namespace orvane::test
