#pragma once

#include "orvane/host.h"

#include <cstdint>
#include <string>
#include <string_view>

namespace orvane::tool {

/// The most bytes of a file that the library's gzip reader takes: a text has a unit for each.
inline constexpr std::size_t kLongestGzip = host::kLongestText;

/// How much of a file is wanted: its data may be a thousand times as long as it is.
enum class GzipPart { header, all };

/// What the library's gzip reader makes of a file. Texts are UTF-8; file name and comment are the
/// bytes that stand in the file.
struct GzipFacts {
    std::int32_t code = 0;  ///< gzUncompressErrors; the rest is empty unless it is 0
    std::string message;    ///< the code's text
    std::int32_t method = 0;
    std::int32_t flags = 0;
    std::int32_t time = 0;
    std::int32_t extraFlags = 0;
    std::int32_t os = 0;
    std::string osName;
    std::string extra;
    std::string fileName;
    std::string comment;
    std::int32_t headerCrc = 0;
    std::int32_t dataLength = 0;
    std::int32_t dataCrc = 0;
    std::uint32_t dataSize = 0;  ///< bytes of the data, also where it wasn't wanted
    std::string data;
};

/// Reads a file's bytes through the library's class. Throws host::Error.
GzipFacts readGzip(host::Library& library, std::string_view bytes, GzipPart wanted);

}  // namespace orvane::tool
