#pragma once

#include "frame/values/wstring.h"

#include <cstdint>

namespace orvane {

/// A version in three parts, the second one filled to two digits and the third to four:
/// `nqFormatVersion(3, 1, 251)` is "3.01.0251". A longer part stands in full, a negative one with
/// its sign in front of the fill.
WString nqFormatVersion(std::int32_t major, std::int32_t minor, std::int32_t revision);

/// A version in two parts, decimal digits and one dot without any fill: `nqFormatVersionShort(1,
/// 10)` is "1.10". It names settings keys, so a version always has the same text; a negative part,
/// which such a name can't hold, raises 5.
WString nqFormatVersionShort(std::int32_t major, std::int32_t minor);

}  // namespace orvane
