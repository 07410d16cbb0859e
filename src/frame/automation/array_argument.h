#pragma once

#include "frame/automation/parameters.h"

/// In/out arrays. A host's array of plain elements is worked on in place, locked for the length of
/// the call; of any other a copy is made and its elements go back after the call. An array that the
/// member replaces replaces the host's.
namespace orvane::automation {

/// Element types whose arrays lie in memory as the binary interface has them.
template <class T>
inline constexpr bool kInPlace =
    std::is_same_v<T, std::uint8_t> || std::is_same_v<T, std::int16_t> ||
    std::is_same_v<T, std::int32_t> || std::is_same_v<T, float> || std::is_same_v<T, double> ||
    std::is_same_v<T, Currency> || std::is_same_v<T, Date>;

/// The caller's array variable behind a late-bound argument with these elements, or null.
inline SAFEARRAY** arrayVariable(VARIANTARG& given, VARTYPE element) {
    VARIANTARG& place = given.vt == (VT_BYREF | VT_VARIANT) ? *given.pvarVal : given;
    if (place.vt == (VT_ARRAY | element)) return &place.parray;
    if (place.vt == (VT_BYREF | VT_ARRAY | element)) return place.pparray;
    return nullptr;
}

template <class T>
class Argument<Array<T>&> {
public:
    using Abi = SAFEARRAY**;
    static constexpr bool needsFinish = true;
    static constexpr VARTYPE element = static_cast<VARTYPE>(varTypeOf<T>());

    explicit Argument(Abi given) { open(given); }
    Argument(const LateArguments& late, std::size_t index, const Member& member) {
        VARIANTARG* given = late.values[index];
        if (isMissing(given)) {
            value_ = fallbackFor<Array<T>>(member.parameters[index]);
        } else if (SAFEARRAY** variable = arrayVariable(*given, element)) {
            open(variable);
        } else {
            convert(fromVariant(*given));
        }
    }
    ~Argument() { unlock(); }
    Argument(const Argument&) = delete;
    Argument& operator=(const Argument&) = delete;

    Array<T>& get() { return value_; }

    void finish() {
        if (variable_ == nullptr) return;
        const bool untouched = value_.isBorrowed();
        unlock();
        if (!untouched && !storeInPlace()) Cell<Array<T>>::write(*variable_, value_);
    }

    static TypeReference reference() { return {static_cast<VARTYPE>(VT_ARRAY | element), true}; }

private:
    void open(SAFEARRAY** variable) {
        if (variable == nullptr) return;
        if (elementTypeOf(*variable, VT_EMPTY) != element && *variable != nullptr) {
            raise(error::kTypeMismatch);
        }
        variable_ = variable;
        if (*variable == nullptr) return;
        if constexpr (kInPlace<T>) {
            auto bounds = arrayBounds(**variable);
            void* data = nullptr;
            if (FAILED(SafeArrayAccessData(*variable, &data))) raise(error::kArrayLocked);
            locked_ = *variable;
            value_ = Array<T>::borrow(static_cast<T*>(data), std::move(bounds));
        } else {
            value_ = Cell<Array<T>>::read(*variable);
        }
    }

    // Scripts have arrays of Variant only: their elements are converted, and nothing goes back.
    void convert(const Variant& given) {
        const ArrayBase* array = given.array();
        if (array == nullptr) raise(error::kTypeMismatch);
        if (!array->isAllocated()) return;
        if (array->dimensions() != 1) raise(error::kTypeMismatch);
        value_ = Array<T>::withBounds(array->bounds());
        const std::int32_t lower = array->lowerBound();
        for (std::size_t i = 0; i < array->size(); ++i) {
            const auto at = static_cast<std::int32_t>(lower + static_cast<std::int64_t>(i));
            value_.setElement(at, array->element(at));
        }
    }

    bool storeInPlace() {
        if constexpr (kInPlace<T>) {
            return false;
        } else {
            SAFEARRAY* array = *variable_;
            if (array == nullptr || arrayBounds(*array) != value_.bounds()) return false;
            storeElements(array, value_);
            return true;
        }
    }

    void unlock() {
        if (locked_ != nullptr) SafeArrayUnaccessData(std::exchange(locked_, nullptr));
    }

    SAFEARRAY** variable_ = nullptr;
    SAFEARRAY* locked_ = nullptr;
    Array<T> value_;
};

}  // namespace orvane::automation
