#include "registry/value_text.h"

#include "utf8.h"

#include <algorithm>
#include <array>
#include <charconv>
#include <limits>

namespace orvane::tool {

namespace {

struct TypeName {
    ValueType type;
    std::string_view name;
    std::string_view platformName;
};

constexpr std::array<TypeName, 9> kTypes = {{
    {ValueType::string, "string", "REG_SZ"},
    {ValueType::expand, "expand", "REG_EXPAND_SZ"},
    {ValueType::multi, "multi", "REG_MULTI_SZ"},
    {ValueType::dword, "dword", "REG_DWORD"},
    {ValueType::qword, "qword", "REG_QWORD"},
    {ValueType::binary, "binary", "REG_BINARY"},
    {ValueType::none, "none", "REG_NONE"},
    {ValueType::dwordBigEndian, "dword-big-endian", "REG_DWORD_BIG_ENDIAN"},
    {ValueType::link, "link", "REG_LINK"},
}};

char lower(char letter) {
    return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter + 32) : letter;
}

bool isSame(std::string_view left, std::string_view right) {
    return std::ranges::equal(left, right, {}, lower, lower);
}

bool isNumber(ValueType type) {
    return type == ValueType::dword || type == ValueType::qword;
}

const std::string& onlyWord(std::span<const std::string> words) {
    if (words.size() != 1) throw ValueTextError("needs one VALUE");
    return words.front();
}

/// A number of `size` bytes; a negative one is taken as a signed one of that size.
Bytes numberData(std::string_view text, std::size_t size) {
    const std::string shown(text);
    const bool negative = text.starts_with('-');
    if (negative) text.remove_prefix(1);
    const bool hexadecimal = text.starts_with("0x") || text.starts_with("0X");
    if (hexadecimal) text.remove_prefix(2);
    std::uint64_t value = 0;
    const auto [end, error] =
        std::from_chars(text.data(), text.data() + text.size(), value, hexadecimal ? 16 : 10);
    const std::uint64_t greatest = std::numeric_limits<std::uint64_t>::max() >> (64 - 8 * size);
    const bool fits = negative ? value <= greatest / 2 + 1 : value <= greatest;
    if (error != std::errc() || end != text.data() + text.size() || !fits) {
        throw ValueTextError(shown + ": no number of " + std::to_string(8 * size) + " bits");
    }
    if (negative) value = 0 - value;
    Bytes data;
    for (std::size_t i = 0; i < size; ++i)
        data.push_back(static_cast<std::uint8_t>(value >> 8 * i));
    return data;
}

Bytes multiData(std::span<const std::string> words) {
    std::u16string texts;
    for (const std::string& word : words) {
        if (word.empty()) throw ValueTextError("an empty text would end the list");
        texts.append(toUtf16(word)).append(1, u'\0');
    }
    return textData(texts);
}

Bytes hexData(std::span<const std::string> words) {
    Bytes data;
    int high = -1;
    const auto take = [&](char letter) {
        const int digit = hexDigit(static_cast<unsigned char>(letter));
        if (high >= 0) data.push_back(static_cast<std::uint8_t>(high << 4 | digit));
        high = high >= 0 ? -1 : digit;
        return digit >= 0;
    };
    for (const std::string& word : words) {
        for (const char letter : word) {
            const bool between = (letter == ' ' || letter == ',') && high < 0;
            if (!between && !take(letter)) {
                throw ValueTextError(word + ": no pairs of hexadecimal digits");
            }
        }
        if (high >= 0) throw ValueTextError(word + ": half a byte");
    }
    return data;
}

std::string hexText(const Bytes& data) {
    constexpr std::string_view kDigits = "0123456789abcdef";
    std::string text;
    for (const std::uint8_t byte : data) {
        if (!text.empty()) text += ' ';
        text.append(1, kDigits[byte >> 4]).append(1, kDigits[byte & 15]);
    }
    return text;
}

/// The number of a value that has its type's size.
std::optional<std::uint64_t> numberOf(const FileValue& value) {
    if (!isNumber(value.type)) return std::nullopt;
    if (value.data.size() != (value.type == ValueType::dword ? 4U : 8U)) return std::nullopt;
    std::uint64_t number = 0;
    for (std::size_t i = value.data.size(); i-- > 0;)
        number = number << 8 | value.data[i];
    return number;
}

/// The text of a value; whoever wrote it may have forgotten the NUL, or put others into it.
std::optional<std::string> textOf(const FileValue& value) {
    const bool isText = value.type == ValueType::string || value.type == ValueType::expand;
    if (!isText || value.data.size() % 2 != 0) return std::nullopt;
    std::u16string text = unitsOf(value.data);
    if (text.ends_with(u'\0')) text.pop_back();
    return toUtf8(text);
}

std::optional<std::vector<std::string>> textsOf(const FileValue& value) {
    if (value.type != ValueType::multi || value.data.size() % 2 != 0) return std::nullopt;
    std::u16string text = unitsOf(value.data);
    for (int i = 0; i < 2; ++i) {
        if (text.ends_with(u'\0')) text.pop_back();
    }
    std::vector<std::string> texts;
    if (text.empty()) return texts;
    for (std::size_t start = 0; start <= text.size();) {
        const std::size_t end = std::min(text.find(u'\0', start), text.size());
        texts.push_back(toUtf8(std::u16string_view(text).substr(start, end - start)));
        start = end + 1;
    }
    return texts;
}

}  // namespace

std::optional<ValueType> parseValueType(const std::string& name) {
    for (const TypeName& each : kTypes) {
        if (isSame(name, each.name) || isSame(name, each.platformName)) return each.type;
    }
    return std::nullopt;
}

std::string nameOf(ValueType type) {
    for (const TypeName& each : kTypes) {
        if (each.type == type) return std::string(each.name);
    }
    return std::to_string(static_cast<std::uint32_t>(type));
}

Bytes parseData(ValueType type, std::span<const std::string> words) {
    switch (type) {
    case ValueType::string:
    case ValueType::expand:
        return textData(toUtf16(onlyWord(words)));
    case ValueType::multi:
        return multiData(words);
    case ValueType::dword:
        return numberData(onlyWord(words), 4);
    case ValueType::qword:
        return numberData(onlyWord(words), 8);
    default:
        return hexData(words);
    }
}

std::string plainData(const FileValue& value) {
    if (const auto text = textOf(value)) return *text + "\n";
    if (const auto number = numberOf(value)) return std::to_string(*number) + "\n";
    const auto texts = textsOf(value);
    if (!texts) return hexText(value.data) + "\n";
    std::string lines;
    for (const std::string& text : *texts)
        lines += text + "\n";
    return lines;
}

std::string quotedData(const FileValue& value) {
    if (const auto text = textOf(value)) return jsonString(*text);
    if (const auto number = numberOf(value)) return std::to_string(*number);
    const auto texts = textsOf(value);
    if (!texts) return hexText(value.data);
    std::string line;
    for (const std::string& text : *texts)
        line += (line.empty() ? "" : " ") + jsonString(text);
    return line;
}

JsonObject jsonOf(const FileValue& value) {
    JsonObject object;
    object.text("name", toUtf8(value.name)).text("type", nameOf(value.type));
    if (const auto text = textOf(value)) object.text("value", *text);
    else if (const auto number = numberOf(value)) object.number("value", *number);
    else if (const auto texts = textsOf(value)) object.texts("value", *texts);
    else object.text("value", hexText(value.data));
    return object;
}

}  // namespace orvane::tool
