#include "registry_fixture.h"

#include <cstdlib>
#include <fcntl.h>
#include <grp.h>
#include <pwd.h>
#include <sstream>
#include <sys/prctl.h>
#include <sys/statvfs.h>

namespace orvane::platform {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kNeedsRoot =
    "only root can write to the machine's root and then become somebody who can't";

bool becomeNobody() {
    return ::setgroups(0, nullptr) == 0 && ::setgid(kNobody) == 0 && ::setuid(kNobody) == 0;
}

TEST_F(RegistryStoreLinux, UserWithoutRightsReadsTheMachinesRootAndWritesNothing) {
    if (::geteuid() != 0) GTEST_SKIP() << kNeedsRoot;
    EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "machine"), 0u);
    EXPECT_EQ(write(kHkeyLocalMachine, "Software\\Classes\\c", "v", "machine"), 0u);
    store_.closeDatabases();
    fs::create_directory(store_.userFolder());
    EXPECT_EQ(::chown(store_.userFolder().c_str(), kNobody, kNobody), 0);
    EXPECT_EQ(
        inChild([&] {
            if (!becomeNobody()) return 99;
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

TEST_F(RegistryStoreLinux, UserReadsAMachinesRootThatWasMadeUnderANarrowMask) {
    if (::geteuid() != 0) GTEST_SKIP() << kNeedsRoot;
    const mode_t former = ::umask(0077);
    EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "machine"), 0u);
    ::umask(former);
    EXPECT_EQ(inChild([&] {
                  if (!becomeNobody()) return 99;
                  EXPECT_EQ(read(kHkeyLocalMachine, "a", "v"), "machine");
                  return testing::Test::HasFailure() ? 1 : 0;
              }),
              0);
}

TEST_F(RegistryStoreLinux, AbsentMachinesRootIsEmptyForAUserWithoutRights) {
    if (::geteuid() != 0) GTEST_SKIP() << kNeedsRoot;
    EXPECT_EQ(inChild([&] {
                  if (!becomeNobody()) return 99;
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

TEST_F(RegistryStoreLinux, MachinesRootThatIsJustBeingMadeIsEmptyForAUserWithoutRights) {
    if (::geteuid() != 0) GTEST_SKIP() << kNeedsRoot;
    fs::create_directories(store_.machineFolder());
    std::ofstream(store_.machineFile());
    EXPECT_EQ(inChild([&] {
                  if (!becomeNobody()) return 99;
                  EXPECT_EQ(read(kHkeyLocalMachine, "a", "v"), "(2)");
                  EXPECT_THAT(subKeys(kHkeyLocalMachine, ""), IsEmpty());
                  EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "x"), kErrorAccessDenied);
                  return testing::Test::HasFailure() ? 1 : 0;
              }),
              0);
    EXPECT_EQ(fs::file_size(store_.machineFile()), 0u);
    EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "x"), 0u);
}

// Places.

/// What a copy of the probe says about its places when it runs as nobody, with all overrides given.
std::vector<std::string> placesOf(const std::string& probe, const std::string& folder) {
    std::array<int, 2> said{};
    EXPECT_EQ(::pipe(said.data()), 0);
    const pid_t child = ::fork();
    if (child == 0) {
        ::dup2(said[1], STDOUT_FILENO);
        for (const char* name :
             {"ORVANE_REGISTRY_USER", "ORVANE_REGISTRY_MACHINE", "XDG_CONFIG_HOME", "HOME"}) {
            ::setenv(name, folder.c_str(), 1);
        }
        if (becomeNobody()) ::execl(probe.c_str(), probe.c_str(), nullptr);
        ::_exit(127);
    }
    ::close(said[1]);
    std::string text;
    std::array<char, 4096> block{};
    ssize_t count = 0;
    while ((count = ::read(said[0], block.data(), block.size())) > 0)
        text.append(block.data(), static_cast<std::size_t>(count));
    ::close(said[0]);
    int status = -1;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_EQ(status, 0);
    std::istringstream lines(text);
    std::vector<std::string> places;
    for (std::string line; std::getline(lines, line);)
        places.push_back(line);
    return places;
}

TEST_F(RegistryStoreLinux, ProcessWithMoreRightsThanItsUserIgnoresTheOverrides) {
    if (::geteuid() != 0) GTEST_SKIP() << kNeedsRoot;
    if (::prctl(PR_GET_NO_NEW_PRIVS, 0, 0, 0, 0) == 1) {
        GTEST_SKIP() << "no program gives this process other rights";
    }
    const fs::path folder = fs::path(store_.userFolder()).parent_path();
    struct statvfs system {};
    ASSERT_EQ(::statvfs(folder.c_str(), &system), 0);
    if ((system.f_flag & (ST_NOSUID | ST_NOEXEC)) != 0) {
        GTEST_SKIP() << "programs in the temporary folder get no other rights";
    }
    const fs::path probe =
        fs::read_symlink("/proc/self/exe").replace_filename("registry_places_probe");
    const std::string plain = folder / "plain";
    const std::string privileged = folder / "privileged";
    fs::copy_file(probe, plain);
    fs::copy_file(probe, privileged);
    ASSERT_EQ(::chmod(plain.c_str(), 0755), 0);
    ASSERT_EQ(::chmod(privileged.c_str(), 04755), 0);
    EXPECT_THAT(placesOf(plain, folder),
                ElementsAre(folder, folder, folder / "autostart", folder / "autostart"));
    const passwd* root = ::getpwuid(0);
    ASSERT_NE(root, nullptr);
    const std::string configuration = std::string(root->pw_dir) + "/.config";
    EXPECT_THAT(placesOf(privileged, folder),
                ElementsAre(configuration + "/orvane", "/var/lib/orvane",
                            configuration + "/autostart", "/etc/xdg/autostart"));
}

// What a killed writer leaves.

/// A writer of the machine's root that is killed in the middle of its work: more of it than is kept
/// in memory, so that a part is in the database.
struct InterruptedWriterLinux : RegistryStoreLinux {
    static constexpr std::size_t kMuch = 6u << 20;
    /// Longer than a page of the database.
    static constexpr std::size_t kLong = 40000;

    void SetUp() override {
        RegistryStoreLinux::SetUp();
        if (::geteuid() != 0) GTEST_SKIP() << kNeedsRoot;
        // What a reader without rights leaves behind would be here.
        fs::create_directory(temporary_);
        fs::permissions(temporary_, fs::perms(0777));
        ::setenv("TMPDIR", temporary_.c_str(), 1);
    }
    void TearDown() override {
        ::unsetenv("TMPDIR");
        if (::geteuid() == 0) {
            EXPECT_THAT(filesIn(temporary_), IsEmpty());
        }
    }

    std::string journal() const { return store_.machineFile() + "-journal"; }
    void writeAndDie() const {
        ASSERT_EQ(inChild([] {
                      registryTransactions.Begin();
                      write(kHkeyLocalMachine, "a", "v", "unfinished");
                      write(kHkeyLocalMachine, "a", "long", std::string(kLong, 'u'));
                      write(kHkeyLocalMachine, "Software\\Classes\\c", "", "unfinished");
                      write(kHkeyLocalMachine, "new", "v", "unfinished");
                      write(kHkeyLocalMachine, "a", "filler", std::string(kMuch, 'x'));
                      ::raise(SIGKILL);
                      return 0;
                  }),
                  1000 + SIGKILL);
        ASSERT_TRUE(fs::exists(journal()));
        ASSERT_GT(fs::file_size(store_.machineFile()), kMuch / 2);
    }

    const std::string temporary_ = store_.userFolder() + "-temporary";
};

TEST_F(InterruptedWriterLinux, ReaderWithoutRightsFindsWhatWasCommitted) {
    EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "committed"), 0u);
    EXPECT_EQ(write(kHkeyLocalMachine, "a", "long", std::string(kLong, 'c')), 0u);
    EXPECT_EQ(write(kHkeyLocalMachine, "Software\\Classes\\c", "", "committed"), 0u);
    writeAndDie();
    const std::string database = contentOf(store_.machineFile());
    const std::string left = contentOf(journal());
    // The test shows nothing unless the database alone would be wrong.
    ASSERT_THAT(database, HasSubstr(std::string(3000, 'u')));
    EXPECT_EQ(inChild([&] {
                  if (!becomeNobody()) return 99;
                  EXPECT_EQ(read(kHkeyLocalMachine, "a", "v"), "committed");
                  EXPECT_EQ(read(kHkeyLocalMachine, "a", "long"), std::string(kLong, 'c'));
                  EXPECT_EQ(read(kHkeyLocalMachine, "a", "filler"), "(2)");
                  EXPECT_EQ(read(kHkeyLocalMachine, "new", "v"), "(2)");
                  EXPECT_EQ(read(kHkeyClassesRoot, "c", ""), "committed");
                  EXPECT_THAT(subKeys(kHkeyLocalMachine, ""), ElementsAre("a", "Software"));
                  EXPECT_THAT(values(kHkeyLocalMachine, "a"), ElementsAre("v", "long"));
                  return testing::Test::HasFailure() ? 1 : 0;
              }),
              0);
    EXPECT_EQ(contentOf(store_.machineFile()), database);
    EXPECT_EQ(contentOf(journal()), left);
    EXPECT_EQ(read(kHkeyLocalMachine, "a", "v"), "committed");
    EXPECT_FALSE(fs::exists(journal()));
}

TEST_F(InterruptedWriterLinux, ReaderWithoutRightsStillMayNotWrite) {
    EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "committed"), 0u);
    writeAndDie();
    EXPECT_EQ(
        inChild([&] {
            if (!becomeNobody()) return 99;
            RegistryKey key{};
            EXPECT_EQ(number(advapi32.RegOpenKeyExA(kHkeyLocalMachine, "a", 0, kKeySetValue, key)),
                      kErrorAccessDenied);
            EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "x"), kErrorAccessDenied);
            EXPECT_EQ(write(kHkeyLocalMachine, "b", "v", "x"), kErrorAccessDenied);
            EXPECT_EQ(number(shlwapi.SHDeleteKeyA(kHkeyLocalMachine, "a")), kErrorAccessDenied);
            EXPECT_EQ(number(shlwapi.SHDeleteEmptyKeyA(kHkeyLocalMachine, "a")),
                      kErrorAccessDenied);
            EXPECT_EQ(read(kHkeyLocalMachine, "a", "v"), "committed");
            return testing::Test::HasFailure() ? 1 : 0;
        }),
        0);
    EXPECT_EQ(read(kHkeyLocalMachine, "a", "v"), "committed");
}

TEST_F(InterruptedWriterLinux, ReaderWithoutRightsNoticesThatItWasUndone) {
    EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "committed"), 0u);
    writeAndDie();
    std::array<int, 2> undone{};
    std::array<int, 2> readOnce{};
    ASSERT_EQ(::pipe(undone.data()) + ::pipe(readOnce.data()), 0);
    const pid_t reader = ::fork();
    if (reader == 0) {
        char byte = 0;
        const bool first = becomeNobody() && read(kHkeyLocalMachine, "a", "v") == "committed";
        const bool told = ::write(readOnce[1], "r", 1) == 1 && ::read(undone[0], &byte, 1) == 1;
        ::_exit(first && told && read(kHkeyLocalMachine, "a", "v") == "next" ? 0 : 1);
    }
    char byte = 0;
    EXPECT_EQ(::read(readOnce[0], &byte, 1), 1);
    EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "next"), 0u);
    EXPECT_EQ(::write(undone[1], "u", 1), 1);
    int status = -1;
    EXPECT_EQ(::waitpid(reader, &status, 0), reader);
    EXPECT_EQ(status, 0);
    for (const int end : {undone[0], undone[1], readOnce[0], readOnce[1]})
        ::close(end);
}

TEST_F(InterruptedWriterLinux, ReaderWithoutATemporaryFolderReadsInMemory) {
    EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "committed"), 0u);
    writeAndDie();
    EXPECT_EQ(inChild([&] {
                  if (!becomeNobody()) return 99;
                  ::setenv("TMPDIR", (temporary_ + "/none").c_str(), 1);
                  EXPECT_EQ(read(kHkeyLocalMachine, "a", "v"), "committed");
                  return testing::Test::HasFailure() ? 1 : 0;
              }),
              0);
}

TEST_F(InterruptedWriterLinux, ReaderWithoutRoomForItsCopyFailsAndLeavesNothing) {
    EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "committed"), 0u);
    writeAndDie();
    EXPECT_EQ(inChild([&] {
                  if (!becomeNobody()) return 99;
                  limitFiles(100000);
                  EXPECT_EQ(read(kHkeyLocalMachine, "a", "v"), "(112)");
                  ::setenv("TMPDIR", (temporary_ + "/none").c_str(), 1);
                  EXPECT_EQ(read(kHkeyLocalMachine, "a", "v"), "(5)");
                  return testing::Test::HasFailure() ? 1 : 0;
              }),
              0);
}

/// Readers meet writers at work, writers that were killed, and those who clear up after them.
TEST_F(InterruptedWriterLinux, ReaderWithoutRightsNeverFindsHalfOfAChange) {
    EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", std::string(3000, '0')), 0u);
    std::array<int, 2> end{};
    ASSERT_EQ(::pipe2(end.data(), O_NONBLOCK), 0);
    const pid_t reader = ::fork();
    if (reader == 0) {
        ::close(end[1]);
        char byte = 0;
        int found = 0;
        bool good = becomeNobody();
        while (good && ::read(end[0], &byte, 1) < 0) {
            const std::string value = read(kHkeyLocalMachine, "a", "v");
            good = value == std::string(3000, value[0]);
            ++found;
        }
        ::_exit(good && found > 5 ? 0 : 1);
    }
    for (useconds_t i = 0; i < 25; ++i) {
        const pid_t writer = ::fork();
        if (writer == 0) {
            for (char digit = '0';; digit = digit == '9' ? '0' : static_cast<char>(digit + 1)) {
                registryTransactions.Begin();
                write(kHkeyLocalMachine, "a", "v", std::string(3000, digit));
                write(kHkeyLocalMachine, "a", "filler", std::string(kMuch / 2, digit));
                registryTransactions.Commit();
            }
        }
        ::usleep(5000 + 2000 * i);
        ::kill(writer, SIGKILL);
        EXPECT_EQ(::waitpid(writer, nullptr, 0), writer);
    }
    ::close(end[1]);
    int status = -1;
    EXPECT_EQ(::waitpid(reader, &status, 0), reader);
    EXPECT_EQ(status, 0);
    ::close(end[0]);
}

}  // namespace
}  // namespace orvane::platform
