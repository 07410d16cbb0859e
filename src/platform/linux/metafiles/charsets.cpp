#include "platform/linux/metafiles/charsets.h"

#include <iconv.h>

#include <array>
#include <utility>

namespace orvane::metafiles {

namespace {

constexpr char32_t kReplacement = 0xFFFD;

/// Windows' numbers of character sets and their code pages. The default one is the library's own
/// ANSI code page.
constexpr std::array<std::pair<std::uint8_t, const char*>, 17> kCodePages = {{
    {0, "CP1252"},
    {1, "CP1251"},
    {2, "CP1252"},
    {77, "MACINTOSH"},
    {128, "CP932"},
    {129, "CP949"},
    {134, "CP936"},
    {136, "CP950"},
    {161, "CP1253"},
    {162, "CP1254"},
    {163, "CP1258"},
    {177, "CP1255"},
    {178, "CP1256"},
    {186, "CP1257"},
    {204, "CP1251"},
    {222, "CP874"},
    {238, "CP1250"},
}};
constexpr std::uint8_t kOem = 255;

const char* codePageOf(std::uint8_t charset) {
    if (charset == kOem) return "CP866";
    for (const auto& [number, page] : kCodePages)
        if (number == charset) return page;
    return "CP1252";
}

/// A converter of the C library, closed at the end.
class Converter {
public:
    explicit Converter(const char* from) : handle_(::iconv_open("UTF-32LE", from)) {}
    Converter(const Converter&) = delete;
    Converter& operator=(const Converter&) = delete;
    ~Converter() {
        if (isThere()) ::iconv_close(handle_);
    }

    bool isThere() const { return handle_ != reinterpret_cast<iconv_t>(-1); }

    /// Converts the first character; how many bytes it takes, 0 when they are none.
    std::size_t one(std::span<const std::uint8_t> text, char32_t& character) {
        // Characters of up to four bytes; the fewest that make one are it.
        for (std::size_t count = 1; count <= text.size() && count <= 4; ++count) {
            auto* from = reinterpret_cast<char*>(const_cast<std::uint8_t*>(text.data()));
            auto* to = reinterpret_cast<char*>(&character);
            std::size_t fromLeft = count;
            std::size_t toLeft = sizeof(character);
            ::iconv(handle_, nullptr, nullptr, nullptr, nullptr);
            if (::iconv(handle_, &from, &fromLeft, &to, &toLeft) != static_cast<std::size_t>(-1) &&
                toLeft == 0) {
                return count;
            }
        }
        return 0;
    }

private:
    iconv_t handle_;
};

}  // namespace

Characters decoded(std::span<const std::uint8_t> text, std::uint8_t charset) {
    Converter converter(codePageOf(charset));
    Characters result;
    while (!text.empty()) {
        char32_t character = text.front();
        std::size_t taken = converter.isThere() ? converter.one(text, character) : 1;
        if (taken == 0) {
            character = kReplacement;
            taken = 1;
        }
        result.add(character, taken);
        text = text.subspan(taken);
    }
    return result;
}

Characters decodedUtf16(std::span<const std::uint8_t> text) {
    const auto unit = [&](std::size_t index) {
        return static_cast<char32_t>(text[index * 2] | text[index * 2 + 1] << 8);
    };
    const std::size_t count = text.size() / 2;
    Characters result;
    for (std::size_t i = 0; i < count; ++i) {
        const char32_t high = unit(i);
        if (high < 0xD800 || high > 0xDFFF) {
            result.add(high, 1);
        } else if (high < 0xDC00 && i + 1 < count && unit(i + 1) >= 0xDC00 &&
                   unit(i + 1) <= 0xDFFF) {
            result.add(0x10000 + ((high - 0xD800) << 10) + (unit(++i) - 0xDC00), 2);
        } else {
            result.add(kReplacement, 1);
        }
    }
    return result;
}

std::string utf8(const std::u32string& text) {
    std::string out;
    for (char32_t letter : text) {
        if (letter > 0x10FFFF || (letter >= 0xD800 && letter < 0xE000)) letter = kReplacement;
        const auto byte = [&](char32_t value) { out.push_back(static_cast<char>(value)); };
        if (letter < 0x80) {
            byte(letter);
            continue;
        }
        if (letter < 0x800) {
            byte(0xC0 | letter >> 6);
        } else {
            if (letter < 0x10000) {
                byte(0xE0 | letter >> 12);
            } else {
                byte(0xF0 | letter >> 18);
                byte(0x80 | (letter >> 12 & 0x3F));
            }
            byte(0x80 | (letter >> 6 & 0x3F));
        }
        byte(0x80 | (letter & 0x3F));
    }
    return out;
}

std::string utf8FaceName(std::span<const std::uint8_t> utf16) {
    std::u32string name = decodedUtf16(utf16).text;
    if (const auto end = name.find(U'\0'); end != std::u32string::npos) name.resize(end);
    return utf8(name);
}

}  // namespace orvane::metafiles
