#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Texts between the ANSI code page of the operations and the UTF-8 of the system here.
namespace orvane::platform {

/// A text in the ANSI code page as UTF-8. Every byte has a character, so nothing is lost.
std::string systemName(std::string_view ansi);

/// The error of a file name that can't be one: 3 when it is empty, 123 when it holds a NUL, at
/// which the system would cut it. 0 for any other name.
std::uint32_t nameError(std::string_view ansi);

/// A text of the system in the ANSI code page. A character that the code page lacks, and a byte
/// that is no UTF-8, come out as "?", the platform's substitute.
std::string ansiName(std::string_view utf8);

/// True when `ansiName` loses nothing of `utf8`.
bool fitsAnsi(std::string_view utf8);

/// UTF-16 units as UTF-8; a surrogate without its partner comes out as U+FFFD.
std::string utf8Text(std::u16string_view units);

/// UTF-8 as UTF-16 units; a byte that belongs to no character becomes U+FFFD.
std::u16string unitsOf(std::string_view utf8);

/// Takes the character that `utf8` begins with away from it and gives its code point; -1 when its
/// first byte begins no character (that byte alone is taken). `utf8` is not empty.
int takeCodePoint(std::string_view& utf8);

}  // namespace orvane::platform
