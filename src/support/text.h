#pragma once

#include "frame/values/variant.h"
#include "frame/values/wstring.h"

#include <cstdint>

/// Text helpers. Texts are cut and compared by UTF-16 units; a null text counts as an empty one.
namespace orvane {

/// `text` without the blanks, tabs, carriage returns, line feeds and NULs at both ends.
WString nqTrimEx(WStringView text);

/// The general form of `nqTrimEx`: each switch adds one character to those that are trimmed at
/// both ends. `nqTrimEx` is the form with the first five switches on.
WString nqTrimEx2(WStringView text, bool blank, bool tab, bool carriageReturn, bool lineFeed,
                  bool nul, bool verticalTab, bool formFeed, bool noBreakSpace, bool doubleQuote,
                  bool apostrophe);

/// `text` without the carriage returns and line feeds at both ends, however many there are.
WString nqTrimCRLF(WStringView text);

/// `text` without its first `count` units; empty when `count` reaches its length or goes past it.
/// A negative `count` raises 5.
WString nqCutLeft(WStringView text, std::int32_t count);

/// `text` without its last `count` units, under the rules of `nqCutLeft`.
WString nqCutRight(WStringView text, std::int32_t count);

/// The NUL-terminated ANSI string at `address` as a wide string; null gives a null string.
WString nqGetStringFromPointerA(const char* address);

/// The NUL-terminated UTF-16 string at `address`; null gives a null string.
WString nqGetStringFromPointerW(const char16_t* address);

/// The ANSI items at `address`, each ended by a NUL and the last one by two, as one wide string
/// with a NUL between items and none at the end. An empty first item ends the list. Null gives a
/// null string.
WString nqGetStringFrom2NullBufferA(const char* address);

/// A byte string as its bytes, one per unit, lower bound 0; an empty text gives an array without
/// elements. A unit that the ANSI code page lacks becomes '?'.
Array<std::uint8_t> nqStrConvB(WStringView text);

/// Bytes as a byte string, one unit per byte; an unallocated array gives an empty text. An array of
/// several dimensions gives its bytes in storage order.
WString nqStrConvW(const Array<std::uint8_t>& bytes);

/// The UTF-8 form of a wide string, as a byte string. A surrogate without its partner becomes the
/// bytes of U+FFFD.
WString nqUNICODEToUTF8(WStringView text);

/// The wide string whose UTF-8 form a byte string holds; what is no UTF-8 becomes U+FFFD.
WString nqUTF8ToUNICODE(WStringView text);

/// The OEM-code-page form of a text, as a byte string: its ANSI bytes are the OEM bytes of `text`.
WString nqAnsiToOem(WStringView text);

/// Hexadecimal digits of a value in the fixed width of its type, upper case, without a prefix:
/// `nqHex2(255)` is "00FF".
WString nqHex1(std::uint8_t value);
WString nqHex2(std::int16_t value);
WString nqHex4(std::int32_t value);

/// The form for addresses, "0x" and eight digits: `nqHexEx4(255)` is "0x000000FF".
WString nqHexEx4(std::int32_t value);

}  // namespace orvane
