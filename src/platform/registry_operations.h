#pragma once

#include "platform/registry.h"

#include <vector>

/// The functions behind the registry's operations in the tables `Advapi32`, `Shlwapi` and
/// `RegistryTransactions`, by which each platform carries them out.
namespace orvane::platform::registry {

ResultCode openKeyA(RegistryKey root, const std::string& subKey, std::uint32_t options,
                    std::uint32_t access, RegistryKey& key);
ResultCode createKeyA(RegistryKey root, const std::string& subKey, std::uint32_t options,
                      std::uint32_t access, RegistryKey& key, KeyDisposition& disposition);
ResultCode queryValueA(RegistryKey key, const std::string& valueName, std::uint32_t& type,
                       std::uint8_t* data, std::uint32_t& size);
ResultCode setValueA(RegistryKey key, const std::string& valueName, std::uint32_t type,
                     std::span<const std::uint8_t> data);
ResultCode deleteValueA(RegistryKey key, const std::string& valueName);
ResultCode queryInfoKeyA(RegistryKey key, KeyInformation& information);
ResultCode enumKeyA(RegistryKey key, std::uint32_t index, std::span<char> name);
ResultCode enumValueA(RegistryKey key, std::uint32_t index, char* name, std::uint32_t& size);
ResultCode closeKey(RegistryKey key);

ResultCode openKeyW(RegistryKey root, const std::u16string& subKey, std::uint32_t options,
                    std::uint32_t access, RegistryKey& key);
ResultCode createKeyW(RegistryKey root, const std::u16string& subKey, std::uint32_t options,
                      std::uint32_t access, RegistryKey& key, KeyDisposition& disposition);
ResultCode queryValueW(RegistryKey key, const std::u16string& valueName, std::uint32_t& type,
                       std::vector<std::uint8_t>& data);
ResultCode setValueW(RegistryKey key, const std::u16string& valueName, std::uint32_t type,
                     std::span<const std::uint8_t> data);
ResultCode deleteValueW(RegistryKey key, const std::u16string& valueName);
ResultCode enumKeyW(RegistryKey key, std::uint32_t index, std::u16string& name);
ResultCode enumValueW(RegistryKey key, std::uint32_t index, std::u16string& name,
                      std::uint32_t& type, std::vector<std::uint8_t>& data);

ResultCode deleteEmptyKeyA(RegistryKey root, const std::string& subKey);
ResultCode deleteTreeA(RegistryKey root, const std::string& subKey);
ResultCode deleteTreeW(RegistryKey root, const std::u16string& subKey);

ResultCode beginTransaction();
ResultCode commitTransaction();
ResultCode rollbackTransaction();

}  // namespace orvane::platform::registry
