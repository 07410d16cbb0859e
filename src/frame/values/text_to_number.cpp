#include "frame/errors.h"
#include "frame/values/conversions.h"
#include "frame/values/text.h"

#include <algorithm>
#include <charconv>
#include <limits>
#include <optional>
#include <string>
#include <system_error>

namespace orvane {
namespace {

constexpr char16_t kBlank = u' ';
/// No power of ten beyond this one makes a difference to a number whose text fits in memory.
constexpr std::int64_t kExponentLimit = 0x4'0000'0000;

/// A number as its text gives it. A decimal one is `digits` * 10^`exponent`, with the sign; a bit
/// pattern of "&H" or "&O" is `pattern`.
struct ParsedNumber {
    bool isPattern = false;
    bool negative = false;
    std::uint64_t pattern = 0;  ///< more than 32 bits when the text has too many digits
    std::string digits;         ///< without leading zeros; empty for zero
    std::int64_t exponent = 0;
};

bool isDigit(char16_t unit) {
    return unit >= u'0' && unit <= u'9';
}

std::optional<unsigned> digitValue(char16_t unit, unsigned base) {
    unsigned value = base;
    if (isDigit(unit)) value = static_cast<unsigned>(unit - u'0');
    if (unit >= u'A' && unit <= u'F') value = static_cast<unsigned>(unit - u'A') + 10;
    if (unit >= u'a' && unit <= u'f') value = static_cast<unsigned>(unit - u'a') + 10;
    if (value >= base) return std::nullopt;
    return value;
}

WStringView withoutBlanks(WStringView text) {
    const std::size_t first = text.find_first_not_of(kBlank);
    if (first == WStringView::npos) return {};
    return text.substr(first, text.find_last_not_of(kBlank) + 1 - first);
}

/// What follows the '&' of a prefixed number.
std::optional<ParsedNumber> parsePattern(WStringView text) {
    if (text.size() < 2) return std::nullopt;
    const char16_t letter = upperUnit(text[0]);
    if (letter != u'H' && letter != u'O') return std::nullopt;
    const unsigned base = letter == u'H' ? 16 : 8;
    ParsedNumber number;
    number.isPattern = true;
    for (const char16_t unit : text.substr(1)) {
        const auto digit = digitValue(unit, base);
        if (!digit) return std::nullopt;
        // Once it has left 32 bits it stays outside.
        if (number.pattern <= 0xFFFFFFFF) number.pattern = number.pattern * base + *digit;
    }
    return number;
}

/// The digits and the point; what they leave of `text` comes back in it.
bool takeMantissa(WStringView& text, ParsedNumber& number) {
    bool anyDigit = false;
    bool point = false;
    std::size_t at = 0;
    for (; at < text.size(); ++at) {
        const char16_t unit = text[at];
        if (unit == u'.' && !point) {
            point = true;
        } else if (isDigit(unit)) {
            anyDigit = true;
            if (point) --number.exponent;
            if (unit != u'0' || !number.digits.empty()) {
                number.digits += static_cast<char>(unit);
            }
        } else {
            break;
        }
    }
    text.remove_prefix(at);
    return anyDigit;
}

/// The exponent, which has to be all that is left of `text`.
bool takeExponent(WStringView text, ParsedNumber& number) {
    if (text.empty()) return true;
    if (text.front() != u'e' && text.front() != u'E') return false;
    text.remove_prefix(1);
    const bool negative = !text.empty() && text.front() == u'-';
    if (negative || (!text.empty() && text.front() == u'+')) text.remove_prefix(1);
    if (text.empty()) return false;
    std::int64_t exponent = 0;
    for (const char16_t unit : text) {
        if (!isDigit(unit)) return false;
        exponent = std::min(exponent * 10 + (unit - u'0'), kExponentLimit);
    }
    number.exponent += negative ? -exponent : exponent;
    return true;
}

std::optional<ParsedNumber> parse(WStringView text) {
    text = withoutBlanks(text);
    if (text.empty()) return std::nullopt;
    if (text.front() == u'&') return parsePattern(text.substr(1));
    ParsedNumber number;
    number.negative = text.front() == u'-';
    if (number.negative || text.front() == u'+') text.remove_prefix(1);
    if (!takeMantissa(text, number) || !takeExponent(text, number)) return std::nullopt;
    return number;
}

ParsedNumber parseOrRaise(WStringView text) {
    auto number = parse(text);
    if (!number) raise(error::kTypeMismatch);
    return *std::move(number);
}

/// The bits of a pattern as a whole number of type T, which has 32 of them at the most.
template <class T>
T patternAs(std::uint64_t pattern) {
    if (pattern > std::numeric_limits<std::make_unsigned_t<T>>::max()) raise(error::kOverflow);
    return static_cast<T>(static_cast<std::make_unsigned_t<T>>(pattern));
}

/// The digits that a whole number keeps, and what the ones behind it make of it.
bool roundsUp(const std::string& digits, std::size_t kept, bool odd) {
    if (kept >= digits.size() || digits[kept] < '5') return false;
    if (digits[kept] > '5') return true;
    const bool exactHalf = digits.find_first_not_of('0', kept + 1) == std::string::npos;
    return !exactHalf || odd;
}

/// A decimal number times 10^`scale`, rounded to a whole one. Nothing when it leaves 64 bits.
std::optional<std::int64_t> scaledWhole(const ParsedNumber& number, std::int64_t scale) {
    if (number.digits.empty()) return 0;
    // The count of digits before the point, after scaling.
    const std::int64_t whole =
        static_cast<std::int64_t>(number.digits.size()) + number.exponent + scale;
    if (whole < 0) return 0;
    if (whole > 19) return std::nullopt;
    std::uint64_t value = 0;
    for (std::size_t i = 0; i < static_cast<std::size_t>(whole); ++i) {
        const char digit = i < number.digits.size() ? number.digits[i] : '0';
        value = value * 10 + static_cast<std::uint64_t>(digit - '0');
    }
    if (roundsUp(number.digits, static_cast<std::size_t>(whole), value % 2 != 0)) ++value;
    constexpr std::uint64_t kMost = std::numeric_limits<std::int64_t>::max();
    if (value > kMost + (number.negative ? 1 : 0)) return std::nullopt;
    return static_cast<std::int64_t>(number.negative ? 0 - value : value);
}

template <class T>
T textToWhole(WStringView text) {
    const ParsedNumber number = parseOrRaise(text);
    if (number.isPattern) return patternAs<T>(number.pattern);
    const auto value = scaledWhole(number, 0);
    if (!value || *value < std::numeric_limits<T>::min() ||
        *value > std::numeric_limits<T>::max()) {
        raise(error::kOverflow);
    }
    return static_cast<T>(*value);
}

/// Nothing when the number is too big for a Double; one too small for it is 0.
std::optional<double> toNearestDouble(const ParsedNumber& number) {
    if (number.isPattern) {
        if (number.pattern > 0xFFFFFFFF) return std::nullopt;
        return static_cast<std::int32_t>(static_cast<std::uint32_t>(number.pattern));
    }
    if (number.digits.empty()) return 0.0;
    const std::string text = number.digits + 'e' + std::to_string(number.exponent);
    double value = 0;
    const auto result = std::from_chars(text.data(), text.data() + text.size(), value);
    if (result.ec == std::errc::result_out_of_range) {
        const auto size = static_cast<std::int64_t>(number.digits.size());
        if (size + number.exponent > 0) return std::nullopt;
        return 0.0;
    }
    if (value > std::numeric_limits<double>::max()) return std::nullopt;
    return number.negative ? -value : value;
}

bool equalsWithoutCase(WStringView text, WStringView lowered) {
    return std::ranges::equal(text, lowered, {}, lowerUnit);
}

}  // namespace

double textToDouble(WStringView text) {
    const auto value = toNearestDouble(parseOrRaise(text));
    if (!value) raise(error::kOverflow);
    return *value;
}

std::optional<double> numberIn(WStringView text) {
    const auto number = parse(text);
    return number ? toNearestDouble(*number) : std::nullopt;
}

std::int32_t textToLong(WStringView text) {
    return textToWhole<std::int32_t>(text);
}

std::int16_t textToInteger(WStringView text) {
    return textToWhole<std::int16_t>(text);
}

std::uint8_t textToByte(WStringView text) {
    return textToWhole<std::uint8_t>(text);
}

Currency textToCurrency(WStringView text) {
    const ParsedNumber number = parseOrRaise(text);
    if (number.isPattern) return {patternAs<std::int32_t>(number.pattern) * std::int64_t{10000}};
    const auto scaled = scaledWhole(number, 4);
    if (!scaled) raise(error::kOverflow);
    return {*scaled};
}

bool textToBoolean(WStringView text) {
    if (equalsWithoutCase(text, u"true")) return true;
    if (equalsWithoutCase(text, u"false")) return false;
    return textToDouble(text) != 0;
}

}  // namespace orvane
