#include "support/host_system.h"

#include "frame/binary_file.h"
#include "platform/kernel32.h"
#include "support/raised_error.h"
#include "support/recorder.h"

#include <gtest/gtest.h>

#include <string>

namespace orvane {
namespace {

using platform::kernel32;
using platform::SystemVersion;
using test::ScopedTarget;

/// Makes the platform tell this version for the object's lifetime.
class HostIs {
public:
    explicit HostIs(SystemVersion version)
        : fake_(kernel32.GetVersionExA, [version](SystemVersion& out) {
              out = version;
              return true;
          }) {}

private:
    ScopedTarget<bool(SystemVersion&)> fake_;
};

SystemVersion nine(std::uint32_t minor, std::uint32_t build, std::string servicePack = {}) {
    return {4, minor, build, 1, std::move(servicePack), {}};
}

SystemVersion nt(std::uint32_t major, std::uint32_t minor, std::uint32_t build,
                 std::string servicePack = {}) {
    return {major, minor, build, 2, std::move(servicePack), {}};
}

const SystemVersion kDebian = {4, 19, 0, 2, {}, "Debian GNU/Linux 12 (bookworm)"};

WString shortNameOf(SystemVersion version) {
    const HostIs host(std::move(version));
    return nqGetHostOSShortName();
}

TEST(HostName, KnowsTheReleasesOfBothLines) {
    EXPECT_EQ(shortNameOf(nine(0, 0x040003B6)), u"Windows 95");
    EXPECT_EQ(shortNameOf(nine(10, 0x040A07CE)), u"Windows 98");
    EXPECT_EQ(shortNameOf(nine(10, 0x040A08AE)), u"Windows 98 SE");
    EXPECT_EQ(shortNameOf(nine(90, 0x045A0BB8)), u"Windows Me");
    EXPECT_EQ(shortNameOf(nt(4, 0, 1381)), u"Windows NT 4.0");
    EXPECT_EQ(shortNameOf(nt(5, 0, 2195)), u"Windows 2000");
    EXPECT_EQ(shortNameOf(nt(5, 1, 2600)), u"Windows XP");
    EXPECT_EQ(shortNameOf(nt(5, 2, 3790)), u"Windows Server 2003");
    EXPECT_EQ(shortNameOf(nt(6, 0, 6002)), u"Windows Vista");
    EXPECT_EQ(shortNameOf(nt(6, 1, 7601)), u"Windows 7");
    EXPECT_EQ(shortNameOf(nt(6, 2, 9200)), u"Windows 8");
    EXPECT_EQ(shortNameOf(nt(6, 3, 9600)), u"Windows 8.1");
    EXPECT_EQ(shortNameOf(nt(10, 0, 19045)), u"Windows 10");
    EXPECT_EQ(shortNameOf(nt(10, 0, 22631)), u"Windows 11");
}

TEST(HostName, OfAnUnknownLineIsItsVersion) {
    EXPECT_EQ(shortNameOf({3, 10, 0, 0, {}, {}}), u"Windows 3.10");
}

TEST(HostName, InShortHasNoRoundBrackets) {
    EXPECT_EQ(shortNameOf(kDebian), u"Debian GNU/Linux 12");
}

TEST(HostName, InFullHasServicePackAndVersion) {
    const HostIs host(nt(5, 1, 2600, "Service Pack 3"));
    EXPECT_EQ(nqGetHostOSFullName(true, true), u"Microsoft Windows XP Service Pack 3 [5.1.2600]");
    EXPECT_EQ(nqGetHostOSFullName(true, false), u"Microsoft Windows XP Service Pack 3");
    EXPECT_EQ(nqGetHostOSFullName(false, true), u"Microsoft Windows XP [5.1.2600]");
    EXPECT_EQ(nqGetHostOSFullName(false, false), u"Microsoft Windows XP");
}

TEST(HostName, InFullTakesTheBuildOfThe9xLineFromItsLowHalf) {
    const HostIs host(nine(10, 0x040A08AE, " A "));
    EXPECT_EQ(nqGetHostOSFullName(true, true), u"Microsoft Windows 98 SE A [4.10.2222]");
}

TEST(HostName, InFullIsThePlatformsOwnWhereItHasOne) {
    const HostIs host(kDebian);
    EXPECT_EQ(nqGetHostOSFullName(true, true), u"Debian GNU/Linux 12 (bookworm) [4.19.0]");
}

TEST(HostName, OfThisHostIsThere) {
    EXPECT_FALSE(nqGetHostOSShortName().empty());
    EXPECT_GT(nqGetHostOSFullName(true, true).size(), nqGetHostOSShortName().size());
}

TEST(HostFamily, Of9xIsNotNt) {
    const HostIs host(nine(0, 950));
    EXPECT_TRUE(nqIsHostWin9x());
    EXPECT_FALSE(nqIsHostWinNT());
    EXPECT_FALSE(nqIsHostWin98_OrHigher());
    EXPECT_FALSE(nqIsHostWin2000_OrHigher());
}

TEST(HostFamily, OfWindows98AndMeReachesWindows98) {
    for (const std::uint32_t minor : {10U, 90U}) {
        const HostIs host(nine(minor, 1998));
        EXPECT_TRUE(nqIsHostWin9x());
        EXPECT_TRUE(nqIsHostWin98_OrHigher());
        EXPECT_FALSE(nqIsHostWin2000_OrHigher());
    }
}

TEST(HostFamily, OfNt4ReachesNeither98Nor2000) {
    const HostIs host(nt(4, 0, 1381));
    EXPECT_FALSE(nqIsHostWin9x());
    EXPECT_TRUE(nqIsHostWinNT());
    EXPECT_FALSE(nqIsHostWin98_OrHigher());
    EXPECT_FALSE(nqIsHostWin2000_OrHigher());
}

TEST(HostFamily, OfWindows2000AndLaterReachesBoth) {
    for (const std::uint32_t major : {5U, 6U, 10U}) {
        const HostIs host(nt(major, 0, 2195));
        EXPECT_FALSE(nqIsHostWin9x());
        EXPECT_TRUE(nqIsHostWinNT());
        EXPECT_TRUE(nqIsHostWin98_OrHigher());
        EXPECT_TRUE(nqIsHostWin2000_OrHigher());
    }
}

TEST(HostFamily, OfASystemOutsideTheLinesReachesAllWhateverItsVersion) {
    const HostIs host(kDebian);
    EXPECT_FALSE(nqIsHostWin9x());
    EXPECT_TRUE(nqIsHostWinNT());
    EXPECT_TRUE(nqIsHostWin98_OrHigher());
    EXPECT_TRUE(nqIsHostWin2000_OrHigher());
}

TEST(HostFamily, RaisesThePlatformsFailure) {
    ScopedTarget fake(kernel32.GetVersionExA, [](SystemVersion&) {
        platform::setLastError(platform::kErrorAccessDenied);
        return false;
    });
    const std::int32_t expected = runtimeErrorFor(platform::kErrorAccessDenied);
    EXPECT_EQ(test::raisedBy([] { nqIsHostWin9x(); }), expected);
    EXPECT_EQ(test::raisedBy([] { nqIsHostWinNT(); }), expected);
    EXPECT_EQ(test::raisedBy([] { nqIsHostWin98_OrHigher(); }), expected);
    EXPECT_EQ(test::raisedBy([] { nqIsHostWin2000_OrHigher(); }), expected);
    EXPECT_EQ(test::raisedBy([] { nqGetHostOSShortName(); }), expected);
    EXPECT_EQ(test::raisedBy([] { nqGetHostOSFullName(true, true); }), expected);
}

}  // namespace
}  // namespace orvane
