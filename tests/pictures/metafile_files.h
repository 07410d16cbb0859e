#pragma once

#include <cstdint>
#include <initializer_list>
#include <string>

namespace orvane::test {

/// Metafiles that tests build: their records, and the headers that go with them.

/// Little-endian numbers in a row.
class Words {
public:
    Words& u8(std::uint32_t value) {
        bytes_ += static_cast<char>(value);
        return *this;
    }
    Words& u16(std::int64_t value) {
        return u8(static_cast<std::uint8_t>(value)).u8(static_cast<std::uint8_t>(value >> 8));
    }
    Words& u32(std::int64_t value) { return u16(value & 0xFFFF).u16(value >> 16 & 0xFFFF); }
    Words& f32(float value);
    Words& add(const std::string& bytes) {
        bytes_ += bytes;
        return *this;
    }
    Words& padTo(std::size_t multiple) {
        while (bytes_.size() % multiple != 0)
            u8(0);
        return *this;
    }
    const std::string& bytes() const { return bytes_; }

private:
    std::string bytes_;
};

inline Words& Words::f32(float value) {
    std::uint32_t bits = 0;
    static_assert(sizeof(bits) == sizeof(value));
    __builtin_memcpy(&bits, &value, sizeof(bits));
    return u32(bits);
}

/// A device-independent bitmap of 24 bits, colours 0x00RRGGBB in rows from the top.
inline std::string dib24(int width, int height, std::initializer_list<std::uint32_t> pixels) {
    Words out;
    out.u32(40).u32(width).u32(height).u16(1).u16(24).u32(0).u32(0).u32(0).u32(0).u32(0).u32(0);
    for (int y = height - 1; y >= 0; --y) {
        for (int x = 0; x < width; ++x) {
            const std::uint32_t pixel = pixels.begin()[y * width + x];
            out.u8(pixel & 0xFF).u8(pixel >> 8 & 0xFF).u8(pixel >> 16);
        }
        out.padTo(4);
    }
    return out.bytes();
}

/// A Windows metafile whose units are the pixels of a picture so large, unless it sets a window of
/// its own.
class WmfFile {
public:
    WmfFile(int width, int height, bool setsWindow = true) : width_(width), height_(height) {
        if (!setsWindow) return;
        record(0x020B, {0, 0});
        record(0x020C, {height, width});
    }

    WmfFile& record(std::uint16_t function, std::initializer_list<int> words = {}) {
        Words parameters;
        for (const int word : words)
            parameters.u16(word);
        return record(function, parameters.bytes());
    }
    WmfFile& record(std::uint16_t function, const std::string& parameters) {
        const std::string padded = Words().add(parameters).padTo(2).bytes();
        records_.u32(static_cast<std::int64_t>(3 + padded.size() / 2)).u16(function).add(padded);
        return *this;
    }
    /// Bytes that make no record.
    WmfFile& raw(const std::string& bytes) {
        records_.add(bytes);
        return *this;
    }

    std::string bytes() const {
        Words header;
        header.u32(0x9AC6CDD7).u16(0).u16(0).u16(0).u16(width_).u16(height_).u16(96).u32(0);
        std::uint16_t sum = 0;
        for (std::size_t i = 0; i < 20; i += 2) {
            sum ^=
                static_cast<std::uint16_t>(static_cast<std::uint8_t>(header.bytes()[i]) |
                                           static_cast<std::uint8_t>(header.bytes()[i + 1]) << 8);
        }
        const std::string end = Words().u32(3).u16(0).bytes();
        const std::string all = records_.bytes() + end;
        header.u16(sum).u16(1).u16(9).u16(0x300);
        header.u32(static_cast<std::int64_t>(9 + all.size() / 2)).u16(16).u32(4096).u16(0);
        return header.bytes() + all;
    }

private:
    int width_;
    int height_;
    Words records_;
};

/// An enhanced metafile whose units are the pixels of a picture so large.
class EmfFile {
public:
    EmfFile(int width, int height) : width_(width), height_(height) {}

    EmfFile& record(std::uint32_t type, std::initializer_list<std::int64_t> numbers = {}) {
        Words parameters;
        for (const std::int64_t number : numbers)
            parameters.u32(number);
        return record(type, parameters.bytes());
    }
    EmfFile& record(std::uint32_t type, const std::string& parameters) {
        const std::string padded = Words().add(parameters).padTo(4).bytes();
        records_.u32(type).u32(static_cast<std::int64_t>(8 + padded.size())).add(padded);
        ++count_;
        return *this;
    }
    EmfFile& raw(const std::string& bytes) {
        records_.add(bytes);
        return *this;
    }

    std::string bytes() const {
        const std::string end = Words().u32(14).u32(20).u32(0).u32(0).u32(20).bytes();
        const auto size = static_cast<std::int64_t>(108 + records_.bytes().size() + end.size());
        Words header;
        header.u32(1).u32(108).u32(0).u32(0).u32(width_ - 1).u32(height_ - 1);
        // The frame in hundredths of a millimetre of a device with one pixel to each millimetre.
        header.u32(0).u32(0).u32(width_ * 100).u32(height_ * 100);
        header.u32(0x464D4520).u32(0x10000).u32(size).u32(count_ + 2).u16(32).u16(0);
        header.u32(0).u32(0).u32(0).u32(1000).u32(1000).u32(1000).u32(1000);
        header.u32(0).u32(0).u32(0);
        return header.padTo(4).bytes() + std::string(108 - header.bytes().size(), '\0') +
               records_.bytes() + end;
    }

private:
    int width_;
    int height_;
    std::uint32_t count_ = 0;
    Words records_;
};

}  // namespace orvane::test
