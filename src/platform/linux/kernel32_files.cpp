#include "platform/linux/errors.h"
#include "platform/linux/handle_table.h"
#include "platform/linux/kernel32_parts.h"
#include "platform/linux/names.h"
#include "platform/linux/quiet_write.h"

#include <algorithm>
#include <cerrno>
#include <fcntl.h>
#include <limits>
#include <mutex>
#include <new>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace orvane::platform {

namespace {

/// An open file with the position that the platform keeps for it.
struct File {
    using Handle = FileHandle;
    static constexpr HandleKind kKind = HandleKind::file;

    File() = default;
    File(const File&) = delete;
    File& operator=(const File&) = delete;
    ~File() {
        if (descriptor >= 0) {
            ::close(descriptor);
        }
    }

    std::mutex mutex;
    int descriptor = -1;
    std::uint32_t access = 0;
    std::int64_t position = 0;
    bool seekable = true;  ///< false: a pipe or a terminal, written in its own order
};

bool allows(const File& file, FileAccess access) {
    return (file.access & static_cast<std::uint32_t>(access)) != 0;
}

int openFlags(FileAccess access, FileDisposition disposition) {
    int flags = O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
    switch (access) {
    case FileAccess::read:
        flags |= O_RDONLY;
        break;
    case FileAccess::write:
        flags |= O_WRONLY;
        break;
    case FileAccess::readWrite:
        flags |= O_RDWR;
        break;
    }
    switch (disposition) {
    case FileDisposition::createNew:
        return flags | O_CREAT | O_EXCL;
    case FileDisposition::createAlways:
        return flags | O_CREAT | O_TRUNC;
    case FileDisposition::openAlways:
        return flags | O_CREAT;
    case FileDisposition::openExisting:
        break;
    }
    return flags;
}

/// Makes an open descriptor ready for use; the error number, or 0.
int prepare(File& file) {
    struct stat facts {};
    if (::fstat(file.descriptor, &facts) != 0) {
        return errno;
    }
    if (S_ISDIR(facts.st_mode)) {
        return EISDIR;
    }
    // Reading a pipe or a device may never end.
    if (allows(file, FileAccess::read) && !S_ISREG(facts.st_mode)) {
        return EACCES;
    }
    file.seekable = ::lseek(file.descriptor, 0, SEEK_CUR) >= 0;
    // Opening must not wait for the other end of a pipe, writing may.
    const int flags = ::fcntl(file.descriptor, F_GETFL);
    if (flags < 0 || ::fcntl(file.descriptor, F_SETFL, flags & ~O_NONBLOCK) < 0) {
        return errno;
    }
    return 0;
}

/// Repeats `step(done)`, which moves some bytes and gives their number as `read` does, until `size`
/// bytes are moved, nothing more comes or it fails; the bytes moved. `failure` gets its `errno`.
template <class Step>
std::uint32_t moveAll(std::size_t size, int& failure, Step step) {
    size = std::min<std::size_t>(size, std::numeric_limits<std::uint32_t>::max());
    std::size_t done = 0;
    failure = 0;
    while (done < size) {
        const ssize_t moved = step(done, size - done);
        if (moved < 0 && errno == EINTR) {
            continue;
        }
        if (moved < 0) {
            failure = errno;
        }
        if (moved <= 0) {
            break;
        }
        done += static_cast<std::size_t>(moved);
    }
    return static_cast<std::uint32_t>(done);
}

}  // namespace

FileHandle createFile(const std::string& fileName, FileAccess access, FileDisposition disposition) {
    constexpr mode_t kForEverybody = 0666;  // less what the process's mask takes
    constexpr mode_t kForOwner = 0600;
    if (const std::uint32_t error = nameError(fileName); error != kErrorSuccess) {
        return failWith(error, FileHandle::none);
    }
    const std::string path = systemName(fileName);
    std::shared_ptr<File> file;
    try {
        file = std::make_shared<File>();
    } catch (const std::bad_alloc&) {
        return failWith(kErrorNotEnoughMemory, FileHandle::none);
    }
    file->access = static_cast<std::uint32_t>(access);
    // Who insists on a new file writes something temporary into a folder that all users share,
    // where the platform's own temporary folder belongs to one user.
    const mode_t mode = disposition == FileDisposition::createNew ? kForOwner : kForEverybody;
    file->descriptor = ::open(path.c_str(), openFlags(access, disposition), mode);
    if (file->descriptor < 0) {
        return failWith(fileError(errno, path), FileHandle::none);
    }
    if (const int failure = prepare(*file); failure != 0) {
        return failWith(errorFromErrno(failure), FileHandle::none);
    }
    return addHandle(std::move(file));
}

bool readFile(FileHandle handle, std::span<std::uint8_t> buffer, std::uint32_t& read) {
    read = 0;
    const auto file = findObject<File>(handle);
    if (file == nullptr) {
        return false;
    }
    const std::scoped_lock lock(file->mutex);
    if (!allows(*file, FileAccess::read)) {
        return failWith(kErrorAccessDenied, false);
    }
    int failure = 0;
    read = moveAll(buffer.size(), failure, [&](std::size_t done, std::size_t left) {
        return ::pread(file->descriptor, buffer.data() + done, left,
                       file->position + static_cast<std::int64_t>(done));
    });
    file->position += read;
    return failure == 0 || failWith(errorFromErrno(failure), false);
}

bool writeFile(FileHandle handle, std::span<const std::uint8_t> data, std::uint32_t& written) {
    written = 0;
    const auto file = findObject<File>(handle);
    if (file == nullptr) {
        return false;
    }
    const std::scoped_lock lock(file->mutex);
    if (!allows(*file, FileAccess::write)) {
        return failWith(kErrorAccessDenied, false);
    }
    int failure = 0;
    written = moveAll(data.size(), failure, [&](std::size_t done, std::size_t left) {
        const std::uint8_t* from = data.data() + done;
        return writeQuietly([&] {
            return file->seekable ? ::pwrite(file->descriptor, from, left,
                                             file->position + static_cast<std::int64_t>(done))
                                  : ::write(file->descriptor, from, left);
        });
    });
    file->position += written;
    return failure == 0 || failWith(errorFromErrno(failure), false);
}

bool setFilePointer(FileHandle handle, std::int64_t position) {
    const auto file = findObject<File>(handle);
    if (file == nullptr) {
        return false;
    }
    const std::scoped_lock lock(file->mutex);
    if (position < 0) {
        return failWith(kErrorNegativeSeek, false);
    }
    if (!file->seekable) {
        return failWith(kErrorSeek, false);
    }
    file->position = position;
    return true;
}

std::int64_t fileSize(FileHandle handle) {
    const auto file = findObject<File>(handle);
    if (file == nullptr) {
        return -1;
    }
    const std::scoped_lock lock(file->mutex);
    struct stat facts {};
    if (::fstat(file->descriptor, &facts) != 0) {
        return failWith(errorFromErrno(errno), std::int64_t{-1});
    }
    if (!file->seekable) {
        return failWith(kErrorInvalidFunction, std::int64_t{-1});
    }
    return facts.st_size;
}

bool closeHandle(FileHandle handle) {
    const auto file = removeHandle<File>(handle);
    if (file == nullptr) {
        return false;
    }
    // Closed here and not with the last reference, so that the outcome can be told. Another
    // thread's call that is under way waits for the lock and then fails.
    const std::scoped_lock lock(file->mutex);
    const int outcome = ::close(std::exchange(file->descriptor, -1));
    return outcome == 0 || errno == EINTR || failWith(errorFromErrno(errno), false);
}

}  // namespace orvane::platform
