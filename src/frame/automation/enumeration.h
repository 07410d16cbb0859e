#pragma once

#include "frame/automation/parameters.h"

#include <vector>

namespace orvane::automation {

/// An object that gives values one by one. It has no late-bound members, so it crosses as
/// `IUnknown`.
class Enumeration : public Object {
public:
    Enumeration() = default;
    explicit Enumeration(Object object) : Object(std::move(object)) {}
};

template <>
struct Cell<Enumeration> {
    using Abi = IUnknown*;
    static constexpr VARTYPE type = VT_UNKNOWN;
    static void write(Abi& cell, const Enumeration& value) {
        writeInterface(cell, value, IID_IUnknown);
    }
    static Variant toVariant(const Enumeration& value) { return Variant(Object(value)); }
    static TypeReference reference() { return {VT_UNKNOWN}; }
};

/// What a class's `_NewEnum` member returns: an object that gives hosts these values one by one, in
/// this order ("For Each"). The list is the one at the time of the call.
Enumeration newEnumeration(std::vector<Variant> values);

}  // namespace orvane::automation
