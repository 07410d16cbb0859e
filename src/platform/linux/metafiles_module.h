#pragma once

#include "platform/linux/metafiles/metafiles.h"

namespace orvane::platform {

/// The player of `libOrvaneMetafiles.so`, which lies beside this library (beside a program that is
/// linked with this code, or in the folder "bin" next to the program's). Loaded on first use and
/// kept; null while it can't be loaded or is of another version.
const OrvaneMetafileTable* metafileTable();

}  // namespace orvane::platform
