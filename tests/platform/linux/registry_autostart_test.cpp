// The run key of the real store with its autostart entries: full disks and killed processes.

#include "registry_fixture.h"

#include <sched.h>
#include <sys/mount.h>

namespace orvane::platform {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr const char* kRun = "Software\\Microsoft\\Windows\\CurrentVersion\\Run";

struct RegistryAutostartLinux : RegistryStoreLinux {
    static std::uint32_t add(const std::string& line, const std::string& name = "App",
                             RegistryKey root = kHkeyCurrentUser) {
        RegistryKey key{};
        KeyDisposition done{};
        ResultCode code = advapi32.RegCreateKeyExA(root, kRun, 0, kKeySetValue, key, done);
        if (code != ResultCode::success) return number(code);
        code = advapi32.RegSetValueExA(key, name, kRegSz, bytes(line + '\0'));
        advapi32.RegCloseKey(key);
        return number(code);
    }
    static std::uint32_t remove(const std::string& name = "App") {
        RegistryKey key{};
        ResultCode code = advapi32.RegOpenKeyExA(kHkeyCurrentUser, kRun, 0, kKeySetValue, key);
        if (code != ResultCode::success) return number(code);
        code = advapi32.RegDeleteValueA(key, name);
        advapi32.RegCloseKey(key);
        return number(code);
    }
    std::string folder() const { return store_.userFolder() + "/autostart"; }
    std::string file() const { return folder() + "/orvane-user-app.desktop"; }
};

TEST_F(RegistryAutostartLinux, FullDiskKeepsValueAndEntry) {
    fs::create_directories(store_.userFolder());
    const int status = inChild([&] {
        if (::unshare(CLONE_NEWNS) != 0 ||
            ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount("none", store_.userFolder().c_str(), "tmpfs", 0, "size=400k") != 0) {
            return 77;
        }
        EXPECT_EQ(add("/bin/true"), 0u);
        const std::string entry = contentOf(file());
        EXPECT_THAT(entry, HasSubstr("\nExec=/bin/true\n"));
        for (int i = 0; i < 3; ++i) {
            std::ofstream filler(store_.userFolder() + "/filler", std::ios::binary | std::ios::app);
            const std::string block(4096, 'f');
            while (filler.write(block.data(), 4096).flush()) {
            }
            EXPECT_EQ(i == 1 ? add("/bin/false " + std::string(9000, 'x')) : remove(),
                      kErrorDiskFull);
            EXPECT_EQ(contentOf(file()), entry);
            EXPECT_EQ(read(kHkeyCurrentUser, kRun, "App"), std::string("/bin/true\0", 10));
            EXPECT_THAT(filesIn(folder()), ElementsAre("orvane-user-app.desktop"));
        }
        fs::remove(store_.userFolder() + "/filler");
        EXPECT_EQ(remove(), 0u);
        EXPECT_THAT(filesIn(folder()), IsEmpty());
        store_.closeDatabases();
        return testing::Test::HasFailure() ? 1 : 0;
    });
    if (status == 77) GTEST_SKIP() << "this process may not mount a file system";
    EXPECT_EQ(status, 0);
}

/// The machine's part of a transaction is committed before the user's.
TEST_F(RegistryAutostartLinux, FullDiskOfTheUserKeepsWhatTheMachineHas) {
    fs::create_directories(store_.userFolder());
    const int status = inChild([&] {
        if (::unshare(CLONE_NEWNS) != 0 ||
            ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) != 0 ||
            ::mount("none", store_.userFolder().c_str(), "tmpfs", 0, "size=400k") != 0) {
            return 77;
        }
        EXPECT_EQ(add("/bin/true"), 0u);
        EXPECT_EQ(number(registryTransactions.Begin()), 0u);
        EXPECT_EQ(add("/bin/false"), 0u);
        EXPECT_EQ(write(kHkeyCurrentUser, "a", "large", std::string(500000, 'x')), 0u);
        EXPECT_EQ(add("/bin/false", "App", kHkeyLocalMachine), 0u);
        EXPECT_EQ(number(registryTransactions.Commit()), kErrorDiskFull);
        EXPECT_EQ(read(kHkeyCurrentUser, kRun, "App"), std::string("/bin/true\0", 10));
        EXPECT_THAT(contentOf(file()), HasSubstr("\nExec=/bin/true\n"));
        EXPECT_EQ(read(kHkeyLocalMachine, kRun, "App"), std::string("/bin/false\0", 11));
        EXPECT_THAT(contentOf(store_.machineFolder() + "/autostart/orvane-machine-app.desktop"),
                    HasSubstr("\nExec=/bin/false\n"));
        store_.closeDatabases();
        return testing::Test::HasFailure() ? 1 : 0;
    });
    if (status == 77) GTEST_SKIP() << "this process may not mount a file system";
    EXPECT_EQ(status, 0);
}

/// Where a process is killed that adds and deletes without a pause, the next change makes value and
/// entry one again.
TEST_F(RegistryAutostartLinux, KilledProcessLeavesNothingThatTheNextChangeDoesNotSettle) {
    EXPECT_EQ(add("/bin/true", "Other"), 0u);
    for (useconds_t i = 0; i < 60; ++i) {
        const pid_t child = ::fork();
        if (child == 0) {
            for (int line = 0;; ++line) {
                add("/bin/true " + std::to_string(line));
                add("/bin/false " + std::to_string(line));
                remove();
            }
        }
        ::usleep(3000 + 317 * i);
        ::kill(child, SIGKILL);
        ASSERT_EQ(::waitpid(child, nullptr, 0), child);
        switch (i % 3) {
        case 0:
            EXPECT_THAT(remove(), testing::AnyOf(0u, kErrorFileNotFound));
            EXPECT_EQ(read(kHkeyCurrentUser, kRun, "App"), "(2)");
            EXPECT_FALSE(fs::exists(file()));
            break;
        case 1:
            EXPECT_EQ(add("/bin/cat"), 0u);
            EXPECT_THAT(contentOf(file()), HasSubstr("\nExec=/bin/cat\n"));
            break;
        default: {
            // A change of another value settles what has a value.
            EXPECT_EQ(add("/bin/true", "Other"), 0u);
            const std::string value = read(kHkeyCurrentUser, kRun, "App");
            if (value != "(2)") {
                EXPECT_THAT(contentOf(file()),
                            HasSubstr("\nExec=" + value.substr(0, value.size() - 1) + "\n"));
            }
        }
        }
        for (const std::string& name : filesIn(folder()))
            EXPECT_TRUE(name.ends_with(".desktop")) << name;
    }
}

}  // namespace
}  // namespace orvane::platform
