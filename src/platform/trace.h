#pragma once

#include "platform/operation.h"

#include <string_view>

namespace orvane::platform {

/// Starts the trace that the environment variable `ORVANE_TRACE` asks for: a list of table names
/// with commas between ("kernel32,gdi32", "host" for the host's runtime), or "all". Every operation
/// of these tables is then printed on standard error as it ends, one line each:
///
///     orvane: kernel32.CreateFileA("C:\\x.bmp", 2147483648, 3) -> 0, error 2
///
/// The last error is printed for a call that failed. Only the first call does something; without
/// the variable no shim is installed and operations run as fast as ever. The trace stays until the
/// process ends.
void installTrace();

/// True when `list` (the form of `ORVANE_TRACE`; blanks and case don't count) names `module`.
bool traceNames(std::string_view list, std::string_view module);

/// The trace's line for a call that has ended, without a line end.
std::string traceLine(const CallRecord& call);

}  // namespace orvane::platform
