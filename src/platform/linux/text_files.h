#pragma once

#include <cstdint>
#include <string>
#include <string_view>

/// Small text files of the system: what it tells about itself.
namespace orvane::platform {

/// The content of a file, at most a mebibyte of it; empty when it can't be read. Unlike a file's
/// length, which is 0 under /proc, this reads to the end.
std::string fileText(const char* path);

/// The number behind "`name`:" at the start of a line, as /proc/meminfo writes it; 0 when there is
/// none or it doesn't fit.
std::uint64_t namedNumber(std::string_view text, std::string_view name);

/// The value of `name` in a file of shell assignments, as os-release(5) describes it: quotes taken
/// off, backslash escapes resolved. Empty when it isn't assigned.
std::string assignedText(std::string_view text, std::string_view name);

/// The system's name for people, from the texts of the administrator's and the vendor's os-release
/// file; `kernel` where neither has one, since without a name the system would count as a Windows.
std::string systemTitle(std::string_view administrators, std::string_view vendors,
                        std::string_view kernel);

}  // namespace orvane::platform
