#pragma once

#include "platform/linux/registry/store.h"

namespace orvane::platform::autostart {

/// The registry's store, and behind it what makes its run keys true: each text value under
/// "Software\Microsoft\Windows\CurrentVersion\Run" of the user or the machine has an entry in the
/// desktop's autostart folder, written and removed in the value's own transaction. Where an entry
/// can't be made, the change of the value fails with that error, and neither is done.
///
/// Only changes look at entries: one that a user removes or turns off stays so until the value is
/// written again. There is one such store, made over the first one given.
const OrvaneStoreTable* withEntries(const OrvaneStoreTable& store);

}  // namespace orvane::platform::autostart
