#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <dlfcn.h>
#include <filesystem>
#include <string>
#include <sys/wait.h>
#include <zlib.h>

/// Where zlib is found by a process that finds none where the system looks.
namespace orvane {
namespace {

namespace fs = std::filesystem;

/// A folder with the library, and one whose file of zlib's name is none and that is searched first.
class GZipPlaces : public test::TempDirTest {
protected:
    void SetUp() override {
        for (const char* const folder : {"searched", "library", "library/deeper", "elsewhere"})
            fs::create_directory(dir_.path() / folder);
        dir_.write("searched/libz.so.1", "no library");
        fs::copy_file(ORVANE_LIBRARY_FILE, dir_.path() / "library" / kLibrary);
    }
    void copyZlibTo(const char* folder) {
        Dl_info info{};
        ASSERT_NE(::dladdr(reinterpret_cast<const void*>(&::zlibVersion), &info), 0);
        fs::copy_file(info.dli_fname, dir_.path() / folder / "libz.so.1");
    }
    /// What the host prints that starts in `folder`, loads `library` and goes to "elsewhere".
    std::string answer(const std::string& folder, const std::string& library) {
        const std::string command = "cd '" + dir_.file(folder) + "' && LD_LIBRARY_PATH='" +
                                    dir_.file("searched") + "' " ORVANE_MOVING_HOST " '" + library +
                                    "' '" + dir_.file("elsewhere") + "' > '" + dir_.file("answer") +
                                    "'";
        const int status = std::system(command.c_str());
        EXPECT_TRUE(WIFEXITED(status) && WEXITSTATUS(status) == 0) << command;
        const auto bytes = dir_.read("answer");
        return {bytes.begin(), bytes.end()};
    }

    static constexpr const char* kLibrary = "libOrvaneBase0301.so";
};

TEST_F(GZipPlaces, NowhereIsNotAvailable) {
    EXPECT_EQ(answer("library", std::string("./") + kLibrary), "0\n");
    copyZlibTo("elsewhere");
    EXPECT_EQ(answer("library", std::string("./") + kLibrary), "0\n");
}

TEST_F(GZipPlaces, BesideTheLibraryIsFoundFromAnyFolder) {
    copyZlibTo("library");
    EXPECT_EQ(answer("library", dir_.file("library/") + kLibrary), "1\n");
    EXPECT_EQ(answer("library", std::string("./") + kLibrary), "1\n");
    EXPECT_EQ(answer("library/deeper", std::string("../") + kLibrary), "1\n");
    EXPECT_EQ(answer("elsewhere", std::string("../library/") + kLibrary), "1\n");
}

TEST_F(GZipPlaces, NameThatMeansAnotherFileInTheNextFolderIsNotTakenForIt) {
    copyZlibTo("library");
    fs::create_directory(dir_.path() / "elsewhere/library");
    dir_.write(std::string("elsewhere/library/") + kLibrary, "no library");
    EXPECT_EQ(answer(".", std::string("library/") + kLibrary), "1\n");
}

}  // namespace
}  // namespace orvane
