#pragma once

#include "orvane/host.h"

#include <string>

namespace orvane::tool {

/// The version text of the library's file, such as "3.01.0251": on Windows from its version
/// resource, on Linux from its runtime interface. Throws host::Error or Failure.
std::string libraryVersion(host::Library& library);

}  // namespace orvane::tool
