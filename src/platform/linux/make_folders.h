#pragma once

#include <cerrno>
#include <string>
#include <sys/stat.h>

namespace orvane::platform {

/// Makes a folder with all that lack on the way to it, each with `mode` whatever the process's mask
/// is. 0, or the number of the error.
inline int makeFolders(const std::string& path, mode_t mode) {
    const auto make = [&] {
        if (::mkdir(path.c_str(), mode) != 0) return errno == EEXIST ? 0 : errno;
        // A file system without modes refuses this; the folder is there all the same.
        ::chmod(path.c_str(), mode);
        return 0;
    };
    const int failure = make();
    const std::size_t cut = path.rfind('/');
    if (failure != ENOENT || cut == 0 || cut == std::string::npos) return failure;
    if (const int above = makeFolders(path.substr(0, cut), mode); above != 0) return above;
    return make();
}

}  // namespace orvane::platform
