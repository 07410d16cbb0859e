#include "platform/linux/libraries.h"

#include <array>
#include <dlfcn.h>
#include <string_view>
#include <strings.h>

namespace orvane::platform {

namespace {

struct OtherName {
    const char* windows;
    const char* here;
};

// The one place that knows what a Windows library is called here.
constexpr std::array kOtherNames = {
    OtherName{kZlibLibrary, "libz.so.1"},
};

std::string fileOf(const std::string& name) {
    const std::size_t folder = name.rfind('/') + 1;
    for (const OtherName& each : kOtherNames) {
        if (::strcasecmp(name.c_str() + folder, each.windows) == 0) {
            return name.substr(0, folder) + each.here;
        }
    }
    return name;
}

}  // namespace

void* openLibrary(const std::string& name) {
    // An empty name would be the host's executable.
    return name.empty() ? nullptr : ::dlopen(fileOf(name).c_str(), RTLD_NOW | RTLD_LOCAL);
}

}  // namespace orvane::platform
