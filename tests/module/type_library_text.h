#pragma once

#include "orvane/automation.h"

#include <string>

namespace orvane::tests {

/// Everything that a host can read of a type library through `ITypeLib` and `ITypeInfo`, as UTF-8
/// text: a line for each type (sorted by name), member, parameter and constant. Both platforms give
/// the same text.
std::string typeLibraryText(ITypeLib& library);

}  // namespace orvane::tests
