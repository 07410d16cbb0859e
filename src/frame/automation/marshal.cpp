#include "frame/automation/marshal.h"

#include "frame/values/conversions.h"

#include <cstring>
#include <limits>

namespace orvane::automation {
namespace {

/// Arrays whose memory belongs to a host's declaration.
constexpr USHORT kFixed = FADF_AUTO | FADF_STATIC | FADF_FIXEDSIZE;

// One element of a SAFEARRAY or one VT_BYREF target, as it lies in memory.
Variant readCell(VARTYPE type, const void* cell) {
    switch (type) {
    case VT_I2:
        return *static_cast<const std::int16_t*>(cell);
    case VT_I4:
    case VT_INT:
        return *static_cast<const std::int32_t*>(cell);
    case VT_R4:
        return *static_cast<const float*>(cell);
    case VT_R8:
        return *static_cast<const double*>(cell);
    case VT_CY:
        return Currency{static_cast<const CY*>(cell)->int64};
    case VT_DATE:
        return Date{*static_cast<const double*>(cell)};
    case VT_BSTR:
        return WString(viewOf(*static_cast<const BSTR*>(cell)));
    case VT_DISPATCH:
    case VT_UNKNOWN:
        return Object(*static_cast<IUnknown* const*>(cell));
    case VT_ERROR:
        return ErrorValue{*static_cast<const SCODE*>(cell)};
    case VT_BOOL:
        return *static_cast<const VARIANT_BOOL*>(cell) != VARIANT_FALSE;
    case VT_VARIANT:
        return fromVariant(*static_cast<const VARIANT*>(cell));
    case VT_UI1:
        return *static_cast<const std::uint8_t*>(cell);
    default:
        raise(error::kTypeMismatch);
    }
}

template <class T>
Variant narrowest(T value) {
    if (std::in_range<std::int16_t>(value)) return static_cast<std::int16_t>(value);
    if (std::in_range<std::int32_t>(value)) return static_cast<std::int32_t>(value);
    return static_cast<double>(value);
}

IDispatch* dispatchOf(const Object& object) {
    if (object.isNothing()) return nullptr;
    void* found = nullptr;
    if (FAILED(object.unknown()->QueryInterface(IID_IDispatch, &found))) return nullptr;
    return static_cast<IDispatch*>(found);
}

// Stores into one cell, freeing what it held; the value is converted to the cell's type first.
void writeCell(VARTYPE type, void* cell, const Variant& value) {
    switch (type) {
    case VT_I2:
        *static_cast<std::int16_t*>(cell) = toInteger(value);
        return;
    case VT_I4:
    case VT_INT:
        *static_cast<std::int32_t*>(cell) = toLong(value);
        return;
    case VT_R4:
        *static_cast<float*>(cell) = toSingle(value);
        return;
    case VT_R8:
        *static_cast<double*>(cell) = toDouble(value);
        return;
    case VT_CY:
        static_cast<CY*>(cell)->int64 = toCurrency(value).scaled;
        return;
    case VT_DATE:
        *static_cast<double*>(cell) = toDate(value).days;
        return;
    case VT_ERROR:
        *static_cast<SCODE*>(cell) = toErrorValue(value).code;
        return;
    case VT_BOOL:
        *static_cast<VARIANT_BOOL*>(cell) = toBoolean(value) ? VARIANT_TRUE : VARIANT_FALSE;
        return;
    case VT_UI1:
        *static_cast<std::uint8_t*>(cell) = toByte(value);
        return;
    case VT_VARIANT:
        storeVariant(*static_cast<VARIANT*>(cell), value);
        return;
    case VT_BSTR: {
        BSTR fresh = newBstr(toText(value).view());
        SysFreeString(std::exchange(*static_cast<BSTR*>(cell), fresh));
        return;
    }
    case VT_DISPATCH:
    case VT_UNKNOWN: {
        Object object = toObject(value);
        IUnknown* fresh = object.unknown();
        if (type == VT_DISPATCH) {
            fresh = dispatchOf(object);
            if (fresh == nullptr && !object.isNothing()) raise(error::kTypeMismatch);
        } else {
            object.detach();
        }
        if (IUnknown* former = std::exchange(*static_cast<IUnknown**>(cell), fresh)) {
            former->Release();
        }
        return;
    }
    default:
        raise(error::kTypeMismatch);
    }
}

class PlaceReference final : public VariantReference {
public:
    explicit PlaceReference(VARIANT& place) : place_(place) {}

    VarType type() const override {
        const VARTYPE tag = place_.vt;
        if ((tag & VT_BYREF) == 0 || tag == (VT_BYREF | VT_VARIANT)) return VarType::Variant;
        return static_cast<VarType>(tag & ~VT_BYREF);
    }
    Variant read() const override { return fromVariant(place_); }
    void write(const Variant& value) override { storeVariant(place_, value); }

private:
    VARIANT& place_;
};

template <class T>
constexpr bool kSameLayout =
    std::is_same_v<T, std::uint8_t> || std::is_same_v<T, std::int16_t> ||
    std::is_same_v<T, std::int32_t> || std::is_same_v<T, float> || std::is_same_v<T, double> ||
    std::is_same_v<T, Currency> || std::is_same_v<T, Date> || std::is_same_v<T, ErrorValue>;

struct LockedData {
    explicit LockedData(SAFEARRAY* locked) : array(locked) {
        const HRESULT status = SafeArrayAccessData(array, &data);
        if (FAILED(status)) raise(error::kArrayLocked);
    }
    ~LockedData() { SafeArrayUnaccessData(array); }
    LockedData(const LockedData&) = delete;
    LockedData& operator=(const LockedData&) = delete;

    SAFEARRAY* array;
    void* data = nullptr;
};

template <class T>
Variant::ArrayPointer readArray(SAFEARRAY* source, VARTYPE type) {
    if (source == nullptr) return std::make_unique<Array<T>>();
    auto result = std::make_unique<Array<T>>(Array<T>::withBounds(arrayBounds(*source)));
    const LockedData locked(source);
    auto cells = result->elements();
    if constexpr (kSameLayout<T>) {
        if (!cells.empty()) std::memcpy(cells.data(), locked.data, cells.size_bytes());
    } else {
        const auto* cell = static_cast<const std::uint8_t*>(locked.data);
        for (T& element : cells) {
            element = convertTo<T>(readCell(type, cell));
            cell += source->cbElements;
        }
    }
    return result;
}

template <class T>
void writeArray(SAFEARRAY* target, VARTYPE type, const Array<T>& source) {
    const LockedData locked(target);
    const auto cells = source.elements();
    if constexpr (kSameLayout<T>) {
        if (!cells.empty()) std::memcpy(locked.data, cells.data(), cells.size_bytes());
    } else {
        auto* cell = static_cast<std::uint8_t*>(locked.data);
        for (const T& element : cells) {
            writeCell(type, cell, Variant(element));
            cell += target->cbElements;
        }
    }
}

VARTYPE vartypeOf(VarType type) {
    return static_cast<VARTYPE>(type);
}

}  // namespace

std::vector<Bound> arrayBounds(const SAFEARRAY& array) {
    std::vector<Bound> bounds(array.cDims);
    for (std::size_t i = 0; i < bounds.size(); ++i) {
        const SAFEARRAYBOUND& stored = array.rgsabound[bounds.size() - 1 - i];
        bounds[i] = Bound{stored.lLbound, stored.cElements};
    }
    return bounds;
}

Variant fromVariant(const VARIANT& value) {
    const VARTYPE tag = value.vt;
    if ((tag & VT_ARRAY) != 0) {
        SAFEARRAY* array = (tag & VT_BYREF) != 0 ? *value.pparray : value.parray;
        return fromSafeArray(array, static_cast<VARTYPE>(tag & VT_TYPEMASK));
    }
    const void* cell = (tag & VT_BYREF) != 0 ? value.byref : static_cast<const void*>(&value.llVal);
    switch (tag & VT_TYPEMASK) {
    case VT_EMPTY:
        return {};
    case VT_NULL:
        return Variant::null();
    case VT_I1:
        return narrowest(static_cast<int>(*static_cast<const signed char*>(cell)));
    case VT_UI2:
        return narrowest(*static_cast<const std::uint16_t*>(cell));
    case VT_UI4:
    case VT_UINT:
        return narrowest(*static_cast<const std::uint32_t*>(cell));
    case VT_I8:
        return narrowest(*static_cast<const std::int64_t*>(cell));
    case VT_UI8:
        return narrowest(*static_cast<const std::uint64_t*>(cell));
    default:
        return readCell(static_cast<VARTYPE>(tag & VT_TYPEMASK), cell);
    }
}

Variant referenceTo(VARIANT& place) {
    return Variant::reference(std::make_shared<PlaceReference>(place));
}

void toVariant(VARIANT& out, const Variant& given) {
    const Variant read = given.isReference() ? given.value() : Variant();
    const Variant& value = given.isReference() ? read : given;
    VARIANT made{};
    if (const ArrayBase* array = value.array()) {
        made.parray = toSafeArray(*array);
        made.vt = static_cast<VARTYPE>(VT_ARRAY | vartypeOf(array->elementType()));
    } else if (const auto* object = value.as<Object>()) {
        made.vt = VT_DISPATCH;
        made.pdispVal = dispatchOf(*object);
        if (made.pdispVal == nullptr && !object->isNothing()) {
            made.vt = VT_UNKNOWN;
            made.punkVal = Object(*object).detach();
        }
    } else {
        const VARTYPE type = vartypeOf(value.type());
        if (type != VT_EMPTY && type != VT_NULL) writeCell(type, &made.llVal, value);
        made.vt = type;
    }
    out = made;
}

void storeVariant(VARIANT& place, const Variant& value) {
    if (place.vt == (VT_BYREF | VT_VARIANT)) {
        storeVariant(*place.pvarVal, value);
    } else if ((place.vt & (VT_BYREF | VT_ARRAY)) == (VT_BYREF | VT_ARRAY)) {
        const Variant read = value.value();
        const ArrayBase* array = read.array();
        if (array == nullptr || vartypeOf(array->elementType()) != (place.vt & VT_TYPEMASK)) {
            raise(error::kTypeMismatch);
        }
        replaceArray(*place.pparray, *array);
    } else if ((place.vt & VT_BYREF) != 0) {
        writeCell(static_cast<VARTYPE>(place.vt & VT_TYPEMASK), place.byref, value);
    } else {
        VARIANT fresh{};
        toVariant(fresh, value);
        // What the former value releases may look at the place again.
        VARIANT former = std::exchange(place, fresh);
        if (FAILED(VariantClear(&former))) {
            place = former;
            VariantClear(&fresh);
            raise(error::kArrayLocked);
        }
    }
}

VARTYPE elementTypeOf(SAFEARRAY* array, VARTYPE declared) {
    VARTYPE type = VT_EMPTY;
    if (declared != VT_EMPTY || array == nullptr) return declared;
    return SUCCEEDED(SafeArrayGetVartype(array, &type)) ? type : declared;
}

Variant::ArrayPointer fromSafeArray(SAFEARRAY* array, VARTYPE elementType) {
    switch (elementTypeOf(array, elementType)) {
    case VT_I2:
        return readArray<std::int16_t>(array, VT_I2);
    case VT_I4:
    case VT_INT:
        return readArray<std::int32_t>(array, VT_I4);
    case VT_R4:
        return readArray<float>(array, VT_R4);
    case VT_R8:
        return readArray<double>(array, VT_R8);
    case VT_CY:
        return readArray<Currency>(array, VT_CY);
    case VT_DATE:
        return readArray<Date>(array, VT_DATE);
    case VT_BSTR:
        return readArray<WString>(array, VT_BSTR);
    case VT_DISPATCH:
        return readArray<Object>(array, VT_DISPATCH);
    case VT_UNKNOWN:
        return readArray<Object>(array, VT_UNKNOWN);
    case VT_ERROR:
        return readArray<ErrorValue>(array, VT_ERROR);
    case VT_BOOL:
        return readArray<bool>(array, VT_BOOL);
    case VT_VARIANT:
        return readArray<Variant>(array, VT_VARIANT);
    case VT_UI1:
        return readArray<std::uint8_t>(array, VT_UI1);
    default:
        raise(error::kTypeMismatch);
    }
}

void storeElements(SAFEARRAY* target, const ArrayBase& array) {
    const VARTYPE type = vartypeOf(array.elementType());
    const auto store = [&]<class T>(const Array<T>* typed) {
        if (typed != nullptr) writeArray(target, type, *typed);
        return typed != nullptr;
    };
    const bool stored = store(dynamic_cast<const Array<std::uint8_t>*>(&array)) ||
                        store(dynamic_cast<const Array<std::int16_t>*>(&array)) ||
                        store(dynamic_cast<const Array<std::int32_t>*>(&array)) ||
                        store(dynamic_cast<const Array<float>*>(&array)) ||
                        store(dynamic_cast<const Array<double>*>(&array)) ||
                        store(dynamic_cast<const Array<Currency>*>(&array)) ||
                        store(dynamic_cast<const Array<Date>*>(&array)) ||
                        store(dynamic_cast<const Array<bool>*>(&array)) ||
                        store(dynamic_cast<const Array<ErrorValue>*>(&array)) ||
                        store(dynamic_cast<const Array<WString>*>(&array)) ||
                        store(dynamic_cast<const Array<Object>*>(&array)) ||
                        store(dynamic_cast<const Array<Variant>*>(&array));
    if (!stored) raise(error::kTypeMismatch);
}

void replaceArray(SAFEARRAY*& place, const ArrayBase& array) {
    const bool fixed = place != nullptr && (place->fFeatures & kFixed) != 0;
    if (fixed) {
        // A host's array of fixed size takes new elements, no new bounds.
        if (arrayBounds(*place) != array.bounds()) raise(error::kArrayLocked);
        storeElements(place, array);
        return;
    }
    SAFEARRAY* fresh = toSafeArray(array);
    if (place != nullptr && FAILED(SafeArrayDestroy(place))) {
        SafeArrayDestroy(fresh);
        raise(error::kArrayLocked);
    }
    place = fresh;
}

SAFEARRAY* toSafeArray(const ArrayBase& array) {
    if (!array.isAllocated()) return nullptr;
    std::vector<SAFEARRAYBOUND> bounds;
    for (const Bound& bound : array.bounds())
        bounds.push_back({bound.count, bound.lower});
    const VARTYPE type = vartypeOf(array.elementType());
    SAFEARRAY* result = SafeArrayCreate(type, static_cast<UINT>(bounds.size()), bounds.data());
    if (result == nullptr) raise(error::kOutOfMemory);
    try {
        storeElements(result, array);
    } catch (...) {
        SafeArrayDestroy(result);
        throw;
    }
    return result;
}

}  // namespace orvane::automation
