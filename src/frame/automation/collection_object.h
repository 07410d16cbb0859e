#pragma once

#include "frame/automation/automation_object.h"
#include "frame/automation/enumeration.h"
#include "frame/values/collection.h"

namespace orvane::automation {

/// A `Collection` that the library hands to hosts: `Item` (the default member), `Add`, `Count`,
/// `Remove` and enumeration, as hosts know them from their own collections.
///
/// It is no class of the type library, because there it would hide the host's own `Collection`:
/// members give it as an object of any kind. Its interface is the one that form hosts declare
/// their collections with (identifier, order of members and identifiers of members), so that a
/// variable declared `As Collection` takes it, early bound.
class CollectionObject final : public AutomationObject {
public:
    static const ClassTable& table();

    CollectionObject();
    explicit CollectionObject(Collection collection);

    /// The values themselves, for the library's own use.
    Collection& items() { return items_; }
    const Collection& items() const { return items_; }

    /// As the members of `Collection`; a text names an item by its key, any other value by its
    /// place from 1.
    Variant Item(const Variant& index) { return items_.item(index); }
    void Add(const Variant& item, const Variant& key, const Variant& before, const Variant& after);
    std::int32_t Count() { return items_.count(); }
    void Remove(const Variant& index) { items_.remove(index); }
    /// Gives the values of the moment of the call.
    Enumeration NewEnum();

private:
    // The interface passes every argument by reference.
    Variant itemByReference(Variant& index) { return Item(index); }
    void addByReference(Variant& item, Variant& key, Variant& before, Variant& after) {
        Add(item, key, before, after);
    }
    void removeByReference(Variant& index) { Remove(index); }

    Collection items_;
};

/// A collection as a member's result: any object, since the type library doesn't have the class.
template <>
struct Cell<Ref<CollectionObject>> {
    using Abi = IDispatch*;
    static constexpr VARTYPE type = VT_DISPATCH;
    static void write(Abi& cell, const Ref<CollectionObject>& value) {
        writeInterface(reinterpret_cast<IUnknown*&>(cell), value ? value->asObject() : Object(),
                       IID_IDispatch);
    }
    static Variant toVariant(const Ref<CollectionObject>& value) {
        return Variant(value ? value->asObject() : Object());
    }
    static TypeReference reference() { return {VT_DISPATCH}; }
};

}  // namespace orvane::automation
