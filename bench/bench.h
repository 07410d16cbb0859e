#pragma once

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

/// Small timing for benchmarks that compare two ways of doing the same in one run.
namespace orvane::bench {

/// The best of several runs of `action`, in nanoseconds for one of its `repetitions`.
///
/// The best, not the mean: whatever else the machine does can only add time.
template <class Action>
double bestTime(Action&& action, int runs = 7, int repetitions = 1) {
    using Clock = std::chrono::steady_clock;
    double best = 1e300;
    for (int run = 0; run < runs; ++run) {
        const auto start = Clock::now();
        for (int i = 0; i < repetitions; ++i)
            action();
        const double time = std::chrono::duration<double, std::nano>(Clock::now() - start).count();
        best = std::min(best, time / repetitions);
    }
    return best;
}

/// Times two actions in turns, so that a slow stretch of the machine meets both.
template <class Ours, class Theirs>
std::pair<double, double> bestTimes(Ours&& ours, Theirs&& theirs, int runs = 7,
                                    int repetitions = 1) {
    double best = 1e300;
    double peer = 1e300;
    for (int run = 0; run < runs; ++run) {
        best = std::min(best, bestTime(ours, 1, repetitions));
        peer = std::min(peer, bestTime(theirs, 1, repetitions));
    }
    return {best, peer};
}

/// A file of the build's `bin` folder, which lies beside the benchmarks' own.
inline std::string builtFile(const char* program, const char* name) {
    const std::string path(program);
    const auto end = path.find_last_of("/\\");
    return (end == std::string::npos ? std::string() : path.substr(0, end + 1)) + "../bin/" + name;
}

inline std::string readable(double nanoseconds) {
    char text[64];
    if (nanoseconds < 1e3) std::snprintf(text, sizeof text, "%.1f ns", nanoseconds);
    else if (nanoseconds < 1e6) std::snprintf(text, sizeof text, "%.1f us", nanoseconds / 1e3);
    else std::snprintf(text, sizeof text, "%.2f ms", nanoseconds / 1e6);
    return text;
}

/// One line: what was measured, the library's time, the peer's, and how many times faster the
/// library is.
inline void printRatio(const char* what, double ours, const char* peerName, double peer) {
    std::printf("%-44s %10s   %-18s %10s   ratio %.2f\n", what, readable(ours).c_str(), peerName,
                readable(peer).c_str(), peer / ours);
}

}  // namespace orvane::bench
