#include "frame/automation/apartment.h"
#include "frame/automation/library_type_info.h"

#include <windows.h>

#include <memory>
#include <string>

namespace orvane::automation {

namespace {

struct ReleaseLibrary {
    void operator()(ITypeLib* library) const { library->Release(); }
};

// The loaded type library of an apartment, until its last object dies: loading costs much more
// than anything that is done with it.
constinit ApartmentState<std::unique_ptr<ITypeLib, ReleaseLibrary>> loadedLibrary;

HRESULT load(ITypeLib** library) {
    static const char place = 0;
    HMODULE module = nullptr;
    if (!GetModuleHandleExW(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                                GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                            reinterpret_cast<LPCWSTR>(&place), &module)) {
        return HRESULT_FROM_WIN32(GetLastError());
    }
    std::wstring path(32768, L'\0');
    path.resize(GetModuleFileNameW(module, path.data(), static_cast<DWORD>(path.size())));
    return LoadTypeLibEx(path.c_str(), REGKIND_NONE, library);
}

}  // namespace

HRESULT typeLibrary(ITypeLib** library) try {
    if (library == nullptr) return E_POINTER;
    *library = nullptr;
    auto& loaded = loadedLibrary.get();
    if (!loaded) {
        ITypeLib* fresh = nullptr;
        const HRESULT status = load(&fresh);
        if (FAILED(status)) return status;
        loaded.reset(fresh);
    }
    loaded->AddRef();
    *library = loaded.get();
    return S_OK;
} catch (const std::bad_alloc&) {
    return E_OUTOFMEMORY;
}

HRESULT typeInfoOf(REFGUID guid, ITypeInfo** info) {
    if (info == nullptr) return E_POINTER;
    *info = nullptr;
    ITypeLib* library = nullptr;
    HRESULT status = typeLibrary(&library);
    if (FAILED(status)) return status;
    status = library->GetTypeInfoOfGuid(guid, info);
    library->Release();
    return status;
}

}  // namespace orvane::automation
