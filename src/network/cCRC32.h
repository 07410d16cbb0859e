#pragma once

#include "frame/values/array.h"

#include <cstdint>
#include <span>

namespace orvane {

/// The CRC-32 of RFC 1952: reflected polynomial 0xEDB88320, start value and result complemented.
class cCRC32 final {
public:
    /// The CRC of all elements, from the lower to the upper bound. Raises 9 for an array that is
    /// unallocated or has several dimensions.
    std::int32_t GetByteArrayCrc32(const Array<std::uint8_t>& bytes) const;
};

/// A CRC-32 goes on: `crc` is that of the bytes before (0 for none), the result that of both parts
/// together.
std::uint32_t crc32(std::uint32_t crc, std::span<const std::uint8_t> bytes);

/// A CRC-32 goes on over `count` zero bytes. Takes the same short time for any count.
std::uint32_t crc32OfZeros(std::uint32_t crc, std::uint64_t count);

}  // namespace orvane
