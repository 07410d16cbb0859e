#include "platform/registry_operations.h"
#include "platform/win32/system.h"

#include <shlwapi.h>

namespace orvane::platform::registry {

namespace {

HKEY systemKey(RegistryKey key) {
    return win32::systemHandle<HKEY>(key);
}

ResultCode code(LONG status) {
    return static_cast<ResultCode>(status);
}

const wchar_t* wide(const std::u16string& text) {
    return reinterpret_cast<const wchar_t*>(text.c_str());
}

/// The bytes of a value with something behind them. The system looks behind a text that has no NUL
/// at its end, and takes one that happens to be there for a part of it.
std::vector<std::uint8_t> bounded(std::span<const std::uint8_t> data) {
    std::vector<std::uint8_t> bytes(data.begin(), data.end());
    bytes.insert(bytes.end(), 4, 0xFF);
    return bytes;
}

bool isText(std::uint32_t type) {
    return type == kRegSz || type == kRegExpandSz || type == kRegMultiSz;
}

/// The result and the handle of an operation that opened a key.
ResultCode opened(LONG status, HKEY found, RegistryKey& key) {
    key = status == ERROR_SUCCESS ? win32::ownHandle<RegistryKey>(found) : RegistryKey::none;
    return code(status);
}

}  // namespace

ResultCode openKeyA(RegistryKey root, const std::string& subKey, std::uint32_t options,
                    std::uint32_t access, RegistryKey& key) {
    HKEY found = nullptr;
    const LONG status = ::RegOpenKeyExA(systemKey(root), subKey.c_str(), options, access, &found);
    return opened(status, found, key);
}

ResultCode createKeyA(RegistryKey root, const std::string& subKey, std::uint32_t options,
                      std::uint32_t access, RegistryKey& key, KeyDisposition& disposition) {
    HKEY found = nullptr;
    DWORD done = 0;
    const LONG status = ::RegCreateKeyExA(systemKey(root), subKey.c_str(), 0, nullptr, options,
                                          access, nullptr, &found, &done);
    disposition = static_cast<KeyDisposition>(done);
    return opened(status, found, key);
}

ResultCode queryValueA(RegistryKey key, const std::string& valueName, std::uint32_t& type,
                       std::uint8_t* data, std::uint32_t& size) {
    DWORD found = type;
    DWORD bytes = size;
    const LONG status =
        ::RegQueryValueExA(systemKey(key), valueName.c_str(), nullptr, &found, data, &bytes);
    type = found;
    size = bytes;
    return code(status);
}

ResultCode setValueA(RegistryKey key, const std::string& valueName, std::uint32_t type,
                     std::span<const std::uint8_t> data) {
    const auto write = [&](const std::uint8_t* bytes) {
        return code(::RegSetValueExA(systemKey(key), valueName.c_str(), 0, type, bytes,
                                     static_cast<DWORD>(data.size())));
    };
    return isText(type) ? write(bounded(data).data()) : write(data.data());
}

ResultCode deleteValueA(RegistryKey key, const std::string& valueName) {
    return code(::RegDeleteValueA(systemKey(key), valueName.c_str()));
}

ResultCode queryInfoKeyA(RegistryKey key, KeyInformation& information) {
    DWORD subKeys = 0;
    DWORD longestSubKey = 0;
    DWORD values = 0;
    DWORD longestName = 0;
    DWORD longestValue = 0;
    const LONG status =
        ::RegQueryInfoKeyA(systemKey(key), nullptr, nullptr, nullptr, &subKeys, &longestSubKey,
                           nullptr, &values, &longestName, &longestValue, nullptr, nullptr);
    information = {static_cast<std::uint32_t>(subKeys), static_cast<std::uint32_t>(longestSubKey),
                   static_cast<std::uint32_t>(values), static_cast<std::uint32_t>(longestName),
                   static_cast<std::uint32_t>(longestValue)};
    return code(status);
}

ResultCode enumKeyA(RegistryKey key, std::uint32_t index, std::span<char> name) {
    return code(::RegEnumKeyA(systemKey(key), index, name.data(), static_cast<DWORD>(name.size())));
}

ResultCode enumValueA(RegistryKey key, std::uint32_t index, char* name, std::uint32_t& size) {
    DWORD length = size;
    const LONG status =
        ::RegEnumValueA(systemKey(key), index, name, &length, nullptr, nullptr, nullptr, nullptr);
    size = length;
    return code(status);
}

ResultCode closeKey(RegistryKey key) {
    return code(::RegCloseKey(systemKey(key)));
}

ResultCode openKeyW(RegistryKey root, const std::u16string& subKey, std::uint32_t options,
                    std::uint32_t access, RegistryKey& key) {
    HKEY found = nullptr;
    const LONG status = ::RegOpenKeyExW(systemKey(root), wide(subKey), options, access, &found);
    return opened(status, found, key);
}

ResultCode createKeyW(RegistryKey root, const std::u16string& subKey, std::uint32_t options,
                      std::uint32_t access, RegistryKey& key, KeyDisposition& disposition) {
    HKEY found = nullptr;
    DWORD done = 0;
    const LONG status = ::RegCreateKeyExW(systemKey(root), wide(subKey), 0, nullptr, options,
                                          access, nullptr, &found, &done);
    disposition = static_cast<KeyDisposition>(done);
    return opened(status, found, key);
}

// A value may grow between the question for its size and the reading.
ResultCode queryValueW(RegistryKey key, const std::u16string& valueName, std::uint32_t& type,
                       std::vector<std::uint8_t>& data) {
    data.clear();
    for (;;) {
        DWORD found = 0;
        DWORD bytes = static_cast<DWORD>(data.size());
        // Data without a place would be no question for data at all.
        std::uint8_t none = 0;
        const LONG status = ::RegQueryValueExW(systemKey(key), wide(valueName), nullptr, &found,
                                               data.empty() ? &none : data.data(), &bytes);
        type = found;
        if (status == ERROR_MORE_DATA && bytes > data.size()) {
            data.resize(bytes);
            continue;
        }
        data.resize(status == ERROR_SUCCESS ? bytes : 0);
        return code(status);
    }
}

ResultCode setValueW(RegistryKey key, const std::u16string& valueName, std::uint32_t type,
                     std::span<const std::uint8_t> data) {
    const auto write = [&](const std::uint8_t* bytes) {
        return code(::RegSetValueExW(systemKey(key), wide(valueName), 0, type, bytes,
                                     static_cast<DWORD>(data.size())));
    };
    return isText(type) ? write(bounded(data).data()) : write(data.data());
}

ResultCode deleteValueW(RegistryKey key, const std::u16string& valueName) {
    return code(::RegDeleteValueW(systemKey(key), wide(valueName)));
}

ResultCode enumKeyW(RegistryKey key, std::uint32_t index, std::u16string& name) {
    name.assign(kLongestKeyName + 1, u'\0');
    DWORD length = static_cast<DWORD>(name.size());
    const LONG status =
        ::RegEnumKeyExW(systemKey(key), index, reinterpret_cast<wchar_t*>(name.data()), &length,
                        nullptr, nullptr, nullptr, nullptr);
    name.resize(status == ERROR_SUCCESS ? length : 0);
    return code(status);
}

ResultCode enumValueW(RegistryKey key, std::uint32_t index, std::u16string& name,
                      std::uint32_t& type, std::vector<std::uint8_t>& data) {
    data.clear();
    for (;;) {
        name.assign(kLongestValueName + 1, u'\0');
        DWORD length = static_cast<DWORD>(name.size());
        DWORD found = 0;
        DWORD bytes = static_cast<DWORD>(data.size());
        std::uint8_t none = 0;
        const LONG status =
            ::RegEnumValueW(systemKey(key), index, reinterpret_cast<wchar_t*>(name.data()), &length,
                            nullptr, &found, data.empty() ? &none : data.data(), &bytes);
        type = found;
        if (status == ERROR_MORE_DATA && bytes > data.size()) {
            data.resize(bytes);
            continue;
        }
        name.resize(status == ERROR_SUCCESS ? length : 0);
        data.resize(status == ERROR_SUCCESS ? bytes : 0);
        return code(status);
    }
}

ResultCode deleteEmptyKeyA(RegistryKey root, const std::string& subKey) {
    return code(static_cast<LONG>(::SHDeleteEmptyKeyA(systemKey(root), subKey.c_str())));
}

ResultCode deleteTreeA(RegistryKey root, const std::string& subKey) {
    return code(static_cast<LONG>(::SHDeleteKeyA(systemKey(root), subKey.c_str())));
}

ResultCode deleteTreeW(RegistryKey root, const std::u16string& subKey) {
    return code(static_cast<LONG>(::SHDeleteKeyW(systemKey(root), wide(subKey))));
}

// Not every system has transactions of the registry.
ResultCode beginTransaction() {
    return ResultCode{kErrorNotSupported};
}

ResultCode commitTransaction() {
    return ResultCode{kErrorNotSupported};
}

ResultCode rollbackTransaction() {
    return ResultCode{kErrorNotSupported};
}

}  // namespace orvane::platform::registry
