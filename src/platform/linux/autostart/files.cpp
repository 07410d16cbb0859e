#include "platform/linux/autostart/files.h"

#include "platform/linux/errors.h"
#include "platform/linux/make_folders.h"

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <pwd.h>
#include <string_view>
#include <sys/stat.h>
#include <system_error>
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

// The desktop takes only names that end in ".desktop" for entries.
constexpr std::string_view kNew = ".new";
constexpr std::string_view kFormer = ".former";

std::string beside(const std::string& path, std::string_view ending) {
    return path + std::string(ending);
}

/// Puts a file with this text beside `path`, whole.
ResultCode writeBeside(const std::string& path, std::string_view text) {
    const std::string fresh = beside(path, kNew);
    ::unlink(fresh.c_str());
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
    if (good) {
        return ResultCode::success;
    }
    ::unlink(fresh.c_str());
    return failure(error);
}

/// Moves an entry out of its place; `hadEntry` tells whether there was one.
ResultCode moveAside(const std::string& path, bool& hadEntry) {
    struct stat facts {};
    hadEntry = false;
    if (::lstat(path.c_str(), &facts) != 0) {
        return errno == ENOENT || errno == ENOTDIR ? ResultCode::success : failure(errno);
    }
    if (S_ISDIR(facts.st_mode)) {
        return failure(EISDIR);
    }
    if (::rename(path.c_str(), beside(path, kFormer).c_str()) != 0) {
        return failure(errno);
    }
    hadEntry = true;
    return ResultCode::success;
}

/// The text of a file, as far as an entry can go; "" when there is none or it can't be read. What
/// lies in an entry's place may be a link to anything.
std::string textIn(const std::string& path) {
    const int descriptor = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK);
    if (descriptor < 0) {
        return {};
    }
    constexpr std::size_t kLongest = std::size_t{1} << 20;
    std::string text;
    char buffer[4096];
    ssize_t read = 0;
    while (text.size() < kLongest && (read = ::read(descriptor, buffer, sizeof buffer)) > 0) {
        text.append(buffer, static_cast<std::size_t>(read));
    }
    ::close(descriptor);
    return text;
}

/// The line of an entry that tells what it starts.
std::string execLineOf(const std::string& text) {
    const std::size_t start = text.find("\nExec=");
    return start == std::string::npos ? std::string()
                                      : text.substr(start, text.find('\n', start + 1) - start);
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
    steps_.reserve(changes_.size());
    for (auto change = changes_.begin(); change != changes_.end(); ++change) {
        const bool isLast = std::none_of(change + 1, changes_.end(), [&](const Change& other) {
            return other.scope == change->scope && other.foldedName == change->foldedName;
        });
        const ResultCode code = isLast ? make(*change) : ResultCode::success;
        if (code != ResultCode::success) {
            undo();
            return code;
        }
    }
    return ResultCode::success;
}

ResultCode Changes::make(const Change& change) {
    const std::string folder = entryFolder(change.scope);
    if (folder.empty()) {
        return ResultCode{kErrorPathNotFound};
    }
    const std::string path = folder + "/" + entryName(change.scope, change.foldedName);
    if (!change.text.empty()) {
        const mode_t mode = change.scope == Scope::user ? kFolderOfUser : kFolderOfMachine;
        if (const int error = makeFolders(folder, mode); error != 0) {
            return failure(error);
        }
        const ResultCode code = writeBeside(path, change.text);
        if (code != ResultCode::success) {
            return code;
        }
    }
    bool hadEntry = false;
    ResultCode code = moveAside(path, hadEntry);
    if (code == ResultCode::success) {
        steps_.push_back({change.scope, path, hadEntry});
        const bool isMade =
            change.text.empty() || ::rename(beside(path, kNew).c_str(), path.c_str()) == 0;
        code = isMade ? ResultCode::success : failure(errno);
    }
    if (code != ResultCode::success) {
        ::unlink(beside(path, kNew).c_str());
    }
    return code;
}

void Changes::undo() {
    for (; !steps_.empty(); steps_.pop_back()) {
        const Step& step = steps_.back();
        if (step.hadEntry) {
            ::rename(beside(step.path, kFormer).c_str(), step.path.c_str());
        } else {
            ::unlink(step.path.c_str());
        }
    }
}

void Changes::settle(Scope scope) {
    for (const Step& step : steps_) {
        if (step.scope == scope) {
            ::unlink(beside(step.path, kFormer).c_str());
        }
    }
    std::erase_if(steps_, [&](const Step& step) { return step.scope == scope; });
}

std::vector<std::string> interruptedEntries(Scope scope) {
    const std::string folder = entryFolder(scope);
    const std::string_view start = entryStart(scope);
    std::vector<std::string> names;
    std::error_code ignored;
    for (std::filesystem::directory_iterator file(folder, ignored), end; !ignored && file != end;
         file.increment(ignored)) {
        const std::string name = file->path().filename();
        if (!name.starts_with(start)) {
            continue;
        }
        if (name.ends_with(kNew)) {
            ::unlink(file->path().c_str());
        } else if (name.ends_with(kFormer)) {
            names.push_back(name.substr(0, name.size() - kFormer.size()));
        }
    }
    return names;
}

void settleInterrupted(Scope scope, const std::string& entryName, const std::string& text) {
    const std::string path = entryFolder(scope) + "/" + entryName;
    const std::string former = beside(path, kFormer);
    // Users change entries, too, but not what they start.
    const std::string start = execLineOf(text);
    const bool isDone = text.empty() || execLineOf(textIn(path)) == start;
    if (!isDone && execLineOf(textIn(former)) == start) {
        ::rename(former.c_str(), path.c_str());
        return;
    }
    const bool isMade = isDone || (writeBeside(path, text) == ResultCode::success &&
                                   ::rename(beside(path, kNew).c_str(), path.c_str()) == 0);
    if (isMade) {
        ::unlink(former.c_str());
    }
}

}  // namespace orvane::platform::autostart
