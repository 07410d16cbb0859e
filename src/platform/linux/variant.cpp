#include <orvane/automation.h>

#include <cstring>

namespace {

constexpr VARTYPE kFlags = VT_ARRAY | VT_BYREF;

/// True for what a VARIANT may hold: a plain type, perhaps as an array, perhaps by reference.
bool isVariantType(VARTYPE type) {
    const VARTYPE base = type & VT_TYPEMASK;
    if ((type & ~(VT_TYPEMASK | kFlags)) != 0 || base > VT_UINT || base == 15) {
        return false;
    }
    if ((type & VT_ARRAY) != 0) {
        return base != VT_EMPTY && base != VT_NULL;
    }
    if ((type & VT_BYREF) != 0) {
        return base != VT_EMPTY && base != VT_NULL;
    }
    return base != VT_VARIANT;
}

void copyBytes(VARIANT* target, const VARIANT* source) {
    std::memcpy(target, source, sizeof(VARIANT));
}

/// Copies what `source` owns into `target`, which owns nothing. `target` stays empty on failure.
HRESULT copyOwned(VARIANT* target, const VARIANT* source) {
    if ((source->vt & VT_ARRAY) != 0) {
        SAFEARRAY* copy = nullptr;
        const HRESULT result = SafeArrayCopy(source->parray, &copy);
        if (SUCCEEDED(result)) {
            target->vt = source->vt;
            target->parray = copy;
        }
        return result;
    }
    copyBytes(target, source);
    if (source->vt == VT_BSTR && source->bstrVal != nullptr) {
        const void* bytes = source->bstrVal;
        target->bstrVal = SysAllocStringByteLen(static_cast<const char*>(bytes),
                                                SysStringByteLen(source->bstrVal));
        if (target->bstrVal == nullptr) {
            target->vt = VT_EMPTY;
            return E_OUTOFMEMORY;
        }
    }
    if ((source->vt == VT_UNKNOWN || source->vt == VT_DISPATCH) && source->punkVal != nullptr) {
        source->punkVal->AddRef();
    }
    return S_OK;
}

/// Bytes behind a reference to a plain type.
std::size_t sizeBehind(VARTYPE base) {
    switch (base) {
    case VT_I1:
    case VT_UI1:
        return 1;
    case VT_I2:
    case VT_UI2:
    case VT_BOOL:
        return 2;
    case VT_I4:
    case VT_UI4:
    case VT_INT:
    case VT_UINT:
    case VT_R4:
    case VT_ERROR:
        return 4;
    default:
        return 8;  // numbers of 8 bytes, dates, currency and every address
    }
}

/// Makes `plain` the value that `source` refers to; it owns nothing of it.
HRESULT dereference(VARIANT* plain, const VARIANT* source) {
    if (source->byref == nullptr) {
        return E_INVALIDARG;
    }
    const VARTYPE base = source->vt & VT_TYPEMASK;
    if ((source->vt & VT_ARRAY) != 0) {
        plain->parray = *source->pparray;
        plain->vt = base | VT_ARRAY;
    } else if (base == VT_DECIMAL) {
        // A decimal lies over the type too: its first two bytes are free for it.
        std::memcpy(plain, source->byref, 16);
        plain->vt = VT_DECIMAL;
    } else {
        plain->llVal = 0;
        std::memcpy(&plain->llVal, source->byref, sizeBehind(base));
        plain->vt = base;
    }
    return S_OK;
}

/// Puts a finished value in the place of another one.
HRESULT replaceBy(VARIANT* target, VARIANT* made) {
    const HRESULT result = VariantClear(target);
    if (FAILED(result)) {
        VariantClear(made);
        return result;
    }
    copyBytes(target, made);
    return S_OK;
}

}  // namespace

void VariantInit(VARIANT* value) {
    std::memset(value, 0, sizeof(VARIANT));
}

HRESULT VariantClear(VARIANT* value) {
    if (value == nullptr) {
        return E_INVALIDARG;
    }
    if (!isVariantType(value->vt)) {
        return DISP_E_BADVARTYPE;
    }
    const VARTYPE type = value->vt;
    if ((type & VT_ARRAY) != 0 && (type & VT_BYREF) == 0) {
        if (const HRESULT result = SafeArrayDestroy(value->parray); FAILED(result)) {
            return result;
        }
    }
    // Empty before anything foreign runs: an object's end may look at this value again.
    value->vt = VT_EMPTY;
    if (type == VT_BSTR) {
        SysFreeString(value->bstrVal);
    } else if ((type == VT_UNKNOWN || type == VT_DISPATCH) && value->punkVal != nullptr) {
        value->punkVal->Release();
    }
    return S_OK;
}

HRESULT VariantCopy(VARIANT* target, const VARIANT* source) {
    if (target == nullptr || source == nullptr) {
        return E_INVALIDARG;
    }
    if (target == source) {
        return S_OK;
    }
    if (!isVariantType(source->vt) || !isVariantType(target->vt)) {
        return DISP_E_BADVARTYPE;
    }
    VARIANT made;
    VariantInit(&made);
    if ((source->vt & VT_BYREF) != 0) {
        copyBytes(&made, source);
    } else if (const HRESULT result = copyOwned(&made, source); FAILED(result)) {
        return result;
    }
    return replaceBy(target, &made);
}

HRESULT VariantCopyInd(VARIANT* target, const VARIANT* source) {
    if (target == nullptr || source == nullptr) {
        return E_INVALIDARG;
    }
    if ((source->vt & VT_BYREF) == 0) {
        return VariantCopy(target, source);
    }
    if (source->vt == (VT_VARIANT | VT_BYREF)) {
        source = source->pvarVal;
        // One level only: a reference to a reference to a VARIANT has no meaning.
        if (source == nullptr || source->vt == (VT_VARIANT | VT_BYREF)) {
            return E_INVALIDARG;
        }
    }
    if (!isVariantType(source->vt)) {
        return DISP_E_BADVARTYPE;
    }
    VARIANT plain;
    VariantInit(&plain);
    if ((source->vt & VT_BYREF) != 0) {
        if (const HRESULT result = dereference(&plain, source); FAILED(result)) {
            return result;
        }
        source = &plain;
    }
    VARIANT made;
    VariantInit(&made);
    if (const HRESULT result = copyOwned(&made, source); FAILED(result)) {
        return result;
    }
    return replaceBy(target, &made);
}
