#include "support/numbers.h"

#include "frame/errors.h"
#include "frame/values/conversions.h"
#include "support/text.h"

#include <array>
#include <charconv>
#include <cmath>
#include <string>

namespace orvane {
namespace {

constexpr std::array kByteUnits = {u" байт", u" КБ", u" МБ", u" ГБ", u" ТБ"};
constexpr double kByteUnitStep = 1024;

double twoDecimals(double value) {
    return roundHalfEven(value * 100) / 100;
}

}  // namespace

WString nqFormatLong(std::int32_t value) {
    return longToText(value);
}

WString nqFormatDouble(double value) {
    return doubleToText(value);
}

WString nqFormatInt64(double value) {
    std::array<char, 20> digits{};
    const auto end =
        std::to_chars(digits.data(), digits.data() + digits.size(), nqDoubleToLargeInteger(value));
    return std::u16string(digits.data(), end.ptr);
}

// The rounded value chooses the unit: 1023.999 KB is shown as 1 MB, not as 1024 KB.
WString nqFormatByteSizeEx(double value) {
    if (!std::isfinite(value)) raise(error::kOverflow);
    std::size_t unit = 0;
    while (unit + 1 < kByteUnits.size() && std::fabs(twoDecimals(value)) >= kByteUnitStep) {
        value /= kByteUnitStep;
        ++unit;
    }
    return doubleToText(twoDecimals(value)) + kByteUnits[unit];
}

double nqLargeIntegerToDouble(std::int64_t value) {
    return static_cast<double>(value);
}

std::int64_t nqDoubleToLargeInteger(double value) {
    constexpr double kLimit = 9223372036854775808.0;
    const double whole = roundHalfEven(value);
    if (!(whole >= -kLimit && whole < kLimit)) raise(error::kOverflow);
    return static_cast<std::int64_t>(whole);
}

std::int16_t nqLoWord(std::int32_t value) {
    return static_cast<std::int16_t>(value & 0xFFFF);
}

std::int32_t nqMakeLong(std::int16_t low, std::int16_t high) {
    const std::uint32_t lowBits = static_cast<std::uint16_t>(low);
    const std::uint32_t highBits = static_cast<std::uint16_t>(high);
    return static_cast<std::int32_t>(highBits << 16 | lowBits);
}

WString nqGetErrorNumber(std::int32_t number) {
    return longToText(number) + u" (" + nqHexEx4(number) + u")";
}

}  // namespace orvane
