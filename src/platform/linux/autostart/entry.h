#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

/// What makes the system's run key true here: an entry in the desktop's autostart folder for each
/// of its text values (Desktop Entry and Desktop Application Autostart Specifications of
/// freedesktop.org).
namespace orvane::platform::autostart {

/// Whose logon starts the program.
enum class Scope : std::uint8_t { user, machine };

/// Tells whether a path names a file that can be executed.
using IsProgram = bool (*)(const std::string& path);

/// The words of a command line as the run key's values have them, the program first; none when the
/// line is blank. Words stand between blanks (also tabs and ends of lines) or in double quotes; of
/// 2n backslashes before a quote n remain, and one more makes the quote a character of the word.
///
/// A program without quotes may hold blanks: it ends at the first blank behind which it is one by
/// `isProgram`, and at the first blank of all when there is none such.
std::vector<std::string> wordsOf(std::string_view line, IsProgram isProgram);

/// Words as the value of the key `Exec`: quoted and escaped, without field codes.
std::string execValue(const std::vector<std::string>& words);

/// The text of the entry for a value of the run key, "" when its command line is blank: such a
/// value counts as not registered.
std::string entryText(std::u16string_view valueName, std::u16string_view commandLine,
                      IsProgram isProgram);

/// What the file names of a scope's entries begin with.
std::string_view entryStart(Scope scope);

/// The file name of the entry for a value. `foldedName` is the value's name as names are compared,
/// so that every spelling of it has one file, and every other name another one. A value of the user
/// and one of the machine are two programs to start, so their files have different names, too.
std::string entryName(Scope scope, std::u16string_view foldedName);

}  // namespace orvane::platform::autostart
