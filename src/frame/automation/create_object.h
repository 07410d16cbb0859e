#pragma once

#include "frame/values/object.h"

namespace orvane {

/// `CreateObject`: a new object of the class that is registered under `progId`. Where the platform
/// registers no classes, this library's own are found by their names. Raises 429 for a name that
/// stands for no class, and for a class that gives no object.
Object createObject(WStringView progId);

}  // namespace orvane
