#include "utf8.h"

#include <cstddef>

namespace orvane::tool {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

bool isSurrogate(char32_t unit) {
    return unit >= 0xD800 && unit <= 0xDFFF;
}

/// Bytes of the character that starts with `lead`; 0 when none does.
std::size_t lengthFrom(unsigned char lead) {
    if (lead < 0x80) return 1;
    if (lead >= 0xC2 && lead < 0xE0) return 2;
    if (lead >= 0xE0 && lead < 0xF0) return 3;
    return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

void append(std::string& text, char32_t codePoint) {
    const auto byte = [&](char32_t value) { text += static_cast<char>(value); };
    if (codePoint < 0x80) {
        byte(codePoint);
        return;
    }
    if (codePoint < 0x800) {
        byte(0xC0 | codePoint >> 6);
    } else {
        if (codePoint < 0x10000) {
            byte(0xE0 | codePoint >> 12);
        } else {
            byte(0xF0 | codePoint >> 18);
            byte(0x80 | (codePoint >> 12 & 0x3F));
        }
        byte(0x80 | (codePoint >> 6 & 0x3F));
    }
    byte(0x80 | (codePoint & 0x3F));
}

}  // namespace

std::optional<char32_t> takeCharacter(std::string_view& text) {
    constexpr char32_t kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    const auto lead = static_cast<unsigned char>(text.front());
    const std::size_t length = lengthFrom(lead);
    char32_t codePoint = length <= 1 ? lead : lead & (0x7Fu >> length);
    bool good = length != 0 && length <= text.size();
    for (std::size_t i = 1; good && i < length; ++i) {
        const auto next = static_cast<unsigned char>(text[i]);
        good = (next & 0xC0) == 0x80;
        codePoint = codePoint << 6 | (next & 0x3Fu);
    }
    good = good && codePoint >= kLeast[length] && codePoint <= 0x10FFFF && !isSurrogate(codePoint);
    text.remove_prefix(good ? length : 1);
    return good ? std::optional(codePoint) : std::nullopt;
}

std::u16string toUtf16(std::string_view text) {
    std::u16string units;
    while (!text.empty()) {
        const char32_t codePoint = takeCharacter(text).value_or(kReplacement);
        if (codePoint < 0x10000) {
            units += static_cast<char16_t>(codePoint);
        } else {
            units += static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
            units += static_cast<char16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
        }
    }
    return units;
}

std::string toUtf8(std::u16string_view text) {
    std::string bytes;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char32_t unit = text[i];
        const char32_t next = i + 1 < text.size() ? text[i + 1] : u'\0';
        if (!isSurrogate(unit)) {
            append(bytes, unit);
        } else if (unit < 0xDC00 && next >= 0xDC00 && next <= 0xDFFF) {
            append(bytes, 0x10000 + ((unit - 0xD800) << 10) + (next - 0xDC00));
            ++i;
        } else {
            append(bytes, kReplacement);
        }
    }
    return bytes;
}

std::string printable(std::string_view text) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string shown;
    while (!text.empty()) {
        std::string_view rest = text;
        const std::optional<char32_t> character = takeCharacter(rest);
        const std::string_view bytes = text.substr(0, text.size() - rest.size());
        text = rest;
        const bool isControl =
            !character || *character < 0x20 || (*character >= 0x7F && *character < 0xA0);
        if (!isControl) {
            shown += bytes;
            continue;
        }
        for (const char byte : bytes) {
            const auto value = static_cast<unsigned char>(byte);
            shown.append("\\x").append(1, kDigits[value >> 4]).append(1, kDigits[value & 15]);
        }
    }
    return shown;
}

}  // namespace orvane::tool
