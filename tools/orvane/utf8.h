#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace orvane::tool {

/// Takes the character that `text` begins with away from it and gives its code point; nothing when
/// its first byte begins no well-formed UTF-8 character (that byte alone is taken). `text` is not
/// empty.
std::optional<char32_t> takeCharacter(std::string_view& text);

/// The UTF-16 form of UTF-8 text; a byte that belongs to no character becomes U+FFFD.
std::u16string toUtf16(std::string_view text);

/// The UTF-8 form of UTF-16 text; a surrogate without its partner becomes U+FFFD.
std::string toUtf8(std::u16string_view text);

/// `text` as a line can show it: bytes of control characters and bytes that are no UTF-8 appear as
/// `\x` and two hexadecimal digits, all else stays as it is.
std::string printable(std::string_view text);

}  // namespace orvane::tool
