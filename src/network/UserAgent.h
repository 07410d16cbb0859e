#pragma once

#include "frame/values/object.h"
#include "frame/values/wstring.h"

#include <cstdint>

namespace orvane {

/// "TITLE 3.01.0251 (SYSTEM)": the title in Latin letters, the version in three parts and the
/// host's system. Raises the platform's error when it doesn't tell its system.
WString BuildUserAgentString(WStringView title, std::int32_t major, std::int32_t minor,
                             std::int32_t revision);

/// The same of an application object, whose `Title`, `Major`, `Minor` and `Revision` are read by
/// name, in this order. Raises what these reads and their conversion raise: 91 for Nothing.
WString BuildUserAgent(const Object& app);

}  // namespace orvane
