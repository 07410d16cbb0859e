#pragma once

#include "frame/automation/abi.h"
#include "frame/automation/marshal.h"
#include "frame/errors.h"
#include "frame/values/conversions.h"

#include "orvane/automation.h"

#include <string>
#include <utility>
#include <vector>

namespace orvane::test {

/// A collection of a host: `Count` and `Item`, reached by name, counted from 1. Items can be made
/// to fail, and the requests are noted.
class FakeCollection final : public IDispatch {
public:
    explicit FakeCollection(std::vector<Variant> items) : items_(std::move(items)) {}
    virtual ~FakeCollection() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = nullptr;
        if (!(iid == IID_IUnknown) && !(iid == IID_IDispatch)) return E_NOINTERFACE;
        AddRef();
        *object = static_cast<IDispatch*>(this);
        return S_OK;
    }
    // It lives as long as the test's variable.
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override { return --references_; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, LPOLESTR* names, UINT, LCID,
                                            DISPID* id) override {
        const void* units = names[0];
        const WStringView name(static_cast<const char16_t*>(units));
        *id = name == u"Count" ? kCount : name == u"Item" ? kItem : DISPID_UNKNOWN;
        return *id == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO*, UINT*) override {
        if (id == kCount) {
            requests.push_back("Count");
            if (countFails) return failure(error::kPermissionDenied);
            automation::toVariant(*result, Variant(static_cast<std::int32_t>(items_.size())));
            return S_OK;
        }
        if (id != kItem || parameters->cArgs != 1) return DISP_E_MEMBERNOTFOUND;
        const std::int32_t index = toLong(automation::fromVariant(parameters->rgvarg[0]));
        requests.push_back("Item " + std::to_string(index));
        if (index == failingItem) return failure(error::kPermissionDenied);
        if (index < 1 || index > static_cast<std::int32_t>(items_.size())) {
            return failure(error::kSubscriptOutOfRange);
        }
        automation::toVariant(*result, items_[static_cast<std::size_t>(index - 1)]);
        return S_OK;
    }

    Object object() { return Object(static_cast<IDispatch*>(this)); }
    ULONG references() const { return references_; }

    std::vector<std::string> requests;
    bool countFails = false;
    std::int32_t failingItem = -1;

private:
    static constexpr DISPID kCount = 11;
    static constexpr DISPID kItem = 12;

    static HRESULT failure(std::int32_t number) {
        return static_cast<HRESULT>(0x800A0000U | static_cast<std::uint32_t>(number));
    }

    std::vector<Variant> items_;
    ULONG references_ = 0;
};

}  // namespace orvane::test
