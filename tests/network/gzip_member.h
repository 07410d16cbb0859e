#pragma once

#include "frame/values/codepage.h"

#include <zlib.h>

#include <cstdint>
#include <stdexcept>
#include <string>
#include <string_view>

namespace orvane::test {

/// Numbers as the format has them, the lowest byte first.
inline std::string littleEndian(std::uint32_t number, std::size_t size) {
    std::string bytes;
    for (; size > 0; --size, number >>= 8)
        bytes += static_cast<char>(number & 0xFF);
    return bytes;
}

inline std::uint32_t zlibCrc(std::string_view data) {
    const auto* bytes = reinterpret_cast<const Bytef*>(data.data());
    return static_cast<std::uint32_t>(::crc32_z(::crc32(0, nullptr, 0), bytes, data.size()));
}

/// `data` as a plain deflate stream.
inline std::string deflated(std::string_view data, int level = 6) {
    z_stream stream{};
    if (deflateInit2(&stream, level, Z_DEFLATED, -15, 9, Z_DEFAULT_STRATEGY) != Z_OK) {
        throw std::runtime_error("deflateInit2");
    }
    std::string out(deflateBound(&stream, static_cast<uLong>(data.size())), '\0');
    std::string in(data);
    stream.next_in = reinterpret_cast<Bytef*>(in.data());
    stream.avail_in = static_cast<uInt>(in.size());
    stream.next_out = reinterpret_cast<Bytef*>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    const int code = deflate(&stream, Z_FINISH);
    out.resize(stream.total_out);
    deflateEnd(&stream);
    if (code != Z_STREAM_END) throw std::runtime_error("deflate");
    return out;
}

/// A gzip member part by part: a good one of its data, until a test changes a part.
struct Member {
    explicit Member(std::string_view data, int level = 6)
        : body(deflated(data, level)), crc(zlibCrc(data)),
          length(static_cast<std::uint32_t>(data.size())) {}

    std::string magic = "\x1F\x8B";
    std::uint8_t method = 8;
    std::uint8_t flags = 0;
    std::uint32_t time = 0;
    std::uint8_t extraFlags = 0;
    std::uint8_t os = 3;
    std::string optional;  ///< what stands between the fixed header and the body
    std::string body;
    std::uint32_t crc;
    std::uint32_t length;

    std::string header() const {
        std::string bytes = magic;
        bytes += static_cast<char>(method);
        bytes += static_cast<char>(flags);
        bytes += littleEndian(time, 4);
        bytes += static_cast<char>(extraFlags);
        bytes += static_cast<char>(os);
        return bytes;
    }
    std::string bytes() const {
        return header() + optional + body + littleEndian(crc, 4) + littleEndian(length, 4);
    }
    /// As hosts pass it.
    WString text() const { return fromAnsi(bytes()); }
};

}  // namespace orvane::test
