#pragma once

#include "frame/automation/collection_object.h"
#include "platform/registry.h"

namespace orvane {

/// The predefined keys of the registry. Hosts know them under the platform's names
/// (`HKEY_CLASSES_ROOT` and so on), which are macros where the platform's own headers are included.
enum class RegistryRoot_Const : std::int32_t {
    classesRoot = static_cast<std::int32_t>(0x80000000),
    currentUser = static_cast<std::int32_t>(0x80000001),
    localMachine = static_cast<std::int32_t>(0x80000002),
    users = static_cast<std::int32_t>(0x80000003),
    performanceData = static_cast<std::int32_t>(0x80000004),
    currentConfig = static_cast<std::int32_t>(0x80000005),
    dynData = static_cast<std::int32_t>(0x80000006),
};
const automation::EnumTable& enumTable(RegistryRoot_Const);

/// The kinds of values, by what a host gives and gets.
enum class RegistryType_Const : std::int32_t {
    rtString = 0,   ///< a text
    rtLong = 1,     ///< a Long; Integer and Byte are taken, too
    rtBinary = 2,   ///< a Byte array
    rtBoolean = 3,  ///< a Boolean, stored as the text "True" or "False"
};
const automation::EnumTable& enumTable(RegistryType_Const);

/// A thin, typed layer over the registry. Every member opens its key, does its work and closes the
/// key again, so no handle lives between calls. Failures of the platform raise nothing: they are
/// told by `LastRegError` and the member's result. An empty value name is the key's default value.
class orvRegistry final : public automation::AutomationObject {
public:
    static const automation::ClassTable& table();

    orvRegistry();

    /// The platform's code of the last registry operation of any member; 0 for success.
    std::int32_t LastRegError() { return lastError_; }

    /// Reads a value as the type asked for, whatever type is stored: `rtLong` takes the first four
    /// bytes (bytes that a shorter value lacks count as 0), `rtBoolean` is True for the texts "1"
    /// and "TRUE" in any case, with or without blanks around them. Sets `success`; when it is
    /// False, the result is the empty value of the type, and Empty for a type out of range.
    /// Raises 9 for a value of no bytes; the key then stays open.
    Variant GetValue(RegistryRoot_Const root, WStringView subKey, WStringView valueName,
                     RegistryType_Const type, bool& success);

    /// Writes a value of exactly the given type, and makes the key when it is not there. False,
    /// with nothing touched, for a value of another type. `keyAlreadyExist` tells whether the key
    /// was there, and stays as it is when the key can't be opened.
    bool SetValue(RegistryRoot_Const root, WStringView subKey, WStringView valueName,
                  RegistryType_Const type, const Variant& value, bool& keyAlreadyExist);

    bool DeleteValue(RegistryRoot_Const root, WStringView subKey, WStringView valueName);
    /// Deletes a key that has no sub-keys.
    bool DeleteKey(RegistryRoot_Const root, WStringView subKey);
    /// Deletes a key with all below it.
    bool DeleteKeyRecurse(RegistryRoot_Const root, WStringView subKey);

    /// The names of a key's sub-keys, or of its values, in the platform's order. Nothing when the
    /// key can't be read; an empty collection when there are none.
    Ref<automation::CollectionObject> GetSubKeysNames(RegistryRoot_Const root, WStringView subKey);
    Ref<automation::CollectionObject> GetValuesNames(RegistryRoot_Const root, WStringView subKey);

    bool CreateKey(RegistryRoot_Const root, WStringView subKey, bool& keyAlreadyExist);
    bool IsKeyExist(RegistryRoot_Const root, WStringView subKey);

    /// For the settings: the empty value of a type, Empty for a type out of range. Sets `success`
    /// to False.
    static Variant GetEmptyValue(RegistryType_Const type, bool& success);

private:
    class Key;

    bool noted(platform::ResultCode code);
    bool openKey(RegistryRoot_Const root, WStringView subKey, std::uint32_t access, Key& key);
    bool createKey(RegistryRoot_Const root, WStringView subKey, Key& key, bool& keyAlreadyExist);
    template <class EnumerateName>
    Ref<automation::CollectionObject> names(std::uint32_t count, std::uint32_t longest,
                                            EnumerateName&& enumerateName);

    std::int32_t lastError_ = 0;
};

}  // namespace orvane
