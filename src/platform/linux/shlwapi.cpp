#include "platform/shlwapi.h"

#include "platform/registry_operations.h"

namespace orvane::platform {

namespace {

constexpr Shlwapi boundShlwapi() {
    Shlwapi table;
    table.SHDeleteEmptyKeyA.bind<&registry::deleteEmptyKeyA>();
    table.SHDeleteKeyA.bind<&registry::deleteTreeA>();
    table.SHDeleteKeyW.bind<&registry::deleteTreeW>();
    return table;
}
static_assert(allBound(boundShlwapi()));

constexpr RegistryTransactions boundTransactions() {
    RegistryTransactions table;
    table.Begin.bind<&registry::beginTransaction>();
    table.Commit.bind<&registry::commitTransaction>();
    table.Rollback.bind<&registry::rollbackTransaction>();
    return table;
}
static_assert(allBound(boundTransactions()));

}  // namespace

constinit Shlwapi shlwapi = boundShlwapi();
constinit RegistryTransactions registryTransactions = boundTransactions();

}  // namespace orvane::platform
