#include "platform/linux/autostart/entry.h"

#include "platform/linux/name_lock.h"
#include "platform/linux/names.h"

#include <algorithm>

namespace orvane::platform::autostart {

namespace {

constexpr std::string_view kBlanks(" \t\r\n\0", 5);

std::string_view trimmed(std::string_view text) {
    const std::size_t start = text.find_first_not_of(kBlanks);
    if (start == std::string_view::npos) {
        return {};
    }
    return text.substr(start, text.find_last_not_of(kBlanks) - start + 1);
}

/// Where a program without quotes ends in `line`.
std::size_t programEnd(std::string_view line, IsProgram isProgram) {
    const std::size_t firstBlank = std::min(line.find_first_of(kBlanks), line.size());
    for (std::size_t end = firstBlank; line.starts_with('/');) {
        if (isProgram(std::string(line.substr(0, end)))) {
            return end;
        }
        if (end == line.size()) {
            break;
        }
        end = std::min(line.find_first_of(kBlanks, end + 1), line.size());
    }
    return firstBlank;
}

/// Takes the word that `rest` begins with.
std::string takeWord(std::string_view& rest) {
    std::string word;
    bool quoted = false;
    std::size_t place = 0;
    while (place < rest.size() && (quoted || kBlanks.find(rest[place]) == std::string_view::npos)) {
        const std::size_t run = std::min(rest.find_first_not_of('\\', place), rest.size()) - place;
        const bool beforeQuote = place + run < rest.size() && rest[place + run] == '"';
        word.append(beforeQuote ? run / 2 : run, '\\');
        place += run;
        if (beforeQuote && run % 2 == 0) {
            quoted = !quoted;
            ++place;
        } else if (beforeQuote || run == 0) {
            word += rest[place++];
        }
    }
    rest.remove_prefix(place);
    return word;
}

/// A program in quotes: nothing between them is escaped.
std::string takeQuotedProgram(std::string_view& rest) {
    const std::size_t end = std::min(rest.find('"', 1), rest.size());
    std::string program(rest.substr(1, end - 1));
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return program;
}

bool isPlain(char each) {
    constexpr std::string_view kOthers = "_-./+:@,%=";
    return (each >= 'a' && each <= 'z') || (each >= 'A' && each <= 'Z') ||
           (each >= '0' && each <= '9') || kOthers.find(each) != std::string_view::npos;
}

/// A word as an argument of `Exec`, before the escapes that all values have.
std::string argumentText(const std::string& word) {
    constexpr std::string_view kEscaped = "\"`$\\";
    const bool quotes = word.empty() || !std::ranges::all_of(word, isPlain);
    std::string text;
    for (const char each : word) {
        if (kEscaped.find(each) != std::string_view::npos) {
            text += '\\';
        }
        // A single percent sign would begin a field code.
        text.append(each == '%' ? 2 : 1, each);
    }
    return quotes ? '"' + text + '"' : text;
}

/// A text as the value of a key.
std::string valueText(std::string_view text) {
    std::string value;
    for (const char each : text) {
        switch (each) {
        case '\\':
            value += "\\\\";
            break;
        case '\n':
            value += "\\n";
            break;
        case '\r':
            value += "\\r";
            break;
        case '\t':
            value += "\\t";
            break;
        default:
            value += each == ' ' && value.empty() ? "\\s" : std::string(1, each);
        }
    }
    return value;
}

std::string lastPart(const std::string& path) {
    const std::string name = path.substr(path.rfind('/') + 1);
    return name.empty() ? path : name;
}

}  // namespace

std::vector<std::string> wordsOf(std::string_view line, IsProgram isProgram) {
    std::string_view rest = trimmed(line);
    std::vector<std::string> words;
    if (rest.empty()) {
        return words;
    }
    if (rest.front() == '"') {
        words.push_back(takeQuotedProgram(rest));
    } else {
        const std::size_t end = programEnd(rest, isProgram);
        words.emplace_back(rest.substr(0, end));
        rest.remove_prefix(end);
    }
    for (rest = trimmed(rest); !rest.empty(); rest = trimmed(rest)) {
        words.push_back(takeWord(rest));
    }
    return words;
}

std::string execValue(const std::vector<std::string>& words) {
    std::string line;
    for (const std::string& word : words) {
        line += (line.empty() ? "" : " ") + argumentText(word);
    }
    return valueText(line);
}

std::string entryText(std::u16string_view valueName, std::u16string_view commandLine,
                      IsProgram isProgram) {
    const std::vector<std::string> words = wordsOf(utf8Text(commandLine), isProgram);
    if (words.empty()) {
        return {};
    }
    return "[Desktop Entry]\nType=Application\nName=" + valueText(lastPart(words.front())) +
           "\nComment=" + valueText(utf8Text(valueName)) + "\nExec=" + execValue(words) + "\n";
}

std::string_view entryStart(Scope scope) {
    return scope == Scope::user ? "orvane-user-" : "orvane-machine-";
}

std::string entryName(Scope scope, std::u16string_view foldedName) {
    constexpr std::size_t kLongest = 200;  // a file name has up to 255 bytes
    constexpr char kDigits[] = "0123456789abcdef";
    const std::string name = utf8Text(foldedName);
    std::string text;
    for (char each : name) {
        // Folded names have letters of one case only, so this makes no two of them the same.
        if (each >= 'A' && each <= 'Z') {
            each = static_cast<char>(each + ('a' - 'A'));
        }
        if ((each >= 'a' && each <= 'z') || (each >= '0' && each <= '9') || each == '-' ||
            each == '.') {
            text += each;
        } else {
            const auto byte = static_cast<unsigned char>(each);
            text += {'_', kDigits[byte >> 4], kDigits[byte & 0xF]};
        }
    }
    // "_" and a letter that is no hexadecimal digit: no escape, so no other name has it.
    if (text.size() > kLongest) {
        text = "_hash-" + nameHash(name);
    }
    return std::string(entryStart(scope)) + text + ".desktop";
}

}  // namespace orvane::platform::autostart
