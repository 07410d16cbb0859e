#pragma once

#include "orvane/automation.h"

/// The four functions that the library exports; nothing else of it is visible. On Windows the
/// system's headers declare them.
#ifndef _WIN32

#define ORVANE_EXPORT __attribute__((visibility("default")))

extern "C" {
/// The class factory of a class of the catalogue. Hosts ask it for IID_IClassFactory, or for
/// IID_IOrvaneRuntime. CLASS_E_CLASSNOTAVAILABLE for an identifier that is no class of the library,
/// E_NOINTERFACE for another interface.
ORVANE_EXPORT HRESULT DllGetClassObject(REFCLSID classId, REFIID iid, void** object);

/// S_OK when nothing of the library is alive or locked and it may be unloaded, else S_FALSE. An
/// apartment without live objects gives up its module state here.
ORVANE_EXPORT HRESULT DllCanUnloadNow();

/// Writes the library's entries into the registry: for the whole machine as root, else for the
/// user. SELFREG_E_CLASS (0x80040201) when one can't be written; then none is left.
ORVANE_EXPORT HRESULT DllRegisterServer();
/// Removes them; the same status when one can't be removed.
ORVANE_EXPORT HRESULT DllUnregisterServer();
}

#else
#define ORVANE_EXPORT
#endif
