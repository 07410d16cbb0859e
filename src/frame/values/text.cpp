#include "frame/values/text.h"

#include "frame/errors.h"
#include "frame/values/codepage.h"
#include "frame/values/conversions.h"

#include <algorithm>
#include <vector>

namespace orvane {
namespace {

constexpr char16_t kBlank = u' ';

void requireNotNegative(std::int32_t count) {
    if (count < 0) raise(error::kInvalidArgument);
}

std::size_t asSize(std::int32_t value) {
    return static_cast<std::size_t>(value);
}

WString copies(std::int32_t count, char16_t unit) {
    requireNotNegative(count);
    if (asSize(count) > kLongestText) raise(error::kOutOfMemory);
    return WString(std::u16string(asSize(count), unit));
}

std::size_t occurrences(WStringView text, WStringView sought) {
    std::size_t found = 0;
    for (std::size_t at = text.find(sought); at != WStringView::npos;
         at = text.find(sought, at + sought.size())) {
        ++found;
    }
    return found;
}

WString ansiText(const Variant& value) {
    if (const auto* bytes = value.asArray<std::uint8_t>()) return fromAnsiArray(*bytes);
    // A byte string is the text of its bytes already.
    return toText(value);
}

}  // namespace

std::int32_t len(WStringView text) {
    if (text.size() > asSize(std::numeric_limits<std::int32_t>::max())) raise(error::kOverflow);
    return static_cast<std::int32_t>(text.size());
}

WString left(WStringView text, std::int32_t count) {
    requireNotNegative(count);
    return WString(text.substr(0, asSize(count)));
}

WString right(WStringView text, std::int32_t count) {
    requireNotNegative(count);
    return WString(text.substr(text.size() - std::min(text.size(), asSize(count))));
}

WString mid(WStringView text, std::int32_t position, std::int32_t count) {
    requireNotNegative(count);
    if (position < 1) raise(error::kInvalidArgument);
    return WString(text.substr(std::min(text.size(), asSize(position - 1)), asSize(count)));
}

void assignMid(WString& target, std::int32_t position, WStringView source, std::int32_t count) {
    requireNotNegative(count);
    if (position < 1 || asSize(position) > target.size()) raise(error::kInvalidArgument);
    const std::size_t at = asSize(position - 1);
    const std::size_t length = std::min({source.size(), target.size() - at, asSize(count)});
    // `source` may be a part of `target` itself.
    std::char_traits<char16_t>::move(target.edit().data() + at, source.data(), length);
}

std::int32_t inStr(std::int32_t start, WStringView text, WStringView sought) {
    if (start < 1) raise(error::kInvalidArgument);
    const std::size_t from = asSize(start - 1);
    if (from >= text.size()) return 0;
    if (sought.empty()) return start;
    const std::size_t found = text.find(sought, from);
    return found == WStringView::npos ? 0 : len(text.substr(0, found)) + 1;
}

Array<WString> split(WStringView text, WStringView delimiter) {
    if (text.empty()) return Array<WString>::empty();
    if (delimiter.empty()) return Array<WString>::of({WString(text)});
    std::vector<WString> pieces;
    pieces.reserve(occurrences(text, delimiter) + 1);
    std::size_t start = 0;
    for (std::size_t at = text.find(delimiter); at != WStringView::npos;
         at = text.find(delimiter, start)) {
        pieces.emplace_back(text.substr(start, at - start));
        start = at + delimiter.size();
    }
    pieces.emplace_back(text.substr(start));
    return Array<WString>::of(std::move(pieces));
}

WString replace(WStringView text, WStringView sought, WStringView replacement) {
    const std::size_t found = sought.empty() ? 0 : occurrences(text, sought);
    if (found == 0) return WString(text);
    const std::size_t kept = text.size() - found * sought.size();
    if (kept > kLongestText || replacement.size() > (kLongestText - kept) / found) {
        raise(error::kOutOfMemory);
    }
    std::u16string result;
    result.reserve(kept + found * replacement.size());
    std::size_t start = 0;
    for (std::size_t at = text.find(sought); at != WStringView::npos;
         at = text.find(sought, start)) {
        result.append(text, start, at - start).append(replacement);
        start = at + sought.size();
    }
    result.append(text, start);
    return WString(std::move(result));
}

WString string(std::int32_t count, WStringView character) {
    if (character.empty()) raise(error::kInvalidArgument);
    return copies(count, character.front());
}

WString string(std::int32_t count, std::int32_t code) {
    requireNotNegative(code);
    return copies(count, ansiUnit(static_cast<std::uint8_t>(code & 0xFF)));
}

WString stringOf(std::int32_t count, const Variant& character) {
    const Variant value = character.value();
    if (const auto* text = value.as<WString>()) return string(count, text->view());
    return string(count, toLong(value));
}

std::int32_t asc(WStringView text) {
    if (text.empty()) raise(error::kInvalidArgument);
    return ansiByte(text.front());
}

WString chr(std::int32_t byte) {
    if (byte < 0 || byte > 255) raise(error::kInvalidArgument);
    return WString(std::u16string(1, ansiUnit(static_cast<std::uint8_t>(byte))));
}

Variant strConv(const Variant& value, std::int32_t mode) {
    if (mode != kFromAnsi && mode != kToAnsi) raise(error::kInvalidArgument);
    const Variant held = value.value();
    if (held.type() == VarType::Null) return held;
    if (mode == kFromAnsi) return ansiText(held);
    return toAnsiArray(toText(held));
}

WString leftTrim(WStringView text) {
    return WString(text.substr(std::min(text.size(), text.find_first_not_of(kBlank))));
}

WString rightTrim(WStringView text) {
    return WString(text.substr(0, text.find_last_not_of(kBlank) + 1));
}

WString trim(WStringView text) {
    const WStringView body = text.substr(std::min(text.size(), text.find_first_not_of(kBlank)));
    return rightTrim(body);
}

}  // namespace orvane
