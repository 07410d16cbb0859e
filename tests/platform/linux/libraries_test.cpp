#include "platform/linux/libraries.h"

#include "platform/kernel32.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <filesystem>

namespace orvane::platform {
namespace {

using LibraryFolder = test::TempDirTest;

TEST_F(LibraryFolder, ZlibInAFolderIsLookedForUnderItsNameHere) {
    EXPECT_EQ(kernel32.LoadLibraryA(dir_.file("ZLibStdCall.DLL")), ModuleHandle::none);
    const ModuleHandle system = kernel32.LoadLibraryA("ZLibStdCall.DLL");
    ASSERT_NE(system, ModuleHandle::none);
    std::filesystem::copy_file(kernel32.GetModuleFileNameA(system), dir_.file("libz.so.1"));
    const ModuleHandle own = kernel32.LoadLibraryA(dir_.file("ZLibStdCall.DLL"));
    EXPECT_EQ(kernel32.GetModuleFileNameA(own), dir_.file("libz.so.1"));
    EXPECT_TRUE(kernel32.FreeLibrary(own));
    EXPECT_TRUE(kernel32.FreeLibrary(system));
}

TEST_F(LibraryFolder, FileThatIsNoLibraryIsError126) {
    dir_.write("libz.so.1", "no library");
    EXPECT_EQ(kernel32.LoadLibraryA(dir_.file("ZLibStdCall.DLL")), ModuleHandle::none);
    EXPECT_EQ(lastError(), kErrorModuleNotFound);
}

TEST_F(LibraryFolder, LibraryThatARelativeNameLoadedKeepsItsFileWhenTheProcessGoesElsewhere) {
    const ModuleHandle system = kernel32.LoadLibraryA("ZLibStdCall.DLL");
    std::filesystem::copy_file(kernel32.GetModuleFileNameA(system), dir_.file("libown.so"));
    const std::filesystem::path before = std::filesystem::current_path();
    std::filesystem::current_path(dir_.path());
    const ModuleHandle own = kernel32.LoadLibraryA("./libown.so");
    EXPECT_EQ(kernel32.GetModuleFileNameA(own), dir_.file("libown.so"));
    std::filesystem::current_path(before);
    EXPECT_EQ(kernel32.GetModuleFileNameA(own), dir_.file("libown.so"));
    EXPECT_EQ(kernel32.GetModuleFileNameA(kernel32.GetModuleHandleA("libown.so")),
              dir_.file("libown.so"));
    // Also when the name means nothing any more.
    std::filesystem::remove(dir_.file("libown.so"));
    EXPECT_EQ(kernel32.GetModuleFileNameA(own), dir_.file("libown.so"));
    EXPECT_TRUE(kernel32.FreeLibrary(own));
    EXPECT_TRUE(kernel32.FreeLibrary(system));
}

TEST(LoadedLibrary, HandleThatWasFreedIsStale) {
    const ModuleHandle library = kernel32.LoadLibraryA("ZLibStdCall.DLL");
    EXPECT_TRUE(kernel32.FreeLibrary(library));
    EXPECT_FALSE(kernel32.FreeLibrary(library));
    EXPECT_EQ(lastError(), kErrorInvalidHandle);
    EXPECT_EQ(kernel32.GetModuleFileNameA(library), "");
}

TEST(LoadedLibrary, HandleThatWasOnlyAskedForIsNotFreed) {
    static const char here = 0;
    const ModuleHandle own = kernel32.GetModuleHandleExA(&here);
    EXPECT_FALSE(kernel32.FreeLibrary(own));
    EXPECT_EQ(lastError(), kErrorInvalidHandle);
    EXPECT_NE(kernel32.GetModuleFileNameA(own), "");
}

TEST(LoadedLibrary, EmptyNameIsNotTheProgram) {
    EXPECT_EQ(kernel32.LoadLibraryA(""), ModuleHandle::none);
}

TEST(LoadedLibrary, OtherLibrariesLoadUnderTheirOwnNames) {
    const ModuleHandle library = kernel32.LoadLibraryA("libm.so.6");
    EXPECT_NE(library, ModuleHandle::none);
    EXPECT_TRUE(kernel32.FreeLibrary(library));
}

}  // namespace
}  // namespace orvane::platform
