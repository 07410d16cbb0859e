#include "registry_fixture.h"

#include <sched.h>
#include <sys/mount.h>

namespace orvane::platform {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// Damage.

TEST_F(RegistryStoreLinux, FileThatIsNoDatabaseIsSetAsideAndKept) {
    fs::create_directories(store_.userFolder());
    std::ofstream(store_.userFile()) << std::string(5000, 'x');
    testing::internal::CaptureStderr();
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "(2)");
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "new"), 0u);
    const std::string said = testing::internal::GetCapturedStderr();
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "new");
    ASSERT_FALSE(setAside().empty());
    EXPECT_EQ(fs::file_size(setAside()), 5000u);
    EXPECT_THAT(said, HasSubstr(store_.userFile() + " is damaged"));
    EXPECT_EQ(said.find('\n'), said.size() - 1) << said;
}

TEST_F(RegistryStoreLinux, DatabaseWithABrokenPageIsSetAsideWithItsLog) {
    for (int i = 0; i < 200; ++i)
        EXPECT_EQ(write(kHkeyCurrentUser, "k" + std::to_string(i), "v", std::string(500, 'd')), 0u);
    store_.closeDatabases();
    const auto pages = static_cast<int>(fs::file_size(store_.userFile()) / 4096);
    for (int page = 1; page < pages; ++page)
        overwrite(store_.userFile(), page * 4096, std::string(200, '\xA5'));
    const auto size = fs::file_size(store_.userFile());
    testing::internal::CaptureStderr();
    EXPECT_EQ(write(kHkeyCurrentUser, "new", "v", "new"), 0u);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("is damaged"));
    EXPECT_EQ(read(kHkeyCurrentUser, "new", "v"), "new");
    EXPECT_THAT(subKeys(kHkeyCurrentUser, ""), ElementsAre("new"));
    ASSERT_FALSE(setAside().empty());
    EXPECT_EQ(fs::file_size(setAside()), size);
}

TEST_F(RegistryStoreLinux, WholeDatabaseIsNeverSetAside) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "x"), 0u);
    store_.closeDatabases();
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "x");
    EXPECT_TRUE(setAside().empty());
}

TEST_F(RegistryStoreLinux, DatabaseThatIsTakenAwayIsNoticed) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "old"), 0u);
    fs::rename(store_.userFolder(), store_.userFolder() + "-elsewhere");
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "(2)");
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "new"), 0u);
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "new");
}

TEST_F(RegistryStoreLinux, LogWithoutItsDatabaseIsKeptAside) {
    fs::create_directories(store_.userFolder());
    std::ofstream(store_.userFile() + "-wal") << "a log";
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "x"), 0u);
    const auto files = filesIn(store_.userFolder());
    EXPECT_TRUE(std::ranges::any_of(files, [](const std::string& name) {
        return name.starts_with("registry.db.damaged-") && name.ends_with("-wal");
    }));
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "x");
}

TEST_F(RegistryStoreLinux, DatabaseOfALaterVersionIsLeftAlone) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "x"), 0u);
    store_.closeDatabases();
    // The version stands in the header, bytes 60 to 63.
    overwrite(store_.userFile(), 60, std::string_view("\0\0\0\x63", 4));
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "(1009)");
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "y"), 1009u);
    EXPECT_TRUE(setAside().empty());
}

// A disk without room.

TEST_F(RegistryStoreLinux, FullDiskIsAnErrorAndLosesNothing) {
    fs::create_directories(store_.userFolder());
    const int status = inChild([&] {
        // A small file system that nobody else sees and that goes with the process.
        if (::unshare(CLONE_NEWNS) != 0 ||
            ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount("none", store_.userFolder().c_str(), "tmpfs", 0, "size=400k") != 0) {
            return 77;
        }
        EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "before"), 0u);
        EXPECT_EQ(write(kHkeyCurrentUser, "a", "large", std::string(600000, 'x')), kErrorDiskFull);
        EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "before");
        EXPECT_EQ(read(kHkeyCurrentUser, "a", "large"), "(2)");
        EXPECT_EQ(write(kHkeyCurrentUser, "a", "small", "fits"), 0u);
        EXPECT_EQ(number(registryTransactions.Begin()), 0u);
        EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "in the transaction"), 0u);
        EXPECT_EQ(write(kHkeyCurrentUser, "a", "large", std::string(3000000, 'x')), kErrorDiskFull);
        EXPECT_NE(number(registryTransactions.Commit()), 0u);
        store_.closeDatabases();
        EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "before");
        EXPECT_EQ(read(kHkeyCurrentUser, "a", "small"), "fits");
        store_.closeDatabases();
        return testing::Test::HasFailure() ? 1 : 0;
    });
    if (status == 77) GTEST_SKIP() << "this process may not mount a file system";
    EXPECT_EQ(status, 0);
}

/// A file that may not grow is a full disk to the caller, whichever of a database's files it is.
TEST_F(RegistryStoreLinux, FileThatMayNotGrowIsAFullDiskAndLosesNothing) {
    for (const RegistryKey root : {kHkeyCurrentUser, kHkeyLocalMachine}) {
        EXPECT_EQ(write(root, "a", "v", "before"), 0u);
        EXPECT_EQ(
            inChild([&] {
                limitFiles(400000);
                EXPECT_EQ(read(root, "a", "v"), "before");
                EXPECT_EQ(write(root, "a", "large", std::string(600000, 'x')), kErrorDiskFull);
                EXPECT_EQ(write(root, "new", "large", std::string(4000000, 'x')), kErrorDiskFull);
                EXPECT_EQ(read(root, "a", "v"), "before");
                EXPECT_EQ(read(root, "a", "large"), "(2)");
                EXPECT_EQ(write(root, "a", "small", "fits"), 0u);
                return testing::Test::HasFailure() ? 1 : 0;
            }),
            0);
        EXPECT_EQ(read(root, "a", "v"), "before");
        EXPECT_EQ(read(root, "a", "small"), "fits");
        EXPECT_EQ(read(root, "a", "large"), "(2)");
    }
}

TEST_F(RegistryStoreLinux, NewDatabaseThatMayNotGrowIsAFullDisk) {
    for (const rlim_t limit : {0u, 1u, 4096u, 8192u, 20000u}) {
        for (const RegistryKey root : {kHkeyCurrentUser, kHkeyLocalMachine}) {
            EXPECT_EQ(inChild([&] {
                          limitFiles(limit);
                          EXPECT_EQ(write(root, "a", "v", std::string(30000, 'x')), kErrorDiskFull)
                              << limit;
                          return testing::Test::HasFailure() ? 1 : 0;
                      }),
                      0);
            EXPECT_EQ(read(root, "a", "v"), "(2)") << limit;
        }
    }
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "x"), 0u);
    EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "x"), 0u);
}

TEST_F(RegistryStoreLinux, FolderThatCantBeMadeIsAnError) {
    std::ofstream(store_.userFolder()) << "a file in its place";
    EXPECT_NE(write(kHkeyCurrentUser, "a", "v", "x"), 0u);
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "(2)");
}

}  // namespace
}  // namespace orvane::platform
