#include "platform/kernel32.h"
#include "platform/linux/name_lock.h"

#include <gtest/gtest.h>

#include <fcntl.h>
#include <random>
#include <sys/stat.h>
#include <unistd.h>

namespace orvane::platform {
namespace {

/// A name with nothing in its place.
class MutexFiles : public testing::Test {
protected:
    ~MutexFiles() override {
        ::unlink(path_.c_str());
        ::rmdir(path_.c_str());
        ::unlink(target_.c_str());
    }

    /// Tries to take the name and expects to be denied.
    void expectDenied() {
        setLastError(kErrorSuccess);
        EXPECT_EQ(kernel32.CreateMutexA(name_), MutexHandle::none);
        EXPECT_EQ(lastError(), kErrorAccessDenied);
    }

    void makeTarget() {
        const int target = ::open(target_.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0600);
        ASSERT_GE(target, 0);
        EXPECT_EQ(::write(target, "kept", 4), 4);
        ::close(target);
    }

    void expectTargetUntouched() {
        struct stat facts {};
        ASSERT_EQ(::stat(target_.c_str(), &facts), 0);
        EXPECT_EQ(facts.st_size, 4);
        EXPECT_EQ(facts.st_mode & 0777U, 0600U);
    }

    bool isThere() const { return ::access(path_.c_str(), F_OK) == 0; }

    std::string name_ = "orvane file test " + std::to_string(std::random_device()()) + "-" +
                        std::to_string(::getpid());
    std::string path_ = nameLockPath(name_);
    std::string target_ = path_ + ".target";
};

TEST_F(MutexFiles, LieInASharedFolderUnderAHashOfTheName) {
    // The published test values of the hash.
    EXPECT_TRUE(nameLockPath("").ends_with("/orvane-6c62272e07bb014262b821756295c58d"));
    EXPECT_TRUE(nameLockPath("a").ends_with("/orvane-d228cb696f1a8caf78912b704e4a8964"));
    const std::string folder = path_.substr(0, path_.rfind('/'));
    struct stat facts {};
    ASSERT_EQ(::stat(folder.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 01002U, 01002U);
}

TEST_F(MutexFiles, AreForEveryUserWhateverTheProcessesMask) {
    const mode_t before = ::umask(0077);
    const MutexHandle mutex = kernel32.CreateMutexA(name_);
    ::umask(before);
    struct stat facts {};
    ASSERT_EQ(::stat(path_.c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 07777U, 0666U);
    EXPECT_EQ(facts.st_size, 0);
    EXPECT_TRUE(kernel32.CloseMutexHandle(mutex));
}

TEST_F(MutexFiles, GoWithTheLastHolder) {
    const MutexHandle first = kernel32.CreateMutexA(name_);
    const MutexHandle second = kernel32.CreateMutexA(name_);
    EXPECT_TRUE(kernel32.CloseMutexHandle(first));
    EXPECT_TRUE(isThere());
    EXPECT_TRUE(kernel32.CloseMutexHandle(second));
    EXPECT_FALSE(isThere());
}

TEST_F(MutexFiles, MeanNothingWhenNobodyHoldsThem) {
    const int left = ::open(path_.c_str(), O_CREAT | O_EXCL | O_WRONLY | O_CLOEXEC, 0666);
    ASSERT_GE(left, 0);
    ::close(left);
    const MutexHandle mutex = kernel32.CreateMutexA(name_);
    EXPECT_NE(mutex, MutexHandle::none);
    EXPECT_EQ(lastError(), kErrorSuccess);
    EXPECT_TRUE(kernel32.CloseMutexHandle(mutex));
}

TEST_F(MutexFiles, RemovedWhileHeldAreMadeAnewAndTheOldHolderHarmsNobody) {
    const MutexHandle old = kernel32.CreateMutexA(name_);
    ASSERT_EQ(::unlink(path_.c_str()), 0);
    const MutexHandle fresh = kernel32.CreateMutexA(name_);
    EXPECT_EQ(lastError(), kErrorSuccess);
    EXPECT_TRUE(kernel32.CloseMutexHandle(old));
    EXPECT_TRUE(isThere());
    const MutexHandle second = kernel32.CreateMutexA(name_);
    EXPECT_EQ(lastError(), kErrorAlreadyExists);
    EXPECT_TRUE(kernel32.CloseMutexHandle(fresh));
    EXPECT_TRUE(kernel32.CloseMutexHandle(second));
}

TEST_F(MutexFiles, PlantedLinkIsNotFollowed) {
    makeTarget();
    ASSERT_EQ(::symlink(target_.c_str(), path_.c_str()), 0);
    expectDenied();
    expectTargetUntouched();
}

TEST_F(MutexFiles, PlantedLinkToNothingMakesNoFile) {
    ASSERT_EQ(::symlink(target_.c_str(), path_.c_str()), 0);
    expectDenied();
    EXPECT_NE(::access(target_.c_str(), F_OK), 0);
}

TEST_F(MutexFiles, PlantedSecondNameOfAFileIsRefused) {
    makeTarget();
    ASSERT_EQ(::link(target_.c_str(), path_.c_str()), 0);
    expectDenied();
    expectTargetUntouched();
}

TEST_F(MutexFiles, PlantedFolderIsRefused) {
    ASSERT_EQ(::mkdir(path_.c_str(), 0777), 0);
    expectDenied();
}

TEST_F(MutexFiles, PlantedPipeIsRefused) {
    ASSERT_EQ(::mkfifo(path_.c_str(), 0666), 0);
    expectDenied();
}

TEST_F(MutexFiles, LocksThatAreNoHoldersCountAsAnotherUsers) {
    const int other = ::open(path_.c_str(), O_CREAT | O_EXCL | O_RDWR | O_CLOEXEC, 0666);
    ASSERT_GE(other, 0);
    struct flock whole {};
    whole.l_type = F_RDLCK;
    whole.l_whence = SEEK_SET;
    whole.l_start = NameLock::kFirstHolder;
    ASSERT_EQ(::fcntl(other, F_OFD_SETLK, &whole), 0);
    expectDenied();
    ::close(other);
}

}  // namespace
}  // namespace orvane::platform
