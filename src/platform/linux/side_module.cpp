#include "platform/linux/side_module.h"

#include "platform/linux/loaded_modules.h"

#include <dlfcn.h>

namespace orvane::platform {

namespace {

void* functionIn(const std::string& path, const char* function) {
    // Never closed again: what the module made may still be in use, and nobody counts it.
    void* module = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    return module == nullptr ? nullptr : ::dlsym(module, function);
}

}  // namespace

void* sideModuleFunction(const char* module, const char* function) {
    const std::string own = ownModulePath();
    const std::string folder = own.substr(0, own.rfind('/') + 1);
    if (!folder.starts_with('/')) return nullptr;
    void* found = functionIn(folder + module, function);
    if (found == nullptr && own == executablePath()) {
        found = functionIn(folder + "../bin/" + module, function);
    }
    return found;
}

}  // namespace orvane::platform
