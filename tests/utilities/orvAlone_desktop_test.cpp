// The desktop's name inside the name of a mutex.
#include "fake_mutexes.h"
#include "frame/values/codepage.h"
#include "platform/kernel32.h"
#include "platform/user32.h"
#include "support/recorder.h"
#include "unique_name.h"
#include "utilities/orvAlone.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvane {
namespace {

using platform::DesktopHandle;
using platform::user32;
using test::FakeDesktop;
using test::FakeMutexes;
using test::mutexCalls;
using test::Recorder;
using test::ScopedTarget;
using test::uniqueName;
using testing::ElementsAre;

TEST(orvAloneDesktopName, OfNoDesktopIsEmpty) {
    const FakeMutexes fake;
    ScopedTarget desktop(user32.GetThreadDesktop,
                         [](std::uint32_t) { return DesktopHandle::none; });
    make<orvAlone>()->IsAloneOnDesktop(u"a");
    EXPECT_THAT(fake.names(), ElementsAre("a_Desktop_"));
}

TEST(orvAloneDesktopName, OfUpToAHundredBytesTakesOneCall) {
    const FakeMutexes fake;
    const FakeDesktop desktop(std::string(99, 'n'));
    make<orvAlone>()->IsAloneOnDesktop(u"a");
    EXPECT_THAT(desktop.sizes(), ElementsAre(100U));
    EXPECT_THAT(fake.names(), ElementsAre("a_Desktop_" + std::string(99, 'n')));
}

TEST(orvAloneDesktopName, OfMoreBytesTakesASecondCallWithTheSizeThatItNeeds) {
    const FakeMutexes fake;
    const FakeDesktop desktop(std::string(100, 'n'));
    make<orvAlone>()->IsAloneOnDesktop(u"a");
    EXPECT_THAT(desktop.sizes(), ElementsAre(100U, 101U));
    EXPECT_THAT(fake.names(), ElementsAre("a_Desktop_" + std::string(100, 'n')));
}

TEST(orvAloneDesktopName, IsEmptyWhenTheOnlyCallFails) {
    const FakeMutexes fake;
    FakeDesktop desktop("short");
    desktop.failCall(1);
    make<orvAlone>()->IsAloneOnDesktop(u"a");
    EXPECT_THAT(desktop.sizes(), ElementsAre(100U));
    EXPECT_THAT(fake.names(), ElementsAre("a_Desktop_"));
}

TEST(orvAloneDesktopName, IsEmptyWhenTheSecondCallFails) {
    const FakeMutexes fake;
    FakeDesktop desktop(std::string(200, 'n'));
    desktop.failCall(2);
    make<orvAlone>()->IsAloneOnDesktop(u"a");
    EXPECT_THAT(desktop.sizes(), ElementsAre(100U, 201U));
    EXPECT_THAT(fake.names(), ElementsAre("a_Desktop_"));
}

TEST(orvAloneDesktopName, OfThisProcessIsTheSameTwice) {
    const auto name = uniqueName();
    const Recorder recorder(mutexCalls());
    const auto first = make<orvAlone>();
    EXPECT_TRUE(first->IsAloneOnDesktop(name));
    EXPECT_FALSE(make<orvAlone>()->IsAloneOnDesktop(name));
    EXPECT_EQ(recorder.calls()[0].arguments, recorder.calls()[1].arguments);
    EXPECT_TRUE(recorder.calls()[0].arguments[0].starts_with("\"" + toAnsi(name) + "_Desktop_"));
}

}  // namespace
}  // namespace orvane
