#pragma once

#include "registry/registry_file.h"

namespace orvane::tool {

/// The text of a registry file as the system's own editor writes it in version 5.00, with CRLF:
/// header, blank line, and for each key its name in brackets, its default value and then the others
/// in the order in which they come, and a blank line.
///
/// Bytes in hexadecimal go on behind `,\` on a line that begins with two blanks, so that none has
/// more than 80 characters; the editor breaks also before a last byte that would have had room. A
/// REG_SZ that isn't a text with one NUL at its end, and a REG_DWORD of another size than 4, are
/// written as `hex(1):` and `hex(4):`; the editor cuts such texts, and writes an empty REG_SZ as if
/// it had its NUL. Line breaks in texts stay as they are.
std::u16string registryFileText(const RegistryFile& file);

/// The file itself: UTF-16, least significant byte first, with its mark.
Bytes registryFileBytes(const RegistryFile& file);

}  // namespace orvane::tool
