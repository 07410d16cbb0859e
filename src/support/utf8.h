#pragma once

#include "frame/values/wstring.h"

#include <string>
#include <string_view>

namespace orvane {

/// The UTF-8 bytes of a text. A surrogate without its partner becomes the bytes of U+FFFD.
std::string encodeUtf8(WStringView text);

/// The text of UTF-8 bytes. A sequence that is not well-formed (Unicode 15, table 3-7) becomes
/// U+FFFD: one for each longest start of a character, one for each byte that starts none.
std::u16string decodeUtf8(std::string_view bytes);

}  // namespace orvane
