#include "frame/errors.h"
#include "frame/values/compare.h"
#include "frame/values/conversions.h"
#include "frame/values/text.h"

#include <algorithm>

namespace orvane {
namespace {

/// An operand of `And`: its bits, and the type that the result has to have for it.
struct Bits {
    enum class Width { null, boolean, byte, integer, longInteger };
    Width width = Width::null;
    std::int32_t value = 0;
};

bool isBooleanName(WStringView text) {
    return lCase(text) == u"true" || lCase(text) == u"false";
}

Bits bitsOf(const Variant& value) {
    using Width = Bits::Width;
    const Variant operand = plainValue(value);
    switch (operand.type()) {
    case VarType::Null:
        return {};
    case VarType::Boolean:
        return {Width::boolean, toInteger(operand)};
    case VarType::Byte:
        return {Width::byte, toInteger(operand)};
    case VarType::Empty:
    case VarType::Integer:
        return {Width::integer, toInteger(operand)};
    case VarType::String:
        if (isBooleanName(*operand.as<WString>())) {
            return {Width::boolean, toBoolean(operand) ? -1 : 0};
        }
        return {Width::longInteger, toLong(operand)};
    default:
        return {Width::longInteger, toLong(operand)};
    }
}

Variant valueOf(const Bits& bits) {
    switch (bits.width) {
    case Bits::Width::null:
        return Variant::null();
    case Bits::Width::boolean:
        return bits.value != 0;
    case Bits::Width::byte:
        return static_cast<std::uint8_t>(bits.value);
    case Bits::Width::integer:
        return static_cast<std::int16_t>(bits.value);
    case Bits::Width::longInteger:
        return bits.value;
    }
    raise(error::kTypeMismatch);
}

}  // namespace

Variant andValues(const Variant& left, const Variant& right) {
    using Width = Bits::Width;
    const Bits first = bitsOf(left);
    const Bits second = bitsOf(right);
    if (first.width == Width::null || second.width == Width::null) {
        const Bits& known = first.width == Width::null ? second : first;
        return known.value == 0 ? valueOf(known) : Variant::null();
    }
    // A Boolean and a Byte share no width of their own; an Integer holds both.
    Width width = std::max(first.width, second.width);
    if (first.width != second.width) width = std::max(width, Width::integer);
    return valueOf({width, first.value & second.value});
}

}  // namespace orvane
