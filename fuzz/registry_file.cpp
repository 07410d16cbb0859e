#include "tools/registry_files.h"

#include "registry/reg_file_writer.h"
#include "target.h"

#include <cstddef>
#include <cstdint>

namespace {

/// The default value stands first in what is written, wherever it came.
bool isInWritingOrder(const orvane::tool::RegistryFile& file) {
    for (const orvane::tool::FileKey& key : file) {
        for (std::size_t i = 1; i < key.values.size(); ++i) {
            if (key.values[i].name.empty() && !key.values[i - 1].name.empty()) return false;
        }
    }
    return true;
}

}  // namespace

/// A registry file: it is refused with the number of one of its lines, or read; then what is
/// written from it says the same, and is written the same again.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvane;
    const tool::Bytes bytes(data, data + size);
    tool::RegistryFile file;
    try {
        file = tests::parsed(bytes);
    } catch (const tool::RegistryFileError& error) {
        require(error.line >= 1 && error.line <= size + 1);
        return 0;
    }
    const tool::Bytes written = tool::registryFileBytes(file);
    const tool::RegistryFile again = tests::parsed(written);
    require(!isInWritingOrder(file) || again == file);
    require(tool::registryFileBytes(again) == written);
    return 0;
}
