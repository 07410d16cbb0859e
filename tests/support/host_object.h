#pragma once

#include "frame/values/object.h"

#include "orvane/automation.h"

namespace orvane::test {

/// The identity of a host's object that a test plays: `IDispatch` alone, without type information.
/// It is counted, but lives as long as the test's variable.
class HostObject : public IDispatch {
public:
    HostObject() = default;
    HostObject(const HostObject&) = delete;
    HostObject& operator=(const HostObject&) = delete;
    virtual ~HostObject() = default;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = nullptr;
        if (!(iid == IID_IUnknown) && !(iid == IID_IDispatch)) return E_NOINTERFACE;
        AddRef();
        *object = static_cast<IDispatch*>(this);
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override { return --references_; }
    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT* count) override {
        *count = 0;
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }

    Object object() { return Object(static_cast<IDispatch*>(this)); }
    /// How many references to it are held.
    ULONG references() const { return references_; }

private:
    ULONG references_ = 0;
};

}  // namespace orvane::test
