#pragma once

#include "frame/binary_file.h"
#include "frame/errors.h"
#include "platform/operation.h"

namespace orvane {

/// Raises the run-time error for the calling thread's last platform error; to be called right
/// after the operation that failed.
[[noreturn]] inline void raisePlatformFailure() {
    raise(runtimeErrorFor(platform::lastError()));
}

}  // namespace orvane
