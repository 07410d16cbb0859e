#pragma once

namespace orvane::platform {

/// Hands the ending thread's values of all slots that `TlsAlloc` gave out to their callbacks.
/// The library's entry procedure calls it for `DLL_THREAD_DETACH`, and only for that.
void win32ThreadDetach();

}  // namespace orvane::platform
