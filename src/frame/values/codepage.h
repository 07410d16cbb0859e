#pragma once

#include "frame/values/array.h"
#include "frame/values/wstring.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>

namespace orvane {

/// The ways between text and bytes. Both code pages are tables of 256 units in which every byte has
/// exactly one unit, so bytes that become text come back as the same bytes. A unit that a page
/// lacks becomes '?'. Lengths count everywhere: a NUL is a unit and a byte like any other.

/// Text to the system ANSI code page, one byte for each unit.
std::string toAnsi(WStringView text);
/// The same into bytes that lie ready; what has no room there is left out.
void toAnsi(WStringView text, std::span<std::uint8_t> bytes);
/// Bytes of the system ANSI code page to text, one unit for each byte. A view without data gives a
/// null string.
WString fromAnsi(std::string_view bytes);
WString fromAnsi(std::span<const std::uint8_t> bytes);

/// `toAnsi` into a Byte array with the lower bound 0; an empty text gives one with the upper
/// bound -1.
Array<std::uint8_t> toAnsiArray(WStringView text);
/// The elements of a Byte array, whatever its bounds; an unallocated one gives a null string.
WString fromAnsiArray(const Array<std::uint8_t>& bytes);

/// Text to the OEM code page, one byte for each unit.
std::string toOem(WStringView text);
/// Bytes of the OEM code page to text.
WString fromOem(std::string_view bytes);

/// The byte of one unit in the system ANSI code page, '?' when the page lacks it.
std::uint8_t ansiByte(char16_t unit);
/// The unit of one byte in the system ANSI code page.
char16_t ansiUnit(std::uint8_t byte);

}  // namespace orvane
