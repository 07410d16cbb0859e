#pragma once

#include <string>
#include <vector>

namespace orvane::test {

inline bool isTrimmed(char16_t unit) {
    return unit == u' ' || unit == u'\t' || unit == u'\r' || unit == u'\n' || unit == u'\0';
}

inline std::u16string trimmedBothEnds(std::u16string text) {
    while (!text.empty() && isTrimmed(text.front()))
        text.erase(0, 1);
    while (!text.empty() && isTrimmed(text.back()))
        text.pop_back();
    return text;
}

/// The tokens of a command line, step by step as the rules tell them and without regard to speed:
/// what the parser is compared with.
inline std::vector<std::u16string> referenceTokens(const std::u16string& line) {
    std::vector<std::u16string> tokens;
    std::u16string rest = trimmedBothEnds(line);
    bool inQuote = !rest.empty() && rest[0] == u'"';
    while (!rest.empty()) {
        std::size_t next = 0;
        if (inQuote) {
            rest.erase(0, 1);
            const std::size_t quote = rest.find(u'"');
            if (quote == std::u16string::npos) {
                tokens.push_back(rest);
                break;
            }
            tokens.push_back(rest.substr(0, quote));
            next = quote + 1;
        } else {
            const std::size_t blank = rest.find(u' ');
            if (blank == std::u16string::npos) {
                tokens.push_back(rest);
                break;
            }
            tokens.push_back(rest.substr(0, blank));
            next = blank;
        }
        rest = trimmedBothEnds(rest.substr(next));
        inQuote = !rest.empty() && rest[0] == u'"';
    }
    return tokens;
}

}  // namespace orvane::test
