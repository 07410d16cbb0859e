#pragma once

#include "frame/automation/parameters.h"

namespace orvane::automation {

/// An argument of the default interface of the library class `C`, which hosts carry out with
/// objects of their own; Nothing where none was given. A script's object answers the interface's
/// members by name alone, so whoever calls it asks the object for the interface first.
template <class C>
struct Implementer {
    Object object;
};

template <class C>
struct Cell<Implementer<C>> {
    using Abi = IDispatch*;
    static constexpr VARTYPE type = VT_DISPATCH;
    static Implementer<C> read(Abi cell) { return {Object(cell)}; }
    static Implementer<C> fromVariant(const Variant& value) { return {toObject(value)}; }
    static TypeReference reference() { return {VT_DISPATCH, false, &C::table}; }
};

}  // namespace orvane::automation
