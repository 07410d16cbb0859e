#pragma once

#include "frame/values/picture.h"
#include "platform/handles.h"

namespace orvane {

/// A `Picture` object over a bitmap, which it owns from now on and deletes at its end. A failure
/// raises the error of the platform's status; the bitmap then still belongs to the caller.
Picture nqGetBitmapFromHandle(platform::BitmapHandle bitmap);

}  // namespace orvane
