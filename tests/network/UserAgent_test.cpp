#include "network/UserAgent.h"

#include "application/CAppStub.h"
#include "application/fake_application.h"
#include "platform/tables.h"
#include "support/host_system.h"
#include "support/raised_error.h"
#include "support/torture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvane {
namespace {

using test::FakeApplication;
using test::raisedBy;
using testing::ElementsAre;

WString system() {
    return u" (" + nqGetHostOSShortName() + u")";
}

TEST(UserAgent, NamesTitleVersionAndSystem) {
    EXPECT_EQ(BuildUserAgentString(u"Ёж 2", 3, 1, 251), u"JOj 2 3.01.0251" + system());
    EXPECT_EQ(BuildUserAgentString(u"", 0, 0, 0), u" 0.00.0000" + system());
}

TEST(UserAgent, ReadsTheApplicationByName) {
    FakeApplication host(u"Щука", std::int16_t{1}, u"2", 3.0);
    EXPECT_EQ(BuildUserAgent(host.object()), u"SHuka 1.02.0003" + system());
    EXPECT_THAT(host.reads, ElementsAre(u"Title", u"Major", u"Minor", u"Revision"));
    EXPECT_EQ(host.references(), 0U);
}

TEST(UserAgent, StubServesAsTheApplication) {
    const auto stub = make<CAppStub>();
    stub->Init(u"Stub", 4, 5, 6);
    EXPECT_EQ(BuildUserAgent(stub->asObject()), u"Stub 4.05.0006" + system());
}

TEST(UserAgent, AnObjectThatLacksAPropertyRaises438) {
    for (std::size_t missing = 0; missing < 4; ++missing) {
        FakeApplication host(u"a", 1, 2, 3);
        host.properties[missing].first = u"Other";
        EXPECT_EQ(raisedBy([&] { BuildUserAgent(host.object()); }), error::kNoSuchMember);
        EXPECT_EQ(host.reads.size(), missing);
    }
}

TEST(UserAgent, WhatTheObjectRaisesComesThrough) {
    FakeApplication host(u"a", 1, 2, 3);
    host.failing = u"Revision";
    EXPECT_EQ(raisedBy([&] { BuildUserAgent(host.object()); }), error::kPermissionDenied);
}

TEST(UserAgent, NothingRaises91) {
    EXPECT_EQ(raisedBy([&] { BuildUserAgent(Object()); }), error::kObjectNotSet);
}

TEST(UserAgent, BadTypesRaiseTheConversionsErrors) {
    FakeApplication words(u"a", u"one", 2, 3);
    EXPECT_EQ(raisedBy([&] { BuildUserAgent(words.object()); }), error::kTypeMismatch);
    FakeApplication big(u"a", 1, 3e9, 3);
    EXPECT_EQ(raisedBy([&] { BuildUserAgent(big.object()); }), error::kOverflow);
    FakeApplication null(Variant::null(), 1, 2, 3);
    EXPECT_EQ(raisedBy([&] { BuildUserAgent(null.object()); }), error::kInvalidUseOfNull);
}

TEST(UserAgent, APlatformThatFailsGivesAnAgentOrAnError) {
    bool gotThrough = false;
    const std::size_t failed = test::torture(
        [&] {
            WString agent;
            const std::int32_t number =
                raisedBy([&] { agent = BuildUserAgentString(u"a", 1, 2, 3); });
            return std::pair(agent, number);
        },
        [&](const std::pair<WString, std::int32_t>& outcome, const test::TortureRun& run) {
            EXPECT_EQ(outcome.first.empty(), outcome.second != 0) << run.failed;
            EXPECT_TRUE(outcome.first.empty() ||
                        outcome.first.view().starts_with(u"a 1.02.0003 ("));
            if (run.failedAt == 0) gotThrough = outcome.second == 0;
        });
    EXPECT_TRUE(gotThrough);
    EXPECT_GT(failed, 0U);
}

}  // namespace
}  // namespace orvane
