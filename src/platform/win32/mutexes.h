#pragma once

#include "platform/kernel32.h"

namespace orvane::platform::win32 {

// Named mutexes, as the table of `kernel32.h` describes them.
MutexHandle createMutex(const std::string& name);
bool closeMutex(MutexHandle mutex);

}  // namespace orvane::platform::win32
