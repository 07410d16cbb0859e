#include "module/exports.h"

#include "module/class_factory.h"
#include "module/registration.h"

#include "frame/automation/apartment.h"
#include "frame/automation/library_lifetime.h"
#include "platform/live_objects.h"
#include "platform/trace.h"

#include <algorithm>
#include <new>

using namespace orvane;
using namespace orvane::automation;

namespace {

bool anythingAlive() {
    return Apartment::liveObjects() != 0 || LibraryUse::count() != 0 || serverLocks() != 0 ||
           platform::livePlatformObjects() != 0;
}

const ClassTable* classOf(REFCLSID classId) {
    const auto& classes = libraryTable().classes;
    const auto found = std::ranges::find(classes, classId, &ClassTable::classId);
    return found == classes.end() ? nullptr : *found;
}

}  // namespace

extern "C" {

HRESULT STDAPICALLTYPE DllGetClassObject(REFCLSID classId, REFIID iid, void** object) {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    try {
        platform::installTrace();
        const ClassTable* table = classOf(classId);
        return table == nullptr ? CLASS_E_CLASSNOTAVAILABLE : newClassFactory(*table, iid, object);
    } catch (const std::bad_alloc&) {
        return E_OUTOFMEMORY;
    } catch (...) {
        return E_UNEXPECTED;
    }
}

HRESULT STDAPICALLTYPE DllCanUnloadNow() {
    if (anythingAlive()) return S_FALSE;
    Apartment::releaseIdle();
    if (anythingAlive()) return S_FALSE;
    releasePlatformState();
    return S_OK;
}

HRESULT STDAPICALLTYPE DllRegisterServer() {
    return registerLibrary();
}

HRESULT STDAPICALLTYPE DllUnregisterServer() {
    return unregisterLibrary();
}

}  // extern "C"
