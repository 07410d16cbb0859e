#include "commands.h"
#include "library.h"
#include "system.h"

#include <cstdio>

namespace orvane::tool {

namespace {

int runOn(Words words, const char* command, HRESULT (*action)(const host::Library&)) {
    if (!words.empty() && words.front() == "--") words = words.subspan(1);
    else if (!words.empty() && words.front().starts_with("-")) {
        throw UsageError("unknown option " + words.front());
    }
    if (words.size() > 1) throw UsageError(std::string(command) + ": more than one FILE");
    const std::string file = words.empty() ? std::string() : words[0];
    const host::Library library(file.empty() ? file : fullName(file));
    const HRESULT status = action(library);
    if (SUCCEEDED(status)) return kSuccess;
    char code[16];
    std::snprintf(code, sizeof code, "0x%08X", static_cast<unsigned>(status));
    throw Failure((file.empty() ? std::string() : file + ": ") + command + " failed with " + code);
}

}  // namespace

int runRegister(Words words) {
    return runOn(words, "register",
                 [](const host::Library& library) { return library.registerServer(); });
}

int runUnregister(Words words) {
    return runOn(words, "unregister",
                 [](const host::Library& library) { return library.unregisterServer(); });
}

}  // namespace orvane::tool
