#include "platform/linux/loaded_modules.h"

#include <climits>
#include <cstdlib>
#include <cstring>
#include <dlfcn.h>
#include <link.h>
#include <memory>
#include <unistd.h>

namespace orvane::platform {

namespace {

// The library's file, empty in a program that is linked with this code. Found out while the library
// is loaded: the name by which it was asked for may be relative to the folder the process is in
// then.
constinit char ownPath[PATH_MAX] = {};

[[gnu::constructor]] void findOwnPath() {
    Dl_info info{};
    void* extra = nullptr;
    if (::dladdr1(ownPath, &info, &extra, RTLD_DL_LINKMAP) == 0 || extra == nullptr) {
        return;
    }
    const auto* map = static_cast<const link_map*>(extra);
    if (map->l_name == nullptr || map->l_name[0] == '\0' ||
        ::realpath(map->l_name, ownPath) == nullptr) {
        ownPath[0] = '\0';
    }
}

/// The absolute form of the name that a module was loaded by; a name without a folder stays.
std::string absolute(const char* name) {
    if (name[0] == '/' || std::strchr(name, '/') == nullptr) {
        return name;
    }
    const std::unique_ptr<char, void (*)(void*)> path(::realpath(name, nullptr), std::free);
    return path == nullptr ? name : path.get();
}

}  // namespace

std::string executablePath() {
    std::vector<char> buffer(256);
    for (;;) {
        const ssize_t length = ::readlink("/proc/self/exe", buffer.data(), buffer.size());
        if (length < 0) {
            return {};
        }
        if (static_cast<std::size_t>(length) < buffer.size()) {
            return std::string(buffer.data(), static_cast<std::size_t>(length));
        }
        buffer.resize(buffer.size() * 2);
    }
}

std::vector<LoadedModule> loadedModules() {
    std::vector<LoadedModule> modules;
    ::dl_iterate_phdr(
        [](dl_phdr_info* info, std::size_t, void* context) {
            auto& found = *static_cast<std::vector<LoadedModule>*>(context);
            // The first one is the executable and comes without a name.
            const std::string path =
                found.empty() ? executablePath()
                              : absolute(info->dlpi_name == nullptr ? "" : info->dlpi_name);
            found.push_back({path, static_cast<std::uintptr_t>(info->dlpi_addr)});
            return 0;
        },
        &modules);
    return modules;
}

std::string ownModulePath() {
    return ownPath[0] != '\0' ? std::string(ownPath) : executablePath();
}

}  // namespace orvane::platform
