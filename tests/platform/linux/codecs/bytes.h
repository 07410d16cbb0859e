#pragma once

#include <cstddef>
#include <cstdint>
#include <initializer_list>
#include <string_view>
#include <vector>

namespace orvane::codecs::test {

/// Builds a file's bytes, little-endian.
class Bytes {
public:
    Bytes& u8(std::initializer_list<int> values) {
        for (const int value : values)
            data_.push_back(static_cast<uint8_t>(value));
        return *this;
    }

    Bytes& u16(int64_t value) { return number(value, 2); }
    Bytes& u32(int64_t value) { return number(value, 4); }

    Bytes& text(std::string_view letters) {
        for (const char letter : letters)
            data_.push_back(static_cast<uint8_t>(letter));
        return *this;
    }

    Bytes& zeroes(size_t count) {
        data_.resize(data_.size() + count);
        return *this;
    }

    Bytes& add(const Bytes& other) {
        for (const uint8_t value : other.data_)
            data_.push_back(value);
        return *this;
    }

    /// Overwrites the number at `offset`.
    Bytes& patch(size_t offset, int64_t value, size_t length) {
        for (size_t i = 0; i < length; ++i)
            data_.at(offset + i) = static_cast<uint8_t>(value >> (8 * i));
        return *this;
    }

    size_t size() const { return data_.size(); }
    const std::vector<uint8_t>& data() const { return data_; }

private:
    Bytes& number(int64_t value, size_t length) {
        for (size_t i = 0; i < length; ++i)
            data_.push_back(static_cast<uint8_t>(value >> (8 * i)));
        return *this;
    }

    std::vector<uint8_t> data_;
};

}  // namespace orvane::codecs::test
