#pragma once

#include <fcntl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>

/// What a host takes that loads a picture.
namespace orvane::bench {

/// The peak memory in KiB of a process that does nothing but load the file: the command-line host.
inline long peakKilobytes(const std::string& host, const std::string& path) {
    const pid_t child = fork();
    if (child == 0) {
        dup2(open("/dev/null", O_WRONLY), STDOUT_FILENO);
        execl(host.c_str(), host.c_str(), "picture", "info", path.c_str(), nullptr);
        _exit(127);
    }
    rusage usage{};
    int status = 0;
    if (wait4(child, &status, 0, &usage) != child || WEXITSTATUS(status) == 127) std::exit(1);
    return usage.ru_maxrss;
}

/// That peak against a limit in bytes, and what the limit is.
inline void printPeak(const std::string& host, const std::string& path, long limit,
                      const char* meaning) {
    const long peak = peakKilobytes(host, path);
    std::printf("    peak memory of a host that loads it: %ld MiB, %.2f of %s\n", peak / 1024,
                static_cast<double>(peak) / (static_cast<double>(limit) / 1024), meaning);
}

/// That peak against the decoded size of `bytes` three times, the file, and 16 MiB for the rest.
inline void printPeakOfDecoder(const std::string& host, const std::string& path, long bytes) {
    std::ifstream file(path, std::ios::binary | std::ios::ate);
    printPeak(host, path, 3 * bytes + static_cast<long>(file.tellg()) + (16L << 20),
              "three times the decoded size, the file and 16 MiB");
}

}  // namespace orvane::bench
