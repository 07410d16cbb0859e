#pragma once

#include "frame/automation/table.h"

#include <string>

namespace orvane::interface {

/// The resource script of the library, in UTF-8: the type library `typeLibrary` as TYPELIB 1, and
/// the version resource of the file `fileName`.
std::string resourceText(const automation::LibraryTable& library, const std::string& typeLibrary,
                         const std::string& fileName);

}  // namespace orvane::interface
