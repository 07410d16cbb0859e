#include "frame/errors.h"

#include <algorithm>
#include <array>

namespace orvane {
namespace {

struct StandardText {
    std::int32_t number;
    const char16_t* text;
};

// Sorted by number.
constexpr std::array kStandardTexts = {
    StandardText{error::kInvalidArgument, u"Invalid procedure call or argument"},
    StandardText{error::kOverflow, u"Overflow"},
    StandardText{error::kOutOfMemory, u"Out of memory"},
    StandardText{error::kSubscriptOutOfRange, u"Subscript out of range"},
    StandardText{error::kArrayLocked, u"This array is fixed or temporarily locked"},
    StandardText{error::kDivisionByZero, u"Division by zero"},
    StandardText{error::kTypeMismatch, u"Type mismatch"},
    StandardText{error::kInternal, u"Internal error"},
    StandardText{error::kBadFileNumber, u"Bad file name or number"},
    StandardText{error::kFileNotFound, u"File not found"},
    StandardText{error::kFileAlreadyOpen, u"File already open"},
    StandardText{error::kDeviceError, u"Device I/O error"},
    StandardText{error::kFileExists, u"File already exists"},
    StandardText{error::kDiskFull, u"Disk full"},
    StandardText{error::kBadRecordNumber, u"Bad record number"},
    StandardText{error::kBadFileName, u"Bad file name"},
    StandardText{error::kTooManyFiles, u"Too many files"},
    StandardText{error::kPermissionDenied, u"Permission denied"},
    StandardText{error::kPathAccess, u"Path/File access error"},
    StandardText{error::kPathNotFound, u"Path not found"},
    StandardText{error::kObjectNotSet, u"Object variable not set"},
    StandardText{error::kInvalidUseOfNull, u"Invalid use of Null"},
    StandardText{error::kInvalidPropertyValue, u"Invalid property value"},
    StandardText{error::kObjectRequired, u"Object required"},
    StandardText{error::kCantCreateObject, u"Can't create object"},
    StandardText{error::kNoSuchMember, u"Object doesn't support this property or method"},
    StandardText{error::kActionNotSupported, u"Object doesn't support this action"},
    StandardText{error::kNoNamedArguments, u"Object doesn't support named arguments"},
    StandardText{error::kNamedArgumentNotFound, u"Named argument not found"},
    StandardText{error::kArgumentNotOptional, u"Argument not optional"},
    StandardText{error::kWrongNumberOfArguments,
                 u"Wrong number of arguments or invalid property assignment"},
    StandardText{error::kNotACollection, u"Object is not a collection"},
    StandardText{error::kEntryPointNotFound, u"Can't find DLL entry point"},
    StandardText{error::kKeyAlreadyUsed,
                 u"This key is already associated with an element of this collection"},
    StandardText{error::kInvalidPicture, u"Invalid picture"},
};
static_assert(std::ranges::is_sorted(kStandardTexts, {}, &StandardText::number));

}  // namespace

WString standardDescription(std::int32_t number) {
    const auto found = std::ranges::lower_bound(kStandardTexts, number, {}, &StandardText::number);
    if (found != kStandardTexts.end() && found->number == number) return found->text;
    return u"Application-defined or object-defined error";
}

RuntimeError::RuntimeError(std::int32_t errorNumber, WString text)
    : number(errorNumber),
      description(text.empty() ? standardDescription(errorNumber) : std::move(text)) {}

void raise(std::int32_t number, WString description) {
    throw RuntimeError(number, std::move(description));
}

}  // namespace orvane
