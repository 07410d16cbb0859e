#include "support/pictures.h"

#include "frame/automation/error_info.h"
#include "orvane/automation.h"
#include "platform/oleaut32.h"

namespace orvane {
namespace {

// PICTYPE_BITMAP of the platform's picture description.
constexpr std::int16_t kBitmapPicture = 1;

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

}  // namespace orvane
