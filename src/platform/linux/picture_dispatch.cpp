#include "platform/linux/picture.h"

#include <cmath>
#include <limits>
#include <string_view>

namespace orvane::platform {

namespace {

struct Member {
    std::u16string_view name;
    DISPID id;
};

// The published members of the picture's dispatch interface.
constexpr Member kMembers[] = {
    {u"Handle", DISPID_PICT_HANDLE}, {u"hPal", DISPID_PICT_HPAL},
    {u"Type", DISPID_PICT_TYPE},     {u"Width", DISPID_PICT_WIDTH},
    {u"Height", DISPID_PICT_HEIGHT}, {u"Render", DISPID_PICT_RENDER},
};

constexpr UINT kRenderArguments = 10;

char16_t lower(char16_t unit) {
    return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
}

bool sameName(std::u16string_view one, const OLECHAR* other) {
    for (const char16_t unit : one) {
        if (lower(unit) != lower(*other)) {
            return false;
        }
        ++other;
    }
    return *other == 0;
}

DISPID memberOf(const OLECHAR* name) {
    for (const Member& member : kMembers) {
        if (name != nullptr && sameName(member.name, name)) {
            return member.id;
        }
    }
    return DISPID_UNKNOWN;
}

HRESULT fromDouble(double number, LONG& result) {
    const double rounded = std::nearbyint(number);
    if (!(rounded >= std::numeric_limits<LONG>::min() &&
          rounded <= std::numeric_limits<LONG>::max())) {
        return DISP_E_OVERFLOW;
    }
    result = static_cast<LONG>(rounded);
    return S_OK;
}

/// A number of one of the types that hosts pass, plain or by reference, as a Long.
HRESULT toLong(const VARIANT& argument, LONG& result) {
    VARIANT value;
    VariantInit(&value);
    if (const HRESULT copied = VariantCopyInd(&value, &argument); FAILED(copied)) {
        return copied;
    }
    switch (value.vt) {
    case VT_EMPTY:
        result = 0;
        return S_OK;
    case VT_I2:
    case VT_BOOL:
        result = value.iVal;
        return S_OK;
    case VT_UI1:
        result = value.bVal;
        return S_OK;
    case VT_UI2:
        result = value.uiVal;
        return S_OK;
    case VT_I4:
    case VT_INT:
    case VT_UI4:
    case VT_UINT:
        result = value.lVal;
        return S_OK;
    case VT_R4:
        return fromDouble(static_cast<double>(value.fltVal), result);
    case VT_R8:
        return fromDouble(value.dblVal, result);
    default:
        VariantClear(&value);
        return DISP_E_TYPEMISMATCH;
    }
}

}  // namespace

HRESULT Picture::GetTypeInfoCount(UINT* count) {
    if (count == nullptr) {
        return E_POINTER;
    }
    *count = 0;
    return S_OK;
}

HRESULT Picture::GetTypeInfo(UINT, LCID, ITypeInfo** info) {
    if (info == nullptr) {
        return E_POINTER;
    }
    *info = nullptr;
    return DISP_E_BADINDEX;
}

HRESULT Picture::GetIDsOfNames(REFIID reserved, LPOLESTR* names, UINT count, LCID, DISPID* ids) {
    if (!(reserved == GUID_NULL)) {
        return DISP_E_UNKNOWNINTERFACE;
    }
    if (names == nullptr || ids == nullptr || count == 0) {
        return E_INVALIDARG;
    }
    // Names behind the first are parameters; the members' parameters have none.
    for (UINT i = 0; i < count; ++i) {
        ids[i] = i == 0 ? memberOf(names[0]) : DISPID_UNKNOWN;
    }
    return count > 1 || ids[0] == DISPID_UNKNOWN ? DISP_E_UNKNOWNNAME : S_OK;
}

HRESULT Picture::getProperty(DISPID id, VARIANT& result) {
    switch (id) {
    case DISPID_PICT_HANDLE:
        result.vt = VT_I4;
        result.ulVal = content_.handle;
        return S_OK;
    case DISPID_PICT_HPAL:
        result.vt = VT_I4;
        result.ulVal = palette_;
        return S_OK;
    case DISPID_PICT_TYPE:
        result.vt = VT_I2;
        result.iVal = content_.type;
        return S_OK;
    case DISPID_PICT_WIDTH:
        result.vt = VT_I4;
        result.lVal = content_.width;
        return S_OK;
    case DISPID_PICT_HEIGHT:
        result.vt = VT_I4;
        result.lVal = content_.height;
        return S_OK;
    default:
        return DISP_E_MEMBERNOTFOUND;
    }
}

HRESULT Picture::renderByName(const DISPPARAMS& parameters, UINT* argumentError) {
    if (parameters.cNamedArgs != 0) {
        return DISP_E_NONAMEDARGS;
    }
    if (parameters.cArgs != kRenderArguments) {
        return DISP_E_BADPARAMCOUNT;
    }
    // Arguments come last one first. The last is the bounds of a metafile's record, of no use here.
    LONG values[kRenderArguments - 1] = {};
    for (UINT i = 0; i < kRenderArguments - 1; ++i) {
        const UINT place = kRenderArguments - 1 - i;
        if (const HRESULT result = toLong(parameters.rgvarg[place], values[i]); FAILED(result)) {
            if (argumentError != nullptr) {
                *argumentError = place;
            }
            return result;
        }
    }
    const auto dc = reinterpret_cast<HDC>(std::uintptr_t{static_cast<std::uint32_t>(values[0])});
    return Render(dc, values[1], values[2], values[3], values[4], values[5], values[6], values[7],
                  values[8], nullptr);
}

HRESULT Picture::Invoke(DISPID id, REFIID reserved, LCID, WORD flags, DISPPARAMS* parameters,
                        VARIANT* result, EXCEPINFO*, UINT* argumentError) {
    if (!(reserved == GUID_NULL)) {
        return DISP_E_UNKNOWNINTERFACE;
    }
    const DISPPARAMS none{};
    const DISPPARAMS& given = parameters == nullptr ? none : *parameters;
    if (id == DISPID_PICT_RENDER && (flags & DISPATCH_METHOD) != 0) {
        return renderByName(given, argumentError);
    }
    if (id == DISPID_PICT_HPAL && (flags & DISPATCH_PROPERTYPUT) != 0) {
        LONG palette = 0;
        if (given.cArgs != 1) {
            return DISP_E_BADPARAMCOUNT;
        }
        const HRESULT converted = toLong(given.rgvarg[0], palette);
        return FAILED(converted) ? converted : set_hPal(static_cast<OLE_HANDLE>(palette));
    }
    if ((flags & (DISPATCH_PROPERTYGET | DISPATCH_METHOD)) == 0) {
        return DISP_E_MEMBERNOTFOUND;
    }
    VARIANT value;
    VariantInit(&value);
    const HRESULT found = getProperty(id, value);
    if (SUCCEEDED(found) && given.cArgs != 0) {
        return DISP_E_BADPARAMCOUNT;
    }
    if (SUCCEEDED(found) && result != nullptr) {
        *result = value;
    }
    return found;
}

}  // namespace orvane::platform
