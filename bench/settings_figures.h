#pragma once

#include "bench.h"

#include <cstdio>
#include <cstdlib>
#include <string>

namespace orvane::bench {

/// What the benchmark of the settings measures, in nanoseconds.
struct Figures {
    double load = 0;  ///< LoadSetting of a value that is there
    double save = 0;  ///< SaveSetting
    double fallback =
        0;  ///< LoadSetting of a value of an older version, a hundred of which are there

    void print() const {
        const auto line = [](const char* what, double time, const char* limit) {
            std::printf("%-44s %10s   limit %s\n", what, readable(time).c_str(), limit);
        };
        line("LoadSetting of a present value", load, "40 us");
        line("SaveSetting", save, "60 us");
        line("LoadSetting from the newest of 100 versions", fallback, "1.5 ms");
    }

#ifndef _WIN32
    /// Measures the peers in the same run, those that are built.
    void compare(const std::string& program) const {
        const std::string folder = program.substr(0, program.rfind('/') + 1);
        compareWith("QSettings, sync", folder + "peer/qsettings");
        compareWith("Wine's registry", folder + "../../../scripts/wine-run " + folder +
                                           "../../windows/bench/settings.exe --figures");
    }

private:
    void compareWith(const char* peer, const std::string& command) const {
        Figures theirs;
        std::FILE* output = ::popen((command + " 2>/dev/null").c_str(), "r");
        const int read = output == nullptr ? 0
                                           : std::fscanf(output, "%lf %lf %lf", &theirs.load,
                                                         &theirs.save, &theirs.fallback);
        if (output != nullptr) ::pclose(output);
        if (read < 2) {
            std::printf("%s: not measured, its program is not built\n", peer);
            return;
        }
        printRatio("LoadSetting of a present value", load, peer, theirs.load);
        printRatio("SaveSetting", save, peer, theirs.save);
        if (read == 3) {
            printRatio("LoadSetting from the newest of 100 versions", fallback, peer,
                       theirs.fallback);
        }
    }
#endif
};

}  // namespace orvane::bench
