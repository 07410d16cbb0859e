#include "support/host_system.h"

#include "frame/values/codepage.h"
#include "frame/values/conversions.h"
#include "platform/kernel32.h"
#include "support/platform_failure.h"
#include "support/text.h"

#include <algorithm>
#include <array>
#include <compare>

namespace orvane {
namespace {

using platform::SystemVersion;

// `platformId` of OSVERSIONINFOA.
constexpr std::uint32_t kLine9x = 1;
constexpr std::uint32_t kLineNT = 2;

struct Release {
    std::uint32_t line;
    std::uint32_t major;
    std::uint32_t minor;
    std::uint32_t build;
    const char16_t* name;
};

// Newest first within a line; a system has the name of the first release that it reaches.
constexpr std::array kReleases = {
    Release{kLineNT, 10, 0, 22000, u"Windows 11"},     Release{kLineNT, 10, 0, 0, u"Windows 10"},
    Release{kLineNT, 6, 3, 0, u"Windows 8.1"},         Release{kLineNT, 6, 2, 0, u"Windows 8"},
    Release{kLineNT, 6, 1, 0, u"Windows 7"},           Release{kLineNT, 6, 0, 0, u"Windows Vista"},
    Release{kLineNT, 5, 2, 0, u"Windows Server 2003"}, Release{kLineNT, 5, 1, 0, u"Windows XP"},
    Release{kLineNT, 5, 0, 0, u"Windows 2000"},        Release{kLine9x, 4, 90, 0, u"Windows Me"},
    Release{kLine9x, 4, 10, 2222, u"Windows 98 SE"},   Release{kLine9x, 4, 10, 0, u"Windows 98"},
    Release{kLine9x, 4, 0, 0, u"Windows 95"},
};

SystemVersion hostSystem() {
    SystemVersion version;
    if (!platform::kernel32.GetVersionExA(version)) raisePlatformFailure();
    // The 9x line keeps its version once more in the high half of the build number.
    if (version.platformId == kLine9x) version.build &= 0xFFFF;
    return version;
}

bool reaches(const SystemVersion& version, const Release& release) {
    const std::array have = {version.major, version.minor, version.build};
    return version.platformId == release.line &&
           have >= std::array{release.major, release.minor, release.build};
}

WString numberText(std::uint32_t number) {
    return doubleToText(static_cast<double>(number));
}

WString windowsName(const SystemVersion& version) {
    const auto found = std::ranges::find_if(
        kReleases, [&](const Release& release) { return reaches(version, release); });
    if (found != kReleases.end()) return found->name;
    const WString family = version.platformId == kLineNT ? u"Windows NT " : u"Windows ";
    return family + numberText(version.major) + u"." + numberText(version.minor);
}

bool isWin2000OrHigher(const SystemVersion& version) {
    return version.platformId == kLineNT && (version.major >= 5 || !version.systemName.empty());
}

}  // namespace

WString nqGetHostOSFullName(bool withServicePack, bool withVersion) {
    const SystemVersion version = hostSystem();
    WString name = version.systemName.empty() ? u"Microsoft " + windowsName(version)
                                              : fromAnsi(version.systemName);
    const WString servicePack = nqTrimEx(fromAnsi(version.servicePack));
    if (withServicePack && !servicePack.empty()) name = name + u" " + servicePack;
    if (!withVersion) return name;
    return name + u" [" + numberText(version.major) + u"." + numberText(version.minor) + u"." +
           numberText(version.build) + u"]";
}

WString nqGetHostOSShortName() {
    const SystemVersion version = hostSystem();
    if (version.systemName.empty()) return windowsName(version);
    const WString name = fromAnsi(version.systemName);
    return nqTrimEx(name.view().substr(0, name.view().find_first_of(u"()")));
}

bool nqIsHostWin9x() {
    return hostSystem().platformId == kLine9x;
}

bool nqIsHostWinNT() {
    return hostSystem().platformId == kLineNT;
}

bool nqIsHostWin98_OrHigher() {
    const SystemVersion version = hostSystem();
    if (version.platformId != kLine9x) return isWin2000OrHigher(version);
    return version.major > 4 || (version.major == 4 && version.minor >= 10);
}

bool nqIsHostWin2000_OrHigher() {
    return isWin2000OrHigher(hostSystem());
}

}  // namespace orvane
