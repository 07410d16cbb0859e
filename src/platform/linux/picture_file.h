#pragma once

#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <string>

namespace orvane::platform {

/// Which file it is, in which state of its content.
struct FileIdentity {
    std::uint64_t device = 0;
    std::uint64_t inode = 0;
    std::int64_t size = 0;
    std::int64_t seconds = 0;  ///< of its last change
    std::int64_t nanoseconds = 0;

    bool operator==(const FileIdentity&) const = default;
};

/// The bytes of a picture file.
struct FileBytes {
    std::unique_ptr<std::uint8_t, void (*)(void*)> data{nullptr, std::free};
    std::size_t size = 0;
    FileIdentity identity;

    std::span<const std::uint8_t> bytes() const { return {data.get(), size}; }
};

/// Tells by the first bytes of a file whether anybody wants the rest.
using WantsFile = bool (*)(const FileBytes& start);

/// Reads the regular file at `path`, a name of the system, to the end that it has now; 0, or a
/// run-time error number of the host's loader with the last error. Of a file that `wants` refuses,
/// only the start is read: the library's own readers try large ones next (481).
std::int32_t readPictureFile(const std::string& path, WantsFile wants, FileBytes& bytes);

/// Keeps for this thread which file the host's loader could not decode last, or that there is none.
/// GDI+, which is asked next, has no other decoders for it.
void keepRefused(const FileIdentity& identity);
/// Whether it is the one that was kept.
bool wasRefused(const FileIdentity& identity);

}  // namespace orvane::platform
