#pragma once

#include "pictures/bytes.h"

#include <algorithm>

namespace orvane::test {

/// A Photoshop document as its header fields, its sections and its image data.
struct PsdFile {
    int channels = 3;
    std::int64_t height = 1;
    std::int64_t width = 1;
    int compression = 1;
    Bytes data{};
    int depth = 8;
    int mode = 3;
    int version = 1;
    Bytes colorModeData{};
    Bytes resources{};
    Bytes layers{};
    std::int64_t signature = 0x38425053;

    /// The file up to the image data.
    Bytes head() const {
        Bytes file;
        addBigEndian(file, signature, 4);
        addBigEndian(file, version, 2);
        file.resize(12, 0xEE);  // reserved
        addBigEndian(file, channels, 2);
        addBigEndian(file, height, 4);
        addBigEndian(file, width, 4);
        addBigEndian(file, depth, 2);
        addBigEndian(file, mode, 2);
        for (const Bytes& section : {colorModeData, resources, layers}) {
            addBigEndian(file, static_cast<std::int64_t>(section.size()), 4);
            add(file, section);
        }
        addBigEndian(file, compression, 2);
        return file;
    }
    Bytes bytes() const {
        Bytes file = head();
        add(file, data);
        return file;
    }
};

/// The place of the first section's length, counted from 0.
inline constexpr std::size_t kPsdSections = 26;

/// Packets of PackBits: pixels as they are (128 at most), and one pixel repeated (2 to 128 times).
inline Bytes literalPacket(const Bytes& pixels) {
    Bytes packet{static_cast<std::uint8_t>(pixels.size() - 1)};
    add(packet, pixels);
    return packet;
}
inline Bytes runPacket(int count, std::uint8_t pixel) {
    return {static_cast<std::uint8_t>(257 - count), pixel};
}

/// The table of row lengths, with numbers that would be wrong.
inline Bytes rowLengths(std::int64_t rows) {
    return Bytes(static_cast<std::size_t>(rows * 2), 0xEE);
}

/// PackBits data: the table of row lengths and these planes.
inline Bytes packedPlanes(int channels, std::int64_t height, const std::vector<Bytes>& planes) {
    Bytes data = rowLengths(channels * height);
    for (const Bytes& plane : planes)
        add(data, plane);
    return data;
}

/// Pixels in literal packets of up to `longest`.
inline Bytes literalPackets(const Bytes& pixels, std::size_t longest) {
    Bytes packets;
    for (std::size_t at = 0; at < pixels.size(); at += longest) {
        const auto first = pixels.begin() + static_cast<std::ptrdiff_t>(at);
        const auto count = std::min(longest, pixels.size() - at);
        add(packets, literalPacket(Bytes(first, first + static_cast<std::ptrdiff_t>(count))));
    }
    return packets;
}

}  // namespace orvane::test
