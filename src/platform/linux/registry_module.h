#pragma once

#include "platform/linux/registry/store.h"

namespace orvane::platform {

/// The registry's store in `libOrvaneRegistry.so`, with what makes its run keys true. Loaded on
/// first use and kept; null while it can't be loaded or is of another version.
const OrvaneStoreTable* registryStore();

}  // namespace orvane::platform
