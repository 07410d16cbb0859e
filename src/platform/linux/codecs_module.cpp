#include "platform/linux/codecs_module.h"

#include "platform/linux/loaded_modules.h"

#include <atomic>
#include <dlfcn.h>
#include <string>

namespace orvane::platform {

namespace {

constexpr const char* kModuleName = "libOrvanePictures.so";

constinit std::atomic<const OrvaneCodecTable*> loadedTable = nullptr;

/// The module's table from the file `path`; null when there is none that fits.
const OrvaneCodecTable* loadFrom(const std::string& path) {
    // Never closed again: pictures hold memory of the module, and nobody counts them.
    void* module = ::dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    if (module == nullptr) {
        return nullptr;
    }
    using Entry = const OrvaneCodecTable* (*)();
    const auto entry = reinterpret_cast<Entry>(::dlsym(module, ORVANE_CODEC_ENTRY));
    const OrvaneCodecTable* table = entry == nullptr ? nullptr : entry();
    if (table == nullptr || table->version != ORVANE_CODEC_VERSION ||
        table->decodedSize != sizeof(OrvaneDecoded)) {
        ::dlclose(module);
        return nullptr;
    }
    return table;
}

}  // namespace

const OrvaneCodecTable* codecTable() {
    const OrvaneCodecTable* table = loadedTable.load();
    if (table != nullptr) {
        return table;
    }
    const std::string own = ownModulePath();
    const std::string folder = own.substr(0, own.rfind('/') + 1);
    if (!folder.starts_with('/')) {
        return nullptr;
    }
    table = loadFrom(folder + kModuleName);
    if (table == nullptr && own == executablePath()) {
        table = loadFrom(folder + "../bin/" + kModuleName);
    }
    // A failure is not kept, so that a module that is installed later is found.
    loadedTable.store(table);
    return table;
}

}  // namespace orvane::platform
