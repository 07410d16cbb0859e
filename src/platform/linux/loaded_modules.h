#pragma once

#include <cstdint>
#include <string>
#include <vector>

/// The executables and libraries that the process has loaded.
namespace orvane::platform {

struct LoadedModule {
    std::string path;         ///< in the system's form; absolute for what was loaded from a file
    std::uintptr_t base = 0;  ///< load address
};

/// All of them, the host's executable first.
std::vector<LoadedModule> loadedModules();

/// The module that holds this code: the library, or a program that it is linked into.
std::string ownModulePath();

/// The host's executable; empty when the system does not tell.
std::string executablePath();

}  // namespace orvane::platform
