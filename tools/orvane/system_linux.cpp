#include "system.h"

#include "utf8.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <csignal>
#include <cstdlib>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <system_error>
#include <unistd.h>
#include <utility>

namespace orvane::tool {

namespace {

/// What no process has a descriptor for: a name that doesn't exist.
constexpr const char16_t* kNoFile = u"/proc/self/fd/-1";

int descriptorOf(Stream stream) {
    return stream == Stream::output ? STDOUT_FILENO : STDERR_FILENO;
}

[[noreturn]] void fail(const std::string& what, int number) {
    throw Failure(what + ": " + std::generic_category().message(number));
}

/// Writes all of it; 0 or the error number.
int writeAll(int descriptor, const char* bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t written = ::write(descriptor, bytes, size);
        if (written < 0 && errno != EINTR) return errno;
        if (written > 0) {
            bytes += written;
            size -= static_cast<std::size_t>(written);
        }
    }
    return 0;
}

bool isPlain(std::string_view name) {
    return std::ranges::all_of(name, [](char byte) { return static_cast<signed char>(byte) > 0; });
}

/// Adds all that can be read; 0 or the error number. Throws FileTooLong behind `most` bytes.
int readAll(int descriptor, std::string& bytes, std::uint64_t most = UINT64_MAX) {
    constexpr std::size_t kStep = 1u << 20;
    for (;;) {
        const std::size_t size = bytes.size();
        if (size > most) throw FileTooLong(0);
        bytes.resize(size + kStep);
        const ssize_t count = ::read(descriptor, bytes.data() + size, kStep);
        const int error = count < 0 ? errno : 0;
        bytes.resize(size + static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
        if (count == 0 || (error != 0 && error != EINTR)) return error;
    }
}

/// A descriptor, or the negative result of a call that gave none.
class Descriptor {
public:
    explicit Descriptor(int number) : number_(number) {}
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;
    ~Descriptor() {
        if (number_ >= 0) ::close(number_);
    }
    operator int() const { return number_; }

private:
    int number_;
};

/// The file that a name stands for behind symbolic links; it need not be there.
std::string behindLinks(std::string name) {
    constexpr int kMostLinks = 40;
    std::array<char, PATH_MAX> target{};
    for (int i = 0; i < kMostLinks; ++i) {
        const ssize_t size = ::readlink(name.c_str(), target.data(), target.size());
        if (size < 0) return name;
        const std::string link(target.data(), static_cast<std::size_t>(size));
        name = link.starts_with('/') ? link : name.substr(0, name.rfind('/') + 1) + link;
    }
    fail(name, ELOOP);
}

/// A new file in the folder of `name`, open for writing.
class TemporaryFile {
public:
    explicit TemporaryFile(const std::string& name) {
        constexpr int kTries = 100;
        const std::string folder = name.substr(0, name.rfind('/') + 1);
        for (int i = 0; i < kTries && descriptor_ < 0; ++i) {
            path_ = folder + ".orvane-" + std::to_string(::getpid()) + "-" + std::to_string(i);
            descriptor_ = ::open(path_.c_str(), O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
            if (descriptor_ < 0 && errno != EEXIST) break;
        }
        if (descriptor_ < 0) fail(name, errno);
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile() {
        if (descriptor_ >= 0) ::close(descriptor_);
        if (!path_.empty()) ::unlink(path_.c_str());
    }

    /// Gives it the owner, where this process may, and the mode of the file that it replaces.
    void takeRightsOf(const struct stat& facts) const {
        if (::fchown(descriptor_, facts.st_uid, facts.st_gid) != 0 && errno != EPERM) return;
        ::fchmod(descriptor_, facts.st_mode & 0777);
    }

    /// Each of these gives 0 or the error number.
    int write(std::span<const std::uint8_t> content) {
        return writeAll(descriptor_, reinterpret_cast<const char*>(content.data()), content.size());
    }
    int close() { return ::close(std::exchange(descriptor_, -1)) == 0 ? 0 : errno; }
    int rename(const std::string& name) {
        if (::rename(path_.c_str(), name.c_str()) != 0) return errno;
        path_.clear();
        return 0;
    }

private:
    std::string path_;
    int descriptor_ = -1;
};

}  // namespace

void prepareProcess() {
    std::signal(SIGPIPE, SIG_IGN);
    std::signal(SIGXFSZ, SIG_IGN);
    // A standard descriptor that came closed would be the next file's; one that can't be used for
    // its purpose holds its place.
    for (const int descriptor : {STDIN_FILENO, STDOUT_FILENO, STDERR_FILENO}) {
        if (::fcntl(descriptor, F_GETFD) >= 0) continue;
        if (::open("/dev/null", descriptor == STDIN_FILENO ? O_WRONLY : O_RDONLY) != descriptor) {
            std::abort();
        }
    }
}

std::vector<std::string> commandWords(int argc, char** argv) {
    return {argv + std::min(argc, 1), argv + argc};
}

bool isTerminal(Stream stream) {
    return ::isatty(descriptorOf(stream)) != 0;
}

void writeToOutput(std::string_view text) {
    const int error = writeAll(STDOUT_FILENO, text.data(), text.size());
    if (error == EPIPE) throw ReaderGone();
    if (error != 0) fail("standard output", error);
}

std::string readInput() {
    std::string bytes;
    if (const int error = readAll(STDIN_FILENO, bytes); error != 0) fail("standard input", error);
    return bytes;
}

std::string fullName(const std::string& name) {
    const std::unique_ptr<char, void (*)(void*)> path(::realpath(name.c_str(), nullptr), std::free);
    if (path == nullptr) fail(name, errno);
    return path.get();
}

void writeToErrors(std::string_view text) {
    writeAll(STDERR_FILENO, text.data(), text.size());
}

void endWithoutReader() {
    std::signal(SIGPIPE, SIG_DFL);
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGPIPE);
    sigprocmask(SIG_UNBLOCK, &signals, nullptr);
    std::raise(SIGPIPE);
    std::abort();
}

// O_PATH needs no right to read: whether the file can be read is for the library to find out.
LibraryName::LibraryName(const std::string& name) : text_(toUtf16(name)) {
    if (isPlain(name) && !name.empty()) return;
    descriptor_ = ::open(name.c_str(), O_PATH | O_CLOEXEC);
    text_ = descriptor_ < 0 ? kNoFile : toUtf16("/proc/self/fd/" + std::to_string(descriptor_));
}

LibraryName::~LibraryName() {
    if (descriptor_ >= 0) ::close(descriptor_);
}

std::string readFile(const std::string& name, std::uint64_t most) {
    const Descriptor descriptor(::open(name.c_str(), O_RDONLY | O_CLOEXEC));
    if (descriptor < 0) fail(name, errno);
    struct stat facts {};
    if (::fstat(descriptor, &facts) != 0) fail(name, errno);
    const auto size = static_cast<std::uint64_t>(facts.st_size);
    if (S_ISREG(facts.st_mode) && size > most) throw FileTooLong(size);
    std::string bytes;
    const int error = readAll(descriptor, bytes, most);
    if (error != 0) fail(name, error);
    return bytes;
}

void replaceFile(const std::string& name, std::span<const std::uint8_t> content) {
    const std::string target = behindLinks(name);
    struct stat facts {};
    const bool isThere = ::lstat(target.c_str(), &facts) == 0;
    if (isThere && !S_ISREG(facts.st_mode)) throw Failure(name + ": not a file");
    TemporaryFile file(target);
    if (isThere) file.takeRightsOf(facts);
    int error = file.write(content);
    if (error == 0) error = file.close();
    if (error == 0) error = file.rename(target);
    if (error != 0) fail(name, error);
}

}  // namespace orvane::tool
