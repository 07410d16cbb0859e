#include "platform/linux/errors.h"
#include "platform/linux/kernel32_parts.h"
#include "platform/linux/names.h"
#include "platform/linux/quiet_write.h"
#include "platform/linux/text_files.h"

#include <algorithm>
#include <cerrno>
#include <charconv>
#include <cstdlib>
#include <ctime>
#include <string_view>
#include <sys/resource.h>
#include <sys/utsname.h>
#include <unistd.h>

namespace orvane::platform {

namespace {

constexpr std::uint64_t kKibibyte = 1024;
// The part of the address space that x86-64 leaves to a process.
constexpr std::uint64_t kUserAddressSpace = std::uint64_t{1} << 47;
// The high-resolution counter counts what the system's clocks do.
constexpr std::int64_t kNanosecondsPerSecond = 1'000'000'000;

/// Takes the number that `text` begins with, and the dot behind it, away from it.
std::uint32_t takeNumber(std::string_view& text) {
    std::uint32_t number = 0;
    const char* end = text.data() + text.size();
    const char* stop = std::from_chars(text.data(), end, number).ptr;
    text.remove_prefix(static_cast<std::size_t>(stop - text.data()));
    if (text.starts_with('.')) {
        text.remove_prefix(1);
    }
    return number;
}

/// Bytes of address space that the process takes.
std::uint64_t virtualSize() {
    return namedNumber(fileText("/proc/self/status"), "VmSize") * kKibibyte;
}

}  // namespace

// The host's own name: a name under DNS goes without its domain, as the platform's does.
std::string computerName() {
    utsname system{};
    if (::uname(&system) != 0) {
        return failWith(errorFromErrno(errno), std::string());
    }
    const std::string_view name = system.nodename;
    return ansiName(name.substr(0, name.find('.')));
}

bool memoryStatus(MemoryStatus& status) {
    const std::string text = fileText("/proc/meminfo");
    const std::uint64_t total = namedNumber(text, "MemTotal") * kKibibyte;
    if (total == 0) {
        return failWith(kErrorInvalidFunction, false);
    }
    const std::uint64_t available = std::min(namedNumber(text, "MemAvailable") * kKibibyte, total);
    status.totalPhysical = total;
    status.availablePhysical = available;
    status.memoryLoad = static_cast<std::uint32_t>((total - available) * 100 / total);
    // The platform's "page file" is all that can be committed: memory and swap together.
    status.totalPageFile = total + namedNumber(text, "SwapTotal") * kKibibyte;
    status.availablePageFile = available + namedNumber(text, "SwapFree") * kKibibyte;
    rlimit limit{};
    const bool limited = ::getrlimit(RLIMIT_AS, &limit) == 0 && limit.rlim_cur != RLIM_INFINITY;
    status.totalVirtual =
        limited ? std::min<std::uint64_t>(limit.rlim_cur, kUserAddressSpace) : kUserAddressSpace;
    status.availableVirtual = status.totalVirtual - std::min(virtualSize(), status.totalVirtual);
    return true;
}

// The numbers are the kernel's. As a system with protected memory and users it stands in the NT
// line. There are no service packs.
bool systemVersion(SystemVersion& version) {
    constexpr std::uint32_t kNtLine = 2;
    utsname system{};
    if (::uname(&system) != 0) {
        return failWith(errorFromErrno(errno), false);
    }
    std::string_view release = system.release;
    version.major = takeNumber(release);
    version.minor = takeNumber(release);
    version.build = takeNumber(release);
    version.platformId = kNtLine;
    version.servicePack.clear();
    version.systemName = ansiName(
        systemTitle(fileText("/etc/os-release"), fileText("/usr/lib/os-release"), system.sysname));
    return true;
}

// The system has no debugger channel. With ORVANE_DEBUG=1 in the environment the text is a line on
// the error output, else it goes nowhere, as it does on the platform while no debugger listens.
void outputDebugString(const std::string& text) {
    const char* wanted = std::getenv("ORVANE_DEBUG");
    if (wanted == nullptr || std::string_view(wanted) != "1") {
        return;
    }
    std::string line = systemName(text.substr(0, text.find('\0')));
    if (!line.ends_with('\n')) {
        line += '\n';
    }
    // One write, so that lines of several threads don't mix; a closed error output is nobody's
    // loss.
    writeQuietly([&line] { return ::write(STDERR_FILENO, line.data(), line.size()); });
}

std::uint32_t currentThreadId() {
    return static_cast<std::uint32_t>(::gettid());
}

std::uint32_t tickCount() {
    timespec now{};
    ::clock_gettime(CLOCK_BOOTTIME, &now);
    return static_cast<std::uint32_t>(now.tv_sec * 1000 + now.tv_nsec / 1'000'000);
}

bool performanceCounter(std::int64_t& counter) {
    timespec now{};
    if (::clock_gettime(CLOCK_MONOTONIC, &now) != 0) {
        return failWith(errorFromErrno(errno), false);
    }
    counter = now.tv_sec * kNanosecondsPerSecond + now.tv_nsec;
    return true;
}

bool performanceFrequency(std::int64_t& frequency) {
    frequency = kNanosecondsPerSecond;
    return true;
}

std::uint64_t systemTimeAsFileTime() {
    // Seconds from 1601-01-01 to 1970-01-01.
    constexpr std::int64_t kEpochs = 11'644'473'600;
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME, &now);
    return static_cast<std::uint64_t>((now.tv_sec + kEpochs) * 10'000'000 + now.tv_nsec / 100);
}

}  // namespace orvane::platform
