#include "platform/advapi32.h"

#include "platform/linux/errors.h"
#include "platform/linux/kernel32_parts.h"
#include "platform/linux/names.h"
#include "platform/registry_operations.h"

#include <cerrno>
#include <pwd.h>
#include <unistd.h>
#include <vector>

namespace orvane::platform {

namespace {

/// The name that the user database gives the process's user.
std::string userName() {
    constexpr std::size_t kMost = 1u << 20;
    std::vector<char> buffer(1024);
    passwd entry{};
    passwd* found = nullptr;
    int failure = 0;
    while ((failure = ::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found)) ==
               ERANGE &&
           buffer.size() < kMost) {
        buffer.resize(buffer.size() * 2);
    }
    if (failure != 0) {
        return failWith(errorFromErrno(failure), std::string());
    }
    if (found == nullptr) {
        return failWith(kErrorNoneMapped, std::string());
    }
    return ansiName(entry.pw_name);
}

std::string qualifiedUserName() {
    const std::string user = userName();
    const std::string computer = user.empty() ? user : computerName();
    return computer.empty() ? computer : computer + "\\" + user;
}

constexpr Advapi32 boundAdvapi32() {
    Advapi32 table;
    table.GetUserNameA.bind<&userName>();
    table.RegOpenKeyExA.bind<&registry::openKeyA>();
    table.RegCreateKeyExA.bind<&registry::createKeyA>();
    table.RegQueryValueExA.bind<&registry::queryValueA>();
    table.RegSetValueExA.bind<&registry::setValueA>();
    table.RegDeleteValueA.bind<&registry::deleteValueA>();
    table.RegQueryInfoKeyA.bind<&registry::queryInfoKeyA>();
    table.RegEnumKeyA.bind<&registry::enumKeyA>();
    table.RegEnumValueA.bind<&registry::enumValueA>();
    table.RegCloseKey.bind<&registry::closeKey>();
    table.RegOpenKeyExW.bind<&registry::openKeyW>();
    table.RegCreateKeyExW.bind<&registry::createKeyW>();
    table.RegQueryValueExW.bind<&registry::queryValueW>();
    table.RegSetValueExW.bind<&registry::setValueW>();
    table.RegDeleteValueW.bind<&registry::deleteValueW>();
    table.RegEnumKeyExW.bind<&registry::enumKeyW>();
    table.RegEnumValueW.bind<&registry::enumValueW>();
    return table;
}
static_assert(allBound(boundAdvapi32()));

constexpr Secur32 boundSecur32() {
    Secur32 table;
    table.GetUserNameExA.bind<&qualifiedUserName>();
    return table;
}
static_assert(allBound(boundSecur32()));

}  // namespace

constinit Advapi32 advapi32 = boundAdvapi32();
constinit Secur32 secur32 = boundSecur32();

}  // namespace orvane::platform
