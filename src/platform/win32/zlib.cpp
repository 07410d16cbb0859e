#include "platform/zlib.h"

#include "platform/win32/system.h"

#include <algorithm>
#include <atomic>

namespace orvane::platform {

namespace win32 {

namespace {

// The library's entries are standard calls, for hosts that know no other.
using Uncompress = int(__stdcall*)(unsigned char* destination, unsigned long* length,
                                   const unsigned char* source, unsigned long size);
using Version = const char*(__stdcall*)();

/// A function of the library; null when there is none. Not `systemFunction`: the library is no part
/// of the system, and one that the process has loaded from anywhere will do. One that has the
/// function stays loaded.
FARPROC functionOf(const char* name) {
    const HMODULE library = ::LoadLibraryA("ZLibStdCall.DLL");
    if (library == nullptr) return nullptr;
    const FARPROC function = ::GetProcAddress(library, name);
    if (function == nullptr) {
        ::FreeLibrary(library);
        setLastError(kErrorProcedureNotFound);
    }
    return function;
}

/// The function of this name, looked up on first use; a failure is not kept.
template <class Function>
Function entry(std::atomic<FARPROC>& kept, const char* name) {
    FARPROC function = kept.load();
    if (function == nullptr) {
        function = functionOf(name);
        kept.store(function);
    }
    return reinterpret_cast<Function>(reinterpret_cast<void*>(function));
}

constinit std::atomic<FARPROC> keptUncompress = nullptr;
constinit std::atomic<FARPROC> keptVersion = nullptr;

std::int32_t uncompress(std::span<std::uint8_t> destination, std::uint32_t& length,
                        std::span<const std::uint8_t> source) {
    const auto function = entry<Uncompress>(keptUncompress, "uncompress");
    if (function == nullptr) return kZlibNotBound;
    unsigned long room = std::min<std::size_t>(length, destination.size());
    const int code = function(destination.data(), &room, source.data(), source.size());
    length = room;
    return code;
}

bool version(std::string& text) {
    const auto function = entry<Version>(keptVersion, "zlibVersion");
    if (function == nullptr) return false;
    const char* own = function();
    text = own == nullptr ? "" : own;
    return true;
}

constexpr Zlib bound() {
    Zlib table;
    table.uncompress.bind<uncompress>();
    table.zlibVersion.bind<version>();
    return table;
}
static_assert(allBound(bound()));

}  // namespace

}  // namespace win32

constinit Zlib zlib = win32::bound();

}  // namespace orvane::platform
