#pragma once

/// The binary interface of automation objects.
///
/// On Windows these types are the system's own. Where the platform has none, this header declares
/// the same structures with the same layout, member order and identifiers, so that one host source
/// compiles for both. Strings and arrays are allocated with C `malloc` as documented at `BSTR` and
/// `SAFEARRAY` below; hosts that can't link these functions reach them through `IOrvaneRuntime`.

#ifdef _WIN32

#include <oaidl.h>
#include <objbase.h>
#include <ocidl.h>
#include <oleauto.h>
#include <olectl.h>

#else

#include <cstddef>
#include <cstdint>
#include <cstring>

#define STDMETHODCALLTYPE
#define STDAPICALLTYPE
#define STDMETHODIMP HRESULT

using BYTE = std::uint8_t;
using WORD = std::uint16_t;
using DWORD = std::uint32_t;
using BOOL = std::int32_t;
using SHORT = std::int16_t;
using USHORT = std::uint16_t;
using INT = std::int32_t;
using UINT = std::uint32_t;
using LONG = std::int32_t;
using ULONG = std::uint32_t;
using LONGLONG = std::int64_t;
using ULONGLONG = std::uint64_t;
using FLOAT = float;
using DOUBLE = double;
using DATE = double;
using LCID = DWORD;
using SCODE = std::int32_t;
using HRESULT = std::int32_t;
using VARTYPE = std::uint16_t;
using VARIANT_BOOL = std::int16_t;
using DISPID = LONG;
using MEMBERID = DISPID;
using HREFTYPE = DWORD;
using OLECHAR = char16_t;
using LPOLESTR = OLECHAR*;
using LPCOLESTR = const OLECHAR*;
using PVOID = void*;
using OLE_HANDLE = UINT;
using OLE_XPOS_HIMETRIC = LONG;
using OLE_YPOS_HIMETRIC = LONG;
using OLE_XSIZE_HIMETRIC = LONG;
using OLE_YSIZE_HIMETRIC = LONG;
using HDC = void*;

/// A length-prefixed UTF-16 string: the pointer is to the first unit; the 32-bit count of bytes,
/// without the closing null unit, stands in the 4 bytes before it. The block begins at that count
/// and comes from `malloc`. A null pointer is an empty string.
using BSTR = OLECHAR*;

inline constexpr VARIANT_BOOL VARIANT_TRUE = -1;
inline constexpr VARIANT_BOOL VARIANT_FALSE = 0;

struct GUID {
    std::uint32_t Data1;
    std::uint16_t Data2;
    std::uint16_t Data3;
    std::uint8_t Data4[8];
};
using IID = GUID;
using CLSID = GUID;
using REFGUID = const GUID&;
using REFIID = const IID&;
using REFCLSID = const CLSID&;

inline bool operator==(REFGUID a, REFGUID b) {
    return std::memcmp(&a, &b, sizeof(GUID)) == 0;
}
inline bool IsEqualGUID(REFGUID a, REFGUID b) {
    return a == b;
}

inline constexpr GUID GUID_NULL = {};

inline constexpr HRESULT hresultFrom(std::uint32_t bits) {
    return static_cast<HRESULT>(bits);
}
inline constexpr bool SUCCEEDED(HRESULT result) {
    return result >= 0;
}
inline constexpr bool FAILED(HRESULT result) {
    return result < 0;
}

inline constexpr HRESULT S_OK = 0;
inline constexpr HRESULT S_FALSE = 1;
inline constexpr HRESULT E_NOTIMPL = hresultFrom(0x80004001);
inline constexpr HRESULT E_NOINTERFACE = hresultFrom(0x80004002);
inline constexpr HRESULT E_POINTER = hresultFrom(0x80004003);
inline constexpr HRESULT E_FAIL = hresultFrom(0x80004005);
inline constexpr HRESULT E_UNEXPECTED = hresultFrom(0x8000FFFF);
inline constexpr HRESULT E_ACCESSDENIED = hresultFrom(0x80070005);
inline constexpr HRESULT E_OUTOFMEMORY = hresultFrom(0x8007000E);
inline constexpr HRESULT E_INVALIDARG = hresultFrom(0x80070057);
inline constexpr HRESULT RPC_E_WRONG_THREAD = hresultFrom(0x8001010E);
inline constexpr HRESULT DISP_E_UNKNOWNINTERFACE = hresultFrom(0x80020001);
inline constexpr HRESULT DISP_E_MEMBERNOTFOUND = hresultFrom(0x80020003);
inline constexpr HRESULT DISP_E_PARAMNOTFOUND = hresultFrom(0x80020004);
inline constexpr HRESULT DISP_E_TYPEMISMATCH = hresultFrom(0x80020005);
inline constexpr HRESULT DISP_E_UNKNOWNNAME = hresultFrom(0x80020006);
inline constexpr HRESULT DISP_E_NONAMEDARGS = hresultFrom(0x80020007);
inline constexpr HRESULT DISP_E_BADVARTYPE = hresultFrom(0x80020008);
inline constexpr HRESULT DISP_E_EXCEPTION = hresultFrom(0x80020009);
inline constexpr HRESULT DISP_E_OVERFLOW = hresultFrom(0x8002000A);
inline constexpr HRESULT DISP_E_BADINDEX = hresultFrom(0x8002000B);
inline constexpr HRESULT DISP_E_UNKNOWNLCID = hresultFrom(0x8002000C);
inline constexpr HRESULT DISP_E_ARRAYISLOCKED = hresultFrom(0x8002000D);
inline constexpr HRESULT DISP_E_BADPARAMCOUNT = hresultFrom(0x8002000E);
inline constexpr HRESULT DISP_E_PARAMNOTOPTIONAL = hresultFrom(0x8002000F);
inline constexpr HRESULT DISP_E_NOTACOLLECTION = hresultFrom(0x80020011);
inline constexpr HRESULT DISP_E_DIVBYZERO = hresultFrom(0x80020012);
inline constexpr HRESULT TYPE_E_ELEMENTNOTFOUND = hresultFrom(0x8002802B);
inline constexpr HRESULT CLASS_E_NOAGGREGATION = hresultFrom(0x80040110);
inline constexpr HRESULT CLASS_E_CLASSNOTAVAILABLE = hresultFrom(0x80040111);
inline constexpr HRESULT CONNECT_E_NOCONNECTION = hresultFrom(0x80040200);
inline constexpr HRESULT CONNECT_E_ADVISELIMIT = hresultFrom(0x80040201);
inline constexpr HRESULT CONNECT_E_CANNOTCONNECT = hresultFrom(0x80040202);

enum VARENUM : VARTYPE {
    VT_EMPTY = 0,
    VT_NULL = 1,
    VT_I2 = 2,
    VT_I4 = 3,
    VT_R4 = 4,
    VT_R8 = 5,
    VT_CY = 6,
    VT_DATE = 7,
    VT_BSTR = 8,
    VT_DISPATCH = 9,
    VT_ERROR = 10,
    VT_BOOL = 11,
    VT_VARIANT = 12,
    VT_UNKNOWN = 13,
    VT_DECIMAL = 14,
    VT_I1 = 16,
    VT_UI1 = 17,
    VT_UI2 = 18,
    VT_UI4 = 19,
    VT_I8 = 20,
    VT_UI8 = 21,
    VT_INT = 22,
    VT_UINT = 23,
    VT_VOID = 24,
    VT_HRESULT = 25,
    VT_PTR = 26,
    VT_SAFEARRAY = 27,
    VT_CARRAY = 28,
    VT_USERDEFINED = 29,
    VT_LPSTR = 30,
    VT_LPWSTR = 31,
    VT_ARRAY = 0x2000,
    VT_BYREF = 0x4000,
    VT_TYPEMASK = 0x0FFF
};

struct CY {
    LONGLONG int64;
};

struct SAFEARRAYBOUND {
    ULONG cElements;
    LONG lLbound;
};

inline constexpr USHORT FADF_AUTO = 0x0001;
inline constexpr USHORT FADF_STATIC = 0x0002;
inline constexpr USHORT FADF_FIXEDSIZE = 0x0010;
inline constexpr USHORT FADF_HAVEIID = 0x0040;
inline constexpr USHORT FADF_HAVEVARTYPE = 0x0080;
inline constexpr USHORT FADF_BSTR = 0x0100;
inline constexpr USHORT FADF_UNKNOWN = 0x0200;
inline constexpr USHORT FADF_DISPATCH = 0x0400;
inline constexpr USHORT FADF_VARIANT = 0x0800;

/// An array with bounds of its own. The descriptor and its data are two blocks from `malloc`; the
/// element type (`VARTYPE`) stands in the 4 bytes before the descriptor, whose block begins 16
/// bytes before it. Bounds are stored last dimension first, as on Windows.
struct SAFEARRAY {
    USHORT cDims;
    USHORT fFeatures;
    ULONG cbElements;
    ULONG cLocks;
    PVOID pvData;
    SAFEARRAYBOUND rgsabound[1];
};

struct IUnknown;
struct IDispatch;
struct IRecordInfo;
struct ITypeInfo;
struct ITypeLib;
struct ITypeComp;
struct VARIANT;

/// A tagged value, in the layout of 64-bit Windows (24 bytes).
struct VARIANT {
    VARTYPE vt;
    WORD wReserved1;
    WORD wReserved2;
    WORD wReserved3;
    union {
        LONGLONG llVal;
        LONG lVal;
        BYTE bVal;
        SHORT iVal;
        FLOAT fltVal;
        DOUBLE dblVal;
        VARIANT_BOOL boolVal;
        SCODE scode;
        CY cyVal;
        DATE date;
        BSTR bstrVal;
        IUnknown* punkVal;
        IDispatch* pdispVal;
        SAFEARRAY* parray;
        BYTE* pbVal;
        SHORT* piVal;
        LONG* plVal;
        LONGLONG* pllVal;
        FLOAT* pfltVal;
        DOUBLE* pdblVal;
        VARIANT_BOOL* pboolVal;
        SCODE* pscode;
        CY* pcyVal;
        DATE* pdate;
        BSTR* pbstrVal;
        IUnknown** ppunkVal;
        IDispatch** ppdispVal;
        SAFEARRAY** pparray;
        VARIANT* pvarVal;
        PVOID byref;
        char cVal;
        USHORT uiVal;
        ULONG ulVal;
        ULONGLONG ullVal;
        INT intVal;
        UINT uintVal;
        struct {
            PVOID pvRecord;
            IRecordInfo* pRecInfo;
        } brecVal;
    };
};
using VARIANTARG = VARIANT;

static_assert(sizeof(VARIANT) == 24);
static_assert(sizeof(SAFEARRAY) == 32);
static_assert(sizeof(GUID) == 16);

struct DISPPARAMS {
    VARIANTARG* rgvarg;
    DISPID* rgdispidNamedArgs;
    UINT cArgs;
    UINT cNamedArgs;
};

struct EXCEPINFO {
    WORD wCode;
    WORD wReserved;
    BSTR bstrSource;
    BSTR bstrDescription;
    BSTR bstrHelpFile;
    DWORD dwHelpContext;
    PVOID pvReserved;
    HRESULT(STDMETHODCALLTYPE* pfnDeferredFillIn)(EXCEPINFO*);
    SCODE scode;
};

inline constexpr DISPID DISPID_UNKNOWN = -1;
inline constexpr DISPID DISPID_VALUE = 0;
inline constexpr DISPID DISPID_PROPERTYPUT = -3;
inline constexpr DISPID DISPID_NEWENUM = -4;
inline constexpr WORD DISPATCH_METHOD = 1;
inline constexpr WORD DISPATCH_PROPERTYGET = 2;
inline constexpr WORD DISPATCH_PROPERTYPUT = 4;
inline constexpr WORD DISPATCH_PROPERTYPUTREF = 8;
inline constexpr LCID LOCALE_USER_DEFAULT = 0x0400;

inline constexpr IID IID_IUnknown = {0x00000000, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IClassFactory = {0x00000001, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_ISequentialStream = {
    0x0C733A30, 0x2A1C, 0x11CE, {0xAD, 0xE5, 0x00, 0xAA, 0x00, 0x44, 0x77, 0x3D}};
inline constexpr IID IID_IStream = {0x0000000C, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IPersist = {0x0000010C, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IPersistStream = {0x00000109, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IDispatch = {0x00020400, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IDispatchEx = {
    0xA6EF9860, 0xC720, 0x11D0, {0x93, 0x37, 0x00, 0xA0, 0xC9, 0x0D, 0xCA, 0xA9}};
inline constexpr IID IID_ITypeInfo = {0x00020401, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_ITypeLib = {0x00020402, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IEnumVARIANT = {0x00020404, 0, 0, {0xC0, 0, 0, 0, 0, 0, 0, 0x46}};
inline constexpr IID IID_IErrorInfo = {
    0x1CF2B120, 0x547D, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
inline constexpr IID IID_ISupportErrorInfo = {
    0xDF0B3D60, 0x548F, 0x101B, {0x8E, 0x65, 0x08, 0x00, 0x2B, 0x2B, 0xD1, 0x19}};
inline constexpr IID IID_IProvideClassInfo = {
    0xB196B283, 0xBAB4, 0x101A, {0xB6, 0x9C, 0x00, 0xAA, 0x00, 0x34, 0x1D, 0x07}};
inline constexpr IID IID_IConnectionPointContainer = {
    0xB196B284, 0xBAB4, 0x101A, {0xB6, 0x9C, 0x00, 0xAA, 0x00, 0x34, 0x1D, 0x07}};
inline constexpr IID IID_IEnumConnectionPoints = {
    0xB196B285, 0xBAB4, 0x101A, {0xB6, 0x9C, 0x00, 0xAA, 0x00, 0x34, 0x1D, 0x07}};
inline constexpr IID IID_IConnectionPoint = {
    0xB196B286, 0xBAB4, 0x101A, {0xB6, 0x9C, 0x00, 0xAA, 0x00, 0x34, 0x1D, 0x07}};
inline constexpr IID IID_IEnumConnections = {
    0xB196B287, 0xBAB4, 0x101A, {0xB6, 0x9C, 0x00, 0xAA, 0x00, 0x34, 0x1D, 0x07}};
inline constexpr IID IID_IPicture = {
    0x7BF80980, 0xBF32, 0x101A, {0x8B, 0xBB, 0x00, 0xAA, 0x00, 0x30, 0x0C, 0xAB}};
inline constexpr IID IID_IPictureDisp = {
    0x7BF80981, 0xBF32, 0x101A, {0x8B, 0xBB, 0x00, 0xAA, 0x00, 0x30, 0x0C, 0xAB}};
inline constexpr IID IID_IFontDisp = {
    0xBEF6E003, 0xA874, 0x101A, {0x8B, 0xBA, 0x00, 0xAA, 0x00, 0x30, 0x0C, 0xAB}};

struct IUnknown {
    virtual HRESULT QueryInterface(REFIID iid, void** object) = 0;
    virtual ULONG AddRef() = 0;
    virtual ULONG Release() = 0;

protected:
    ~IUnknown() = default;
};

struct IDispatch : IUnknown {
    virtual HRESULT GetTypeInfoCount(UINT* count) = 0;
    virtual HRESULT GetTypeInfo(UINT index, LCID locale, ITypeInfo** info) = 0;
    virtual HRESULT GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID locale,
                                  DISPID* ids) = 0;
    virtual HRESULT Invoke(DISPID id, REFIID reserved, LCID locale, WORD flags,
                           DISPPARAMS* parameters, VARIANT* result, EXCEPINFO* exception,
                           UINT* argumentError) = 0;
};

inline constexpr DWORD fdexNameCaseSensitive = 0x1;
inline constexpr DWORD fdexNameCaseInsensitive = 0x8;
struct IServiceProvider;

/// The dispatch interface of script objects, whose members can come and go.
struct IDispatchEx : IDispatch {
    virtual HRESULT GetDispID(BSTR name, DWORD flags, DISPID* id) = 0;
    virtual HRESULT InvokeEx(DISPID id, LCID locale, WORD flags, DISPPARAMS* parameters,
                             VARIANT* result, EXCEPINFO* exception, IServiceProvider* caller) = 0;
    virtual HRESULT DeleteMemberByName(BSTR name, DWORD flags) = 0;
    virtual HRESULT DeleteMemberByDispID(DISPID id) = 0;
    virtual HRESULT GetMemberProperties(DISPID id, DWORD fetch, DWORD* properties) = 0;
    virtual HRESULT GetMemberName(DISPID id, BSTR* name) = 0;
    virtual HRESULT GetNextDispID(DWORD flags, DISPID id, DISPID* next) = 0;
    virtual HRESULT GetNameSpaceParent(IUnknown** parent) = 0;
};

struct IClassFactory : IUnknown {
    virtual HRESULT CreateInstance(IUnknown* outer, REFIID iid, void** object) = 0;
    virtual HRESULT LockServer(BOOL lock) = 0;
};

struct IErrorInfo : IUnknown {
    virtual HRESULT GetGUID(GUID* guid) = 0;
    virtual HRESULT GetSource(BSTR* source) = 0;
    virtual HRESULT GetDescription(BSTR* description) = 0;
    virtual HRESULT GetHelpFile(BSTR* helpFile) = 0;
    virtual HRESULT GetHelpContext(DWORD* helpContext) = 0;
};

struct ISupportErrorInfo : IUnknown {
    virtual HRESULT InterfaceSupportsErrorInfo(REFIID iid) = 0;
};

struct IEnumVARIANT : IUnknown {
    virtual HRESULT Next(ULONG count, VARIANT* values, ULONG* fetched) = 0;
    virtual HRESULT Skip(ULONG count) = 0;
    virtual HRESULT Reset() = 0;
    virtual HRESULT Clone(IEnumVARIANT** copy) = 0;
};

struct IProvideClassInfo : IUnknown {
    virtual HRESULT GetClassInfo(ITypeInfo** info) = 0;
};

struct CONNECTDATA {
    IUnknown* pUnk;
    DWORD dwCookie;
};

struct IEnumConnections : IUnknown {
    virtual HRESULT Next(ULONG count, CONNECTDATA* connections, ULONG* fetched) = 0;
    virtual HRESULT Skip(ULONG count) = 0;
    virtual HRESULT Reset() = 0;
    virtual HRESULT Clone(IEnumConnections** copy) = 0;
};

struct IConnectionPointContainer;

struct IConnectionPoint : IUnknown {
    virtual HRESULT GetConnectionInterface(IID* iid) = 0;
    virtual HRESULT GetConnectionPointContainer(IConnectionPointContainer** container) = 0;
    virtual HRESULT Advise(IUnknown* sink, DWORD* cookie) = 0;
    virtual HRESULT Unadvise(DWORD cookie) = 0;
    virtual HRESULT EnumConnections(IEnumConnections** connections) = 0;
};

struct IEnumConnectionPoints : IUnknown {
    virtual HRESULT Next(ULONG count, IConnectionPoint** points, ULONG* fetched) = 0;
    virtual HRESULT Skip(ULONG count) = 0;
    virtual HRESULT Reset() = 0;
    virtual HRESULT Clone(IEnumConnectionPoints** copy) = 0;
};

struct IConnectionPointContainer : IUnknown {
    virtual HRESULT EnumConnectionPoints(IEnumConnectionPoints** points) = 0;
    virtual HRESULT FindConnectionPoint(REFIID iid, IConnectionPoint** point) = 0;
};

#include "orvane/font.h"
#include "orvane/picture.h"
#include "orvane/type_info.h"

/// The string, array and error functions that Windows hosts take from the system. The library
/// uses these itself and hands them out through `IOrvaneRuntime`.
BSTR SysAllocStringLen(const OLECHAR* text, UINT length);
BSTR SysAllocString(const OLECHAR* text);
BSTR SysAllocStringByteLen(const char* bytes, UINT size);
void SysFreeString(BSTR text);
UINT SysStringLen(BSTR text);
UINT SysStringByteLen(BSTR text);
SAFEARRAY* SafeArrayCreate(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds);
HRESULT SafeArrayDestroy(SAFEARRAY* array);
HRESULT SafeArrayCopy(SAFEARRAY* array, SAFEARRAY** copy);
HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data);
HRESULT SafeArrayUnaccessData(SAFEARRAY* array);
HRESULT SafeArrayGetVartype(SAFEARRAY* array, VARTYPE* type);
HRESULT SafeArrayGetLBound(SAFEARRAY* array, UINT dimension, LONG* bound);
HRESULT SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound);
UINT SafeArrayGetDim(SAFEARRAY* array);
void VariantInit(VARIANT* value);
HRESULT VariantClear(VARIANT* value);
HRESULT VariantCopy(VARIANT* target, const VARIANT* source);
HRESULT VariantCopyInd(VARIANT* target, const VARIANT* source);
HRESULT SetErrorInfo(ULONG reserved, IErrorInfo* info);
HRESULT GetErrorInfo(ULONG reserved, IErrorInfo** info);

/// What a Windows host takes from the system's automation library: strings, arrays, values and the
/// thread's error information, in this order of slots. Every class factory of the library answers
/// it, so that a host in any language needs the four exports only.
struct IOrvaneRuntime : IUnknown {
    virtual BSTR AllocString(const OLECHAR* text, UINT length) = 0;
    virtual void FreeString(BSTR text) = 0;
    virtual SAFEARRAY* CreateArray(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds) = 0;
    virtual HRESULT DestroyArray(SAFEARRAY* array) = 0;
    virtual HRESULT ArrayElementType(SAFEARRAY* array, VARTYPE* type) = 0;
    virtual HRESULT ClearVariant(VARIANT* value) = 0;
    virtual HRESULT CopyVariant(VARIANT* target, const VARIANT* source) = 0;
    virtual HRESULT SetError(IErrorInfo* info) = 0;
    virtual HRESULT GetError(IErrorInfo** info) = 0;
    /// The library's type information, with its name, version and help string.
    virtual HRESULT GetTypeLibrary(ITypeLib** library) = 0;
    /// The file version in four parts (3, 1, 0, 251) and as text ("3.01.0251"; freed by the
    /// caller).
    virtual HRESULT GetVersion(USHORT parts[4], BSTR* text) = 0;
    /// A new object of the class that is registered under a ProgID, of whatever component; the
    /// library's own classes need no registration. 0x800A01AD (run-time error 429) for a name that
    /// stands for no class, and for a class that gives no object.
    virtual HRESULT CreateObject(const OLECHAR* progId, IUnknown** object) = 0;
    /// A device context to draw pictures on, as `IPicture::Render` takes it. `pixels` is its
    /// memory: rows from the top without gaps, 4 bytes a pixel (blue, green, red and one that means
    /// nothing), black at first. Sizes from 1 pixel on; E_INVALIDARG below, E_OUTOFMEMORY for 2 GiB
    /// and more and where the memory isn't there.
    virtual HRESULT CreateDrawing(LONG width, LONG height, HDC* dc, BYTE** pixels) = 0;
    /// Gives the context and its pixels back; E_INVALIDARG for anything else.
    virtual HRESULT DeleteDrawing(HDC dc) = 0;
};
inline constexpr IID IID_IOrvaneRuntime = {
    0x6D3C7B52, 0x0F4E, 0x4C0B, {0x9A, 0x5D, 0x31, 0x84, 0xE2, 0x7F, 0x60, 0x1C}};

#endif
