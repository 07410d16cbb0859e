#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace orvane::codecs {

/// Little-endian numbers at given places of a byte range.
///
/// A read that leaves the range gives 0: a short header then reads as one whose missing fields are
/// zero, as its format has it. Where a missing field is damage, ask `holds` first.
class Reader {
public:
    explicit Reader(std::span<const uint8_t> bytes) : bytes_(bytes) {}

    size_t size() const { return bytes_.size(); }

    /// Whether `length` bytes lie at `offset`; no sum of the two can wrap.
    bool holds(uint64_t offset, uint64_t length) const {
        return offset <= bytes_.size() && length <= bytes_.size() - offset;
    }

    uint8_t u8(uint64_t offset) const { return holds(offset, 1) ? bytes_[offset] : uint8_t{0}; }

    uint16_t u16(uint64_t offset) const {
        if (!holds(offset, 2)) return 0;
        return static_cast<uint16_t>(bytes_[offset] | bytes_[offset + 1] << 8);
    }

    uint32_t u32(uint64_t offset) const {
        if (!holds(offset, 4)) return 0;
        return u16(offset) | static_cast<uint32_t>(u16(offset + 2)) << 16;
    }

    int16_t i16(uint64_t offset) const { return static_cast<int16_t>(u16(offset)); }

    int32_t i32(uint64_t offset) const { return static_cast<int32_t>(u32(offset)); }

    /// The bytes at `offset`, at most `length` of them, as far as the range goes.
    std::span<const uint8_t> bytes(uint64_t offset, uint64_t length = UINT64_MAX) const {
        if (offset > bytes_.size()) return {};
        const uint64_t left = bytes_.size() - offset;
        return bytes_.subspan(offset, length < left ? length : left);
    }

    /// A reader over `bytes(offset, length)`.
    Reader part(uint64_t offset, uint64_t length = UINT64_MAX) const {
        return Reader(bytes(offset, length));
    }

private:
    std::span<const uint8_t> bytes_;
};

}  // namespace orvane::codecs
