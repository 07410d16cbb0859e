#pragma once

#include "platform/registry.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// The texts of the registry: names as they are spelled and as they are compared, and values
/// between the ANSI code page and UTF-16.
namespace orvane::platform::registry {

/// A name, or a path of names with one backslash between two, up to its first NUL.
struct RegistryName {
    std::u16string spelled;
    std::u16string folded;
};

/// A value's name: every unit counts but a NUL.
RegistryName valueName(std::u16string_view name);

/// A path without the backslashes that mean nothing: at its end, and more than one in a row. Gives
/// 161 for one that begins with a backslash, 87 for a name in it that is too long.
ResultCode keyPath(std::u16string_view path, RegistryName& name);

/// Values of these types are texts: kept as UTF-16, and ANSI in the narrow forms.
bool isText(std::uint32_t type);

std::u16string wideText(std::string_view ansi);
/// One byte a unit, '?' for a unit that the code page lacks.
std::string narrowText(std::u16string_view text);

/// A text value's bytes as they are kept, from ANSI; and the way back, in which an odd last byte is
/// left out.
std::vector<std::uint8_t> keptText(std::span<const std::uint8_t> ansi);
std::string narrowTextIn(std::span<const std::uint8_t> kept);

}  // namespace orvane::platform::registry
