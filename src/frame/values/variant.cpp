#include "frame/values/variant.h"

#include "frame/values/conversions.h"

namespace orvane {
namespace {

class LocalVariable final : public VariantReference {
public:
    explicit LocalVariable(Variant& variable) : variable_(variable) {}
    VarType type() const override { return VarType::Variant; }
    Variant read() const override { return variable_.value(); }
    void write(const Variant& value) override { variable_.assign(value); }

private:
    Variant& variable_;
};

VarType arrayType(const Variant::ArrayPointer& array) {
    return static_cast<VarType>(static_cast<std::uint16_t>(VarType::Array) |
                                static_cast<std::uint16_t>(array->elementType()));
}

struct Tag {
    VarType operator()(std::monostate) const { return VarType::Empty; }
    VarType operator()(Variant::NullTag) const { return VarType::Null; }
    VarType operator()(const Variant::ArrayPointer& array) const { return arrayType(array); }
    VarType operator()(const Variant::ReferencePointer& target) const {
        return target->read().type();
    }
    VarType operator()(const auto& value) const {
        return varTypeOf<std::decay_t<decltype(value)>>();
    }
};

}  // namespace

Variant Variant::reference(Variant& variable) {
    return reference(std::make_shared<LocalVariable>(variable));
}

Variant::Variant(const Variant& other) {
    if (const auto* array = std::get_if<ArrayPointer>(&other.content_)) {
        content_ = (*array)->clone();
    } else {
        std::visit(
            [this](const auto& value) {
                using T = std::decay_t<decltype(value)>;
                if constexpr (!std::is_same_v<T, ArrayPointer>) content_ = value;
            },
            other.content_);
    }
}

Variant& Variant::operator=(const Variant& other) {
    if (this != &other) *this = Variant(other);
    return *this;
}

VarType Variant::type() const {
    return std::visit(Tag{}, content_);
}

bool Variant::isMissing() const {
    if (const auto* target = referencePointer()) return (*target)->read().isMissing();
    const auto* code = as<ErrorValue>();
    return code != nullptr && *code == kMissing;
}

Variant Variant::value() const {
    const auto* target = referencePointer();
    return target ? (*target)->read() : *this;
}

void Variant::assign(const Variant& value) {
    if (const auto* target = referencePointer()) {
        (*target)->write(value);
    } else {
        *this = value.value();
    }
}

template <class T>
Variant Array<T>::element(std::int32_t index) const {
    return Variant(at(index));
}

template <class T>
void Array<T>::setElement(std::int32_t index, const Variant& value) {
    at(index) = convertTo<T>(value);
}

template class Array<bool>;
template class Array<std::uint8_t>;
template class Array<std::int16_t>;
template class Array<std::int32_t>;
template class Array<float>;
template class Array<double>;
template class Array<Currency>;
template class Array<Date>;
template class Array<ErrorValue>;
template class Array<WString>;
template class Array<Object>;
template class Array<Variant>;

}  // namespace orvane
