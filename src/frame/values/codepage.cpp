#include "frame/values/codepage.h"

#include "platform/kernel32.h"

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
        }
    }

    char16_t unit(std::uint8_t byte) const { return units_[byte]; }
    std::uint8_t byte(char16_t unit) const { return bytes_[unit]; }

    template <class Byte>
    void toBytes(WStringView text, Byte* out) const {
        for (const char16_t unit : text)
            *out++ = static_cast<Byte>(bytes_[unit]);
    }

    template <class Byte>
    WString toText(const Byte* bytes, std::size_t count) const {
        if (bytes == nullptr) return {};
        std::u16string text(count, u'\0');
        for (std::size_t i = 0; i < count; ++i)
            text[i] = units_[static_cast<std::uint8_t>(bytes[i])];
        return WString(std::move(text));
    }

private:
    Page units_;
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

}  // namespace

std::string toAnsi(WStringView text) {
    std::string bytes(text.size(), '\0');
    ansi().toBytes(text, bytes.data());
    return bytes;
}

WString fromAnsi(std::string_view bytes) {
    return ansi().toText(bytes.data(), bytes.size());
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
    std::string bytes(text.size(), '\0');
    oem().toBytes(text, bytes.data());
    return bytes;
}

WString fromOem(std::string_view bytes) {
    return oem().toText(bytes.data(), bytes.size());
}

std::uint8_t ansiByte(char16_t unit) {
    return ansi().byte(unit);
}

char16_t ansiUnit(std::uint8_t byte) {
    return ansi().unit(byte);
}

}  // namespace orvane
