#pragma once

#include "frame/automation/table.h"

#include <string>

namespace orvane::interface {

/// A C++ header for hosts: identifiers, enumerations, and the dual interfaces as structures whose
/// virtual functions lie in the order of the slots. It needs `orvane/automation.h` only.
std::string headerText(const automation::LibraryTable& library);

}  // namespace orvane::interface
