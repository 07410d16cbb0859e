#include "platform/advapi32.h"
#include "platform/shlwapi.h"
#include "support/registry_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <sched.h>
#include <sys/mount.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace orvane::platform {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

std::uint32_t number(ResultCode code) {
    return static_cast<std::uint32_t>(code);
}

std::vector<std::uint8_t> bytes(std::string_view text) {
    return {text.begin(), text.end()};
}

std::uint32_t write(RegistryKey root, const std::string& path, const std::string& name,
                    std::string_view data) {
    RegistryKey key{};
    KeyDisposition done{};
    ResultCode code = advapi32.RegCreateKeyExA(root, path, 0, kKeySetValue, key, done);
    if (code != ResultCode::success) return number(code);
    code = advapi32.RegSetValueExA(key, name, kRegBinary, bytes(data));
    advapi32.RegCloseKey(key);
    return number(code);
}

/// The data of a value, or the number of the failure in parentheses.
std::string read(RegistryKey root, const std::string& path, const std::string& name) {
    RegistryKey key{};
    ResultCode code = advapi32.RegOpenKeyExA(root, path, 0, kKeyQueryValue, key);
    std::vector<std::uint8_t> data(4096);
    auto size = static_cast<std::uint32_t>(data.size());
    std::uint32_t type = 0;
    if (code == ResultCode::success) {
        code = advapi32.RegQueryValueExA(key, name, type, data.data(), size);
        advapi32.RegCloseKey(key);
    }
    if (code != ResultCode::success) return "(" + std::to_string(number(code)) + ")";
    return {data.begin(), data.begin() + static_cast<int>(size)};
}

std::vector<std::string> subKeys(RegistryKey root, const std::string& path) {
    RegistryKey key{};
    std::vector<std::string> names;
    if (advapi32.RegOpenKeyExA(root, path, 0, kKeyEnumerateSubKeys, key) != ResultCode::success) {
        return {"(no key)"};
    }
    std::array<char, 300> name{};
    while (advapi32.RegEnumKeyA(key, static_cast<std::uint32_t>(names.size()), name) ==
           ResultCode::success) {
        names.emplace_back(name.data());
    }
    advapi32.RegCloseKey(key);
    return names;
}

std::vector<std::string> values(RegistryKey root, const std::string& path) {
    RegistryKey key{};
    std::vector<std::string> names;
    if (advapi32.RegOpenKeyExA(root, path, 0, kKeyQueryValue, key) != ResultCode::success) {
        return {"(no key)"};
    }
    std::array<char, 300> name{};
    auto size = static_cast<std::uint32_t>(name.size());
    while (advapi32.RegEnumValueA(key, static_cast<std::uint32_t>(names.size()), name.data(),
                                  size) == ResultCode::success) {
        names.emplace_back(name.data());
        size = static_cast<std::uint32_t>(name.size());
    }
    advapi32.RegCloseKey(key);
    return names;
}

/// Runs a body in a child process and gives its exit status; it ends without the exit handlers of
/// the parent.
int inChild(const std::function<int()>& body) {
    const pid_t child = ::fork();
    if (child == 0) ::_exit(body());
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    return WIFEXITED(status) ? WEXITSTATUS(status) : 1000 + WTERMSIG(status);
}

constexpr uid_t kNobody = 65534;

struct RegistryStoreLinux : test::RegistryTest {
    void SetUp() override {
        fs::permissions(fs::path(store_.userFolder()).parent_path(), fs::perms(0755));
    }

    static mode_t modeOf(const std::string& path) {
        struct stat facts {};
        EXPECT_EQ(::stat(path.c_str(), &facts), 0) << path;
        return facts.st_mode & 07777;
    }
    static std::vector<std::string> filesIn(const std::string& folder) {
        std::vector<std::string> names;
        for (const auto& entry : fs::directory_iterator(folder))
            names.push_back(entry.path().filename());
        std::ranges::sort(names);
        return names;
    }
    /// The name that damage gave the user's database.
    std::string setAside() const {
        for (const std::string& name : filesIn(store_.userFolder())) {
            if (name.starts_with("registry.db.damaged-") && !name.ends_with("-wal") &&
                !name.ends_with("-shm")) {
                return store_.userFolder() + "/" + name;
            }
        }
        return {};
    }
    static void overwrite(const std::string& file, std::streamoff place, std::string_view text) {
        std::fstream stream(file, std::ios::in | std::ios::out | std::ios::binary);
        stream.seekp(place);
        stream << text;
        EXPECT_TRUE(stream.good());
    }
};

TEST_F(RegistryStoreLinux, NothingIsMadeByReading) {
    EXPECT_EQ(read(kHkeyCurrentUser, "a", ""), "(2)");
    EXPECT_EQ(read(kHkeyLocalMachine, "a", ""), "(2)");
    EXPECT_THAT(subKeys(kHkeyCurrentUser, ""), IsEmpty());
    EXPECT_THAT(values(kHkeyLocalMachine, ""), IsEmpty());
    EXPECT_THAT(subKeys(kHkeyClassesRoot, ""), IsEmpty());
    EXPECT_FALSE(fs::exists(store_.userFolder()));
    EXPECT_FALSE(fs::exists(store_.machineFolder()));
}

TEST_F(RegistryStoreLinux, UsersDatabaseIsForTheUserAlone) {
    const mode_t mask = ::umask(0);
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "1"), 0u);
    EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "2"), 0u);
    ::umask(mask);
    EXPECT_EQ(modeOf(store_.userFolder()), 0700u);
    for (const std::string& file : filesIn(store_.userFolder()))
        EXPECT_EQ(modeOf(store_.userFolder() + "/" + file), 0600u) << file;
    EXPECT_EQ(modeOf(store_.machineFolder()), 0755u);
    EXPECT_EQ(modeOf(store_.machineFile()), 0644u);
}

TEST_F(RegistryStoreLinux, ClosedDatabaseIsOneFile) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "1"), 0u);
    store_.closeDatabases();
    EXPECT_THAT(filesIn(store_.userFolder()), ElementsAre("registry.db"));
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "1");
}

TEST_F(RegistryStoreLinux, EnvironmentNamesThePlace) {
    const std::string home = store_.userFolder() + "-home";
    ::unsetenv("ORVANE_REGISTRY_USER");
    const char* former = ::getenv("HOME");
    const std::string formerHome = former == nullptr ? "" : former;
    ::setenv("HOME", home.c_str(), 1);
    ::unsetenv("XDG_CONFIG_HOME");
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "1"), 0u);
    EXPECT_TRUE(fs::exists(home + "/.config/orvane/registry.db"));
    store_.closeDatabases();
    ::setenv("XDG_CONFIG_HOME", (home + "/config").c_str(), 1);
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "1"), 0u);
    EXPECT_TRUE(fs::exists(home + "/config/orvane/registry.db"));
    store_.closeDatabases();
    ::unsetenv("XDG_CONFIG_HOME");
    ::setenv("HOME", formerHome.c_str(), 1);
}

TEST_F(RegistryStoreLinux, NamesComeInTheOrderOfTheirMaking) {
    for (const char* name : {"c", "a", "B", "0"}) {
        EXPECT_EQ(write(kHkeyCurrentUser, std::string("k\\") + name, "", "x"), 0u);
        EXPECT_EQ(write(kHkeyCurrentUser, "k", name, "x"), 0u);
    }
    EXPECT_EQ(write(kHkeyCurrentUser, "k", "a", "again"), 0u);
    EXPECT_THAT(subKeys(kHkeyCurrentUser, "k"), ElementsAre("c", "a", "B", "0"));
    EXPECT_THAT(values(kHkeyCurrentUser, "k"), ElementsAre("c", "a", "B", "0"));
}

TEST_F(RegistryStoreLinux, TooLongAKeyNameIsNoName) {
    const std::string longest(kLongestKeyName, 'k');
    EXPECT_EQ(write(kHkeyCurrentUser, longest + "\\" + longest + "\\" + longest, "v", "x"), 0u);
    EXPECT_EQ(read(kHkeyCurrentUser, longest + "\\" + longest + "\\" + longest, "v"), "x");
    EXPECT_EQ(write(kHkeyCurrentUser, "a\\" + longest + "k", "v", "x"), kErrorInvalidParameter);
    EXPECT_EQ(read(kHkeyCurrentUser, longest + "k", "v"), "(87)");
    EXPECT_THAT(subKeys(kHkeyCurrentUser, ""), ElementsAre(longest));
}

TEST_F(RegistryStoreLinux, RootsWithoutAStoreTakeNothing) {
    for (const RegistryKey root : {kHkeyUsers, kHkeyCurrentConfig, kHkeyDynData}) {
        EXPECT_EQ(write(root, "a", "v", "x"), kErrorAccessDenied);
        EXPECT_EQ(number(advapi32.RegSetValueExA(root, "v", 3, bytes("x"))), kErrorAccessDenied);
        EXPECT_EQ(number(shlwapi.SHDeleteKeyA(root, "a")), kErrorFileNotFound);
        EXPECT_EQ(number(shlwapi.SHDeleteEmptyKeyA(root, "a")), kErrorFileNotFound);
        EXPECT_THAT(subKeys(root, ""), IsEmpty());
    }
    EXPECT_EQ(write(kHkeyPerformanceData, "a", "v", "x"), kErrorInvalidHandle);
}

TEST_F(RegistryStoreLinux, PredefinedKeyCantBeDeleted) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "x"), 0u);
    EXPECT_EQ(number(shlwapi.SHDeleteEmptyKeyA(kHkeyCurrentUser, "")), kErrorKeyHasChildren);
    EXPECT_EQ(number(shlwapi.SHDeleteKeyA(kHkeyCurrentUser, "a")), 0u);
    EXPECT_EQ(number(shlwapi.SHDeleteEmptyKeyA(kHkeyCurrentUser, "")), kErrorAccessDenied);
}

TEST_F(RegistryStoreLinux, LastErrorStaysAsItWas) {
    setLastError(4711);
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "x"), 0u);
    EXPECT_EQ(read(kHkeyCurrentUser, "none", "v"), "(2)");
    EXPECT_EQ(number(advapi32.RegCloseKey(RegistryKey{0x1234})), kErrorInvalidHandle);
    EXPECT_EQ(lastError(), 4711u);
}

// Classes.

TEST_F(RegistryStoreLinux, ClassesAreTheUsersOverTheMachines) {
    write(kHkeyLocalMachine, "Software\\Classes\\.a", "", "machine");
    write(kHkeyLocalMachine, "Software\\Classes\\.a", "only machine", "m");
    write(kHkeyLocalMachine, "Software\\Classes\\.a\\shell", "", "m");
    write(kHkeyLocalMachine, "Software\\Classes\\.b", "", "m");
    write(kHkeyCurrentUser, "Software\\Classes\\.A", "", "user");
    write(kHkeyCurrentUser, "Software\\Classes\\.A", "only user", "u");
    write(kHkeyCurrentUser, "Software\\Classes\\.c", "", "u");
    EXPECT_EQ(read(kHkeyClassesRoot, ".a", ""), "user");
    EXPECT_EQ(read(kHkeyClassesRoot, ".a", "only machine"), "m");
    EXPECT_EQ(read(kHkeyClassesRoot, ".a", "only user"), "u");
    EXPECT_EQ(read(kHkeyClassesRoot, ".a\\shell", ""), "m");
    EXPECT_EQ(read(kHkeyClassesRoot, ".a\\none", ""), "(2)");
    EXPECT_THAT(subKeys(kHkeyClassesRoot, ""), ElementsAre(".A", ".c", ".b"));
    EXPECT_THAT(subKeys(kHkeyClassesRoot, ".a"), ElementsAre("shell"));
    EXPECT_THAT(values(kHkeyClassesRoot, ".a"), ElementsAre("", "only user", "only machine"));
    RegistryKey key{};
    KeyInformation information;
    EXPECT_EQ(number(advapi32.RegOpenKeyExA(kHkeyClassesRoot, ".a", 0, 9, key)), 0u);
    EXPECT_EQ(number(advapi32.RegQueryInfoKeyA(key, information)), 0u);
    EXPECT_EQ(information.subKeys, 1u);
    EXPECT_EQ(information.longestSubKey, 5u);
    EXPECT_EQ(information.values, 3u);
    EXPECT_EQ(information.longestValueName, 12u);
    EXPECT_EQ(number(advapi32.RegCloseKey(key)), 0u);
}

TEST_F(RegistryStoreLinux, ClassesAreChangedWhereTheKeyIs) {
    write(kHkeyLocalMachine, "Software\\Classes\\both", "v", "machine");
    write(kHkeyCurrentUser, "Software\\Classes\\both", "v", "user");
    EXPECT_EQ(write(kHkeyClassesRoot, "both", "v", "new"), 0u);
    EXPECT_EQ(read(kHkeyCurrentUser, "Software\\Classes\\both", "v"), "new");
    EXPECT_EQ(read(kHkeyLocalMachine, "Software\\Classes\\both", "v"), "machine");
    EXPECT_EQ(write(kHkeyClassesRoot, "both\\below", "v", "b"), 0u);
    EXPECT_EQ(read(kHkeyCurrentUser, "Software\\Classes\\both\\below", "v"), "b");
    EXPECT_EQ(write(kHkeyClassesRoot, "New", "v", "n"), 0u);
    EXPECT_EQ(read(kHkeyLocalMachine, "Software\\Classes\\New", "v"), "n");
    EXPECT_EQ(read(kHkeyCurrentUser, "Software\\Classes\\New", "v"), "(2)");
    EXPECT_EQ(number(shlwapi.SHDeleteEmptyKeyA(kHkeyClassesRoot, "both")), kErrorKeyHasChildren);
    EXPECT_EQ(number(shlwapi.SHDeleteKeyA(kHkeyClassesRoot, "both")), 0u);
    EXPECT_EQ(read(kHkeyClassesRoot, "both", "v"), "machine");
    EXPECT_EQ(number(shlwapi.SHDeleteEmptyKeyA(kHkeyClassesRoot, "both")), 0u);
    EXPECT_EQ(read(kHkeyClassesRoot, "both", "v"), "(2)");
    EXPECT_EQ(number(shlwapi.SHDeleteKeyA(kHkeyClassesRoot, "both")), kErrorFileNotFound);
}

TEST_F(RegistryStoreLinux, ClassesKeepTheirNamesBelowAHandle) {
    EXPECT_EQ(write(kHkeyClassesRoot, "Orv.One\\CLSID", "", "x"), 0u);
    RegistryKey key{};
    EXPECT_EQ(number(advapi32.RegOpenKeyExA(kHkeyClassesRoot, "orv.one", 0, 0x2000000, key)), 0u);
    EXPECT_EQ(write(key, "Shell", "", "y"), 0u);
    EXPECT_EQ(number(advapi32.RegSetValueExA(key, "Name", 3, bytes("z"))), 0u);
    EXPECT_EQ(number(advapi32.RegDeleteValueA(key, "name")), 0u);
    EXPECT_EQ(number(advapi32.RegDeleteValueA(key, "name")), kErrorFileNotFound);
    EXPECT_THAT(subKeys(kHkeyClassesRoot, "Orv.One"), ElementsAre("CLSID", "Shell"));
    EXPECT_EQ(number(shlwapi.SHDeleteKeyA(key, "")), 0u);
    EXPECT_THAT(subKeys(kHkeyClassesRoot, "Orv.One"), IsEmpty());
    EXPECT_EQ(number(advapi32.RegCloseKey(key)), 0u);
    EXPECT_THAT(subKeys(kHkeyLocalMachine, "Software\\Classes"), ElementsAre("Orv.One"));
}

// Rights.

TEST_F(RegistryStoreLinux, UserWithoutRightsReadsTheMachinesRootAndWritesNothing) {
    ASSERT_EQ(::geteuid(), 0u) << "this test gives up the rights of the system's administrator";
    EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "machine"), 0u);
    EXPECT_EQ(write(kHkeyLocalMachine, "Software\\Classes\\c", "v", "machine"), 0u);
    store_.closeDatabases();
    fs::create_directory(store_.userFolder());
    EXPECT_EQ(::chown(store_.userFolder().c_str(), kNobody, kNobody), 0);
    EXPECT_EQ(
        inChild([&] {
            if (::setgid(kNobody) != 0 || ::setuid(kNobody) != 0) return 99;
            EXPECT_EQ(read(kHkeyLocalMachine, "a", "v"), "machine");
            EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "x"), kErrorAccessDenied);
            EXPECT_EQ(write(kHkeyLocalMachine, "new", "v", "x"), kErrorAccessDenied);
            RegistryKey key{};
            EXPECT_EQ(number(advapi32.RegOpenKeyExA(kHkeyLocalMachine, "a", 0, kKeySetValue, key)),
                      kErrorAccessDenied);
            EXPECT_EQ(number(shlwapi.SHDeleteKeyA(kHkeyLocalMachine, "a")), kErrorAccessDenied);
            EXPECT_EQ(number(shlwapi.SHDeleteEmptyKeyA(kHkeyLocalMachine, "a")),
                      kErrorAccessDenied);
            EXPECT_EQ(write(kHkeyClassesRoot, "c", "v", "x"), kErrorAccessDenied);
            EXPECT_EQ(write(kHkeyClassesRoot, "new", "v", "x"), kErrorAccessDenied);
            EXPECT_EQ(write(kHkeyCurrentUser, "Software\\Classes\\c", "v", "mine"), 0u);
            EXPECT_EQ(write(kHkeyClassesRoot, "c", "v", "still mine"), 0u);
            EXPECT_EQ(read(kHkeyClassesRoot, "c", "v"), "still mine");
            return testing::Test::HasFailure() ? 1 : 0;
        }),
        0);
    EXPECT_EQ(read(kHkeyLocalMachine, "a", "v"), "machine");
}

TEST_F(RegistryStoreLinux, AbsentMachinesRootIsEmptyForAUserWithoutRights) {
    ASSERT_EQ(::geteuid(), 0u) << "this test gives up the rights of the system's administrator";
    EXPECT_EQ(inChild([&] {
                  if (::setgid(kNobody) != 0 || ::setuid(kNobody) != 0) return 99;
                  EXPECT_EQ(read(kHkeyLocalMachine, "a", "v"), "(2)");
                  EXPECT_THAT(subKeys(kHkeyLocalMachine, ""), IsEmpty());
                  EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "x"), kErrorAccessDenied);
                  RegistryKey key{};
                  EXPECT_EQ(
                      number(advapi32.RegOpenKeyExA(kHkeyLocalMachine, "", 0, kKeySetValue, key)),
                      kErrorAccessDenied);
                  return testing::Test::HasFailure() ? 1 : 0;
              }),
              0);
    EXPECT_FALSE(fs::exists(store_.machineFolder()));
}

// Processes.

TEST_F(RegistryStoreLinux, ForkedChildGoesOnWithItsHandles) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "parent"), 0u);
    RegistryKey key{};
    EXPECT_EQ(number(advapi32.RegOpenKeyExA(kHkeyCurrentUser, "a", 0, 3, key)), 0u);
    EXPECT_EQ(inChild([&] {
                  EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "parent");
                  EXPECT_EQ(number(advapi32.RegSetValueExA(key, "v", 3, bytes("child"))), 0u);
                  return testing::Test::HasFailure() ? 1 : 0;
              }),
              0);
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "child");
    EXPECT_EQ(number(advapi32.RegSetValueExA(key, "v", 3, bytes("parent again"))), 0u);
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "parent again");
    EXPECT_EQ(number(advapi32.RegCloseKey(key)), 0u);
}

TEST_F(RegistryStoreLinux, ParentAndChildrenWriteSideBySide) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "parent", "0"), 0u);
    std::vector<pid_t> children;
    for (int child = 0; child < 4; ++child) {
        const pid_t process = ::fork();
        if (process == 0) {
            bool good = true;
            for (int i = 0; i < 200; ++i) {
                const std::string name = "child " + std::to_string(child);
                good = write(kHkeyCurrentUser, "a", name, std::to_string(i)) == 0 && good;
                good = read(kHkeyCurrentUser, "a", name) == std::to_string(i) && good;
            }
            ::_exit(good ? 0 : 1);
        }
        children.push_back(process);
        EXPECT_EQ(write(kHkeyCurrentUser, "a", "parent", std::to_string(child)), 0u);
    }
    for (const pid_t child : children) {
        int status = -1;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        EXPECT_EQ(status, 0);
    }
    for (int child = 0; child < 4; ++child)
        EXPECT_EQ(read(kHkeyCurrentUser, "a", "child " + std::to_string(child)), "199");
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "parent"), "3");
}

TEST_F(RegistryStoreLinux, ThreadsShareTheStore) {
    std::vector<std::thread> threads;
    for (int thread = 0; thread < 4; ++thread) {
        threads.emplace_back([thread] {
            const std::string path = "t" + std::to_string(thread % 2);
            const std::string name = std::to_string(thread);
            for (int i = 0; i < 100; ++i) {
                EXPECT_EQ(write(kHkeyCurrentUser, path, name, std::to_string(i)), 0u);
                EXPECT_EQ(read(kHkeyCurrentUser, path, name), std::to_string(i));
            }
        });
    }
    for (std::thread& thread : threads)
        thread.join();
}

TEST_F(RegistryStoreLinux, WhatWasWrittenSurvivesAKill) {
    EXPECT_EQ(inChild([&] {
                  write(kHkeyCurrentUser, "a", "v", "user");
                  write(kHkeyLocalMachine, "a", "v", "machine");
                  ::raise(SIGKILL);
                  return 0;
              }),
              1000 + SIGKILL);
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "user");
    EXPECT_EQ(read(kHkeyLocalMachine, "a", "v"), "machine");
}

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

TEST_F(RegistryStoreLinux, FileThatMayNotGrowIsAnErrorAndLosesNothing) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "before"), 0u);
    EXPECT_EQ(inChild([&] {
                  ::signal(SIGXFSZ, SIG_IGN);
                  EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "before");
                  const rlimit limit{400000, 400000};
                  if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return 99;
                  EXPECT_NE(write(kHkeyCurrentUser, "a", "large", std::string(600000, 'x')), 0u);
                  EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "before");
                  EXPECT_EQ(read(kHkeyCurrentUser, "a", "large"), "(2)");
                  EXPECT_EQ(write(kHkeyCurrentUser, "a", "small", "fits"), 0u);
                  return testing::Test::HasFailure() ? 1 : 0;
              }),
              0);
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "before");
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "small"), "fits");
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "large"), "(2)");
}

TEST_F(RegistryStoreLinux, FolderThatCantBeMadeIsAnError) {
    std::ofstream(store_.userFolder()) << "a file in its place";
    EXPECT_NE(write(kHkeyCurrentUser, "a", "v", "x"), 0u);
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "(2)");
}

// Transactions.

struct RegistryTransactionsLinux : RegistryStoreLinux {};

TEST_F(RegistryTransactionsLinux, CommitMakesAllOfItLast) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "old"), 0u);
    EXPECT_EQ(number(registryTransactions.Begin()), 0u);
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "new"), 0u);
    EXPECT_EQ(write(kHkeyCurrentUser, "b\\c", "v", "new"), 0u);
    EXPECT_EQ(write(kHkeyLocalMachine, "m", "v", "new"), 0u);
    EXPECT_EQ(read(kHkeyCurrentUser, "b\\c", "v"), "new");
    EXPECT_EQ(number(registryTransactions.Commit()), 0u);
    store_.closeDatabases();
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "new");
    EXPECT_EQ(read(kHkeyCurrentUser, "b\\c", "v"), "new");
    EXPECT_EQ(read(kHkeyLocalMachine, "m", "v"), "new");
}

TEST_F(RegistryTransactionsLinux, RollbackUndoesAllOfIt) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "old"), 0u);
    EXPECT_EQ(number(registryTransactions.Begin()), 0u);
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "new"), 0u);
    EXPECT_EQ(number(shlwapi.SHDeleteKeyA(kHkeyCurrentUser, "a")), 0u);
    EXPECT_EQ(number(shlwapi.SHDeleteKeyA(kHkeyCurrentUser, "none")), kErrorFileNotFound);
    EXPECT_EQ(write(kHkeyCurrentUser, "b", "v", "new"), 0u);
    EXPECT_EQ(number(registryTransactions.Rollback()), 0u);
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "old");
    EXPECT_EQ(read(kHkeyCurrentUser, "b", "v"), "(2)");
}

TEST_F(RegistryTransactionsLinux, EndOfTheProcessUndoesAllOfIt) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "old"), 0u);
    EXPECT_EQ(inChild([&] {
                  registryTransactions.Begin();
                  write(kHkeyCurrentUser, "a", "v", "new");
                  ::raise(SIGKILL);
                  return 0;
              }),
              1000 + SIGKILL);
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "old");
}

TEST_F(RegistryTransactionsLinux, OneAtATimeAndNoneWithoutABegin) {
    EXPECT_NE(number(registryTransactions.Commit()), 0u);
    EXPECT_NE(number(registryTransactions.Rollback()), 0u);
    EXPECT_EQ(number(registryTransactions.Begin()), 0u);
    EXPECT_NE(number(registryTransactions.Begin()), 0u);
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "x"), 0u);
    EXPECT_EQ(number(registryTransactions.Commit()), 0u);
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "x");
}

TEST_F(RegistryTransactionsLinux, OtherThreadsWaitUntilItEnds) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "old"), 0u);
    EXPECT_EQ(number(registryTransactions.Begin()), 0u);
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "new"), 0u);
    std::string found;
    std::thread other([&] { found = read(kHkeyCurrentUser, "a", "v"); });
    std::this_thread::sleep_for(std::chrono::milliseconds(50));
    EXPECT_EQ(number(registryTransactions.Commit()), 0u);
    other.join();
    EXPECT_EQ(found, "new");
}

TEST_F(RegistryTransactionsLinux, ForkLosesItAndSaysSo) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "old"), 0u);
    EXPECT_EQ(number(registryTransactions.Begin()), 0u);
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "new"), 0u);
    EXPECT_EQ(inChild([] { return 0; }), 0);
    EXPECT_EQ(write(kHkeyCurrentUser, "b", "v", "new"), 6701u);
    EXPECT_EQ(number(registryTransactions.Commit()), 6701u);
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "old");
    EXPECT_EQ(read(kHkeyCurrentUser, "b", "v"), "(2)");
}

TEST_F(RegistryTransactionsLinux, FullDiskUndoesAllOfIt) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "old"), 0u);
    EXPECT_EQ(inChild([&] {
                  ::signal(SIGXFSZ, SIG_IGN);
                  registryTransactions.Begin();
                  EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "new"), 0u);
                  const rlimit limit{400000, 400000};
                  if (::setrlimit(RLIMIT_FSIZE, &limit) != 0) return 99;
                  std::uint32_t code = 0;
                  for (int i = 0; i < 100 && code == 0; ++i)
                      code =
                          write(kHkeyCurrentUser, "a", std::to_string(i), std::string(300000, 'x'));
                  const std::uint32_t end = number(registryTransactions.Commit());
                  EXPECT_TRUE(code != 0 || end != 0);
                  EXPECT_NE(end, 0u);
                  EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "old");
                  return testing::Test::HasFailure() ? 1 : 0;
              }),
              0);
    EXPECT_EQ(read(kHkeyCurrentUser, "a", "v"), "old");
}

}  // namespace
}  // namespace orvane::platform
