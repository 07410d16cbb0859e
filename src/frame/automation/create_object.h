#pragma once

#include "frame/values/object.h"

namespace orvane {

/// `CreateObject`: a new object of the class that is registered under `progId`. On Linux this
/// library's own are found by their names also when they are not registered. Raises 429 for a name
/// that stands for no class, and for a class that gives no object.
Object createObject(WStringView progId);

}  // namespace orvane
