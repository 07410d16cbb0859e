#include "settings/orvRegistry.h"

#include "frame/arithmetic.h"
#include "frame/automation/describe.h"
#include "frame/values/codepage.h"
#include "frame/values/text.h"
#include "platform/advapi32.h"
#include "platform/shlwapi.h"
#include "support/text.h"

#include <optional>

namespace orvane {
namespace {

using automation::CollectionObject;
using platform::advapi32;
using platform::KeyDisposition;
using platform::KeyInformation;
using platform::RegistryKey;
using platform::ResultCode;
using platform::shlwapi;

RegistryKey rootKey(RegistryRoot_Const root) {
    return static_cast<RegistryKey>(root);
}

bool isKnown(RegistryType_Const type) {
    return type >= RegistryType_Const::rtString && type <= RegistryType_Const::rtBoolean;
}

std::uint32_t platformType(RegistryType_Const type) {
    switch (type) {
    case RegistryType_Const::rtLong:
        return platform::kRegDword;
    case RegistryType_Const::rtBinary:
        return platform::kRegBinary;
    default:
        return platform::kRegSz;
    }
}

/// The text that bytes in the ANSI code page hold up to their first NUL.
WString textIn(const Array<std::uint8_t>& bytes) {
    const auto elements = bytes.elements();
    return fromAnsi(elements.first(
        static_cast<std::size_t>(std::ranges::find(elements, std::uint8_t{0}) - elements.begin())));
}

/// The first four bytes, little-endian; those that a shorter value lacks count as 0.
std::int32_t longIn(const Array<std::uint8_t>& bytes) {
    std::uint32_t number = 0;
    unsigned shift = 0;
    for (const std::uint8_t byte : bytes.elements()) {
        if (shift == 32) break;
        number |= static_cast<std::uint32_t>(byte) << shift;
        shift += 8;
    }
    return static_cast<std::int32_t>(number);
}

bool isTrueText(const WString& text) {
    const WString cleaned = nqTrimEx(uCase(text));
    return cleaned == u"1" || cleaned == u"TRUE";
}

Variant decoded(RegistryType_Const type, Array<std::uint8_t> bytes) {
    switch (type) {
    case RegistryType_Const::rtLong:
        return longIn(bytes);
    case RegistryType_Const::rtBinary:
        return Variant(std::move(bytes));
    case RegistryType_Const::rtBoolean:
        return isTrueText(textIn(bytes));
    default:
        return textIn(bytes);
    }
}

/// A value as `SetValue` takes it for a type: the small whole numbers are Longs. Nothing when the
/// value is of another type.
std::optional<Variant> accepted(RegistryType_Const type, const Variant& given) {
    Variant value = given.value();
    switch (type) {
    case RegistryType_Const::rtLong:
        if (const auto* small = value.as<std::int16_t>()) return Variant(std::int32_t{*small});
        if (const auto* byte = value.as<std::uint8_t>()) return Variant(std::int32_t{*byte});
        if (value.as<std::int32_t>() == nullptr) return std::nullopt;
        return value;
    case RegistryType_Const::rtBinary:
        if (value.asArray<std::uint8_t>() == nullptr) return std::nullopt;
        return value;
    case RegistryType_Const::rtBoolean:
        if (value.as<bool>() == nullptr) return std::nullopt;
        return value;
    default:
        if (value.as<WString>() == nullptr) return std::nullopt;
        return value;
    }
}

using Bytes = std::vector<std::uint8_t>;

// The size is the count of characters with the closing NUL, whatever the bytes are: a text in a
// double-byte code page is stored cut short.
Bytes textBytes(WStringView text) {
    const std::int32_t size = checkedAdd(len(text), 1);
    const std::string ansi = toAnsi(std::u16string(text) + u'\0');
    Bytes bytes(ansi.begin(), ansi.end());
    bytes.resize(std::min(bytes.size(), static_cast<std::size_t>(size)));
    return bytes;
}

Bytes longBytes(std::int32_t value) {
    const auto bits = static_cast<std::uint32_t>(value);
    Bytes bytes;
    for (unsigned shift = 0; shift < 32; shift += 8)
        bytes.push_back(static_cast<std::uint8_t>(bits >> shift));
    return bytes;
}

// Raises 9 for an array that was never allocated.
Bytes arrayBytes(const Array<std::uint8_t>& array) {
    const std::int32_t size =
        checkedAdd(checkedSubtract(array.upperBound(), array.lowerBound()), 1);
    const auto bytes = array.elements().first(static_cast<std::size_t>(size));
    return {bytes.begin(), bytes.end()};
}

/// The bytes that are stored for an accepted value.
Bytes encoded(RegistryType_Const type, const Variant& value) {
    switch (type) {
    case RegistryType_Const::rtLong:
        return longBytes(*value.as<std::int32_t>());
    case RegistryType_Const::rtBinary:
        return arrayBytes(*value.asArray<std::uint8_t>());
    case RegistryType_Const::rtBoolean:
        return textBytes(*value.as<bool>() ? u"True" : u"False");
    default:
        return textBytes(*value.as<WString>());
    }
}

}  // namespace

/// An open key, closed at the end of its life.
class orvRegistry::Key {
public:
    Key() = default;
    ~Key() {
        if (key_ != RegistryKey::none) advapi32.RegCloseKey(key_);
    }
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;

    RegistryKey get() const { return key_; }
    RegistryKey& receive() { return key_; }
    void leaveOpen() { key_ = RegistryKey::none; }

private:
    RegistryKey key_ = RegistryKey::none;
};

const automation::ClassTable& orvRegistry::table() {
    using automation::optional;
    static const automation::ClassTable& table = automation::classTable([] {
        return automation::ClassBuilder<orvRegistry>(
                   "orvRegistry", automation::Instancing::creatable,
                   {0x5A2E4B83, 0x9C41, 0x421E, {0xBA, 0x1B, 0x90, 0x7A, 0xF6, 0xE4, 0xB6, 0x2F}},
                   {0xD93EC43E, 0x18EF, 0x4036, {0x93, 0x1F, 0x89, 0x52, 0x76, 0x22, 0xDF, 0xFE}})
            .propertyGet<&orvRegistry::LastRegError>("LastRegError")
            .method<&orvRegistry::GetValue>("GetValue", {"RegistryRoot",
                                                         "SubKey",
                                                         {"ValueName", u""},
                                                         {"ValueType", 0},
                                                         optional("Success")})
            .method<&orvRegistry::SetValue>("SetValue", {"RegistryRoot",
                                                         "SubKey",
                                                         {"ValueName", u""},
                                                         {"ValueType", 0},
                                                         {"Value", u""},
                                                         {"KeyAlreadyExist", false}})
            .method<&orvRegistry::DeleteValue>("DeleteValue",
                                               {"RegistryRoot", "SubKey", {"ValueName", u""}})
            .method<&orvRegistry::DeleteKey>("DeleteKey", {"RegistryRoot", "SubKey"})
            .method<&orvRegistry::DeleteKeyRecurse>("DeleteKeyRecurse", {"RegistryRoot", "SubKey"})
            .method<&orvRegistry::GetSubKeysNames>("GetSubKeysNames", {"RegistryRoot", "SubKey"})
            .method<&orvRegistry::GetValuesNames>("GetValuesNames", {"RegistryRoot", "SubKey"})
            .method<&orvRegistry::CreateKey>("CreateKey",
                                             {"RegistryRoot", "SubKey", {"KeyAlreadyExist", false}})
            .method<&orvRegistry::IsKeyExist>("IsKeyExist", {"RegistryRoot", "SubKey"})
            .build();
    });
    return table;
}

orvRegistry::orvRegistry() : AutomationObject(table()) {}

Variant orvRegistry::GetValue(RegistryRoot_Const root, WStringView subKey, WStringView valueName,
                              RegistryType_Const type, bool& success) {
    success = isKnown(type);
    if (!success) return {};
    Key key;
    if (!openKey(root, subKey, platform::kKeyQueryValue, key)) return GetEmptyValue(type, success);
    const std::string name = toAnsi(valueName);
    std::uint32_t storedType = 0;
    std::uint32_t size = 0;
    if (!noted(advapi32.RegQueryValueExA(key.get(), name, storedType, nullptr, size))) {
        return GetEmptyValue(type, success);
    }
    // A buffer without elements can't be made: that raises 9, and nobody closes the key then.
    if (size == 0) key.leaveOpen();
    Array<std::uint8_t> buffer(0, static_cast<std::int32_t>(size) - 1);
    if (!noted(advapi32.RegQueryValueExA(key.get(), name, storedType, buffer.elements().data(),
                                         size))) {
        return GetEmptyValue(type, success);
    }
    return decoded(type, std::move(buffer));
}

bool orvRegistry::SetValue(RegistryRoot_Const root, WStringView subKey, WStringView valueName,
                           RegistryType_Const type, const Variant& value, bool& keyAlreadyExist) {
    if (!isKnown(type)) return false;
    const std::optional<Variant> toStore = accepted(type, value);
    if (!toStore) return false;
    Key key;
    if (!createKey(root, subKey, key, keyAlreadyExist)) return false;
    const Bytes bytes = encoded(type, *toStore);
    return noted(advapi32.RegSetValueExA(key.get(), toAnsi(valueName), platformType(type), bytes));
}

bool orvRegistry::DeleteValue(RegistryRoot_Const root, WStringView subKey, WStringView valueName) {
    Key key;
    return openKey(root, subKey, platform::kKeySetValue, key) &&
           noted(advapi32.RegDeleteValueA(key.get(), toAnsi(valueName)));
}

bool orvRegistry::DeleteKey(RegistryRoot_Const root, WStringView subKey) {
    return noted(shlwapi.SHDeleteEmptyKeyA(rootKey(root), toAnsi(subKey)));
}

bool orvRegistry::DeleteKeyRecurse(RegistryRoot_Const root, WStringView subKey) {
    return noted(shlwapi.SHDeleteKeyA(rootKey(root), toAnsi(subKey)));
}

Ref<CollectionObject> orvRegistry::GetSubKeysNames(RegistryRoot_Const root, WStringView subKey) {
    Key key;
    KeyInformation information;
    if (!openKey(root, subKey, platform::kKeyQueryValue | platform::kKeyEnumerateSubKeys, key) ||
        !noted(advapi32.RegQueryInfoKeyA(key.get(), information))) {
        return {};
    }
    return names(information.subKeys, information.longestSubKey,
                 [&](std::uint32_t index, std::span<char> name) {
                     return advapi32.RegEnumKeyA(key.get(), index, name);
                 });
}

Ref<CollectionObject> orvRegistry::GetValuesNames(RegistryRoot_Const root, WStringView subKey) {
    Key key;
    KeyInformation information;
    if (!openKey(root, subKey, platform::kKeyQueryValue, key) ||
        !noted(advapi32.RegQueryInfoKeyA(key.get(), information))) {
        return {};
    }
    return names(information.values, information.longestValueName,
                 [&](std::uint32_t index, std::span<char> name) {
                     auto size = static_cast<std::uint32_t>(name.size());
                     return advapi32.RegEnumValueA(key.get(), index, name.data(), size);
                 });
}

bool orvRegistry::CreateKey(RegistryRoot_Const root, WStringView subKey, bool& keyAlreadyExist) {
    Key key;
    return createKey(root, subKey, key, keyAlreadyExist);
}

bool orvRegistry::IsKeyExist(RegistryRoot_Const root, WStringView subKey) {
    Key key;
    return openKey(root, subKey, platform::kKeyQueryValue, key);
}

Variant orvRegistry::GetEmptyValue(RegistryType_Const type, bool& success) {
    success = false;
    switch (type) {
    case RegistryType_Const::rtString:
        return u"";
    case RegistryType_Const::rtLong:
        return std::int32_t{0};
    case RegistryType_Const::rtBinary:
        return Array<std::uint8_t>();
    case RegistryType_Const::rtBoolean:
        return false;
    }
    return {};
}

/// Keeps an operation's code; true when it is success.
bool orvRegistry::noted(ResultCode code) {
    lastError_ = static_cast<std::int32_t>(code);
    return code == ResultCode::success;
}

bool orvRegistry::openKey(RegistryRoot_Const root, WStringView subKey, std::uint32_t access,
                          Key& key) {
    return noted(advapi32.RegOpenKeyExA(rootKey(root), toAnsi(subKey), 0, access, key.receive()));
}

bool orvRegistry::createKey(RegistryRoot_Const root, WStringView subKey, Key& key,
                            bool& keyAlreadyExist) {
    KeyDisposition disposition = KeyDisposition::none;
    if (!noted(advapi32.RegCreateKeyExA(rootKey(root), toAnsi(subKey), 0, platform::kKeySetValue,
                                        key.receive(), disposition))) {
        return false;
    }
    if (disposition == KeyDisposition::createdNewKey) keyAlreadyExist = false;
    if (disposition == KeyDisposition::openedExistingKey) keyAlreadyExist = true;
    return true;
}

// A name that goes away meanwhile ends the list early; any other failure leaves none of it.
template <class EnumerateName>
Ref<CollectionObject> orvRegistry::names(std::uint32_t count, std::uint32_t longest,
                                         EnumerateName&& enumerateName) {
    auto result = make<CollectionObject>();
    const std::size_t size = std::size_t{longest} + 10;
    for (std::uint32_t index = 0; index < count; ++index) {
        std::vector<char> buffer(size + 10);
        if (!noted(enumerateName(index, std::span(buffer).first(size)))) break;
        result->items().add(nqGetStringFromPointerA(buffer.data()));
    }
    if (lastError_ != 0 && lastError_ != std::int32_t{platform::kErrorNoMoreItems}) return {};
    return result;
}

}  // namespace orvane
