#pragma once

#include "registry/reg_file_reader.h"

namespace orvane::tool {

/// A registry file's text, told from its first bytes.
struct RegistryText {
    std::u16string units;  ///< without the byte order mark, from behind the header on
    bool isAnsi = false;   ///< the older form: texts in hexadecimal are in the code page
    std::size_t line = 1;  ///< the number of the first line in `units`
};

/// Decodes the bytes and takes the header off. Throws RegistryFileError for another header, for
/// bytes that are no text, and for a NUL, which no registry file has.
RegistryText decodeRegistryFile(std::span<const std::uint8_t> bytes, CodePage ansi);

}  // namespace orvane::tool
