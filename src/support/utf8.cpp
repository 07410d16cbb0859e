#include "support/utf8.h"

#include <cstdint>

namespace orvane {
namespace {

constexpr char32_t kReplacement = 0xFFFD;

constexpr bool isHighSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xD800;
}
constexpr bool isLowSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}

void appendBytes(std::string& out, char32_t character) {
    const auto add = [&out](char32_t byte) { out += static_cast<char>(byte); };
    const auto tail = [&](unsigned shift) { add(0x80 | ((character >> shift) & 0x3F)); };
    if (character < 0x80) {
        add(character);
    } else if (character < 0x800) {
        add(0xC0 | (character >> 6));
        tail(0);
    } else if (character < 0x10000) {
        add(0xE0 | (character >> 12));
        tail(6);
        tail(0);
    } else {
        add(0xF0 | (character >> 18));
        tail(12);
        tail(6);
        tail(0);
    }
}

void appendUnits(std::u16string& out, char32_t character) {
    if (character < 0x10000) {
        out += static_cast<char16_t>(character);
    } else {
        const char32_t above = character - 0x10000;
        out += static_cast<char16_t>(0xD800 | (above >> 10));
        out += static_cast<char16_t>(0xDC00 | (above & 0x3FF));
    }
}

/// What a first byte promises: how many bytes follow, its own bits, the range of the second byte
/// (narrower than 80..BF where that keeps out long forms, surrogates and values past U+10FFFF).
struct Lead {
    int following = -1;  ///< -1: no character starts with this byte
    char32_t bits = 0;
    std::uint8_t secondLow = 0x80;
    std::uint8_t secondHigh = 0xBF;
};

Lead leadOf(std::uint8_t byte) {
    if (byte < 0x80) return {0, byte};
    if (byte < 0xC2) return {};
    if (byte < 0xE0) return {1, byte & 0x1FU};
    if (byte == 0xE0) return {2, 0, 0xA0, 0xBF};
    if (byte == 0xED) return {2, 0x0D, 0x80, 0x9F};
    if (byte < 0xF0) return {2, byte & 0x0FU};
    if (byte == 0xF0) return {3, 0, 0x90, 0xBF};
    if (byte < 0xF4) return {3, byte & 0x07U};
    if (byte == 0xF4) return {3, 4, 0x80, 0x8F};
    return {};
}

/// The character at `place`, which moves behind what was read of it.
char32_t nextCharacter(std::string_view bytes, std::size_t& place) {
    Lead lead = leadOf(static_cast<std::uint8_t>(bytes[place++]));
    if (lead.following < 0) return kReplacement;
    for (; lead.following > 0; --lead.following) {
        if (place == bytes.size()) return kReplacement;
        const auto byte = static_cast<std::uint8_t>(bytes[place]);
        if (byte < lead.secondLow || byte > lead.secondHigh) return kReplacement;
        lead.bits = (lead.bits << 6) | (byte & 0x3FU);
        lead.secondLow = 0x80;
        lead.secondHigh = 0xBF;
        ++place;
    }
    return lead.bits;
}

}  // namespace

std::string encodeUtf8(WStringView text) {
    std::string out;
    out.reserve(text.size());
    for (std::size_t place = 0; place < text.size(); ++place) {
        char32_t character = text[place];
        if (isHighSurrogate(text[place]) && place + 1 < text.size() &&
            isLowSurrogate(text[place + 1])) {
            character = 0x10000 + ((character & 0x3FF) << 10) + (text[++place] & 0x3FFU);
        } else if (isHighSurrogate(text[place]) || isLowSurrogate(text[place])) {
            character = kReplacement;
        }
        appendBytes(out, character);
    }
    return out;
}

std::u16string decodeUtf8(std::string_view bytes) {
    std::u16string out;
    out.reserve(bytes.size());
    for (std::size_t place = 0; place < bytes.size();) {
        appendUnits(out, nextCharacter(bytes, place));
    }
    return out;
}

}  // namespace orvane
