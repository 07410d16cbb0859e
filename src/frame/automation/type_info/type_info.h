#pragma once

#include "frame/automation/com_list.h"
#include "frame/automation/type_info/type_description.h"

namespace orvane::automation {

/// `ITypeInfo` of one described type: what it has, what its members are called, and calls through
/// it. What only a compiled type library has (compile-time binding, entry points of modules,
/// marshalling) answers E_NOTIMPL.
class TypeInfo final : public SimpleObject<ITypeInfo> {
public:
    explicit TypeInfo(HREFTYPE reference)
        : SimpleObject(IID_ITypeInfo), reference_(reference), type_(describedTypes()[reference]) {}

    HRESULT GetTypeAttr(TYPEATTR** attributes) override;
    HRESULT GetTypeComp(ITypeComp** comp) override;
    HRESULT GetFuncDesc(UINT index, FUNCDESC** function) override;
    HRESULT GetVarDesc(UINT index, VARDESC** variable) override;
    HRESULT GetNames(MEMBERID id, BSTR* names, UINT capacity, UINT* count) override;
    HRESULT GetRefTypeOfImplType(UINT index, HREFTYPE* reference) override;
    HRESULT GetImplTypeFlags(UINT index, INT* flags) override;
    HRESULT GetIDsOfNames(LPOLESTR* names, UINT count, MEMBERID* ids) override;
    HRESULT Invoke(PVOID instance, MEMBERID id, WORD flags, DISPPARAMS* parameters, VARIANT* result,
                   EXCEPINFO* exception, UINT* argumentError) override;
    HRESULT GetDocumentation(MEMBERID id, BSTR* name, BSTR* helpString, DWORD* helpContext,
                             BSTR* helpFile) override;
    HRESULT GetDllEntry(MEMBERID id, INVOKEKIND kind, BSTR* dll, BSTR* name,
                        WORD* ordinal) override;
    HRESULT GetRefTypeInfo(HREFTYPE reference, ITypeInfo** info) override;
    HRESULT AddressOfMember(MEMBERID id, INVOKEKIND kind, PVOID* address) override;
    HRESULT CreateInstance(IUnknown* outer, REFIID iid, PVOID* object) override;
    HRESULT GetMops(MEMBERID id, BSTR* mops) override;
    HRESULT GetContainingTypeLib(ITypeLib** library, UINT* index) override;
    void ReleaseTypeAttr(TYPEATTR* attributes) override;
    void ReleaseFuncDesc(FUNCDESC* function) override;
    void ReleaseVarDesc(VARDESC* variable) override;

private:
    HREFTYPE reference_;
    const TypeDescription& type_;
};

/// Stores what of a type's or library's documentation is asked for: null pointers are left out.
HRESULT giveDocumentation(const char* ownName, const char16_t* ownHelp, BSTR* name,
                          BSTR* helpString, DWORD* helpContext, BSTR* helpFile);

}  // namespace orvane::automation
