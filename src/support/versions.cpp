#include "support/versions.h"

#include "frame/errors.h"
#include "frame/values/conversions.h"

namespace orvane {
namespace {

WString filled(std::int32_t part, std::size_t width) {
    std::u16string digits = longToText(part).units();
    const std::size_t sign = part < 0 ? 1U : 0U;
    const std::size_t count = digits.size() - sign;
    if (count < width) digits.insert(sign, width - count, u'0');
    return digits;
}

}  // namespace

WString nqFormatVersion(std::int32_t major, std::int32_t minor, std::int32_t revision) {
    return longToText(major) + u"." + filled(minor, 2) + u"." + filled(revision, 4);
}

WString nqFormatVersionShort(std::int32_t major, std::int32_t minor) {
    if (major < 0 || minor < 0) raise(error::kInvalidArgument);
    return longToText(major) + u"." + longToText(minor);
}

}  // namespace orvane
