#include "platform/linux/names.h"

#include "platform/kernel32.h"

#include <algorithm>

namespace orvane::platform {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

void appendUtf8(std::string& out, char32_t codePoint) {
    const auto rest = [&](int shift) {
        out += static_cast<char>(0x80 | ((codePoint >> shift) & 0x3F));
    };
    if (codePoint < 0x80) {
        out += static_cast<char>(codePoint);
    } else if (codePoint < 0x800) {
        out += static_cast<char>(0xC0 | (codePoint >> 6));
        rest(0);
    } else if (codePoint < 0x10000) {
        out += static_cast<char>(0xE0 | (codePoint >> 12));
        rest(6);
        rest(0);
    } else {
        out += static_cast<char>(0xF0 | (codePoint >> 18));
        rest(12);
        rest(6);
        rest(0);
    }
}

bool isSurrogate(char16_t unit) {
    return (unit & 0xF800) == 0xD800;
}
bool isLowSurrogate(char16_t unit) {
    return (unit & 0xFC00) == 0xDC00;
}

/// The ANSI byte of a code point, or -1.
int ansiByte(int codePoint) {
    if (codePoint >= 0 && codePoint < 0x80) {
        return codePoint;
    }
    const auto& page = ansiCodePage();
    const auto found = std::find_if(page.begin() + 0x80, page.end(),
                                    [codePoint](char16_t unit) { return unit == codePoint; });
    return found == page.end() ? -1 : static_cast<int>(found - page.begin());
}

/// Bytes of the character that starts with `lead`; 0 when none does.
std::size_t lengthFrom(unsigned char lead) {
    if (lead < 0x80) {
        return 1;
    }
    if (lead >= 0xC2 && lead < 0xE0) {
        return 2;
    }
    if (lead >= 0xE0 && lead < 0xF0) {
        return 3;
    }
    return lead >= 0xF0 && lead < 0xF5 ? 4 : 0;
}

}  // namespace

std::string utf8Text(std::u16string_view units) {
    std::string out;
    for (std::size_t place = 0; place < units.size(); ++place) {
        const char16_t unit = units[place];
        if (!isSurrogate(unit)) {
            appendUtf8(out, unit);
        } else if (!isLowSurrogate(unit) && place + 1 < units.size() &&
                   isLowSurrogate(units[place + 1])) {
            appendUtf8(out, 0x10000 + ((unit & 0x3FFU) << 10) + (units[++place] & 0x3FFU));
        } else {
            appendUtf8(out, kReplacement);
        }
    }
    return out;
}

int takeCodePoint(std::string_view& utf8) {
    constexpr int kLeast[] = {0, 0, 0x80, 0x800, 0x10000};
    const auto lead = static_cast<unsigned char>(utf8.front());
    const std::size_t length = lengthFrom(lead);
    int codePoint = length <= 1 ? lead : lead & (0x7F >> length);
    bool good = length != 0 && length <= utf8.size();
    for (std::size_t i = 1; good && i < length; ++i) {
        const auto next = static_cast<unsigned char>(utf8[i]);
        good = (next & 0xC0) == 0x80;
        codePoint = (codePoint << 6) | (next & 0x3F);
    }
    good = good && codePoint >= kLeast[length] && codePoint <= 0x10FFFF &&
           (codePoint < 0xD800 || codePoint > 0xDFFF);
    utf8.remove_prefix(good ? length : 1);
    return good ? codePoint : -1;
}

std::string systemName(std::string_view ansi) {
    std::string out;
    out.reserve(ansi.size());
    for (const char byte : ansi) {
        // The code pages hold no surrogates, so a unit is a code point.
        appendUtf8(out, ansiCodePage()[static_cast<unsigned char>(byte)]);
    }
    return out;
}

std::u16string unitsOf(std::string_view utf8) {
    std::u16string units;
    units.reserve(utf8.size());
    while (!utf8.empty()) {
        const int taken = takeCodePoint(utf8);
        const char32_t codePoint = taken < 0 ? kReplacement : static_cast<char32_t>(taken);
        if (codePoint < 0x10000) {
            units += static_cast<char16_t>(codePoint);
        } else {
            units += static_cast<char16_t>(0xD800 + ((codePoint - 0x10000) >> 10));
            units += static_cast<char16_t>(0xDC00 + ((codePoint - 0x10000) & 0x3FF));
        }
    }
    return units;
}

std::uint32_t nameError(std::string_view ansi) {
    if (ansi.empty()) {
        return kErrorPathNotFound;
    }
    return ansi.find('\0') == std::string_view::npos ? kErrorSuccess : kErrorInvalidName;
}

std::string ansiName(std::string_view utf8) {
    std::string out;
    out.reserve(utf8.size());
    while (!utf8.empty()) {
        const int byte = ansiByte(takeCodePoint(utf8));
        out += byte < 0 ? '?' : static_cast<char>(byte);
    }
    return out;
}

bool fitsAnsi(std::string_view utf8) {
    while (!utf8.empty()) {
        if (ansiByte(takeCodePoint(utf8)) < 0) {
            return false;
        }
    }
    return true;
}

}  // namespace orvane::platform
