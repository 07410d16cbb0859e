#pragma once

#include "frame/values/wstring.h"

namespace orvane {

/// Hides a password from a casual look at the registry, and from nothing more: there is no key.

/// The text's ANSI bytes in reverse order, four hexadecimal digits each: two of 255 less the byte
/// and two at random, so that a password has many forms. "ab" is "9D109EC4" or another of those. A
/// character that the ANSI code page lacks becomes '?'.
WString EncryptPassword(WStringView text);

/// The text that `EncryptPassword` hid; empty when the length is no multiple of four or two digits
/// that count are no number. A number is what "&H" and the two make one: "1 " is 1.
WString DecryptPassword(WStringView text);

}  // namespace orvane
