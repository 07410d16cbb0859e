#pragma once

#include "frame/values/picture.h"

namespace orvane {

/// Loads a picture with the host's own loader; raises the loader's run-time error.
Picture loadHostPicture(WStringView fileName);

/// A new picture of nothing: handle 0.
Picture emptyPicture();

}  // namespace orvane
