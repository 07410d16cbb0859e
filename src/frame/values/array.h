#pragma once

#include "frame/errors.h"
#include "frame/values/large_memory.h"
#include "frame/values/object.h"
#include "frame/values/scalars.h"
#include "frame/values/wstring.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <memory>
#include <span>
#include <type_traits>
#include <vector>

namespace orvane {

class Variant;

/// One dimension of an array: `count` indices from `lower` on.
struct Bound {
    std::int32_t lower = 0;
    std::uint32_t count = 0;
    friend bool operator==(const Bound&, const Bound&) = default;
};

/// What all arrays share, whatever their element type: bounds and access through `Variant`.
class ArrayBase {
public:
    virtual ~ArrayBase() = default;
    virtual VarType elementType() const = 0;
    virtual std::unique_ptr<ArrayBase> clone() const = 0;
    /// Element `index` of a one-dimensional array; an index outside the bounds raises 9.
    virtual Variant element(std::int32_t index) const = 0;
    /// Stores `value` converted to the element type; raises 9, or the conversion's error.
    virtual void setElement(std::int32_t index, const Variant& value) = 0;

    /// False until bounds are set; reading a bound then raises 9.
    bool isAllocated() const { return !bounds_.empty(); }
    std::size_t dimensions() const { return bounds_.size(); }
    const std::vector<Bound>& bounds() const { return bounds_; }
    /// The elements of all dimensions together.
    std::size_t size() const {
        std::size_t product = bounds_.empty() ? 0 : 1;
        for (const Bound& bound : bounds_)
            product *= bound.count;
        return product;
    }

    /// `LBound`, dimensions counted from 1; raises 9 for one that is not there.
    std::int32_t lowerBound(std::size_t dimension = 1) const { return bound(dimension).lower; }
    /// `UBound`; raises 9 for a dimension that is not there.
    std::int32_t upperBound(std::size_t dimension = 1) const {
        const Bound& found = bound(dimension);
        return static_cast<std::int32_t>(static_cast<std::int64_t>(found.lower) + found.count - 1);
    }

protected:
    ArrayBase() = default;
    explicit ArrayBase(std::vector<Bound> bounds) : bounds_(std::move(bounds)) {}
    ArrayBase(const ArrayBase&) = default;
    ArrayBase& operator=(const ArrayBase&) = default;

    const Bound& bound(std::size_t dimension) const {
        if (dimension < 1 || dimension > bounds_.size()) raise(error::kSubscriptOutOfRange);
        return bounds_[dimension - 1];
    }

    /// The place of a one-dimensional index in the data; raises 9 outside the bounds.
    std::size_t offset(std::int32_t index) const {
        if (bounds_.size() != 1) raise(error::kSubscriptOutOfRange);
        const std::int64_t place = static_cast<std::int64_t>(index) - bounds_[0].lower;
        if (place < 0 || place >= bounds_[0].count) raise(error::kSubscriptOutOfRange);
        return static_cast<std::size_t>(place);
    }

    std::vector<Bound> bounds_;
};

/// The tag of a value of this type.
template <class T>
constexpr VarType varTypeOf() {
    if constexpr (std::is_same_v<T, bool>) return VarType::Boolean;
    else if constexpr (std::is_same_v<T, std::uint8_t>) return VarType::Byte;
    else if constexpr (std::is_same_v<T, std::int16_t>) return VarType::Integer;
    else if constexpr (std::is_same_v<T, std::int32_t>) return VarType::Long;
    else if constexpr (std::is_same_v<T, float>) return VarType::Single;
    else if constexpr (std::is_same_v<T, double>) return VarType::Double;
    else if constexpr (std::is_same_v<T, Currency>) return VarType::Currency;
    else if constexpr (std::is_same_v<T, Date>) return VarType::Date;
    else if constexpr (std::is_same_v<T, WString>) return VarType::String;
    else if constexpr (std::is_same_v<T, Object>) return VarType::Object;
    else if constexpr (std::is_same_v<T, ErrorValue>) return VarType::Error;
    else {
        static_assert(std::is_same_v<T, Variant>, "not an element type");
        return VarType::Variant;
    }
}

/// An array of one element type with bounds of its own, or unallocated.
///
/// Elements of plain types lie side by side in zeroed memory of their own, or in memory that a
/// caller lends for the length of a call (`borrow`), so that a host's array is worked on in place.
template <class T>
class Array final : public ArrayBase {
public:
    /// An unallocated array.
    Array() = default;

    /// Indices `lower` to `upper`, elements zero or empty. An upper bound below the lower one
    /// raises 9, except that `upper` = `lower` - 1 is what `Split` and hosts use for "no elements"
    /// and is made with `empty`. Raises 7 when memory is short.
    Array(std::int32_t lower, std::int32_t upper) {
        const std::int64_t count = static_cast<std::int64_t>(upper) - lower + 1;
        if (count < 1) raise(error::kSubscriptOutOfRange);
        if (count > 0xFFFFFFFFLL) raise(error::kOutOfMemory);
        allocate({Bound{lower, static_cast<std::uint32_t>(count)}});
    }

    /// An allocated array without elements: its upper bound is `lower` - 1.
    static Array empty(std::int32_t lower = 0) {
        Array array;
        array.allocate({Bound{lower, 0}});
        return array;
    }

    /// Any number of dimensions.
    static Array withBounds(std::vector<Bound> bounds) {
        Array array;
        array.allocate(std::move(bounds));
        return array;
    }

    /// A view of `data`, which the caller keeps alive and in place while the array is used.
    static Array borrow(T* data,
                        std::vector<Bound> bounds) requires std::is_trivially_copyable_v<T> {
        Array array;
        array.bounds_ = std::move(bounds);
        array.data_ = data;
        return array;
    }

    /// A 0-based array of these elements.
    static Array of(std::vector<T> elements) {
        Array array = empty();
        array.allocate({Bound{0, static_cast<std::uint32_t>(elements.size())}});
        std::ranges::move(elements, array.data_);
        return array;
    }

    Array(const Array& other) : ArrayBase() { copyFrom(other); }
    Array& operator=(const Array& other) {
        if (this != &other) copyFrom(other);
        return *this;
    }
    Array(Array&& other) noexcept { swap(other); }
    Array& operator=(Array&& other) noexcept {
        Array moved(std::move(other));
        swap(moved);
        return *this;
    }
    ~Array() override = default;

    /// Element `index`; raises 9 outside the bounds.
    T& at(std::int32_t index) { return data_[offset(index)]; }
    const T& at(std::int32_t index) const { return data_[offset(index)]; }

    /// All elements in storage order, unchecked.
    std::span<T> elements() { return {data_, size()}; }
    std::span<const T> elements() const { return {data_, size()}; }

    bool isBorrowed() const { return data_ != nullptr && storage_ == nullptr; }

    VarType elementType() const override { return varTypeOf<T>(); }
    std::unique_ptr<ArrayBase> clone() const override { return std::make_unique<Array>(*this); }
    Variant element(std::int32_t index) const override;
    void setElement(std::int32_t index, const Variant& value) override;

private:
    struct Release {
        std::size_t count = 0;
        void operator()(T* data) const {
            if constexpr (!std::is_trivially_copyable_v<T>) std::destroy_n(data, count);
            freeZeroed(data, count * sizeof(T));
        }
    };

    void allocate(std::vector<Bound> bounds) {
        std::size_t count = bounds.empty() ? 0 : 1;
        for (const Bound& each : bounds) {
            if (each.count != 0 && count > (PTRDIFF_MAX / sizeof(T)) / each.count) {
                raise(error::kOutOfMemory);
            }
            count *= each.count;
        }
        T* data = static_cast<T*>(allocateZeroed(count * sizeof(T)));
        if (data == nullptr) raise(error::kOutOfMemory);
        if constexpr (!std::is_trivially_copyable_v<T>)
            std::uninitialized_default_construct_n(data, count);
        storage_ = std::unique_ptr<T, Release>(data, Release{count});
        data_ = data;
        bounds_ = std::move(bounds);
    }

    void copyFrom(const Array& other) {
        Array copied;
        if (other.isAllocated()) {
            copied.allocate(other.bounds_);
            std::ranges::copy(other.elements(), copied.data_);
        }
        swap(copied);
    }

    void swap(Array& other) noexcept {
        bounds_.swap(other.bounds_);
        storage_.swap(other.storage_);
        std::swap(data_, other.data_);
    }

    std::unique_ptr<T, Release> storage_;
    T* data_ = nullptr;
};

}  // namespace orvane
