#pragma once

#include "frame/values/wstring.h"

#include <cstdint>
#include <exception>
#include <new>
#include <optional>

namespace orvane {

/// Run-time error numbers, as hosts see them.
namespace error {
inline constexpr std::int32_t kInvalidArgument = 5;
inline constexpr std::int32_t kOverflow = 6;
inline constexpr std::int32_t kOutOfMemory = 7;
inline constexpr std::int32_t kSubscriptOutOfRange = 9;
inline constexpr std::int32_t kArrayLocked = 10;
inline constexpr std::int32_t kDivisionByZero = 11;
inline constexpr std::int32_t kTypeMismatch = 13;
inline constexpr std::int32_t kInternal = 51;
inline constexpr std::int32_t kBadFileNumber = 52;
inline constexpr std::int32_t kFileNotFound = 53;
inline constexpr std::int32_t kFileAlreadyOpen = 55;
inline constexpr std::int32_t kDeviceError = 57;
inline constexpr std::int32_t kFileExists = 58;
inline constexpr std::int32_t kDiskFull = 61;
inline constexpr std::int32_t kBadRecordNumber = 63;
inline constexpr std::int32_t kBadFileName = 64;
inline constexpr std::int32_t kTooManyFiles = 67;
inline constexpr std::int32_t kPermissionDenied = 70;
inline constexpr std::int32_t kPathAccess = 75;
inline constexpr std::int32_t kPathNotFound = 76;
inline constexpr std::int32_t kObjectNotSet = 91;
inline constexpr std::int32_t kInvalidUseOfNull = 94;
inline constexpr std::int32_t kInvalidPropertyValue = 380;
inline constexpr std::int32_t kObjectRequired = 424;
inline constexpr std::int32_t kCantCreateObject = 429;
inline constexpr std::int32_t kNoSuchMember = 438;
inline constexpr std::int32_t kActionNotSupported = 445;
inline constexpr std::int32_t kNoNamedArguments = 446;
inline constexpr std::int32_t kNamedArgumentNotFound = 448;
inline constexpr std::int32_t kArgumentNotOptional = 449;
inline constexpr std::int32_t kWrongNumberOfArguments = 450;
inline constexpr std::int32_t kNotACollection = 451;
inline constexpr std::int32_t kEntryPointNotFound = 453;
inline constexpr std::int32_t kKeyAlreadyUsed = 457;
inline constexpr std::int32_t kInvalidPicture = 481;
/// The runtime's object-error base.
inline constexpr std::int32_t kObjectErrorBase = static_cast<std::int32_t>(0x80040000);
}  // namespace error

/// The library's name as the source of its errors.
inline constexpr const char16_t* kErrorSource = u"OrvBase0301";

/// A run-time error on its way to the caller.
class RuntimeError : public std::exception {
public:
    /// An error of this number; without a description it has the runtime's own.
    explicit RuntimeError(std::int32_t errorNumber, WString text = {});

    const char* what() const noexcept override { return "run-time error"; }

    std::int32_t number;
    WString description;
    WString source = kErrorSource;
    WString helpFile;
    std::int32_t helpContext = 0;
};

/// The runtime's text for an error number; numbers without one have a common text.
WString standardDescription(std::int32_t number);

/// Raises a run-time error.
[[noreturn]] void raise(std::int32_t number, WString description = {});

/// Runs statements with errors ignored: each call is one statement, a failing one is skipped and
/// leaves its error here until `clear`.
///
///     ErrorTrap trap;
///     trap([&] { lower = array.lowerBound(); });
///     if (trap.number() != 0) return {};
class ErrorTrap {
public:
    /// Runs one statement; false when it failed.
    template <class Statement>
    bool operator()(Statement&& statement) {
        try {
            statement();
            return true;
        } catch (const RuntimeError& failure) {
            failure_ = failure;
        } catch (const std::bad_alloc&) {
            failure_ = RuntimeError(error::kOutOfMemory);
        }
        return false;
    }

    /// The number of the last error, 0 when there was none since the start or `clear`.
    std::int32_t number() const { return failure_ ? failure_->number : 0; }
    const std::optional<RuntimeError>& failure() const { return failure_; }
    void clear() { failure_.reset(); }

private:
    std::optional<RuntimeError> failure_;
};

}  // namespace orvane
