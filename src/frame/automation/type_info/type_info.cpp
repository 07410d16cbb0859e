#include "frame/automation/type_info/type_info.h"

#include "frame/automation/abi.h"
#include "frame/automation/automation_object.h"
#include "frame/automation/dispatch.h"
#include "frame/automation/library_type_info.h"
#include "frame/automation/reference.h"
#include "frame/automation/type_info/descriptors.h"
#include "frame/automation/type_info/names.h"

#include <algorithm>

namespace orvane::automation {

HRESULT TypeInfo::GetTypeAttr(TYPEATTR** attributes) {
    if (attributes == nullptr) return E_POINTER;
    return guarded([&] { *attributes = newTypeAttributes(type_); });
}

HRESULT TypeInfo::GetTypeComp(ITypeComp** comp) {
    if (comp != nullptr) *comp = nullptr;
    return E_NOTIMPL;
}

HRESULT TypeInfo::GetFuncDesc(UINT index, FUNCDESC** function) {
    if (function == nullptr) return E_POINTER;
    *function = nullptr;
    if (index >= functionCount(type_)) return TYPE_E_ELEMENTNOTFOUND;
    return guarded([&] { *function = newFunction(type_, index); });
}

HRESULT TypeInfo::GetVarDesc(UINT index, VARDESC** variable) {
    if (variable == nullptr) return E_POINTER;
    *variable = nullptr;
    if (type_.enumTable == nullptr || index >= type_.enumTable->constants.size()) {
        return TYPE_E_ELEMENTNOTFOUND;
    }
    return guarded([&] { *variable = newConstant(*type_.enumTable, index); });
}

HRESULT TypeInfo::GetNames(MEMBERID id, BSTR* names, UINT capacity, UINT* count) {
    if (names == nullptr || count == nullptr) return E_POINTER;
    *count = 0;
    const std::vector<const char*> known = namesOf(type_, id);
    if (known.empty()) return TYPE_E_ELEMENTNOTFOUND;
    for (; *count < std::min<std::size_t>(capacity, known.size()); ++*count) {
        names[*count] = bstrOfName(known[*count]);
        if (names[*count] == nullptr) return E_OUTOFMEMORY;
    }
    return S_OK;
}

HRESULT TypeInfo::GetRefTypeOfImplType(UINT index, HREFTYPE* reference) {
    if (reference == nullptr) return E_POINTER;
    if (type_.kind == TKIND_DISPATCH && index == 0) {
        *reference = dispatchReference();
    } else if (type_.kind == TKIND_COCLASS && index == 0) {
        *reference = referenceTo(*type_.classTable);
    } else if (type_.kind == TKIND_COCLASS && index == 1 &&
               type_.classTable->events.name != nullptr) {
        *reference = referenceTo(type_.classTable->events);
    } else {
        return TYPE_E_ELEMENTNOTFOUND;
    }
    return S_OK;
}

HRESULT TypeInfo::GetImplTypeFlags(UINT index, INT* flags) {
    HREFTYPE reference;
    if (flags == nullptr) return E_POINTER;
    const HRESULT status = GetRefTypeOfImplType(index, &reference);
    if (FAILED(status)) return status;
    *flags = 0;
    if (type_.kind != TKIND_COCLASS) return S_OK;
    *flags = IMPLTYPEFLAG_FDEFAULT;
    if (index != 0) *flags |= IMPLTYPEFLAG_FSOURCE;
    return S_OK;
}

HRESULT TypeInfo::GetIDsOfNames(LPOLESTR* names, UINT count, MEMBERID* ids) {
    if (type_.isDual()) return idsOfNames(*type_.classTable, names, count, ids);
    if (names == nullptr || ids == nullptr) return E_POINTER;
    std::fill_n(ids, count, MEMBERID_NIL);
    if (count == 0) return S_OK;
    ids[0] = idOfName(type_, names[0]);
    return ids[0] != MEMBERID_NIL && count == 1 ? S_OK : DISP_E_UNKNOWNNAME;
}

// An instance is a dispatch interface of an object: its own table decides what a number means.
HRESULT TypeInfo::Invoke(PVOID instance, MEMBERID id, WORD flags, DISPPARAMS* parameters,
                         VARIANT* result, EXCEPINFO* exception, UINT* argumentError) {
    if (instance == nullptr || parameters == nullptr) return E_POINTER;
    if (type_.kind != TKIND_DISPATCH) return DISP_E_MEMBERNOTFOUND;
    return static_cast<IDispatch*>(instance)->Invoke(id, GUID_NULL, LOCALE_USER_DEFAULT, flags,
                                                     parameters, result, exception, argumentError);
}

HRESULT TypeInfo::GetDocumentation(MEMBERID id, BSTR* name, BSTR* helpString, DWORD* helpContext,
                                   BSTR* helpFile) {
    const char* known = type_.name;
    const char16_t* help = type_.help;
    if (id != MEMBERID_NIL) {
        const std::vector<const char*> names = namesOf(type_, id);
        if (names.empty()) return TYPE_E_ELEMENTNOTFOUND;
        known = names.front();
        help = helpOf(type_, id);
    }
    return giveDocumentation(known, help, name, helpString, helpContext, helpFile);
}

HRESULT TypeInfo::GetDllEntry(MEMBERID, INVOKEKIND, BSTR*, BSTR*, WORD*) {
    return E_NOTIMPL;
}

HRESULT TypeInfo::GetRefTypeInfo(HREFTYPE reference, ITypeInfo** info) {
    if (info == nullptr) return E_POINTER;
    *info = nullptr;
    if (reference >= describedTypes().size()) return TYPE_E_ELEMENTNOTFOUND;
    return guarded([&] { *info = new TypeInfo(reference); });
}

HRESULT TypeInfo::AddressOfMember(MEMBERID, INVOKEKIND, PVOID*) {
    return E_NOTIMPL;
}

HRESULT TypeInfo::CreateInstance(IUnknown* outer, REFIID iid, PVOID* object) {
    if (object == nullptr) return E_POINTER;
    *object = nullptr;
    if (type_.kind != TKIND_COCLASS || type_.classTable->instancing == Instancing::internal) {
        return CLASS_E_CLASSNOTAVAILABLE;
    }
    if (outer != nullptr) return CLASS_E_NOAGGREGATION;
    const HRESULT status = guarded([&] {
        const auto created = Ref<AutomationObject>::adopt(type_.classTable->create());
        *object = created->queryInterface(iid);
    });
    return FAILED(status) || *object != nullptr ? status : E_NOINTERFACE;
}

HRESULT TypeInfo::GetMops(MEMBERID, BSTR*) {
    return E_NOTIMPL;
}

HRESULT TypeInfo::GetContainingTypeLib(ITypeLib** library, UINT* index) {
    if (library == nullptr) return E_POINTER;
    *library = nullptr;
    if (reference_ >= ownTypeCount()) return E_NOTIMPL;
    if (index != nullptr) *index = reference_;
    return typeLibrary(library);
}

void TypeInfo::ReleaseTypeAttr(TYPEATTR* attributes) {
    freeTypeAttributes(attributes);
}

void TypeInfo::ReleaseFuncDesc(FUNCDESC* function) {
    freeFunction(function);
}

void TypeInfo::ReleaseVarDesc(VARDESC* variable) {
    freeConstant(variable);
}

HRESULT giveDocumentation(const char* ownName, const char16_t* ownHelp, BSTR* name,
                          BSTR* helpString, DWORD* helpContext, BSTR* helpFile) {
    if (helpContext != nullptr) *helpContext = 0;
    if (helpFile != nullptr) *helpFile = nullptr;
    if (helpString != nullptr) *helpString = ownHelp != nullptr ? SysAllocString(ownHelp) : nullptr;
    if (name != nullptr) *name = bstrOfName(ownName);
    return name == nullptr || *name != nullptr ? S_OK : E_OUTOFMEMORY;
}

}  // namespace orvane::automation
