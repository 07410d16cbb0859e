#include "platform/linux/errors.h"
#include "platform/linux/handle_table.h"
#include "platform/linux/kernel32_parts.h"
#include "platform/linux/libraries.h"
#include "platform/linux/loaded_modules.h"
#include "platform/linux/names.h"

#include <algorithm>
#include <cstdlib>
#include <dlfcn.h>
#include <link.h>
#include <memory>
#include <mutex>
#include <string_view>

namespace orvane::platform {

namespace {

struct CloseLibrary {
    void operator()(void* library) const { ::dlclose(library); }
};

/// A module that was asked for or loaded. The network library's message table has no file of its
/// own here; it lies in this library.
struct Module {
    using Handle = ModuleHandle;
    static constexpr HandleKind kKind = HandleKind::module;

    std::string path;
    std::uintptr_t base = 0;
    bool networkMessages = false;
    std::shared_ptr<void> library{};  ///< what `loadLibrary` opened, closed with the handle
};

/// Handles of modules that were asked for: asking again gives the same one. There is no call that
/// closes them, and a process loads few modules. A library that was loaded has a handle of its own
/// each time.
struct GivenOut {
    std::string path;
    std::uintptr_t base;
    bool networkMessages;
    ModuleHandle handle;
};
constinit std::mutex givenOutMutex;
constinit std::vector<GivenOut> givenOut;

constexpr std::string_view kNetworkLibrary = "wininet.dll";

bool sameWithoutCase(std::string_view one, std::string_view other) {
    const auto lower = [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; };
    return std::equal(one.begin(), one.end(), other.begin(), other.end(),
                      [lower](char a, char b) { return lower(a) == lower(b); });
}

std::string_view lastName(std::string_view path) {
    return path.substr(path.rfind('/') + 1);
}

/// True for the name or path `wanted` of a module; ".so" may be left out.
bool isCalled(const LoadedModule& module, const std::string& wanted) {
    const std::string_view have = wanted.find('/') == std::string::npos
                                      ? lastName(module.path)
                                      : std::string_view(module.path);
    return !have.empty() && (have == wanted || have == wanted + ".so");
}

/// The module of an entry in the system's own list; without a path when it is gone.
Module moduleAt(const link_map& entry) {
    for (const LoadedModule& module : loadedModules()) {
        if (module.base == static_cast<std::uintptr_t>(entry.l_addr)) {
            return {module.path, module.base};
        }
    }
    return {};
}

ModuleHandle handleOf(const Module& module) {
    const std::scoped_lock lock(givenOutMutex);
    for (const GivenOut& entry : givenOut) {
        if (entry.path == module.path && entry.base == module.base &&
            entry.networkMessages == module.networkMessages) {
            return entry.handle;
        }
    }
    const ModuleHandle handle = addHandle(std::make_shared<Module>(module));
    if (handle != ModuleHandle::none) {
        givenOut.push_back({module.path, module.base, module.networkMessages, handle});
    }
    return handle;
}

}  // namespace

ModuleHandle moduleHandle(const std::string& moduleName) {
    if (sameWithoutCase(moduleName, kNetworkLibrary) || sameWithoutCase(moduleName, "wininet")) {
        return handleOf({ownModulePath(), 0, true});
    }
    const std::string wanted = systemName(moduleName);
    for (const LoadedModule& module : loadedModules()) {
        if (!wanted.empty() && isCalled(module, wanted)) {
            return handleOf({module.path, module.base, false});
        }
    }
    return failWith(kErrorModuleNotFound, ModuleHandle::none);
}

ModuleHandle moduleOf(const void* address) {
    Dl_info info{};
    void* map = nullptr;
    if (::dladdr1(address, &info, &map, RTLD_DL_LINKMAP) != 0 && map != nullptr) {
        const Module module = moduleAt(*static_cast<const link_map*>(map));
        if (!module.path.empty()) {
            return handleOf(module);
        }
    }
    return failWith(kErrorModuleNotFound, ModuleHandle::none);
}

ModuleHandle loadLibrary(const std::string& fileName) {
    if (fileName.find('\0') != std::string::npos) {
        return failWith(kErrorInvalidName, ModuleHandle::none);
    }
    void* library = openLibrary(systemName(fileName));
    if (library == nullptr) {
        return failWith(kErrorModuleNotFound, ModuleHandle::none);
    }
    const std::shared_ptr<void> held(library, CloseLibrary());
    link_map* map = nullptr;
    Module module;
    if (::dlinfo(library, RTLD_DI_LINKMAP, &map) == 0) {
        module = moduleAt(*map);
    }
    module.library = held;
    return addHandle(std::make_shared<Module>(std::move(module)));
}

bool freeLibrary(ModuleHandle handle) {
    const auto module = findObject<Module>(handle);
    if (module == nullptr) {
        return false;
    }
    if (module->library == nullptr) {
        return failWith(kErrorInvalidHandle, false);
    }
    return removeHandle<Module>(handle) != nullptr;
}

std::string moduleFileName(ModuleHandle handle) {
    if (handle == ModuleHandle::none) {
        const std::string path = executablePath();
        return path.empty() ? failWith(kErrorModuleNotFound, path) : ansiName(path);
    }
    const auto module = findObject<Module>(handle);
    if (module == nullptr) {
        return failWith(kErrorModuleNotFound, std::string());
    }
    const auto isLoaded = [&module](const LoadedModule& loaded) {
        return loaded.path == module->path && loaded.base == module->base;
    };
    const auto all = loadedModules();
    if (!module->networkMessages && std::none_of(all.begin(), all.end(), isLoaded)) {
        return failWith(kErrorModuleNotFound, std::string());
    }
    return ansiName(module->path);
}

bool isNetworkMessages(ModuleHandle handle) {
    const auto module = findObject<Module>(handle);
    return module != nullptr && module->networkMessages;
}

}  // namespace orvane::platform
