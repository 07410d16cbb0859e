#include "support/error_texts.h"

#include "platform/kernel32.h"
#include "platform/winmm.h"
#include "support/recorder.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

using platform::kernel32;
using platform::ModuleHandle;
using test::Recorder;
using test::ScopedTarget;

constexpr ModuleHandle kSomeModule{0x1000};

TEST(ApiErrorDescription, IsTheSystemsMessageThroughTheAnsiCodePage) {
    ScopedTarget fake(kernel32.FormatMessageA, [](ModuleHandle module, std::uint32_t number) {
        return module == ModuleHandle::none && number == 5 ? std::string("\xCD\xE5\xF2.\r\n") : "";
    });
    EXPECT_EQ(nqGetAPIErrorDescription(5), u"Нет.\r\n");
    EXPECT_EQ(nqGetAPIErrorDescription(6), u"");
}

TEST(ApiErrorDescription, IsThereForACommonErrorOfThisSystem) {
    EXPECT_FALSE(nqGetAPIErrorDescription(2).empty());
}

TEST(ApiErrorDescription, IsEmptyForANumberWithoutAMessage) {
    EXPECT_EQ(nqGetAPIErrorDescription(0x2FFFFFFF), u"");
}

TEST(ApiErrorDescription, HandsOnANegativeNumberAsItsBitPattern) {
    Recorder recorder(kernel32);
    nqGetAPIErrorDescription(-2);
    EXPECT_TRUE(recorder.saw({"FormatMessageA(0, 4294967294) -> *"}));
}

TEST(ModuleErrorDescription, AsksTheModulesOwnTable) {
    ScopedTarget fake(kernel32.FormatMessageA, [](ModuleHandle module, std::uint32_t number) {
        return module == kSomeModule && number == 12007 ? std::string("no such name\r\n") : "";
    });
    EXPECT_EQ(nqGetModuleErrorDescription(kSomeModule, 12007), u"no such name\r\n");
    EXPECT_EQ(nqGetModuleErrorDescription(kSomeModule, 2), u"");
}

TEST(ModuleErrorDescription, IsEmptyForAModuleThatIsNotLoaded) {
    Recorder recorder(kernel32);
    EXPECT_EQ(nqGetModuleErrorDescription(ModuleHandle::none, 2), u"");
    EXPECT_TRUE(recorder.saw({}));
}

TEST(WinMMErrorDescription, IsTheMultimediaLibrarysMessage) {
    ScopedTarget fake(platform::winmm.mciGetErrorStringA, [](std::uint32_t number) {
        return number == 257 ? std::string("Invalid device ID.") : "";
    });
    EXPECT_EQ(nqGetWinMMErrorDescription(257), u"Invalid device ID.");
    EXPECT_EQ(nqGetWinMMErrorDescription(0), u"");
}

}  // namespace
}  // namespace orvane
