#pragma once

#include "platform/handles.h"
#include "platform/operation.h"

#ifndef NOMINMAX
#define NOMINMAX
#endif
#ifndef WIN32_LEAN_AND_MEAN
#define WIN32_LEAN_AND_MEAN
#endif
#include <windows.h>

#include <concepts>
#include <string>
#include <type_traits>

namespace orvane::platform::win32 {

/// The system's handle of one of ours, and the way back. The process is a 32-bit one, so both are
/// the same 32 bits.
template <class System, class Handle>
requires std::is_enum_v<Handle> System systemHandle(Handle handle) {
    return reinterpret_cast<System>(static_cast<std::uintptr_t>(handle));
}

inline HGDIOBJ systemHandle(GdiObject object) {
    return reinterpret_cast<HGDIOBJ>(static_cast<std::uintptr_t>(object.number));
}

template <class Handle, class System>
requires std::is_pointer_v<System> Handle ownHandle(System handle) {
    static_assert(sizeof(System) == sizeof(Handle));
    return static_cast<Handle>(reinterpret_cast<std::uintptr_t>(handle));
}

/// Sets the last error and gives an operation's failure result.
template <class Result>
Result failed(std::uint32_t error, Result result) {
    setLastError(error);
    return result;
}

/// For system functions that may fail without a last error: runs `call` with the last error
/// cleared, and sets `error` when the result is `failure` and the system named no reason.
template <class Result, class Call>
Result orError(std::uint32_t error, Result failure, Call&& call) {
    setLastError(kErrorSuccess);
    const Result result = call();
    if (result == failure && lastError() == kErrorSuccess) setLastError(error);
    return result;
}

/// True when a text can be handed to the system as it is. One with a NUL inside would be cut there
/// without notice; then the last error is `kErrorInvalidName`.
inline bool crosses(const std::string& text) {
    if (text.find('\0') == std::string::npos) return true;
    setLastError(kErrorInvalidName);
    return false;
}

/// A text from a system function that takes a buffer and its size and gives the text's length, or
/// the size that it needs, or 0 when it failed. The text is whole or empty.
template <class Call>
std::string systemText(Call&& call) {
    std::string text(MAX_PATH, '\0');
    for (;;) {
        const DWORD length = call(text.data(), static_cast<DWORD>(text.size()));
        if (length == 0) return {};
        if (length < text.size()) {
            text.resize(length);
            return text;
        }
        // Some functions cut the text and give the buffer's size: never less than twice as much.
        text.assign(length > text.size() ? length + 1 : text.size() * 2, '\0');
    }
}

/// A function of a system library, bound by name; null when the library or the function is not
/// there. The library comes from the system's own folder and stays loaded.
FARPROC systemFunction(const char* library, const char* name);

template <class Function>
Function systemFunctionAs(const char* library, const char* name) {
    return reinterpret_cast<Function>(reinterpret_cast<void*>(systemFunction(library, name)));
}

}  // namespace orvane::platform::win32
