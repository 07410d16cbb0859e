#pragma once

#include "frame/values/variant.h"

#include <cstdint>
#include <optional>

namespace orvane {

/// Conversions between the types of the value layer. All of them are the library's own, the same
/// on every platform and in every locale: the decimal separator is a point. A text that is no
/// number, and a tag that can't be converted, raise run-time error 13; a value outside the target's
/// range raises 6; Null raises 94, except to Variant. A by-reference Variant is read through, and
/// an object is read through its default member.

/// The general text-to-number conversion. A number is: blanks (U+0020 only), one sign, digits with
/// at most one decimal point among or around them (at least one digit), an exponent of "E" or "e",
/// one sign and digits, blanks. Instead of sign to exponent it can be "&H" with hexadecimal or "&O"
/// with octal digits, in either case of the letters: the bit pattern of a whole number of 32 bits
/// ("&HFFFFFFFF" is -1), or, for a narrower target, of the target's bits ("&HFFFF" is 65535 as a
/// Long and -1 as an Integer). Anything else raises 13, a value outside the target raises 6.
///
/// Whole numbers and Currency are rounded from the digits themselves, a half to the even neighbour;
/// a Double is the one nearest to the digits.
double textToDouble(WStringView text);
std::int32_t textToLong(WStringView text);
std::int16_t textToInteger(WStringView text);
std::uint8_t textToByte(WStringView text);
Currency textToCurrency(WStringView text);
/// The number in a text, or nothing when the text is none or a Double can't hold it.
std::optional<double> numberIn(WStringView text);
/// "True" and "False" without regard to case and without blanks, or a number.
bool textToBoolean(WStringView text);
/// A date as `dateToText` writes it, or in the form "2026-11-21 10:30:00", each also without the
/// time, without the seconds, or as a time alone, with blanks around; the year has four digits,
/// from 0100 on. A number counts too.
Date textToDate(WStringView text);

/// Up to 15 significant digits, an exponent where the number needs one: "0.1", "1E+15", "1E-05".
/// Raises 6 for a value that is no number or infinite.
WString doubleToText(double value);
/// The same with up to 7 significant digits.
WString singleToText(float value);
WString longToText(std::int32_t value);
WString currencyToText(Currency value);
/// "True" or "False".
WString booleanToText(bool value);
/// "21.11.2026 10:30:00"; without the time when it is midnight, without the date on day 0, and
/// "00:00:00" when both hold. To the nearest second. Raises 6 for a date that is out of range.
WString dateToText(Date value);

/// Dates run from 0100-01-01 00:00 to 9999-12-31 23:59:59 in the Gregorian calendar, extended into
/// the past. The whole part of `days` is the day, before or after 1899-12-30, and the fraction
/// without its sign the time of day: -1.25 is 1899-12-29 06:00. Raises 6 out of range.
Date numberToDate(double days);

/// Rounds to the nearest whole number, a half to its even neighbour. The conversions to whole
/// numbers and Currency round so, and raise 6 for what is no number or out of range.
double roundHalfEven(double value);
std::int32_t doubleToLong(double value);
std::int16_t doubleToInteger(double value);
std::uint8_t doubleToByte(double value);
Currency doubleToCurrency(double value);

/// The value behind references and default members: never a reference or an object. Raises what
/// the objects raise, and 13 when their default members give objects without end.
Variant plainValue(const Variant& value);

bool toBoolean(const Variant& value);
std::uint8_t toByte(const Variant& value);
std::int16_t toInteger(const Variant& value);
std::int32_t toLong(const Variant& value);
float toSingle(const Variant& value);
double toDouble(const Variant& value);
Currency toCurrency(const Variant& value);
Date toDate(const Variant& value);
/// An Error value gives "Error " and its number: the run-time error number when it carries one
/// (0x800A0005 is "Error 5"), else the status code in decimal. Empty gives an empty text.
WString toText(const Variant& value);
/// The object, or Nothing; any other tag raises 424.
Object toObject(const Variant& value);
/// The Error value; any other tag raises 13.
ErrorValue toErrorValue(const Variant& value);

/// The conversion to an element type, by name of the type.
template <class T>
T convertTo(const Variant& value) {
    if constexpr (std::is_same_v<T, bool>) return toBoolean(value);
    else if constexpr (std::is_same_v<T, std::uint8_t>) return toByte(value);
    else if constexpr (std::is_same_v<T, std::int16_t>) return toInteger(value);
    else if constexpr (std::is_same_v<T, std::int32_t>) return toLong(value);
    else if constexpr (std::is_same_v<T, float>) return toSingle(value);
    else if constexpr (std::is_same_v<T, double>) return toDouble(value);
    else if constexpr (std::is_same_v<T, Currency>) return toCurrency(value);
    else if constexpr (std::is_same_v<T, Date>) return toDate(value);
    else if constexpr (std::is_same_v<T, ErrorValue>) return toErrorValue(value);
    else if constexpr (std::is_same_v<T, WString>) return toText(value);
    else if constexpr (std::is_same_v<T, Object>) return toObject(value);
    else return value.value();
}

/// The value converted to the type with this tag. An array comes back as it is when the tag is its
/// own, and raises 13 otherwise, as does a tag that no value has.
Variant changeType(const Variant& value, VarType type);

}  // namespace orvane
