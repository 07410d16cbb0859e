#pragma once

#include "frame/values/variant.h"

namespace orvane {

/// `TypeName`: the name of what a value holds, a by-reference value read through. "Empty", "Null",
/// "Integer", "Long", "Single", "Double", "Currency", "Date", "String", "Boolean", "Error", "Byte";
/// for an array the name of its element type and "()", as in "Variant()". An object gives the name
/// of its class where it tells one, else "Object", or "Unknown" when it has no late-bound members;
/// no object gives "Nothing".
WString typeName(const Variant& value);

}  // namespace orvane
