#pragma once

#include "pictures/bytes.h"

namespace orvane::test {

/// A PCX file as its header fields and what follows them.
struct PcxFile {
    int width = 1;
    int height = 1;
    int planes = 1;
    int bytesPerLine = 1;
    Bytes body{};
    /// Whether the marker and 256 colours follow the body.
    bool palette = true;
    int xMin = 0;
    int yMin = 0;
    std::uint8_t manufacturer = 10;
    std::uint8_t version = 5;
    std::uint8_t encoding = 1;
    std::uint8_t bits = 8;
    int resolutionX = 300;
    int resolutionY = 300;
    int paletteKind = 1;

    Bytes bytes() const {
        Bytes file{manufacturer, version, encoding, bits};
        for (const int word : {xMin, yMin, xMin + width - 1, yMin + height - 1})
            addLittleEndian(file, word);
        addLittleEndian(file, resolutionX);
        addLittleEndian(file, resolutionY);
        file.resize(65, 0xEE);
        file.push_back(static_cast<std::uint8_t>(planes));
        addLittleEndian(file, bytesPerLine);
        addLittleEndian(file, paletteKind);
        file.resize(128, 0xEE);
        add(file, body);
        if (palette) {
            file.push_back(12);
            add(file, colors());
        }
        return file;
    }

    /// 256 colours as red, green and blue, no two alike.
    static Bytes colors() {
        Bytes all;
        for (int i = 0; i < 256; ++i) {
            all.push_back(static_cast<std::uint8_t>(i));
            all.push_back(static_cast<std::uint8_t>(255 - i));
            all.push_back(static_cast<std::uint8_t>(i * 7));
        }
        return all;
    }
};

/// The greatest byte that stands for itself.
inline constexpr std::uint8_t kMostLiteral = 0xBF;

/// A run of up to 63 of the same byte.
inline Bytes pcxRun(int length, std::uint8_t value) {
    return {static_cast<std::uint8_t>(0xC0 | length), value};
}

/// `count` bytes that stand for themselves, no two neighbours alike.
inline Bytes pcxLiterals(int count) {
    Bytes bytes;
    for (int i = 0; i < count; ++i)
        bytes.push_back(static_cast<std::uint8_t>(1 + i % kMostLiteral));
    return bytes;
}

/// A file of one plane whose lines are stored as they are.
inline PcxFile indexedPcx(int width, int height, int bytesPerLine) {
    return {.width = width,
            .height = height,
            .bytesPerLine = bytesPerLine,
            .body = pcxLiterals(bytesPerLine * height)};
}

/// A file of several planes whose lines are stored as they are.
inline PcxFile planarPcx(int width, int height, int bytesPerLine, int planes = 3) {
    return {.width = width,
            .height = height,
            .planes = planes,
            .bytesPerLine = bytesPerLine,
            .body = pcxLiterals(bytesPerLine * height * planes),
            .palette = false};
}

}  // namespace orvane::test
