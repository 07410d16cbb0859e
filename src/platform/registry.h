#pragma once

#include "platform/handles.h"
#include "platform/operation.h"

#include <cstdint>
#include <string>

/// What the operations on the registry share (`advapi32.h`, `shlwapi.h`).
namespace orvane::platform {

/// The predefined keys: handles that are open always.
inline constexpr RegistryKey kHkeyClassesRoot{0x80000000};
inline constexpr RegistryKey kHkeyCurrentUser{0x80000001};
inline constexpr RegistryKey kHkeyLocalMachine{0x80000002};
inline constexpr RegistryKey kHkeyUsers{0x80000003};
inline constexpr RegistryKey kHkeyPerformanceData{0x80000004};
inline constexpr RegistryKey kHkeyCurrentConfig{0x80000005};
inline constexpr RegistryKey kHkeyDynData{0x80000006};

/// Rights that a key is opened with, to be added up.
inline constexpr std::uint32_t kKeyQueryValue = 1;
inline constexpr std::uint32_t kKeySetValue = 2;
inline constexpr std::uint32_t kKeyCreateSubKey = 4;
inline constexpr std::uint32_t kKeyEnumerateSubKeys = 8;

/// Types of values.
inline constexpr std::uint32_t kRegNone = 0;
inline constexpr std::uint32_t kRegSz = 1;
inline constexpr std::uint32_t kRegExpandSz = 2;
inline constexpr std::uint32_t kRegBinary = 3;
inline constexpr std::uint32_t kRegDword = 4;
inline constexpr std::uint32_t kRegMultiSz = 7;

inline constexpr std::uint32_t kErrorNotSupported = 50;
inline constexpr std::uint32_t kErrorMoreData = 234;
inline constexpr std::uint32_t kErrorNoMoreItems = 259;
inline constexpr std::uint32_t kErrorKeyDeleted = 1018;
inline constexpr std::uint32_t kErrorKeyHasChildren = 1020;

/// The most units that names can have.
inline constexpr std::size_t kLongestKeyName = 255;
inline constexpr std::size_t kLongestValueName = 16383;

/// What `RegCreateKeyEx` did.
enum class KeyDisposition : std::uint32_t {
    none = 0,
    createdNewKey = 1,
    openedExistingKey = 2,
};

/// What `RegQueryInfoKey` tells. Lengths are in units of the form that is asked, without a NUL.
struct KeyInformation {
    std::uint32_t subKeys = 0;
    std::uint32_t longestSubKey = 0;
    std::uint32_t values = 0;
    std::uint32_t longestValueName = 0;
    std::uint32_t longestValue = 0;  ///< bytes
};
void describe(std::string& out, const KeyInformation& information);

}  // namespace orvane::platform
