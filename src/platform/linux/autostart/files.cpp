#include "platform/linux/autostart/files.h"

#include "platform/linux/errors.h"
#include "platform/linux/make_folders.h"

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <pwd.h>
#include <string_view>
#include <sys/random.h>
#include <sys/stat.h>
#include <unistd.h>
#include <vector>

namespace orvane::platform::autostart {

namespace {

constexpr mode_t kFolderOfUser = 0700;
constexpr mode_t kFolderOfMachine = 0755;
constexpr mode_t kReadByAll = 0644;

ResultCode failure(int number) {
    return ResultCode{errorFromErrno(number)};
}

bool writeAll(int descriptor, std::string_view text) {
    while (!text.empty()) {
        const ssize_t written = ::write(descriptor, text.data(), text.size());
        if (written < 0 && errno != EINTR) {
            return false;
        }
        if (written > 0) {
            text.remove_prefix(static_cast<std::size_t>(written));
        }
    }
    return true;
}

/// A name beside `path` that no other process uses; the desktop takes only names that end in
/// ".desktop" for entries.
std::string nameBeside(const std::string& path) {
    std::uint64_t number = 0;
    if (::getrandom(&number, sizeof number, 0) != sizeof number) {
        number = static_cast<std::uint64_t>(::getpid());
    }
    return path + "." + std::to_string(number) + ".new";
}

/// Puts a file with this text in the place of `path`, whole.
ResultCode writeEntry(const std::string& path, std::string_view text) {
    const std::string fresh = nameBeside(path);
    const int descriptor =
        ::open(fresh.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, kReadByAll);
    if (descriptor < 0) {
        return failure(errno);
    }
    // Every user's desktop reads the machine's entries, whatever this process's mask is.
    bool good = ::fchmod(descriptor, kReadByAll) == 0 && writeAll(descriptor, text) &&
                ::fsync(descriptor) == 0;
    int error = errno;
    if (::close(descriptor) != 0 && good) {
        good = false;
        error = errno;
    }
    if (good && ::rename(fresh.c_str(), path.c_str()) != 0) {
        good = false;
        error = errno;
    }
    if (good) {
        return ResultCode::success;
    }
    ::unlink(fresh.c_str());
    return failure(error);
}

ResultCode removeEntry(const std::string& path) {
    const bool gone = ::unlink(path.c_str()) == 0 || errno == ENOENT || errno == ENOTDIR;
    return gone ? ResultCode::success : failure(errno);
}

/// The text of a file; nothing when there is none.
ResultCode readEntry(const std::string& path, std::optional<std::string>& text) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        const bool absent = errno == ENOENT || errno == ENOTDIR;
        return absent ? ResultCode::success : failure(errno);
    }
    text.emplace();
    char buffer[4096];
    ssize_t read = 0;
    while ((read = ::read(descriptor, buffer, sizeof buffer)) > 0) {
        text->append(buffer, static_cast<std::size_t>(read));
    }
    const int error = errno;
    ::close(descriptor);
    return read == 0 ? ResultCode::success : failure(error);
}

/// A folder that the environment names; none for a process with more rights than its user, whose
/// environment is not to be trusted.
std::string fromEnvironment(const char* name) {
    const char* value = ::secure_getenv(name);
    return value != nullptr && value[0] == '/' ? value : "";
}

/// The user's folder for configuration files.
std::string configurationFolder() {
    if (std::string folder = fromEnvironment("XDG_CONFIG_HOME"); !folder.empty()) {
        return folder;
    }
    if (const std::string home = fromEnvironment("HOME"); !home.empty()) {
        return home + "/.config";
    }
    std::vector<char> buffer(16384);
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found) != 0 ||
        found == nullptr || found->pw_dir == nullptr || found->pw_dir[0] != '/') {
        return {};
    }
    return std::string(found->pw_dir) + "/.config";
}

}  // namespace

std::string entryFolder(Scope scope) {
    const bool isUser = scope == Scope::user;
    std::string folder =
        fromEnvironment(isUser ? "ORVANE_REGISTRY_USER" : "ORVANE_REGISTRY_MACHINE");
    if (folder.empty()) {
        folder = isUser ? configurationFolder() : "/etc/xdg";
    }
    return folder.empty() ? folder : folder + "/autostart";
}

bool isProgram(const std::string& path) {
    struct stat facts {};
    return ::stat(path.c_str(), &facts) == 0 && S_ISREG(facts.st_mode) &&
           ::access(path.c_str(), X_OK) == 0;
}

ResultCode Changes::apply() {
    former_.reserve(changes_.size());
    for (const Change& change : changes_) {
        const std::string folder = entryFolder(change.scope);
        if (folder.empty()) {
            undo();
            return ResultCode{kErrorPathNotFound};
        }
        Former former{folder + "/" + entryName(change.scope, change.foldedName), {}};
        ResultCode code = readEntry(former.path, former.text);
        if (code == ResultCode::success && change.text.empty()) {
            code = former.text ? removeEntry(former.path) : ResultCode::success;
        } else if (code == ResultCode::success) {
            const int error =
                makeFolders(folder, change.scope == Scope::user ? kFolderOfUser : kFolderOfMachine);
            code = error == 0 ? writeEntry(former.path, change.text) : failure(error);
        }
        if (code != ResultCode::success) {
            undo();
            return code;
        }
        former_.push_back(std::move(former));
    }
    return ResultCode::success;
}

void Changes::undo() {
    for (; !former_.empty(); former_.pop_back()) {
        const Former& former = former_.back();
        if (former.text) {
            writeEntry(former.path, *former.text);
        } else {
            removeEntry(former.path);
        }
    }
}

}  // namespace orvane::platform::autostart
