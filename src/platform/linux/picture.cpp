#include "platform/linux/picture.h"

#include "platform/linux/gdi32_objects.h"
#include "platform/live_objects.h"

#include <new>
#include <utility>

namespace orvane::platform {

namespace {

constinit std::atomic<std::uint32_t> livePictures = 0;

constexpr DWORD kScalable = 1;     // PICTURE_SCALABLE
constexpr DWORD kTransparent = 2;  // PICTURE_TRANSPARENT

template <class Value>
HRESULT put(Value* place, Value value) {
    if (place == nullptr) {
        return E_POINTER;
    }
    *place = value;
    return S_OK;
}

}  // namespace

std::uint32_t livePlatformObjects() {
    return livePictures.load();
}

Picture* Picture::create(PictureContent content) {
    return new (std::nothrow) Picture(content);
}

Picture::Picture(PictureContent content) : content_(content) {
    ++livePictures;
}

Picture::~Picture() {
    releaseContent(content_);
    --livePictures;
}

HRESULT Picture::QueryInterface(REFIID iid, void** object) {
    if (object == nullptr) {
        return E_POINTER;
    }
    *object = nullptr;
    if (iid == IID_IUnknown || iid == IID_IPicture) {
        *object = static_cast<IPicture*>(this);
    } else if (iid == IID_IDispatch || iid == IID_IPictureDisp) {
        *object = static_cast<IPictureDisp*>(this);
    } else if (iid == IID_IPersist || iid == IID_IPersistStream) {
        *object = static_cast<IPersistStream*>(this);
    } else {
        return E_NOINTERFACE;
    }
    AddRef();
    return S_OK;
}

ULONG Picture::AddRef() {
    return ++references_;
}

ULONG Picture::Release() {
    const ULONG left = --references_;
    if (left == 0) {
        delete this;
    }
    return left;
}

HRESULT Picture::get_Handle(OLE_HANDLE* handle) {
    return put(handle, OLE_HANDLE{content_.handle});
}

HRESULT Picture::get_hPal(OLE_HANDLE* palette) {
    return put(palette, palette_);
}

HRESULT Picture::get_Type(SHORT* type) {
    return put(type, SHORT{content_.type});
}

HRESULT Picture::get_Width(OLE_XSIZE_HIMETRIC* width) {
    return put(width, OLE_XSIZE_HIMETRIC{content_.width});
}

HRESULT Picture::get_Height(OLE_YSIZE_HIMETRIC* height) {
    return put(height, OLE_YSIZE_HIMETRIC{content_.height});
}

HRESULT Picture::set_hPal(OLE_HANDLE palette) {
    if (content_.type != PICTYPE_BITMAP) {
        return E_FAIL;
    }
    palette_ = palette;
    dirty_ = true;
    return S_OK;
}

HRESULT Picture::get_CurDC(HDC* dc) {
    return put(dc, currentDC_);
}

HRESULT Picture::SelectPicture(HDC dc, HDC* oldDC, OLE_HANDLE* bitmap) {
    if (content_.type != PICTYPE_BITMAP) {
        return E_FAIL;
    }
    const auto context = static_cast<DeviceContext>(reinterpret_cast<std::uintptr_t>(dc));
    const GdiObject former = selectObject(context, BitmapHandle{content_.handle});
    if (former.isNone()) {
        return E_FAIL;
    }
    if (bitmap != nullptr) {
        *bitmap = static_cast<OLE_HANDLE>(former.number);
    }
    const HDC last = std::exchange(currentDC_, dc);
    if (oldDC != nullptr) {
        *oldDC = last;
    }
    return S_OK;
}

HRESULT Picture::get_KeepOriginalFormat(BOOL* keep) {
    return put(keep, BOOL{keepOriginal_ ? 1 : 0});
}

HRESULT Picture::put_KeepOriginalFormat(BOOL keep) {
    keepOriginal_ = keep != 0;
    return S_OK;
}

HRESULT Picture::PictureChanged() {
    dirty_ = true;
    return S_OK;
}

HRESULT Picture::get_Attributes(DWORD* attributes) {
    const bool isMetafile =
        content_.type == PICTYPE_METAFILE || content_.type == PICTYPE_ENHMETAFILE;
    const DWORD ofIcon = content_.type == PICTYPE_ICON ? kTransparent : 0;
    return put(attributes, isMetafile ? kScalable | kTransparent : ofIcon);
}

}  // namespace orvane::platform
