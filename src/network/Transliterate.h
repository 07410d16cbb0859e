#pragma once

#include "frame/values/wstring.h"

namespace orvane {

/// The text with its Russian letters written in Latin ones, in one pass; all else passes through
/// unchanged. A table of this library's own, which follows no published scheme: both hard and soft
/// sign are an apostrophe, and some letters fall together. "Ёж" becomes "JOj".
WString Transliterate(WStringView text);

}  // namespace orvane
