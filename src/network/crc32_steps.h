#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>

/// The ways of carrying a CRC-32 over bytes, all to the same result. Here a CRC is the register
/// itself: the complement of what `crc32` takes and gives.
namespace orvane::crc {

/// The polynomial, reflected: the bit of x^31 is the lowest one.
inline constexpr std::uint32_t kPolynomial = 0xEDB88320;

/// The product of two polynomials modulo the CRC's, all of them reflected.
constexpr std::uint32_t multiply(std::uint32_t left, std::uint32_t right) {
    std::uint32_t product = 0;
    for (std::uint32_t bit = 0x80000000; bit != 0; bit >>= 1) {
        if ((left & bit) != 0) product ^= right;
        right = (right & 1) != 0 ? right >> 1 ^ kPolynomial : right >> 1;
    }
    return product;
}

/// x to the power `exponent`, modulo the CRC's polynomial, reflected.
constexpr std::uint32_t powerOfX(std::uint64_t exponent) {
    std::uint32_t power = 0x80000000;
    for (std::uint32_t square = 0x40000000; exponent != 0; exponent >>= 1) {
        if ((exponent & 1) != 0) power = multiply(power, square);
        square = multiply(square, square);
    }
    return power;
}

/// By the table of 256 entries, a byte at a time.
std::uint32_t byTable(std::uint32_t state, std::span<const std::uint8_t> bytes);

/// Sixteen bytes at a time, by sixteen tables.
std::uint32_t bySlices(std::uint32_t state, std::span<const std::uint8_t> bytes);

/// True when the processor can carry out `byFolding`.
bool canFold();

/// By carry-less multiplication, 64 bytes at a time. For processors that have it only.
std::uint32_t byFolding(std::uint32_t state, std::span<const std::uint8_t> bytes);

}  // namespace orvane::crc
