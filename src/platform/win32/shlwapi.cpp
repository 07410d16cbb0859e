#include "platform/shlwapi.h"

#include "platform/registry_operations.h"

namespace orvane::platform {

namespace win32 {

namespace {

constexpr Shlwapi boundShlwapi() {
    Shlwapi table;
    table.SHDeleteEmptyKeyA.bind<registry::deleteEmptyKeyA>();
    table.SHDeleteKeyA.bind<registry::deleteTreeA>();
    table.SHDeleteKeyW.bind<registry::deleteTreeW>();
    return table;
}
static_assert(allBound(boundShlwapi()));

constexpr RegistryTransactions boundTransactions() {
    RegistryTransactions table;
    table.Begin.bind<registry::beginTransaction>();
    table.Commit.bind<registry::commitTransaction>();
    table.Rollback.bind<registry::rollbackTransaction>();
    return table;
}
static_assert(allBound(boundTransactions()));

}  // namespace

}  // namespace win32

constinit Shlwapi shlwapi = win32::boundShlwapi();
constinit RegistryTransactions registryTransactions = win32::boundTransactions();

}  // namespace orvane::platform
