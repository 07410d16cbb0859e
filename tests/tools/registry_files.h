#pragma once

#include "registry/reg_file_reader.h"

#include <array>
#include <string>
#include <string_view>

namespace orvane::tests {

/// A code page for the older form: ASCII, and Cyrillic letters from 0xC0 on as in 1251.
inline const std::array<char16_t, 256>& testPage() {
    static const std::array<char16_t, 256> page = [] {
        std::array<char16_t, 256> units{};
        for (std::size_t byte = 0; byte < units.size(); ++byte) {
            const std::size_t unit = byte < 0xC0 ? byte : 0x410 + byte - 0xC0;
            units[byte] = static_cast<char16_t>(unit);
        }
        return units;
    }();
    return page;
}

/// The bytes of a text that has a byte for each character.
inline tool::Bytes bytesOf(std::string_view text) {
    return {text.begin(), text.end()};
}

/// What a file says, from its bytes.
inline tool::RegistryFile parsed(const tool::Bytes& bytes) {
    return tool::readRegistryFile(bytes, testPage());
}

/// What a version 5.00 file in UTF-8 says; `lines` follow its header.
inline tool::RegistryFile parsed(std::string_view lines) {
    return parsed(bytesOf("Windows Registry Editor Version 5.00\r\n" + std::string(lines)));
}

}  // namespace orvane::tests
