#include "network/UserAgent.h"

#include "application/AppObject.h"
#include "network/Transliterate.h"
#include "support/host_system.h"
#include "support/versions.h"

namespace orvane {

WString BuildUserAgentString(WStringView title, std::int32_t major, std::int32_t minor,
                             std::int32_t revision) {
    return Transliterate(title) + u" " + nqFormatVersion(major, minor, revision) + u" (" +
           nqGetHostOSShortName() + u")";
}

WString BuildUserAgent(const Object& app) {
    const AppObject application(app);
    const WString title = application.Title();
    const std::int32_t major = application.Major();
    const std::int32_t minor = application.Minor();
    return BuildUserAgentString(title, major, minor, application.Revision());
}

}  // namespace orvane
