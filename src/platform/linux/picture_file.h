#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>

namespace orvane::platform {

/// The bytes of a picture file.
struct FileBytes {
    std::unique_ptr<std::uint8_t, void (*)(void*)> data{nullptr, std::free};
    std::size_t size = 0;

    std::span<const std::uint8_t> bytes() const { return {data.get(), size}; }
};

/// Tells by the first bytes of a file whether anybody wants the rest.
using WantsFile = bool (*)(std::span<const std::uint8_t> start);

/// Reads the regular file at `path`, a name of the system, to the end that it has now; 0, or a
/// run-time error number of the host's loader with the last error. Of a file that `wants` refuses,
/// only the start is read: the library's own readers try large ones next (481).
std::int32_t readPictureFile(const std::string& path, WantsFile wants, FileBytes& bytes);

}  // namespace orvane::platform
