#include "module/class_factory.h"

namespace orvane::automation {

// Hosts have the system's automation library.
IUnknown* newPlatformInterface(IClassFactory&, REFIID) {
    return nullptr;
}

}  // namespace orvane::automation
