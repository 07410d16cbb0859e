#pragma once

#include "orvane/automation.h"

namespace orvane::automation {

/// Writes the registry entries of the type library and of every class of the catalogue: for a
/// class its identifier with server path, threading model, ProgID, version and type library, and
/// for one that hosts can create the ProgID itself. When one can't be written, those that were are
/// removed again.
///
/// SELFREG_E_TYPELIB or SELFREG_E_CLASS when an entry can't be written, and always where the
/// platform has no registry for classes.
HRESULT registerLibrary();

/// Removes all entries that `registerLibrary` writes; those that are gone already don't count as
/// failures.
HRESULT unregisterLibrary();

}  // namespace orvane::automation
