#include "platform/linux/metafiles_module.h"

#include "platform/linux/side_module.h"

namespace orvane::platform {

namespace {

constinit std::atomic<const OrvaneMetafileTable*> loadedTable = nullptr;

}  // namespace

const OrvaneMetafileTable* metafileTable() {
    return sideModuleTable<OrvaneMetafileTable>(
        loadedTable, "libOrvaneMetafiles.so", ORVANE_METAFILE_ENTRY,
        [](const OrvaneMetafileTable& table) { return table.version == ORVANE_METAFILE_VERSION; });
}

}  // namespace orvane::platform
