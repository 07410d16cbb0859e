#include "platform/linux/loaded_modules.h"

#include <climits>
#include <cstdio>
#include <cstdlib>
#include <dlfcn.h>
#include <link.h>
#include <memory>
#include <string_view>
#include <unistd.h>

namespace orvane::platform {

namespace {

// The library's file, empty in a program that is linked with this code. Found out while the library
// is loaded: the name by which it was asked for may be relative to the folder the process is in
// then.
constinit char ownPath[PATH_MAX] = {};
constinit std::uintptr_t ownBase = 0;

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
    ownBase = static_cast<std::uintptr_t>(map->l_addr);
}

/// The path of a line of /proc/self/maps, "from-to rights offset device inode path", when the
/// address lies in it.
std::string_view pathAt(std::string_view line, std::uintptr_t address) {
    char* end = nullptr;
    const std::uintptr_t from = std::strtoull(line.data(), &end, 16);
    if (*end != '-' || address < from || address >= std::strtoull(end + 1, nullptr, 16)) return {};
    const std::size_t path = line.find('/');
    if (path == std::string_view::npos) return {};
    line.remove_prefix(path);
    line = line.substr(0, line.find('\n'));
    // A file that is gone still has the name that it had.
    constexpr std::string_view kDeleted = " (deleted)";
    if (line.ends_with(kDeleted)) line.remove_suffix(kDeleted.size());
    return line;
}

/// The file that the system has mapped at an address, empty when it doesn't tell.
std::string mappedFile(std::uintptr_t address) {
    const std::unique_ptr<std::FILE, int (*)(std::FILE*)> maps(std::fopen("/proc/self/maps", "re"),
                                                               std::fclose);
    struct Line {
        ~Line() { std::free(text); }
        char* text = nullptr;
        std::size_t room = 0;
    } line;
    std::string path;
    while (maps != nullptr && path.empty() && ::getline(&line.text, &line.room, maps.get()) >= 0)
        path = pathAt(line.text, address);
    return path;
}

/// A relative name counts from the folder that the process was in when the module was loaded, which
/// need not be the one it is in now.
bool isRelative(std::string_view name) {
    return !name.starts_with('/') && name.find('/') != std::string_view::npos;
}

/// An address in a module: its first byte in memory.
std::uintptr_t startOf(const dl_phdr_info& info) {
    for (std::size_t i = 0; i < info.dlpi_phnum; ++i) {
        if (info.dlpi_phdr[i].p_type == PT_LOAD) {
            return static_cast<std::uintptr_t>(info.dlpi_addr + info.dlpi_phdr[i].p_vaddr);
        }
    }
    return static_cast<std::uintptr_t>(info.dlpi_addr);
}

/// The full name of the module's file; a name without a folder stays.
std::string fileOf(const dl_phdr_info& info) {
    const std::string name = info.dlpi_name == nullptr ? "" : info.dlpi_name;
    if (!isRelative(name)) return name;
    const auto base = static_cast<std::uintptr_t>(info.dlpi_addr);
    if (base == ownBase && ownPath[0] != '\0') return ownPath;
    const std::string file = mappedFile(startOf(info));
    return file.empty() ? name : file;
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
            found.push_back({found.empty() ? executablePath() : fileOf(*info),
                             static_cast<std::uintptr_t>(info->dlpi_addr)});
            return 0;
        },
        &modules);
    return modules;
}

std::string ownModulePath() {
    return ownPath[0] != '\0' ? std::string(ownPath) : executablePath();
}

}  // namespace orvane::platform
