#include "platform/linux/metafiles_module.h"

#include "platform/linux/side_module.h"

#include <atomic>

namespace orvane::platform {

namespace {

constinit std::atomic<const OrvaneMetafileTable*> loadedTable = nullptr;

}  // namespace

const OrvaneMetafileTable* metafileTable() {
    const OrvaneMetafileTable* table = loadedTable.load();
    if (table != nullptr) {
        return table;
    }
    using Entry = const OrvaneMetafileTable* (*)();
    const auto entry =
        reinterpret_cast<Entry>(sideModuleFunction("libOrvaneMetafiles.so", ORVANE_METAFILE_ENTRY));
    table = entry == nullptr ? nullptr : entry();
    if (table == nullptr || table->version != ORVANE_METAFILE_VERSION) {
        return nullptr;
    }
    // A failure is not kept, so that a module that is installed later is found.
    loadedTable.store(table);
    return table;
}

}  // namespace orvane::platform
