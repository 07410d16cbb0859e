#pragma once

#include "frame/values/wstring.h"

#include <cstdint>

/// Display texts of numbers and the small arithmetic of 16-, 32- and 64-bit words. Digits are not
/// grouped and the decimal separator is a point, whatever the locale.
namespace orvane {

/// The decimal text of a number.
WString nqFormatLong(std::int32_t value);

/// The text of a number with up to 15 significant digits.
WString nqFormatDouble(double value);

/// A whole number in all its digits; a fraction is rounded away, a half to its even neighbour. A
/// value outside the signed 64-bit range raises 6.
WString nqFormatInt64(double value);

/// A byte count in the largest unit that leaves at least 1, with up to two decimals, in Russian as
/// the dialogs that show it: "512 байт", "1.5 КБ", up to "ТБ". An infinity or a NaN raises 6.
WString nqFormatByteSizeEx(double value);

/// A signed 64-bit value as a Double, rounded to the nearest one.
double nqLargeIntegerToDouble(std::int64_t value);

/// The nearest whole number, a half to its even neighbour; one outside the signed 64-bit range and
/// a NaN raise 6. The caller scales a Currency's raw form itself.
std::int64_t nqDoubleToLargeInteger(double value);

/// The low 16 bits.
std::int16_t nqLoWord(std::int32_t value);

/// The number of these two halves.
std::int32_t nqMakeLong(std::int16_t low, std::int16_t high);

/// An error number for display, decimal and in hexadecimal: "5 (0x00000005)".
WString nqGetErrorNumber(std::int32_t number);

}  // namespace orvane
