#include "platform/linux/registry/places.h"

#include "platform/linux/make_folders.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace orvane::store {

namespace {

/// A folder that the environment names; none for a process with more rights than its user, whose
/// environment is not to be trusted, and relative ones count as not given.
std::string fromEnvironment(const char* name) {
    const char* value = ::secure_getenv(name);
    if (value == nullptr || value[0] != '/') return {};
    std::string folder = value;
    while (folder.size() > 1 && folder.ends_with('/'))
        folder.pop_back();
    return folder;
}

std::string homeFolder() {
    std::string home = fromEnvironment("HOME");
    if (!home.empty()) return home;
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 ||
        found == nullptr || found->pw_dir == nullptr || found->pw_dir[0] != '/') {
        return {};
    }
    return found->pw_dir;
}

}  // namespace

Place userPlace() {
    if (std::string folder = fromEnvironment("ORVANE_REGISTRY_USER"); !folder.empty()) {
        return {std::move(folder), true};
    }
    if (const std::string config = fromEnvironment("XDG_CONFIG_HOME"); !config.empty()) {
        return {config + "/orvane", true};
    }
    const std::string home = homeFolder();
    return {home.empty() ? home : home + "/.config/orvane", true};
}

Place machinePlace() {
    std::string folder = fromEnvironment("ORVANE_REGISTRY_MACHINE");
    return {folder.empty() ? "/var/lib/orvane" : std::move(folder), false};
}

int makeFolders(const Place& place) {
    return place.folder.empty() ? ENOENT
                                : platform::makeFolders(place.folder, place.isOwn ? 0700 : 0755);
}

int makeFile(const Place& place) {
    const mode_t mode = place.isOwn ? 0600 : 0644;
    const int file = ::open(place.file().c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, mode);
    if (file < 0) return errno == EEXIST ? 0 : errno;
    // The machine's is for everybody to read, whatever the mask of its first writer.
    ::fchmod(file, mode);
    ::close(file);
    return 0;
}

bool isWritable(const Place& place) {
    if (place.folder.empty()) return false;
    const std::string file = place.file();
    if (::access(file.c_str(), F_OK) == 0) return ::access(file.c_str(), W_OK) == 0;
    std::string folder = place.folder;
    while (::access(folder.c_str(), F_OK) != 0) {
        const std::size_t cut = folder.rfind('/');
        if (cut == 0 || cut == std::string::npos) return ::access("/", W_OK) == 0;
        folder.resize(cut);
    }
    return ::access(folder.c_str(), W_OK) == 0;
}

}  // namespace orvane::store
