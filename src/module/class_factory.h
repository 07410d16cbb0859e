#pragma once

#include "frame/automation/table.h"

#include "orvane/automation.h"

#include <cstdint>

namespace orvane::automation {

/// The factory of a class as interface `iid`, with a reference for the caller: `IClassFactory`, and
/// on Linux `IOrvaneRuntime` too. E_NOINTERFACE for any other.
///
/// A factory makes any number of objects; that of an internal class refuses, with
/// CLASS_E_CLASSNOTAVAILABLE. No class can be aggregated.
HRESULT newClassFactory(const ClassTable& table, REFIID iid, void** object);

/// The locks of all factories together: while there are any, the library stays loaded.
std::uint32_t serverLocks();

/// An interface that only this platform's factories have, as a tear-off of `factory` with a
/// reference for the caller; null for any other identifier.
IUnknown* newPlatformInterface(IClassFactory& factory, REFIID iid);

/// Lets go of what the library keeps for the calling thread where it stands in for the system's
/// automation library: the error information of the last failed call.
void releasePlatformState();

}  // namespace orvane::automation
