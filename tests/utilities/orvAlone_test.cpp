#include "utilities/orvAlone.h"

#include "fake_mutexes.h"
#include "frame/values/codepage.h"
#include "platform/advapi32.h"
#include "platform/kernel32.h"
#include "platform/user32.h"
#include "support/raised_error.h"
#include "support/recorder.h"
#include "support/torture.h"
#include "unique_name.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <optional>

namespace orvane {
namespace {

using namespace std::literals;
using platform::kernel32;
using platform::secur32;
using platform::user32;
using test::FakeDesktop;
using test::FakeMutexes;
using test::mutexCalls;
using test::raisedBy;
using test::Recorder;
using test::ScopedTarget;
using test::uniqueName;
using testing::ElementsAre;

using Lines = std::vector<std::string>;

std::string quoted(const std::u16string& name) {
    return "\"" + toAnsi(name) + "\"";
}

TEST(orvAlone, FirstObjectIsAloneAndTheSecondIsNot) {
    const auto name = uniqueName();
    const auto first = make<orvAlone>();
    const auto second = make<orvAlone>();
    EXPECT_TRUE(first->IsAlone(name));
    EXPECT_FALSE(second->IsAlone(name));
}

TEST(orvAlone, NextObjectIsAloneWhenAllEarlierOnesHaveEnded) {
    const auto name = uniqueName();
    {
        const auto first = make<orvAlone>();
        const auto second = make<orvAlone>();
        EXPECT_TRUE(first->IsAlone(name));
        EXPECT_FALSE(second->IsAlone(name));
    }
    EXPECT_TRUE(make<orvAlone>()->IsAlone(name));
}

TEST(orvAlone, NextObjectIsNotAloneWhileTheSecondLives) {
    const auto name = uniqueName();
    const auto second = make<orvAlone>();
    {
        const auto first = make<orvAlone>();
        EXPECT_TRUE(first->IsAlone(name));
        EXPECT_FALSE(second->IsAlone(name));
    }
    EXPECT_FALSE(make<orvAlone>()->IsAlone(name));
}

TEST(orvAlone, SecondTestOfTheSystemOnOneObjectIsAloneAgain) {
    const auto name = uniqueName();
    const auto object = make<orvAlone>();
    const Recorder recorder(mutexCalls());
    EXPECT_TRUE(object->IsAlone(name));
    EXPECT_TRUE(object->IsAlone(name));
    const std::string create = "CreateMutexA(" + quoted(name) + ") -> *";
    EXPECT_TRUE(recorder.saw({create, "CloseHandle(*) -> true", create}));
    EXPECT_EQ(recorder.calls()[1].arguments[0], recorder.calls()[0].result);
}

TEST(orvAlone, SecondTestOfTheSystemIsNotAloneWhenAnotherObjectHasTheName) {
    const auto name = uniqueName();
    const auto object = make<orvAlone>();
    const auto other = make<orvAlone>();
    EXPECT_TRUE(object->IsAlone(name));
    EXPECT_FALSE(other->IsAlone(name));
    EXPECT_FALSE(object->IsAlone(name));
}

TEST(orvAlone, DesktopAndSystemAreScopesOfTheirOwn) {
    const auto name = uniqueName();
    const auto system = make<orvAlone>();
    const auto desktop = make<orvAlone>();
    EXPECT_TRUE(system->IsAlone(name));
    EXPECT_TRUE(desktop->IsAloneOnDesktop(name));
    EXPECT_FALSE(make<orvAlone>()->IsAlone(name));
    EXPECT_FALSE(make<orvAlone>()->IsAloneOnDesktop(name));
}

TEST(orvAlone, DesktopTestGivesTheSystemsNameUp) {
    const auto name = uniqueName();
    const auto object = make<orvAlone>();
    EXPECT_TRUE(object->IsAlone(name));
    EXPECT_TRUE(object->IsAloneOnDesktop(name));
    EXPECT_TRUE(make<orvAlone>()->IsAlone(name));
}

TEST(orvAlone, UserTestGivesTheSystemsNameUp) {
    const auto name = uniqueName();
    const auto object = make<orvAlone>();
    EXPECT_TRUE(object->IsAlone(name));
    EXPECT_TRUE(object->IsAloneAtUser(name));
    EXPECT_TRUE(make<orvAlone>()->IsAlone(name));
}

TEST(orvAlone, SecondTestOfTheDesktopFindsTheObjectsOwnMutex) {
    const auto name = uniqueName();
    const auto object = make<orvAlone>();
    EXPECT_TRUE(object->IsAloneOnDesktop(name));
    EXPECT_FALSE(object->IsAloneOnDesktop(name));
}

TEST(orvAlone, UsersNameIsPartOfTheName) {
    const auto name = uniqueName();
    const auto first = make<orvAlone>();
    const auto second = make<orvAlone>();
    ScopedTarget fake(secur32.GetUserNameExA, [] { return "somebody"s; });
    EXPECT_TRUE(first->IsAloneAtUser(name));
    EXPECT_FALSE(second->IsAloneAtUser(name));
    EXPECT_FALSE(first->IsAloneAtUser(name));
}

TEST(orvAlone, RealUsersNameServes) {
    const auto name = uniqueName();
    const auto first = make<orvAlone>();
    EXPECT_TRUE(first->IsAloneAtUser(name));
#ifdef _WIN32
    // "COMPUTER\user": to Windows a backslash names a folder of names, and there is none of this
    // one. No mutex is made, and that counts as alone.
    EXPECT_TRUE(make<orvAlone>()->IsAloneAtUser(name));
#else
    EXPECT_FALSE(make<orvAlone>()->IsAloneAtUser(name));
#endif
}

TEST(orvAlone, NameWithABackslashGoesToThePlatformAsItStands) {
    const FakeMutexes fake;
    const auto object = make<orvAlone>();
    object->IsAlone(u"Global\\a\\\u0424 b");
    EXPECT_THAT(fake.names(), ElementsAre(toAnsi(u"Global\\a\\\u0424 b")));
}

TEST(orvAlone, EmptyNameIsNobodyElses) {
    const auto first = make<orvAlone>();
    EXPECT_TRUE(first->IsAlone(u""));
    EXPECT_TRUE(make<orvAlone>()->IsAlone(u""));
}

TEST(orvAlone, NamesOfTheThreeScopes) {
    const FakeMutexes fake;
    const FakeDesktop desktop("Winsta");
    ScopedTarget user(secur32.GetUserNameExA, [] { return "HOST\\me"s; });
    const auto object = make<orvAlone>();
    object->IsAlone(u"{id}");
    object->IsAloneOnDesktop(u"{id}");
    object->IsAloneAtUser(u"{id}");
    EXPECT_THAT(fake.names(), ElementsAre("{id}", "{id}_Desktop_Winsta", "{id}_User_HOST\\me"));
}

TEST(orvAlone, OldMutexIsClosedBeforeTheScopesNameIsFound) {
    const auto name = uniqueName();
    const auto object = make<orvAlone>();
    const FakeDesktop desktop("d");
    object->IsAlone(name);
    const Recorder recorder;
    object->IsAloneOnDesktop(name);
    EXPECT_THAT(recorder.names(),
                ElementsAre("CloseHandle", "GetCurrentThreadId", "GetThreadDesktop",
                            "GetUserObjectInformationA", "CreateMutexA"));
}

TEST(orvAlone, ClosedHandleOfTheSystemIsClosedAgainByEveryOtherTest) {
    const auto name = uniqueName();
    const auto object = make<orvAlone>();
    std::optional<Recorder> recorder(std::in_place, mutexCalls());
    object->IsAlone(name);
    object->IsAloneOnDesktop(name);
    object->IsAloneOnDesktop(name);
    object->IsAloneAtUser(name);
    const std::string closed = recorder->calls()[0].result;
    EXPECT_TRUE(recorder->saw({"CreateMutexA(*) -> " + closed,
                               "CloseHandle(" + closed + ") -> true", "CreateMutexA(*) -> *",
                               "CloseHandle(" + closed + ") -> false", "CreateMutexA(*) -> *",
                               "CloseHandle(" + closed + ") -> false", "CreateMutexA(*) -> *"}));
    // A refused close is error 6 and closes nothing: the desktop's mutexes are both there.
    EXPECT_EQ(recorder->calls()[3].error, platform::kErrorInvalidHandle);
    EXPECT_FALSE(make<orvAlone>()->IsAloneOnDesktop(name));
}

TEST(orvAlone, OnlyTheSystemsTestReplacesTheClosedHandle) {
    const FakeMutexes fake;
    const FakeDesktop desktop("d");
    {
        const auto object = make<orvAlone>();
        object->IsAlone(u"a");           // 11
        object->IsAloneOnDesktop(u"a");  // closes 11, 12
        object->IsAloneAtUser(u"a");     // closes 11, 13
        object->IsAlone(u"a");           // closes 11, 14
        object->IsAloneOnDesktop(u"a");  // closes 14, 15; 12 is forgotten
        EXPECT_THAT(fake.closed(), ElementsAre(11, 11, 11, 14));
    }
    EXPECT_THAT(fake.closed(), ElementsAre(11, 11, 11, 14, 14, 15, 13));
}

TEST(orvAlone, EndOfAnObjectClosesSystemDesktopAndUserInThisOrder) {
    const FakeMutexes fake;
    const FakeDesktop desktop("d");
    {
        const auto object = make<orvAlone>();
        object->IsAloneAtUser(u"a");
        object->IsAloneOnDesktop(u"a");
        object->IsAlone(u"a");
        EXPECT_TRUE(fake.closed().empty());
    }
    EXPECT_THAT(fake.closed(), ElementsAre(13, 12, 11));
}

TEST(orvAlone, NewObjectHasNothingToClose) {
    const Recorder recorder(mutexCalls());
    make<orvAlone>();
    EXPECT_TRUE(recorder.saw({}));
}

TEST(orvAlone, ErrorsThatTellOfAnotherHolderAreNotAlone) {
    for (const std::uint32_t error :
         {platform::kErrorAlreadyExists, platform::kErrorAccessDenied}) {
        const FakeMutexes fake(error);
        const FakeDesktop desktop("d");
        const auto object = make<orvAlone>();
        EXPECT_FALSE(object->IsAlone(u"a")) << error;
        EXPECT_FALSE(object->IsAloneOnDesktop(u"a")) << error;
        EXPECT_FALSE(object->IsAloneAtUser(u"a")) << error;
    }
}

TEST(orvAlone, AnyOtherFailureIsAlone) {
    for (const std::uint32_t error : {3u, 6u, 8u, 161u, 206u}) {
        const FakeMutexes fake(error, 0);
        const FakeDesktop desktop("d");
        {
            const auto object = make<orvAlone>();
            EXPECT_TRUE(object->IsAlone(u"a")) << error;
            EXPECT_TRUE(object->IsAlone(u"a")) << error;
            EXPECT_TRUE(object->IsAloneOnDesktop(u"a")) << error;
            EXPECT_TRUE(object->IsAloneAtUser(u"a")) << error;
        }
        EXPECT_TRUE(fake.closed().empty()) << "there is no handle to close";
    }
}

TEST(orvAlone, HandleOfAnExistingMutexIsKeptAndClosed) {
    const FakeMutexes fake(platform::kErrorAlreadyExists);
    EXPECT_FALSE(make<orvAlone>()->IsAlone(u"a"));
    EXPECT_THAT(fake.closed(), ElementsAre(11));
}

TEST(orvAlone, ErrorOfAnEarlierCallDoesNotCount) {
    const auto name = uniqueName();
    platform::setLastError(platform::kErrorAlreadyExists);
    EXPECT_TRUE(make<orvAlone>()->IsAlone(name));
}

TEST(orvAlone, FailureToNameTheUserIsRaisedAndMakesNoMutex) {
    const FakeMutexes fake;
    const auto object = make<orvAlone>();
    object->IsAlone(u"a");
    ScopedTarget user(secur32.GetUserNameExA, [] { return std::string(); });
    ScopedTarget computer(kernel32.GetComputerNameA, [] {
        platform::setLastError(platform::kErrorAccessDenied);
        return std::string();
    });
    EXPECT_NE(raisedBy([&] { object->IsAloneAtUser(u"a"); }), 0);
    EXPECT_EQ(fake.names().size(), 1U);
    EXPECT_THAT(fake.closed(), ElementsAre(11));
}

TEST(orvAlone, NoFailureOfThePlatformLeavesAMutexOpen) {
    const auto name = uniqueName();
    const std::size_t failures = test::torture(
        [&] {
            const auto object = make<orvAlone>();
            Lines outcome;
            try {
                outcome.emplace_back(object->IsAlone(name) ? "alone" : "not alone");
                outcome.emplace_back(object->IsAloneOnDesktop(name) ? "alone" : "not alone");
                outcome.emplace_back(object->IsAloneAtUser(name) ? "alone" : "not alone");
            } catch (const RuntimeError&) {
                outcome.emplace_back("error");
            }
            return outcome;
        },
        [](const Lines& outcome, const test::TortureRun& run) {
            EXPECT_THAT(outcome, testing::Each("alone")) << run.failed;
        },
        {.operations = {&kernel32.CreateMutexA, &kernel32.CloseMutexHandle,
                        &kernel32.GetCurrentThreadId, &user32.GetThreadDesktop,
                        &user32.GetUserObjectInformationA, &secur32.GetUserNameExA},
         .spared = {}});
    EXPECT_GE(failures, 5U);
}

}  // namespace
}  // namespace orvane
