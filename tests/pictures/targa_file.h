#pragma once

#include "pictures/bytes.h"

#include <array>

namespace orvane::test {

/// The image types and depths that are read, and with them a depth that is not.
inline constexpr std::array<std::uint8_t, 2> kTargaTypes{2, 10};
inline constexpr std::array<std::uint8_t, 3> kTargaDepths{16, 24, 32};
inline constexpr std::array<std::uint8_t, 4> kDepthsAndNone{16, 24, 32, 8};

/// A Targa file as its header fields and what follows them.
struct TargaFile {
    static constexpr std::uint8_t kTopLeft = 0x20;
    static constexpr std::uint8_t kBottomLeft = 0;

    std::uint8_t type = 2;
    std::uint8_t depth = 24;
    std::uint8_t descriptor = kTopLeft;
    int width = 1;
    int height = 1;
    Bytes body{};
    std::uint8_t idLength = 0;
    std::uint8_t colorMapType = 0;
    int colorMapFirst = 0;
    int colorMapLength = 0;
    std::uint8_t colorMapEntrySize = 0;
    int originX = 0;
    int originY = 0;

    Bytes bytes() const {
        Bytes file{idLength, colorMapType, type};
        for (const int word : {colorMapFirst, colorMapLength})
            addLittleEndian(file, word);
        file.push_back(colorMapEntrySize);
        for (const int word : {originX, originY, width, height})
            addLittleEndian(file, word);
        file.push_back(depth);
        file.push_back(descriptor);
        file.insert(file.end(), body.begin(), body.end());
        return file;
    }
};

/// Run-length packets that hold `pixels` pixels of `bytesPerPixel` in raw packets of `packet`.
inline Bytes rawPackets(int pixels, int bytesPerPixel, int packet) {
    Bytes body;
    const Bytes data = countedBytes(pixels * bytesPerPixel);
    auto next = data.begin();
    while (pixels > 0) {
        const int count = pixels < packet ? pixels : packet;
        body.push_back(static_cast<std::uint8_t>(count - 1));
        body.insert(body.end(), next, next + count * bytesPerPixel);
        next += count * bytesPerPixel;
        pixels -= count;
    }
    return body;
}

}  // namespace orvane::test
