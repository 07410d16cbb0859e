#include "frame/automation/late_call.h"

#include "frame/automation/abi.h"
#include "frame/automation/error_info.h"
#include "frame/automation/marshal.h"

#ifdef _WIN32
#include <dispex.h>
#endif

#include <vector>

namespace orvane::automation {
namespace {

// IDispatchEx, which mingw's libraries lack the identifier of.
constexpr IID kExtendedDispatchId = {
    0xA6EF9860, 0xC720, 0x11D0, {0x93, 0x37, 0x00, 0xA0, 0xC9, 0x0D, 0xCA, 0xA9}};

// The arguments of one call in the form of the binary interface: last first, with room for what
// comes back by reference.
class CallArguments {
public:
    CallArguments(std::initializer_list<Variant> arguments, const Variant* putValue)
        : originals_(arguments.begin(), arguments.end()) {
        if (putValue != nullptr) originals_.push_back(*putValue);
        const std::size_t count = originals_.size();
        places_ = std::vector<OwnedVariant>(count);
        given_.resize(count);
        for (std::size_t i = 0; i < count; ++i) {
            VARIANT& place = places_[i].value;
            toVariant(place, originals_[i]);
            VARIANTARG& argument = given_[count - 1 - i];
            if (originals_[i].isReference()) {
                argument.vt = VT_BYREF | VT_VARIANT;
                argument.pvarVal = &place;
            } else {
                argument = place;
            }
        }
    }
    CallArguments(const CallArguments&) = delete;
    CallArguments& operator=(const CallArguments&) = delete;

    DISPPARAMS parameters() {
        return {given_.data(), nullptr, static_cast<UINT>(given_.size()), 0};
    }

    /// Brings by-reference arguments back, then raises the error of a failed call. Of two errors
    /// the call's own counts.
    void finish(HRESULT status, ExceptionRecord& exception) {
        if (SUCCEEDED(status)) {
            writeBack();
            return;
        }
        ErrorTrap trap;
        trap([this] { writeBack(); });
        raiseInvokeFailure(status, exception);
    }

private:
    void writeBack() {
        for (std::size_t i = 0; i < originals_.size(); ++i) {
            if (originals_[i].isReference()) originals_[i].assign(fromVariant(places_[i].value));
        }
    }

    std::vector<Variant> originals_;
    std::vector<OwnedVariant> places_;
    std::vector<VARIANTARG> given_;
};

}  // namespace

LateCaller::LateCaller(const Object& object) {
    if (object.isNothing()) raise(error::kObjectNotSet);
    void* found = nullptr;
    if (SUCCEEDED(object.unknown()->QueryInterface(kExtendedDispatchId, &found))) {
        extended_ = static_cast<IDispatchEx*>(found);
    } else if (SUCCEEDED(object.unknown()->QueryInterface(IID_IDispatch, &found))) {
        dispatch_ = static_cast<IDispatch*>(found);
    } else {
        raise(error::kNoSuchMember);
    }
}

LateCaller::~LateCaller() {
    if (extended_ != nullptr) extended_->Release();
    if (dispatch_ != nullptr) dispatch_->Release();
}

bool LateCaller::find(WStringView name, DISPID& id) const {
    if (extended_ != nullptr) {
        BSTR text = newBstr(name);
        const HRESULT status = extended_->GetDispID(text, fdexNameCaseInsensitive, &id);
        SysFreeString(text);
        return SUCCEEDED(status);
    }
    std::u16string text(name);
    OLECHAR* names = const_cast<OLECHAR*>(toOle(text.c_str()));
    return SUCCEEDED(dispatch_->GetIDsOfNames(GUID_NULL, &names, 1, LOCALE_USER_DEFAULT, &id));
}

DISPID LateCaller::idOf(WStringView name) const {
    DISPID id = DISPID_UNKNOWN;
    if (!find(name, id)) raise(error::kNoSuchMember);
    return id;
}

HRESULT LateCaller::invoke(DISPID id, WORD flags, DISPPARAMS& parameters, VARIANT* result,
                           EXCEPINFO& exception) const {
    if (extended_ != nullptr) {
        return extended_->InvokeEx(id, LOCALE_USER_DEFAULT, flags, &parameters, result, &exception,
                                   nullptr);
    }
    UINT argumentError = 0;
    return dispatch_->Invoke(id, GUID_NULL, LOCALE_USER_DEFAULT, flags, &parameters, result,
                             &exception, &argumentError);
}

Variant LateCaller::call(DISPID id, WORD flags, std::initializer_list<Variant> arguments) const {
    CallArguments given(arguments, nullptr);
    DISPPARAMS parameters = given.parameters();
    ExceptionRecord exception;
    OwnedVariant result;
    HRESULT status = invoke(id, flags, parameters, &result.value, exception.info);
    // Wine's script engine refuses a plain value that is asked for as "method or property". No
    // other object is asked twice: it may have done its work before it failed.
    if (status == E_FAIL && extended_ != nullptr &&
        flags == (DISPATCH_METHOD | DISPATCH_PROPERTYGET)) {
        exception.clear();
        status = invoke(id, DISPATCH_PROPERTYGET, parameters, &result.value, exception.info);
    }
    given.finish(status, exception);
    return fromVariant(result.value);
}

void LateCaller::put(DISPID id, WORD flags, const Variant& value,
                     std::initializer_list<Variant> arguments) const {
    CallArguments given(arguments, &value);
    DISPPARAMS parameters = given.parameters();
    DISPID putId = DISPID_PROPERTYPUT;
    parameters.rgdispidNamedArgs = &putId;
    parameters.cNamedArgs = 1;
    ExceptionRecord exception;
    const HRESULT status = invoke(id, flags, parameters, nullptr, exception.info);
    given.finish(status, exception);
}

}  // namespace orvane::automation
