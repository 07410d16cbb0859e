#include "registry/registry_file.h"

#include <algorithm>
#include <array>

namespace orvane::tool {

namespace {

struct RootNames {
    Root root;
    std::u16string_view full;
    std::u16string_view brief;
};

constexpr std::array<RootNames, 5> kRoots = {{
    {Root::classesRoot, u"HKEY_CLASSES_ROOT", u"HKCR"},
    {Root::currentUser, u"HKEY_CURRENT_USER", u"HKCU"},
    {Root::localMachine, u"HKEY_LOCAL_MACHINE", u"HKLM"},
    {Root::users, u"HKEY_USERS", u"HKU"},
    {Root::currentConfig, u"HKEY_CURRENT_CONFIG", u"HKCC"},
}};

constexpr std::size_t kLongestKeyName = 255;

char16_t upper(char16_t unit) {
    return unit >= u'a' && unit <= u'z' ? static_cast<char16_t>(unit - u'a' + u'A') : unit;
}

bool isSame(std::u16string_view given, std::u16string_view name) {
    return std::ranges::equal(given, name, {}, upper);
}

}  // namespace

std::optional<KeyName> parseKeyName(std::u16string_view text) {
    const std::size_t end = std::min(text.find(u'\\'), text.size());
    const std::u16string_view root = text.substr(0, end);
    for (const RootNames& each : kRoots) {
        if (!isSame(root, each.full) && !isSame(root, each.brief)) continue;
        const std::size_t path = std::min(end + 1, text.size());
        // A root with a backslash and nothing behind it has an empty name below it, which is none.
        if (path == text.size() && end != text.size()) return std::nullopt;
        return KeyName{each.root, std::u16string(text.substr(path))};
    }
    return std::nullopt;
}

std::u16string textOf(const KeyName& key) {
    std::u16string text;
    for (const RootNames& each : kRoots) {
        if (each.root == key.root) text = each.full;
    }
    if (!key.path.empty()) text.append(u"\\").append(key.path);
    return text;
}

const char* flawOf(const std::u16string& path) {
    if (path.empty()) return nullptr;
    if (path.find_first_of(u"\r\n") != std::u16string::npos) return "a line break in a key's name";
    for (std::size_t start = 0; start <= path.size();) {
        const std::size_t end = std::min(path.find(u'\\', start), path.size());
        if (end == start) return "an empty name in a key's path";
        if (end - start > kLongestKeyName) return "a key's name is longer than 255 characters";
        start = end + 1;
    }
    return nullptr;
}

void addUnit(Bytes& bytes, char16_t unit) {
    bytes.push_back(static_cast<std::uint8_t>(unit & 0xFF));
    bytes.push_back(static_cast<std::uint8_t>(unit >> 8));
}

std::u16string unitsOf(std::span<const std::uint8_t> bytes) {
    std::u16string units(bytes.size() / 2, u'\0');
    for (std::size_t i = 0; i < units.size(); ++i) {
        units[i] = static_cast<char16_t>(bytes[2 * i] | bytes[2 * i + 1] << 8);
    }
    return units;
}

Bytes textData(std::u16string_view text) {
    Bytes data;
    data.reserve((text.size() + 1) * 2);
    for (const char16_t unit : text)
        addUnit(data, unit);
    addUnit(data, u'\0');
    return data;
}

std::optional<std::u16string> plainText(const Bytes& data) {
    if (data.size() % 2 != 0) return std::nullopt;
    std::u16string text = unitsOf(data);
    if (text.empty() || text.find(u'\0') != text.size() - 1) return std::nullopt;
    text.pop_back();
    return text;
}

}  // namespace orvane::tool
