#include "pictures/IFileFormat.h"

namespace orvane {

bool IFileFormat::Verify(WStringView) {
    return false;
}

Picture IFileFormat::LoadPicture(WStringView, const Ref<PictureInfo>&) {
    return nullptr;
}

}  // namespace orvane
