#pragma once

#include "platform/linux/codecs/codecs.h"

#include <cstdint>
#include <span>

namespace orvane::platform {

/// The decoders of `libOrvanePictures.so`, which lies beside this library (beside a program that is
/// linked with this code, or in the folder "bin" next to the program's). Loaded on first use and
/// kept; null while it can't be loaded or is of another version.
const OrvaneCodecTable* codecTable();

}  // namespace orvane::platform
