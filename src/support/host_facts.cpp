#include "support/host_facts.h"

#include "frame/values/codepage.h"
#include "platform/advapi32.h"
#include "platform/kernel32.h"
#include "support/platform_failure.h"

#include <string>

namespace orvane {

WString nqGetUserName() {
    const std::string name = platform::advapi32.GetUserNameA();
    if (name.empty()) raisePlatformFailure();
    return fromAnsi(name);
}

WString nqGetFullUserName(bool qualified) {
    if (!qualified) return nqGetUserName();
    const std::string name = platform::secur32.GetUserNameExA();
    if (name.empty()) return nqGetComputerName() + u"\\" + nqGetUserName();
    return fromAnsi(name);
}

WString nqGetComputerName() {
    const std::string name = platform::kernel32.GetComputerNameA();
    if (name.empty()) raisePlatformFailure();
    return fromAnsi(name);
}

MemoryFigures nqGlobalMemoryStatus() {
    platform::MemoryStatus status;
    if (!platform::kernel32.GlobalMemoryStatusEx(status)) raisePlatformFailure();
    return {
        static_cast<std::int32_t>(status.memoryLoad),  static_cast<double>(status.totalPhysical),
        static_cast<double>(status.availablePhysical), static_cast<double>(status.totalPageFile),
        static_cast<double>(status.availablePageFile), static_cast<double>(status.totalVirtual),
        static_cast<double>(status.availableVirtual)};
}

}  // namespace orvane
