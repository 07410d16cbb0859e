#include "platform/kernel32.h"
#include "platform/win32/system.h"

#include <algorithm>

namespace orvane::platform {

namespace {

/// Bytes that have no character of their own keep their number, and one whose unit another byte
/// has already goes to the private use area: the way back must give the same byte.
constexpr unsigned kPrivateUse = 0xF700;

/// A byte's unit in a code page of the system, or its number when the page has no character for it
/// (undefined, or the first half of a double-byte character).
char16_t unitOf(UINT codePage, unsigned byte) {
    const char text = static_cast<char>(byte);
    std::array<wchar_t, 4> units{};
    const int count = ::MultiByteToWideChar(codePage, MB_ERR_INVALID_CHARS, &text, 1, units.data(),
                                            static_cast<int>(units.size()));
    return static_cast<char16_t>(count == 1 ? units[0] : byte);
}

std::array<char16_t, 256> readCodePage(UINT codePage) {
    const std::uint32_t error = lastError();
    std::array<char16_t, 256> table{};
    for (unsigned byte = 0; byte < table.size(); ++byte) {
        const auto end = table.begin() + static_cast<std::ptrdiff_t>(byte);
        const char16_t unit = unitOf(codePage, byte);
        const bool taken = std::find(table.begin(), end, unit) != end;
        table[byte] = taken ? static_cast<char16_t>(kPrivateUse + byte) : unit;
    }
    setLastError(error);
    return table;
}

}  // namespace

const std::array<char16_t, 256>& ansiCodePage() {
    static const std::array<char16_t, 256> table = readCodePage(CP_ACP);
    return table;
}

const std::array<char16_t, 256>& oemCodePage() {
    static const std::array<char16_t, 256> table = readCodePage(CP_OEMCP);
    return table;
}

}  // namespace orvane::platform
