#pragma once

#include "frame/values/wstring.h"
#include "platform/handles.h"

namespace orvane {

/// The full name of the host's executable. A failure of the platform raises its run-time error.
WString nqGetEXEModuleFullFileName();

/// The same in display form, without short (8.3) parts where the platform can tell the long ones.
WString nqGetEXEModulePrettyFileName();

/// The display form of a loaded module's full file name; `none` is the host's executable. A handle
/// that is no module's raises the run-time error of that failure.
WString nqGetModulePrettyFileName(platform::ModuleHandle module);

}  // namespace orvane
