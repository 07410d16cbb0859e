#include "module/registration.h"

namespace orvane::automation {

namespace {

constexpr HRESULT kSelfRegistrationOfClasses = hresultFrom(0x80040201);

}  // namespace

// There is no registry to write to: hosts name the library's file.
HRESULT registerLibrary() {
    return kSelfRegistrationOfClasses;
}

HRESULT unregisterLibrary() {
    return kSelfRegistrationOfClasses;
}

}  // namespace orvane::automation
