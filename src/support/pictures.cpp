#include "support/pictures.h"

#include "frame/automation/error_info.h"
#include "orvane/automation.h"
#include "platform/oleaut32.h"
#include "platform/user32.h"

#include <iterator>

namespace orvane {
namespace {

// PICTYPE_BITMAP of the platform's picture description.
constexpr std::int16_t kBitmapPicture = 1;

// The forms of a colour value, in its highest byte.
constexpr std::uint32_t kPlainColor = 0x00;
constexpr std::uint32_t kPaletteNumber = 0x01;
constexpr std::uint32_t kPaletteColor = 0x02;
constexpr std::uint32_t kSystemNumber = 0x80;

constexpr std::uint32_t kLastSystemColor = 30;

// The default palette: the 20 colours that every display has, as 0x00BBGGRR.
constexpr std::uint32_t kDefaultPalette[] = {0x000000, 0x000080, 0x008000, 0x008080, 0x800000,
                                             0x800080, 0x808000, 0xC0C0C0, 0xC0DCC0, 0xF0CAA6,
                                             0xF0FBFF, 0xA4A0A0, 0x808080, 0x0000FF, 0x00FF00,
                                             0x00FFFF, 0xFF0000, 0xFF00FF, 0xFFFF00, 0xFFFFFF};

}  // namespace

Picture nqGetBitmapFromHandle(platform::BitmapHandle bitmap) {
    platform::PictureDescription description;
    description.type = kBitmapPicture;
    description.bitmap = bitmap;
    IPictureDisp* picture = nullptr;
    const std::int32_t status =
        platform::oleaut32.OleCreatePictureIndirect(description, true, picture);
    if (status < 0) raise(automation::errorNumberOf(status));
    return Picture(Object::adopt(picture));
}

platform::BitmapHandle nqCopyBitmap(platform::BitmapHandle bitmap) {
    // As a section the copy has the original's depth, whatever the screen's is.
    return platform::user32.CopyImage(bitmap, platform::kImageBitmap, 0, 0,
                                      platform::kCreateDibSection);
}

std::uint32_t nqTranslateColor(std::uint32_t color, std::uint32_t palette) {
    const std::uint32_t value = color & 0xFFFFFF;
    switch (color >> 24) {
    case kPlainColor:
    case kPaletteColor:
        return value;
    case kPaletteNumber:
        if (palette != 0 || value >= std::size(kDefaultPalette)) raise(error::kInvalidArgument);
        return kDefaultPalette[value];
    case kSystemNumber:
        if (value > kLastSystemColor) raise(error::kInvalidArgument);
        return platform::user32.GetSysColor(static_cast<std::int32_t>(value));
    default:
        raise(error::kInvalidArgument);
    }
}

}  // namespace orvane
