#include "platform/advapi32.h"

#include "platform/win32/registry.h"
#include "platform/win32/system.h"

#include <array>

namespace orvane::platform {

namespace win32 {

namespace {

std::string getUserName() {
    std::array<char, 512> name{};
    DWORD size = static_cast<DWORD>(name.size());
    // The size that comes back counts the closing NUL.
    if (!::GetUserNameA(name.data(), &size) || size == 0) return {};
    return {name.data(), size - 1};
}

/// NameSamCompatible of EXTENDED_NAME_FORMAT (secext.h): "DOMAIN\user".
constexpr int kNameSamCompatible = 2;

std::string fullUserNameOfSystem() {
    using Function = BOOLEAN(WINAPI*)(int format, char* name, ULONG* size);
    static const auto function = systemFunctionAs<Function>("secur32.dll", "GetUserNameExA");
    if (function == nullptr) return {};
    std::array<char, 1024> name{};
    ULONG size = static_cast<ULONG>(name.size());
    if (!function(kNameSamCompatible, name.data(), &size)) return {};
    return name.data();
}

// Where the system can't tell (the library or the domain is missing), the user is the computer's.
std::string getFullUserName() {
    std::string name = fullUserNameOfSystem();
    if (!name.empty()) return name;
    const std::string user = getUserName();
    if (user.empty()) return {};
    std::array<char, 256> computer{};
    DWORD size = static_cast<DWORD>(computer.size());
    if (!::GetComputerNameA(computer.data(), &size)) return {};
    return std::string(computer.data(), size) + '\\' + user;
}

constexpr Advapi32 boundAdvapi32() {
    Advapi32 table;
    table.GetUserNameA.bind<getUserName>();
    table.RegOpenKeyExA.bind<openKeyA>();
    table.RegCreateKeyExA.bind<createKeyA>();
    table.RegQueryValueExA.bind<queryValueA>();
    table.RegSetValueExA.bind<setValueA>();
    table.RegDeleteValueA.bind<deleteValueA>();
    table.RegQueryInfoKeyA.bind<queryInfoKeyA>();
    table.RegEnumKeyA.bind<enumKeyA>();
    table.RegEnumValueA.bind<enumValueA>();
    table.RegCloseKey.bind<closeKey>();
    table.RegOpenKeyExW.bind<openKeyW>();
    table.RegCreateKeyExW.bind<createKeyW>();
    table.RegQueryValueExW.bind<queryValueW>();
    table.RegSetValueExW.bind<setValueW>();
    table.RegDeleteValueW.bind<deleteValueW>();
    table.RegEnumKeyExW.bind<enumKeyW>();
    table.RegEnumValueW.bind<enumValueW>();
    return table;
}
static_assert(allBound(boundAdvapi32()));

constexpr Secur32 boundSecur32() {
    Secur32 table;
    table.GetUserNameExA.bind<getFullUserName>();
    return table;
}
static_assert(allBound(boundSecur32()));

}  // namespace

}  // namespace win32

constinit Advapi32 advapi32 = win32::boundAdvapi32();
constinit Secur32 secur32 = win32::boundSecur32();

}  // namespace orvane::platform
