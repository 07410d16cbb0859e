#pragma once

#include "frame/values/picture.h"
#include "platform/handles.h"

namespace orvane {

/// What both bitmap classes share: a bitmap that is deleted at the object's end unless a `Picture`
/// has taken it over.
class BitmapHolder {
public:
    BitmapHolder() = default;
    BitmapHolder(const BitmapHolder&) = delete;
    BitmapHolder& operator=(const BitmapHolder&) = delete;

    platform::BitmapHandle hBitmap() const { return bitmap_; }
    void SetHandle(platform::BitmapHandle bitmap) { bitmap_ = bitmap; }
    /// The bitmap as a `Picture`, which owns it from now on.
    Picture GetStdPicture();

protected:
    ~BitmapHolder();

private:
    platform::BitmapHandle bitmap_ = platform::BitmapHandle::none;
    bool Detached_ = false;
};

}  // namespace orvane
