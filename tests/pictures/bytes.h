#pragma once

#include <cstdint>
#include <vector>

/// What the makers of picture files put together.
namespace orvane::test {

using Bytes = std::vector<std::uint8_t>;

/// Adds the low 16 bits of a number, the lower byte first.
inline void addLittleEndian(Bytes& bytes, int word) {
    bytes.push_back(static_cast<std::uint8_t>(word & 0xFF));
    bytes.push_back(static_cast<std::uint8_t>((word >> 8) & 0xFF));
}

/// Adds the low `size` bytes of a number, the highest first.
inline void addBigEndian(Bytes& bytes, std::int64_t value, int size) {
    for (int shift = (size - 1) * 8; shift >= 0; shift -= 8)
        bytes.push_back(static_cast<std::uint8_t>((value >> shift) & 0xFF));
}

/// Adds other bytes.
inline void add(Bytes& bytes, const Bytes& more) {
    bytes.insert(bytes.end(), more.begin(), more.end());
}

/// `count` bytes of which no two neighbours are alike and no pixel is black.
inline Bytes countedBytes(int count) {
    Bytes bytes;
    for (int i = 0; i < count; ++i)
        bytes.push_back(static_cast<std::uint8_t>(1 + i % 251));
    return bytes;
}

}  // namespace orvane::test
