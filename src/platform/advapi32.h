#pragma once

#include "platform/handles.h"
#include "platform/operation.h"
#include "platform/registry.h"

namespace orvane::platform {

struct Advapi32 {
    /// The logon name of the process's user.
    Operation<std::string()> GetUserNameA{"advapi32", "GetUserNameA", {}, kErrorAccessDenied};

    // The registry. Each operation gives its result code, and the last error means nothing; `key`
    // is a predefined key or the handle of an open one, and a sub-key "" is the key itself. In the
    // narrow forms names are texts in the ANSI code page, and so is the data of text values (types
    // 1, 2 and 7). A name ends at its first NUL.

    /// Opens a key that is there; `key` is none when that fails. `options` is 0.
    Operation<ResultCode(RegistryKey root, const std::string& subKey, std::uint32_t options,
                         std::uint32_t access, RegistryKey& key)>
        RegOpenKeyExA{
            "advapi32", "RegOpenKeyExA", ResultCode{kErrorAccessDenied}, kErrorSuccess, {"key", 4}};
    /// Opens a key, made first when it is not there with all that lack on the way to it; without a
    /// class or security of its own. `options` is 0: the key lasts.
    Operation<ResultCode(RegistryKey root, const std::string& subKey, std::uint32_t options,
                         std::uint32_t access, RegistryKey& key, KeyDisposition& disposition)>
        RegCreateKeyExA{"advapi32",
                        "RegCreateKeyExA",
                        ResultCode{kErrorAccessDenied},
                        kErrorSuccess,
                        {"key", 4}};
    /// Reads a value. `size` says how many bytes lie at `data` and gets how many the value has;
    /// with no data only type and size are told. 2 when there is no such value, 234 when it has
    /// more bytes than there is room for.
    Operation<ResultCode(RegistryKey key, const std::string& valueName, std::uint32_t& type,
                         std::uint8_t* data, std::uint32_t& size)>
        RegQueryValueExA{"advapi32", "RegQueryValueExA", ResultCode{kErrorAccessDenied}};
    /// Writes a value; the bytes as they are, with the closing NUL of a text among them.
    Operation<ResultCode(RegistryKey key, const std::string& valueName, std::uint32_t type,
                         std::span<const std::uint8_t> data)>
        RegSetValueExA{"advapi32", "RegSetValueExA", ResultCode{kErrorAccessDenied}};
    Operation<ResultCode(RegistryKey key, const std::string& valueName)> RegDeleteValueA{
        "advapi32", "RegDeleteValueA", ResultCode{kErrorAccessDenied}};
    /// How many sub-keys and values a key has, and how long their names are in bytes.
    Operation<ResultCode(RegistryKey key, KeyInformation& information)> RegQueryInfoKeyA{
        "advapi32", "RegQueryInfoKeyA", ResultCode{kErrorAccessDenied}};
    /// The name of a sub-key by its place from 0, with a closing NUL. 259 behind the last one, 234
    /// when the buffer is too small.
    Operation<ResultCode(RegistryKey key, std::uint32_t index, std::span<char> name)> RegEnumKeyA{
        "advapi32", "RegEnumKeyA", ResultCode{kErrorAccessDenied}};
    /// The name of a value by its place from 0, with a closing NUL. `size` says how many bytes lie
    /// at `name` and gets the length without the NUL. 259 behind the last one, 234 when there is
    /// too little room.
    Operation<ResultCode(RegistryKey key, std::uint32_t index, char* name, std::uint32_t& size)>
        RegEnumValueA{"advapi32", "RegEnumValueA", ResultCode{kErrorAccessDenied}};
    /// 6 for a handle that is not open; predefined keys close and stay.
    Operation<ResultCode(RegistryKey key)> RegCloseKey{"advapi32",
                                                       "RegCloseKey",
                                                       ResultCode{kErrorInvalidHandle},
                                                       kErrorSuccess,
                                                       {"key", Holding::kNothing, 0}};

    // The wide forms: names of UTF-16 units, and data as it is stored. Where the platform takes a
    // buffer and may ask for a larger one, these give the whole.

    Operation<ResultCode(RegistryKey root, const std::u16string& subKey, std::uint32_t options,
                         std::uint32_t access, RegistryKey& key)>
        RegOpenKeyExW{
            "advapi32", "RegOpenKeyExW", ResultCode{kErrorAccessDenied}, kErrorSuccess, {"key", 4}};
    Operation<ResultCode(RegistryKey root, const std::u16string& subKey, std::uint32_t options,
                         std::uint32_t access, RegistryKey& key, KeyDisposition& disposition)>
        RegCreateKeyExW{"advapi32",
                        "RegCreateKeyExW",
                        ResultCode{kErrorAccessDenied},
                        kErrorSuccess,
                        {"key", 4}};
    Operation<ResultCode(RegistryKey key, const std::u16string& valueName, std::uint32_t& type,
                         std::vector<std::uint8_t>& data)>
        RegQueryValueExW{"advapi32", "RegQueryValueExW", ResultCode{kErrorAccessDenied}};
    Operation<ResultCode(RegistryKey key, const std::u16string& valueName, std::uint32_t type,
                         std::span<const std::uint8_t> data)>
        RegSetValueExW{"advapi32", "RegSetValueExW", ResultCode{kErrorAccessDenied}};
    Operation<ResultCode(RegistryKey key, const std::u16string& valueName)> RegDeleteValueW{
        "advapi32", "RegDeleteValueW", ResultCode{kErrorAccessDenied}};
    /// The name of a sub-key by its place from 0; 259 behind the last one.
    Operation<ResultCode(RegistryKey key, std::uint32_t index, std::u16string& name)> RegEnumKeyExW{
        "advapi32", "RegEnumKeyExW", ResultCode{kErrorAccessDenied}};
    /// A value by its place from 0: name, type and data; 259 behind the last one.
    Operation<ResultCode(RegistryKey key, std::uint32_t index, std::u16string& name,
                         std::uint32_t& type, std::vector<std::uint8_t>& data)>
        RegEnumValueW{"advapi32", "RegEnumValueW", ResultCode{kErrorAccessDenied}};

    template <class Visitor>
    constexpr void visit(Visitor&& visitor) {
        visitor(GetUserNameA, RegOpenKeyExA, RegCreateKeyExA, RegQueryValueExA, RegSetValueExA,
                RegDeleteValueA, RegQueryInfoKeyA, RegEnumKeyA, RegEnumValueA, RegCloseKey,
                RegOpenKeyExW, RegCreateKeyExW, RegQueryValueExW, RegSetValueExW, RegDeleteValueW,
                RegEnumKeyExW, RegEnumValueW);
    }
};
extern Advapi32 advapi32;

struct Secur32 {
    /// The fully qualified name of the process's user, domain or computer first ("HOST\user").
    Operation<std::string()> GetUserNameExA{"secur32", "GetUserNameExA", {}, kErrorInvalidFunction};

    template <class Visitor>
    constexpr void visit(Visitor&& visitor) {
        visitor(GetUserNameExA);
    }
};
extern Secur32 secur32;

}  // namespace orvane::platform
