#include "registry/reg_file_writer.h"

namespace orvane::tool {

namespace {

constexpr std::u16string_view kDigits = u"0123456789abcdef";

/// A line that has become so long is full: another byte with comma and backslash would make it
/// longer than 80.
constexpr std::size_t kFullLine = 77;

void addHex(std::u16string& out, std::uint32_t value, int digits) {
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4)
        out += kDigits[value >> shift & 15];
}

void addQuoted(std::u16string& out, std::u16string_view text) {
    out += u'"';
    for (const char16_t unit : text) {
        if (unit == u'"' || unit == u'\\') out += u'\\';
        out += unit;
    }
    out += u'"';
}

/// `column` is the length of the line so far.
void addBytes(std::u16string& out, const Bytes& bytes, std::size_t column) {
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        addHex(out, bytes[i], 2);
        if (i + 1 == bytes.size()) break;
        out += u',';
        column += 3;
        if (column >= kFullLine) {
            out += u"\\\r\n  ";
            column = 2;
        }
    }
}

void addTyped(std::u16string& out, const FileValue& value, std::size_t lineStart) {
    out += u"hex";
    if (value.type != ValueType::binary) {
        const auto number = static_cast<std::uint32_t>(value.type);
        int digits = 1;
        while (digits < 8 && number >> 4 * digits != 0)
            ++digits;
        out += u'(';
        addHex(out, number, digits);
        out += u')';
    }
    out += u':';
    addBytes(out, value.data, out.size() - lineStart);
}

void addValue(std::u16string& out, const FileValue& value) {
    const std::size_t lineStart = out.size();
    if (value.name.empty()) out += u'@';
    else addQuoted(out, value.name);
    out += u'=';
    const std::optional<std::u16string> text =
        value.type == ValueType::string ? plainText(value.data) : std::nullopt;
    if (value.remove) {
        out += u'-';
    } else if (text) {
        addQuoted(out, *text);
    } else if (value.type == ValueType::dword && value.data.size() == 4) {
        out += u"dword:";
        for (std::size_t i = 4; i-- > 0;)
            addHex(out, value.data[i], 2);
    } else {
        addTyped(out, value, lineStart);
    }
    out += u"\r\n";
}

}  // namespace

std::u16string registryFileText(const RegistryFile& file) {
    std::u16string out = u"Windows Registry Editor Version 5.00\r\n\r\n";
    for (const FileKey& key : file) {
        out.append(key.remove ? u"[-" : u"[").append(textOf(key.name)).append(u"]\r\n");
        for (const FileValue& value : key.values) {
            if (value.name.empty()) addValue(out, value);
        }
        for (const FileValue& value : key.values) {
            if (!value.name.empty()) addValue(out, value);
        }
        out += u"\r\n";
    }
    return out;
}

Bytes registryFileBytes(const RegistryFile& file) {
    const std::u16string text = registryFileText(file);
    Bytes bytes;
    bytes.reserve(2 + text.size() * 2);
    addUnit(bytes, u'\xFEFF');
    for (const char16_t unit : text)
        addUnit(bytes, unit);
    return bytes;
}

}  // namespace orvane::tool
