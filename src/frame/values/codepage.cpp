#include "frame/values/codepage.h"

#include "frame/values/ascii_blocks.h"
#include "frame/values/large_memory.h"
#include "platform/kernel32.h"

#include <algorithm>
#include <array>

namespace orvane {
namespace {

using Page = std::array<char16_t, 256>;

/// A code page with its way back: the byte for every one of the 65536 units.
class Mapping {
public:
    explicit Mapping(const Page& page) : units_(page) {
        bytes_.fill(std::uint8_t{'?'});
        for (std::size_t byte = page.size(); byte-- > 0;) {
            bytes_[page[byte]] = static_cast<std::uint8_t>(byte);
            if (byte < 0x80 && page[byte] != byte) asciiIsItself_ = false;
        }
    }

    char16_t unit(std::uint8_t byte) const { return units_[byte]; }
    std::uint8_t byte(char16_t unit) const { return bytes_[unit]; }

    void toBytes(WStringView text, std::uint8_t* out) const {
        for (std::size_t at = 0; at < text.size();) {
            if (asciiIsItself_) at += narrowAscii(text.data() + at, text.size() - at, out + at);
            const std::size_t end = std::min(text.size(), at + kAsciiBlock);
            for (; at < end; ++at)
                out[at] = bytes_[text[at]];
        }
    }

    WString toText(const std::uint8_t* bytes, std::size_t count) const {
        if (bytes == nullptr) return {};
        std::u16string text = textWithRoom(count);
        // By way of a buffer that stays in the cache: a string can't be made without filling it.
        std::array<char16_t, 2048> units;
        for (std::size_t at = 0; at < count; at += units.size()) {
            const std::size_t size = std::min(units.size(), count - at);
            widen(bytes + at, size, units.data());
            text.append(units.data(), size);
        }
        return WString(std::move(text));
    }

private:
    void widen(const std::uint8_t* bytes, std::size_t count, char16_t* out) const {
        for (std::size_t at = 0; at < count;) {
            if (asciiIsItself_) at += widenAscii(bytes + at, count - at, out + at);
            const std::size_t end = std::min(count, at + kAsciiBlock);
            for (; at < end; ++at)
                out[at] = units_[bytes[at]];
        }
    }

    Page units_;
    bool asciiIsItself_ = true;  ///< true of nearly every page
    std::array<std::uint8_t, 65536> bytes_;
};

// Built on first use: the system's code page is known only once the process runs.
const Mapping& ansi() {
    static const Mapping mapping(platform::ansiCodePage());
    return mapping;
}

const Mapping& oem() {
    static const Mapping mapping(platform::oemCodePage());
    return mapping;
}

std::string bytesOf(const Mapping& mapping, WStringView text) {
    std::string bytes(text.size(), '\0');
    mapping.toBytes(text, reinterpret_cast<std::uint8_t*>(bytes.data()));
    return bytes;
}

WString textOf(const Mapping& mapping, std::string_view bytes) {
    return mapping.toText(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
}

}  // namespace

std::string toAnsi(WStringView text) {
    return bytesOf(ansi(), text);
}

void toAnsi(WStringView text, std::span<std::uint8_t> bytes) {
    ansi().toBytes(text.substr(0, bytes.size()), bytes.data());
}

WString fromAnsi(std::string_view bytes) {
    return textOf(ansi(), bytes);
}

WString fromAnsi(std::span<const std::uint8_t> bytes) {
    return ansi().toText(bytes.data(), bytes.size());
}

Array<std::uint8_t> toAnsiArray(WStringView text) {
    if (text.size() > 0x7FFFFFFF) raise(error::kOutOfMemory);
    auto bytes =
        Array<std::uint8_t>::withBounds({Bound{0, static_cast<std::uint32_t>(text.size())}});
    ansi().toBytes(text, bytes.elements().data());
    return bytes;
}

WString fromAnsiArray(const Array<std::uint8_t>& bytes) {
    return fromAnsi(bytes.elements());
}

std::string toOem(WStringView text) {
    return bytesOf(oem(), text);
}

WString fromOem(std::string_view bytes) {
    return textOf(oem(), bytes);
}

std::uint8_t ansiByte(char16_t unit) {
    return ansi().byte(unit);
}

char16_t ansiUnit(std::uint8_t byte) {
    return ansi().unit(byte);
}

}  // namespace orvane
