#pragma once

#include <algorithm>
#include <string_view>

namespace orvane::tool {

/// Whether a file name ends in an extension, ".png" for one, in capitals or not, and has something
/// before it.
inline bool hasExtension(std::string_view name, std::string_view extension) {
    const auto lower = [](char letter) {
        return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
    };
    return name.size() > extension.size() &&
           std::equal(extension.rbegin(), extension.rend(), name.rbegin(),
                      [&](char wanted, char given) { return wanted == lower(given); });
}

}  // namespace orvane::tool
