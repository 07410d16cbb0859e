#pragma once

/// Fonts of the binary interface, for platforms that have none of their own. Included by
/// `automation.h`, which hosts include.

#include "orvane/automation.h"

#ifndef _WIN32

inline constexpr DISPID DISPID_FONT_NAME = 0;
inline constexpr DISPID DISPID_FONT_SIZE = 2;
inline constexpr DISPID DISPID_FONT_BOLD = 3;
inline constexpr DISPID DISPID_FONT_ITALIC = 4;
inline constexpr DISPID DISPID_FONT_UNDER = 5;
inline constexpr DISPID DISPID_FONT_STRIKE = 6;
inline constexpr DISPID DISPID_FONT_WEIGHT = 7;
inline constexpr DISPID DISPID_FONT_CHARSET = 8;

/// A font. Its properties have these numbers: `Name` (a text), `Size` (Currency, in points),
/// `Bold`, `Italic`, `Underline`, `Strikethrough` (Booleans), `Weight` and `Charset` (Integers).
struct IFontDisp : IDispatch {};

#endif
