#pragma once

#include "frame/values/wstring.h"
#include "platform/handles.h"

#include <cstdint>

/// Messages for error numbers, as the platform gives them: in its language, usually with a line
/// end behind them. A number without a message gives an empty text and is no failure.
namespace orvane {

/// The system's message for a Win32 error number.
WString nqGetAPIErrorDescription(std::int32_t number);

/// The multimedia library's message for its error number.
WString nqGetWinMMErrorDescription(std::int32_t number);

/// The message that the message table of `module` has for the number; a module that is not loaded
/// (`none`) has none.
WString nqGetModuleErrorDescription(platform::ModuleHandle module, std::int32_t number);

}  // namespace orvane
