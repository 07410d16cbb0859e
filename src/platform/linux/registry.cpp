#include "platform/linux/registry.h"

namespace orvane::platform::registry {

ResultCode openKeyA(RegistryKey, const std::string&, std::uint32_t, std::uint32_t, RegistryKey&) {
    return ResultCode{kErrorModuleNotFound};
}

ResultCode createKeyA(RegistryKey, const std::string&, std::uint32_t, std::uint32_t, RegistryKey&,
                      KeyDisposition&) {
    return ResultCode{kErrorModuleNotFound};
}

ResultCode queryValueA(RegistryKey, const std::string&, std::uint32_t&, std::uint8_t*,
                       std::uint32_t&) {
    return ResultCode{kErrorModuleNotFound};
}

ResultCode setValueA(RegistryKey, const std::string&, std::uint32_t,
                     std::span<const std::uint8_t>) {
    return ResultCode{kErrorModuleNotFound};
}

ResultCode deleteValueA(RegistryKey, const std::string&) {
    return ResultCode{kErrorModuleNotFound};
}

ResultCode queryInfoKeyA(RegistryKey, KeyInformation&) {
    return ResultCode{kErrorModuleNotFound};
}

ResultCode enumKeyA(RegistryKey, std::uint32_t, std::span<char>) {
    return ResultCode{kErrorModuleNotFound};
}

ResultCode enumValueA(RegistryKey, std::uint32_t, char*, std::uint32_t&) {
    return ResultCode{kErrorModuleNotFound};
}

ResultCode closeKey(RegistryKey) {
    return ResultCode{kErrorModuleNotFound};
}

ResultCode openKeyW(RegistryKey, const std::u16string&, std::uint32_t, std::uint32_t,
                    RegistryKey&) {
    return ResultCode{kErrorModuleNotFound};
}

ResultCode createKeyW(RegistryKey, const std::u16string&, std::uint32_t, std::uint32_t,
                      RegistryKey&, KeyDisposition&) {
    return ResultCode{kErrorModuleNotFound};
}

ResultCode queryValueW(RegistryKey, const std::u16string&, std::uint32_t&,
                       std::vector<std::uint8_t>&) {
    return ResultCode{kErrorModuleNotFound};
}

ResultCode setValueW(RegistryKey, const std::u16string&, std::uint32_t,
                     std::span<const std::uint8_t>) {
    return ResultCode{kErrorModuleNotFound};
}

ResultCode deleteValueW(RegistryKey, const std::u16string&) {
    return ResultCode{kErrorModuleNotFound};
}

ResultCode enumKeyW(RegistryKey, std::uint32_t, std::u16string&) {
    return ResultCode{kErrorModuleNotFound};
}

ResultCode enumValueW(RegistryKey, std::uint32_t, std::u16string&, std::uint32_t&,
                      std::vector<std::uint8_t>&) {
    return ResultCode{kErrorModuleNotFound};
}

ResultCode deleteEmptyKeyA(RegistryKey, const std::string&) {
    return ResultCode{kErrorModuleNotFound};
}

ResultCode deleteTreeA(RegistryKey, const std::string&) {
    return ResultCode{kErrorModuleNotFound};
}

ResultCode deleteTreeW(RegistryKey, const std::u16string&) {
    return ResultCode{kErrorModuleNotFound};
}

ResultCode beginTransaction() {
    return ResultCode{kErrorModuleNotFound};
}

ResultCode commitTransaction() {
    return ResultCode{kErrorModuleNotFound};
}

ResultCode rollbackTransaction() {
    return ResultCode{kErrorModuleNotFound};
}

}  // namespace orvane::platform::registry
