#pragma once

/// Streams, persistence and pictures of the binary interface, for platforms that have none of their
/// own. Included by `automation.h`, which hosts include.

#include "orvane/automation.h"

#ifndef _WIN32

union LARGE_INTEGER {
    LONGLONG QuadPart;
};
union ULARGE_INTEGER {
    ULONGLONG QuadPart;
};
struct FILETIME {
    DWORD dwLowDateTime;
    DWORD dwHighDateTime;
};
struct STATSTG {
    LPOLESTR pwcsName;
    DWORD type;
    ULARGE_INTEGER cbSize;
    FILETIME mtime;
    FILETIME ctime;
    FILETIME atime;
    DWORD grfMode;
    DWORD grfLocksSupported;
    CLSID clsid;
    DWORD grfStateBits;
    DWORD reserved;
};

struct ISequentialStream : IUnknown {
    virtual HRESULT Read(void* data, ULONG size, ULONG* read) = 0;
    virtual HRESULT Write(const void* data, ULONG size, ULONG* written) = 0;
};

struct IStream : ISequentialStream {
    virtual HRESULT Seek(LARGE_INTEGER move, DWORD origin, ULARGE_INTEGER* position) = 0;
    virtual HRESULT SetSize(ULARGE_INTEGER size) = 0;
    virtual HRESULT CopyTo(IStream* target, ULARGE_INTEGER size, ULARGE_INTEGER* read,
                           ULARGE_INTEGER* written) = 0;
    virtual HRESULT Commit(DWORD flags) = 0;
    virtual HRESULT Revert() = 0;
    virtual HRESULT LockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER size, DWORD type) = 0;
    virtual HRESULT UnlockRegion(ULARGE_INTEGER offset, ULARGE_INTEGER size, DWORD type) = 0;
    virtual HRESULT Stat(STATSTG* stat, DWORD flag) = 0;
    virtual HRESULT Clone(IStream** copy) = 0;
};

struct IPersist : IUnknown {
    virtual HRESULT GetClassID(CLSID* classId) = 0;
};

struct IPersistStream : IPersist {
    virtual HRESULT IsDirty() = 0;
    virtual HRESULT Load(IStream* stream) = 0;
    virtual HRESULT Save(IStream* stream, BOOL clearDirty) = 0;
    virtual HRESULT GetSizeMax(ULARGE_INTEGER* size) = 0;
};

struct RECT {
    LONG left;
    LONG top;
    LONG right;
    LONG bottom;
};

inline constexpr SHORT PICTYPE_UNINITIALIZED = -1;
inline constexpr SHORT PICTYPE_NONE = 0;
inline constexpr SHORT PICTYPE_BITMAP = 1;
inline constexpr SHORT PICTYPE_METAFILE = 2;
inline constexpr SHORT PICTYPE_ICON = 3;
inline constexpr SHORT PICTYPE_ENHMETAFILE = 4;

inline constexpr DISPID DISPID_PICT_HANDLE = 0;
inline constexpr DISPID DISPID_PICT_HPAL = 2;
inline constexpr DISPID DISPID_PICT_TYPE = 3;
inline constexpr DISPID DISPID_PICT_WIDTH = 4;
inline constexpr DISPID DISPID_PICT_HEIGHT = 5;
inline constexpr DISPID DISPID_PICT_RENDER = 6;

/// A loaded picture. `get_Width` and `get_Height` are in hundredths of a millimetre.
struct IPicture : IUnknown {
    virtual HRESULT get_Handle(OLE_HANDLE* handle) = 0;
    virtual HRESULT get_hPal(OLE_HANDLE* palette) = 0;
    virtual HRESULT get_Type(SHORT* type) = 0;
    virtual HRESULT get_Width(OLE_XSIZE_HIMETRIC* width) = 0;
    virtual HRESULT get_Height(OLE_YSIZE_HIMETRIC* height) = 0;
    virtual HRESULT Render(HDC dc, LONG x, LONG y, LONG cx, LONG cy, OLE_XPOS_HIMETRIC xSource,
                           OLE_YPOS_HIMETRIC ySource, OLE_XSIZE_HIMETRIC cxSource,
                           OLE_YSIZE_HIMETRIC cySource, const RECT* bounds) = 0;
    virtual HRESULT set_hPal(OLE_HANDLE palette) = 0;
    virtual HRESULT get_CurDC(HDC* dc) = 0;
    virtual HRESULT SelectPicture(HDC dc, HDC* oldDC, OLE_HANDLE* bitmap) = 0;
    virtual HRESULT get_KeepOriginalFormat(BOOL* keep) = 0;
    virtual HRESULT put_KeepOriginalFormat(BOOL keep) = 0;
    virtual HRESULT PictureChanged() = 0;
    virtual HRESULT SaveAsFile(IStream* stream, BOOL saveMemoryCopy, LONG* size) = 0;
    virtual HRESULT get_Attributes(DWORD* attributes) = 0;
};

struct IPictureDisp : IDispatch {};

#endif
