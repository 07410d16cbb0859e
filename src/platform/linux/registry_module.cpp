#include "platform/linux/registry_module.h"

#include "platform/linux/autostart/store.h"
#include "platform/linux/side_module.h"

#include <atomic>

namespace orvane::platform {

namespace {

constinit std::atomic<const OrvaneStoreTable*> loadedStore = nullptr;

}  // namespace

const OrvaneStoreTable* registryStore() {
    const OrvaneStoreTable* table = loadedStore.load();
    if (table != nullptr) return table;
    using Entry = const OrvaneStoreTable* (*)();
    const auto entry =
        reinterpret_cast<Entry>(sideModuleFunction("libOrvaneRegistry.so", ORVANE_STORE_ENTRY));
    table = entry == nullptr ? nullptr : entry();
    if (table == nullptr || table->version != ORVANE_STORE_VERSION) return nullptr;
    table = autostart::withEntries(*table);
    // A failure is not kept, so that a module that is installed later is found.
    loadedStore.store(table);
    return table;
}

}  // namespace orvane::platform
