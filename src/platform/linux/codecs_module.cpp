#include "platform/linux/codecs_module.h"

#include "platform/linux/side_module.h"

#include <atomic>

namespace orvane::platform {

namespace {

constinit std::atomic<const OrvaneCodecTable*> loadedTable = nullptr;

}  // namespace

const OrvaneCodecTable* codecTable() {
    const OrvaneCodecTable* table = loadedTable.load();
    if (table != nullptr) {
        return table;
    }
    using Entry = const OrvaneCodecTable* (*)();
    const auto entry =
        reinterpret_cast<Entry>(sideModuleFunction("libOrvanePictures.so", ORVANE_CODEC_ENTRY));
    table = entry == nullptr ? nullptr : entry();
    if (table == nullptr || table->version != ORVANE_CODEC_VERSION ||
        table->decodedSize != sizeof(OrvaneDecoded)) {
        return nullptr;
    }
    // A failure is not kept, so that a module that is installed later is found.
    loadedTable.store(table);
    return table;
}

}  // namespace orvane::platform
