#pragma once

#include "frame/automation/automation_object.h"
#include "frame/automation/marshal.h"
#include "frame/automation/table.h"
#include "frame/values/conversions.h"
#include "frame/values/font.h"
#include "frame/values/picture.h"

#include <concepts>
#include <cstring>
#include <type_traits>

/// How each C++ type of a member's signature crosses the binary interface, early bound (an argument
/// of the vtable call) and late bound (a VARIANT that may need conversion). A call makes one
/// `Argument` per parameter, passes `get()`, and calls `finish()` after it: that is where in/out
/// parameters go back to the caller.
namespace orvane::automation {

/// The arguments of a variable-argument member, in order; by-reference ones stand for the caller's
/// variables.
struct ArgumentList {
    Array<Variant> values;
};

/// A type that lies in one cell: the storage `Abi`, its tag, and the way in and out.
template <class T>
struct Cell;

template <class T, VARTYPE tag>
struct PlainCell {
    using Abi = T;
    static constexpr VARTYPE type = tag;
    static T read(Abi cell) { return cell; }
    static void write(Abi& cell, T value) { cell = value; }
    static Variant toVariant(T value) { return Variant(value); }
    static T fromVariant(const Variant& value) { return convertTo<T>(value); }
    static TypeReference reference() { return {tag}; }
};
template <>
struct Cell<std::uint8_t> : PlainCell<std::uint8_t, VT_UI1> {};
template <>
struct Cell<std::int16_t> : PlainCell<std::int16_t, VT_I2> {};
template <>
struct Cell<std::int32_t> : PlainCell<std::int32_t, VT_I4> {};
template <>
struct Cell<float> : PlainCell<float, VT_R4> {};
template <>
struct Cell<double> : PlainCell<double, VT_R8> {};

template <>
struct Cell<bool> : PlainCell<bool, VT_BOOL> {
    using Abi = VARIANT_BOOL;
    static bool read(Abi cell) { return cell != VARIANT_FALSE; }
    static void write(Abi& cell, bool value) { cell = value ? VARIANT_TRUE : VARIANT_FALSE; }
};
template <>
struct Cell<Currency> : PlainCell<Currency, VT_CY> {
    using Abi = CY;
    static Currency read(Abi cell) { return Currency{cell.int64}; }
    static void write(Abi& cell, Currency value) { cell.int64 = value.scaled; }
};
template <>
struct Cell<Date> : PlainCell<Date, VT_DATE> {
    using Abi = DATE;
    static Date read(Abi cell) { return Date{cell}; }
    static void write(Abi& cell, Date value) { cell = value.days; }
};

/// Enumerations are Longs; `enumTable(E)` beside the type gives the type library's view.
template <class E>
requires std::is_enum_v<E>
struct Cell<E> {
    using Abi = LONG;
    static constexpr VARTYPE type = VT_I4;
    static E read(Abi cell) { return static_cast<E>(cell); }
    static void write(Abi& cell, E value) { cell = static_cast<LONG>(value); }
    static Variant toVariant(E value) { return Variant(static_cast<std::int32_t>(value)); }
    static E fromVariant(const Variant& value) { return static_cast<E>(toLong(value)); }
    static TypeReference reference() {
        return {VT_I4, false, nullptr, [](void) -> const EnumTable& { return enumTable(E{}); }};
    }
};

template <>
struct Cell<WString> {
    using Abi = BSTR;
    static constexpr VARTYPE type = VT_BSTR;
    static WString read(Abi cell) { return WString(viewOf(cell)); }
    static void write(Abi& cell, const WString& value) {
        BSTR fresh = newBstr(value.view());
        SysFreeString(std::exchange(cell, fresh));
    }
    static Variant toVariant(WString value) { return Variant(std::move(value)); }
    static WString fromVariant(const Variant& value) { return toText(value); }
    static TypeReference reference() { return {VT_BSTR}; }
};

/// Puts an interface of `object` into a cell, with a reference of its own.
void writeInterface(IUnknown*& cell, const Object& object, REFIID iid);

template <>
struct Cell<Object> {
    using Abi = IDispatch*;
    static constexpr VARTYPE type = VT_DISPATCH;
    static Object read(Abi cell) { return Object(cell); }
    static void write(Abi& cell, const Object& value) {
        writeInterface(reinterpret_cast<IUnknown*&>(cell), value, IID_IDispatch);
    }
    static Variant toVariant(Object value) { return Variant(std::move(value)); }
    static Object fromVariant(const Variant& value) { return toObject(value); }
    static TypeReference reference() { return {VT_DISPATCH}; }
};

/// An object of the hosts' runtime that crosses as an interface of its own.
template <class T, class Interface, const IID& iid, HostInterface kind>
struct HostObjectCell {
    using Abi = Interface*;
    static constexpr VARTYPE type = VT_DISPATCH;
    static T read(Abi cell) { return T(Object(reinterpret_cast<IUnknown*>(cell))); }
    static void write(Abi& cell, const T& value) {
        writeInterface(reinterpret_cast<IUnknown*&>(cell), value, iid);
    }
    static Variant toVariant(const T& value) { return Variant(Object(value)); }
    static T fromVariant(const Variant& value) { return T(toObject(value)); }
    static TypeReference reference() { return {VT_DISPATCH, false, nullptr, nullptr, kind}; }
};
template <>
struct Cell<Picture>
    : HostObjectCell<Picture, IPictureDisp, IID_IPictureDisp, HostInterface::picture> {};
template <>
struct Cell<Font> : HostObjectCell<Font, IFontDisp, IID_IFontDisp, HostInterface::font> {};

template <class C>
struct Cell<Ref<C>> {
    using Abi = IDispatch*;
    static constexpr VARTYPE type = VT_DISPATCH;
    static Ref<C> read(Abi cell) {
        return Ref<C>(static_cast<C*>(libraryObject(cell, C::table())));
    }
    static void write(Abi& cell, const Ref<C>& value) {
        writeInterface(reinterpret_cast<IUnknown*&>(cell), value ? value->asObject() : Object(),
                       C::table().interfaceId);
    }
    static Variant toVariant(const Ref<C>& value) {
        return Variant(value ? value->asObject() : Object());
    }
    static Ref<C> fromVariant(const Variant& value) { return libraryObject<C>(toObject(value)); }
    static TypeReference reference() { return {VT_DISPATCH, false, &C::table}; }
};

template <class T>
struct Cell<Array<T>> {
    using Abi = SAFEARRAY*;
    static constexpr VARTYPE element = static_cast<VARTYPE>(varTypeOf<T>());
    static constexpr VARTYPE type = static_cast<VARTYPE>(VT_ARRAY | element);
    static Array<T> read(Abi cell) {
        if (cell == nullptr) return {};
        return fromVariant(Variant(fromSafeArray(cell, elementTypeOf(cell, VT_EMPTY))));
    }
    static void write(Abi& cell, const Array<T>& value) { replaceArray(cell, value); }
    static Variant toVariant(Array<T> value) { return Variant(std::move(value)); }
    static Array<T> fromVariant(const Variant& value) {
        if (const auto* direct = value.asArray<T>()) return *direct;
        const Variant read = value.value();
        const auto* array = read.asArray<T>();
        if (array == nullptr) {
            if (const ArrayBase* other = read.array(); other == nullptr || other->isAllocated()) {
                raise(error::kTypeMismatch);
            }
            return {};
        }
        return *array;
    }
    static TypeReference reference() { return {type}; }
};

template <>
struct Cell<Variant> {
    using Abi = VARIANT;
    static constexpr VARTYPE type = VT_VARIANT;
    static void write(Abi& cell, const Variant& value) { storeVariant(cell, value); }
    static Variant toVariant(const Variant& value) { return value; }
    static TypeReference reference() { return {VT_VARIANT}; }
};

inline bool isMissing(const VARIANTARG* argument) {
    return argument == nullptr ||
           (argument->vt == VT_ERROR && argument->scode == DISP_E_PARAMNOTFOUND);
}

/// The value of an argument that was left out: its default, or the type's zero. Raises 449 when
/// the parameter is not optional.
template <class T>
T fallbackFor(const Parameter& parameter) {
    switch (parameter.fallback.kind) {
    case DefaultValue::Kind::number:
        return Cell<T>::fromVariant(Variant(parameter.fallback.number));
    case DefaultValue::Kind::text:
        return Cell<T>::fromVariant(Variant(parameter.fallback.text));
    default:
        break;
    }
    if (!parameter.isOptional) raise(error::kArgumentNotOptional);
    return T{};
}

/// Types that a VARIANT holds as they are in C++.
template <class T>
inline constexpr bool
    kPlainInVariant = (std::is_arithmetic_v<T> && !std::is_same_v<T, bool>) || std::is_enum_v<T>;

template <class T>
T lateValue(const VARIANTARG* argument, const Parameter& parameter) {
    if (isMissing(argument)) return fallbackFor<T>(parameter);
    if constexpr (kPlainInVariant<T>) {
        if (argument->vt == Cell<T>::type) {
            T value;
            std::memcpy(&value, &argument->llVal, sizeof value);
            return value;
        }
    }
    return Cell<T>::fromVariant(fromVariant(*argument));
}

/// An [in] argument.
template <class A>
class Argument {
    using T = std::remove_cvref_t<A>;

public:
    using Abi = typename Cell<T>::Abi;
    static constexpr bool needsFinish = false;

    explicit Argument(Abi given) : value_(Cell<T>::read(given)) {}
    Argument(const LateArguments& late, std::size_t index, const Member& member)
        : value_(lateValue<T>(late.values[index], member.parameters[index])) {}

    const T& get() const { return value_; }
    void finish() {}
    static TypeReference reference() { return Cell<T>::reference(); }

private:
    T value_;
};

/// An [in] text: a view of the caller's own string where that stays as it is for the length of the
/// call. A string variable that comes by reference does not: the member may write to it by another
/// argument, and so may a host that an event reaches.
template <>
class Argument<WStringView> {
public:
    using Abi = BSTR;
    static constexpr bool needsFinish = false;

    explicit Argument(Abi given) : view_(viewOf(given)) {}
    Argument(const LateArguments& late, std::size_t index, const Member& member) {
        const VARIANTARG* given = late.values[index];
        if (given != nullptr && given->vt == VT_BSTR) {
            view_ = viewOf(given->bstrVal);
        } else {
            converted_ = lateValue<WString>(given, member.parameters[index]);
            view_ = converted_.view();
        }
    }

    WStringView get() const { return view_; }
    void finish() {}
    static TypeReference reference() { return {VT_BSTR}; }

private:
    WString converted_;
    WStringView view_;
};

/// An [in] Variant: the value itself, or missing.
template <>
class Argument<const Variant&> {
public:
    using Abi = VARIANT;
    static constexpr bool needsFinish = false;

    explicit Argument(const Abi& given) : value_(fromVariant(given)) {}
    Argument(const LateArguments& late, std::size_t index, const Member& member) {
        const VARIANTARG* given = late.values[index];
        if (!isMissing(given)) {
            value_ = fromVariant(*given);
        } else if (member.parameters[index].fallback.kind != DefaultValue::Kind::none) {
            const DefaultValue& fallback = member.parameters[index].fallback;
            value_ = fallback.kind == DefaultValue::Kind::text ? Variant(fallback.text)
                                                               : Variant(fallback.number);
        } else if (member.parameters[index].isOptional) {
            value_ = Variant::missing();
        } else {
            raise(error::kArgumentNotOptional);
        }
    }

    const Variant& get() const { return value_; }
    void finish() {}
    static TypeReference reference() { return {VT_VARIANT}; }

private:
    Variant value_;
};

/// An in/out Variant: reads and writes go to the caller's variable at once, as by reference. One
/// that the caller passed by value is a variable of the call's own.
template <>
class Argument<Variant&> {
public:
    using Abi = VARIANT*;
    static constexpr bool needsFinish = false;

    explicit Argument(Abi given)
        : value_(given == nullptr ? Variant::missing() : referenceTo(*given)) {}
    Argument(const LateArguments& late, std::size_t index, const Member& member) {
        VARIANTARG* given = late.values[index];
        if (isMissing(given)) {
            if (!member.parameters[index].isOptional) raise(error::kArgumentNotOptional);
            value_ = Variant::missing();
        } else if ((given->vt & VT_BYREF) != 0) {
            value_ = referenceTo(given->vt == (VT_BYREF | VT_VARIANT) ? *given->pvarVal : *given);
        } else {
            value_ = fromVariant(*given);
        }
    }

    Variant& get() { return value_; }
    void finish() {}
    static TypeReference reference() { return {VT_VARIANT, true}; }

private:
    Variant value_;
};

/// Any other in/out argument: read before the call, written back after it.
template <class T>
requires(!std::is_const_v<T>) class Argument<T&> {
public:
    using Abi = typename Cell<T>::Abi*;
    static constexpr bool needsFinish = true;

    explicit Argument(Abi given) : cell_(given) {
        if (cell_ != nullptr) value_ = Cell<T>::read(*cell_);
    }
    Argument(const LateArguments& late, std::size_t index, const Member& member) {
        VARIANTARG* given = late.values[index];
        if (isMissing(given)) {
            value_ = fallbackFor<T>(member.parameters[index]);
        } else if (given->vt == (VT_BYREF | Cell<T>::type)) {
            cell_ = static_cast<Abi>(given->byref);
            value_ = Cell<T>::read(*cell_);
        } else {
            if ((given->vt & VT_BYREF) != 0) place_ = given;
            value_ = fromAnything(fromVariant(*given));
        }
    }

    T& get() { return value_; }
    void finish() {
        if (cell_ != nullptr) {
            Cell<T>::write(*cell_, value_);
        } else if (place_ != nullptr) {
            storeVariant(*place_, Cell<T>::toVariant(value_));
        }
    }
    static TypeReference reference() {
        TypeReference type = Cell<T>::reference();
        type.byReference = true;
        return type;
    }

private:
    // A script's variable that was never assigned counts as the type's zero, or Nothing.
    static T fromAnything(const Variant& given) {
        return given.type() == VarType::Empty ? T{} : Cell<T>::fromVariant(given);
    }

    Abi cell_ = nullptr;
    VARIANTARG* place_ = nullptr;
    T value_{};
};

template <>
class Argument<ArgumentList&> {
public:
    using Abi = SAFEARRAY**;
    static constexpr bool needsFinish = false;

    explicit Argument(Abi given) {
        if (given != nullptr && *given != nullptr)
            list_.values = Cell<Array<Variant>>::read(*given);
    }
    Argument(const LateArguments& late, std::size_t, const Member&) {
        std::vector<Variant> values;
        for (std::size_t i = 0; i < late.restCount; ++i) {
            VARIANTARG* given = late.rest[i];
            if (isMissing(given)) {
                values.push_back(Variant::missing());
            } else if ((given->vt & VT_BYREF) != 0) {
                values.push_back(referenceTo(*given));
            } else {
                values.push_back(fromVariant(*given));
            }
        }
        list_.values = Array<Variant>::of(std::move(values));
    }

    ArgumentList& get() { return list_; }
    void finish() {}
    static TypeReference reference() { return {static_cast<VARTYPE>(VT_ARRAY | VT_VARIANT), true}; }

private:
    ArgumentList list_;
};

/// Stores a member's result for a late-bound caller.
template <class R>
void storeResult(VARIANT& out, R&& value) {
    using T = std::remove_cvref_t<R>;
    if constexpr (kPlainInVariant<T>) {
        out.vt = Cell<T>::type;
        std::memcpy(&out.llVal, &value, sizeof value);
    } else if constexpr (std::is_same_v<T, Variant>) {
        toVariant(out, value);
    } else {
        toVariant(out, Cell<T>::toVariant(std::forward<R>(value)));
    }
}

}  // namespace orvane::automation
