#pragma once

/// Type information of the binary interface, for platforms that have none of their own. Included by
/// `automation.h`, which hosts include.

#include "orvane/automation.h"

#ifndef _WIN32

enum TYPEKIND {
    TKIND_ENUM = 0,
    TKIND_RECORD = 1,
    TKIND_MODULE = 2,
    TKIND_INTERFACE = 3,
    TKIND_DISPATCH = 4,
    TKIND_COCLASS = 5,
    TKIND_ALIAS = 6,
    TKIND_UNION = 7
};
enum FUNCKIND {
    FUNC_VIRTUAL = 0,
    FUNC_PUREVIRTUAL = 1,
    FUNC_NONVIRTUAL = 2,
    FUNC_STATIC = 3,
    FUNC_DISPATCH = 4
};
enum INVOKEKIND {
    INVOKE_FUNC = 1,
    INVOKE_PROPERTYGET = 2,
    INVOKE_PROPERTYPUT = 4,
    INVOKE_PROPERTYPUTREF = 8
};
enum CALLCONV { CC_CDECL = 1, CC_STDCALL = 4 };
enum VARKIND { VAR_PERINSTANCE = 0, VAR_STATIC = 1, VAR_CONST = 2, VAR_DISPATCH = 3 };
enum DESCKIND { DESCKIND_NONE = 0, DESCKIND_FUNCDESC = 1, DESCKIND_VARDESC = 2 };
enum SYSKIND { SYS_WIN16 = 0, SYS_WIN32 = 1, SYS_MAC = 2, SYS_WIN64 = 3 };

inline constexpr WORD TYPEFLAG_FAPPOBJECT = 0x0001;
inline constexpr WORD TYPEFLAG_FCANCREATE = 0x0002;
inline constexpr WORD TYPEFLAG_FLICENSED = 0x0004;
inline constexpr WORD TYPEFLAG_FPREDECLID = 0x0008;
inline constexpr WORD TYPEFLAG_FHIDDEN = 0x0010;
inline constexpr WORD TYPEFLAG_FCONTROL = 0x0020;
inline constexpr WORD TYPEFLAG_FDUAL = 0x0040;
inline constexpr WORD TYPEFLAG_FNONEXTENSIBLE = 0x0080;
inline constexpr WORD TYPEFLAG_FOLEAUTOMATION = 0x0100;
inline constexpr WORD TYPEFLAG_FDISPATCHABLE = 0x1000;
inline constexpr INT IMPLTYPEFLAG_FDEFAULT = 0x1;
inline constexpr INT IMPLTYPEFLAG_FSOURCE = 0x2;
inline constexpr WORD FUNCFLAG_FRESTRICTED = 0x1;
inline constexpr WORD FUNCFLAG_FHIDDEN = 0x40;
inline constexpr USHORT PARAMFLAG_NONE = 0;
inline constexpr USHORT PARAMFLAG_FIN = 0x1;
inline constexpr USHORT PARAMFLAG_FOUT = 0x2;
inline constexpr USHORT PARAMFLAG_FRETVAL = 0x8;
inline constexpr USHORT PARAMFLAG_FOPT = 0x10;
inline constexpr USHORT PARAMFLAG_FHASDEFAULT = 0x20;
inline constexpr MEMBERID MEMBERID_NIL = DISPID_UNKNOWN;

struct TYPEDESC {
    union {
        TYPEDESC* lptdesc;
        PVOID lpadesc;
        HREFTYPE hreftype;
    };
    VARTYPE vt;
};
struct PARAMDESCEX {
    ULONG cBytes;
    VARIANTARG varDefaultValue;
};
struct PARAMDESC {
    PARAMDESCEX* pparamdescex;
    USHORT wParamFlags;
};
struct IDLDESC {
    std::uintptr_t dwReserved;
    USHORT wIDLFlags;
};
struct ELEMDESC {
    TYPEDESC tdesc;
    union {
        IDLDESC idldesc;
        PARAMDESC paramdesc;
    };
};
struct TYPEATTR {
    GUID guid;
    LCID lcid;
    DWORD dwReserved;
    MEMBERID memidConstructor;
    MEMBERID memidDestructor;
    LPOLESTR lpstrSchema;
    ULONG cbSizeInstance;
    TYPEKIND typekind;
    WORD cFuncs;
    WORD cVars;
    WORD cImplTypes;
    WORD cbSizeVft;
    WORD cbAlignment;
    WORD wTypeFlags;
    WORD wMajorVerNum;
    WORD wMinorVerNum;
    TYPEDESC tdescAlias;
    IDLDESC idldescType;
};
struct FUNCDESC {
    MEMBERID memid;
    SCODE* lprgscode;
    ELEMDESC* lprgelemdescParam;
    FUNCKIND funckind;
    INVOKEKIND invkind;
    CALLCONV callconv;
    SHORT cParams;
    SHORT cParamsOpt;
    SHORT oVft;
    SHORT cScodes;
    ELEMDESC elemdescFunc;
    WORD wFuncFlags;
};
struct VARDESC {
    MEMBERID memid;
    LPOLESTR lpstrSchema;
    union {
        ULONG oInst;
        VARIANT* lpvarValue;
    };
    ELEMDESC elemdescVar;
    WORD wVarFlags;
    VARKIND varkind;
};
struct TLIBATTR {
    GUID guid;
    LCID lcid;
    SYSKIND syskind;
    WORD wMajorVerNum;
    WORD wMinorVerNum;
    WORD wLibFlags;
};
union BINDPTR {
    FUNCDESC* lpfuncdesc;
    VARDESC* lpvardesc;
    ITypeComp* lptcomp;
};

struct ITypeInfo : IUnknown {
    virtual HRESULT GetTypeAttr(TYPEATTR** attributes) = 0;
    virtual HRESULT GetTypeComp(ITypeComp** comp) = 0;
    virtual HRESULT GetFuncDesc(UINT index, FUNCDESC** function) = 0;
    virtual HRESULT GetVarDesc(UINT index, VARDESC** variable) = 0;
    virtual HRESULT GetNames(MEMBERID id, BSTR* names, UINT capacity, UINT* count) = 0;
    virtual HRESULT GetRefTypeOfImplType(UINT index, HREFTYPE* reference) = 0;
    virtual HRESULT GetImplTypeFlags(UINT index, INT* flags) = 0;
    virtual HRESULT GetIDsOfNames(LPOLESTR* names, UINT count, MEMBERID* ids) = 0;
    virtual HRESULT Invoke(PVOID instance, MEMBERID id, WORD flags, DISPPARAMS* parameters,
                           VARIANT* result, EXCEPINFO* exception, UINT* argumentError) = 0;
    virtual HRESULT GetDocumentation(MEMBERID id, BSTR* name, BSTR* helpString, DWORD* helpContext,
                                     BSTR* helpFile) = 0;
    virtual HRESULT GetDllEntry(MEMBERID id, INVOKEKIND kind, BSTR* dll, BSTR* name,
                                WORD* ordinal) = 0;
    virtual HRESULT GetRefTypeInfo(HREFTYPE reference, ITypeInfo** info) = 0;
    virtual HRESULT AddressOfMember(MEMBERID id, INVOKEKIND kind, PVOID* address) = 0;
    virtual HRESULT CreateInstance(IUnknown* outer, REFIID iid, PVOID* object) = 0;
    virtual HRESULT GetMops(MEMBERID id, BSTR* mops) = 0;
    virtual HRESULT GetContainingTypeLib(ITypeLib** library, UINT* index) = 0;
    virtual void ReleaseTypeAttr(TYPEATTR* attributes) = 0;
    virtual void ReleaseFuncDesc(FUNCDESC* function) = 0;
    virtual void ReleaseVarDesc(VARDESC* variable) = 0;
};

struct ITypeLib : IUnknown {
    virtual UINT GetTypeInfoCount() = 0;
    virtual HRESULT GetTypeInfo(UINT index, ITypeInfo** info) = 0;
    virtual HRESULT GetTypeInfoType(UINT index, TYPEKIND* kind) = 0;
    virtual HRESULT GetTypeInfoOfGuid(REFGUID guid, ITypeInfo** info) = 0;
    virtual HRESULT GetLibAttr(TLIBATTR** attributes) = 0;
    virtual HRESULT GetTypeComp(ITypeComp** comp) = 0;
    virtual HRESULT GetDocumentation(INT index, BSTR* name, BSTR* helpString, DWORD* helpContext,
                                     BSTR* helpFile) = 0;
    virtual HRESULT IsName(LPOLESTR name, ULONG hash, BOOL* found) = 0;
    virtual HRESULT FindName(LPOLESTR name, ULONG hash, ITypeInfo** infos, MEMBERID* ids,
                             USHORT* count) = 0;
    virtual void ReleaseTLibAttr(TLIBATTR* attributes) = 0;
};

#endif
