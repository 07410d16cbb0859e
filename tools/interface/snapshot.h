#pragma once

#include "frame/automation/table.h"

#include <string>

namespace orvane::interface {

/// The binary interface as text, a line for each thing that a host may rely on: identifiers,
/// instancing, slots, member numbers, names and types. A change of a line breaks hosts.
std::string snapshotText(const automation::LibraryTable& library);

}  // namespace orvane::interface
