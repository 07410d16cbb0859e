#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

/// The desktop's way to read the value of an entry's key `Exec`, straight from the Desktop Entry
/// Specification: nothing when the value breaks one of its rules.
namespace orvane::test {

/// The text that a key's value stands for.
inline std::optional<std::string> unescapedValue(std::string_view value) {
    std::string text;
    for (std::size_t i = 0; i < value.size(); ++i) {
        if (value[i] == '\n') return std::nullopt;
        if (value[i] != '\\') {
            text += value[i];
            continue;
        }
        if (++i == value.size()) return std::nullopt;
        constexpr std::string_view kLetters = "sntr\\";
        const std::size_t letter = kLetters.find(value[i]);
        if (letter == std::string_view::npos) return std::nullopt;
        text += " \n\t\r\\"[letter];
    }
    return text;
}

/// The arguments of a command, the program first.
inline std::optional<std::vector<std::string>> argumentsOf(std::string_view value) {
    constexpr std::string_view kReserved = " \t\n\"'\\><~|&;$*?#()`";
    constexpr std::string_view kEscapedInQuotes = "\"`$\\";
    const auto text = unescapedValue(value);
    if (!text) return std::nullopt;
    std::vector<std::string> arguments;
    for (std::size_t i = 0; i < text->size();) {
        if ((*text)[i] == ' ') {
            ++i;
            continue;
        }
        std::string argument;
        const bool quoted = (*text)[i] == '"';
        for (i += quoted ? 1 : 0;; ++i) {
            if (i == text->size()) {
                if (quoted) return std::nullopt;
                break;
            }
            char each = (*text)[i];
            if (quoted && each == '"') break;
            if (!quoted && each == ' ') break;
            if (!quoted && kReserved.find(each) != std::string_view::npos) return std::nullopt;
            if (quoted && (each == '`' || each == '$')) return std::nullopt;
            if (quoted && each == '\\') {
                if (++i == text->size()) return std::nullopt;
                each = (*text)[i];
                if (kEscapedInQuotes.find(each) == std::string_view::npos) return std::nullopt;
            } else if (each == '%') {
                // Any other field code would be the desktop's to fill in.
                if (++i == text->size() || (*text)[i] != '%') return std::nullopt;
            }
            argument += each;
        }
        if (quoted) {
            ++i;
            if (i != text->size() && (*text)[i] != ' ') return std::nullopt;
        }
        arguments.push_back(argument);
    }
    return arguments;
}

}  // namespace orvane::test
