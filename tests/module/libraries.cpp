#include "libraries.h"

#include <algorithm>

namespace orvane::tests {

#ifdef _WIN32

// The build machine's root is drive Z: under Wine.
std::string builtFile(const std::string& name) {
    std::string path = "Z:" ORVANE_BIN_DIR "/" + name;
    std::ranges::replace(path, '/', '\\');
    return path;
}

TheComponent::TheComponent() : Library(builtFile("OrvTestComponent.DLL")) {}

bool isLoaded(const std::string& path) {
    return GetModuleHandleA(path.substr(path.rfind('\\') + 1).c_str()) != nullptr;
}

#else

std::string builtFile(const std::string& name) {
    return ORVANE_BIN_DIR "/" + name;
}

TheComponent::TheComponent() : Library(builtFile("libOrvTestComponent.so")) {}

bool isLoaded(const std::string& path) {
    void* const found = dlopen(path.c_str(), RTLD_NOW | RTLD_NOLOAD);
    if (found != nullptr) dlclose(found);
    return found != nullptr;
}

#endif

}  // namespace orvane::tests
