// Eight processes write and read one key while others that do the same are killed, for as many
// seconds as the argument says. Every value that was reported written must be there, none may be
// torn, and no call may fail.

#include "platform/advapi32.h"

#include <algorithm>
#include <array>
#include <atomic>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <random>
#include <string>
#include <sys/mman.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvane::platform {
namespace {

using Clock = std::chrono::steady_clock;

constexpr int kWorkers = 8;
constexpr int kVictims = 4;
constexpr int kAll = kWorkers + kVictims;
constexpr const char* kPath = "Software\\Orvane\\stress";

/// What the processes tell each other, in shared memory.
struct Shared {
    struct Process {
        std::atomic<std::uint32_t> started{0};   ///< the number that is being written
        std::atomic<std::uint32_t> reported{0};  ///< the last number whose writing succeeded
    };
    std::array<Process, kAll> processes;
    std::atomic<std::uint32_t> calls{0};
    std::atomic<std::uint32_t> failed{0};
    std::atomic<std::uint32_t> lastFailure{0};
    std::atomic<std::uint32_t> torn{0};
    std::atomic<std::uint32_t> lost{0};
    std::atomic<std::uint32_t> kills{0};
    /// Calls by the milliseconds that they took.
    std::array<std::atomic<std::uint32_t>, 2000> waits;
    std::atomic<bool> end{false};
};

Shared* shared = nullptr;

std::uint32_t timed(ResultCode (*call)(void*), void* context) {
    const auto start = Clock::now();
    const auto code = static_cast<std::uint32_t>(call(context));
    const auto took =
        std::chrono::duration_cast<std::chrono::milliseconds>(Clock::now() - start).count();
    ++shared->waits[std::min<std::size_t>(static_cast<std::size_t>(took), 1999)];
    ++shared->calls;
    return code;
}

template <class Call>
std::uint32_t noted(Call&& call) {
    const std::uint32_t code =
        timed([](void* context) { return (*static_cast<Call*>(context))(); }, &call);
    if (code != 0) {
        ++shared->failed;
        shared->lastFailure = code;
    }
    return code;
}

/// A value that shows when a part of it is another's: its number all over, and a length that
/// follows from it.
std::vector<std::uint8_t> valueOf(std::uint32_t writer, std::uint32_t counter) {
    const std::uint32_t number = counter * kAll + writer;
    std::vector<std::uint8_t> value(4 * (8 + number % 700));
    for (std::size_t at = 0; at < value.size(); at += 4)
        std::memcpy(&value[at], &number, 4);
    return value;
}

/// The number in a value; none when it is torn.
bool numberIn(const std::uint8_t* data, std::uint32_t size, std::uint32_t& number) {
    if (size < 4) return false;
    std::memcpy(&number, data, 4);
    const auto expected = valueOf(number % kAll, number / kAll);
    return expected.size() == size && std::equal(expected.begin(), expected.end(), data);
}

bool readNumber(RegistryKey key, const std::string& name, std::uint32_t& number) {
    std::array<std::uint8_t, 4000> data{};
    std::uint32_t size = data.size();
    std::uint32_t type = 0;
    if (noted([&] {
            size = data.size();
            return advapi32.RegQueryValueExA(key, name, type, data.data(), size);
        }) != 0) {
        return false;
    }
    if (numberIn(data.data(), size, number)) return true;
    ++shared->torn;
    return false;
}

/// The value that a process had reported, or the one that it was writing when it was killed.
void checkOwn(RegistryKey key, std::uint32_t process) {
    const std::uint32_t reported = shared->processes[process].reported;
    if (reported == 0) return;
    std::uint32_t number = 0;
    if (!readNumber(key, "own " + std::to_string(process), number)) return;
    const std::uint32_t found = number / kAll;
    if (number % kAll != process || found < reported ||
        found > shared->processes[process].started) {
        ++shared->lost;
    }
}

[[noreturn]] void work(std::uint32_t process) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    auto& own = shared->processes[process];
    RegistryKey key{};
    KeyDisposition done{};
    if (noted([&] { return advapi32.RegCreateKeyExA(kHkeyCurrentUser, kPath, 0, 3, key, done); }) !=
        0) {
        ::_exit(1);
    }
    checkOwn(key, process);
    while (!shared->end) {
        const std::uint32_t counter = own.started + 1;
        own.started = counter;
        const auto value = valueOf(process, counter);
        if (noted([&] {
                return advapi32.RegSetValueExA(key, "own " + std::to_string(process), kRegBinary,
                                               value);
            }) == 0) {
            own.reported = counter;
        }
        noted([&] { return advapi32.RegSetValueExA(key, "shared", kRegBinary, value); });
        std::uint32_t number = 0;
        readNumber(key, "shared", number);
        checkOwn(key, process);
    }
    advapi32.RegCloseKey(key);
    std::exit(0);
}

pid_t start(std::uint32_t process) {
    const pid_t child = ::fork();
    if (child == 0) work(process);
    return child;
}

int run(int seconds) {
    std::string folder = "/tmp/orvane-stress-XXXXXX";
    if (::mkdtemp(folder.data()) == nullptr) return 1;
    ::setenv("ORVANE_REGISTRY_USER", (folder + "/user").c_str(), 1);
    ::setenv("ORVANE_REGISTRY_MACHINE", (folder + "/machine").c_str(), 1);
    void* memory =
        ::mmap(nullptr, sizeof(Shared), PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS, -1, 0);
    if (memory == MAP_FAILED) return 1;
    shared = new (memory) Shared;

    std::array<pid_t, kAll> children{};
    for (std::uint32_t process = 0; process < kAll; ++process)
        children[process] = start(process);
    std::minstd_rand random(1);
    const auto end = Clock::now() + std::chrono::seconds(seconds);
    while (Clock::now() < end) {
        ::usleep(std::uniform_int_distribution<useconds_t>(5000, 60000)(random));
        const std::uint32_t victim =
            kWorkers + std::uniform_int_distribution<std::uint32_t>(0, kVictims - 1)(random);
        ::kill(children[victim], SIGKILL);
        ::waitpid(children[victim], nullptr, 0);
        ++shared->kills;
        children[victim] = start(victim);
    }
    shared->end = true;
    int status = 0;
    bool ended = true;
    for (const pid_t child : children) {
        ended = ::waitpid(child, &status, 0) == child && status == 0 && ended;
    }

    RegistryKey key{};
    ended =
        advapi32.RegOpenKeyExA(kHkeyCurrentUser, kPath, 0, 1, key) == ResultCode::success && ended;
    std::uint32_t written = 0;
    for (std::uint32_t process = 0; process < kAll; ++process) {
        checkOwn(key, process);
        written += shared->processes[process].reported;
    }
    advapi32.RegCloseKey(key);

    const std::uint32_t calls = shared->calls;
    const auto within = [calls](double share) {
        std::uint32_t sum = 0;
        for (std::size_t took = 0; took < shared->waits.size(); ++took) {
            sum += shared->waits[took];
            if (sum >= calls * share) return took;
        }
        return shared->waits.size();
    };
    bool setAside = false;
    for (const auto& entry : std::filesystem::directory_iterator(folder + "/user"))
        setAside = entry.path().string().find(".damaged-") != std::string::npos || setAside;
    std::printf("%u calls, %u values written, %u processes killed; %u calls failed (last %u), %u "
                "values torn, %u lost; p99 %zu ms, p99.9 %zu ms, longest %zu ms%s%s\n",
                calls, written, shared->kills.load(), shared->failed.load(),
                shared->lastFailure.load(), shared->torn.load(), shared->lost.load(), within(0.99),
                within(0.999), within(1.0), setAside ? "; a database was set aside" : "",
                ended ? "" : "; a process ended badly");
    std::filesystem::remove_all(folder);
    const bool worked = written > 100 && shared->kills > 0;
    return shared->failed == 0 && shared->torn == 0 && shared->lost == 0 && ended && worked &&
                   !setAside
               ? 0
               : 1;
}

}  // namespace
}  // namespace orvane::platform

int main(int count, char** arguments) {
    return orvane::platform::run(count > 1 ? std::atoi(arguments[1]) : 20);
}
