#pragma once

#include "frame/automation/abi.h"
#include "frame/automation/marshal.h"
#include "frame/errors.h"
#include "frame/values/object.h"
#include "frame/values/variant.h"

#include "orvane/automation.h"

#include <string>
#include <utility>
#include <vector>

namespace orvane::test {

/// An application object of a host: `Title`, `Major`, `Minor` and `Revision`, answered by name.
/// Properties can be taken away or made to fail, and the reads are noted.
class FakeApplication final : public IDispatch {
public:
    FakeApplication(Variant title, Variant major, Variant minor, Variant revision = 0)
        : properties{{u"Title", std::move(title)},
                     {u"Major", std::move(major)},
                     {u"Minor", std::move(minor)},
                     {u"Revision", std::move(revision)}} {}
    virtual ~FakeApplication() = default;

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
        const WStringView name(automation::fromOle(names[0]));
        for (std::size_t i = 0; i < properties.size(); ++i) {
            if (properties[i].first != name) continue;
            *id = static_cast<DISPID>(i + 1);
            return S_OK;
        }
        *id = DISPID_UNKNOWN;
        return DISP_E_UNKNOWNNAME;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID id, REFIID, LCID, WORD, DISPPARAMS* parameters,
                                     VARIANT* result, EXCEPINFO*, UINT*) override {
        if (parameters->cArgs != 0) return DISP_E_BADPARAMCOUNT;
        const auto& [name, value] = properties.at(static_cast<std::size_t>(id - 1));
        reads.push_back(name);
        if (name == failing) return static_cast<HRESULT>(0x800A0000U | error::kPermissionDenied);
        automation::toVariant(*result, value);
        return S_OK;
    }

    Object object() { return Object(static_cast<IDispatch*>(this)); }
    ULONG references() const { return references_; }

    std::vector<std::pair<std::u16string, Variant>> properties;
    std::vector<std::u16string> reads;
    std::u16string failing;

private:
    ULONG references_ = 0;
};

}  // namespace orvane::test
