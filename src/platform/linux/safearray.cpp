#include <orvane/automation.h>

#include <atomic>
#include <cstdlib>
#include <cstring>
#include <limits>

// A descriptor's block begins 16 bytes before it; the last 4 of these hold the element type.

namespace {

constexpr std::size_t kHeader = 16;
constexpr USHORT kHostMemory = FADF_AUTO | FADF_STATIC;
constexpr std::uint64_t kMostBytes = std::numeric_limits<std::int32_t>::max();

/// Bytes of one element; 0 for a type that no array has.
ULONG elementSize(VARTYPE type) {
    switch (type) {
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
    case VT_I8:
    case VT_UI8:
    case VT_R8:
    case VT_CY:
    case VT_DATE:
        return 8;
    case VT_DECIMAL:
        return 16;
    case VT_BSTR:
    case VT_DISPATCH:
    case VT_UNKNOWN:
        return sizeof(void*);
    case VT_VARIANT:
        return sizeof(VARIANT);
    default:
        return 0;
    }
}

USHORT featuresOf(VARTYPE type) {
    switch (type) {
    case VT_BSTR:
        return FADF_HAVEVARTYPE | FADF_BSTR;
    case VT_DISPATCH:
        return FADF_HAVEVARTYPE | FADF_DISPATCH;
    case VT_UNKNOWN:
        return FADF_HAVEVARTYPE | FADF_UNKNOWN;
    case VT_VARIANT:
        return FADF_HAVEVARTYPE | FADF_VARIANT;
    default:
        return FADF_HAVEVARTYPE;
    }
}

/// Elements in all dimensions; more than `kMostBytes` when there are too many.
std::uint64_t cellCount(const SAFEARRAYBOUND* bounds, UINT dimensions) {
    std::uint64_t count = 1;
    for (UINT i = 0; i < dimensions; ++i) {
        if (bounds[i].cElements == 0) {
            return 0;
        }
    }
    for (UINT i = 0; i < dimensions && count <= kMostBytes; ++i) {
        count *= bounds[i].cElements;
    }
    return count;
}

/// True when the highest index of each dimension is a LONG.
bool boundsFit(const SAFEARRAYBOUND* bounds, UINT dimensions) {
    for (UINT i = 0; i < dimensions; ++i) {
        const std::int64_t highest = std::int64_t{bounds[i].lLbound} + bounds[i].cElements - 1;
        if (highest > std::numeric_limits<LONG>::max() ||
            highest < std::numeric_limits<LONG>::min()) {
            return false;
        }
    }
    return true;
}

/// A descriptor without data. Null when there is no memory.
SAFEARRAY* makeDescriptor(VARTYPE type, UINT dimensions) {
    const std::size_t size =
        kHeader + sizeof(SAFEARRAY) + (dimensions - 1) * sizeof(SAFEARRAYBOUND);
    auto* block = static_cast<std::uint8_t*>(std::calloc(1, size));
    if (block == nullptr) {
        return nullptr;
    }
    const std::uint32_t stored = type;
    std::memcpy(block + kHeader - sizeof stored, &stored, sizeof stored);
    void* place = block + kHeader;
    auto* array = static_cast<SAFEARRAY*>(place);
    array->cDims = static_cast<USHORT>(dimensions);
    array->fFeatures = featuresOf(type);
    array->cbElements = elementSize(type);
    return array;
}

void freeDescriptor(SAFEARRAY* array) {
    void* place = array;
    std::free(static_cast<std::uint8_t*>(place) - kHeader);
}

/// Gives the array zeroed data; false when it would be too much.
bool makeData(SAFEARRAY* array) {
    const std::uint64_t count = cellCount(array->rgsabound, array->cDims);
    if (array->cbElements == 0 || count > kMostBytes / array->cbElements) {
        return false;
    }
    const auto bytes = static_cast<std::size_t>(count * array->cbElements);
    array->pvData = std::calloc(1, bytes == 0 ? 1 : bytes);
    return array->pvData != nullptr;
}

template <class Element, class Action>
void forEachElement(SAFEARRAY* array, Action action) {
    const std::uint64_t count = cellCount(array->rgsabound, array->cDims);
    auto* element = static_cast<Element*>(array->pvData);
    for (std::uint64_t i = 0; i < count; ++i) {
        action(element[i]);
    }
}

/// Gives back what the elements own.
void releaseElements(SAFEARRAY* array) {
    if (array->pvData == nullptr) {
        return;
    }
    if ((array->fFeatures & FADF_BSTR) != 0) {
        forEachElement<BSTR>(array, [](BSTR text) { SysFreeString(text); });
    } else if ((array->fFeatures & (FADF_UNKNOWN | FADF_DISPATCH)) != 0) {
        forEachElement<IUnknown*>(array, [](IUnknown* object) {
            if (object != nullptr) {
                object->Release();
            }
        });
    } else if ((array->fFeatures & FADF_VARIANT) != 0) {
        forEachElement<VARIANT>(array, [](VARIANT& value) {
            // A value that can't be cleared holds a locked array, which its locker still uses.
            VariantClear(&value);
        });
    }
}

HRESULT copyStrings(const BSTR* source, BSTR* target, std::uint64_t count) {
    for (std::uint64_t i = 0; i < count; ++i) {
        if (source[i] != nullptr) {
            const void* bytes = source[i];
            target[i] =
                SysAllocStringByteLen(static_cast<const char*>(bytes), SysStringByteLen(source[i]));
            if (target[i] == nullptr) {
                return E_OUTOFMEMORY;
            }
        }
    }
    return S_OK;
}

HRESULT copyValues(const VARIANT* source, VARIANT* target, std::uint64_t count) {
    for (std::uint64_t i = 0; i < count; ++i) {
        if (const HRESULT result = VariantCopy(&target[i], &source[i]); FAILED(result)) {
            return result;
        }
    }
    return S_OK;
}

/// Fills the zeroed data of `target` with copies of the elements of `source`.
HRESULT copyElements(SAFEARRAY* source, SAFEARRAY* target) {
    const std::uint64_t count = cellCount(source->rgsabound, source->cDims);
    if ((source->fFeatures & FADF_BSTR) != 0) {
        return copyStrings(static_cast<const BSTR*>(source->pvData),
                           static_cast<BSTR*>(target->pvData), count);
    }
    if ((source->fFeatures & FADF_VARIANT) != 0) {
        return copyValues(static_cast<const VARIANT*>(source->pvData),
                          static_cast<VARIANT*>(target->pvData), count);
    }
    std::memcpy(target->pvData, source->pvData,
                static_cast<std::size_t>(count * source->cbElements));
    if ((source->fFeatures & (FADF_UNKNOWN | FADF_DISPATCH)) != 0) {
        forEachElement<IUnknown*>(target, [](IUnknown* object) {
            if (object != nullptr) {
                object->AddRef();
            }
        });
    }
    return S_OK;
}

/// A lock counter that several threads may move.
std::atomic_ref<ULONG> lockCount(SAFEARRAY* array) {
    return std::atomic_ref<ULONG>(array->cLocks);
}

/// The bounds of dimension 1 to n, which are stored last one first; null for another number.
const SAFEARRAYBOUND* boundOf(const SAFEARRAY* array, UINT dimension) {
    if (dimension == 0 || dimension > array->cDims) {
        return nullptr;
    }
    return &array->rgsabound[array->cDims - dimension];
}

}  // namespace

SAFEARRAY* SafeArrayCreate(VARTYPE type, UINT dimensions, SAFEARRAYBOUND* bounds) {
    if (elementSize(type) == 0 || dimensions == 0 ||
        dimensions > std::numeric_limits<USHORT>::max() || bounds == nullptr ||
        !boundsFit(bounds, dimensions)) {
        return nullptr;
    }
    SAFEARRAY* array = makeDescriptor(type, dimensions);
    if (array == nullptr) {
        return nullptr;
    }
    for (UINT i = 0; i < dimensions; ++i) {
        array->rgsabound[i] = bounds[dimensions - 1 - i];
    }
    if (!makeData(array)) {
        freeDescriptor(array);
        return nullptr;
    }
    return array;
}

HRESULT SafeArrayDestroy(SAFEARRAY* array) {
    if (array == nullptr) {
        return S_OK;
    }
    if (lockCount(array).load() != 0) {
        return DISP_E_ARRAYISLOCKED;
    }
    releaseElements(array);
    if ((array->fFeatures & kHostMemory) != 0) {
        // The host's own variable: it stays, with empty elements.
        const std::uint64_t count = cellCount(array->rgsabound, array->cDims);
        if (array->pvData != nullptr) {
            std::memset(array->pvData, 0, static_cast<std::size_t>(count * array->cbElements));
        }
        return S_OK;
    }
    std::free(array->pvData);
    freeDescriptor(array);
    return S_OK;
}

HRESULT SafeArrayCopy(SAFEARRAY* array, SAFEARRAY** copy) {
    if (copy == nullptr) {
        return E_INVALIDARG;
    }
    *copy = nullptr;
    if (array == nullptr) {
        return S_OK;
    }
    VARTYPE type = VT_EMPTY;
    if (FAILED(SafeArrayGetVartype(array, &type)) || array->cDims == 0 ||
        elementSize(type) != array->cbElements) {
        return E_INVALIDARG;
    }
    SAFEARRAY* made = makeDescriptor(type, array->cDims);
    if (made == nullptr) {
        return E_OUTOFMEMORY;
    }
    std::memcpy(made->rgsabound, array->rgsabound, array->cDims * sizeof(SAFEARRAYBOUND));
    if (array->pvData != nullptr) {
        const HRESULT result = makeData(made) ? copyElements(array, made) : E_OUTOFMEMORY;
        if (FAILED(result)) {
            SafeArrayDestroy(made);
            return result;
        }
    }
    *copy = made;
    return S_OK;
}

HRESULT SafeArrayAccessData(SAFEARRAY* array, void** data) {
    if (array == nullptr || data == nullptr) {
        return E_INVALIDARG;
    }
    ++lockCount(array);
    *data = array->pvData;
    return S_OK;
}

HRESULT SafeArrayUnaccessData(SAFEARRAY* array) {
    if (array == nullptr) {
        return E_INVALIDARG;
    }
    ULONG count = lockCount(array).load();
    while (count != 0 && !lockCount(array).compare_exchange_weak(count, count - 1)) {
    }
    return count == 0 ? E_UNEXPECTED : S_OK;
}

HRESULT SafeArrayGetVartype(SAFEARRAY* array, VARTYPE* type) {
    if (array == nullptr || type == nullptr) {
        return E_INVALIDARG;
    }
    if ((array->fFeatures & FADF_HAVEVARTYPE) != 0) {
        std::uint32_t stored = 0;
        const void* place = array;
        std::memcpy(&stored, static_cast<const std::uint8_t*>(place) - sizeof stored,
                    sizeof stored);
        *type = static_cast<VARTYPE>(stored);
    } else if ((array->fFeatures & FADF_BSTR) != 0) {
        *type = VT_BSTR;
    } else if ((array->fFeatures & FADF_DISPATCH) != 0) {
        *type = VT_DISPATCH;
    } else if ((array->fFeatures & FADF_UNKNOWN) != 0) {
        *type = VT_UNKNOWN;
    } else if ((array->fFeatures & FADF_VARIANT) != 0) {
        *type = VT_VARIANT;
    } else {
        return E_INVALIDARG;
    }
    return S_OK;
}

HRESULT SafeArrayGetLBound(SAFEARRAY* array, UINT dimension, LONG* bound) {
    if (array == nullptr || bound == nullptr) {
        return E_INVALIDARG;
    }
    const SAFEARRAYBOUND* found = boundOf(array, dimension);
    if (found == nullptr) {
        return DISP_E_BADINDEX;
    }
    *bound = found->lLbound;
    return S_OK;
}

HRESULT SafeArrayGetUBound(SAFEARRAY* array, UINT dimension, LONG* bound) {
    if (array == nullptr || bound == nullptr) {
        return E_INVALIDARG;
    }
    const SAFEARRAYBOUND* found = boundOf(array, dimension);
    if (found == nullptr) {
        return DISP_E_BADINDEX;
    }
    *bound = static_cast<LONG>(std::int64_t{found->lLbound} + found->cElements - 1);
    return S_OK;
}

UINT SafeArrayGetDim(SAFEARRAY* array) {
    return array == nullptr ? 0 : array->cDims;
}
