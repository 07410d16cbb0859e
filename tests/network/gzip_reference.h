#pragma once

#include <zlib.h>

#include <cstdint>
#include <string>
#include <vector>

namespace orvane::test {

/// What a walk over a member comes to.
struct GzipOutcome {
    bool raises = false;  ///< run-time error 5
    int code = 0;
    std::uint8_t id1 = 0;
    std::uint8_t id2 = 0;
    std::uint8_t method = 0;
    std::int32_t flags = 0;
    std::int32_t time = 0;
    std::uint8_t extraFlags = 0;
    std::int32_t os = 255;
    std::string extra;
    std::string fileName;
    std::string comment;
    std::int16_t headerCrc = 0;
    std::int32_t dataLength = 0;
    std::int32_t dataCrc = 0;
    std::string data;

    friend bool operator==(const GzipOutcome&, const GzipOutcome&) = default;
};

/// The walk in plain steps over a copy of the bytes, with zlib itself for the body and the CRC.
/// A member that tells of more than `mostData` bytes is walked to its trailer only; `tooLong` says
/// so.
class GzipReference {
public:
    explicit GzipReference(std::string bytes, std::int32_t mostData = 1 << 26)
        : data_(std::move(bytes)), mostData_(mostData) {
        outcome_.code = walk();
        if (outcome_.code != 0 || outcome_.raises) {
            GzipOutcome failure;
            failure.raises = outcome_.raises;
            failure.code = outcome_.code;
            outcome_ = failure;
        }
    }

    const GzipOutcome& outcome() const { return outcome_; }
    bool tooLong() const { return tooLong_; }

private:
    static std::int32_t number(const std::string& bytes, std::size_t size) {
        if (bytes.size() != size) return 0;
        std::uint32_t value = 0;
        for (std::size_t i = 0; i < size; ++i)
            value |= std::uint32_t{static_cast<std::uint8_t>(bytes[i])} << (8 * i);
        return size == 2 ? static_cast<std::int16_t>(value) : static_cast<std::int32_t>(value);
    }

    std::string first(std::size_t count) const { return data_.substr(0, count); }
    std::string last(std::size_t count) const {
        return data_.size() < count ? data_ : data_.substr(data_.size() - count);
    }
    void cutLeft(std::size_t count) { data_.erase(0, count); }
    void cutRight(std::size_t count) {
        data_.resize(data_.size() < count ? 0 : data_.size() - count);
    }

    bool readByte(std::size_t offset, std::uint8_t& field) {
        if (offset >= data_.size()) {
            outcome_.raises = true;
            return false;
        }
        field = static_cast<std::uint8_t>(data_[offset]);
        return true;
    }

    bool fixedHeader() {
        std::uint8_t flags = 0;
        std::uint8_t os = 0;
        if (!readByte(0, outcome_.id1) || !readByte(1, outcome_.id2)) return false;
        if (!readByte(2, outcome_.method) || !readByte(3, flags)) return false;
        outcome_.flags = flags;
        outcome_.time = number(data_.substr(4, 4), 4);
        if (!readByte(8, outcome_.extraFlags) || !readByte(9, os)) return false;
        outcome_.os = os;
        cutLeft(10);
        return true;
    }

    bool text(std::string& field) {
        const std::size_t position = data_.find('\0') + 1;
        if (position < 1 || position > data_.size()) return false;
        field = first(position - 1);
        cutLeft(position);
        return true;
    }

    int walk() {
        if (first(2) != "\x1F\x8B") return 1;
        if (!fixedHeader()) return 0;
        if ((outcome_.flags & 0xE0) != 0) return 6;
        if ((outcome_.flags & 4) != 0) {
            const std::int32_t length = number(first(4), 4);
            if (length < 1 || length > static_cast<std::int64_t>(data_.size())) return 3;
            outcome_.extra = first(static_cast<std::size_t>(length));
            cutLeft(static_cast<std::size_t>(length));
        }
        if ((outcome_.flags & 8) != 0 && !text(outcome_.fileName)) return 4;
        if ((outcome_.flags & 16) != 0 && !text(outcome_.comment)) return 5;
        if ((outcome_.flags & 2) != 0) {
            outcome_.headerCrc = static_cast<std::int16_t>(number(first(2), 2));
            cutLeft(2);
        }
        outcome_.dataLength = number(last(4), 4);
        cutRight(4);
        if (outcome_.dataLength < 0) return 7;
        outcome_.dataCrc = number(last(4), 4);
        cutRight(4);
        if (outcome_.dataLength == 0) return outcome_.dataCrc == 0 ? 0 : 2;
        if (outcome_.dataLength > mostData_) {
            tooLong_ = true;
            return 2;
        }
        return inflate();
    }

    int inflate() {
        const std::string source = "\x78\xDA" + data_;
        std::vector<Bytef> buffer(static_cast<std::size_t>(outcome_.dataLength));
        auto length = static_cast<uLongf>(buffer.size());
        ::uncompress(buffer.data(), &length, reinterpret_cast<const Bytef*>(source.data()),
                     static_cast<uLong>(source.size()));
        outcome_.dataLength = static_cast<std::int32_t>(length);
        const uLong crc = ::crc32_z(::crc32(0, nullptr, 0), buffer.data(), buffer.size());
        if (static_cast<std::uint32_t>(crc) != static_cast<std::uint32_t>(outcome_.dataCrc)) {
            return 2;
        }
        outcome_.data.assign(buffer.begin(), buffer.end());
        return 0;
    }

    std::string data_;
    std::int32_t mostData_;
    bool tooLong_ = false;
    GzipOutcome outcome_;
};

inline GzipOutcome referenceGzip(std::string bytes) {
    return GzipReference(std::move(bytes)).outcome();
}

}  // namespace orvane::test
