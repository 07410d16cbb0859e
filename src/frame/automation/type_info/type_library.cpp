#include "frame/automation/library_type_info.h"
#include "frame/automation/type_info/names.h"
#include "frame/automation/type_info/type_info.h"

#include <algorithm>
#include <memory>

namespace orvane::automation {

namespace {

/// `ITypeLib` over the class tables.
class TypeLibrary final : public SimpleObject<ITypeLib> {
public:
    TypeLibrary() : SimpleObject(IID_ITypeLib) {}

    UINT GetTypeInfoCount() override { return static_cast<UINT>(ownTypeCount()); }
    HRESULT GetTypeInfo(UINT index, ITypeInfo** info) override {
        if (info == nullptr) return E_POINTER;
        *info = nullptr;
        if (index >= ownTypeCount()) return TYPE_E_ELEMENTNOTFOUND;
        return guarded([&] { *info = new TypeInfo(index); });
    }
    HRESULT GetTypeInfoType(UINT index, TYPEKIND* kind) override {
        if (kind == nullptr) return E_POINTER;
        if (index >= ownTypeCount()) return TYPE_E_ELEMENTNOTFOUND;
        *kind = describedTypes()[index].kind;
        return S_OK;
    }
    HRESULT GetTypeInfoOfGuid(REFGUID guid, ITypeInfo** info) override {
        return typeInfoOf(guid, info);
    }
    HRESULT GetLibAttr(TLIBATTR** attributes) override;
    HRESULT GetTypeComp(ITypeComp** comp) override {
        if (comp != nullptr) *comp = nullptr;
        return E_NOTIMPL;
    }
    HRESULT GetDocumentation(INT index, BSTR* name, BSTR* helpString, DWORD* helpContext,
                             BSTR* helpFile) override;
    HRESULT IsName(LPOLESTR name, ULONG hash, BOOL* found) override;
    HRESULT FindName(LPOLESTR name, ULONG hash, ITypeInfo** infos, MEMBERID* ids,
                     USHORT* count) override;
    void ReleaseTLibAttr(TLIBATTR* attributes) override { delete attributes; }
};

HRESULT TypeLibrary::GetLibAttr(TLIBATTR** attributes) {
    if (attributes == nullptr) return E_POINTER;
    return guarded([&] {
        const LibraryTable& library = libraryTable();
        *attributes = new TLIBATTR{library.id, 0, SYS_WIN64, library.major, library.minor, 0};
    });
}

HRESULT TypeLibrary::GetDocumentation(INT index, BSTR* name, BSTR* helpString, DWORD* helpContext,
                                      BSTR* helpFile) {
    if (index == -1) {
        const LibraryTable& library = libraryTable();
        return giveDocumentation(library.name, library.help, name, helpString, helpContext,
                                 helpFile);
    }
    if (index < 0 || static_cast<std::size_t>(index) >= ownTypeCount()) {
        return TYPE_E_ELEMENTNOTFOUND;
    }
    const TypeDescription& type = describedTypes()[static_cast<std::size_t>(index)];
    return giveDocumentation(type.name, type.help, name, helpString, helpContext, helpFile);
}

bool isParameterName(const TypeDescription& type, const OLECHAR* name) {
    const auto* members = type.members();
    return members != nullptr && std::ranges::any_of(*members, [&](const Member& member) {
               return std::ranges::any_of(member.parameters, [&](const Parameter& parameter) {
                   return sameName(parameter.name, name);
               });
           });
}

HRESULT TypeLibrary::IsName(LPOLESTR name, ULONG, BOOL* found) {
    if (name == nullptr || found == nullptr) return E_POINTER;
    const auto& types = describedTypes();
    const auto end = types.begin() + static_cast<std::ptrdiff_t>(ownTypeCount());
    *found = std::any_of(types.begin(), end, [&](const TypeDescription& type) {
        return sameName(type.name, name) || idOfName(type, name) != MEMBERID_NIL ||
               isParameterName(type, name);
    });
    return S_OK;
}

// A type itself is told by MEMBERID_NIL, one of its members by that member's number.
HRESULT TypeLibrary::FindName(LPOLESTR name, ULONG, ITypeInfo** infos, MEMBERID* ids,
                              USHORT* count) {
    if (name == nullptr || infos == nullptr || ids == nullptr || count == nullptr) return E_POINTER;
    const USHORT capacity = *count;
    *count = 0;
    for (std::size_t i = 0; i < ownTypeCount() && *count < capacity; ++i) {
        const TypeDescription& type = describedTypes()[i];
        const bool isType = sameName(type.name, name);
        const MEMBERID id = isType ? MEMBERID_NIL : idOfName(type, name);
        if (!isType && id == MEMBERID_NIL) continue;
        const HRESULT status = GetTypeInfo(static_cast<UINT>(i), &infos[*count]);
        if (FAILED(status)) return status;
        ids[(*count)++] = id;
    }
    return S_OK;
}

}  // namespace

HRESULT typeInfoOf(REFGUID guid, ITypeInfo** info) {
    if (info == nullptr) return E_POINTER;
    *info = nullptr;
    if (guid == GUID_NULL) return TYPE_E_ELEMENTNOTFOUND;
    const auto& types = describedTypes();
    const auto end = types.begin() + static_cast<std::ptrdiff_t>(ownTypeCount());
    const auto found = std::find_if(types.begin(), end,
                                    [&](const TypeDescription& type) { return type.guid == guid; });
    if (found == end) return TYPE_E_ELEMENTNOTFOUND;
    return guarded([&] { *info = new TypeInfo(static_cast<HREFTYPE>(found - types.begin())); });
}

HRESULT typeLibrary(ITypeLib** library) {
    if (library == nullptr) return E_POINTER;
    *library = nullptr;
    return guarded([&] { *library = new TypeLibrary; });
}

}  // namespace orvane::automation
