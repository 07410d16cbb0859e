#include "platform/shlwapi.h"

#include "platform/win32/registry.h"

namespace orvane::platform {

namespace win32 {

namespace {

constexpr Shlwapi boundShlwapi() {
    Shlwapi table;
    table.SHDeleteEmptyKeyA.bind<deleteEmptyKeyA>();
    table.SHDeleteKeyA.bind<deleteTreeA>();
    table.SHDeleteKeyW.bind<deleteTreeW>();
    return table;
}
static_assert(allBound(boundShlwapi()));

ResultCode notSupported() {
    return ResultCode{kErrorNotSupported};
}

constexpr RegistryTransactions boundTransactions() {
    RegistryTransactions table;
    table.Begin.bind<notSupported>();
    table.Commit.bind<notSupported>();
    table.Rollback.bind<notSupported>();
    return table;
}
static_assert(allBound(boundTransactions()));

}  // namespace

}  // namespace win32

constinit Shlwapi shlwapi = win32::boundShlwapi();
constinit RegistryTransactions registryTransactions = win32::boundTransactions();

}  // namespace orvane::platform
