#pragma once

#include "orvane/automation.h"

namespace orvane::automation {

/// The type information of one of the library's interfaces or classes, by its identifier, with a
/// reference for the caller. On Windows it comes from the type library that is embedded in the
/// module, elsewhere it is built from the class tables.
HRESULT typeInfoOf(REFGUID guid, ITypeInfo** info);

/// The library's type information as a whole.
HRESULT typeLibrary(ITypeLib** library);

}  // namespace orvane::automation
