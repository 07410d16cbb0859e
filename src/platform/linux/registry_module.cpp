#include "platform/linux/registry_module.h"

#include "platform/linux/autostart/store.h"
#include "platform/linux/side_module.h"

namespace orvane::platform {

namespace {

constinit std::atomic<const OrvaneStoreTable*> loadedStore = nullptr;
constinit std::atomic<const OrvaneStoreTable*> storeWithEntries = nullptr;

}  // namespace

const OrvaneStoreTable* registryStore() {
    if (const OrvaneStoreTable* table = storeWithEntries.load(); table != nullptr) return table;
    const auto* const store = sideModuleTable<OrvaneStoreTable>(
        loadedStore, "libOrvaneRegistry.so", ORVANE_STORE_ENTRY,
        [](const OrvaneStoreTable& table) { return table.version == ORVANE_STORE_VERSION; });
    if (store != nullptr) storeWithEntries.store(autostart::withEntries(*store));
    return storeWithEntries.load();
}

}  // namespace orvane::platform
