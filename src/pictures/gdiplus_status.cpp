#include "pictures/gdiplus_status.h"

#include "frame/errors.h"
#include "frame/values/conversions.h"

#include <array>

namespace orvane {
namespace {

// By status number. The spelling of number 12 is the one that hosts know.
constexpr std::array kTexts = {
    u"Unknown error",           u"Generic error",        u"Invalid parameter",
    u"Invalid picture",         u"Object busy",          u"Insufficient buffer",
    u"Not implemented",         u"Win32 error",          u"Wrong state",
    u"Operation was aborted",   u"File not found",       u"Value overflow",
    u"Accedd denied",           u"Unknown image format", u"Font family not found",
    u"Font style not found",    u"Not a TrueType font",  u"Unsupported library version",
    u"Library not initialized", u"Property not found",   u"Property not supported",
};

constexpr std::uint32_t kErrorProcedureNotFound = 127;
constexpr std::int32_t kNoEntryPoint = 453;

}  // namespace

WString GetGdiPlusStatusText(std::int32_t status) {
    if (status >= 0 && static_cast<std::size_t>(status) < kTexts.size()) {
        return kTexts[static_cast<std::size_t>(status)];
    }
    return u"Unknown error " + toText(Variant(status));
}

platform::GdiplusStatus requireBound(platform::GdiplusStatus status) {
    if (status != platform::GdiplusStatus::notBound) return status;
    if (platform::lastError() == kErrorProcedureNotFound) {
        raise(kNoEntryPoint, u"Can't find DLL entry point in GDIPlus.DLL");
    }
    raise(error::kFileNotFound, u"File not found: GDIPlus.DLL");
}

void requireOk(platform::GdiplusStatus status, WStringView what) {
    if (requireBound(status) == platform::GdiplusStatus::ok) return;
    raise(error::kObjectErrorBase,
          WString(what) + GetGdiPlusStatusText(static_cast<std::int32_t>(status)).view());
}

}  // namespace orvane
