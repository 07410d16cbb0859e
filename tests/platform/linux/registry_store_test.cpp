#include "registry_fixture.h"

#include <csignal>
#include <cstdlib>
#include <thread>

namespace orvane::platform {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

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

TEST_F(RegistryStoreLinux, MaskOfTheFirstWriterChangesNobodysRights) {
    for (const mode_t mask : {0027u, 0077u, 0777u}) {
        const std::string below = "/" + std::to_string(mask);
        const std::string user = store_.userFolder() + below + "/orvane";
        const std::string machine = store_.machineFolder() + below + "/orvane";
        EXPECT_EQ(inChild([&] {
                      ::umask(mask);
                      ::setenv("ORVANE_REGISTRY_USER", user.c_str(), 1);
                      ::setenv("ORVANE_REGISTRY_MACHINE", machine.c_str(), 1);
                      EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "1"), 0u);
                      EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "2"), 0u);
                      return testing::Test::HasFailure() ? 1 : 0;
                  }),
                  0);
        EXPECT_EQ(modeOf(user), 0700u);
        EXPECT_EQ(modeOf(user + "/registry.db"), 0600u);
        EXPECT_EQ(modeOf(store_.machineFolder() + below), 0755u);
        EXPECT_EQ(modeOf(machine), 0755u);
        EXPECT_EQ(modeOf(machine + "/registry.db"), 0644u);
    }
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

TEST_F(RegistryStoreLinux, ManyClassesAreListedInAMoment) {
    constexpr int kMany = 800;
    EXPECT_EQ(number(registryTransactions.Begin()), 0u);
    for (int i = 0; i < kMany; ++i) {
        const std::string name = "Orv.Class" + std::to_string(i);
        EXPECT_EQ(write(kHkeyCurrentUser, "Software\\Classes\\" + name, "", "x"), 0u);
        EXPECT_EQ(write(kHkeyLocalMachine, "Software\\Classes\\m" + name, "", "x"), 0u);
    }
    EXPECT_EQ(number(registryTransactions.Commit()), 0u);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(subKeys(kHkeyClassesRoot, "").size(), 2u * kMany);
    // It took half a minute when each name was looked for among all the others, for each place
    // anew.
    EXPECT_LT(std::chrono::steady_clock::now() - start, std::chrono::seconds(2));
}

TEST_F(RegistryStoreLinux, ListOfClassesFollowsItsChanges) {
    write(kHkeyLocalMachine, "Software\\Classes\\m", "v", "x");
    write(kHkeyCurrentUser, "Software\\Classes\\u", "v", "x");
    EXPECT_THAT(subKeys(kHkeyClassesRoot, ""), ElementsAre("u", "m"));
    EXPECT_EQ(inChild([&] {
                  write(kHkeyCurrentUser, "Software\\Classes\\u2", "v", "x");
                  return 0;
              }),
              0);
    EXPECT_THAT(subKeys(kHkeyClassesRoot, ""), ElementsAre("u", "u2", "m"));
    registryTransactions.Begin();
    write(kHkeyCurrentUser, "Software\\Classes\\u3", "v", "x");
    EXPECT_THAT(subKeys(kHkeyClassesRoot, ""), ElementsAre("u", "u2", "u3", "m"));
    registryTransactions.Rollback();
    EXPECT_THAT(subKeys(kHkeyClassesRoot, ""), ElementsAre("u", "u2", "m"));
    write(kHkeyCurrentUser, "Software\\Classes\\u", "w", "x");
    EXPECT_THAT(values(kHkeyClassesRoot, "u"), ElementsAre("v", "w"));
    EXPECT_THAT(values(kHkeyClassesRoot, "m"), ElementsAre("v"));
    store_.closeDatabases();
    fs::rename(store_.userFolder(), store_.userFolder() + "-elsewhere");
    EXPECT_THAT(subKeys(kHkeyClassesRoot, ""), ElementsAre("m"));
}

/// One root that can't be read must not pass for one that has nothing.
TEST_F(RegistryStoreLinux, ClassesTellTheErrorOfEitherRoot) {
    for (const bool users : {true, false}) {
        write(kHkeyCurrentUser, "Software\\Classes\\c", "v", "x");
        write(kHkeyLocalMachine, "Software\\Classes\\c", "v", "x");
        RegistryKey key{};
        EXPECT_EQ(number(advapi32.RegOpenKeyExA(kHkeyClassesRoot, "c", 0, 11, key)), 0u);
        store_.closeDatabases();
        // A later version, bytes 60 to 63 of the header.
        const std::string file = users ? store_.userFile() : store_.machineFile();
        overwrite(file, 60, std::string_view("\0\0\0\x63", 4));
        std::array<char, 20> name{};
        std::uint32_t size = name.size();
        KeyInformation information;
        EXPECT_EQ(number(advapi32.RegQueryInfoKeyA(key, information)), 1009u) << users;
        EXPECT_EQ(number(advapi32.RegEnumKeyA(key, 0, name)), 1009u) << users;
        EXPECT_EQ(number(advapi32.RegEnumValueA(key, 0, name.data(), size)), 1009u) << users;
        if (users) {
            EXPECT_EQ(number(advapi32.RegDeleteValueA(key, "v")), 1009u);
            EXPECT_EQ(write(kHkeyClassesRoot, "new", "v", "x"), 1009u);
            EXPECT_EQ(number(shlwapi.SHDeleteKeyA(kHkeyClassesRoot, "c")), 1009u);
        }
        EXPECT_EQ(number(shlwapi.SHDeleteEmptyKeyA(kHkeyClassesRoot, "c")), 1009u) << users;
        EXPECT_EQ(number(advapi32.RegCloseKey(key)), 0u);
        store_.closeDatabases();
        overwrite(file, 60, std::string_view("\0\0\0\x01", 4));
        EXPECT_EQ(read(kHkeyClassesRoot, "c", "v"), "x");
    }
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

}  // namespace
}  // namespace orvane::platform
