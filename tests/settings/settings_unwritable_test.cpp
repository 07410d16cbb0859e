// Settings on Linux where nothing can be written any more: what was saved is loaded, no default is.

#include "settings/orvOrvaneSettings.h"
#include "support/registry_store.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <functional>
#include <grp.h>
#include <sched.h>
#include <sys/mount.h>
#include <sys/wait.h>
#include <unistd.h>

namespace orvane {
namespace {

namespace fs = std::filesystem;
using enum RegistryType_Const;

constexpr const char16_t* kTitle = u"Unwritable";
constexpr int kCannotPrepare = 77;

struct SettingsUnwritable : test::RegistryTest {
    /// Saves a setting and, in a child process in which `makeUnwritable` has succeeded, loads it.
    void loadAfter(const std::function<bool()>& prepare,
                   const std::function<bool()>& makeUnwritable) {
        const pid_t child = ::fork();
        if (child == 0) {
            bool good = prepare();
            if (good) {
                const auto settings = make<orvOrvaneSettings>();
                EXPECT_TRUE(settings->SaveSetting(u"", u"v", rtString, Variant(u"former"), kTitle,
                                                  1, 0, true));
                EXPECT_TRUE(settings->SaveSetting(u"", u"v", rtString, Variant(u"saved"), kTitle, 2,
                                                  0, true));
                store_.closeDatabases();
                good = makeUnwritable();
                if (good) expectToLoad(*settings);
                store_.closeDatabases();
            }
            ::_exit(!good ? kCannotPrepare : testing::Test::HasFailure() ? 1 : 0);
        }
        int status = 0;
        EXPECT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFEXITED(status));
        if (WEXITSTATUS(status) == kCannotPrepare) {
            GTEST_SKIP() << "this process may not mount a file system or become another user";
        }
        EXPECT_EQ(WEXITSTATUS(status), 0);
    }
    static void expectToLoad(orvOrvaneSettings& settings) {
        bool success = false;
        const Variant loaded = settings.LoadSetting(u"", u"v", rtString, kTitle, 2, 0,
                                                    Variant(u"default"), true, success);
        EXPECT_TRUE(success);
        EXPECT_EQ(*loaded.as<WString>(), u"saved");
        // The search for the version before reads the names of keys.
        const Variant former = settings.LoadSetting(u"", u"v", rtString, kTitle, 1, 5,
                                                    Variant(u"default"), true, success);
        EXPECT_TRUE(success);
        EXPECT_EQ(*former.as<WString>(), u"former");
        EXPECT_FALSE(settings.SaveSetting(
            u"", u"v", rtString, Variant(WString(std::u16string(9000, u'x'))), kTitle, 2, 0, true));
    }
    bool mountSmallFileSystem() const {
        fs::create_directories(store_.userFolder());
        return ::unshare(CLONE_NEWNS) == 0 &&
               ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0 &&
               ::mount("none", store_.userFolder().c_str(), "tmpfs", 0, "size=400k") == 0;
    }
};

TEST_F(SettingsUnwritable, AreLoadedFromAFullDisk) {
    loadAfter([&] { return mountSmallFileSystem(); },
              [&] {
                  std::ofstream filler(store_.userFolder() + "/filler", std::ios::binary);
                  const std::string block(4096, 'f');
                  while (filler.write(block.data(), 4096).flush()) {
                  }
                  return true;
              });
}

TEST_F(SettingsUnwritable, AreLoadedFromAReadOnlyFileSystem) {
    loadAfter([&] { return mountSmallFileSystem(); },
              [&] {
                  return ::mount("none", store_.userFolder().c_str(), nullptr,
                                 MS_REMOUNT | MS_RDONLY, nullptr) == 0;
              });
}

/// Needs no rights: root becomes somebody who has none.
TEST_F(SettingsUnwritable, AreLoadedFromAFolderWithoutTheRightToWrite) {
    constexpr uid_t kNobody = 65534;
    const bool isRoot = ::geteuid() == 0;
    fs::permissions(fs::path(store_.userFolder()).parent_path(), fs::perms(0755));
    loadAfter([] { return true; },
              [&] {
                  fs::permissions(store_.userFolder(), fs::perms(0500));
                  return !isRoot || (::chown(store_.userFolder().c_str(), kNobody, kNobody) == 0 &&
                                     ::chown(store_.userFile().c_str(), kNobody, kNobody) == 0 &&
                                     ::setgroups(0, nullptr) == 0 && ::setgid(kNobody) == 0 &&
                                     ::setuid(kNobody) == 0);
              });
    fs::permissions(store_.userFolder(), fs::perms(0700));
}

}  // namespace
}  // namespace orvane
