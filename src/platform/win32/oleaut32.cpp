#include "platform/oleaut32.h"

#include "platform/win32/system.h"

#include <ole2.h>
#include <olectl.h>

namespace orvane::platform {

namespace win32 {

namespace {

std::int32_t createPicture(const PictureDescription& description, bool own,
                           IPictureDisp*& picture) {
    picture = nullptr;
    PICTDESC facts{};
    facts.cbSizeofstruct = sizeof(facts);
    switch (description.type) {
    case PICTYPE_NONE:
        facts.picType = PICTYPE_NONE;
        break;
    case PICTYPE_BITMAP:
        facts.picType = PICTYPE_BITMAP;
        facts.bmp.hbitmap = systemHandle<HBITMAP>(description.bitmap);
        break;
    case PICTYPE_ICON:
        facts.picType = PICTYPE_ICON;
        facts.icon.hicon = systemHandle<HICON>(description.icon);
        break;
    default:
        return E_INVALIDARG;
    }
    void* object = nullptr;
    const HRESULT result = ::OleCreatePictureIndirect(&facts, IID_IPictureDisp, own, &object);
    if (SUCCEEDED(result)) picture = static_cast<IPictureDisp*>(object);
    return result;
}

constexpr Oleaut32 bound() {
    Oleaut32 table;
    table.OleCreatePictureIndirect.bind<createPicture>();
    return table;
}
static_assert(allBound(bound()));

}  // namespace

}  // namespace win32

constinit Oleaut32 oleaut32 = win32::bound();

}  // namespace orvane::platform
