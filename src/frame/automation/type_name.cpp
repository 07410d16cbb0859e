#include "frame/values/type_name.h"

#include "frame/automation/abi.h"

namespace orvane {
namespace {

using namespace automation;

template <class Interface>
Interface* query(IUnknown& object, REFIID iid) {
    void* found = nullptr;
    return SUCCEEDED(object.QueryInterface(iid, &found)) ? static_cast<Interface*>(found) : nullptr;
}

/// The name that type information tells; null when it tells none.
WString nameIn(ITypeInfo& info) {
    BSTR text = nullptr;
    if (FAILED(info.GetDocumentation(MEMBERID_NIL, &text, nullptr, nullptr, nullptr))) return {};
    WStringView name = viewOf(text);
    // A class's default interface bears the class name behind an underscore.
    if (name.starts_with(u'_')) name.remove_prefix(1);
    WString result = name.empty() ? WString() : WString(name);
    SysFreeString(text);
    return result;
}

WString classNameOf(IUnknown& object) {
    auto* provider = query<IProvideClassInfo>(object, IID_IProvideClassInfo);
    if (provider == nullptr) return {};
    ITypeInfo* info = nullptr;
    const HRESULT status = provider->GetClassInfo(&info);
    provider->Release();
    if (FAILED(status) || info == nullptr) return {};
    const Object held = Object::adopt(info);
    return nameIn(*info);
}

WString interfaceNameOf(IDispatch& object) {
    ITypeInfo* info = nullptr;
    if (FAILED(object.GetTypeInfo(0, LOCALE_USER_DEFAULT, &info)) || info == nullptr) return {};
    const Object held = Object::adopt(info);
    return nameIn(*info);
}

WString nameOf(const Object& object) {
    if (object.isNothing()) return u"Nothing";
    WString name = classNameOf(*object.unknown());
    if (!name.empty()) return name;
    auto* dispatch = query<IDispatch>(*object.unknown(), IID_IDispatch);
    if (dispatch == nullptr) return u"Unknown";
    const Object held = Object::adopt(dispatch);
    name = interfaceNameOf(*dispatch);
    return name.empty() ? WString(u"Object") : name;
}

const char16_t* nameOf(VarType type) {
    switch (type) {
    case VarType::Empty:
        return u"Empty";
    case VarType::Null:
        return u"Null";
    case VarType::Integer:
        return u"Integer";
    case VarType::Long:
        return u"Long";
    case VarType::Single:
        return u"Single";
    case VarType::Double:
        return u"Double";
    case VarType::Currency:
        return u"Currency";
    case VarType::Date:
        return u"Date";
    case VarType::String:
        return u"String";
    case VarType::Object:
        return u"Object";
    case VarType::Error:
        return u"Error";
    case VarType::Boolean:
        return u"Boolean";
    case VarType::Byte:
        return u"Byte";
    default:
        return u"Variant";
    }
}

}  // namespace

WString typeName(const Variant& value) {
    if (value.isReference()) return typeName(value.value());
    if (const auto* object = value.as<Object>()) return nameOf(*object);
    if (const ArrayBase* array = value.array())
        return WString(nameOf(array->elementType())) + u"()";
    return nameOf(value.type());
}

}  // namespace orvane
