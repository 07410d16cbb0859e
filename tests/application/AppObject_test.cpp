#include "application/AppObject.h"

#include "application/CAppStub.h"
#include "fake_application.h"
#include "support/raised_error.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvane {
namespace {

using test::FakeApplication;
using test::raisedBy;
using testing::ElementsAre;

TEST(AppObject, PropertiesAreReadByNameAndConverted) {
    FakeApplication host(u"Painter", std::int16_t{3}, u"12", 7.5);
    const AppObject app(host.object());
    EXPECT_EQ(app.Title(), u"Painter");
    EXPECT_EQ(app.Major(), 3);
    EXPECT_EQ(app.Minor(), 12);
    EXPECT_EQ(app.Revision(), 8);
    EXPECT_THAT(host.reads, ElementsAre(u"Title", u"Major", u"Minor", u"Revision"));
}

TEST(AppObject, ValuesAreReadAtEveryUse) {
    FakeApplication host(u"first", 1, 2);
    const AppObject app(host.object());
    EXPECT_EQ(app.Title(), u"first");
    EXPECT_EQ(app.Major(), 1);
    host.properties[0].second = Variant(u"second");
    host.properties[1].second = Variant(5);
    EXPECT_EQ(app.Title(), u"second");
    EXPECT_EQ(app.Major(), 5);
    EXPECT_THAT(host.reads, ElementsAre(u"Title", u"Major", u"Title", u"Major"));
}

TEST(AppObject, TitleThatIsNoTextIsConverted) {
    FakeApplication host(2.5, 1, 2);
    EXPECT_EQ(AppObject(host.object()).Title(), u"2.5");
}

TEST(AppObject, LeftOutObjectRaises91) {
    const AppObject app{Object()};
    EXPECT_EQ(raisedBy([&] { app.Title(); }), error::kObjectNotSet);
    EXPECT_EQ(raisedBy([&] { app.Major(); }), error::kObjectNotSet);
    EXPECT_EQ(raisedBy([&] { app.Minor(); }), error::kObjectNotSet);
    EXPECT_EQ(raisedBy([&] { app.Revision(); }), error::kObjectNotSet);
}

TEST(AppObject, MissingPropertyRaises438) {
    FakeApplication host(u"a", 1, 2);
    host.properties.erase(host.properties.begin() + 1);
    EXPECT_EQ(raisedBy([&] { AppObject(host.object()).Major(); }), error::kNoSuchMember);
}

TEST(AppObject, WhatTheObjectRaisesComesThrough) {
    FakeApplication host(u"a", 1, 2);
    host.failing = u"Minor";
    EXPECT_EQ(raisedBy([&] { AppObject(host.object()).Minor(); }), error::kPermissionDenied);
}

TEST(AppObject, BadTypesRaiseTheConversionsError) {
    FakeApplication host(Variant::null(), u"word", 3e9, Object());
    const AppObject app(host.object());
    EXPECT_EQ(raisedBy([&] { app.Title(); }), error::kInvalidUseOfNull);
    EXPECT_EQ(raisedBy([&] { app.Major(); }), error::kTypeMismatch);
    EXPECT_EQ(raisedBy([&] { app.Minor(); }), error::kOverflow);
    EXPECT_EQ(raisedBy([&] { app.Revision(); }), error::kObjectNotSet);
}

TEST(AppObject, StubServesAsOne) {
    const auto stub = make<CAppStub>();
    stub->Init(u"Stub", 4, -5, 6);
    const AppObject app(stub->asObject());
    EXPECT_EQ(app.Title(), u"Stub");
    EXPECT_EQ(app.Major(), 4);
    EXPECT_EQ(app.Minor(), -5);
    EXPECT_EQ(app.Revision(), 6);
}

TEST(AppObject, LetsTheObjectGo) {
    FakeApplication host(u"a", 1, 2);
    {
        const AppObject app(host.object());
        app.Title();
        EXPECT_EQ(host.references(), 1U);
    }
    EXPECT_EQ(host.references(), 0U);
}

}  // namespace
}  // namespace orvane
