#pragma once

#include "platform/linux/picture_content.h"

#include <orvane/automation.h>

#include <atomic>

namespace orvane::platform {

/// The picture object, as the platform's own standard picture behaves. Used by one thread at a
/// time, except for its count of references.
class Picture final : public IPicture, public IPictureDisp, public IPersistStream {
public:
    /// A picture with one reference, which takes over `content`. Null when there is no memory;
    /// `content` stays the caller's then.
    static Picture* create(PictureContent content);

    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

    HRESULT QueryInterface(REFIID iid, void** object) override;
    ULONG AddRef() override;
    ULONG Release() override;

    HRESULT get_Handle(OLE_HANDLE* handle) override;
    HRESULT get_hPal(OLE_HANDLE* palette) override;
    HRESULT get_Type(SHORT* type) override;
    HRESULT get_Width(OLE_XSIZE_HIMETRIC* width) override;
    HRESULT get_Height(OLE_YSIZE_HIMETRIC* height) override;
    /// Draws on a memory device context. A metafile is played within the area that it is given;
    /// E_FAIL where the module that plays it is absent.
    HRESULT Render(HDC dc, LONG x, LONG y, LONG cx, LONG cy, OLE_XPOS_HIMETRIC xSource,
                   OLE_YPOS_HIMETRIC ySource, OLE_XSIZE_HIMETRIC cxSource,
                   OLE_YSIZE_HIMETRIC cySource, const RECT* bounds) override;
    HRESULT set_hPal(OLE_HANDLE palette) override;
    HRESULT get_CurDC(HDC* dc) override;
    HRESULT SelectPicture(HDC dc, HDC* oldDC, OLE_HANDLE* bitmap) override;
    HRESULT get_KeepOriginalFormat(BOOL* keep) override;
    HRESULT put_KeepOriginalFormat(BOOL keep) override;
    HRESULT PictureChanged() override;
    HRESULT SaveAsFile(IStream* stream, BOOL saveMemoryCopy, LONG* size) override;
    HRESULT get_Attributes(DWORD* attributes) override;

    HRESULT GetTypeInfoCount(UINT* count) override;
    HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) override;
    HRESULT GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                          DISPID* ids) override;
    HRESULT Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags, DISPPARAMS* parameters,
                   VARIANT* result, EXCEPINFO* exception, UINT* argumentError) override;

    HRESULT GetClassID(CLSID* classId) override;
    HRESULT IsDirty() override;
    HRESULT Load(IStream* stream) override;
    HRESULT Save(IStream* stream, BOOL clearDirty) override;
    HRESULT GetSizeMax(ULARGE_INTEGER* size) override;

private:
    explicit Picture(PictureContent content);
    ~Picture();

    HRESULT getProperty(DISPID id, VARIANT& result);
    HRESULT renderByName(const DISPPARAMS& parameters, UINT* argumentError);

    std::atomic<ULONG> references_ = 1;
    PictureContent content_;
    OLE_HANDLE palette_ = 0;
    HDC currentDC_ = nullptr;
    bool keepOriginal_ = true;
    bool dirty_ = false;
};

}  // namespace orvane::platform
