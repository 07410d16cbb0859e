#pragma once

#include "registry/registry_file.h"

#include <span>
#include <stdexcept>

namespace orvane::tool {

/// A registry file that can't be read; the text names the line: "line 7: no closing quote".
struct RegistryFileError : std::runtime_error {
    RegistryFileError(std::size_t number, const std::string& reason)
        : std::runtime_error("line " + std::to_string(number) + ": " + reason), line(number) {}

    std::size_t line;
};

/// The characters of the 256 bytes of a code page.
using CodePage = std::span<const char16_t, 256>;

/// What the bytes of a registry file say, in their order. The file is "Windows Registry Editor
/// Version 5.00" in UTF-16 with its mark or in UTF-8 with or without, or "REGEDIT4", whose texts,
/// also those in `hex(1)`, `hex(2)` and `hex(7)`, are in the code page `ansi`.
///
/// Unlike the system's own editor, which passes over what it doesn't understand, this takes a file
/// as a whole: any line that is neither blank nor a comment, a key or a value fails it with
/// RegistryFileError, as does a value before any key or below a key that is to go.
///
///     Windows Registry Editor Version 5.00
///
///     [HKEY_CURRENT_USER\Software\Example]
///     @="the default value"
///     "Path"="C:\\Folder"          ; a comment
///     "Count"=dword:0000002a
///     "Data"=hex:01,02,03          ; a backslash would continue the line
///     "List"=hex(7):61,00,00,00,00,00
///     "Old"=-
///
///     [-HKCU\Software\Example\Old]
RegistryFile readRegistryFile(std::span<const std::uint8_t> bytes, CodePage ansi);

}  // namespace orvane::tool
