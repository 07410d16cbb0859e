#pragma once

#include "registry/registry_file.h"
#include "system.h"

#include <string>
#include <vector>

/// The registry itself: the system's on Windows, the library's own store on Linux. What fails
/// throws RegistryFailure.
namespace orvane::tool {

/// A failed call of the registry: "HKEY_USERS\a: error 2 The system cannot find the file
/// specified".
struct RegistryFailure : Failure {
    RegistryFailure(const std::string& what, std::uint32_t number);

    std::uint32_t code;
};

/// The names of a key's sub-keys, in the registry's order.
std::vector<std::u16string> subKeysOf(const KeyName& key);

/// A key's values, in the registry's order.
std::vector<FileValue> valuesOf(const KeyName& key);

FileValue readValue(const KeyName& key, const std::u16string& name);

/// Writes a value; the key is made if it isn't there.
void writeValue(const KeyName& key, const FileValue& value);
void deleteValue(const KeyName& key, const std::u16string& name);

/// Deletes a key with its values and, if `recursive`, all keys below it. Without that, a key that
/// has any is a Failure.
void deleteKey(const KeyName& key, bool recursive);

/// A key and all below it as a registry file has them, a key before its sub-keys. A name that no
/// such file can hold is a Failure.
RegistryFile exportedTree(const KeyName& key);

/// Does what a file says, in its order; what is to be removed and isn't there is no failure. Where
/// the registry has transactions (on Linux) a failure undoes everything.
void importAll(const RegistryFile& file);

}  // namespace orvane::tool
