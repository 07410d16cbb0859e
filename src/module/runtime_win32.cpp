#include "module/class_factory.h"

namespace orvane::automation {

// Hosts have the system's automation library.
IUnknown* newPlatformInterface(IClassFactory&, REFIID) {
    return nullptr;
}

// The thread's error information is the system's.
void releasePlatformState() {}

}  // namespace orvane::automation
