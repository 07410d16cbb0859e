#pragma once

#include "platform/handles.h"
#include "platform/operation.h"

/// The platform's error numbers for what the system here reports in `errno`.
namespace orvane::platform {

inline constexpr std::uint32_t kErrorNotSameDevice = 17;
inline constexpr std::uint32_t kErrorWriteProtect = 19;
inline constexpr std::uint32_t kErrorNotReady = 21;
inline constexpr std::uint32_t kErrorSeek = 25;
inline constexpr std::uint32_t kErrorGenFailure = 31;
inline constexpr std::uint32_t kErrorBrokenPipe = 109;
inline constexpr std::uint32_t kErrorNegativeSeek = 131;
inline constexpr std::uint32_t kErrorDirNotEmpty = 145;
inline constexpr std::uint32_t kErrorFilenameExcedRange = 206;
inline constexpr std::uint32_t kErrorFileTooLarge = 223;
inline constexpr std::uint32_t kErrorDirectory = 267;
inline constexpr std::uint32_t kErrorMessageNotFound = 317;
inline constexpr std::uint32_t kErrorIoDevice = 1117;
inline constexpr std::uint32_t kErrorTooManyLinks = 1142;
inline constexpr std::uint32_t kErrorNoneMapped = 1332;
inline constexpr std::uint32_t kErrorCantResolveFilename = 1921;

/// The platform's number for an `errno` value; `kErrorGenFailure` for one that has no counterpart.
std::uint32_t errorFromErrno(int number);

/// Leaves `error` as the thread's last error and gives `result`, so that a failing path is one
/// line.
template <class Result>
Result failWith(std::uint32_t error, Result result) {
    setLastError(error);
    return result;
}

}  // namespace orvane::platform
