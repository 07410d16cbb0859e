#include "platform/operation.h"

#include "platform/gdi32.h"
#include "platform/gdiplus.h"
#include "platform/kernel32.h"
#include "platform/ole32.h"
#include "platform/oleaut32.h"
#include "platform/registry.h"
#include "platform/user32.h"

#include <array>
#include <charconv>
#include <string_view>

namespace orvane::platform {

namespace {

/// Longer texts are cut in a record's line, with their whole length beside them.
constexpr std::size_t kLongestText = 200;

template <class Number>
void appendNumber(std::string& out, Number value, int base = 10) {
    std::array<char, 24> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value, base).ptr;
    out.append(digits.data(), end);
}

void appendHex(std::string& out, std::uint32_t value, int digits) {
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    for (int shift = 4 * (digits - 1); shift >= 0; shift -= 4) {
        out += kDigits[(value >> shift) & 0xF];
    }
}

/// One unit of a quoted text. Everything but printable ASCII is escaped, so that a line reads the
/// same on every terminal and in every code page.
void appendUnit(std::string& out, std::uint32_t unit, bool wide) {
    switch (unit) {
    case '"':
    case '\\':
        out += '\\';
        out += static_cast<char>(unit);
        return;
    case '\n':
        out += "\\n";
        return;
    case '\r':
        out += "\\r";
        return;
    case '\t':
        out += "\\t";
        return;
    default:
        break;
    }
    if (unit >= 0x20 && unit < 0x7F) {
        out += static_cast<char>(unit);
    } else if (wide && unit > 0xFF) {
        out += "\\u";
        appendHex(out, unit, 4);
    } else {
        out += "\\x";
        appendHex(out, unit, 2);
    }
}

template <class Text>
void appendQuoted(std::string& out, const Text& text, bool wide) {
    out += '"';
    for (const auto unit : text.substr(0, kLongestText)) {
        appendUnit(out, static_cast<std::make_unsigned_t<decltype(unit)>>(unit), wide);
    }
    out += '"';
    if (text.size() > kLongestText) {
        out += "... (";
        appendNumber(out, text.size());
        out += ')';
    }
}

/// `{name value, name value}`: fields are added one by one, the brace closes at the end.
class Record {
public:
    explicit Record(std::string& out) : out_(out) { out_ += '{'; }
    ~Record() { out_ += '}'; }
    Record(const Record&) = delete;
    Record& operator=(const Record&) = delete;

    template <class Value>
    Record& field(const char* name, const Value& value) {
        if (!first_) out_ += ", ";
        first_ = false;
        out_ += name;
        out_ += ' ';
        out_ += described(value);
        return *this;
    }

private:
    std::string& out_;
    bool first_ = true;
};

}  // namespace

std::string CallRecord::text() const {
    std::string line = name;
    line += '(';
    for (std::size_t i = 0; i < arguments.size(); ++i) {
        if (i != 0) line += ", ";
        line += arguments[i];
    }
    line += ')';
    if (!result.empty()) {
        line += " -> ";
        line += result;
    }
    return line;
}

void describe(std::string& out, bool value) {
    out += value ? "true" : "false";
}

void describe(std::string& out, std::int64_t value) {
    appendNumber(out, value);
}

void describe(std::string& out, std::uint64_t value) {
    appendNumber(out, value);
}

void describe(std::string& out, double value) {
    std::array<char, 40> digits{};
    const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), value).ptr;
    out.append(digits.data(), end);
}

void describe(std::string& out, const char* text) {
    if (text == nullptr) {
        out += "null";
    } else {
        appendQuoted(out, std::string_view(text), false);
    }
}

void describe(std::string& out, const std::string& text) {
    appendQuoted(out, std::string_view(text), false);
}

void describe(std::string& out, const std::u16string& text) {
    appendQuoted(out, std::u16string_view(text), true);
}

void describe(std::string& out, const std::vector<std::uint8_t>& bytes) {
    out += '<';
    appendNumber(out, bytes.size());
    out += " bytes>";
}

void describe(std::string& out, const KeyInformation& information) {
    Record(out)
        .field("keys", information.subKeys)
        .field("longest", information.longestSubKey)
        .field("values", information.values)
        .field("longest", information.longestValueName)
        .field("data", information.longestValue);
}

void describe(std::string& out, const MemoryStatus& status) {
    Record(out)
        .field("load", status.memoryLoad)
        .field("physical", status.totalPhysical)
        .field("free", status.availablePhysical)
        .field("pageFile", status.totalPageFile)
        .field("free", status.availablePageFile)
        .field("virtual", status.totalVirtual)
        .field("free", status.availableVirtual);
}

void describe(std::string& out, const SystemVersion& version) {
    Record(out)
        .field("major", version.major)
        .field("minor", version.minor)
        .field("build", version.build)
        .field("platform", version.platformId)
        .field("servicePack", version.servicePack)
        .field("name", version.systemName);
}

void describe(std::string& out, const BitmapFacts& facts) {
    Record(out)
        .field("width", facts.width)
        .field("height", facts.height)
        .field("widthBytes", facts.widthBytes)
        .field("planes", facts.planes)
        .field("bits", facts.bitsPixel);
}

void describe(std::string& out, const Point& point) {
    Record(out).field("x", point.x).field("y", point.y);
}

void describe(std::string& out, const LogPen& pen) {
    Record(out).field("style", pen.style).field("width", pen.width.x).field("colour", pen.color);
}

void describe(std::string& out, const LogBrush& brush) {
    Record(out)
        .field("style", brush.style)
        .field("colour", brush.color)
        .field("hatch", brush.hatch);
}

void describe(std::string& out, const GdiObject& object) {
    appendNumber(out, object.number);
}

void describe(std::string& out, const BitmapInfo& info) {
    Record(out)
        .field("width", info.biWidth)
        .field("height", info.biHeight)
        .field("bits", info.biBitCount)
        .field("compression", info.biCompression)
        .field("colours", info.biClrUsed);
}

void describe(std::string& out, const IconFacts& facts) {
    Record(out)
        .field("icon", facts.isIcon)
        .field("x", facts.hotspotX)
        .field("y", facts.hotspotY)
        .field("mask", facts.mask)
        .field("colour", facts.color);
}

void describe(std::string& out, GdiplusStatus status) {
    appendNumber(out, static_cast<std::int32_t>(status));
}

void describe(std::string& out, const GdiplusStartupInput& input) {
    Record(out)
        .field("version", input.version)
        .field("callback", input.debugEventCallback)
        .field("noThread", input.suppressBackgroundThread)
        .field("noCodecs", input.suppressExternalCodecs);
}

void describe(std::string& out, const ClassIdBytes& classId) {
    constexpr char kDigits[] = "0123456789abcdef";
    for (const std::uint8_t byte : classId.bytes) {
        out += kDigits[byte >> 4];
        out += kDigits[byte & 15];
    }
}

void describe(std::string& out, const PictureDescription& description) {
    Record(out)
        .field("type", description.type)
        .field("bitmap", description.bitmap)
        .field("icon", description.icon);
}

std::vector<std::string> handlesIn(const IconFacts& facts) {
    std::vector<std::string> handles = heldBy(facts.mask);
    if (facts.color != BitmapHandle::none) handles.push_back(described(facts.color));
    return handles;
}

/// Icons come from elsewhere: only a bitmap is counted as handed over.
std::vector<std::string> handlesIn(const PictureDescription& description) {
    return heldBy(description.bitmap);
}

}  // namespace orvane::platform
