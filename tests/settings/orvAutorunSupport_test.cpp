#include "settings/orvAutorunSupport.h"

#include "frame/automation/table.h"
#include "frame/values/codepage.h"
#include "frame/values/conversions.h"
#include "platform/advapi32.h"
#include "platform/kernel32.h"
#include "settings_place.h"
#include "support/modules.h"
#include "support/raised_error.h"
#include "support/recorder.h"
#include "support/registry_store.h"
#include "support/torture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

namespace orvane {
namespace {

using platform::advapi32;
using platform::kernel32;
using test::raisedBy;
using test::Recorder;
using Type = RegistryType_Const;

constexpr WStringView kRunKey = u"Software\\Microsoft\\Windows\\CurrentVersion\\Run";
const std::string kRunKeyText = "\"Software\\\\Microsoft\\\\Windows\\\\CurrentVersion\\\\Run\"";

/// The name of a registration of its own, which is taken away from both roots at the end.
class orvAutorunSupportTest : public test::RegistryTest {
protected:
    ~orvAutorunSupportTest() override {
        for (const bool user : {true, false}) {
            autorun_->putForCurrentUserOnly(user);
            autorun_->DeleteFromAutorun(name_);
        }
    }

    Variant stored(RegistryRoot_Const root = RegistryRoot_Const::currentUser) {
        bool success = false;
        Variant value =
            make<orvRegistry>()->GetValue(root, kRunKey, name_, Type::rtString, success);
        return success ? value : Variant();
    }
    void store(const Variant& value, Type type = Type::rtString) {
        bool existed = false;
        make<orvRegistry>()->SetValue(RegistryRoot_Const::currentUser, kRunKey, name_, type, value,
                                      existed);
    }

    std::u16string name_ = test::uniqueText(u"{Orvane test}");
    Ref<orvAutorunSupport> autorun_ = make<orvAutorunSupport>();
};

TEST_F(orvAutorunSupportTest, EmptyNameIsFalseAndNothingIsTouched) {
    const Recorder recorder;
    EXPECT_FALSE(autorun_->AddToAutorun(u"", u""));
    EXPECT_FALSE(autorun_->AddToAutorun({}, u"x"));
    EXPECT_FALSE(autorun_->DeleteFromAutorun(u""));
    EXPECT_FALSE(autorun_->IsInAutorun(u""));
    EXPECT_EQ(autorun_->GetAutorunString(u""), u"");
    EXPECT_TRUE(recorder.saw({}));
}

TEST_F(orvAutorunSupportTest, AddWithoutCommandLineWritesTheProgramsOwnFileName) {
    EXPECT_TRUE(autorun_->AddToAutorun(name_, u""));
    const WString program = nqGetEXEModulePrettyFileName();
    EXPECT_FALSE(program.empty());
    EXPECT_EQ(toText(stored()), program);
    EXPECT_EQ(autorun_->GetAutorunString(name_), program);
    EXPECT_TRUE(autorun_->IsInAutorun(name_));
}

TEST_F(orvAutorunSupportTest, WhatWasAddedIsReadBack) {
    EXPECT_TRUE(autorun_->AddToAutorun(name_, u"x"));
    EXPECT_EQ(autorun_->GetAutorunString(name_), u"x");
    EXPECT_TRUE(autorun_->IsInAutorun(name_));
}

TEST_F(orvAutorunSupportTest, CommandLineIsWrittenAsItStands) {
    EXPECT_TRUE(autorun_->AddToAutorun(name_, u"\"C:\\a b\\c.exe\" /d \u0436 %1"));
    EXPECT_EQ(toText(stored()), u"\"C:\\a b\\c.exe\" /d \u0436 %1");
}

TEST_F(orvAutorunSupportTest, AddAgainReplaces) {
    EXPECT_TRUE(autorun_->AddToAutorun(name_, u"first"));
    EXPECT_TRUE(autorun_->AddToAutorun(name_, u"second"));
    EXPECT_EQ(autorun_->GetAutorunString(name_), u"second");
}

TEST_F(orvAutorunSupportTest, NothingIsRegisteredAtFirst) {
    EXPECT_FALSE(autorun_->IsInAutorun(name_));
    EXPECT_EQ(autorun_->GetAutorunString(name_), u"");
    EXPECT_FALSE(autorun_->DeleteFromAutorun(name_));
}

TEST_F(orvAutorunSupportTest, DeleteTakesTheRegistrationAway) {
    autorun_->AddToAutorun(name_, u"x");
    EXPECT_TRUE(autorun_->DeleteFromAutorun(name_));
    EXPECT_FALSE(autorun_->IsInAutorun(name_));
    EXPECT_EQ(stored().type(), VarType::Empty);
    EXPECT_FALSE(autorun_->DeleteFromAutorun(name_));
}

TEST_F(orvAutorunSupportTest, ValueOfBlanksCountsAsNotRegistered) {
    EXPECT_TRUE(autorun_->AddToAutorun(name_, u" \t "));
    EXPECT_EQ(autorun_->GetAutorunString(name_), u" \t ");
    EXPECT_FALSE(autorun_->IsInAutorun(name_));
}

TEST_F(orvAutorunSupportTest, NewObjectIsForTheCurrentUser) {
    EXPECT_TRUE(autorun_->ForCurrentUserOnly());
    autorun_->putForCurrentUserOnly(false);
    EXPECT_FALSE(autorun_->ForCurrentUserOnly());
    EXPECT_TRUE(make<orvAutorunSupport>()->ForCurrentUserOnly());
    autorun_->putForCurrentUserOnly(true);
    EXPECT_TRUE(autorun_->ForCurrentUserOnly());
}

TEST_F(orvAutorunSupportTest, RegistrationUnderOneRootIsNotSeenUnderTheOther) {
    EXPECT_TRUE(autorun_->AddToAutorun(name_, u"mine"));
    autorun_->putForCurrentUserOnly(false);
    EXPECT_FALSE(autorun_->IsInAutorun(name_));
    EXPECT_FALSE(autorun_->DeleteFromAutorun(name_));
    EXPECT_TRUE(autorun_->AddToAutorun(name_, u"everybody's"));
    EXPECT_EQ(toText(stored(RegistryRoot_Const::localMachine)), u"everybody's");
    autorun_->putForCurrentUserOnly(true);
    EXPECT_EQ(autorun_->GetAutorunString(name_), u"mine");
}

TEST_F(orvAutorunSupportTest, ValueOfNoBytesRaises9) {
    store(Array<std::uint8_t>::of({}), Type::rtBinary);
    EXPECT_EQ(raisedBy([&] { autorun_->GetAutorunString(name_); }), error::kSubscriptOutOfRange);
    EXPECT_EQ(raisedBy([&] { autorun_->IsInAutorun(name_); }), error::kSubscriptOutOfRange);
}

TEST_F(orvAutorunSupportTest, WriteWithoutRightsIsFalse) {
    test::ScopedTarget refuse(advapi32.RegCreateKeyExA,
                              [](platform::RegistryKey, const std::string&, std::uint32_t,
                                 std::uint32_t, platform::RegistryKey&, platform::KeyDisposition&) {
                                  return platform::ResultCode{platform::kErrorAccessDenied};
                              });
    autorun_->putForCurrentUserOnly(false);
    EXPECT_FALSE(autorun_->AddToAutorun(name_, u"x"));
}

TEST_F(orvAutorunSupportTest, CallsOfEachMember) {
    std::string name;
    platform::describe(name, toAnsi(name_));
    const std::string root = "2147483649";
    const std::string open = "RegOpenKeyExA(" + root + ", " + kRunKeyText + ", 0, ";
    Recorder recorder(advapi32);
    autorun_->AddToAutorun(name_, u"xy");
    EXPECT_TRUE(recorder.saw({"RegCreateKeyExA(" + root + ", " + kRunKeyText + ", 0, 2, *) -> 0",
                              "RegSetValueExA(*, " + name + ", 1, <3 bytes>) -> 0",
                              "RegCloseKey(*) -> 0"}));
    recorder.clear();
    autorun_->GetAutorunString(name_);
    const std::vector<std::string> reading = {
        open + "1, *) -> 0", "RegQueryValueExA(*, " + name + ", *) -> 0",
        "RegQueryValueExA(*, " + name + ", *) -> 0", "RegCloseKey(*) -> 0"};
    EXPECT_TRUE(recorder.saw(reading));
    recorder.clear();
    autorun_->IsInAutorun(name_);
    EXPECT_TRUE(recorder.saw(reading));
    recorder.clear();
    autorun_->DeleteFromAutorun(name_);
    EXPECT_TRUE(recorder.saw(
        {open + "2, *) -> 0", "RegDeleteValueA(*, " + name + ") -> 0", "RegCloseKey(*) -> 0"}));
}

TEST_F(orvAutorunSupportTest, MachinesRunKeyIsUnderItsOwnRoot) {
    autorun_->putForCurrentUserOnly(false);
    const Recorder recorder(advapi32);
    autorun_->GetAutorunString(name_);
    ASSERT_FALSE(recorder.calls().empty());
    EXPECT_EQ(recorder.calls()[0].arguments[0], "2147483650");
}

TEST_F(orvAutorunSupportTest, ProgramsNameIsAskedForOnlyWithoutACommandLine) {
    const std::vector<platform::OperationBase*> namesOfModules{&kernel32.GetModuleFileNameA};
    const Recorder recorder(namesOfModules);
    autorun_->AddToAutorun(name_, u"x");
    EXPECT_TRUE(recorder.saw({}));
}

TEST_F(orvAutorunSupportTest, ProgramWithoutANameRaisesAndWritesNothing) {
    test::ScopedTarget refuse(kernel32.GetModuleFileNameA, [](platform::ModuleHandle) {
        platform::setLastError(platform::kErrorAccessDenied);
        return std::string();
    });
    EXPECT_NE(raisedBy([&] { autorun_->AddToAutorun(name_, u""); }), 0);
    EXPECT_EQ(stored().type(), VarType::Empty);
}

TEST_F(orvAutorunSupportTest, NoFailureOfTheRegistryRaisesOrLeavesAKeyOpen) {
    const std::size_t failures = test::torture(
        [&] {
            std::string outcome = autorun_->AddToAutorun(name_, u"x") ? "added" : "not added";
            outcome += autorun_->IsInAutorun(name_) ? " there" : " not there";
            outcome += autorun_->DeleteFromAutorun(name_) ? " deleted" : " not deleted";
            return outcome;
        },
        [&](const std::string& outcome, const test::TortureRun& run) {
            if (run.failedAt == 0) {
                EXPECT_EQ(outcome, "added there deleted");
            } else if (run.failedAt <= 2) {
                EXPECT_EQ(outcome, "not added not there not deleted") << run.failed;
            } else if (run.failedAt <= 5) {
                EXPECT_EQ(outcome, "added not there deleted") << run.failed;
            } else {
                EXPECT_EQ(outcome, "added there not deleted") << run.failed;
            }
            autorun_->DeleteFromAutorun(name_);
        },
        {.operations = test::operationsOf(advapi32), .spared = {}});
    EXPECT_EQ(failures, 7U);
}

TEST_F(orvAutorunSupportTest, MembersStandInInterfaceOrder) {
    std::vector<std::string> names;
    for (const auto& member : orvAutorunSupport::table().members)
        names.emplace_back(member.name);
    EXPECT_THAT(names,
                testing::ElementsAre("ForCurrentUserOnly", "ForCurrentUserOnly", "IsInAutorun",
                                     "GetAutorunString", "AddToAutorun", "DeleteFromAutorun"));
}

TEST_F(orvAutorunSupportTest, CommandLineCanBeLeftOut) {
    const Object autorun = autorun_->asObject();
    EXPECT_TRUE(toBoolean(autorun.call(u"AddToAutorun", {WString(name_)})));
    EXPECT_EQ(toText(stored()), nqGetEXEModulePrettyFileName());
    autorun.put(u"ForCurrentUserOnly", false);
    EXPECT_FALSE(toBoolean(autorun.get(u"ForCurrentUserOnly")));
}

}  // namespace
}  // namespace orvane
