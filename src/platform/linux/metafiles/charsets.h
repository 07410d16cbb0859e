#pragma once

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace orvane::metafiles {

/// The characters of a text, and how many bytes, or units of UTF-16, each of them takes.
struct Characters {
    std::u32string text;
    std::vector<std::size_t> units;

    void add(char32_t character, std::size_t count) {
        text.push_back(character);
        units.push_back(count);
    }
};

/// A text in the code page of a font's character set; one that isn't known reads as Western
/// European.
Characters decoded(std::span<const std::uint8_t> text, std::uint8_t charset);

/// A text in UTF-16, two bytes a unit; half a pair becomes U+FFFD.
Characters decodedUtf16(std::span<const std::uint8_t> text);

/// UTF-8 of a face name in UTF-16, up to its NUL.
std::string utf8FaceName(std::span<const std::uint8_t> utf16);
std::string utf8(const std::u32string& text);

}  // namespace orvane::metafiles
