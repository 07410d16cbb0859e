#include "platform/zlib.h"

#include "platform/linux/errors.h"
#include "platform/linux/libraries.h"

#include <algorithm>
#include <atomic>
#include <dlfcn.h>

namespace orvane::platform {

namespace {

// zlib's own types: `uLong` is the system's `unsigned long`.
using Uncompress = int (*)(unsigned char* destination, unsigned long* length,
                           const unsigned char* source, unsigned long size);
using Version = const char* (*)();

/// A function of the library; null with the last error set when there is none. A library that has
/// it stays loaded.
void* functionOf(const char* name) {
    void* library = openLibrary(kZlibLibrary);
    if (library == nullptr) {
        return failWith(kErrorModuleNotFound, nullptr);
    }
    void* function = ::dlsym(library, name);
    if (function == nullptr) {
        ::dlclose(library);
        setLastError(kErrorProcedureNotFound);
    }
    return function;
}

/// The function of this name, looked up on first use; a failure is not kept.
template <class Function>
Function entry(std::atomic<void*>& kept, const char* name) {
    void* function = kept.load();
    if (function == nullptr) {
        function = functionOf(name);
        kept.store(function);
    }
    return reinterpret_cast<Function>(function);
}

constinit std::atomic<void*> keptUncompress = nullptr;
constinit std::atomic<void*> keptVersion = nullptr;

std::int32_t uncompress(std::span<std::uint8_t> destination, std::uint32_t& length,
                        std::span<const std::uint8_t> source) {
    const auto function = entry<Uncompress>(keptUncompress, "uncompress");
    if (function == nullptr) {
        return kZlibNotBound;
    }
    unsigned long room = std::min<std::size_t>(length, destination.size());
    const int code = function(destination.data(), &room, source.data(), source.size());
    length = static_cast<std::uint32_t>(room);
    return code;
}

bool version(std::string& text) {
    const auto function = entry<Version>(keptVersion, "zlibVersion");
    if (function == nullptr) {
        return false;
    }
    const char* own = function();
    text = own == nullptr ? "" : own;
    return true;
}

constexpr Zlib boundTable() {
    Zlib table;
    table.uncompress.bind<&uncompress>();
    table.zlibVersion.bind<&version>();
    return table;
}
static_assert(allBound(boundTable()));

}  // namespace

constinit Zlib zlib = boundTable();

}  // namespace orvane::platform
