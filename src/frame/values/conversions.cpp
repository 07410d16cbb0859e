#include "frame/values/conversions.h"

#include "frame/errors.h"

#include <cmath>
#include <limits>
#include <type_traits>
#include <variant>

namespace orvane {
namespace {

/// Default members that give objects again are followed this far.
constexpr int kDeepestDefault = 8;

constexpr std::uint32_t kRuntimeErrorBase = 0x800A0000;

template <class T>
T toWhole(double value) {
    const double whole = roundHalfEven(value);
    if (!(whole >= std::numeric_limits<T>::min() && whole <= std::numeric_limits<T>::max())) {
        raise(error::kOverflow);
    }
    return static_cast<T>(whole);
}

template <class T>
T toWhole(std::int32_t value) {
    if (value < std::numeric_limits<T>::min() || value > std::numeric_limits<T>::max()) {
        raise(error::kOverflow);
    }
    return static_cast<T>(value);
}

/// A Currency without its fraction, a half to the even neighbour.
std::int64_t wholeOf(Currency value) {
    std::int64_t whole = value.scaled / 10000;
    const std::int64_t rest = value.scaled % 10000;
    const std::int64_t twice = 2 * (rest < 0 ? -rest : rest);
    if (twice > 10000 || (twice == 10000 && whole % 2 != 0)) whole += rest < 0 ? -1 : 1;
    return whole;
}

template <class T>
T toWhole(Currency value) {
    const std::int64_t whole = wholeOf(value);
    if (whole < std::numeric_limits<T>::min() || whole > std::numeric_limits<T>::max()) {
        raise(error::kOverflow);
    }
    return static_cast<T>(whole);
}

/// What a number can be made of; the numeric tags come down to the first three.
struct ToBoolean {
    bool operator()(std::int32_t value) const { return value != 0; }
    bool operator()(double value) const { return value != 0; }
    bool operator()(Currency value) const { return value.scaled != 0; }
    bool operator()(WStringView text) const { return textToBoolean(text); }
};

struct ToByte {
    std::uint8_t operator()(auto value) const { return toWhole<std::uint8_t>(value); }
    std::uint8_t operator()(WStringView text) const { return textToByte(text); }
};

struct ToInteger {
    std::int16_t operator()(auto value) const { return toWhole<std::int16_t>(value); }
    std::int16_t operator()(WStringView text) const { return textToInteger(text); }
};

struct ToLong {
    std::int32_t operator()(std::int32_t value) const { return value; }
    std::int32_t operator()(auto value) const { return toWhole<std::int32_t>(value); }
    std::int32_t operator()(WStringView text) const { return textToLong(text); }
};

struct ToDouble {
    double operator()(std::int32_t value) const { return value; }
    double operator()(double value) const { return value; }
    double operator()(Currency value) const { return static_cast<double>(value.scaled) / 10000; }
    double operator()(WStringView text) const { return textToDouble(text); }
};

struct ToCurrency {
    Currency operator()(std::int32_t value) const { return {std::int64_t{value} * 10000}; }
    Currency operator()(double value) const { return doubleToCurrency(value); }
    Currency operator()(Currency value) const { return value; }
    Currency operator()(WStringView text) const { return textToCurrency(text); }
};

struct ToDate {
    Date operator()(auto value) const { return numberToDate(ToDouble()(value)); }
    Date operator()(WStringView text) const { return textToDate(text); }
};

/// Finds the number or text in a value and hands it to `Target`.
template <class Target>
struct Reader {
    using Result = std::invoke_result_t<Target, std::int32_t>;

    Result operator()(std::monostate) const { return Target()(std::int32_t{0}); }
    Result operator()(Variant::NullTag) const { raise(error::kInvalidUseOfNull); }
    Result operator()(bool value) const { return Target()(std::int32_t{value ? -1 : 0}); }
    Result operator()(std::uint8_t value) const { return Target()(std::int32_t{value}); }
    Result operator()(std::int16_t value) const { return Target()(std::int32_t{value}); }
    Result operator()(std::int32_t value) const { return Target()(value); }
    Result operator()(float value) const { return Target()(static_cast<double>(value)); }
    Result operator()(double value) const { return Target()(value); }
    Result operator()(Currency value) const { return Target()(value); }
    Result operator()(Date value) const { return Target()(value.days); }
    Result operator()(ErrorValue) const { raise(error::kTypeMismatch); }
    Result operator()(const WString& text) const { return Target()(text.view()); }
    Result operator()(const Variant::ArrayPointer&) const { raise(error::kTypeMismatch); }
    Result operator()(const Variant::ReferencePointer& target) const {
        return target->read().visit(*this);
    }
    Result operator()(const Object& object) const { return plainValue(object).visit(*this); }
};

struct TextReader {
    WString operator()(std::monostate) const { return u""; }
    WString operator()(Variant::NullTag) const { raise(error::kInvalidUseOfNull); }
    WString operator()(bool value) const { return booleanToText(value); }
    WString operator()(std::uint8_t value) const { return longToText(value); }
    WString operator()(std::int16_t value) const { return longToText(value); }
    WString operator()(std::int32_t value) const { return longToText(value); }
    WString operator()(float value) const { return singleToText(value); }
    WString operator()(double value) const { return doubleToText(value); }
    WString operator()(Currency value) const { return currencyToText(value); }
    WString operator()(Date value) const { return dateToText(value); }
    WString operator()(ErrorValue value) const {
        const auto code = static_cast<std::uint32_t>(value.code);
        const bool runtime = (code & 0xFFFF0000) == kRuntimeErrorBase;
        return u"Error " +
               longToText(runtime ? static_cast<std::int32_t>(code & 0xFFFF) : value.code);
    }
    WString operator()(const WString& text) const { return text; }
    WString operator()(const Variant::ArrayPointer&) const { raise(error::kTypeMismatch); }
    WString operator()(const Variant::ReferencePointer& target) const {
        return target->read().visit(*this);
    }
    WString operator()(const Object& object) const { return plainValue(object).visit(*this); }
};

}  // namespace

double roundHalfEven(double value) {
    // Not nearbyint: a host may have set another rounding mode.
    const double magnitude = std::fabs(value);
    double whole = std::floor(magnitude);
    const double rest = magnitude - whole;
    if (rest > 0.5 || (rest == 0.5 && std::fmod(whole, 2) != 0)) whole += 1;
    return std::copysign(whole, value);
}

std::int32_t doubleToLong(double value) {
    return toWhole<std::int32_t>(value);
}

std::int16_t doubleToInteger(double value) {
    return toWhole<std::int16_t>(value);
}

std::uint8_t doubleToByte(double value) {
    return toWhole<std::uint8_t>(value);
}

Currency doubleToCurrency(double value) {
    constexpr double kLimit = 9223372036854775808.0;
    const double scaled = roundHalfEven(value * 10000);
    if (!(scaled >= -kLimit && scaled < kLimit)) raise(error::kOverflow);
    return {static_cast<std::int64_t>(scaled)};
}

Variant plainValue(const Variant& value) {
    Variant plain = value.value();
    for (int depth = 0; const auto* object = plain.as<Object>(); ++depth) {
        if (depth == kDeepestDefault) raise(error::kTypeMismatch);
        plain = object->defaultValue().value();
    }
    return plain;
}

bool toBoolean(const Variant& value) {
    return value.visit(Reader<ToBoolean>());
}

std::uint8_t toByte(const Variant& value) {
    return value.visit(Reader<ToByte>());
}

std::int16_t toInteger(const Variant& value) {
    return value.visit(Reader<ToInteger>());
}

std::int32_t toLong(const Variant& value) {
    return value.visit(Reader<ToLong>());
}

float toSingle(const Variant& value) {
    if (const auto* single = value.as<float>()) return *single;
    const double number = toDouble(value);
    const auto narrowed = static_cast<float>(number);
    if (!std::isfinite(narrowed)) raise(error::kOverflow);
    return narrowed;
}

double toDouble(const Variant& value) {
    return value.visit(Reader<ToDouble>());
}

Currency toCurrency(const Variant& value) {
    return value.visit(Reader<ToCurrency>());
}

Date toDate(const Variant& value) {
    return value.visit(Reader<ToDate>());
}

WString toText(const Variant& value) {
    return value.visit(TextReader());
}

Object toObject(const Variant& value) {
    if (const auto* target = value.referencePointer()) return toObject((*target)->read());
    const auto* object = value.as<Object>();
    if (object == nullptr) raise(error::kObjectRequired);
    return *object;
}

ErrorValue toErrorValue(const Variant& value) {
    if (const auto* target = value.referencePointer()) return toErrorValue((*target)->read());
    const auto* code = value.as<ErrorValue>();
    if (code == nullptr) raise(error::kTypeMismatch);
    return *code;
}

Variant changeType(const Variant& value, VarType type) {
    if (value.isArray()) {
        if (value.type() != type && type != VarType::Variant) raise(error::kTypeMismatch);
        return value.value();
    }
    switch (type) {
    case VarType::Empty:
        return {};
    case VarType::Null:
        return Variant::null();
    case VarType::Integer:
        return toInteger(value);
    case VarType::Long:
        return toLong(value);
    case VarType::Single:
        return toSingle(value);
    case VarType::Double:
        return toDouble(value);
    case VarType::Currency:
        return toCurrency(value);
    case VarType::Date:
        return toDate(value);
    case VarType::String:
        return toText(value);
    case VarType::Object:
        return toObject(value);
    case VarType::Error:
        return toErrorValue(value);
    case VarType::Boolean:
        return toBoolean(value);
    case VarType::Byte:
        return toByte(value);
    case VarType::Variant:
        return value.value();
    case VarType::Array:
        break;
    }
    raise(error::kTypeMismatch);
}

}  // namespace orvane
