#include "pictures/CFileCommon.h"

#include "frame/automation/host_picture.h"
#include "pictures/DetectCommonBitmapType.h"
#include "platform/gdi32.h"
#include "platform/user32.h"

namespace orvane {
namespace {

orvPictureTypeEx iconOrCursor(const Picture& picture) {
    platform::IconFacts facts;
    platform::user32.GetIconInfo(static_cast<platform::IconHandle>(picture.handle()), facts);
    for (const platform::BitmapHandle bitmap : {facts.color, facts.mask}) {
        if (bitmap != platform::BitmapHandle::none) platform::gdi32.DeleteObject(bitmap);
    }
    return facts.isIcon ? orvPictureTypeEx::orvPteICO : orvPictureTypeEx::orvPteCUR;
}

}  // namespace

bool CFileCommon::Verify(WStringView) {
    return true;
}

Picture CFileCommon::LoadPicture(WStringView fileName, const Ref<PictureInfo>& info) {
    if (info) info->ResetInfo();
    if (!Verify(fileName)) return nullptr;
    Picture picture;
    ErrorTrap trap;
    if (!trap([&] { picture = loadHostPicture(fileName); })) return nullptr;

    DecodedImage image{-1, -1, -1, {}, {}};
    auto type = orvPictureTypeEx::orvPteNothing;
    switch (picture.type()) {
    case Picture::Type::bitmap:
        type = DetectCommonBitmapType(picture, fileName, image);
        break;
    case Picture::Type::metafile:
        type = orvPictureTypeEx::orvPteWMF;
        break;
    case Picture::Type::icon:
        type = iconOrCursor(picture);
        break;
    case Picture::Type::enhancedMetafile:
        type = orvPictureTypeEx::orvPteEMF;
        break;
    case Picture::Type::none:
        image = {};
        break;
    }
    if (info) info->SetInfo(image, type);
    return picture;
}

}  // namespace orvane
