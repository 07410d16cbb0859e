#pragma once

#include "frame/values/array.h"
#include "frame/values/object.h"
#include "frame/values/scalars.h"
#include "frame/values/wstring.h"

#include <concepts>
#include <memory>
#include <variant>

namespace orvane {

/// A place that a by-reference Variant stands for: a variable of the host or of the library.
class VariantReference {
public:
    virtual ~VariantReference() = default;
    /// The variable's type: `Variant` where it can hold anything.
    virtual VarType type() const = 0;
    virtual Variant read() const = 0;
    /// Stores `value` converted to the variable's type; raises the conversion's error.
    virtual void write(const Variant& value) = 0;
};

/// A tagged value. Reading it as a type goes through the conversions of
/// `frame/values/conversions.h`; this class only holds it.
class Variant {
public:
    struct NullTag {};
    using ArrayPointer = std::unique_ptr<ArrayBase>;
    using ReferencePointer = std::shared_ptr<VariantReference>;

    Variant() = default;  ///< Empty
    static Variant null() { return Variant(Content(NullTag{})); }
    /// The value of an optional argument that was left out.
    static Variant missing() { return Variant(kMissing); }
    /// Stands for the variable itself; copies stand for the same one.
    static Variant reference(ReferencePointer target) {
        return Variant(Content(std::move(target)));
    }
    /// Stands for `variable`, which must outlive it.
    static Variant reference(Variant& variable);

    Variant(std::same_as<bool> auto value) : content_(value) {}
    Variant(std::same_as<std::uint8_t> auto value) : content_(value) {}
    Variant(std::same_as<std::int16_t> auto value) : content_(value) {}
    Variant(std::same_as<std::int32_t> auto value) : content_(value) {}
    Variant(std::same_as<float> auto value) : content_(value) {}
    Variant(std::same_as<double> auto value) : content_(value) {}
    Variant(Currency value) : content_(value) {}
    Variant(Date value) : content_(value) {}
    Variant(ErrorValue value) : content_(value) {}
    Variant(WString value) : content_(std::move(value)) {}
    Variant(const char16_t* value) : content_(WString(value)) {}
    Variant(Object value) : content_(std::move(value)) {}
    Variant(ArrayPointer value) : content_(std::move(value)) {}
    template <class T>
    Variant(Array<T> value)
        : content_(ArrayPointer(std::make_unique<Array<T>>(std::move(value)))) {}

    Variant(const Variant& other);
    Variant(Variant&&) noexcept = default;
    Variant& operator=(const Variant& other);
    Variant& operator=(Variant&&) noexcept = default;
    ~Variant() = default;

    /// The tag, `VarType::Array` + element type for arrays. A by-reference value answers the tag
    /// of what its variable holds.
    VarType type() const;
    bool isArray() const { return (static_cast<unsigned>(type()) & 0x2000U) != 0; }
    bool isReference() const { return std::holds_alternative<ReferencePointer>(content_); }
    /// `IsMissing`: an optional argument that was left out.
    bool isMissing() const;

    /// The value itself: a by-reference Variant read through, any other a copy.
    Variant value() const;
    /// Stores into the variable of a by-reference Variant, or replaces this value.
    void assign(const Variant& value);
    /// The variable behind a by-reference Variant, else null.
    const ReferencePointer* referencePointer() const {
        return std::get_if<ReferencePointer>(&content_);
    }

    /// The content as exactly this type, or null when the tag is another.
    template <class T>
    const T* as() const {
        return std::get_if<T>(&content_);
    }
    template <class T>
    T* as() {
        return std::get_if<T>(&content_);
    }
    /// Calls `visitor` with the content as the type that it has; Empty comes as `std::monostate`.
    template <class Visitor>
    decltype(auto) visit(Visitor&& visitor) const {
        return std::visit(std::forward<Visitor>(visitor), content_);
    }
    /// The array of this element type, or null.
    template <class T>
    const Array<T>* asArray() const {
        const auto* array = as<ArrayPointer>();
        return array ? dynamic_cast<const Array<T>*>(array->get()) : nullptr;
    }
    template <class T>
    Array<T>* asArray() {
        auto* array = as<ArrayPointer>();
        return array ? dynamic_cast<Array<T>*>(array->get()) : nullptr;
    }
    /// The array of whatever element type, or null.
    const ArrayBase* array() const {
        const auto* array = as<ArrayPointer>();
        return array ? array->get() : nullptr;
    }
    ArrayBase* array() {
        auto* array = as<ArrayPointer>();
        return array ? array->get() : nullptr;
    }

private:
    using Content = std::variant<std::monostate, NullTag, bool, std::uint8_t, std::int16_t,
                                 std::int32_t, float, double, Currency, Date, ErrorValue, WString,
                                 Object, ArrayPointer, ReferencePointer>;
    explicit Variant(Content content) : content_(std::move(content)) {}

    Content content_;
};

}  // namespace orvane
