#include "support/modules.h"

#include "frame/binary_file.h"
#include "platform/kernel32.h"
#include "support/file_names.h"
#include "support/raised_error.h"
#include "support/recorder.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

using platform::kernel32;
using platform::ModuleHandle;
using test::raisedBy;
using test::ScopedTarget;

constexpr ModuleHandle kSomeModule{0x1000};

std::string moduleNames(ModuleHandle module) {
    if (module == ModuleHandle::none) return "C:\\PROGRA~1\\HOST.EXE";
    return module == kSomeModule ? "C:\\LIBRAR~1.DLL" : "";
}

std::string longNames(const std::string& name) {
    return name == "C:\\PROGRA~1\\HOST.EXE" ? "C:\\Program Files\\Host.exe" : "";
}

TEST(ExeModule, FullFileNameIsThisProgram) {
    const WString name = nqGetEXEModuleFullFileName();
    EXPECT_TRUE(nqIsFileExist(name));
    EXPECT_NE(name.view().find(u"test_support_functions"), WStringView::npos);
}

TEST(ExeModule, FullFileNameIsAsThePlatformGivesIt) {
    ScopedTarget names(kernel32.GetModuleFileNameA, moduleNames);
    ScopedTarget longer(kernel32.GetLongPathNameA, longNames);
    EXPECT_EQ(nqGetEXEModuleFullFileName(), u"C:\\PROGRA~1\\HOST.EXE");
}

TEST(ExeModule, PrettyFileNameIsTheLongForm) {
    ScopedTarget names(kernel32.GetModuleFileNameA, moduleNames);
    ScopedTarget longer(kernel32.GetLongPathNameA, longNames);
    EXPECT_EQ(nqGetEXEModulePrettyFileName(), u"C:\\Program Files\\Host.exe");
}

TEST(ModulePrettyFileName, StaysAsItIsWithoutALongForm) {
    ScopedTarget names(kernel32.GetModuleFileNameA, moduleNames);
    ScopedTarget longer(kernel32.GetLongPathNameA, longNames);
    EXPECT_EQ(nqGetModulePrettyFileName(kSomeModule), u"C:\\LIBRAR~1.DLL");
}

TEST(ModulePrettyFileName, OfNoModuleIsTheExecutables) {
    EXPECT_EQ(nqGetModulePrettyFileName(ModuleHandle::none), nqGetEXEModulePrettyFileName());
}

TEST(ModulePrettyFileName, RaisesThePlatformsFailure) {
    ScopedTarget names(kernel32.GetModuleFileNameA, [](ModuleHandle) {
        platform::setLastError(platform::kErrorAccessDenied);
        return std::string();
    });
    EXPECT_EQ(raisedBy([] { nqGetModulePrettyFileName(kSomeModule); }),
              runtimeErrorFor(platform::kErrorAccessDenied));
    EXPECT_NE(raisedBy([] { nqGetEXEModuleFullFileName(); }), 0);
    EXPECT_NE(raisedBy([] { nqGetEXEModulePrettyFileName(); }), 0);
}

}  // namespace
}  // namespace orvane
