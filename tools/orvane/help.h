#pragma once

#include "commands.h"

#include <optional>
#include <string>
#include <string_view>

/// What the tool tells about its commands.
namespace orvane::tool {

/// True for the words that ask for help.
bool asksForHelp(std::string_view word);

/// A line with the words of each command, the first one behind "usage: ".
std::string usage();

/// `orvane --help`: all commands, and what they have in common.
std::string help();

/// `orvane COMMAND --help`: the help on the command, or on all commands of a group ("registry"),
/// that the words before a last one that asks for it name. Nothing when they are no such request;
/// then they are for the command itself.
std::optional<std::string> requestedHelp(Words words);

}  // namespace orvane::tool
