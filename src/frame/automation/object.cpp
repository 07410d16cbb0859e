#include "frame/values/object.h"

#include "frame/automation/abi.h"
#include "frame/automation/error_info.h"
#include "frame/automation/late_call.h"
#include "frame/automation/marshal.h"

namespace orvane {

Object::Object(IUnknown* unknown) : unknown_(unknown) {
    if (unknown_ != nullptr) unknown_->AddRef();
}

Object Object::adopt(IUnknown* unknown) {
    Object object;
    object.unknown_ = unknown;
    return object;
}

Object::Object(const Object& other) : Object(other.unknown_) {}

Object::~Object() {
    if (unknown_ != nullptr) unknown_->Release();
}

bool Object::is(const Object& other) const {
    if (unknown_ == other.unknown_) return true;
    if (isNothing() || other.isNothing()) return false;
    void* first = nullptr;
    void* second = nullptr;
    unknown_->QueryInterface(IID_IUnknown, &first);
    other.unknown_->QueryInterface(IID_IUnknown, &second);
    const bool same = first == second;
    if (first != nullptr) static_cast<IUnknown*>(first)->Release();
    if (second != nullptr) static_cast<IUnknown*>(second)->Release();
    return same;
}

Variant Object::get(WStringView name, std::initializer_list<Variant> arguments) const {
    const automation::LateCaller caller(*this);
    return caller.call(caller.idOf(name), DISPATCH_PROPERTYGET | DISPATCH_METHOD, arguments);
}

Variant Object::defaultValue(std::initializer_list<Variant> arguments) const {
    return automation::LateCaller(*this).call(DISPID_VALUE, DISPATCH_PROPERTYGET | DISPATCH_METHOD,
                                              arguments);
}

void Object::put(WStringView name, const Variant& value,
                 std::initializer_list<Variant> arguments) const {
    const automation::LateCaller caller(*this);
    caller.put(caller.idOf(name), DISPATCH_PROPERTYPUT, value, arguments);
}

void Object::putReference(WStringView name, const Object& value) const {
    const automation::LateCaller caller(*this);
    caller.put(caller.idOf(name), DISPATCH_PROPERTYPUTREF, value, {});
}

Variant Object::call(WStringView name, std::initializer_list<Variant> arguments) const {
    const automation::LateCaller caller(*this);
    return caller.call(caller.idOf(name), DISPATCH_METHOD, arguments);
}

bool Object::hasMember(WStringView name) const {
    DISPID id = DISPID_UNKNOWN;
    return automation::LateCaller(*this).find(name, id);
}

}  // namespace orvane
