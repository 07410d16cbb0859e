#include "platform/kernel32.h"

#include "platform/linux/errors.h"
#include "platform/linux/quiet_write.h"
#include "support/temp_dir.h"

#include <array>
#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvane::platform {
namespace {

class LinuxFilesTest : public test::TempDirTest {
protected:
    static FileHandle open(const std::string& name) {
        return kernel32.CreateFileA(name, FileAccess::read, FileDisposition::openExisting);
    }
};

TEST_F(LinuxFilesTest, AStaleHandleHarmsNobody) {
    const FileHandle stale = open(dir_.write("a", "one"));
    EXPECT_TRUE(kernel32.CloseHandle(stale));
    const FileHandle other = open(dir_.write("b", "two"));
    EXPECT_FALSE(kernel32.CloseHandle(stale));
    EXPECT_EQ(lastError(), kErrorInvalidHandle);
    EXPECT_EQ(kernel32.GetFileSize(other), 3);
    EXPECT_TRUE(kernel32.CloseHandle(other));
}

TEST_F(LinuxFilesTest, DescriptorsAreClosedWithTheirHandles) {
    const std::string name = dir_.write("a", "one");
    const int before = ::dup(STDOUT_FILENO);
    ::close(before);
    for (int i = 0; i < 100; ++i) {
        EXPECT_TRUE(kernel32.CloseHandle(open(name)));
    }
    EXPECT_EQ(open(dir_.name()), FileHandle::none);
    const int after = ::dup(STDOUT_FILENO);
    ::close(after);
    EXPECT_EQ(before, after);
}

TEST_F(LinuxFilesTest, PipesAndDevicesAreRefusedToReaders) {
    const std::string pipe = dir_.file("pipe");
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    const auto error = [](const std::string& name, FileAccess access) {
        setLastError(kErrorSuccess);
        EXPECT_EQ(kernel32.CreateFileA(name, access, FileDisposition::openExisting),
                  FileHandle::none);
        return lastError();
    };
    EXPECT_EQ(error(pipe, FileAccess::read), kErrorAccessDenied) << "without a writer";
    EXPECT_EQ(error(pipe, FileAccess::readWrite), kErrorAccessDenied);
    const int writer = ::open(pipe.c_str(), O_RDWR);
    EXPECT_EQ(error(pipe, FileAccess::read), kErrorAccessDenied) << "with one that is idle";
    ::close(writer);
    EXPECT_EQ(error("/dev/zero", FileAccess::read), kErrorAccessDenied);
}

TEST_F(LinuxFilesTest, APipeThatIsWrittenHasNoPositionAndNoSize) {
    const std::string name = dir_.file("pipe");
    ASSERT_EQ(::mkfifo(name.c_str(), 0600), 0);
    const int reader = ::open(name.c_str(), O_RDONLY | O_NONBLOCK);
    const FileHandle pipe =
        kernel32.CreateFileA(name, FileAccess::write, FileDisposition::openExisting);
    ASSERT_NE(pipe, FileHandle::none);
    std::array<std::uint8_t, 4> block{1, 2, 3, 4};
    std::uint32_t written = 0;
    EXPECT_TRUE(kernel32.WriteFile(pipe, block, written));
    EXPECT_EQ(written, 4u);
    EXPECT_FALSE(kernel32.SetFilePointer(pipe, 0));
    EXPECT_EQ(lastError(), kErrorSeek);
    EXPECT_EQ(kernel32.GetFileSize(pipe), -1);
    EXPECT_TRUE(kernel32.CloseHandle(pipe));
    ::close(reader);
}

TEST_F(LinuxFilesTest, TooManyOpenFilesIs4) {
    const std::string name = dir_.write("a", "one");
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_NOFILE, &before), 0);
    const rlimit none{0, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_NOFILE, &none), 0);
    const FileHandle file = open(name);
    const std::uint32_t error = lastError();
    ::setrlimit(RLIMIT_NOFILE, &before);
    EXPECT_EQ(file, FileHandle::none);
    EXPECT_EQ(error, kErrorTooManyOpenFiles);
}

TEST_F(LinuxFilesTest, AFullDiskIs112) {
    const FileHandle full =
        kernel32.CreateFileA("/dev/full", FileAccess::write, FileDisposition::openExisting);
    ASSERT_NE(full, FileHandle::none);
    std::array<std::uint8_t, 4> block{};
    std::uint32_t written = 9;
    EXPECT_FALSE(kernel32.WriteFile(full, block, written));
    EXPECT_EQ(lastError(), kErrorDiskFull);
    EXPECT_EQ(written, 0u);
    EXPECT_TRUE(kernel32.CloseHandle(full));
}

TEST_F(LinuxFilesTest, APipeThatNobodyReadsIs109AndNoSignal) {
    const std::string name = dir_.file("pipe");
    ASSERT_EQ(::mkfifo(name.c_str(), 0600), 0);
    const int reader = ::open(name.c_str(), O_RDONLY | O_NONBLOCK);
    const FileHandle pipe =
        kernel32.CreateFileA(name, FileAccess::write, FileDisposition::openExisting);
    ::close(reader);
    ASSERT_NE(pipe, FileHandle::none);
    std::array<std::uint8_t, 4> block{};
    std::uint32_t written = 9;
    EXPECT_FALSE(kernel32.WriteFile(pipe, block, written));
    EXPECT_EQ(lastError(), kErrorBrokenPipe);
    EXPECT_EQ(written, 0u);
    EXPECT_TRUE(kernel32.CloseHandle(pipe));
}

TEST_F(LinuxFilesTest, AFileThatMayNotGrowIs223AndNoSignal) {
    const FileHandle file =
        kernel32.CreateFileA(dir_.file("short"), FileAccess::write, FileDisposition::createNew);
    rlimit before{};
    ASSERT_EQ(::getrlimit(RLIMIT_FSIZE, &before), 0);
    const rlimit two{2, before.rlim_max};
    ASSERT_EQ(::setrlimit(RLIMIT_FSIZE, &two), 0);
    std::array<std::uint8_t, 4> block{};
    std::uint32_t written = 9;
    const bool all = kernel32.WriteFile(file, block, written);
    const std::uint32_t error = lastError();
    ::setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_FALSE(all);
    EXPECT_EQ(error, kErrorFileTooLarge);
    EXPECT_EQ(written, 2u);
    EXPECT_TRUE(kernel32.CloseHandle(file));
}

TEST_F(LinuxFilesTest, ASignalThatTheHostHoldsBackStaysItsOwn) {
    sigset_t held;
    sigset_t before;
    sigemptyset(&held);
    sigaddset(&held, SIGPIPE);
    ASSERT_EQ(::pthread_sigmask(SIG_BLOCK, &held, &before), 0);
    int ends[2] = {-1, -1};
    ASSERT_EQ(::pipe(ends), 0);
    ::close(ends[0]);
    EXPECT_EQ(writeQuietly([&] { return ::write(ends[1], "x", 1); }), -1);
    EXPECT_EQ(errno, EPIPE);
    ::close(ends[1]);
    constexpr timespec kNow{};
    EXPECT_EQ(::sigtimedwait(&held, nullptr, &kNow), SIGPIPE);
    ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
}

TEST_F(LinuxFilesTest, WhatMayNotBeReadIs5) {
    const std::string name = dir_.write("a", "one");
    ASSERT_EQ(::chmod(name.c_str(), 0), 0);
    ASSERT_EQ(::chmod(dir_.name().c_str(), 0755), 0);
    // The administrator may read everything, so another user tries.
    const pid_t child = ::fork();
    if (child == 0) {
        if (::geteuid() == 0 && ::setuid(65534) != 0) {
            ::_exit(2);
        }
        const bool refused = open(name) == FileHandle::none && lastError() == kErrorAccessDenied;
        ::_exit(refused ? 0 : 1);
    }
    int status = -1;
    ::waitpid(child, &status, 0);
    EXPECT_EQ(status, 0);
}

TEST_F(LinuxFilesTest, ATemporaryFileIsItsOwnersAlone) {
    const std::string name = kernel32.GetTempFileNameA(dir_.name() + "/", "TMP");
    struct stat facts {};
    ASSERT_EQ(::stat(name.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777u, 0600u);
    EXPECT_EQ(name.substr(name.size() - 4), ".tmp");
    EXPECT_EQ(name.find("//"), std::string::npos);
    EXPECT_EQ(kernel32.GetTempFileNameA(dir_.name(), "a/b"), "");
    EXPECT_EQ(lastError(), kErrorInvalidName);
    EXPECT_EQ(kernel32.GetTempFileNameA(dir_.file("no"), "TMP"), "");
    EXPECT_EQ(lastError(), kErrorDirectory);
}

TEST_F(LinuxFilesTest, AFileThatHadToBeNewIsItsOwnersAlone) {
    const std::string name = dir_.file("new");
    const mode_t mask = ::umask(0);
    const FileHandle file =
        kernel32.CreateFileA(name, FileAccess::write, FileDisposition::createNew);
    ::umask(mask);
    struct stat facts {};
    ASSERT_EQ(::stat(name.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 0777u, 0600u);
    EXPECT_TRUE(kernel32.CloseHandle(file));
}

TEST_F(LinuxFilesTest, TheTemporaryFolderCanBeNamed) {
    ::setenv("TMPDIR", dir_.name().c_str(), 1);
    EXPECT_EQ(kernel32.GetTempPathA(), dir_.name() + "/");
    ::setenv("TMPDIR", "relative", 1);
    EXPECT_EQ(kernel32.GetTempPathA(), "/tmp/");
    ::setenv("TMPDIR", "/caf\u00E9", 1);
    EXPECT_EQ(kernel32.GetTempPathA(), "/tmp/");
    ::unsetenv("TMPDIR");
    EXPECT_EQ(kernel32.GetTempPathA(), "/tmp/");
}

TEST_F(LinuxFilesTest, FullNamesAreAbsoluteAndFolded) {
    EXPECT_EQ(kernel32.GetFullPathNameA("/a/./b//../c"), "/a/c");
    EXPECT_EQ(kernel32.GetFullPathNameA("/a/b/"), "/a/b/");
    EXPECT_EQ(kernel32.GetFullPathNameA("/../.."), "/");
    EXPECT_EQ(kernel32.GetFullPathNameA("/a/.."), "/");
    const std::string here = kernel32.GetFullPathNameA(".");
    EXPECT_EQ(kernel32.GetFullPathNameA("x/y"), here + "/x/y");
    EXPECT_EQ(kernel32.GetFullPathNameA(""), "");
    EXPECT_EQ(lastError(), kErrorInvalidName);
}

TEST(LinuxErrors, HaveThePlatformsNumbers) {
    EXPECT_EQ(errorFromErrno(ENOENT), 2u);
    EXPECT_EQ(errorFromErrno(EACCES), 5u);
    EXPECT_EQ(errorFromErrno(ENOSPC), 112u);
    EXPECT_EQ(errorFromErrno(ENAMETOOLONG), 206u);
    EXPECT_EQ(errorFromErrno(12345), 31u);
}

}  // namespace
}  // namespace orvane::platform
