#pragma once

#include "sample_class.h"

#include "frame/automation/abi.h"
#include "frame/automation/marshal.h"

#include <initializer_list>
#include <string>
#include <utility>
#include <vector>

/// The host's side of the binary interface, as small as it gets.
namespace orvane::test {

/// A VARIANT that frees itself.
class HostVariant {
public:
    HostVariant() { VariantInit(&value); }
    explicit HostVariant(const Variant& content) { automation::toVariant(value, content); }
    ~HostVariant() { VariantClear(&value); }
    HostVariant(const HostVariant&) = delete;
    HostVariant& operator=(const HostVariant&) = delete;
    Variant content() const { return automation::fromVariant(value); }

    VARIANT value;
};

struct InvokeResult {
    HRESULT status = 0;
    Variant value;
    std::int32_t scode = 0;
    std::u16string description;
    std::u16string source;
    std::u16string helpFile;
    std::uint32_t helpContext = 0;
    UINT argumentError = 999;
};

inline DISPID idOf(IDispatch* object, const char16_t* name) {
    OLECHAR* text = const_cast<OLECHAR*>(automation::toOle(name));
    DISPID id = DISPID_UNKNOWN;
    object->GetIDsOfNames(GUID_NULL, &text, 1, LOCALE_USER_DEFAULT, &id);
    return id;
}

inline std::u16string take(BSTR text) {
    std::u16string result(automation::viewOf(text));
    SysFreeString(text);
    return result;
}

/// Calls a member with positional arguments, given in order; `named` are behind them with their
/// position numbers.
inline InvokeResult invoke(IDispatch* object, DISPID id, WORD flags,
                           std::vector<VARIANTARG> arguments,
                           std::vector<std::pair<DISPID, VARIANTARG>> named = {}) {
    std::vector<VARIANTARG> given;
    std::vector<DISPID> names;
    for (const auto& [name, argument] : named) {
        names.push_back(name);
        given.push_back(argument);
    }
    given.insert(given.end(), arguments.rbegin(), arguments.rend());
    DISPPARAMS parameters{given.data(), names.data(), static_cast<UINT>(given.size()),
                          static_cast<UINT>(names.size())};
    EXCEPINFO exception{};
    HostVariant result;
    InvokeResult outcome;
    outcome.status = object->Invoke(id, GUID_NULL, LOCALE_USER_DEFAULT, flags, &parameters,
                                    &result.value, &exception, &outcome.argumentError);
    if (SUCCEEDED(outcome.status)) outcome.value = result.content();
    outcome.scode = exception.scode;
    outcome.description = take(exception.bstrDescription);
    outcome.source = take(exception.bstrSource);
    outcome.helpFile = take(exception.bstrHelpFile);
    outcome.helpContext = exception.dwHelpContext;
    return outcome;
}

inline InvokeResult call(IDispatch* object, const char16_t* name,
                         std::vector<VARIANTARG> arguments = {}) {
    return invoke(object, idOf(object, name), DISPATCH_METHOD | DISPATCH_PROPERTYGET,
                  std::move(arguments));
}

inline VARIANTARG longArgument(std::int32_t value) {
    VARIANTARG argument{};
    argument.vt = VT_I4;
    argument.lVal = value;
    return argument;
}

inline VARIANTARG missingArgument() {
    VARIANTARG argument{};
    argument.vt = VT_ERROR;
    argument.scode = DISP_E_PARAMNOTFOUND;
    return argument;
}

inline VARIANTARG byReference(VARIANT& variable) {
    VARIANTARG argument{};
    argument.vt = VT_BYREF | VT_VARIANT;
    argument.pvarVal = &variable;
    return argument;
}

inline IDispatch* dispatchOf(const Ref<Sample>& sample) {
    return static_cast<IDispatch*>(sample->defaultInterface());
}

}  // namespace orvane::test
