#include "registry/reg_file_reader.h"

#include "registry/reg_file_text.h"

#include <algorithm>
#include <utility>

namespace orvane::tool {

namespace {

class Reader {
public:
    Reader(const RegistryText& text, CodePage ansi)
        : text_(text.units), line_(text.line), isAnsi_(text.isAnsi), ansi_(ansi) {}

    RegistryFile read() {
        while (!atEnd())
            readLine();
        return std::move(keys_);
    }

private:
    [[noreturn]] void fail(const std::string& reason) const {
        throw RegistryFileError(line_, reason);
    }

    bool atEnd() const { return at_ == text_.size(); }
    bool isNext(char16_t unit) const { return !atEnd() && text_[at_] == unit; }
    bool take(char16_t unit) {
        const bool found = isNext(unit);
        if (found) ++at_;
        return found;
    }
    /// Takes a word of lower-case letters in any case of letters.
    bool takeWord(std::u16string_view word) {
        const auto lower = [](char16_t unit) {
            return unit >= u'A' && unit <= u'Z' ? static_cast<char16_t>(unit + 32) : unit;
        };
        const bool found = std::ranges::equal(text_.substr(at_, word.size()), word, {}, lower);
        if (found) at_ += word.size();
        return found;
    }
    /// The carriage return before a line feed is a blank like others.
    void skipBlanks() {
        while (!atEnd() && (text_[at_] == u' ' || text_[at_] == u'\t' || text_[at_] == u'\r'))
            ++at_;
    }
    bool takeLineFeed() {
        const bool found = take(u'\n');
        if (found) ++line_;
        return found;
    }

    void readLine() {
        skipBlanks();
        if (take(u'[')) readKey();
        else if (isNext(u'"') || isNext(u'@')) readValue();
        finishLine();
    }

    /// The rest of a line: nothing but a comment.
    void finishLine() {
        skipBlanks();
        if (isNext(u';')) at_ = std::min(text_.find(u'\n', at_), text_.size());
        if (!takeLineFeed() && !atEnd()) fail("text that is no key, value or comment");
    }

    /// A key's name may have closing brackets itself: the last one of the line counts.
    void readKey() {
        FileKey key;
        key.line = line_;
        key.remove = take(u'-');
        const std::size_t lineEnd = std::min(text_.find(u'\n', at_), text_.size());
        const std::size_t length = text_.substr(at_, lineEnd - at_).rfind(u']');
        if (length == std::u16string_view::npos) fail("no closing bracket");
        const std::optional<KeyName> name = parseKeyName(text_.substr(at_, length));
        if (!name) fail("no key of HKEY_CURRENT_USER or another root");
        if (const char* flaw = flawOf(name->path); flaw != nullptr) fail(flaw);
        if (key.remove && name->path.empty()) fail("a root can't be removed");
        key.name = *name;
        at_ += length + 1;
        keys_.push_back(std::move(key));
    }

    void readValue() {
        if (keys_.empty()) fail("a value before any key");
        if (keys_.back().remove) fail("a value of a key that is to be removed");
        FileValue value;
        value.line = line_;
        if (!take(u'@')) value.name = quoted();
        if (value.name.size() > kLongestValueName) {
            fail("a value's name is longer than 16383 characters");
        }
        skipBlanks();
        if (!take(u'=')) fail("no = behind the name");
        skipBlanks();
        readData(value);
        keys_.back().values.push_back(std::move(value));
    }

    void readData(FileValue& value) {
        if (take(u'-')) {
            value.remove = true;
        } else if (isNext(u'"')) {
            value.type = ValueType::string;
            value.data = textData(quoted());
        } else if (takeWord(u"dword:")) {
            value.type = ValueType::dword;
            const std::uint32_t number = this->number();
            for (int shift = 0; shift < 32; shift += 8)
                value.data.push_back(static_cast<std::uint8_t>(number >> shift));
        } else if (takeWord(u"hex")) {
            value.type = ValueType::binary;
            if (take(u'(')) {
                value.type = static_cast<ValueType>(number());
                if (!take(u')')) fail("no closing parenthesis");
            }
            if (!take(u':')) fail("no colon behind hex");
            value.data = hexBytes();
            if (isAnsi_ && isText(value.type)) value.data = widened(value.data);
        } else {
            fail("no value behind the =");
        }
    }

    /// A text in quotes, which may go over several lines.
    std::u16string quoted() {
        const std::size_t startLine = line_;
        take(u'"');
        std::u16string text;
        while (!take(u'"')) {
            const std::size_t end = text_.find_first_of(u"\"\\\n", at_);
            if (end == std::u16string_view::npos) {
                throw RegistryFileError(startLine, "no closing quote");
            }
            text += text_.substr(at_, end - at_);
            at_ = end;
            if (takeLineFeed()) text += u'\n';
            else if (take(u'\\')) text += escaped();
        }
        return text;
    }

    /// The system's editor writes line breaks as they are, Wine's as `\r` and `\n`.
    char16_t escaped() {
        if (take(u'\\')) return u'\\';
        if (take(u'"')) return u'"';
        if (take(u'r')) return u'\r';
        if (take(u'n')) return u'\n';
        fail("a backslash in a text that is not doubled");
    }

    /// One to eight hexadecimal digits.
    std::uint32_t number() {
        std::uint32_t value = 0;
        std::size_t digits = 0;
        for (; !atEnd() && hexDigit(text_[at_]) >= 0; ++at_, ++digits)
            value = value << 4 | static_cast<std::uint32_t>(hexDigit(text_[at_]));
        if (digits == 0 || digits > 8) fail("no number of one to eight hexadecimal digits");
        return value;
    }

    Bytes hexBytes() {
        Bytes bytes;
        if (!skipToByte() && (atEnd() || hexDigit(text_[at_]) < 0)) return bytes;
        do {
            skipToByte();
            bytes.push_back(byte());
            skipBlanks();
        } while (take(u','));
        return bytes;
    }

    /// Blanks, and line breaks behind a backslash; whether there was one.
    bool skipToByte() {
        bool continued = false;
        skipBlanks();
        while (take(u'\\')) {
            skipBlanks();
            if (!takeLineFeed()) fail("text behind the backslash that continues the line");
            skipBlanks();
            continued = true;
        }
        return continued;
    }

    std::uint8_t byte() {
        int value = -1;
        for (int digits = 0; !atEnd() && hexDigit(text_[at_]) >= 0; ++digits, ++at_) {
            if (digits == 2) fail("a byte of more than two digits");
            value = std::max(value, 0) * 16 + hexDigit(text_[at_]);
        }
        if (value < 0) fail("no byte of two hexadecimal digits");
        return static_cast<std::uint8_t>(value);
    }

    static bool isText(ValueType type) {
        return type == ValueType::string || type == ValueType::expand || type == ValueType::multi;
    }

    Bytes widened(const Bytes& bytes) const {
        Bytes units;
        units.reserve(bytes.size() * 2);
        for (const std::uint8_t each : bytes)
            addUnit(units, ansi_[each]);
        return units;
    }

    std::u16string_view text_;
    std::size_t at_ = 0;
    std::size_t line_;
    bool isAnsi_;
    CodePage ansi_;
    RegistryFile keys_;
};

}  // namespace

RegistryFile readRegistryFile(std::span<const std::uint8_t> bytes, CodePage ansi) {
    const RegistryText text = decodeRegistryFile(bytes, ansi);
    return Reader(text, ansi).read();
}

}  // namespace orvane::tool
