#include "platform/kernel32.h"
#include "support/temp_dir.h"

#include <array>
#include <string>
#include <vector>

// What the file operations promise on every platform.
namespace orvane::platform {
namespace {

class TableFilesTest : public test::TempDirTest {
protected:
    static FileHandle open(const std::string& name, FileAccess access,
                           FileDisposition disposition) {
        return kernel32.CreateFileA(name, access, disposition);
    }
    static std::vector<std::uint8_t> bytes(std::string_view text) {
        return {text.begin(), text.end()};
    }
};

TEST_F(TableFilesTest, WhatIsWrittenIsRead) {
    const std::string name = dir_.file("new");
    const FileHandle file = open(name, FileAccess::readWrite, FileDisposition::createNew);
    ASSERT_NE(file, FileHandle::none);
    std::uint32_t count = 0;
    EXPECT_TRUE(kernel32.WriteFile(file, bytes("one two"), count));
    EXPECT_EQ(count, 7u);
    EXPECT_EQ(kernel32.GetFileSize(file), 7);
    EXPECT_TRUE(kernel32.SetFilePointer(file, 4));
    std::array<std::uint8_t, 16> block{};
    EXPECT_TRUE(kernel32.ReadFile(file, block, count));
    EXPECT_EQ(std::string(block.begin(), block.begin() + count), "two");
    EXPECT_TRUE(kernel32.ReadFile(file, block, count));
    EXPECT_EQ(count, 0u);
    EXPECT_TRUE(kernel32.CloseHandle(file));
    EXPECT_EQ(dir_.read("new"), bytes("one two"));
}

TEST_F(TableFilesTest, ANewFileMustNotBeThere) {
    const std::string name = dir_.write("a", "text");
    EXPECT_EQ(open(name, FileAccess::write, FileDisposition::createNew), FileHandle::none);
    EXPECT_EQ(lastError(), kErrorFileExists);
    EXPECT_EQ(dir_.read("a"), bytes("text"));
}

TEST_F(TableFilesTest, CreatingAlwaysEmptiesAndOpeningAlwaysKeeps) {
    const std::string name = dir_.write("a", "text");
    const FileHandle kept = open(name, FileAccess::write, FileDisposition::openAlways);
    EXPECT_EQ(kernel32.GetFileSize(kept), 4);
    EXPECT_TRUE(kernel32.CloseHandle(kept));
    const FileHandle emptied = open(name, FileAccess::write, FileDisposition::createAlways);
    EXPECT_EQ(kernel32.GetFileSize(emptied), 0);
    EXPECT_TRUE(kernel32.CloseHandle(emptied));
    const FileHandle made = open(dir_.file("b"), FileAccess::write, FileDisposition::openAlways);
    EXPECT_TRUE(kernel32.CloseHandle(made));
    EXPECT_TRUE(dir_.has("b"));
}

TEST_F(TableFilesTest, AMissingFileIs2AndAMissingFolder3) {
    EXPECT_EQ(open(dir_.file("no"), FileAccess::read, FileDisposition::openExisting),
              FileHandle::none);
    EXPECT_EQ(lastError(), kErrorFileNotFound);
    EXPECT_EQ(open(dir_.file("no") + dir_.file("no").substr(dir_.name().size(), 1) + "file",
                   FileAccess::write, FileDisposition::createNew),
              FileHandle::none);
    EXPECT_EQ(lastError(), kErrorPathNotFound);
    EXPECT_EQ(kernel32.GetFileAttributesA(dir_.file("no")), kInvalidFileAttributes);
    EXPECT_EQ(lastError(), kErrorFileNotFound);
    EXPECT_FALSE(kernel32.DeleteFileA(dir_.file("no")));
    EXPECT_EQ(lastError(), kErrorFileNotFound);
}

TEST_F(TableFilesTest, ANameWithANulIsRefusedEverywhere) {
    dir_.write("a", "text");
    const std::string name = dir_.file("a") + std::string("\0b", 2);
    EXPECT_EQ(open(name, FileAccess::read, FileDisposition::openExisting), FileHandle::none);
    EXPECT_EQ(lastError(), kErrorInvalidName);
    EXPECT_FALSE(kernel32.DeleteFileA(name));
    EXPECT_EQ(kernel32.GetFileAttributesA(name), kInvalidFileAttributes);
    EXPECT_FALSE(kernel32.CreateDirectoryA(name));
    EXPECT_EQ(kernel32.GetFullPathNameA(name), "");
    EXPECT_EQ(kernel32.GetLongPathNameA(name), "");
    EXPECT_EQ(kernel32.GetTempFileNameA(name, "TMP"), "");
    EXPECT_TRUE(dir_.has("a"));
}

TEST_F(TableFilesTest, AFolderCannotBeOpened) {
    EXPECT_EQ(open(dir_.name(), FileAccess::read, FileDisposition::openExisting), FileHandle::none);
    EXPECT_EQ(lastError(), kErrorAccessDenied);
    EXPECT_FALSE(kernel32.DeleteFileA(dir_.name()));
    EXPECT_EQ(lastError(), kErrorAccessDenied);
}

TEST_F(TableFilesTest, AccessIsWhatWasAskedFor) {
    const std::string name = dir_.write("a", "text");
    std::array<std::uint8_t, 4> block{};
    std::uint32_t count = 7;
    const FileHandle reader = open(name, FileAccess::read, FileDisposition::openExisting);
    EXPECT_FALSE(kernel32.WriteFile(reader, block, count));
    EXPECT_EQ(lastError(), kErrorAccessDenied);
    EXPECT_TRUE(kernel32.CloseHandle(reader));
    const FileHandle writer = open(name, FileAccess::write, FileDisposition::openExisting);
    EXPECT_FALSE(kernel32.ReadFile(writer, block, count));
    EXPECT_EQ(lastError(), kErrorAccessDenied);
    EXPECT_TRUE(kernel32.CloseHandle(writer));
}

TEST_F(TableFilesTest, AClosedHandleIsRefused) {
    const FileHandle file =
        open(dir_.write("a", "text"), FileAccess::read, FileDisposition::openExisting);
    EXPECT_TRUE(kernel32.CloseHandle(file));
    std::array<std::uint8_t, 4> block{};
    std::uint32_t count = 0;
    EXPECT_FALSE(kernel32.ReadFile(file, block, count));
    EXPECT_EQ(lastError(), kErrorInvalidHandle);
    EXPECT_EQ(kernel32.GetFileSize(file), -1);
    EXPECT_EQ(lastError(), kErrorInvalidHandle);
}

TEST_F(TableFilesTest, FoldersAreMadeOnce) {
    const std::string name = dir_.file("folder");
    EXPECT_TRUE(kernel32.CreateDirectoryA(name));
    EXPECT_NE(kernel32.GetFileAttributesA(name) & kFileAttributeDirectory, 0u);
    EXPECT_FALSE(kernel32.CreateDirectoryA(name));
    EXPECT_EQ(lastError(), kErrorAlreadyExists);
}

TEST_F(TableFilesTest, ADeletedFileIsGone) {
    EXPECT_TRUE(kernel32.DeleteFileA(dir_.write("a", "text")));
    EXPECT_FALSE(dir_.has("a"));
}

TEST_F(TableFilesTest, TemporaryFilesAreNewAndEmpty) {
    const std::string one = kernel32.GetTempFileNameA(dir_.name(), "PREFIX");
    const std::string other = kernel32.GetTempFileNameA(dir_.name(), "PREFIX");
    EXPECT_NE(one, other);
    EXPECT_EQ(dir_.entries().size(), 2u);
    for (const std::string& name : dir_.entries()) {
        EXPECT_EQ(name.substr(0, 3), "PRE");
        EXPECT_NE(name.substr(0, 4), "PREF");
        EXPECT_TRUE(dir_.read(name).empty());
    }
    EXPECT_EQ(kernel32.GetTempFileNameA(dir_.file("no"), "TMP"), "");
    EXPECT_NE(lastError(), kErrorSuccess);
}

TEST_F(TableFilesTest, TheTemporaryFolderEndsInASeparator) {
    const std::string folder = kernel32.GetTempPathA();
    ASSERT_FALSE(folder.empty());
    EXPECT_EQ(folder.back(), dir_.file("a")[dir_.name().size()]);
    EXPECT_NE(kernel32.GetFileAttributesA(folder) & kFileAttributeDirectory, 0u);
}

TEST_F(TableFilesTest, NamesInTheCodePageAreKept) {
    const std::string name = dir_.file("\xCF\xF0\xE8");
    const FileHandle file = open(name, FileAccess::write, FileDisposition::createNew);
    EXPECT_TRUE(kernel32.CloseHandle(file));
    EXPECT_EQ(kernel32.GetLongPathNameA(name).substr(dir_.name().size() + 1), "\xCF\xF0\xE8");
    EXPECT_TRUE(kernel32.DeleteFileA(name));
}

}  // namespace
}  // namespace orvane::platform
