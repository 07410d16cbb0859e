#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

/// Registry files (.reg): what they say, apart from any registry.
namespace orvane::tool {

using Bytes = std::vector<std::uint8_t>;

/// The types of registry values, by the platform's numbers.
enum class ValueType : std::uint32_t {
    none = 0,
    string = 1,
    expand = 2,
    binary = 3,
    dword = 4,
    dwordBigEndian = 5,
    link = 6,
    multi = 7,
    qword = 11,
};

/// The predefined keys, by the platform's numbers.
enum class Root : std::uint32_t {
    classesRoot = 0x80000000,
    currentUser = 0x80000001,
    localMachine = 0x80000002,
    users = 0x80000003,
    currentConfig = 0x80000005,
};

/// A key's place: "HKEY_CURRENT_USER\Software" is `currentUser` and "Software". The path of a root
/// itself is empty.
struct KeyName {
    Root root = Root::currentUser;
    std::u16string path;

    bool operator==(const KeyName&) const = default;
};

/// A key by its full name; the root in its long form or as HKCU, HKLM, HKCR, HKU, HKCC, in any case
/// of letters. Nothing for another root.
std::optional<KeyName> parseKeyName(std::u16string_view text);

/// The full name, with the root in its long form.
std::u16string textOf(const KeyName& key);

/// Why no key can have this path, or null: each of its names has 1 to 255 units and no line break,
/// which a registry file could not hold.
const char* flawOf(const std::u16string& path);

/// The most units that a value's name can have.
inline constexpr std::size_t kLongestValueName = 16383;

/// What a file says about one value of a key.
struct FileValue {
    std::u16string name;  ///< empty for the key's default value
    ValueType type = ValueType::none;
    Bytes data;            ///< as the registry keeps it: texts in UTF-16 with their NUL
    bool remove = false;   ///< the value is to go; type and data mean nothing
    std::size_t line = 0;  ///< where it begins in the file that it was read from

    bool operator==(const FileValue& other) const {
        return name == other.name && type == other.type && data == other.data &&
               remove == other.remove;
    }
};

/// What a file says about one key, in the file's order.
struct FileKey {
    KeyName name;
    bool remove = false;  ///< the key is to go with all below it; it has no values here
    std::vector<FileValue> values;
    std::size_t line = 0;

    bool operator==(const FileKey& other) const {
        return name == other.name && remove == other.remove && values == other.values;
    }
};

using RegistryFile = std::vector<FileKey>;

/// The value of a hexadecimal digit, -1 for any other character.
constexpr int hexDigit(char32_t letter) {
    if (letter >= U'0' && letter <= U'9') return static_cast<int>(letter - U'0');
    if (letter >= U'a' && letter <= U'f') return static_cast<int>(letter - U'a') + 10;
    if (letter >= U'A' && letter <= U'F') return static_cast<int>(letter - U'A') + 10;
    return -1;
}

/// UTF-16 units and bytes, least significant byte first. An odd byte at the end is left out.
void addUnit(Bytes& bytes, char16_t unit);
std::u16string unitsOf(std::span<const std::uint8_t> bytes);

/// The bytes of a text value: UTF-16, least significant byte first, with a NUL.
Bytes textData(std::u16string_view text);

/// The text in the bytes of a value, without its NUL; nothing unless they are whole units that end
/// with a NUL and have no other.
std::optional<std::u16string> plainText(const Bytes& data);

}  // namespace orvane::tool
