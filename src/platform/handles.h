#pragma once

#include <cstdint>

/// Platform handles as plain numbers of 32 bits, each kind a type of its own. Zero is none.
/// On Windows they are the system's; on Linux they are entries of a table with generations, so
/// that a handle that was closed is refused with `ERROR_INVALID_HANDLE` instead of meaning
/// something else.
namespace orvane::platform {

enum class FileHandle : std::uint32_t { none = 0 };
enum class ModuleHandle : std::uint32_t { none = 0 };
enum class BitmapHandle : std::uint32_t { none = 0 };
enum class BrushHandle : std::uint32_t { none = 0 };
enum class PenHandle : std::uint32_t { none = 0 };
enum class DeviceContext : std::uint32_t { none = 0 };
enum class IconHandle : std::uint32_t { none = 0 };
enum class MutexHandle : std::uint32_t { none = 0 };
enum class DesktopHandle : std::uint32_t { none = 0 };
enum class RegistryKey : std::uint32_t { none = 0 };
enum class WindowHandle : std::uint32_t { none = 0 };

/// What a device context draws with or on: a bitmap, a brush or a pen, whichever it was made of.
struct GdiObject {
    std::uint32_t number = 0;

    constexpr GdiObject() = default;
    constexpr GdiObject(BitmapHandle bitmap) : number(static_cast<std::uint32_t>(bitmap)) {}
    constexpr GdiObject(BrushHandle brush) : number(static_cast<std::uint32_t>(brush)) {}
    constexpr GdiObject(PenHandle pen) : number(static_cast<std::uint32_t>(pen)) {}

    constexpr bool isNone() const { return number == 0; }
    friend constexpr bool operator==(GdiObject, GdiObject) = default;
};

inline constexpr std::uint32_t kErrorSuccess = 0;
inline constexpr std::uint32_t kErrorInvalidFunction = 1;
inline constexpr std::uint32_t kErrorFileNotFound = 2;
inline constexpr std::uint32_t kErrorPathNotFound = 3;
inline constexpr std::uint32_t kErrorTooManyOpenFiles = 4;
inline constexpr std::uint32_t kErrorAccessDenied = 5;
inline constexpr std::uint32_t kErrorInvalidHandle = 6;
inline constexpr std::uint32_t kErrorNotEnoughMemory = 8;
inline constexpr std::uint32_t kErrorSharingViolation = 32;
inline constexpr std::uint32_t kErrorFileExists = 80;
inline constexpr std::uint32_t kErrorInvalidParameter = 87;
inline constexpr std::uint32_t kErrorDiskFull = 112;
inline constexpr std::uint32_t kErrorInsufficientBuffer = 122;
inline constexpr std::uint32_t kErrorInvalidName = 123;
inline constexpr std::uint32_t kErrorModuleNotFound = 126;
inline constexpr std::uint32_t kErrorProcedureNotFound = 127;
inline constexpr std::uint32_t kErrorAlreadyExists = 183;

}  // namespace orvane::platform
