#include "library_version.h"

#include "system.h"
#include "utf8.h"

#include "orvane/OrvBase0301.h"

#include <string_view>
#include <vector>

#include <windows.h>

namespace orvane::tool {

namespace {

/// The file of the library, found by the first function of an object's table.
std::wstring fileOf(_orvMain& object) {
    HMODULE module = nullptr;
    GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                           GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                       **reinterpret_cast<const wchar_t***>(&object), &module);
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
    return path;
}

}  // namespace

std::string libraryVersion(host::Library& library) {
    const std::wstring path = fileOf(library.global<_orvMain>());
    std::vector<std::uint8_t> block(GetFileVersionInfoSizeW(path.c_str(), nullptr));
    void* text = nullptr;
    UINT length = 0;
    // The block of Russian texts in UTF-16.
    if (block.empty() ||
        GetFileVersionInfoW(path.c_str(), 0, static_cast<DWORD>(block.size()), block.data()) == 0 ||
        VerQueryValueW(block.data(), L"\\StringFileInfo\\041904B0\\FileVersion", &text, &length) ==
            0) {
        throw Failure("the library has no version");
    }
    const std::wstring_view version = static_cast<const wchar_t*>(text);
    return toUtf8(std::u16string(version.begin(), version.end()));
}

}  // namespace orvane::tool
