#include "platform/linux/codecs_module.h"

#include "platform/linux/side_module.h"

namespace orvane::platform {

namespace {

constinit std::atomic<const OrvaneCodecTable*> loadedTable = nullptr;

}  // namespace

const OrvaneCodecTable* codecTable() {
    return sideModuleTable<OrvaneCodecTable>(loadedTable, "libOrvanePictures.so",
                                             ORVANE_CODEC_ENTRY, [](const OrvaneCodecTable& table) {
                                                 return table.version == ORVANE_CODEC_VERSION &&
                                                        table.decodedSize == sizeof(OrvaneDecoded);
                                             });
}

}  // namespace orvane::platform
