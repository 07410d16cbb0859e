#include "frame/automation/error_info.h"

#include "frame/automation/abi.h"

#include <atomic>

namespace orvane::automation {
namespace {

constexpr std::int32_t kControlFacility = static_cast<std::int32_t>(0x800A0000);

BSTR bstrOrNull(const WString& text) {
    return text.isNull() ? nullptr
                         : SysAllocStringLen(toOle(text.data()), static_cast<UINT>(text.size()));
}

#ifdef _WIN32

// The system's own object: what a thread keeps of a failed call may outlive this library.
void leaveErrorInfo(const RuntimeError& failure) {
    ICreateErrorInfo* made = nullptr;
    if (FAILED(CreateErrorInfo(&made))) return;
    const auto text = [](const WString& units) {
        return const_cast<OLECHAR*>(toOle(units.isNull() ? u"" : units.data()));
    };
    made->SetDescription(text(failure.description));
    made->SetSource(text(failure.source));
    made->SetHelpFile(text(failure.helpFile));
    made->SetHelpContext(static_cast<DWORD>(failure.helpContext));
    IErrorInfo* info = nullptr;
    if (SUCCEEDED(made->QueryInterface(IID_IErrorInfo, reinterpret_cast<void**>(&info)))) {
        SetErrorInfo(0, info);
        info->Release();
    }
    made->Release();
}

#else

class ErrorInfo final : public IErrorInfo {
public:
    explicit ErrorInfo(RuntimeError failure) : failure_(std::move(failure)) {}
    virtual ~ErrorInfo() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        if (object == nullptr) return E_POINTER;
        *object = nullptr;
        if (!(iid == IID_IUnknown) && !(iid == IID_IErrorInfo)) return E_NOINTERFACE;
        AddRef();
        *object = static_cast<IErrorInfo*>(this);
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }
    HRESULT STDMETHODCALLTYPE GetGUID(GUID* guid) override {
        *guid = GUID{};
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetSource(BSTR* text) override { return give(failure_.source, text); }
    HRESULT STDMETHODCALLTYPE GetDescription(BSTR* text) override {
        return give(failure_.description, text);
    }
    HRESULT STDMETHODCALLTYPE GetHelpFile(BSTR* text) override {
        return give(failure_.helpFile, text);
    }
    HRESULT STDMETHODCALLTYPE GetHelpContext(DWORD* context) override {
        *context = static_cast<DWORD>(failure_.helpContext);
        return S_OK;
    }

private:
    static HRESULT give(const WString& text, BSTR* out) {
        *out = text.isNull()
                   ? nullptr
                   : SysAllocStringLen(toOle(text.data()), static_cast<UINT>(text.size()));
        return text.isNull() || *out != nullptr ? S_OK : E_OUTOFMEMORY;
    }

    std::atomic<ULONG> references_{1};
    RuntimeError failure_;
};

void leaveErrorInfo(const RuntimeError& failure) {
    auto* info = new ErrorInfo(failure);
    SetErrorInfo(0, info);
    info->Release();
}

#endif

WString take(BSTR text) {
    WString result(viewOf(text));
    SysFreeString(text);
    return result;
}

RuntimeError errorFrom(HRESULT status, IErrorInfo& info) {
    BSTR text = nullptr;
    RuntimeError failure(errorNumberOf(status));
    if (SUCCEEDED(info.GetDescription(&text)) && text != nullptr) failure.description = take(text);
    text = nullptr;
    if (SUCCEEDED(info.GetSource(&text))) failure.source = take(text);
    text = nullptr;
    if (SUCCEEDED(info.GetHelpFile(&text))) failure.helpFile = take(text);
    DWORD context = 0;
    if (SUCCEEDED(info.GetHelpContext(&context))) {
        failure.helpContext = static_cast<std::int32_t>(context);
    }
    return failure;
}

}  // namespace

HRESULT statusOf(std::int32_t errorNumber) {
    if (errorNumber >= 1 && errorNumber <= 0xFFFF) return kControlFacility + errorNumber;
    return errorNumber;
}

std::int32_t errorNumberOf(HRESULT status) {
    switch (static_cast<std::int32_t>(status)) {
    case DISP_E_TYPEMISMATCH:
        return error::kTypeMismatch;
    case DISP_E_OVERFLOW:
        return error::kOverflow;
    case DISP_E_BADINDEX:
        return error::kSubscriptOutOfRange;
    case DISP_E_DIVBYZERO:
        return error::kDivisionByZero;
    case E_OUTOFMEMORY:
        return error::kOutOfMemory;
    case DISP_E_UNKNOWNNAME:
    case DISP_E_MEMBERNOTFOUND:
        return error::kNoSuchMember;
    case DISP_E_PARAMNOTOPTIONAL:
        return error::kArgumentNotOptional;
    default:
        break;
    }
    const auto bits = static_cast<std::uint32_t>(status);
    if ((bits & 0xFFFF0000U) == 0x800A0000U && (bits & 0xFFFFU) != 0) {
        return static_cast<std::int32_t>(bits & 0xFFFFU);
    }
    return static_cast<std::int32_t>(status);
}

HRESULT reportError(const RuntimeError& failure) noexcept {
    SetErrorInfo(0, nullptr);
    try {
        leaveErrorInfo(failure);
    } catch (const std::bad_alloc&) {
        // The number alone has to do.
    }
    const HRESULT status = statusOf(failure.number);
    return FAILED(status) ? status : E_FAIL;
}

HRESULT reportOutOfMemory() noexcept {
    try {
        return reportError(RuntimeError(error::kOutOfMemory));
    } catch (const std::bad_alloc&) {
        SetErrorInfo(0, nullptr);
        return statusOf(error::kOutOfMemory);
    }
}

HRESULT fillException(const RuntimeError& failure, EXCEPINFO* exception) {
    if (exception != nullptr) {
        *exception = EXCEPINFO{};
        exception->scode = failure.number == 0 ? E_FAIL : statusOf(failure.number);
        exception->bstrDescription = bstrOrNull(failure.description);
        exception->bstrSource = bstrOrNull(failure.source);
        exception->bstrHelpFile = bstrOrNull(failure.helpFile);
        exception->dwHelpContext = static_cast<DWORD>(failure.helpContext);
    }
    return DISP_E_EXCEPTION;
}

void raiseStatus(HRESULT status) {
    IErrorInfo* info = nullptr;
    if (GetErrorInfo(0, &info) == S_OK && info != nullptr) {
        RuntimeError failure = errorFrom(status, *info);
        info->Release();
        throw failure;
    }
    throw RuntimeError(errorNumberOf(status));
}

void ExceptionRecord::clear() {
    SysFreeString(info.bstrSource);
    SysFreeString(info.bstrDescription);
    SysFreeString(info.bstrHelpFile);
    info = EXCEPINFO{};
}

void raiseInvokeFailure(HRESULT status, ExceptionRecord& exception) {
    if (status != DISP_E_EXCEPTION) throw RuntimeError(errorNumberOf(status));
    EXCEPINFO& info = exception.info;
    if (info.pfnDeferredFillIn != nullptr) info.pfnDeferredFillIn(&info);
    HRESULT code = info.scode != 0 ? info.scode : info.wCode;
    // An error has a number, also where the callee forgot it.
    if (code == 0) code = status;
    RuntimeError failure(errorNumberOf(code));
    if (info.bstrDescription != nullptr)
        failure.description = WString(viewOf(info.bstrDescription));
    failure.source = WString(viewOf(info.bstrSource));
    failure.helpFile = WString(viewOf(info.bstrHelpFile));
    failure.helpContext = static_cast<std::int32_t>(info.dwHelpContext);
    throw failure;
}

}  // namespace orvane::automation
