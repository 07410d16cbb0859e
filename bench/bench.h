#pragma once

#include <algorithm>
#include <array>
#include <chrono>
#include <cstdio>
#include <string>
#include <vector>

/// Small timing for benchmarks that compare two ways of doing the same in one run.
namespace orvane::bench {

/// One run of `action`, in nanoseconds for one of its `repetitions`.
template <class Action>
double timeOf(Action&& action, int repetitions = 1) {
    using Clock = std::chrono::steady_clock;
    const auto start = Clock::now();
    for (int i = 0; i < repetitions; ++i)
        action();
    return std::chrono::duration<double, std::nano>(Clock::now() - start).count() / repetitions;
}

/// The one in the middle; of an even number the mean of the two.
inline double median(std::vector<double> times) {
    std::ranges::sort(times);
    const std::size_t middle = times.size() / 2;
    return times.size() % 2 == 1 ? times[middle] : (times[middle - 1] + times[middle]) / 2;
}

/// The medians of several runs of each action, taken in turns, so that a slow stretch of the
/// machine meets all of them.
template <class... Actions>
std::array<double, sizeof...(Actions)> mediansInTurns(int runs, int repetitions,
                                                      Actions&&... actions) {
    std::array<std::vector<double>, sizeof...(Actions)> times;
    for (int run = 0; run < runs; ++run) {
        std::size_t turn = 0;
        (times[turn++].push_back(timeOf(actions, repetitions)), ...);
    }
    std::array<double, sizeof...(Actions)> medians{};
    std::ranges::transform(times, medians.begin(), median);
    return medians;
}

/// The median of several runs of `action`, in nanoseconds for one of its `repetitions`.
template <class Action>
double medianTime(Action&& action, int runs = 7, int repetitions = 1) {
    return mediansInTurns(runs, repetitions, action)[0];
}

/// The medians of two actions that are timed in turns.
template <class Ours, class Theirs>
std::array<double, 2> medianTimes(Ours&& ours, Theirs&& theirs, int runs = 7, int repetitions = 1) {
    return mediansInTurns(runs, repetitions, ours, theirs);
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
