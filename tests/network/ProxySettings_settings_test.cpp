// What proxy settings ask of an application's settings, and what comes back from there.

#include "application/fake_application.h"
#include "frame/values/codepage.h"
#include "network/ProxySettings.h"
#include "network/modPasswordCryptor.h"
#include "platform/advapi32.h"
#include "platform/shlwapi.h"
#include "settings/settings_place.h"
#include "support/raised_error.h"
#include "support/recorder.h"
#include "support/torture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orvane {
namespace {

using enum psAccessType;
using enum RegistryType_Const;
using test::FakeApplication;
using test::raisedBy;
using test::Recorder;

constexpr const char16_t* kSubKey = u"HTTP Proxy";
const std::u16string kVersion = u"Version 1.2\\HTTP Proxy";

class StoredProxy : public testing::Test {
protected:
    StoredProxy() {
        proxy_->putHTTP_AccessType(psatProxy);
        proxy_->putHTTP_Address(u"proxy:3128");
        proxy_->putHTTP_UserName(u"пользователь");
        proxy_->putHTTP_Password(u"secret");
        proxy_->putHTTP_BypassList(u"*.a b");
        proxy_->putHTTP_BypassLocal(true);
    }

    bool save(bool userSetting = true) {
        return proxy_->HTTP_SaveProxySettings2(kSubKey, application_.object(), userSetting);
    }
    bool load(ProxySettings& proxy, bool userSetting = true) {
        return proxy.HTTP_LoadProxySettings2(kSubKey, application_.object(), userSetting);
    }
    void expectDefaults(const ProxySettings& proxy) {
        EXPECT_EQ(proxy.HTTP_AccessType(), psatPreconfigByIE);
        EXPECT_EQ(proxy.HTTP_Address(), u"");
        EXPECT_EQ(proxy.HTTP_BypassList(), u"");
        EXPECT_FALSE(proxy.HTTP_BypassLocal());
        EXPECT_EQ(proxy.HTTP_UserName(), u"");
        EXPECT_EQ(proxy.HTTP_Password(), u"");
    }
    Variant stored(const char16_t* name, RegistryType_Const type = rtString) {
        return place_.stored(kVersion, name, type);
    }

    test::SettingsPlace place_;
    FakeApplication application_{WString(place_.title()), 1, 2};
    Ref<ProxySettings> proxy_ = make<ProxySettings>();
};

TEST_F(StoredProxy, LoadWithNothingStoredResetsAllFields) {
    EXPECT_FALSE(load(*proxy_));
    expectDefaults(*proxy_);
}

TEST_F(StoredProxy, ComesBackAsItWasSaved) {
    EXPECT_TRUE(save());
    const auto other = make<ProxySettings>();
    EXPECT_TRUE(load(*other));
    EXPECT_EQ(other->HTTP_AccessType(), psatProxy);
    EXPECT_EQ(other->HTTP_Address(), u"proxy:3128");
    EXPECT_EQ(other->HTTP_BypassList(), u"*.a b");
    EXPECT_TRUE(other->HTTP_BypassLocal());
    EXPECT_EQ(other->HTTP_UserName(), u"пользователь");
    EXPECT_EQ(other->HTTP_Password(), u"secret");
}

TEST_F(StoredProxy, LiesBelowItsSubKeyUnderTheseNames) {
    save();
    EXPECT_EQ(*stored(u"AccessType", rtLong).as<std::int32_t>(), 3);
    EXPECT_EQ(*stored(u"Address").as<WString>(), u"proxy:3128");
    EXPECT_EQ(*stored(u"BypassList").as<WString>(), u"*.a b");
    EXPECT_EQ(*stored(u"BypassLocal").as<WString>(), u"True");
    EXPECT_EQ(*stored(u"UserName").as<WString>(), u"пользователь");
    const WString password = *stored(u"Password").as<WString>();
    EXPECT_EQ(password.size(), 24U) << "hidden";
    EXPECT_EQ(DecryptPassword(password), u"secret");
}

TEST_F(StoredProxy, IsReadAndWrittenInTheOrderOfItsValues) {
    const auto valuesOf = [](const std::vector<std::string>& lines) {
        std::vector<std::string> names;
        for (const std::string& line : lines) {
            const std::size_t start = line.find('"') + 1;
            const std::string name = line.substr(start, line.find('"', start) - start);
            if (names.empty() || names.back() != name) names.push_back(name);
        }
        return names;
    };
    const auto inOrder = testing::ElementsAre("AccessType", "Address", "BypassList", "BypassLocal",
                                              "UserName", "Password");
    const Recorder recorder(platform::advapi32, platform::shlwapi);
    save();
    EXPECT_THAT(valuesOf(recorder.linesOf("RegSetValueExA")), inOrder);
    load(*proxy_);
    EXPECT_THAT(valuesOf(recorder.linesOf("RegQueryValueExA")), inOrder);
    EXPECT_EQ(recorder.leftOpen(), std::vector<std::string>());
}

TEST_F(StoredProxy, AsksTheApplicationForEveryValue) {
    save();
    EXPECT_EQ(application_.reads.size(), 18U) << "title, major, minor, six times";
    application_.reads.clear();
    load(*proxy_);
    EXPECT_EQ(application_.reads.size(), 18U);
    EXPECT_EQ(application_.references(), 0U);
}

TEST_F(StoredProxy, OneValueIsEnoughForALoad) {
    place_.store(kVersion, u"UserName", u"user");
    EXPECT_TRUE(load(*proxy_));
    EXPECT_EQ(proxy_->HTTP_UserName(), u"user");
    EXPECT_EQ(proxy_->HTTP_Address(), u"") << "the others get their defaults";
    EXPECT_EQ(proxy_->HTTP_Password(), u"");
}

TEST_F(StoredProxy, UnknownAccessTypeIsLoadedAsZero) {
    bool existed = false;
    place_.registry().SetValue(RegistryRoot_Const::currentUser, place_.key(kVersion), u"AccessType",
                               rtLong, 7, existed);
    EXPECT_TRUE(load(*proxy_));
    EXPECT_EQ(proxy_->HTTP_AccessType(), psatPreconfigByIE);
}

TEST_F(StoredProxy, PasswordThatCannotBeShownReadsAsEmpty) {
    for (const char16_t* password : {u"9D1", u"ZZ00", u"secret"}) {
        place_.store(kVersion, u"Password", password);
        EXPECT_TRUE(load(*proxy_));
        EXPECT_EQ(proxy_->HTTP_Password(), u"");
    }
    place_.store(kVersion, u"Password", u"9D109EC4");
    load(*proxy_);
    EXPECT_EQ(proxy_->HTTP_Password(), u"ab");
}

TEST_F(StoredProxy, SettingsOfTheVersionBeforeAreFound) {
    save();
    application_.properties[1].second = Variant(2);
    const auto other = make<ProxySettings>();
    EXPECT_TRUE(load(*other));
    EXPECT_EQ(other->HTTP_Password(), u"secret");
}

TEST_F(StoredProxy, UserAndMachineAreApart) {
    save();
    const auto other = make<ProxySettings>();
    EXPECT_FALSE(load(*other, false));
    const Recorder recorder(platform::advapi32);
    EXPECT_TRUE(save(false)) << "whatever came of it";
    for (const std::string& line : recorder.linesOf("RegCreateKeyExA"))
        EXPECT_TRUE(line.starts_with("RegCreateKeyExA(2147483650, ")) << line;
    EXPECT_EQ(recorder.count("RegCreateKeyExA"), 6U);
}

TEST_F(StoredProxy, DefaultsAreTheSubKeyAndTheUser) {
    const Object late = proxy_->asObject();
    const Variant result =
        late.call(u"HTTP_SaveProxySettings2", {Variant::missing(), Variant(application_.object())});
    EXPECT_EQ(*result.as<bool>(), true);
    EXPECT_EQ(*stored(u"Address").as<WString>(), u"proxy:3128");
    proxy_->putHTTP_Address(u"");
    late.call(u"HTTP_LoadProxySettings2", {Variant::missing(), Variant(application_.object())});
    EXPECT_EQ(proxy_->HTTP_Address(), u"proxy:3128");
}

TEST_F(StoredProxy, WithoutAnApplicationRaises91AndChangesNothing) {
    EXPECT_EQ(raisedBy([&] { proxy_->HTTP_SaveProxySettings2(kSubKey, Object(), true); }),
              error::kObjectNotSet);
    EXPECT_EQ(raisedBy([&] { proxy_->HTTP_LoadProxySettings2(kSubKey, Object(), true); }),
              error::kObjectNotSet);
    EXPECT_EQ(proxy_->HTTP_Address(), u"proxy:3128");
}

TEST_F(StoredProxy, WhatTheApplicationRaisesComesThrough) {
    application_.failing = u"Minor";
    EXPECT_EQ(raisedBy([&] { save(); }), error::kPermissionDenied);
    EXPECT_EQ(raisedBy([&] { load(*proxy_); }), error::kPermissionDenied);
}

TEST_F(StoredProxy, EveryTextOfTheCodePageComesBack) {
    std::u16string all;
    for (int byte = 1; byte < 256; ++byte)
        all += ansiUnit(static_cast<std::uint8_t>(byte));
    proxy_->putHTTP_Password(all);
    proxy_->putHTTP_Address(all);
    save();
    const auto other = make<ProxySettings>();
    load(*other);
    EXPECT_EQ(other->HTTP_Password().units(), all);
    EXPECT_EQ(other->HTTP_Address().units(), all);
}

TEST_F(StoredProxy, SaveIsTrueWhateverFails) {
    bool gotThrough = false;
    const std::size_t failed =
        test::torture([&] { return save(); },
                      [&](bool result, const test::TortureRun& run) {
                          EXPECT_TRUE(result) << run.failed;
                          if (run.failedAt == 0) gotThrough = result;
                      },
                      {test::operationsOf(platform::advapi32, platform::shlwapi), {}});
    EXPECT_TRUE(gotThrough);
    EXPECT_GE(failed, 12U) << "a create and a write for each of six values";
}

TEST_F(StoredProxy, LoadThatFailsAnywhereGivesStoredValuesOrDefaults) {
    save();
    bool gotThrough = false;
    const std::size_t failed = test::torture(
        [&] {
            const auto other = make<ProxySettings>();
            const bool found = load(*other);
            EXPECT_TRUE(found) << "one failure leaves five values";
            EXPECT_TRUE(other->HTTP_Address() == u"" || other->HTTP_Address() == u"proxy:3128");
            EXPECT_TRUE(other->HTTP_Password() == u"" || other->HTTP_Password() == u"secret");
            return other->HTTP_Address().empty() || other->HTTP_Password().empty() ||
                   other->HTTP_UserName().empty() || other->HTTP_BypassList().empty() ||
                   !other->HTTP_BypassLocal() || other->HTTP_AccessType() != psatProxy;
        },
        [&](bool anyLost, const test::TortureRun& run) {
            if (run.failedAt == 0) gotThrough = !anyLost;
        },
        {test::operationsOf(platform::advapi32, platform::shlwapi), {}});
    EXPECT_TRUE(gotThrough);
    EXPECT_GE(failed, 18U) << "an open and two reads for each of six values";
}

}  // namespace
}  // namespace orvane
