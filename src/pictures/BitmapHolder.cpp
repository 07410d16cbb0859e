#include "pictures/BitmapHolder.h"

#include "platform/gdi32.h"
#include "support/pictures.h"

namespace orvane {

Picture BitmapHolder::GetStdPicture() {
    Picture picture = nqGetBitmapFromHandle(bitmap_);
    if (picture.handle() == static_cast<std::uint32_t>(bitmap_)) Detached_ = true;
    return picture;
}

BitmapHolder::~BitmapHolder() {
    if (!Detached_ && bitmap_ != platform::BitmapHandle::none) {
        platform::gdi32.DeleteObject(bitmap_);
    }
}

}  // namespace orvane
