#include "platform/linux/errors.h"
#include "platform/linux/kernel32_parts.h"
#include "platform/linux/names.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <string_view>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane::platform {

namespace {

constexpr std::uint32_t kFileAttributeReadOnly = 0x01;
constexpr std::uint32_t kFileAttributeArchive = 0x20;
constexpr std::uint32_t kFileAttributeNormal = 0x80;

bool isFolder(const std::string& path) {
    struct stat facts {};
    return ::stat(path.c_str(), &facts) == 0 && S_ISDIR(facts.st_mode);
}

/// The folder that holds the last name of `path`.
std::string parentOf(const std::string& path) {
    const std::size_t end = path.find_last_not_of('/');
    const std::size_t slash = end == std::string::npos ? end : path.rfind('/', end);
    if (slash == std::string::npos) {
        return end == std::string::npos ? "/" : ".";
    }
    return slash == 0 ? "/" : path.substr(0, slash);
}

/// The folder in which the process works, in the system's form; empty when it is gone.
std::string workingFolder() {
    const std::unique_ptr<char, void (*)(void*)> folder(::getcwd(nullptr, 0), std::free);
    return folder == nullptr ? std::string() : std::string(folder.get());
}

/// An absolute path without empty and dot segments; a separator at its end stays.
std::string folded(std::string_view path) {
    const bool separatorStays = path.ends_with('/');
    std::string out;
    while (!path.empty()) {
        const std::size_t end = std::min(path.find('/'), path.size());
        const std::string_view segment = path.substr(0, end);
        path.remove_prefix(std::min(end + 1, path.size()));
        if (segment == "..") {
            out.resize(out.empty() ? 0 : out.rfind('/'));
        } else if (!segment.empty() && segment != ".") {
            out.append("/").append(segment);
        }
    }
    if (out.empty() || separatorStays) {
        out += '/';
    }
    return out;
}

std::string hexDigits(std::uint32_t value) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string out;
    for (int shift = 28; shift >= 0; shift -= 4) {
        out += kDigits[(value >> shift) & 0xF];
    }
    return out;
}

}  // namespace

std::uint32_t fileError(int number, const std::string& path) {
    if (number == ENOENT && !isFolder(parentOf(path))) {
        return kErrorPathNotFound;
    }
    return errorFromErrno(number);
}

bool deleteFile(const std::string& fileName) {
    if (const std::uint32_t error = nameError(fileName); error != kErrorSuccess) {
        return failWith(error, false);
    }
    const std::string path = systemName(fileName);
    return ::unlink(path.c_str()) == 0 || failWith(fileError(errno, path), false);
}

std::uint32_t fileAttributes(const std::string& fileName) {
    if (const std::uint32_t error = nameError(fileName); error != kErrorSuccess) {
        return failWith(error, kInvalidFileAttributes);
    }
    const std::string path = systemName(fileName);
    struct stat facts {};
    if (::stat(path.c_str(), &facts) != 0) {
        return failWith(fileError(errno, path), kInvalidFileAttributes);
    }
    if (S_ISDIR(facts.st_mode)) {
        return kFileAttributeDirectory;
    }
    if (!S_ISREG(facts.st_mode)) {
        return kFileAttributeNormal;
    }
    const bool writable = (facts.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) != 0;
    return kFileAttributeArchive | (writable ? 0 : kFileAttributeReadOnly);
}

bool createDirectory(const std::string& path) {
    constexpr mode_t kForEverybody = 0777;  // less what the process's mask takes
    if (const std::uint32_t error = nameError(path); error != kErrorSuccess) {
        return failWith(error, false);
    }
    const std::string name = systemName(path);
    if (::mkdir(name.c_str(), kForEverybody) == 0) {
        return true;
    }
    // A folder whose parent is missing is not "not found" but "its path is not found".
    const std::uint32_t error = errno == EEXIST   ? kErrorAlreadyExists
                                : errno == ENOENT ? kErrorPathNotFound
                                                  : errorFromErrno(errno);
    return failWith(error, false);
}

std::string tempPath() {
    const char* named = std::getenv("TMPDIR");
    std::string folder = named == nullptr ? "" : named;
    // A folder that has no name in the ANSI code page can't be used under the one it would get.
    if (!folder.starts_with('/') || !fitsAnsi(folder)) {
        folder = "/tmp";
    }
    if (!folder.ends_with('/')) {
        folder += '/';
    }
    return ansiName(folder);
}

std::string tempFileName(const std::string& folder, const std::string& prefix) {
    constexpr int kTries = 1000;
    constexpr std::size_t kLongestPrefix = 3;
    constexpr mode_t kForOwner = 0600;
    const std::string start = systemName(std::string_view(prefix).substr(0, kLongestPrefix));
    const std::string_view cannotBe("/\0", 2);
    if (start.find_first_of(cannotBe) != std::string::npos ||
        nameError(folder) == kErrorInvalidName) {
        return failWith(kErrorInvalidName, std::string());
    }
    std::string path = systemName(folder);
    if (path.empty() || !isFolder(path)) {
        return failWith(kErrorDirectory, std::string());
    }
    path += path.ends_with('/') ? "" : "/";
    for (int i = 0; i < kTries; ++i) {
        std::uint32_t number = 0;
        if (::getrandom(&number, sizeof number, 0) != static_cast<ssize_t>(sizeof number)) {
            return failWith(errorFromErrno(errno), std::string());
        }
        const std::string full = path + start + hexDigits(number) + ".tmp";
        const int descriptor =
            ::open(full.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kForOwner);
        if (descriptor >= 0) {
            ::close(descriptor);
            return ansiName(full);
        }
        if (errno != EEXIST && errno != EINTR) {
            return failWith(errorFromErrno(errno), std::string());
        }
    }
    return failWith(kErrorFileExists, std::string());
}

std::string fullPathName(const std::string& name) {
    if (nameError(name) != kErrorSuccess) {
        return failWith(kErrorInvalidName, std::string());
    }
    std::string path = systemName(name);
    if (!path.starts_with('/')) {
        const std::string folder = workingFolder();
        if (folder.empty()) {
            return failWith(kErrorPathNotFound, std::string());
        }
        path = folder + "/" + path;
    }
    return ansiName(folded(path));
}

// There are no short forms here: a name that exists is its own long form.
std::string longPathName(const std::string& name) {
    if (const std::uint32_t error = nameError(name); error != kErrorSuccess) {
        return failWith(error, std::string());
    }
    const std::string path = systemName(name);
    struct stat facts {};
    if (::stat(path.c_str(), &facts) != 0) {
        return failWith(fileError(errno, path), std::string());
    }
    return ansiName(path);
}

}  // namespace orvane::platform
