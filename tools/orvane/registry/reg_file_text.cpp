#include "registry/reg_file_text.h"

#include "utf8.h"

#include <algorithm>

namespace orvane::tool {

namespace {

constexpr std::u16string_view kHeader = u"Windows Registry Editor Version 5.00";
constexpr std::u16string_view kAnsiHeader = u"REGEDIT4";

std::string_view charactersOf(std::span<const std::uint8_t> bytes) {
    return {reinterpret_cast<const char*>(bytes.data()), bytes.size()};
}

std::size_t lineAtEnd(std::u16string_view text) {
    return 1 + static_cast<std::size_t>(std::ranges::count(text, u'\n'));
}

std::u16string fromUtf16(std::span<const std::uint8_t> bytes) {
    std::u16string text = unitsOf(bytes);
    if (bytes.size() % 2 != 0) {
        throw RegistryFileError(lineAtEnd(text), "the file ends within a character");
    }
    return text;
}

std::u16string fromUtf8(std::string_view bytes) {
    std::string_view rest = bytes;
    while (!rest.empty()) {
        const std::size_t place = bytes.size() - rest.size();
        if (takeCharacter(rest)) continue;
        const auto lines = std::ranges::count(bytes.substr(0, place), '\n');
        throw RegistryFileError(1 + static_cast<std::size_t>(lines), "bytes that are no UTF-8");
    }
    return toUtf16(bytes);
}

std::u16string fromCodePage(std::string_view bytes, CodePage page) {
    std::u16string text(bytes.size(), u'\0');
    std::ranges::transform(bytes, text.begin(),
                           [page](char byte) { return page[static_cast<unsigned char>(byte)]; });
    return text;
}

std::u16string decoded(std::span<const std::uint8_t> bytes, CodePage ansi) {
    const std::string_view characters = charactersOf(bytes);
    if (characters.starts_with("\xFF\xFE")) return fromUtf16(bytes.subspan(2));
    if (characters.starts_with("\xEF\xBB\xBF")) return fromUtf8(characters.substr(3));
    const bool isAnsi = characters.starts_with("REGEDIT4");
    return isAnsi ? fromCodePage(characters, ansi) : fromUtf8(characters);
}

}  // namespace

RegistryText decodeRegistryFile(std::span<const std::uint8_t> bytes, CodePage ansi) {
    RegistryText text;
    text.units = decoded(bytes, ansi);
    const std::size_t nul = text.units.find(u'\0');
    if (nul != std::u16string::npos) {
        throw RegistryFileError(lineAtEnd(std::u16string_view(text.units).substr(0, nul)),
                                "a NUL character");
    }
    const std::size_t end = std::min(text.units.find(u'\n'), text.units.size());
    std::u16string_view header = std::u16string_view(text.units).substr(0, end);
    header = header.substr(0, header.find_last_not_of(u" \t\r") + 1);
    text.isAnsi = header == kAnsiHeader;
    if (!text.isAnsi && header != kHeader) {
        throw RegistryFileError(1, "no registry file: it doesn't begin with \"Windows Registry "
                                   "Editor Version 5.00\" or \"REGEDIT4\"");
    }
    // The line break stays and ends an empty rest of line 1.
    text.units.erase(0, end);
    return text;
}

}  // namespace orvane::tool
