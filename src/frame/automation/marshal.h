#pragma once

#include "frame/automation/abi.h"
#include "frame/values/variant.h"

namespace orvane::automation {

/// The value of a VARIANT; one that stands for a variable (VT_BYREF) is read. Raises 13 for a tag
/// that the value model does not have; 8, 16, 32 and 64-bit integers of other kinds become the
/// narrowest type that holds them.
Variant fromVariant(const VARIANT& value);

/// A by-reference Variant over `place`, which may itself stand for a variable; reads and writes go
/// through to it. `place` must stay where it is for the length of the call.
Variant referenceTo(VARIANT& place);

/// Writes `value` into an uninitialised or cleared VARIANT; strings and arrays are copies of its
/// own. A by-reference Variant is read through.
void toVariant(VARIANT& out, const Variant& value);

/// Replaces what `place` holds. Where it stands for a variable, the value is converted to that
/// variable's type.
void storeVariant(VARIANT& place, const Variant& value);

/// A VARIANT that owns what it holds.
struct OwnedVariant {
    OwnedVariant() = default;
    OwnedVariant(const OwnedVariant&) = delete;
    OwnedVariant& operator=(const OwnedVariant&) = delete;
    ~OwnedVariant() { VariantClear(&value); }

    VARIANT value{};
};

/// The bounds of an array, first dimension first.
std::vector<Bound> arrayBounds(const SAFEARRAY& array);

/// A new SAFEARRAY with the array's elements and bounds; null for an unallocated array.
SAFEARRAY* toSafeArray(const ArrayBase& array);
/// The array in a SAFEARRAY; null gives an unallocated array of the element type.
Variant::ArrayPointer fromSafeArray(SAFEARRAY* array, VARTYPE elementType);
/// Puts a new SAFEARRAY with the elements and bounds of `array` into `place` and frees the former
/// one. A fixed-size array keeps its place and takes the elements when the bounds are the same.
/// Raises 10 when the former one is locked, or is of a fixed size with other bounds.
void replaceArray(SAFEARRAY*& place, const ArrayBase& array);
/// Stores the elements of `array` into `target`, which has the same bounds.
void storeElements(SAFEARRAY* target, const ArrayBase& array);
/// The element type of an array that comes without a tag of its own.
VARTYPE elementTypeOf(SAFEARRAY* array, VARTYPE declared);

}  // namespace orvane::automation
