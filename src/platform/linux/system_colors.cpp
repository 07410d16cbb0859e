#include "platform/linux/system_colors.h"

#include <cstddef>
#include <iterator>

namespace orvane::platform {

namespace {

// In the order of the numbers, as 0xRRGGBB.
constexpr std::uint32_t kScheme[] = {
    0xC8C8C8,  // 0 scroll bar
    0x000000,  // 1 desktop
    0x99B4D1,  // 2 active caption
    0xBFCDDB,  // 3 inactive caption
    0xF0F0F0,  // 4 menu
    0xFFFFFF,  // 5 window
    0x646464,  // 6 window frame
    0x000000,  // 7 menu text
    0x000000,  // 8 window text
    0x000000,  // 9 caption text
    0xB4B4B4,  // 10 active border
    0xF4F7FC,  // 11 inactive border
    0xABABAB,  // 12 application workspace
    0x0078D7,  // 13 highlight
    0xFFFFFF,  // 14 highlighted text
    0xF0F0F0,  // 15 button face
    0xA0A0A0,  // 16 button shadow
    0x6D6D6D,  // 17 grey text
    0x000000,  // 18 button text
    0x000000,  // 19 inactive caption text
    0xFFFFFF,  // 20 button highlight
    0x696969,  // 21 dark shadow
    0xE3E3E3,  // 22 light edge
    0x000000,  // 23 tool tip text
    0xFFFFE1,  // 24 tool tip
    0x000000,  // 25 unused
    0x0066CC,  // 26 link
    0xB9D1EA,  // 27 active caption's other end
    0xD7E4F2,  // 28 inactive caption's other end
    0x3399FF,  // 29 menu highlight
    0xF0F0F0,  // 30 menu bar
};

constexpr std::uint32_t swapped(std::uint32_t color) {
    return ((color & 0xFF) << 16) | (color & 0xFF00) | ((color >> 16) & 0xFF);
}

}  // namespace

std::uint32_t systemColor(std::int32_t index) {
    const auto number = static_cast<std::size_t>(index);
    return index >= 0 && number < std::size(kScheme) ? swapped(kScheme[number]) : 0;
}

bool isPlainColor(std::uint32_t color) {
    const std::uint32_t form = color >> 24;
    return form == 0 || form == 2;
}

std::uint32_t pixelColor(std::uint32_t color) {
    return swapped(color);
}

}  // namespace orvane::platform
