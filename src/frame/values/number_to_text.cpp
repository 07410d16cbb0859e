#include "frame/errors.h"
#include "frame/values/conversions.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string>

namespace orvane {
namespace {

constexpr int kDoubleDigits = 15;
constexpr int kSingleDigits = 7;

/// As "%.<digits>G" in the C locale; a negative zero loses its sign.
WString floatingToText(double value, int digits) {
    if (!std::isfinite(value)) raise(error::kOverflow);
    if (value == 0) return u"0";
    std::array<char, 40> buffer{};
    const auto end =
        std::to_chars(buffer.begin(), buffer.end(), value, std::chars_format::general, digits);
    std::u16string text(buffer.begin(), end.ptr);
    if (const auto exponent = text.find(u'e'); exponent != text.npos) text[exponent] = u'E';
    return text;
}

template <class Whole>
std::u16string wholeToText(Whole value) {
    std::array<char, 24> buffer{};
    const auto end = std::to_chars(buffer.begin(), buffer.end(), value);
    return {buffer.begin(), end.ptr};
}

}  // namespace

WString doubleToText(double value) {
    return floatingToText(value, kDoubleDigits);
}

WString singleToText(float value) {
    return floatingToText(static_cast<double>(value), kSingleDigits);
}

WString longToText(std::int32_t value) {
    return wholeToText(value);
}

WString currencyToText(Currency value) {
    const auto bits = static_cast<std::uint64_t>(value.scaled);
    const std::uint64_t magnitude = value.scaled < 0 ? 0 - bits : bits;
    std::u16string text = wholeToText(magnitude / 10000);
    if (const std::uint64_t rest = magnitude % 10000; rest != 0) {
        // The leading 1 keeps the zeros behind the point.
        std::u16string fraction = wholeToText(10000 + rest);
        fraction.front() = u'.';
        fraction.erase(fraction.find_last_not_of(u'0') + 1);
        text += fraction;
    }
    if (value.scaled < 0) text.insert(text.begin(), u'-');
    return text;
}

WString booleanToText(bool value) {
    return value ? u"True" : u"False";
}

}  // namespace orvane
