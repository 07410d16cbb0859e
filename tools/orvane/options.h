#pragma once

#include "commands.h"

#include <string_view>

namespace orvane::tool {

/// Takes the options off the front of `words`, up to the first word that is none or behind "--";
/// true when `known` was among them. Throws UsageError for any other option; with an empty `known`
/// there is none.
bool takeOptions(Words& words, std::string_view known);

}  // namespace orvane::tool
