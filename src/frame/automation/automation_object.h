#pragma once

#include "frame/automation/reference.h"
#include "frame/values/variant.h"

#include "orvane/automation.h"

#include <cstdint>
#include <memory>
#include <span>

namespace orvane::automation {

class Apartment;
class ConnectionPoints;
struct ClassTable;
struct EnumTable;
class AutomationObject;

/// What an interface pointer of the library points to: the vtable that hosts call through, and the
/// object behind it. Every interface of an object has one of these of its own.
struct InterfaceHeader {
    void (*const* vtable)();
    AutomationObject* object;
};

/// The base of every automation class. A class derives from it, gives its table to the
/// constructor and writes its members in value-layer types; hosts reach them through the dual
/// interface that the table describes.
///
/// Objects start with one reference and belong to the thread that made them.
class AutomationObject {
public:
    explicit AutomationObject(const ClassTable& table);
    AutomationObject(const AutomationObject&) = delete;
    AutomationObject& operator=(const AutomationObject&) = delete;

    std::uint32_t addRef() { return ++references_; }
    std::uint32_t release();

    const ClassTable& classTable() const { return table_; }

    /// The default interface, without a new reference: a pointer to `_ClassName`.
    IUnknown* defaultInterface() { return reinterpret_cast<IUnknown*>(&dispatch_); }
    /// The object as a late-bound value.
    Object asObject() { return Object(defaultInterface()); }

    /// Any of the object's interfaces, with a new reference, or null.
    void* queryInterface(REFIID iid);

    /// The library object behind an interface pointer when it is one of this class, else null.
    static AutomationObject* from(IUnknown* unknown, const ClassTable& table);

protected:
    virtual ~AutomationObject();

    /// The apartment that the object belongs to, also when another thread releases it.
    Apartment& apartment() { return apartment_; }

    /// Fires an event to every connected sink, in the order in which they were connected. What a
    /// sink raises is dropped, as hosts expect.
    void fire(DISPID event, std::span<Variant> arguments = {});

private:
    friend struct InterfaceThunks;

    InterfaceHeader dispatch_;
    InterfaceHeader provideClassInfo_;
    InterfaceHeader supportErrorInfo_;
    InterfaceHeader connections_;
    const ClassTable& table_;
    Apartment& apartment_;
    std::uint32_t references_ = 1;
    std::unique_ptr<ConnectionPoints> connectionPoints_;
};

/// The library object of class `table` in `unknown`; null for Nothing, run-time error 13 for an
/// object of another class.
AutomationObject* libraryObject(IUnknown* unknown, const ClassTable& table);

/// The same as a counted reference to a class.
template <class C>
Ref<C> libraryObject(const Object& object) {
    return Ref<C>(static_cast<C*>(libraryObject(object.unknown(), C::table())));
}

}  // namespace orvane::automation
