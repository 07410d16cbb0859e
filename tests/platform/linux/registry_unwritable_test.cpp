// The user's root where nothing can be written: what is stored there is read all the same.

#include "registry_fixture.h"

#include <grp.h>
#include <sched.h>
#include <sys/mount.h>

namespace orvane::platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct UnwritableRootLinux : RegistryStoreLinux {
    static constexpr int kMayNotMount = 77;
    static constexpr const char* kWhyNoMount = "this process may not mount a file system";

    void SetUp() override {
        RegistryStoreLinux::SetUp();
        fs::create_directories(store_.userFolder());
        fs::create_directories(temporary_);
        fs::permissions(temporary_, fs::perms(0777));
        ::setenv("TMPDIR", temporary_.c_str(), 1);
    }
    void TearDown() override {
        ::unsetenv("TMPDIR");
        EXPECT_THAT(filesIn(temporary_), IsEmpty()) << "a copy was left behind";
    }

    /// Runs a body in a child whose user's folder is a file system of its own, which nobody else
    /// sees and which goes with the process.
    int onFileSystem(const std::function<void()>& body) const {
        return inChild([&] {
            if (::unshare(CLONE_NEWNS) != 0 ||
                ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
                ::mount("none", store_.userFolder().c_str(), "tmpfs", 0, "size=400k") != 0) {
                return kMayNotMount;
            }
            body();
            store_.closeDatabases();
            return testing::Test::HasFailure() ? 1 : 0;
        });
    }
    void fillFileSystem() const {
        std::ofstream filler(store_.userFolder() + "/filler", std::ios::binary);
        const std::string block(4096, 'f');
        while (filler.write(block.data(), 4096).flush()) {
        }
    }
    void makeReadOnly() const {
        EXPECT_EQ(
            ::mount("none", store_.userFolder().c_str(), nullptr, MS_REMOUNT | MS_RDONLY, nullptr),
            0);
    }
    static void writeAndDie() {
        EXPECT_EQ(inChild([] {
                      write(kHkeyCurrentUser, "a", "v", "from the log");
                      ::raise(SIGKILL);
                      return 0;
                  }),
                  1000 + SIGKILL);
    }
    static void expectToRead(const char* text) {
        EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), text);
        EXPECT_EQ(read(kHkeyCurrentUser, "a", "none"), "(2)");
        EXPECT_THAT(subKeys(kHkeyCurrentUser, ""), ElementsAre("a", "Software"));
        EXPECT_THAT(values(kHkeyCurrentUser, "a"), ElementsAre("v", "w"));
        EXPECT_EQ(read(kHkeyClassesRoot, "c", ""), "class");
    }
    static void store() {
        EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "stored"), 0u);
        EXPECT_EQ(write(kHkeyCurrentUser, "a", "w", "stored"), 0u);
        EXPECT_EQ(write(kHkeyCurrentUser, "Software\\Classes\\c", "", "class"), 0u);
        test::RegistryStore::closeDatabases();
    }

    const std::string temporary_ = store_.userFolder() + "-temporary";
};

TEST_F(UnwritableRootLinux, FullDiskIsRead) {
    const int status = onFileSystem([&] {
        store();
        fillFileSystem();
        expectToRead("stored");
        EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", std::string(9000, 'x')), kErrorDiskFull);
        expectToRead("stored");
        fs::remove(store_.userFolder() + "/filler");
        EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "new"), 0u);
        expectToRead("new");
    });
    if (status == kMayNotMount) GTEST_SKIP() << kWhyNoMount;
    EXPECT_EQ(status, 0);
}

TEST_F(UnwritableRootLinux, FullDiskWithTheLogOfAKilledWriterIsRead) {
    for (const bool isAlone : {false, true}) {
        const int status = onFileSystem([&] {
            store();
            writeAndDie();
            EXPECT_GT(fs::file_size(store_.userFile() + "-wal"), 0u);
            if (isAlone) fs::remove(store_.userFile() + "-shm");
            fillFileSystem();
            expectToRead("from the log");
            fs::remove(store_.userFolder() + "/filler");
            expectToRead("from the log");
        });
        if (status == kMayNotMount) GTEST_SKIP() << kWhyNoMount;
        EXPECT_EQ(status, 0) << isAlone;
    }
}

TEST_F(UnwritableRootLinux, ReadOnlyFileSystemIsRead) {
    const int status = onFileSystem([&] {
        store();
        makeReadOnly();
        expectToRead("stored");
        EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "x"), kErrorAccessDenied);
        EXPECT_EQ(write(kHkeyCurrentUser, "new", "v", "x"), kErrorAccessDenied);
        RegistryKey key{};
        EXPECT_EQ(number(advapi32.RegOpenKeyExA(kHkeyCurrentUser, "a", 0, kKeySetValue, key)),
                  kErrorAccessDenied);
        EXPECT_EQ(number(shlwapi.SHDeleteKeyA(kHkeyCurrentUser, "a")), kErrorAccessDenied);
        expectToRead("stored");
    });
    if (status == kMayNotMount) GTEST_SKIP() << kWhyNoMount;
    EXPECT_EQ(status, 0);
}

TEST_F(UnwritableRootLinux, ReadOnlyFileSystemWithTheLogOfAKilledWriterIsRead) {
    for (const bool isAlone : {false, true}) {
        const int status = onFileSystem([&] {
            store();
            writeAndDie();
            if (isAlone) fs::remove(store_.userFile() + "-shm");
            makeReadOnly();
            expectToRead("from the log");
        });
        if (status == kMayNotMount) GTEST_SKIP() << kWhyNoMount;
        EXPECT_EQ(status, 0) << isAlone;
    }
}

TEST_F(UnwritableRootLinux, EmptyReadOnlyFileSystemIsAnEmptyRoot) {
    const int status = onFileSystem([&] {
        makeReadOnly();
        EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "(2)");
        EXPECT_THAT(subKeys(kHkeyCurrentUser, ""), IsEmpty());
        EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "x"), kErrorAccessDenied);
    });
    if (status == kMayNotMount) GTEST_SKIP() << kWhyNoMount;
    EXPECT_EQ(status, 0);
}

/// Needs no rights: root becomes somebody who has none.
TEST_F(UnwritableRootLinux, FolderWithoutTheRightToWriteIsRead) {
    store();
    for (const bool fileToo : {false, true}) {
        const bool isRoot = ::geteuid() == 0;
        if (isRoot) {
            for (const std::string& path : {store_.userFolder(), store_.userFile()})
                EXPECT_EQ(::chown(path.c_str(), kNobody, kNobody), 0);
        }
        fs::permissions(store_.userFolder(), fs::perms(0500));
        fs::permissions(store_.userFile(), fs::perms(fileToo ? 0400 : 0600));
        EXPECT_EQ(inChild([&] {
                      if (isRoot && (::setgroups(0, nullptr) != 0 || ::setgid(kNobody) != 0 ||
                                     ::setuid(kNobody) != 0)) {
                          return 99;
                      }
                      expectToRead("stored");
                      EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "x"), kErrorAccessDenied);
                      EXPECT_EQ(write(kHkeyCurrentUser, "new", "v", "x"), kErrorAccessDenied);
                      expectToRead("stored");
                      return testing::Test::HasFailure() ? 1 : 0;
                  }),
                  0)
            << fileToo;
        fs::permissions(store_.userFolder(), fs::perms(0700));
    }
}

}  // namespace
}  // namespace orvane::platform
