#include "support/file_names.h"

#include "frame/values/codepage.h"
#include "platform/kernel32.h"
#include "platform/paths.h"
#include "support/platform_failure.h"

#include <algorithm>
#include <string>

namespace orvane {
namespace {

using platform::kernel32;

/// `path` without the separators at its end, but not shorter than its root.
WStringView withoutEndSeparators(WStringView path) {
    const std::size_t root = platform::pathRootLength(path);
    while (path.size() > root && platform::isPathSeparator(path.back()))
        path.remove_suffix(1);
    return path;
}

/// Creates one folder whose parents are there. One that the platform calls taken counts as there
/// even when its attributes can't be read, as those of a share's parents may not be.
bool createFolder(WStringView path) {
    if (nqIsDirectoryExist(path) || kernel32.CreateDirectoryA(toAnsi(path))) return true;
    return platform::lastError() == platform::kErrorAlreadyExists;
}

}  // namespace

WString nqBuildFileName(WStringView path, WStringView fileName) {
    if (path.empty()) return WString(fileName);
    while (!path.empty() && platform::isPathSeparator(path.back()))
        path.remove_suffix(1);
    while (!fileName.empty() && platform::isPathSeparator(fileName.front())) {
        fileName.remove_prefix(1);
    }
    WString result(path);
    result.edit() += platform::pathSeparator();
    return result + fileName;
}

WString nqGetFilePath(WStringView fullName) {
    const std::size_t root = platform::pathRootLength(fullName);
    std::size_t end = fullName.size();
    while (end > root && !platform::isPathSeparator(fullName[end - 1]))
        --end;
    return WString(withoutEndSeparators(fullName.substr(0, end)));
}

WString nqGetFullFileName(WStringView name) {
    const std::string full = kernel32.GetFullPathNameA(toAnsi(name));
    if (full.empty()) raisePlatformFailure();
    return fromAnsi(full);
}

WString nqGetLongFileName(WStringView name) {
    const std::string found = kernel32.GetLongPathNameA(toAnsi(name));
    return found.empty() ? WString(name) : fromAnsi(found);
}

bool nqIsFileExist(WStringView name) {
    const std::uint32_t attributes = kernel32.GetFileAttributesA(toAnsi(name));
    return attributes != platform::kInvalidFileAttributes &&
           (attributes & platform::kFileAttributeDirectory) == 0;
}

bool nqIsDirectoryExist(WStringView name) {
    const std::uint32_t attributes = kernel32.GetFileAttributesA(toAnsi(name));
    return attributes != platform::kInvalidFileAttributes &&
           (attributes & platform::kFileAttributeDirectory) != 0;
}

bool nqCreateComplexDirectory(WStringView path) {
    path = withoutEndSeparators(path);
    if (nqIsDirectoryExist(path)) return true;
    for (std::size_t end = platform::pathRootLength(path) + 1; end < path.size(); ++end) {
        const bool partEnds =
            platform::isPathSeparator(path[end]) && !platform::isPathSeparator(path[end - 1]);
        if (partEnds && !createFolder(path.substr(0, end))) return false;
    }
    return kernel32.CreateDirectoryA(toAnsi(path)) || nqIsDirectoryExist(path);
}

WString nqGetTempFileName2(WStringView folder, WStringView prefix) {
    std::string place = toAnsi(folder);
    if (place.empty()) place = kernel32.GetTempPathA();
    if (place.empty()) raisePlatformFailure();
    const std::string created = kernel32.GetTempFileNameA(place, toAnsi(prefix));
    if (created.empty()) raisePlatformFailure();
    return fromAnsi(created);
}

}  // namespace orvane
