#pragma once

#include "orvane/automation.h"

namespace orvane::automation {

/// Writes the registry entries of the type library and of every class of the catalogue: for a
/// class its identifier with server path, threading model, ProgID, version and type library, and
/// for one that hosts can create the ProgID itself. When one can't be written, those that were are
/// removed again. On Linux they are written for the whole machine, or for the process's user when
/// it has no right to that.
///
/// SELFREG_E_TYPELIB (0x80040200) or SELFREG_E_CLASS (0x80040201) when an entry can't be written.
HRESULT registerLibrary();

/// Removes all entries that `registerLibrary` writes, on Linux for the machine and for the user;
/// those that are gone already don't count as failures, those that may not be removed do.
HRESULT unregisterLibrary();

}  // namespace orvane::automation
