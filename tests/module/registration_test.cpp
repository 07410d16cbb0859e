#include "module/registration.h"

#include "frame/automation/create_object.h"
#include "frame/automation/table.h"
#include "frame/errors.h"
#include "frame/values/variant.h"
#include "platform/ole32.h"
#include "platform/paths.h"
#include "support/memory_registry.h"
#include "support/raised_error.h"
#include "support/torture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>

// This program has the catalogue of the test component.
namespace orvane::tests {
namespace {

using automation::registerLibrary;
using automation::unregisterLibrary;
using test::MemoryRegistry;
using Texts = std::map<std::u16string, std::u16string>;

constexpr HRESULT kClassesFailed = hresultFrom(0x80040201);
constexpr std::int32_t kModuleMissing = static_cast<std::int32_t>(0x8007007E);
constexpr std::int32_t kNoEntryPoint = static_cast<std::int32_t>(0x800401F9);
constexpr const char16_t* kProbe =
    u"Software\\Classes\\CLSID\\{1B7C2F20-3A5D-4E61-9C22-5D807B410E01}";
constexpr const char16_t* kComponent = u"" ORVANE_BIN_DIR "/libOrvTestComponent.so";

std::u16string at(const std::u16string& path) {
    return u"Software\\Classes\\" + path;
}

std::int32_t created(const std::u16string& progId, IUnknown*& object) {
    platform::ClassIdBytes classId;
    const std::int32_t found = platform::ole32.CLSIDFromProgID(progId, classId);
    return found < 0 ? found : platform::ole32.CoCreateInstance(classId, object);
}

struct RegistrationTest : testing::Test {
    MemoryRegistry registry;

    Texts machine() const { return registry.texts(platform::kHkeyLocalMachine); }
    Texts user() const { return registry.texts(platform::kHkeyCurrentUser); }
    /// Registers the component's own file in place of this program.
    void registerComponent() {
        ASSERT_EQ(registerLibrary(), S_OK);
        registry.set(platform::kHkeyLocalMachine, kProbe + std::u16string(u"\\InprocServer32"), u"",
                     kComponent);
    }
};

TEST_F(RegistrationTest, AClassHasTheSameKeysAsOnWindows) {
    ASSERT_EQ(registerLibrary(), S_OK);
    const Texts texts = machine();
    const std::u16string key = kProbe;
    EXPECT_EQ(texts.at(key + u"\\"), u"OrvTestComponent.TestProbe");
    EXPECT_EQ(texts.at(key + u"\\InprocServer32\\"), platform::ownFileName());
    EXPECT_EQ(texts.at(key + u"\\InprocServer32\\ThreadingModel"), u"Apartment");
    EXPECT_EQ(texts.at(key + u"\\VERSION\\"), u"1.0");
    EXPECT_EQ(texts.at(key + u"\\TypeLib\\"), u"{1B7C2F00-3A5D-4E61-9C22-5D807B410E01}");
    EXPECT_EQ(texts.at(key + u"\\Programmable\\"), u"");
    EXPECT_EQ(texts.at(key + u"\\ProgID\\"), u"OrvTestComponent.TestProbe");
    EXPECT_EQ(texts.at(at(u"OrvTestComponent.TestProbe\\")), u"OrvTestComponent.TestProbe");
    EXPECT_EQ(texts.at(at(u"OrvTestComponent.TestProbe\\Clsid\\")),
              u"{1B7C2F20-3A5D-4E61-9C22-5D807B410E01}");
    EXPECT_TRUE(user().empty());
}

TEST_F(RegistrationTest, TheTypeLibraryAndItsInterfacesAreRegistered) {
    ASSERT_EQ(registerLibrary(), S_OK);
    const Texts texts = machine();
    const std::u16string library = at(u"TypeLib\\{1B7C2F00-3A5D-4E61-9C22-5D807B410E01}\\1.0\\");
    EXPECT_EQ(texts.at(library), u"Компонент для проверок");
    EXPECT_EQ(texts.at(library + u"FLAGS\\"), u"0");
    EXPECT_EQ(texts.at(library + u"0\\linux64\\"), platform::ownFileName());
    EXPECT_TRUE(platform::ownFileName().starts_with(texts.at(library + u"HELPDIR\\")));
    for (const auto& [id, name] : {std::pair{u"21", u"_TestProbe"}, std::pair{u"11", u"_TestItems"},
                                   std::pair{u"12", u"__TestItems"}}) {
        const std::u16string key =
            at(u"Interface\\{1B7C2F") + id + u"-3A5D-4E61-9C22-5D807B410E01}\\";
        ASSERT_TRUE(texts.contains(key));
        EXPECT_EQ(texts.at(key), name);
        EXPECT_EQ(texts.at(key + u"TypeLib\\"), u"{1B7C2F00-3A5D-4E61-9C22-5D807B410E01}");
        EXPECT_EQ(texts.at(key + u"TypeLib\\Version"), u"1.0");
    }
}

TEST_F(RegistrationTest, WithoutRightsToTheMachinesItGoesToTheUsersRegistry) {
    registry.deny(platform::kHkeyLocalMachine);
    ASSERT_EQ(registerLibrary(), S_OK);
    EXPECT_TRUE(machine().empty());
    EXPECT_EQ(user().at(kProbe + std::u16string(u"\\")), u"OrvTestComponent.TestProbe");
    EXPECT_EQ(unregisterLibrary(), S_OK);
    EXPECT_FALSE(user().contains(kProbe + std::u16string(u"\\")));
}

TEST_F(RegistrationTest, WithoutRightsToEitherItFails) {
    registry.deny(platform::kHkeyLocalMachine);
    registry.deny(platform::kHkeyCurrentUser);
    EXPECT_EQ(registerLibrary(), kClassesFailed);
    EXPECT_TRUE(machine().empty());
    EXPECT_TRUE(user().empty());
}

/// What is left when only keys that many share are: those that classes lie in.
bool isOnlyShared(const Texts& texts) {
    return std::ranges::all_of(texts, [](const auto& each) {
        const std::u16string& key = each.first;
        return key == u"Software\\" || key == u"Software\\Classes\\" || key == at(u"CLSID\\") ||
               key == at(u"Interface\\") || key == at(u"TypeLib\\");
    });
}

TEST_F(RegistrationTest, UnregisteringLeavesNoKeyOfOursAndThoseOfOthers) {
    registry.set(platform::kHkeyLocalMachine, at(u"CLSID\\{other}\\InprocServer32"), u"", u"x");
    registry.set(platform::kHkeyLocalMachine, at(u"OrvTestComponent.TestProbeX"), u"", u"x");
    const std::u16string version = at(u"TypeLib\\{1B7C2F00-3A5D-4E61-9C22-5D807B410E01}\\0.9");
    registry.set(platform::kHkeyLocalMachine, version, u"", u"older");
    ASSERT_EQ(registerLibrary(), S_OK);
    ASSERT_EQ(registerLibrary(), S_OK);
    EXPECT_EQ(unregisterLibrary(), S_OK);
    Texts left = machine();
    EXPECT_EQ(left.at(version + u"\\"), u"older");
    EXPECT_EQ(left.erase(at(u"CLSID\\{other}\\")), 1U);
    EXPECT_EQ(left.erase(at(u"CLSID\\{other}\\InprocServer32\\")), 1U);
    EXPECT_EQ(left.erase(at(u"OrvTestComponent.TestProbeX\\")), 1U);
    EXPECT_EQ(left.erase(version + u"\\"), 1U);
    left.erase(at(u"TypeLib\\{1B7C2F00-3A5D-4E61-9C22-5D807B410E01}\\"));
    EXPECT_TRUE(isOnlyShared(left));
}

TEST_F(RegistrationTest, UnregisteringTwiceIsNoFailure) {
    EXPECT_EQ(unregisterLibrary(), S_OK);
    ASSERT_EQ(registerLibrary(), S_OK);
    EXPECT_EQ(unregisterLibrary(), S_OK);
    EXPECT_EQ(unregisterLibrary(), S_OK);
    EXPECT_TRUE(isOnlyShared(machine()));
}

TEST_F(RegistrationTest, WhatMayNotBeRemovedIsAFailure) {
    ASSERT_EQ(registerLibrary(), S_OK);
    registry.deny(platform::kHkeyLocalMachine);
    EXPECT_EQ(unregisterLibrary(), kClassesFailed);
}

TEST_F(RegistrationTest, AFailureAnywhereLeavesNothing) {
    const std::size_t failures = test::torture(
        [this] {
            registry.clear();
            return registerLibrary();
        },
        [this](HRESULT status, const test::TortureRun& run) {
            if (status == S_OK) {
                // The first place refused, and the second one took it all.
                EXPECT_NE(isOnlyShared(machine()), isOnlyShared(user())) << run.failed;
            } else {
                EXPECT_EQ(status, kClassesFailed);
                EXPECT_TRUE(isOnlyShared(machine()) && isOnlyShared(user())) << run.failed;
            }
        });
    EXPECT_GT(failures, 40U);
}

TEST_F(RegistrationTest, AFailureAnywhereLeavesTheFormerRegistration) {
    Texts before;
    test::torture(
        [&] {
            registry.clear();
            registry.set(platform::kHkeyLocalMachine, kProbe + std::u16string(u"\\InprocServer32"),
                         u"", u"former");
            before = machine();
            return registerLibrary();
        },
        [&](HRESULT status, const test::TortureRun& run) {
            EXPECT_FALSE(registry.isInTransaction()) << run.failed;
            if (status == S_OK) return;
            EXPECT_EQ(machine(), before) << run.failed;
        });
}

TEST_F(RegistrationTest, AFailureWhileUnregisteringIsTold) {
    test::torture(
        [this] {
            registry.clear();
            registerLibrary();
            return unregisterLibrary();
        },
        [this](HRESULT, const test::TortureRun&) {
            EXPECT_EQ(unregisterLibrary(), S_OK);
            EXPECT_TRUE(isOnlyShared(machine()) && isOnlyShared(user()));
        });
}

TEST_F(RegistrationTest, ARegisteredClassIsCreatedFromItsOwnModule) {
    registerComponent();
    IUnknown* object = nullptr;
    ASSERT_EQ(created(u"orvtestcomponent.TESTPROBE", object), 0);
    {
        const Object probe = Object::adopt(object);
        Variant text(WString(u"text"));
        probe.call(u"ChangeText", {Variant::reference(text)});
        EXPECT_EQ(text.as<WString>()->view(), u"text!");
    }
    const Object again = createObject(u"OrvTestComponent.TestProbe");
    EXPECT_TRUE(again.hasMember(u"ChangeText"));
}

TEST_F(RegistrationTest, AModuleIsLoadedOnceHoweverItIsCalled) {
    registerComponent();
    IUnknown* first = nullptr;
    ASSERT_EQ(created(u"OrvTestComponent.TestProbe", first), 0);
    const std::string link = testing::TempDir() + "orvane-component-link.so";
    std::filesystem::remove(link);
    std::filesystem::create_symlink(ORVANE_BIN_DIR "/libOrvTestComponent.so", link);
    registry.set(platform::kHkeyLocalMachine, kProbe + std::u16string(u"\\InprocServer32"), u"",
                 std::u16string(link.begin(), link.end()));
    IUnknown* second = nullptr;
    ASSERT_EQ(created(u"OrvTestComponent.TestProbe", second), 0);
    std::filesystem::remove(link);
    // One module has one table of functions.
    EXPECT_EQ(std::memcmp(static_cast<void*>(first), static_cast<void*>(second), sizeof(void*)), 0);
    first->Release();
    second->Release();
}

TEST_F(RegistrationTest, NamesThatStandForNothing) {
    IUnknown* object = nullptr;
    EXPECT_EQ(created(u"", object), platform::kClassStringUnknown);
    EXPECT_EQ(created(u"a\\b", object), platform::kClassStringUnknown);
    EXPECT_EQ(created(u"No.SuchClass", object), platform::kNoRegistration);
    for (const char16_t* text : {u"", u"{", u"{1B7C2F20-3A5D-4E61-9C22-5D807B410E01",
                                 u"{1B7C2F20-3A5D-4E61-9C22-5D807B410E0G}"}) {
        registry.set(platform::kHkeyCurrentUser, at(u"Bad.Class\\CLSID"), u"", text);
        EXPECT_EQ(created(u"Bad.Class", object), platform::kClassStringUnknown);
    }
    EXPECT_EQ(test::raisedBy([] { createObject(u"Bad.Class"); }), error::kCantCreateObject);
    EXPECT_EQ(test::raisedBy([] { createObject(u"No.SuchClass"); }), error::kCantCreateObject);
}

TEST_F(RegistrationTest, ClassesThatGiveNoObject) {
    registry.set(platform::kHkeyCurrentUser, at(u"Some.Class\\CLSID"), u"",
                 u"{0a0b0c0d-0001-0002-0304-05060708090A}");
    const std::u16string server =
        at(u"CLSID\\{0A0B0C0D-0001-0002-0304-05060708090A}\\InprocServer32");
    IUnknown* object = nullptr;
    EXPECT_EQ(created(u"Some.Class", object), platform::kClassNotRegistered);
    const auto with = [&](const char16_t* path) {
        registry.set(platform::kHkeyCurrentUser, server, u"", path);
        return created(u"Some.Class", object);
    };
    EXPECT_EQ(with(u"/nowhere/none.so"), kModuleMissing);
    EXPECT_EQ(with(u"libc.so.6"), kModuleMissing);
    EXPECT_EQ(with(u""), kModuleMissing);
    EXPECT_EQ(with(u"/dev/null"), kModuleMissing);
    EXPECT_EQ(with(u"" ORVANE_BIN_DIR "/libOrvanePictures.so"), kNoEntryPoint);
    EXPECT_EQ(with(kComponent), CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(test::raisedBy([] { createObject(u"Some.Class"); }), error::kCantCreateObject);
}

TEST_F(RegistrationTest, OwnClassesNeedNoRegistration) {
    const Object probe = createObject(u"OrvTestComponent.TestProbe");
    EXPECT_TRUE(probe.hasMember(u"ChangeText"));
}

TEST_F(RegistrationTest, CreatingClosesEveryKeyWhateverFails) {
    registerComponent();
    test::torture(
        [] {
            IUnknown* object = nullptr;
            const std::int32_t status = created(u"OrvTestComponent.TestProbe", object);
            if (status >= 0) object->Release();
            return status;
        },
        [](std::int32_t status, const test::TortureRun& run) {
            EXPECT_EQ(status < 0, run.failedAt != 0) << run.failed;
        });
}

}  // namespace
}  // namespace orvane::tests
