#include "platform/linux/picture_file.h"

#include "platform/linux/codecs_module.h"
#include "platform/linux/errors.h"
#include "platform/linux/large_pages.h"
#include "platform/linux/picture_content.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane::platform {

namespace {

std::int32_t runtimeError(int number) {
    setLastError(errorFromErrno(number));
    switch (number) {
    case ENOENT:
    case ENOTDIR:
        return kRuntimeFileNotFound;
    case ENOMEM:
        return kRuntimeOutOfMemory;
    default:
        return kRuntimeFileAccess;
    }
}

constinit thread_local FileIdentity refused;

FileIdentity identityOf(const struct stat& facts) {
    return {facts.st_dev, facts.st_ino, facts.st_size, facts.st_mtim.tv_sec, facts.st_mtim.tv_nsec};
}

/// As much of the start of a file as is looked at before the rest is read.
constexpr std::size_t kSignatureBytes = ORVANE_CODEC_SIGNATURE;

/// Reads an open file to its end, at most to the length that it has now; 0 or a run-time error. A
/// file that no decoder knows is given up after its first bytes: the library's own readers try
/// large ones next.
std::int32_t readOpen(int descriptor, WantsFile wants, FileBytes& bytes) {
    struct stat facts {};
    if (::fstat(descriptor, &facts) != 0) {
        return runtimeError(errno);
    }
    // Folders can't be read; reading a pipe or a device may never end.
    if (!S_ISREG(facts.st_mode)) {
        return failWith(kErrorAccessDenied, kRuntimeFileAccess);
    }
    if (facts.st_size > std::numeric_limits<std::int32_t>::max()) {
        return failWith(kErrorNotEnoughMemory, kRuntimeOutOfMemory);
    }
    bytes.identity = identityOf(facts);
    const auto size = static_cast<std::size_t>(facts.st_size);
    bytes.data.reset(static_cast<std::uint8_t*>(std::malloc(size == 0 ? 1 : size)));
    if (bytes.data == nullptr) {
        return runtimeError(ENOMEM);
    }
    preferLargePages(bytes.data.get(), size);
    while (bytes.size < size) {
        const bool start = bytes.size < kSignatureBytes;
        const std::size_t wanted = start ? std::min(size, kSignatureBytes) : size;
        const ssize_t read = ::read(descriptor, bytes.data.get() + bytes.size, wanted - bytes.size);
        if (read < 0 && errno != EINTR) {
            return runtimeError(errno);
        }
        if (read == 0) {
            break;
        }
        bytes.size += read < 0 ? 0 : static_cast<std::size_t>(read);
        if (start && bytes.size >= wanted && !wants(bytes)) {
            return failWith(kErrorInvalidParameter, kRuntimeInvalidPicture);
        }
    }
    return 0;
}

}  // namespace

std::int32_t readPictureFile(const std::string& path, WantsFile wants, FileBytes& bytes) {
    // O_NONBLOCK: a pipe must not make the open wait for its other end.
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NOCTTY | O_NONBLOCK);
    if (descriptor < 0) {
        return runtimeError(errno);
    }
    const std::int32_t result = readOpen(descriptor, wants, bytes);
    ::close(descriptor);
    return result;
}

void keepRefused(const FileIdentity& identity) {
    refused = identity;
}

bool wasRefused(const FileIdentity& identity) {
    return identity == refused;
}

}  // namespace orvane::platform
