#include "frame/automation/host_picture.h"

#include "frame/automation/error_info.h"
#include "frame/values/codepage.h"
#include "platform/host_runtime.h"
#include "platform/oleaut32.h"

namespace orvane {
namespace {

Picture adopt(IPictureDisp* picture) {
    return Picture(Object::adopt(picture));
}

}  // namespace

Picture loadHostPicture(WStringView fileName) {
    IPictureDisp* picture = nullptr;
    const std::int32_t number = platform::hostRuntime.LoadPicture(toAnsi(fileName), picture);
    if (number != 0) raise(number);
    return adopt(picture);
}

Picture emptyPicture() {
    IPictureDisp* picture = nullptr;
    const std::int32_t status =
        platform::oleaut32.OleCreatePictureIndirect(platform::PictureDescription{}, true, picture);
    if (status < 0) automation::raiseStatus(status);
    return adopt(picture);
}

}  // namespace orvane
