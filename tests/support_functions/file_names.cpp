#include "support/file_names.h"

#include "frame/binary_file.h"
#include "frame/values/codepage.h"
#include "platform/kernel32.h"
#include "platform/paths.h"
#include "support/raised_error.h"
#include "support/recorder.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

namespace orvane {
namespace {

using platform::kernel32;
using test::raisedBy;
using test::Recorder;
using test::ScopedTarget;

/// `text` with the platform's separator for each "/".
WString native(std::u16string text) {
    std::ranges::replace(text, u'/', platform::pathSeparator());
    return text;
}

TEST(BuildFileName, PutsExactlyOneSeparatorBetween) {
    for (const char16_t* path : {u"a/b", u"a/b/", u"a/b//"}) {
        for (const char16_t* name : {u"c", u"/c", u"//c"}) {
            EXPECT_EQ(nqBuildFileName(native(path), native(name)), native(u"a/b/c"));
        }
    }
}

TEST(BuildFileName, KeepsARoot) {
    EXPECT_EQ(nqBuildFileName(native(u"/"), u"c"), native(u"/c"));
}

TEST(BuildFileName, WithoutAFolderIsTheName) {
    EXPECT_EQ(nqBuildFileName(u"", u"c"), u"c");
    EXPECT_EQ(nqBuildFileName({}, native(u"/c")), native(u"/c"));
}

TEST(BuildFileName, WithoutANameEndsInTheSeparator) {
    EXPECT_EQ(nqBuildFileName(u"a", u""), native(u"a/"));
}

TEST(GetFilePath, IsTheFolderWithoutASeparatorAtItsEnd) {
    EXPECT_EQ(nqGetFilePath(native(u"/a/b/c.dll")), native(u"/a/b"));
    EXPECT_EQ(nqGetFilePath(native(u"a/c.dll")), u"a");
    EXPECT_EQ(nqGetFilePath(native(u"a//c.dll")), u"a");
}

TEST(GetFilePath, OfAFolderNameWithASeparatorIsThatFolder) {
    EXPECT_EQ(nqGetFilePath(native(u"/a/b/")), native(u"/a/b"));
}

TEST(GetFilePath, KeepsARoot) {
    EXPECT_EQ(nqGetFilePath(native(u"/c.dll")), native(u"/"));
    EXPECT_EQ(nqGetFilePath(native(u"/")), native(u"/"));
}

TEST(GetFilePath, OfANameAloneIsEmpty) {
    EXPECT_EQ(nqGetFilePath(u"c.dll"), u"");
    EXPECT_EQ(nqGetFilePath(u""), u"");
}

TEST(GetFilePath, LeadsBackToTheNameThroughBuildFileName) {
    for (const char16_t* name : {u"/a/b/c", u"/c", u"a/c", u"c"}) {
        const WString full = native(name);
        EXPECT_EQ(nqBuildFileName(nqGetFilePath(full), u"c"), full);
    }
}

#ifdef _WIN32

TEST(BuildFileName, TakesASlashForASeparator) {
    EXPECT_EQ(nqBuildFileName(u"c:/a/", u"b"), u"c:/a\\b");
    EXPECT_EQ(nqBuildFileName(u"c:\\", u"b"), u"c:\\b");
}

TEST(GetFilePath, KeepsADriveAndAShare) {
    EXPECT_EQ(nqGetFilePath(u"C:\\c.dll"), u"C:\\");
    EXPECT_EQ(nqGetFilePath(u"C:c.dll"), u"C:");
    EXPECT_EQ(nqGetFilePath(u"C:/a/c.dll"), u"C:/a");
    EXPECT_EQ(nqGetFilePath(u"\\\\server\\share\\c.dll"), u"\\\\server\\share\\");
}

#endif

TEST(GetFullFileName, IsTheAbsoluteForm) {
    const WString full = nqGetFullFileName(native(u"some/./../name"));
    EXPECT_EQ(full, nqBuildFileName(nqGetFullFileName(u"."), u"name"));
    EXPECT_GT(platform::pathRootLength(full), 0U);
    EXPECT_EQ(nqGetFullFileName(full), full);
}

TEST(GetFullFileName, RaisesThePlatformsFailure) {
    ScopedTarget fake(kernel32.GetFullPathNameA, [](const std::string&) {
        platform::setLastError(platform::kErrorInvalidName);
        return std::string();
    });
    EXPECT_EQ(raisedBy([] { nqGetFullFileName(u"x"); }),
              runtimeErrorFor(platform::kErrorInvalidName));
}

TEST(GetLongFileName, IsThePlatformsLongForm) {
    ScopedTarget fake(kernel32.GetLongPathNameA, [](const std::string& name) {
        return name == "C:\\PROGRA~1" ? std::string("C:\\Program Files") : "";
    });
    EXPECT_EQ(nqGetLongFileName(u"C:\\PROGRA~1"), u"C:\\Program Files");
}

TEST(GetLongFileName, LeavesANameThatIsNotThere) {
    EXPECT_EQ(nqGetLongFileName(u"no such file \u4E2D"), u"no such file \u4E2D");
}

class FileNames : public test::TempDirTest {
protected:
    /// The full name of an entry of the temporary folder.
    WString entry(std::u16string name) const {
        return nqBuildFileName(fromAnsi(dir_.name()), native(std::move(name)));
    }
};

TEST_F(FileNames, AFileExistsAsAFileOnly) {
    dir_.write("file", "x");
    EXPECT_TRUE(nqIsFileExist(entry(u"file")));
    EXPECT_FALSE(nqIsDirectoryExist(entry(u"file")));
}

TEST_F(FileNames, AFolderExistsAsAFolderOnly) {
    EXPECT_TRUE(nqIsDirectoryExist(fromAnsi(dir_.name())));
    EXPECT_FALSE(nqIsFileExist(fromAnsi(dir_.name())));
}

TEST_F(FileNames, WhatIsNotThereExistsAsNeither) {
    for (const WString& name : {entry(u"missing"), entry(u"missing/x"), WString(u""), WString()}) {
        EXPECT_FALSE(nqIsFileExist(name));
        EXPECT_FALSE(nqIsDirectoryExist(name));
    }
}

TEST_F(FileNames, ACyrillicNameGoesThroughTheAnsiCodePage) {
    ASSERT_TRUE(nqCreateComplexDirectory(entry(u"Каталог")));
    EXPECT_TRUE(nqIsDirectoryExist(entry(u"Каталог")));
    EXPECT_EQ(nqGetLongFileName(entry(u"Каталог")), entry(u"Каталог"));
}

TEST_F(FileNames, CreateComplexDirectoryMakesAllMissingParents) {
    EXPECT_TRUE(nqCreateComplexDirectory(entry(u"a/b//c")));
    EXPECT_TRUE(nqIsDirectoryExist(entry(u"a/b/c")));
}

TEST_F(FileNames, CreateComplexDirectoryTakesSeparatorsAtTheEnd) {
    EXPECT_TRUE(nqCreateComplexDirectory(entry(u"a/b//")));
    EXPECT_TRUE(nqIsDirectoryExist(entry(u"a/b")));
}

TEST_F(FileNames, CreateComplexDirectoryIsContentWithWhatIsThere) {
    EXPECT_TRUE(nqCreateComplexDirectory(entry(u"a")));
    Recorder recorder(kernel32);
    EXPECT_TRUE(nqCreateComplexDirectory(entry(u"a")));
    EXPECT_EQ(recorder.count("CreateDirectoryA"), 0U);
}

TEST_F(FileNames, CreateComplexDirectoryStopsAtAFile) {
    dir_.write("file", "x");
    EXPECT_FALSE(nqCreateComplexDirectory(entry(u"file")));
    EXPECT_FALSE(nqCreateComplexDirectory(entry(u"file/a/b")));
    EXPECT_EQ(dir_.entries(), std::vector<std::string>{"file"});
}

TEST_F(FileNames, CreateComplexDirectoryToleratesAnotherMakerOfTheSameFolder) {
    const auto real = kernel32.CreateDirectoryA;
    ScopedTarget rival(kernel32.CreateDirectoryA,
                       [&](const std::string& path) { return real(path) && real(path); });
    EXPECT_TRUE(nqCreateComplexDirectory(entry(u"a/b/c")));
}

TEST_F(FileNames, CreateComplexDirectoryPassesAParentWhoseAttributesAreHidden) {
    ASSERT_TRUE(nqCreateComplexDirectory(entry(u"hidden")));
    const std::string hidden = toAnsi(entry(u"hidden"));
    const auto real = kernel32.GetFileAttributesA;
    ScopedTarget blind(kernel32.GetFileAttributesA, [&](const std::string& name) {
        return name == hidden ? platform::kInvalidFileAttributes : real(name);
    });
    EXPECT_TRUE(nqCreateComplexDirectory(entry(u"hidden/a/b")));
    EXPECT_TRUE(nqIsDirectoryExist(entry(u"hidden/a/b")));
}

TEST(CreateComplexDirectory, OfAnEmptyNameFails) {
    EXPECT_FALSE(nqCreateComplexDirectory(u""));
}

TEST(CreateComplexDirectory, OfARootIsContentWithIt) {
    const WString here = nqGetFullFileName(u".");
    EXPECT_TRUE(nqCreateComplexDirectory(here.view().substr(0, platform::pathRootLength(here))));
}

TEST_F(FileNames, GetTempFileName2CreatesANewEmptyFile) {
    const WString first = nqGetTempFileName2(fromAnsi(dir_.name()), u"TMP");
    const WString second = nqGetTempFileName2(fromAnsi(dir_.name()), u"TMP");
    EXPECT_NE(first, second);
    EXPECT_TRUE(nqIsFileExist(first));
    EXPECT_TRUE(nqIsFileExist(second));
    EXPECT_EQ(BinaryFile(first, FileMode::read).lof(), 0);
    EXPECT_EQ(nqGetFilePath(first), fromAnsi(dir_.name()));
}

TEST(GetTempFileName2, WithoutAFolderUsesTheSystemsTemporaryFolder) {
    const WString name = nqGetTempFileName2(u"", u"TMP");
    EXPECT_TRUE(nqIsFileExist(name));
    EXPECT_EQ(nqBuildFileName(nqGetFilePath(name), u""), fromAnsi(kernel32.GetTempPathA()));
    EXPECT_TRUE(kernel32.DeleteFileA(toAnsi(name)));
}

TEST_F(FileNames, GetTempFileName2RaisesForAFolderThatIsNotThere) {
    EXPECT_EQ(raisedBy([this] { nqGetTempFileName2(entry(u"missing"), u"TMP"); }),
              error::kPathNotFound);
    ScopedTarget fake(kernel32.GetTempFileNameA, [](const std::string&, const std::string&) {
        platform::setLastError(platform::kErrorPathNotFound);
        return std::string();
    });
    EXPECT_EQ(raisedBy([] { nqGetTempFileName2(u"x", u"TMP"); }), error::kPathNotFound);
}

TEST(GetTempFileName2, RaisesWhenThereIsNoTemporaryFolder) {
    ScopedTarget fake(kernel32.GetTempPathA, [] {
        platform::setLastError(platform::kErrorPathNotFound);
        return std::string();
    });
    EXPECT_EQ(raisedBy([] { nqGetTempFileName2(u"", u"TMP"); }), error::kPathNotFound);
}

}  // namespace
}  // namespace orvane
