#include "platform/kernel32.h"
#include "support/temp_dir.h"

#include <array>

namespace orvane::platform {
namespace {

using FilesTest = test::TempDirTest;

TEST_F(FilesTest, AnOpenFileCanBeReadAndWrittenByOthers) {
    const std::string name = dir_.write("a", "text");
    const FileHandle first =
        kernel32.CreateFileA(name, FileAccess::readWrite, FileDisposition::openExisting);
    const FileHandle second =
        kernel32.CreateFileA(name, FileAccess::write, FileDisposition::openExisting);
    EXPECT_NE(first, FileHandle::none);
    EXPECT_NE(second, FileHandle::none);
    EXPECT_TRUE(kernel32.CloseHandle(first));
    EXPECT_TRUE(kernel32.CloseHandle(second));
}

TEST_F(FilesTest, FullNamesHaveNoDots) {
    EXPECT_EQ(kernel32.GetFullPathNameA("C:\\a\\.\\b\\..\\c"), "C:\\a\\c");
    EXPECT_EQ(kernel32.GetFullPathNameA(""), "");
    EXPECT_EQ(lastError(), kErrorInvalidName);
}

TEST_F(FilesTest, ALongFullNameIsWholeOrRefused) {
    const std::string name = "C:\\" + std::string(200, 'a') + "\\" + std::string(200, 'b');
    setLastError(kErrorSuccess);
    const std::string full = kernel32.GetFullPathNameA(name);
    // Windows gives the name; Wine has no room for more than 260 characters and fails.
    constexpr std::uint32_t kNameTooLong = 206;
    if (full.empty()) {
        EXPECT_EQ(lastError(), kNameTooLong);
    } else {
        EXPECT_EQ(full, name);
    }
}

TEST_F(FilesTest, ATemporaryNameStartsWithThePrefix) {
    const std::string name = kernel32.GetTempFileNameA(dir_.name(), "TMP");
    ASSERT_FALSE(name.empty());
    EXPECT_EQ(name.substr(0, dir_.name().size() + 4), dir_.name() + "\\TMP");
    EXPECT_EQ(kernel32.GetTempFileNameA(dir_.file("nowhere"), "TMP"), "");
    EXPECT_NE(lastError(), kErrorSuccess);
}

TEST_F(FilesTest, APositionBeyondFourGigabytesIsKept) {
    const std::string name = dir_.write("a", "text");
    const FileHandle file =
        kernel32.CreateFileA(name, FileAccess::read, FileDisposition::openExisting);
    std::array<std::uint8_t, 4> block{};
    std::uint32_t read = 9;
    EXPECT_TRUE(kernel32.SetFilePointer(file, 0x100000000));
    EXPECT_TRUE(kernel32.ReadFile(file, block, read));
    EXPECT_EQ(read, 0u);
    EXPECT_FALSE(kernel32.SetFilePointer(file, -1));
    EXPECT_TRUE(kernel32.CloseHandle(file));
    EXPECT_FALSE(kernel32.ReadFile(file, block, read));
    EXPECT_EQ(lastError(), kErrorInvalidHandle);
}

}  // namespace
}  // namespace orvane::platform
