#include "support/text.h"

#include "frame/errors.h"
#include "frame/values/codepage.h"
#include "support/utf8.h"

#include <algorithm>
#include <string>

namespace orvane {
namespace {

WString trimmed(WStringView text, WStringView characters) {
    const std::size_t first = text.find_first_not_of(characters);
    if (first == WStringView::npos) return WString(text.substr(0, 0));
    const std::size_t last = text.find_last_not_of(characters);
    return WString(text.substr(first, last - first + 1));
}

std::size_t cutLength(WStringView text, std::int32_t count) {
    if (count < 0) raise(error::kInvalidArgument);
    return std::min(text.size(), static_cast<std::size_t>(count));
}

WString hexadecimal(std::uint32_t value, std::size_t digits) {
    std::u16string text(digits, u'0');
    for (std::size_t place = digits; place > 0; value >>= 4) {
        text[--place] = u"0123456789ABCDEF"[value & 0xF];
    }
    return text;
}

}  // namespace

WString nqTrimEx(WStringView text) {
    return trimmed(text, WStringView(u" \t\r\n\0", 5));
}

WString nqTrimEx2(WStringView text, bool blank, bool tab, bool carriageReturn, bool lineFeed,
                  bool nul, bool verticalTab, bool formFeed, bool noBreakSpace, bool doubleQuote,
                  bool apostrophe) {
    std::u16string characters;
    if (blank) characters += u' ';
    if (tab) characters += u'\t';
    if (carriageReturn) characters += u'\r';
    if (lineFeed) characters += u'\n';
    if (nul) characters += u'\0';
    if (verticalTab) characters += u'\v';
    if (formFeed) characters += u'\f';
    if (noBreakSpace) characters += u'\u00A0';
    if (doubleQuote) characters += u'"';
    if (apostrophe) characters += u'\'';
    return trimmed(text, characters);
}

WString nqTrimCRLF(WStringView text) {
    return trimmed(text, u"\r\n");
}

WString nqCutLeft(WStringView text, std::int32_t count) {
    return WString(text.substr(cutLength(text, count)));
}

WString nqCutRight(WStringView text, std::int32_t count) {
    return WString(text.substr(0, text.size() - cutLength(text, count)));
}

WString nqGetStringFromPointerA(const char* address) {
    return address == nullptr ? WString() : fromAnsi(address);
}

WString nqGetStringFromPointerW(const char16_t* address) {
    return address == nullptr ? WString() : WString(address);
}

WString nqGetStringFrom2NullBufferA(const char* address) {
    if (address == nullptr) return {};
    std::size_t end = 0;
    while (address[end] != '\0') {
        end += std::char_traits<char>::length(address + end) + 1;
    }
    // `end` stands behind the NUL of the last item.
    return fromAnsi({address, end == 0 ? 0 : end - 1});
}

Array<std::uint8_t> nqStrConvB(WStringView text) {
    return toAnsiArray(text);
}

WString nqStrConvW(const Array<std::uint8_t>& bytes) {
    return fromAnsiArray(bytes);
}

WString nqUNICODEToUTF8(WStringView text) {
    return fromAnsi(encodeUtf8(text));
}

WString nqUTF8ToUNICODE(WStringView text) {
    return decodeUtf8(toAnsi(text));
}

WString nqAnsiToOem(WStringView text) {
    return fromAnsi(toOem(text));
}

WString nqHex1(std::uint8_t value) {
    return hexadecimal(value, 2);
}

WString nqHex2(std::int16_t value) {
    return hexadecimal(static_cast<std::uint16_t>(value), 4);
}

WString nqHex4(std::int32_t value) {
    return hexadecimal(static_cast<std::uint32_t>(value), 8);
}

WString nqHexEx4(std::int32_t value) {
    return u"0x" + nqHex4(value);
}

}  // namespace orvane
