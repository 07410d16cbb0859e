#pragma once

#include <fstream>
#include <string>

namespace orvane::test {

/// How much the largest address space that the process has had grows while this lives.
class PeakMemory {
public:
    PeakMemory() : before_(kibibytes()) {}

    /// In KiB; 0 where that can't be told.
    long growth() const { return kibibytes() - before_; }

private:
    static long kibibytes() {
        std::ifstream status("/proc/self/status");
        std::string word;
        while (status >> word) {
            long size = 0;
            if (word == "VmPeak:" && status >> size) return size;
        }
        return 0;
    }

    long before_;
};

}  // namespace orvane::test
