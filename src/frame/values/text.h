#pragma once

#include "frame/values/array.h"
#include "frame/values/variant.h"
#include "frame/values/wstring.h"

#include <cstdint>
#include <limits>

namespace orvane {

/// The text operations of the value layer. Positions count from 1, in 16-bit units.

/// The most units that a wide string can have: its byte count has to fit 31 bits.
inline constexpr std::size_t kLongestText = 0x3FFFFFFE;

/// A length that takes everything up to the end.
inline constexpr std::int32_t kWholeRest = std::numeric_limits<std::int32_t>::max();

/// The number of units; raises 6 above the range of a Long.
std::int32_t len(WStringView text);

/// The first `count` units, or all when there are fewer; raises 5 for a negative count.
WString left(WStringView text, std::int32_t count);
/// The last `count` units, or all when there are fewer; raises 5 for a negative count.
WString right(WStringView text, std::int32_t count);
/// Up to `count` units from `position` on, empty past the end; raises 5 for a position below 1 and
/// a negative count.
WString mid(WStringView text, std::int32_t position, std::int32_t count = kWholeRest);

/// `Mid` as the target of an assignment: overwrites units from `position` on with those of
/// `source`, at most `count` of them, and never changes the length of `target`. Raises 5 for a
/// position outside the text and for a negative count.
void assignMid(WString& target, std::int32_t position, WStringView source,
               std::int32_t count = kWholeRest);

/// The position of the first `sought` in `text` from position `start` on, 0 when there is none.
/// Compares units. An empty `sought` is found at `start` itself as long as that lies in the text.
/// Raises 5 for a start below 1.
std::int32_t inStr(std::int32_t start, WStringView text, WStringView sought);

/// The pieces of `text` between the delimiters, in a 0-based array. An empty text gives an array
/// with the upper bound -1, an empty delimiter one piece: the whole text.
Array<WString> split(WStringView text, WStringView delimiter);

/// `text` with every occurrence of `sought` replaced, from left to right; compares units. An empty
/// `sought` occurs nowhere. Raises 7 when the result would be longer than a text can be.
WString replace(WStringView text, WStringView sought, WStringView replacement);

/// `count` copies of the first unit of `character`; raises 5 for a negative count and an empty
/// text, 7 above `kLongestText`.
WString string(std::int32_t count, WStringView character);
/// `count` copies of the unit for a character code, of which the low 8 bits count; raises 5 for a
/// negative count or code, 7 above `kLongestText`.
WString string(std::int32_t count, std::int32_t code);
/// One of the two by the type of `character`: a text as a text, any other value as a code. Raises
/// the conversion's error, too.
WString stringOf(std::int32_t count, const Variant& character);

/// The text in upper or lower case: the simple, one-to-one pairs of the basic plane, the same on
/// every platform and in every locale.
WString uCase(WStringView text);
WString lCase(WStringView text);
char16_t upperUnit(char16_t unit);
char16_t lowerUnit(char16_t unit);

/// The byte value of the first unit through the ANSI code page; raises 5 for an empty text.
std::int32_t asc(WStringView text);
/// The unit for a byte value through the ANSI code page; raises 5 outside 0 to 255.
WString chr(std::int32_t byte);

/// Modes of `strConv`.
inline constexpr std::int32_t kFromAnsi = 64;
inline constexpr std::int32_t kToAnsi = 128;

/// `StrConv`: with the mode 64 the text of a Byte array (or of the bytes that a byte string holds)
/// in the ANSI code page; with the mode 128 a text's bytes in the ANSI code page, as a 0-based Byte
/// array. Null gives Null. Raises 5 for other modes.
Variant strConv(const Variant& value, std::int32_t mode);

/// The text without blanks (U+0020 only) at both ends, at its start, at its end.
WString trim(WStringView text);
WString leftTrim(WStringView text);
WString rightTrim(WStringView text);

}  // namespace orvane
