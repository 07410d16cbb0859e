// What the settings ask of the registry: which operations, in which order, and what becomes of each
// failure.

#include "frame/values/codepage.h"
#include "frame/values/conversions.h"
#include "platform/advapi32.h"
#include "platform/shlwapi.h"
#include "settings/orvOrvaneSettings.h"
#include "settings_place.h"
#include "support/recorder.h"
#include "support/torture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvane {
namespace {

using platform::advapi32;
using test::Recorder;
using test::SettingsPlace;
using Type = RegistryType_Const;
using Lines = std::vector<std::string>;

const std::string kUser = "2147483649";
const std::string kMachine = "2147483650";

class SettingsCalls : public testing::Test {
protected:
    SettingsCalls() {
        place_.store(u"Version 1.0", u"Name", u"old");
        place_.store(u"Version 1.5", u"Name", u"newer");
    }

    /// The call that opens one of the application's keys.
    std::string opens(const std::string& root, const std::u16string& version, int access,
                      const std::string& code) {
        const std::u16string path = version.empty() ? place_.key() : place_.key(version);
        std::string text;
        platform::describe(text, toAnsi(path));
        return "RegOpenKeyExA(" + root + ", " + text + ", 0, " + std::to_string(access) +
               ", *) -> " + code;
    }
    std::string loadText(std::int32_t major, std::int32_t minor, bool userSetting = true) {
        bool success = false;
        const Variant value =
            settings_->LoadSetting(u"", u"Name", Type::rtString, place_.title(), major, minor,
                                   u"fallback", userSetting, success);
        return toAnsi(toText(value)) + (success ? "" : " without success");
    }
    bool save(std::int32_t major, std::int32_t minor, const Variant& value) {
        return settings_->SaveSetting(u"k", u"Name", Type::rtString, value, place_.title(), major,
                                      minor, true);
    }

    SettingsPlace place_;
    Ref<orvOrvaneSettings> settings_ = make<orvOrvaneSettings>();
};

TEST_F(SettingsCalls, LoadOfAPresentValueReadsItsKeyAlone) {
    const Recorder recorder(advapi32, platform::shlwapi);
    EXPECT_EQ(loadText(1, 5), "newer");
    EXPECT_TRUE(
        recorder.saw({opens(kUser, u"Version 1.5", 1, "0"), "RegQueryValueExA(*, \"Name\", *) -> 0",
                      "RegQueryValueExA(*, \"Name\", *) -> 0", "RegCloseKey(*) -> 0"}));
}

TEST_F(SettingsCalls, LoadThatFailsSearchesTheVersionsAndReadsOnceMore) {
    const Recorder recorder(advapi32, platform::shlwapi);
    EXPECT_EQ(loadText(2, 0), "newer");
    EXPECT_TRUE(recorder.saw({opens(kUser, u"Version 2.0", 1, "2"), opens(kUser, u"", 9, "0"),
                              "RegQueryInfoKeyA(*) -> 0", "RegEnumKeyA(*, 0, *) -> 0",
                              "RegEnumKeyA(*, 1, *) -> 0", "RegCloseKey(*) -> 0",
                              opens(kUser, u"Version 1.5", 1, "0"), "RegQueryValueExA(*) -> 0",
                              "RegQueryValueExA(*) -> 0", "RegCloseKey(*) -> 0"}));
    EXPECT_EQ(recorder.leftOpen(), Lines());
}

TEST_F(SettingsCalls, LoadWithoutAnOlderVersionReadsNoSecondKey) {
    const Recorder recorder(advapi32, platform::shlwapi);
    EXPECT_EQ(loadText(0, 9), "fallback without success");
    EXPECT_TRUE(recorder.saw({opens(kUser, u"Version 0.9", 1, "2"), opens(kUser, u"", 9, "0"),
                              "RegQueryInfoKeyA(*) -> 0", "RegEnumKeyA(*, 0, *) -> 0",
                              "RegEnumKeyA(*, 1, *) -> 0", "RegCloseKey(*) -> 0"}));
}

TEST_F(SettingsCalls, LoadOfVersionZeroDoesNotSearch) {
    const Recorder recorder(advapi32, platform::shlwapi);
    EXPECT_EQ(loadText(0, 0), "fallback without success");
    EXPECT_TRUE(recorder.saw({opens(kUser, u"Version 0.0", 1, "2")}));
}

TEST_F(SettingsCalls, LoadFromTheMachineLooksNowhereElse) {
    const Recorder recorder(advapi32, platform::shlwapi);
    EXPECT_EQ(loadText(2, 0, /*userSetting=*/false), "fallback without success");
    EXPECT_TRUE(
        recorder.saw({opens(kMachine, u"Version 2.0", 1, "2"), opens(kMachine, u"", 9, "2")}));
}

TEST_F(SettingsCalls, LoadOfATypeOutOfRangeOpensNoKeyForIt) {
    const Recorder recorder(advapi32, platform::shlwapi);
    bool success = true;
    settings_->LoadSetting(u"", u"Name", Type{7}, place_.title(), 0, 0, Variant::missing(), true,
                           success);
    EXPECT_FALSE(success);
    EXPECT_TRUE(recorder.saw({}));
}

TEST_F(SettingsCalls, SaveCreatesAndWritesTheCurrentVersionsKey) {
    const Recorder recorder(advapi32, platform::shlwapi);
    EXPECT_TRUE(save(2, 0, u"new"));
    std::string path;
    platform::describe(path, toAnsi(place_.key(u"Version 2.0\\k")));
    EXPECT_TRUE(
        recorder.saw({"RegCreateKeyExA(" + kUser + ", " + path + ", 0, 2, *) -> 0",
                      "RegSetValueExA(*, \"Name\", 1, <4 bytes>) -> 0", "RegCloseKey(*) -> 0"}));
}

TEST_F(SettingsCalls, SaveOfAMissingValueAsksNothing) {
    const Recorder recorder;
    EXPECT_FALSE(save(2, 0, Variant::missing()));
    EXPECT_TRUE(recorder.saw({}));
}

TEST_F(SettingsCalls, PathsAskNothing) {
    const Recorder recorder;
    settings_->GetSettingPath(place_.title(), 1, 2, u"k");
    EXPECT_TRUE(recorder.saw({}));
}

TEST_F(SettingsCalls, FailureWhileTheVersionsAreListedEndsInTheDefault) {
    const auto real = advapi32.RegEnumKeyA;
    test::ScopedTarget fake(advapi32.RegEnumKeyA, [&](platform::RegistryKey key,
                                                      std::uint32_t index, std::span<char> name) {
        return index == 1 ? platform::ResultCode{platform::kErrorAccessDenied}
                          : real(key, index, name);
    });
    EXPECT_EQ(loadText(2, 0), "fallback without success");
}

TEST_F(SettingsCalls, ListThatEndsEarlyServesAsFarAsItGoes) {
    const auto real = advapi32.RegEnumKeyA;
    test::ScopedTarget fake(advapi32.RegEnumKeyA, [&](platform::RegistryKey key,
                                                      std::uint32_t index, std::span<char> name) {
        return index == 1 ? platform::ResultCode{platform::kErrorNoMoreItems}
                          : real(key, index, name);
    });
    EXPECT_EQ(loadText(2, 0), "old");
}

TEST_F(SettingsCalls, NoFailureOfALoadRaisesOrLeavesAKeyOpen) {
    const std::size_t failures =
        test::torture([&] { return loadText(2, 0); },
                      [](const std::string& outcome, const test::TortureRun& run) {
                          // The version's own key is not there anyway, so its failure changes
                          // nothing.
                          const bool harmless = run.failedAt <= 1;
                          EXPECT_EQ(outcome, harmless ? "newer" : "fallback without success")
                              << run.failed;
                      },
                      {.operations = test::operationsOf(advapi32), .spared = {}});
    EXPECT_EQ(failures, 8U);
}

TEST_F(SettingsCalls, NoFailureOfASaveRaisesOrLeavesAKeyOpen) {
    const std::size_t failures = test::torture(
        [&] { return save(2, 0, u"new"); },
        [](bool outcome, const test::TortureRun& run) { EXPECT_EQ(outcome, run.failedAt == 0); },
        {.operations = test::operationsOf(advapi32), .spared = {}});
    EXPECT_EQ(failures, 2U);
}

}  // namespace
}  // namespace orvane
