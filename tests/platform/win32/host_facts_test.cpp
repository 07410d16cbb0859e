#include "platform/advapi32.h"
#include "platform/kernel32.h"
#include "platform/live_objects.h"
#include "platform/winmm.h"

#include <gmock/gmock.h>

#include <set>

namespace orvane::platform {
namespace {

using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;

TEST(HostFacts, TheFullUserNameEndsWithTheLogonName) {
    const std::string user = advapi32.GetUserNameA();
    EXPECT_THAT(user, Not(IsEmpty()));
    EXPECT_THAT(user, Not(HasSubstr(std::string(1, '\0'))));
    EXPECT_THAT(secur32.GetUserNameExA(), EndsWith("\\" + user));
}

TEST(HostFacts, TheComputerHasAName) {
    EXPECT_THAT(kernel32.GetComputerNameA(), Not(IsEmpty()));
}

TEST(HostFacts, TheSystemIsOfTheNtLine) {
    SystemVersion version;
    ASSERT_TRUE(kernel32.GetVersionExA(version));
    EXPECT_EQ(version.platformId, 2u);
    EXPECT_GE(version.major, 5u);
    EXPECT_EQ(version.systemName, "");
}

TEST(HostFacts, MemoryFiguresAgree) {
    MemoryStatus status;
    ASSERT_TRUE(kernel32.GlobalMemoryStatusEx(status));
    EXPECT_GT(status.totalPhysical, status.availablePhysical);
    EXPECT_LE(status.memoryLoad, 100u);
    EXPECT_GE(status.totalVirtual, 0x7FFE0000u);
}

TEST(HostFacts, ModulesAreFoundByName) {
    const ModuleHandle module = kernel32.GetModuleHandleA("kernel32.dll");
    ASSERT_NE(module, ModuleHandle::none);
    EXPECT_THAT(kernel32.GetModuleFileNameA(module), EndsWith("kernel32.dll"));
    EXPECT_THAT(kernel32.GetModuleFileNameA(ModuleHandle::none),
                EndsWith("test_platform_win32.exe"));
    EXPECT_EQ(kernel32.GetModuleHandleA("no such module"), ModuleHandle::none);
    EXPECT_EQ(lastError(), kErrorModuleNotFound);
}

TEST(HostFacts, TheCommandLineNamesTheProgram) {
    const std::u16string line = kernel32.GetCommandLineW();
    EXPECT_NE(line.find(u"test_platform_win32"), std::u16string::npos);
}

TEST(Messages, TheSystemWordsItsErrors) {
    EXPECT_THAT(kernel32.FormatMessageA(ModuleHandle::none, kErrorFileNotFound), EndsWith("\r\n"));
    EXPECT_EQ(kernel32.FormatMessageA(ModuleHandle::none, 0x2FFFFFFF), "");
    EXPECT_NE(lastError(), kErrorSuccess);
}

TEST(Messages, AModuleWithoutTheNumberGivesNone) {
    const ModuleHandle module = kernel32.GetModuleHandleA("kernel32.dll");
    EXPECT_EQ(kernel32.FormatMessageA(module, 0x2FFFFFFF), "");
}

TEST(Messages, TheMultimediaLibraryWordsItsErrors) {
    constexpr std::uint32_t kMciInvalidDeviceId = 257;
    EXPECT_THAT(winmm.mciGetErrorStringA(kMciInvalidDeviceId), Not(IsEmpty()));
    EXPECT_EQ(winmm.mciGetErrorStringA(0x7FFF), "");
    EXPECT_EQ(lastError(), kErrorInvalidParameter);
}

void expectEveryByteHasOneUnit(const std::array<char16_t, 256>& page) {
    EXPECT_EQ(std::set<char16_t>(page.begin(), page.end()).size(), page.size());
    for (char16_t unit = 0; unit < 0x80; ++unit)
        EXPECT_EQ(page[unit], unit);
}

TEST(CodePages, GiveEveryByteAUnitOfItsOwn) {
    expectEveryByteHasOneUnit(ansiCodePage());
    expectEveryByteHasOneUnit(oemCodePage());
}

// The environment that tests run in is a Russian one: 1251 and 866.
TEST(CodePages, AreThoseOfTheSystem) {
    EXPECT_EQ(ansiCodePage()[0xC0], u'\u0410');
    EXPECT_EQ(ansiCodePage()[0x98], u'\u0098');
    EXPECT_EQ(ansiCodePage()[0x8B], u'\u2039');
    EXPECT_EQ(oemCodePage()[0x80], u'\u0410');
    EXPECT_EQ(oemCodePage()[0xFF], u'\u00A0');
}

TEST(LiveObjects, AreTheSystemsOwn) {
    EXPECT_EQ(livePlatformObjects(), 0u);
}

}  // namespace
}  // namespace orvane::platform
