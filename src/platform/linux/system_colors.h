#pragma once

#include <cstdint>

/// Colours by number, and colours in the forms that drawing functions take.
namespace orvane::platform {

/// A colour of the user's scheme as 0x00BBGGRR, 0 for a number that names none. There is no scheme
/// that all desktops here share: these are the colours of a Windows 10 on which nobody chose
/// others.
std::uint32_t systemColor(std::int32_t index);

/// True for a colour that says what it is: 0x00BBGGRR, or the same with 2 in the highest byte. A
/// number in a palette (1 there) means nothing without one, and there are none here.
bool isPlainColor(std::uint32_t color);

/// Such a colour in the form of pixels and palettes, 0x00RRGGBB.
std::uint32_t pixelColor(std::uint32_t color);

}  // namespace orvane::platform
