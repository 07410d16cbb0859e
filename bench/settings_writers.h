#pragma once

#include "bench.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <sys/wait.h>
#include <unistd.h>
#include <vector>

namespace orvane::bench {

/// A registry of the benchmark's own, on the disk that the user's would be on: in a new folder
/// below the home folder, gone at the end.
class OwnRegistry {
public:
    OwnRegistry() {
        const char* home = std::getenv("HOME");
        folder_ = std::string(home == nullptr ? "/tmp" : home) + "/orvane-bench-XXXXXX";
        if (::mkdtemp(folder_.data()) == nullptr) std::exit(1);
        ::setenv("ORVANE_REGISTRY_USER", folder_.c_str(), 1);
    }
    ~OwnRegistry() {
        std::error_code ignored;
        std::filesystem::remove_all(folder_, ignored);
    }
    OwnRegistry(const OwnRegistry&) = delete;
    OwnRegistry& operator=(const OwnRegistry&) = delete;

private:
    std::string folder_;
};

inline constexpr int kWriters = 8;
inline constexpr int kSavesOfEach = 4000;

/// Runs in a process of its own: saves again and again, and writes each time to the pipe.
template <class Session>
void writeTimes(int pipe, Session&& session) {
    using Clock = std::chrono::steady_clock;
    std::vector<double> times;
    session([&](auto&& save) {
        for (int i = 0; i < kSavesOfEach; ++i) {
            const auto start = Clock::now();
            save();
            times.push_back(std::chrono::duration<double, std::nano>(Clock::now() - start).count());
        }
        // The others still write when this one is through, and its end deletes their key.
        const auto* bytes = reinterpret_cast<const char*>(times.data());
        for (std::size_t done = 0; done < times.size() * sizeof(double);) {
            const ssize_t written =
                ::write(pipe, bytes + done, times.size() * sizeof(double) - done);
            if (written <= 0) std::_Exit(1);
            done += static_cast<std::size_t>(written);
        }
        ::close(pipe);
        std::_Exit(0);
    });
}

/// Lets eight processes save at once, and prints how long their calls took. `session` gives its
/// argument a function that saves.
template <class Session>
void printWriters(Session&& session) {
    std::vector<int> pipes;
    for (int writer = 0; writer < kWriters; ++writer) {
        int ends[2];
        if (::pipe(ends) != 0) return;
        if (::fork() == 0) {
            ::close(ends[0]);
            writeTimes(ends[1], session);
        }
        ::close(ends[1]);
        pipes.push_back(ends[0]);
    }
    std::vector<double> times;
    for (const int pipe : pipes) {
        double time = 0;
        while (::read(pipe, &time, sizeof time) == sizeof time)
            times.push_back(time);
        ::close(pipe);
    }
    int failed = 0;
    for (int status = 0; ::wait(&status) > 0;)
        failed += status == 0 ? 0 : 1;
    std::ranges::sort(times);
    if (times.empty()) return;
    const auto at = [&](double part) {
        return readable(
            times[static_cast<std::size_t>(part * static_cast<double>(times.size() - 1))]);
    };
    std::printf("SaveSetting in %d processes at once: median %s, p99 %s, p99.9 %s (limit 100 ms), "
                "longest %s; %zu calls, %d processes failed\n",
                kWriters, at(0.5).c_str(), at(0.99).c_str(), at(0.999).c_str(), at(1).c_str(),
                times.size(), failed);
}

}  // namespace orvane::bench
