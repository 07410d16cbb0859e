#pragma once

#include <string>
#include <string_view>

namespace orvane::platform {

/// The text of a command line, from the process's words as /proc/self/cmdline has them: each one
/// ended by a NUL. They are joined by one blank. A word goes into quotes when reading it back would
/// otherwise change it: when it is empty, starts with a quote, holds a blank, or starts or ends
/// with a character that trimming takes (blank, tab, carriage return, line feed, NUL). A byte that
/// is no UTF-8 becomes the unit that the ANSI code page gives it.
std::u16string commandLineText(std::string_view words);

}  // namespace orvane::platform
