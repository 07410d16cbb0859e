#include "module/class_factory.h"

#include "frame/automation/abi.h"
#include "frame/automation/create_object.h"
#include "frame/automation/error_info.h"
#include "frame/automation/library_type_info.h"
#include "platform/gdi32.h"

#include <atomic>
#include <cstdint>

namespace orvane::automation {

namespace {

/// A context with a bitmap of its own. The bitmap is deleted at once: it goes with the context in
/// which it is selected.
HRESULT createDrawing(LONG width, LONG height, HDC& dc, BYTE*& pixels) {
    using platform::gdi32;
    const platform::DeviceContext context = gdi32.CreateCompatibleDC(platform::DeviceContext::none);
    if (context == platform::DeviceContext::none) return E_OUTOFMEMORY;
    platform::BitmapInfo info;
    info.biWidth = width;
    info.biHeight = -height;
    info.biBitCount = 32;
    void* bits = nullptr;
    const platform::BitmapHandle bitmap =
        gdi32.CreateDIBSection(context, info, platform::kDibRgbColors, bits);
    if (bitmap == platform::BitmapHandle::none) {
        gdi32.DeleteDC(context);
        return E_OUTOFMEMORY;
    }
    gdi32.SelectObject(context, bitmap);
    gdi32.DeleteObject(bitmap);
    dc = reinterpret_cast<HDC>(std::uintptr_t{static_cast<std::uint32_t>(context)});
    pixels = static_cast<BYTE*>(bits);
    return S_OK;
}

/// The functions that a host on Windows takes from the system, as an interface of a class factory.
class Runtime final : public IOrvaneRuntime {
public:
    explicit Runtime(IClassFactory& factory) : factory_(factory) { factory_.AddRef(); }
    Runtime(const Runtime&) = delete;
    Runtime& operator=(const Runtime&) = delete;

    HRESULT QueryInterface(REFIID iid, void** object) override {
        if (object == nullptr) return E_POINTER;
        if (!(iid == IID_IOrvaneRuntime)) return factory_.QueryInterface(iid, object);
        AddRef();
        *object = static_cast<IOrvaneRuntime*>(this);
        return S_OK;
    }
    ULONG AddRef() override { return ++references_; }
    ULONG Release() override {
        const ULONG left = --references_;
        if (left == 0) delete this;
        return left;
    }

    BSTR AllocString(const OLECHAR* text, UINT length) override {
        return SysAllocStringLen(text, length);
    }
    void FreeString(BSTR text) override { SysFreeString(text); }
    SAFEARRAY* CreateArray(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds) override {
        return SafeArrayCreate(type, dimensions, bounds);
    }
    HRESULT DestroyArray(SAFEARRAY* array) override { return SafeArrayDestroy(array); }
    HRESULT ArrayElementType(SAFEARRAY* array, VARTYPE* type) override {
        return SafeArrayGetVartype(array, type);
    }
    HRESULT ClearVariant(VARIANT* value) override { return VariantClear(value); }
    HRESULT CopyVariant(VARIANT* target, const VARIANT* source) override {
        return VariantCopy(target, source);
    }
    HRESULT SetError(IErrorInfo* info) override { return SetErrorInfo(0, info); }
    HRESULT GetError(IErrorInfo** info) override { return GetErrorInfo(0, info); }
    HRESULT GetTypeLibrary(ITypeLib** library) override { return typeLibrary(library); }
    HRESULT GetVersion(USHORT parts[4], BSTR* text) override {
        if (parts == nullptr || text == nullptr) return E_POINTER;
        const LibraryTable& library = libraryTable();
        for (std::size_t i = 0; i < 4; ++i)
            parts[i] = library.fileVersion[i];
        *text = SysAllocString(toOle(library.versionText));
        return *text != nullptr ? S_OK : E_OUTOFMEMORY;
    }
    HRESULT CreateObject(const OLECHAR* progId, IUnknown** object) override {
        if (progId == nullptr || object == nullptr) return E_POINTER;
        *object = nullptr;
        return guarded([&] { *object = createObject(fromOle(progId)).detach(); });
    }
    HRESULT CreateDrawing(LONG width, LONG height, HDC* dc, BYTE** pixels) override {
        if (dc == nullptr || pixels == nullptr) return E_POINTER;
        *dc = nullptr;
        *pixels = nullptr;
        return width < 1 || height < 1 ? E_INVALIDARG : createDrawing(width, height, *dc, *pixels);
    }
    HRESULT DeleteDrawing(HDC dc) override {
        const auto number = reinterpret_cast<std::uintptr_t>(dc);
        const auto context = static_cast<platform::DeviceContext>(number);
        const bool isHandle = number == static_cast<std::uint32_t>(context);
        return isHandle && platform::gdi32.DeleteDC(context) ? S_OK : E_INVALIDARG;
    }

private:
    ~Runtime() { factory_.Release(); }

    IClassFactory& factory_;
    std::atomic<ULONG> references_{1};
};

}  // namespace

IUnknown* newPlatformInterface(IClassFactory& factory, REFIID iid) {
    return iid == IID_IOrvaneRuntime ? new Runtime(factory) : nullptr;
}

void releasePlatformState() {
    SetErrorInfo(0, nullptr);
}

}  // namespace orvane::automation
