#pragma once

#include "frame/values/wstring.h"

#include <cstddef>
#include <initializer_list>
#include <span>
#include <utility>

struct IUnknown;

namespace orvane {

class Variant;

/// A reference to an object of a host or of the library, reached by member name; Nothing when
/// empty. Calls on Nothing raise run-time error 91, an unknown member raises 438, and an error
/// that the object itself raises comes through unchanged.
class Object {
public:
    Object() = default;
    Object(std::nullptr_t) {}
    /// Shares the object: takes a reference of its own.
    explicit Object(IUnknown* unknown);
    /// Takes over the caller's reference.
    static Object adopt(IUnknown* unknown);
    Object(const Object& other);
    Object(Object&& other) noexcept : unknown_(std::exchange(other.unknown_, nullptr)) {}
    Object& operator=(Object other) noexcept {
        std::swap(unknown_, other.unknown_);
        return *this;
    }
    ~Object();

    bool isNothing() const { return unknown_ == nullptr; }
    /// The same object: compares identities, not references.
    bool is(const Object& other) const;

    /// Reads a property (or calls a function without arguments of its own).
    Variant get(WStringView name, std::initializer_list<Variant> arguments = {}) const;
    /// Reads the default member.
    Variant defaultValue(std::initializer_list<Variant> arguments = {}) const;
    /// Writes a property; an object value is assigned by value, as `Let` does.
    void put(WStringView name, const Variant& value,
             std::initializer_list<Variant> arguments = {}) const;
    /// Writes a property by reference, as `Set` does.
    void putReference(WStringView name, const Object& value) const;
    /// Calls a method; by-reference arguments are given as `Variant::reference`.
    Variant call(WStringView name, std::initializer_list<Variant> arguments = {}) const;
    /// True when the object has a member of this name.
    bool hasMember(WStringView name) const;

    /// The raw reference, for the automation layer only; it stays owned by this object.
    IUnknown* unknown() const { return unknown_; }
    /// Gives the reference away.
    IUnknown* detach() { return std::exchange(unknown_, nullptr); }

private:
    IUnknown* unknown_ = nullptr;
};

}  // namespace orvane
