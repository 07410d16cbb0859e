#pragma once

#include <cstdint>

namespace orvane::platform {

/// The number of objects that the platform layer handed out and that need this library's code to
/// go on: while there are any, the library must stay loaded. 0 on Windows, where such objects are
/// the system's own.
std::uint32_t livePlatformObjects();

}  // namespace orvane::platform
