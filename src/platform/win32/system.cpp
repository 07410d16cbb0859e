#include "platform/win32/system.h"

#include "platform/live_objects.h"

namespace orvane::platform {

std::uint32_t lastError() {
    return ::GetLastError();
}

void setLastError(std::uint32_t error) {
    ::SetLastError(error);
}

// Picture objects are the system's own and keep nothing of ours alive.
std::uint32_t livePlatformObjects() {
    return 0;
}

namespace win32 {

FARPROC systemFunction(const char* library, const char* name) {
    const std::string folder =
        systemText([](char* buffer, DWORD size) { return ::GetSystemDirectoryA(buffer, size); });
    if (folder.empty()) return nullptr;
    const HMODULE module = ::LoadLibraryA((folder + '\\' + library).c_str());
    return module == nullptr ? nullptr : ::GetProcAddress(module, name);
}

}  // namespace win32

}  // namespace orvane::platform
