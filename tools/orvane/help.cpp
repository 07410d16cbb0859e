#include "help.h"

#include <algorithm>
#include <array>
#include <span>
#include <string_view>
#include <vector>

namespace orvane::tool {

namespace {

struct Command {
    std::string_view name;
    std::string_view words;  ///< that follow the name
    std::string_view help;   ///< lines of at most `kHelpWidth` characters
};

/// The help on all commands has their names to the left of the lines.
constexpr std::size_t kHelpColumn = 17;
constexpr std::size_t kHelpWidth = 80 - kHelpColumn;

constexpr std::array kCommands = {
    Command{"args", "[WORDS...]",
            "what the library makes of this command line: the number of\n"
            "parameters, the program (-1) and each parameter from 0"},
    Command{"describe", "[CLASS]",
            "the classes of the library, or the members of one of them;\n"
            "CLASS may be the ProgID of any registered component"},
    Command{"picture info", "[--json] FILES...",
            "type, size and depth of each picture, or its error; with\n"
            "--json one object a line: file, type, typeName, width, height,\n"
            "bpp, or file and error (number, description)"},
    Command{"picture convert", "IN OUT",
            "writes a picture as .bmp, .ppm or .png, by the extension of OUT"},
    Command{"picture show", "[-o FILE] FILES...",
            "a page of small pictures with their names, types, sizes and\n"
            "depths, as the PNG file contact-sheet.png or FILE"},
    Command{"gzip info", "[--json] FILES...",
            "the library's verdict on each gzip file (its code and text),\n"
            "the sizes of the data and of the file, and the header; with\n"
            "--json one object a line: file, size, verdict (code,\n"
            "description), dataSize and the fields of the header, or file,\n"
            "size and error (code or error, description) of one that is\n"
            "refused"},
    Command{"gzip cat", "FILE", "the data of a gzip file"},
    Command{"register", "[FILE]",
            "makes the classes of a component, without FILE the library's\n"
            "own, known to all programs that create objects by name; on\n"
            "Linux for the whole machine as root, else for you"},
    Command{"unregister", "[FILE]", "removes what register wrote for a component's classes"},
    Command{"registry list", "[--json] KEY",
            "sub-keys in brackets, then name, type and data of each value;\n"
            "with --json an object a line: key, or name, type, value"},
    Command{"registry get", "[--json] KEY [NAME]",
            "the data of a value alone; without NAME, or with @ or \"\", of\n"
            "the key's default value"},
    Command{"registry set", "[--type TYPE] KEY NAME VALUE...",
            "writes a value and makes its key; TYPE is string (the usual\n"
            "one), expand, multi (each VALUE a text), dword, qword, binary\n"
            "or none (hexadecimal digits), or a name like REG_SZ"},
    Command{"registry delete", "[--recursive] KEY [NAME]",
            "deletes a value, or a key; --recursive with its sub-keys"},
    Command{"registry export", "[--utf8] KEY [FILE]",
            "writes a key and all below it as a registry file (.reg), in\n"
            "UTF-16 as Windows does; with --utf8 in UTF-8"},
    Command{"registry import", "FILE",
            "does what a registry file says, all of it or nothing; on\n"
            "Windows a failure of the registry itself can stop midway"},
};
static_assert(std::ranges::all_of(kCommands, [](const Command& command) {
    std::size_t width = 0;
    for (const char c : command.help) {
        width = c == '\n' ? 0 : width + 1;
        if (width > kHelpWidth) return false;
    }
    return command.name.size() < kHelpColumn;
}));

constexpr const char* kRegistryNote =
    "KEY is a path like HKCU\\Software\\Example; the roots are HKCU, HKLM, HKCR,\n"
    "HKU and HKCC, or their long names. A shell wants it in quotes. FILE may be -\n"
    "for the standard input or output.\n";

constexpr const char* kStatusNote =
    "Exit status: 0, 1 when something failed, 2 for a wrong command line. When nobody\n"
    "reads the output any more the tool ends quietly (on Linux by SIGPIPE, for a\n"
    "shell 141; on Windows with 0).\n";

constexpr const char* kMoreNote = "orvane COMMAND --help tells of one command or group of them.\n";

using Commands = std::span<const Command>;

std::string usageOf(Commands commands) {
    std::string text;
    for (const Command& command : commands) {
        text.append(text.empty() ? "usage: " : "       ").append("orvane ").append(command.name);
        text.append(" ").append(command.words) += '\n';
    }
    return text;
}

/// The commands' help, with their names at the left.
std::string columns(Commands commands) {
    std::string text;
    for (const Command& command : commands) {
        text.append(command.name).append(kHelpColumn - command.name.size(), ' ');
        for (const char c : command.help) {
            text += c;
            if (c == '\n') text.append(kHelpColumn, ' ');
        }
        text += '\n';
    }
    return text;
}

/// The command of this name, or the group's commands: neighbours in the table.
Commands named(std::string_view name) {
    const auto belongs = [name](const Command& command) {
        return command.name == name || (command.name.starts_with(name) &&
                                        command.name.substr(name.size()).starts_with(' '));
    };
    const auto first = std::ranges::find_if(kCommands, belongs);
    return {first, std::find_if_not(first, kCommands.end(), belongs)};
}

}  // namespace

bool asksForHelp(std::string_view word) {
    return word == "--help" || word == "-h";
}

std::string usage() {
    return usageOf(kCommands) + "       orvane --help\n"
                                "       orvane --version\n";
}

std::string help() {
    return usage() + "\n" + columns(kCommands) + "\n" + kRegistryNote + "\n" + kStatusNote + "\n" +
           kMoreNote;
}

std::optional<std::string> requestedHelp(Words words) {
    constexpr std::size_t kMostWords = 3;  // group, command, --help
    if (words.size() < 2 || words.size() > kMostWords || !asksForHelp(words.back())) return {};
    std::string name = words[0];
    if (words.size() == kMostWords) name.append(" ").append(words[1]);
    const Commands commands = named(name);
    if (commands.empty()) return {};
    std::string text = usageOf(commands) + "\n";
    if (commands.size() > 1) text += columns(commands);
    else text.append(commands[0].help) += '\n';
    if (commands[0].name.starts_with("registry ")) text.append("\n").append(kRegistryNote);
    return text;
}

}  // namespace orvane::tool
