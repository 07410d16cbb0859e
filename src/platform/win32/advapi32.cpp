#include "platform/advapi32.h"

#include "platform/registry_operations.h"
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
    table.RegOpenKeyExA.bind<registry::openKeyA>();
    table.RegCreateKeyExA.bind<registry::createKeyA>();
    table.RegQueryValueExA.bind<registry::queryValueA>();
    table.RegSetValueExA.bind<registry::setValueA>();
    table.RegDeleteValueA.bind<registry::deleteValueA>();
    table.RegQueryInfoKeyA.bind<registry::queryInfoKeyA>();
    table.RegEnumKeyA.bind<registry::enumKeyA>();
    table.RegEnumValueA.bind<registry::enumValueA>();
    table.RegCloseKey.bind<registry::closeKey>();
    table.RegOpenKeyExW.bind<registry::openKeyW>();
    table.RegCreateKeyExW.bind<registry::createKeyW>();
    table.RegQueryValueExW.bind<registry::queryValueW>();
    table.RegSetValueExW.bind<registry::setValueW>();
    table.RegDeleteValueW.bind<registry::deleteValueW>();
    table.RegEnumKeyExW.bind<registry::enumKeyW>();
    table.RegEnumValueW.bind<registry::enumValueW>();
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
