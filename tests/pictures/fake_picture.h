#pragma once

#include "frame/values/picture.h"

#include "orvane/automation.h"

#include <cstdint>

namespace orvane::test {

/// The picture with a new reference, as the platform hands one out.
inline IPictureDisp* sharedOf(const Picture& picture) {
    void* answer = nullptr;
    if (!picture.isNothing()) picture.unknown()->QueryInterface(IID_IDispatch, &answer);
    return static_cast<IPictureDisp*>(answer);
}

/// A picture of any type and handle, without anything behind it: metafiles can't be made otherwise
/// on every platform.
class FakePicture final : public IPictureDisp, public IPicture {
public:
    /// With one reference for the caller.
    FakePicture(Picture::Type type, std::uint32_t handle) : type_(type), handle_(handle) {
        ++alive;
    }

    static Picture make(Picture::Type type, std::uint32_t handle = 0) {
        return Picture(Object::adopt(static_cast<IPictureDisp*>(new FakePicture(type, handle))));
    }

    /// How many there are.
    inline static int alive = 0;

    HRESULT STDMETHODCALLTYPE QueryInterface(REFIID iid, void** object) override {
        *object = nullptr;
        if (iid == IID_IPicture) *object = static_cast<IPicture*>(this);
        else if (iid == IID_IUnknown || iid == IID_IDispatch) {
            *object = static_cast<IPictureDisp*>(this);
        } else return E_NOINTERFACE;
        AddRef();
        return S_OK;
    }
    ULONG STDMETHODCALLTYPE AddRef() override { return ++references_; }
    ULONG STDMETHODCALLTYPE Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

    HRESULT STDMETHODCALLTYPE get_Handle(OLE_HANDLE* handle) override {
        *handle = static_cast<OLE_HANDLE>(handle_);
        return S_OK;
    }
    HRESULT STDMETHODCALLTYPE get_Type(SHORT* type) override {
        *type = static_cast<SHORT>(type_);
        return S_OK;
    }

    HRESULT STDMETHODCALLTYPE GetTypeInfoCount(UINT*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetTypeInfo(UINT, LCID, ITypeInfo**) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE GetIDsOfNames(REFIID, OLECHAR**, UINT, LCID, DISPID*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE Invoke(DISPID, REFIID, LCID, WORD, DISPPARAMS*, VARIANT*, EXCEPINFO*,
                                     UINT*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE get_hPal(OLE_HANDLE*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Width(OLE_XSIZE_HIMETRIC*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Height(OLE_YSIZE_HIMETRIC*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE Render(HDC, LONG, LONG, LONG, LONG, OLE_XPOS_HIMETRIC,
                                     OLE_YPOS_HIMETRIC, OLE_XSIZE_HIMETRIC, OLE_YSIZE_HIMETRIC,
                                     const RECT*) override {
        return E_NOTIMPL;
    }
    HRESULT STDMETHODCALLTYPE set_hPal(OLE_HANDLE) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_CurDC(HDC*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SelectPicture(HDC, HDC*, OLE_HANDLE*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_KeepOriginalFormat(BOOL*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE put_KeepOriginalFormat(BOOL) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE PictureChanged() override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE SaveAsFile(IStream*, BOOL, LONG*) override { return E_NOTIMPL; }
    HRESULT STDMETHODCALLTYPE get_Attributes(DWORD*) override { return E_NOTIMPL; }

private:
    ~FakePicture() { --alive; }

    Picture::Type type_;
    std::uint32_t handle_;
    ULONG references_ = 1;
};

}  // namespace orvane::test
