#include "platform/linux/registry/damage.h"
#include "registry_fixture.h"

#include <fcntl.h>
#include <pthread.h>
#include <sched.h>
#include <sqlite3.h>
#include <sys/file.h>
#include <sys/mount.h>
#include <thread>

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
    EXPECT_EQ(inChild([] {
                  write(kHkeyCurrentUser, "k100", "v", "in the log");
                  ::raise(SIGKILL);
                  return 0;
              }),
              1000 + SIGKILL);
    const auto pages = static_cast<int>(fs::file_size(store_.userFile()) / 4096);
    for (int page = 1; page < pages; ++page)
        overwrite(store_.userFile(), page * 4096, std::string(200, '\xA5'));
    const std::string database = contentOf(store_.userFile());
    const std::string log = contentOf(store_.userFile() + "-wal");
    ASSERT_THAT(log, HasSubstr("in the log"));
    testing::internal::CaptureStderr();
    EXPECT_EQ(write(kHkeyCurrentUser, "new", "v", "new"), 0u);
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("is damaged"));
    EXPECT_EQ(read(kHkeyCurrentUser, "new", "v"), "new");
    EXPECT_THAT(subKeys(kHkeyCurrentUser, ""), ElementsAre("new"));
    ASSERT_FALSE(setAside().empty());
    EXPECT_EQ(contentOf(setAside()), database);
    EXPECT_EQ(contentOf(setAside() + "-wal"), log);
    EXPECT_TRUE(fs::exists(setAside() + "-shm"));
}

/// What the journal undoes is undone before the damage is found; nothing of it stays behind for the
/// new database.
TEST_F(RegistryStoreLinux, MachinesDatabaseWithABrokenPageIsSetAsideWithItsJournalUndone) {
    EXPECT_EQ(number(registryTransactions.Begin()), 0u);
    for (int i = 0; i < 200; ++i)
        EXPECT_EQ(write(kHkeyLocalMachine, "k" + std::to_string(i), "v", std::string(500, 'd')),
                  0u);
    EXPECT_EQ(number(registryTransactions.Commit()), 0u);
    store_.closeDatabases();
    const std::string before = contentOf(store_.machineFile());
    EXPECT_EQ(inChild([] {
                  registryTransactions.Begin();
                  write(kHkeyLocalMachine, "k0", "v", std::string(500, 'u'));
                  write(kHkeyLocalMachine, "filler", "v", std::string(6u << 20, 'u'));
                  ::raise(SIGKILL);
                  return 0;
              }),
              1000 + SIGKILL);
    ASSERT_TRUE(fs::exists(store_.machineFile() + "-journal"));
    ASSERT_THAT(contentOf(store_.machineFile()), HasSubstr(std::string(500, 'u')));
    // A page in the middle, which the transaction has not touched.
    const auto broken = static_cast<std::streamoff>(before.size() / 4096 / 2 * 4096);
    overwrite(store_.machineFile(), broken, std::string(200, '\xA5'));
    testing::internal::CaptureStderr();
    EXPECT_EQ(write(kHkeyLocalMachine, "k150", "v", "new"), 0u);
    for (int i = 0; i < 200; ++i)
        read(kHkeyLocalMachine, "k" + std::to_string(i), "v");
    EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr("is damaged"));
    std::string aside;
    for (const std::string& name : filesIn(store_.machineFolder())) {
        EXPECT_FALSE(name.ends_with("-journal")) << name;
        if (name.starts_with("registry.db.damaged-")) aside = store_.machineFolder() + "/" + name;
    }
    ASSERT_FALSE(aside.empty());
    EXPECT_EQ(fs::file_size(aside), before.size());
    EXPECT_THAT(contentOf(aside), testing::Not(HasSubstr(std::string(500, 'u'))));
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
    for (const bool isThere : {false, true}) {
        EXPECT_EQ(inChild([] {
                      write(kHkeyCurrentUser, "a", "v", "only in the log");
                      ::raise(SIGKILL);
                      return 0;
                  }),
                  1000 + SIGKILL);
        const std::string log = contentOf(store_.userFile() + "-wal");
        ASSERT_GT(log.size(), 4096u);
        if (isThere) {
            fs::resize_file(store_.userFile(), 0);
        } else {
            fs::remove(store_.userFile());
        }
        EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "(2)");
        EXPECT_EQ(contentOf(store_.userFile() + "-wal"), log);
        testing::internal::CaptureStderr();
        EXPECT_EQ(write(kHkeyCurrentUser, "a", "w", "x"), 0u);
        EXPECT_EQ(write(kHkeyCurrentUser, "a", "w", "y"), 0u);
        const std::string said = testing::internal::GetCapturedStderr();
        EXPECT_EQ(read(kHkeyCurrentUser, "a", "w"), "y");
        EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "(2)");
        store_.closeDatabases();
        std::string aside;
        for (const std::string& name : filesIn(store_.userFolder())) {
            if (name.starts_with("registry.db.damaged-") && name.ends_with("-wal")) aside = name;
        }
        ASSERT_FALSE(aside.empty()) << isThere;
        EXPECT_EQ(contentOf(store_.userFolder() + "/" + aside), log) << isThere;
        EXPECT_THAT(said, HasSubstr(store_.userFile()));
        EXPECT_THAT(said, HasSubstr(aside));
        EXPECT_EQ(said.find('\n'), said.size() - 1) << said;
        fs::remove_all(store_.userFolder());
    }
}

/// Runs SQL on a database file that nobody has open.
void runSql(const std::string& file, const char* sql) {
    sqlite3* database = nullptr;
    EXPECT_EQ(sqlite3_open(file.c_str(), &database), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(database, sql, nullptr, nullptr, nullptr), SQLITE_OK) << sql;
    EXPECT_EQ(sqlite3_close(database), SQLITE_OK);
}

TEST_F(RegistryStoreLinux, DatabaseWithoutOneOfItsTablesIsSetAside) {
    for (const RegistryKey root : {kHkeyCurrentUser, kHkeyLocalMachine}) {
        for (const char* change :
             {"DROP TABLE entries", "DROP TABLE keys", "ALTER TABLE entries RENAME data TO d"}) {
            EXPECT_EQ(write(root, "a", "v", "x"), 0u);
            store_.closeDatabases();
            const bool isUsers = root == kHkeyCurrentUser;
            const std::string file = isUsers ? store_.userFile() : store_.machineFile();
            runSql(file, change);
            testing::internal::CaptureStderr();
            EXPECT_EQ(write(root, "a", "w", "new"), 0u) << change;
            EXPECT_THAT(testing::internal::GetCapturedStderr(), HasSubstr(file + " is damaged"));
            EXPECT_EQ(read(root, "a", "w"), "new") << change;
            EXPECT_EQ(read(root, "a", "v"), "(2)") << change;
            store_.closeDatabases();
            const auto files = filesIn(fs::path(file).parent_path());
            EXPECT_THAT(files, testing::Contains(testing::StartsWith("registry.db.damaged-")));
            fs::remove_all(fs::path(file).parent_path());
        }
    }
}

TEST_F(RegistryStoreLinux, SomebodyElsesDatabaseIsLeftAlone) {
    for (const char* made :
         {"CREATE TABLE theirs(x)", "PRAGMA application_id=7", "PRAGMA user_version=1",
          "CREATE TABLE keys(id); CREATE TABLE entries(id)"}) {
        for (const RegistryKey root : {kHkeyCurrentUser, kHkeyLocalMachine}) {
            const bool isUsers = root == kHkeyCurrentUser;
            const std::string file = isUsers ? store_.userFile() : store_.machineFile();
            fs::create_directories(fs::path(file).parent_path());
            runSql(file, made);
            const std::string content = contentOf(file);
            EXPECT_EQ(read(root, "a", "v"), "(1009)") << made;
            EXPECT_EQ(write(root, "a", "v", "x"), 1009u) << made;
            EXPECT_EQ(read(root, "a", "v"), "(1009)") << made;
            store_.closeDatabases();
            EXPECT_EQ(contentOf(file), content) << made;
            EXPECT_THAT(filesIn(fs::path(file).parent_path()), ElementsAre("registry.db"));
            fs::remove_all(fs::path(file).parent_path());
        }
    }
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

TEST_F(RegistryStoreLinux, ProcessWithoutFreeFileNumbersIsToldSo) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "x"), 0u);
    EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "x"), 0u);
    store_.closeDatabases();
    EXPECT_EQ(inChild([&] {
                  const rlimit limit{64, 64};
                  EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
                  std::vector<int> open;
                  for (int file = 0; (file = ::dup(STDERR_FILENO)) >= 0;)
                      open.push_back(file);
                  for (const RegistryKey root : {kHkeyCurrentUser, kHkeyLocalMachine}) {
                      EXPECT_EQ(read(root, "a", "v"), "(4)");
                      EXPECT_EQ(write(root, "a", "v", "y"), 4u);
                  }
                  for (const int file : open)
                      ::close(file);
                  EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "x");
                  EXPECT_EQ(read(kHkeyLocalMachine, "a", "v"), "x");
                  return testing::Test::HasFailure() ? 1 : 0;
              }),
              0);
    ::setenv("ORVANE_REGISTRY_USER", (store_.userFolder() + "/new").c_str(), 1);
    EXPECT_EQ(inChild([&] {
                  const rlimit limit{64, 64};
                  EXPECT_EQ(::setrlimit(RLIMIT_NOFILE, &limit), 0);
                  while (::dup(STDERR_FILENO) >= 0) {
                  }
                  EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "y"), 4u);
                  return testing::Test::HasFailure() ? 1 : 0;
              }),
              0);
}

/// Another program may hold the folder for as long as it likes.
TEST_F(RegistryStoreLinux, FolderIsNotWaitedForForEver) {
    fs::create_directories(store_.userFolder());
    const int folder = ::open(store_.userFolder().c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC);
    ASSERT_EQ(::flock(folder, LOCK_EX), 0);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(store::FolderLock(store_.userFolder(), std::chrono::milliseconds(50)).failure(),
              EWOULDBLOCK);
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(10));
    ::close(folder);
    const store::FolderLock lock(store_.userFolder());
    EXPECT_EQ(lock.failure(), 0);
    EXPECT_EQ(store::FolderLock(store_.userFolder(), std::chrono::milliseconds(5)).failure(),
              EWOULDBLOCK);
    EXPECT_EQ(store::FolderLock(store_.userFolder() + "/none").failure(), ENOENT);
}

TEST_F(RegistryStoreLinux, SignalDoesNotEndTheWaitForTheFolder) {
    fs::create_directories(store_.userFolder());
    struct sigaction action {};
    action.sa_handler = [](int) {};
    struct sigaction former {};
    ASSERT_EQ(::sigaction(SIGUSR1, &action, &former), 0);
    auto other = std::make_unique<store::FolderLock>(store_.userFolder());
    ASSERT_EQ(other->failure(), 0);
    const pthread_t waiting = ::pthread_self();
    std::thread signals([&] {
        for (int i = 0; i < 20; ++i) {
            ::usleep(5000);
            ::pthread_kill(waiting, SIGUSR1);
        }
        other.reset();
    });
    EXPECT_EQ(store::FolderLock(store_.userFolder()).failure(), 0);
    signals.join();
    ::sigaction(SIGUSR1, &former, nullptr);
}

TEST_F(RegistryStoreLinux, FolderThatCantBeMadeIsAnError) {
    std::ofstream(store_.userFolder()) << "a file in its place";
    EXPECT_NE(write(kHkeyCurrentUser, "a", "v", "x"), 0u);
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "(2)");
}

}  // namespace
}  // namespace orvane::platform
