#pragma once

#include "frame/automation/table.h"

#include <cstdint>
#include <span>

namespace orvane::interface {

/// Sets the flag word of every class in a compiled type library ("MSFT" format, as `widl` writes
/// it) to the instancing of its table: `widl` has no attribute for application objects. Throws
/// `std::runtime_error` for a file that isn't one or lacks a class.
void setInstancingFlags(std::span<std::uint8_t> file, const automation::LibraryTable& library);

}  // namespace orvane::interface
