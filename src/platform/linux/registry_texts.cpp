#include "platform/linux/registry_texts.h"

#include "platform/kernel32.h"
#include "platform/letter_case.h"

#include <algorithm>
#include <array>
#include <cstring>

namespace orvane::platform::registry {

namespace {

constexpr ResultCode kBadPathName{161};

std::u16string_view upToNul(std::u16string_view text) {
    return text.substr(0, text.find(u'\0'));
}

std::u16string folded(std::u16string_view text) {
    std::u16string result(text);
    std::ranges::transform(result, result.begin(), upperUnit);
    return result;
}

/// The bytes of all units; what the code page lacks is '?'.
const std::array<char, 0x10000>& ansiBytes() {
    static const auto bytes = [] {
        std::array<char, 0x10000> table{};
        table.fill('?');
        const auto& page = ansiCodePage();
        for (std::size_t byte = 0; byte < page.size(); ++byte)
            table[page[byte]] = static_cast<char>(byte);
        return table;
    }();
    return bytes;
}

}  // namespace

RegistryName valueName(std::u16string_view name) {
    const std::u16string_view whole = upToNul(name);
    return {std::u16string(whole), folded(whole)};
}

ResultCode keyPath(std::u16string_view path, RegistryName& name) {
    std::u16string_view rest = upToNul(path);
    name = {};
    if (rest.starts_with(u'\\')) return kBadPathName;
    while (!rest.empty()) {
        const std::u16string_view one = rest.substr(0, rest.find(u'\\'));
        if (one.size() > kLongestKeyName) return ResultCode{kErrorInvalidParameter};
        if (!one.empty()) {
            if (!name.spelled.empty()) name.spelled += u'\\';
            name.spelled += one;
        }
        rest.remove_prefix(std::min(one.size() + 1, rest.size()));
    }
    name.folded = folded(name.spelled);
    return ResultCode::success;
}

bool isText(std::uint32_t type) {
    return type == kRegSz || type == kRegExpandSz || type == kRegMultiSz;
}

std::u16string wideText(std::string_view ansi) {
    const auto& page = ansiCodePage();
    std::u16string text(ansi.size(), u'\0');
    std::ranges::transform(ansi, text.begin(),
                           [&page](char byte) { return page[static_cast<unsigned char>(byte)]; });
    return text;
}

std::string narrowText(std::u16string_view text) {
    const auto& bytes = ansiBytes();
    std::string ansi(text.size(), '\0');
    std::ranges::transform(text, ansi.begin(), [&bytes](char16_t unit) { return bytes[unit]; });
    return ansi;
}

std::vector<std::uint8_t> keptText(std::span<const std::uint8_t> ansi) {
    const std::u16string text = wideText({reinterpret_cast<const char*>(ansi.data()), ansi.size()});
    std::vector<std::uint8_t> bytes(text.size() * 2);
    if (!bytes.empty()) std::memcpy(bytes.data(), text.data(), bytes.size());
    return bytes;
}

std::string narrowTextIn(std::span<const std::uint8_t> kept) {
    std::u16string text(kept.size() / 2, u'\0');
    if (!text.empty()) std::memcpy(text.data(), kept.data(), text.size() * 2);
    return narrowText(text);
}

}  // namespace orvane::platform::registry
