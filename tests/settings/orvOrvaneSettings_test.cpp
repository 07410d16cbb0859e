#include "settings/orvOrvaneSettings.h"

#include "application/fake_application.h"
#include "frame/automation/describe.h"
#include "frame/values/conversions.h"
#include "settings_place.h"
#include "support/raised_error.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <limits>

namespace orvane {
namespace {

using test::FakeApplication;
using test::raisedBy;
using test::SettingsPlace;
using testing::ElementsAre;
using Type = RegistryType_Const;

class SettingsTest : public testing::Test {
protected:
    Variant load(std::int32_t major, std::int32_t minor, WStringView name = u"Name",
                 const Variant& fallback = Variant::missing(), Type type = Type::rtString,
                 bool userSetting = true) {
        success_ = true;
        return settings_->LoadSetting(u"", name, type, place_.title(), major, minor, fallback,
                                      userSetting, success_);
    }
    bool save(std::int32_t major, std::int32_t minor, const Variant& value,
              Type type = Type::rtString, WStringView name = u"Name", bool userSetting = true) {
        return settings_->SaveSetting(u"", name, type, value, place_.title(), major, minor,
                                      userSetting);
    }
    std::u16string loadText(std::int32_t major, std::int32_t minor, WStringView name = u"Name") {
        return toText(load(major, minor, name)).units();
    }

    SettingsPlace place_;
    Ref<orvOrvaneSettings> settings_ = make<orvOrvaneSettings>();
    bool success_ = false;
};

using GetSettingPath = SettingsTest;
using LoadSetting = SettingsTest;
using SaveSetting = SettingsTest;
using Fallback = SettingsTest;
using AppObjectForms = SettingsTest;

TEST_F(GetSettingPath, EndsInTheVersionWithNothingBehindIt) {
    EXPECT_EQ(settings_->GetSettingPath(u"Painter", 1, 2, u""),
              u"Software\\Tarn Hollow\\Orvane\\Painter\\Version 1.2");
    EXPECT_EQ(settings_->GetSettingPath(u"Painter", 1, 2, {}),
              u"Software\\Tarn Hollow\\Orvane\\Painter\\Version 1.2");
}

TEST_F(GetSettingPath, KeyPathOfTwoLevelsStandsBehindOneMoreBackslash) {
    EXPECT_EQ(settings_->GetSettingPath(u"Painter", 1, 2, u"Windows\\Main"),
              u"Software\\Tarn Hollow\\Orvane\\Painter\\Version 1.2\\Windows\\Main");
}

TEST_F(GetSettingPath, KeyPathStandsAsItIs) {
    EXPECT_EQ(settings_->GetSettingPath(u"", 0, 0, u"\\a\\\\ b\\"),
              u"Software\\Tarn Hollow\\Orvane\\\\Version 0.0\\\\a\\\\ b\\");
}

TEST_F(GetSettingPath, NegativeVersionRaises5) {
    EXPECT_EQ(raisedBy([&] { settings_->GetSettingPath(u"a", -1, 0, u""); }),
              error::kInvalidArgument);
    EXPECT_EQ(raisedBy([&] { settings_->GetSettingPath(u"a", 0, -1, u""); }),
              error::kInvalidArgument);
}

TEST_F(LoadSetting, PresentValueIsReturnedEvenIfOlderKeysHoldAnother) {
    place_.store(u"Version 1.0", u"Name", u"old");
    place_.store(u"Version 2.0", u"Name", u"present");
    EXPECT_EQ(loadText(2, 0), u"present");
    EXPECT_TRUE(success_);
}

TEST_F(LoadSetting, DefaultIsReturnedAndSuccessLeftFalse) {
    EXPECT_EQ(toText(load(1, 0, u"Name", u"fallback")), u"fallback");
    EXPECT_FALSE(success_);
}

TEST_F(LoadSetting, DefaultIsReturnedAsItStands) {
    EXPECT_EQ(*load(1, 0, u"Name", 2.5, Type::rtLong).as<double>(), 2.5);
    EXPECT_EQ(load(1, 0, u"Name", Variant::null(), Type::rtBoolean).type(), VarType::Null);
    EXPECT_EQ(load(1, 0, u"Name", Variant(), Type::rtLong).type(), VarType::Empty);
    const Object object = settings_->asObject();
    EXPECT_TRUE(load(1, 0, u"Name", object).as<Object>()->is(object));
    EXPECT_TRUE(load(1, 0, u"Name", Object()).as<Object>()->isNothing());
    const Variant array = load(1, 0, u"Name", Array<std::int32_t>::of({4, 5}), Type::rtBinary);
    ASSERT_NE(array.asArray<std::int32_t>(), nullptr);
    EXPECT_THAT(array.asArray<std::int32_t>()->elements(), ElementsAre(4, 5));
}

TEST_F(LoadSetting, WithoutDefaultTheEmptyValueOfTheTypeIsReturned) {
    const Variant text = load(1, 0);
    ASSERT_NE(text.as<WString>(), nullptr);
    EXPECT_TRUE(text.as<WString>()->empty());
    EXPECT_EQ(*load(1, 0, u"Name", Variant::missing(), Type::rtLong).as<std::int32_t>(), 0);
    EXPECT_EQ(*load(1, 0, u"Name", Variant::missing(), Type::rtBoolean).as<bool>(), false);
    const Variant bytes = load(1, 0, u"Name", Variant::missing(), Type::rtBinary);
    ASSERT_NE(bytes.asArray<std::uint8_t>(), nullptr);
    EXPECT_FALSE(bytes.array()->isAllocated());
    EXPECT_FALSE(success_);
}

TEST_F(LoadSetting, TypeOutOfRangeGivesTheDefaultOrEmpty) {
    place_.store(u"Version 1.0", u"Name", u"text");
    EXPECT_EQ(load(1, 0, u"Name", Variant::missing(), Type{7}).type(), VarType::Empty);
    EXPECT_FALSE(success_);
    EXPECT_EQ(toText(load(1, 0, u"Name", u"fallback", Type{-1})), u"fallback");
    EXPECT_FALSE(success_);
}

TEST_F(LoadSetting, EachTypeComesBackAsItWasSaved) {
    EXPECT_TRUE(save(1, 0, u"\u0442\u0435\u043a\u0441\u0442", Type::rtString, u"Text"));
    EXPECT_TRUE(save(1, 0, -7, Type::rtLong, u"Long"));
    EXPECT_TRUE(save(1, 0, Array<std::uint8_t>::of({0, 255, 7}), Type::rtBinary, u"Bytes"));
    EXPECT_TRUE(save(1, 0, true, Type::rtBoolean, u"Boolean"));
    EXPECT_EQ(loadText(1, 0, u"Text"), u"\u0442\u0435\u043a\u0441\u0442");
    const auto missing = Variant::missing();
    EXPECT_EQ(*load(1, 0, u"Long", missing, Type::rtLong).as<std::int32_t>(), -7);
    EXPECT_EQ(*load(1, 0, u"Boolean", missing, Type::rtBoolean).as<bool>(), true);
    const Variant bytes = load(1, 0, u"Bytes", missing, Type::rtBinary);
    EXPECT_THAT(bytes.asArray<std::uint8_t>()->elements(), ElementsAre(0, 255, 7));
    EXPECT_TRUE(success_);
}

TEST_F(LoadSetting, SubKeyLiesBelowTheVersion) {
    EXPECT_TRUE(
        settings_->SaveSetting(u"a\\b", u"n", Type::rtString, u"deep", place_.title(), 1, 0, true));
    EXPECT_EQ(toText(place_.stored(u"Version 1.0\\a\\b", u"n")), u"deep");
    bool success = false;
    EXPECT_EQ(toText(settings_->LoadSetting(u"a\\b", u"n", Type::rtString, place_.title(), 1, 0,
                                            Variant::missing(), true, success)),
              u"deep");
    EXPECT_TRUE(success);
}

TEST_F(LoadSetting, ValueOfNoBytesRaises9) {
    bool existed = false;
    place_.registry().SetValue(RegistryRoot_Const::currentUser, place_.key(u"Version 1.0"), u"Name",
                               Type::rtBinary, Array<std::uint8_t>::of({}), existed);
    EXPECT_EQ(raisedBy([&] { load(1, 0); }), error::kSubscriptOutOfRange);
}

TEST_F(Fallback, NewestOlderVersionIsFoundByNumberNotText) {
    place_.store(u"Version 1.2", u"Name", u"from 1.2");
    place_.store(u"Version 1.10", u"Name", u"from 1.10");
    place_.makeKey(u"Version 2.0");
    EXPECT_EQ(loadText(2, 0), u"from 1.10");
    EXPECT_TRUE(success_);
}

TEST_F(Fallback, NewerVersionsAreNotUsed) {
    place_.store(u"Version 2.0", u"Name", u"new");
    EXPECT_EQ(toText(load(1, 0, u"Name", u"fallback")), u"fallback");
    EXPECT_FALSE(success_);
}

TEST_F(Fallback, GoesBackOneStepOnly) {
    place_.store(u"Version 1.0", u"Name", u"oldest");
    place_.makeKey(u"Version 1.5");
    EXPECT_EQ(loadText(2, 0), u"");
    EXPECT_FALSE(success_);
}

TEST_F(Fallback, ValueMissingInAPresentKeyIsLookedForInTheOldOne) {
    place_.store(u"Version 1.0", u"Name", u"old");
    place_.store(u"Version 2.0", u"Other", u"x");
    EXPECT_EQ(loadText(2, 0), u"old");
}

TEST_F(Fallback, SubKeyAndNameAreTheSameInTheOldVersion) {
    place_.store(u"Version 1.0\\a\\b", u"n", u"deep");
    bool success = false;
    EXPECT_EQ(toText(settings_->LoadSetting(u"a\\b", u"n", Type::rtString, place_.title(), 3, 1,
                                            u"fallback", true, success)),
              u"deep");
    EXPECT_TRUE(success);
}

TEST_F(Fallback, VersionZeroNeverLooksBack) {
    place_.store(u"Version x", u"Name", u"letter");
    place_.store(u"Version 0.0.0", u"Name", u"zero");
    EXPECT_EQ(loadText(0, 0), u"");
    EXPECT_FALSE(success_);
}

TEST_F(Fallback, MinorVersionAloneIsEnoughToLookBack) {
    place_.store(u"Version 0.1", u"Name", u"old");
    EXPECT_EQ(loadText(0, 2), u"old");
}

TEST_F(Fallback, LetterCountsAsVersionZeroAndIsTheOldest) {
    place_.store(u"Version x", u"Name", u"letter");
    EXPECT_EQ(loadText(1, 0), u"letter");
    place_.store(u"Version 0.1", u"Name", u"number");
    EXPECT_EQ(loadText(1, 0), u"number");
}

TEST_F(Fallback, KeyInLowerCaseIsRecognised) {
    place_.store(u"version 1.0", u"Name", u"lower");
    EXPECT_EQ(loadText(2, 0), u"lower");
}

TEST_F(Fallback, HandMadeKeysBesideTheVersionsDoNoHarm) {
    place_.store(u"Backup 1.9", u"Name", u"backup");
    place_.store(u"Versions 1.9", u"Name", u"plural");
    place_.store(u"Version 1.0", u"Name", u"old");
    EXPECT_EQ(loadText(2, 0), u"old");
}

TEST_F(Fallback, VersionTextIsUsedAsItIsSpelled) {
    place_.store(u"Version 01.002.0", u"Name", u"spelled");
    EXPECT_EQ(loadText(2, 0), u"spelled");
}

TEST_F(Fallback, BlanksInAKeysNameAreNotFoundAgain) {
    // The version is recognised, but the path is built with one blank.
    place_.store(u"Version   1.0", u"Name", u"blanks");
    EXPECT_EQ(loadText(2, 0), u"");
    EXPECT_FALSE(success_);
}

TEST_F(Fallback, SearchesTheChosenRootOnly) {
    place_.store(u"Version 1.0", u"Name", u"machine", RegistryRoot_Const::localMachine);
    EXPECT_EQ(loadText(2, 0), u"");
    EXPECT_EQ(
        toText(load(2, 0, u"Name", Variant::missing(), Type::rtString, /*userSetting=*/false)),
        u"machine");
    EXPECT_TRUE(success_);
}

TEST_F(Fallback, CopiesNothing) {
    place_.store(u"Version 1.0", u"Name", u"old");
    EXPECT_EQ(loadText(2, 0), u"old");
    EXPECT_FALSE(
        place_.registry().IsKeyExist(RegistryRoot_Const::currentUser, place_.key(u"Version 2.0")));
}

TEST_F(Fallback, SaveGoesToTheCurrentVersion) {
    place_.store(u"Version 1.0", u"Name", u"old");
    EXPECT_TRUE(save(2, 0, u"new"));
    EXPECT_EQ(toText(place_.stored(u"Version 1.0", u"Name")), u"old");
    EXPECT_EQ(toText(place_.stored(u"Version 2.0", u"Name")), u"new");
    EXPECT_EQ(loadText(2, 0), u"new");
}

TEST_F(SaveSetting, MakesTheKey) {
    EXPECT_TRUE(save(3, 4, u"value"));
    EXPECT_EQ(toText(place_.stored(u"Version 3.4", u"Name")), u"value");
}

TEST_F(SaveSetting, GoesToTheRootOfUserSetting) {
    EXPECT_TRUE(save(1, 0, u"mine"));
    EXPECT_TRUE(save(1, 0, u"everybody's", Type::rtString, u"Name", /*userSetting=*/false));
    EXPECT_EQ(toText(place_.stored(u"Version 1.0", u"Name")), u"mine");
    EXPECT_EQ(toText(place_.stored(u"Version 1.0", u"Name", Type::rtString,
                                   RegistryRoot_Const::localMachine)),
              u"everybody's");
}

TEST_F(SaveSetting, MissingValueIsFalseAndWritesNothing) {
    EXPECT_FALSE(save(1, 0, Variant::missing()));
    EXPECT_FALSE(place_.registry().IsKeyExist(RegistryRoot_Const::currentUser, place_.key()));
}

TEST_F(SaveSetting, ValueOfAnotherTypeIsFalseAndWritesNothing) {
    EXPECT_FALSE(save(1, 0, u"5", Type::rtLong));
    EXPECT_FALSE(save(1, 0, 5, Type::rtString));
    EXPECT_FALSE(save(1, 0, 1, Type::rtBoolean));
    EXPECT_FALSE(save(1, 0, u"text", Type{4}));
    EXPECT_FALSE(place_.registry().IsKeyExist(RegistryRoot_Const::currentUser, place_.key()));
}

TEST_F(SaveSetting, MissingValueIsFalseBeforeTheVersionIsLookedAt) {
    EXPECT_EQ(raisedBy([&] { save(-1, 0, Variant::missing()); }), 0);
    EXPECT_EQ(raisedBy([&] { save(-1, 0, u"x"); }), error::kInvalidArgument);
}

TEST_F(AppObjectForms, ReadTitleMajorAndMinorInThisOrder) {
    FakeApplication app(WString(place_.title()), std::int16_t{1}, u"2");
    const Object object = app.object();
    const auto reads = [&] { return std::exchange(app.reads, {}); };
    const auto inOrder = ElementsAre(u"Title", u"Major", u"Minor");
    EXPECT_EQ(settings_->GetSettingPath2(object, u"k").units(), place_.key(u"Version 1.2\\k"));
    EXPECT_THAT(reads(), inOrder);
    EXPECT_TRUE(settings_->SaveSetting2(u"k", u"n", Type::rtLong, 5, object, true));
    EXPECT_THAT(reads(), inOrder);
    bool success = false;
    EXPECT_EQ(toLong(settings_->LoadSetting2(u"k", u"n", Type::rtLong, object, 9, true, success)),
              5);
    EXPECT_TRUE(success);
    EXPECT_THAT(reads(), inOrder);
}

TEST_F(AppObjectForms, EverythingElseGoesToTheTwinUnchanged) {
    FakeApplication app(WString(place_.title()), 2, 0);
    const Object object = app.object();
    place_.store(u"Version 1.0\\k", u"n", u"old");
    bool success = false;
    EXPECT_EQ(toText(settings_->LoadSetting2(u"k", u"n", Type::rtString, object, u"fallback", true,
                                             success)),
              u"old");
    EXPECT_TRUE(success);
    EXPECT_EQ(toText(settings_->LoadSetting2(u"k", u"n", Type::rtString, object, u"fallback", false,
                                             success)),
              u"fallback");
    EXPECT_FALSE(success);
    EXPECT_FALSE(
        settings_->SaveSetting2(u"k", u"n", Type::rtString, Variant::missing(), object, true));
    EXPECT_TRUE(settings_->SaveSetting2(u"k", u"n", Type::rtString, u"all", object, false));
    EXPECT_EQ(toText(place_.stored(u"Version 2.0\\k", u"n", Type::rtString,
                                   RegistryRoot_Const::localMachine)),
              u"all");
}

TEST_F(AppObjectForms, LeftOutObjectRaises91) {
    bool success = true;
    EXPECT_EQ(raisedBy([&] { settings_->GetSettingPath2({}, u""); }), error::kObjectNotSet);
    EXPECT_EQ(raisedBy([&] {
                  settings_->LoadSetting2(u"", u"", Type::rtString, {}, u"d", true, success);
              }),
              error::kObjectNotSet);
    EXPECT_TRUE(success);
    EXPECT_EQ(raisedBy([&] { settings_->SaveSetting2(u"", u"", Type::rtString, u"", {}, true); }),
              error::kObjectNotSet);
}

TEST_F(AppObjectForms, FailedReadEndsTheMemberAtOnce) {
    FakeApplication app(WString(place_.title()), 1, 0);
    app.failing = u"Major";
    EXPECT_EQ(raisedBy([&] {
                  settings_->SaveSetting2(u"", u"n", Type::rtString, u"v", app.object(), true);
              }),
              error::kPermissionDenied);
    EXPECT_THAT(app.reads, ElementsAre(u"Title", u"Major"));
    EXPECT_FALSE(place_.registry().IsKeyExist(RegistryRoot_Const::currentUser, place_.key()));
}

TEST_F(AppObjectForms, ObjectIsReadEvenWhenTheValueIsMissing) {
    EXPECT_EQ(raisedBy([&] {
                  settings_->SaveSetting2(u"", u"n", Type::rtString, Variant::missing(), {}, true);
              }),
              error::kObjectNotSet);
}

TEST(orvOrvaneSettings, MembersOfLaterSubjectsRaise445) {
    const auto settings = make<orvOrvaneSettings>();
    const Object object = settings->asObject();
    const auto refuses = [](auto&& member) {
        EXPECT_EQ(raisedBy(member), error::kActionNotSupported);
    };
    refuses([&] { settings->SaveFormPlacement(object, u"", u"", u"", 0, 0, true); });
    refuses([&] { settings->LoadFormPlacement(object, u"", u"", u"", 0, 0, false, 0, 0, true); });
    refuses([&] { settings->SaveFormPlacement2(object, u"", u"", object, true); });
    refuses([&] { settings->LoadFormPlacement2(object, u"", u"", object, false, 0, 0, true); });
    refuses([&] { settings->SaveListViewColumns2(object, u"", object, true); });
    refuses([&] { settings->LoadListViewColumns2(object, u"", object, true); });
    refuses([&] { settings->LoadFont2(u"", object, Font(), true); });
    refuses([&] { settings->SaveFont2(u"", Font(), object, true); });
}

/// A row of the interface: a member and its parameters as "Name", "Name=default" or "[Name]" for an
/// optional one without default.
struct Row {
    const char* member;
    std::vector<std::string> parameters;
};

std::string parameterText(const automation::Parameter& parameter) {
    using Kind = automation::DefaultValue::Kind;
    const automation::DefaultValue& fallback = parameter.fallback;
    std::string text = parameter.name;
    if (fallback.kind == Kind::number) text += "=" + std::to_string(fallback.number);
    if (fallback.kind == Kind::text) {
        text += "=";
        for (const char16_t unit : WStringView(fallback.text))
            text += static_cast<char>(unit);
    }
    if (parameter.isOptional && fallback.kind == Kind::none) text = "[" + text + "]";
    return parameter.type.byReference ? "ByRef " + text : text;
}

TEST(orvOrvaneSettings, InterfaceHasItsMembersInOrderWithTheirDefaults) {
    const std::string title = "AppTitle=Orvane - Byaka";
    const std::string placement = "ValueName=Window placement";
    const std::string user = "UserSetting=-1";
    const std::string success = "ByRef [Success]";
    const Row rows[] = {
        {"GetSettingPath", {title, "[VerMajor]", "[VerMinor]", "[KeyPath]"}},
        {"LoadSetting",
         {"SubKey", "ValueName=", "ValueType=0", title, "[VerMajor]", "[VerMinor]", "[Default]",
          user, success}},
        {"SaveSetting",
         {"SubKey", "ValueName=", "ValueType=0", "Value=", title, "[VerMajor]", "[VerMinor]",
          user}},
        {"SaveFormPlacement",
         {"FormObject", "SubKey=", placement, title, "[VerMajor]", "[VerMinor]", user}},
        {"LoadFormPlacement",
         {"FormObject", "SubKey=", placement, title, "[VerMajor]", "[VerMinor]", "SetMinimized=0",
          "FixedWidth=0", "FixedHeight=0", user}},
        {"GetSettingPath2", {"[AppObject]", "[KeyPath]"}},
        {"LoadSetting2",
         {"SubKey", "ValueName=", "ValueType=0", "[AppObject]", "[Default]", user, success}},
        {"SaveSetting2", {"SubKey", "ValueName=", "ValueType=0", "Value=", "[AppObject]", user}},
        {"SaveFormPlacement2", {"FormObject", "SubKey=", placement, "[AppObject]", user}},
        {"LoadFormPlacement2",
         {"FormObject", "SubKey=", placement, "[AppObject]", "SetMinimized=0", "FixedWidth=0",
          "FixedHeight=0", user}},
        {"SaveListViewColumns2", {"ListViewObject", "SubKey=Unnamed List", "[AppObject]", user}},
        {"LoadListViewColumns2", {"ListViewObject", "SubKey=Unnamed List", "[AppObject]", user}},
        {"LoadFont2", {"SubKey=Unnamed Font", "[AppObject]", "[Default]", user}},
        {"SaveFont2", {"SubKey=Unnamed Font", "[Value]", "[AppObject]", user}},
    };
    const auto& members = orvOrvaneSettings::table().members;
    ASSERT_EQ(members.size(), std::size(rows));
    for (std::size_t i = 0; i < members.size(); ++i) {
        EXPECT_STREQ(members[i].name, rows[i].member);
        std::vector<std::string> parameters;
        for (const automation::Parameter& parameter : members[i].parameters)
            parameters.push_back(parameterText(parameter));
        EXPECT_EQ(parameters, rows[i].parameters) << members[i].name;
    }
}

TEST(orvOrvaneSettings, LeftOutArgumentsHaveTheirDefaults) {
    const Object settings = make<orvOrvaneSettings>()->asObject();
    EXPECT_EQ(toText(settings.call(u"GetSettingPath")),
              u"Software\\Tarn Hollow\\Orvane\\Orvane - Byaka\\Version 0.0");
    EXPECT_EQ(raisedBy([&] { settings.call(u"GetSettingPath2"); }), error::kObjectNotSet);
}

TEST_F(SaveSetting, LeftOutValueIsAnEmptyText) {
    FakeApplication app(WString(place_.title()), 1, 0);
    const Object settings = settings_->asObject();
    const auto missing = Variant::missing();
    EXPECT_TRUE(toBoolean(
        settings.call(u"SaveSetting2", {u"", u"n", missing, missing, Variant(app.object())})));
    const Variant stored = place_.stored(u"Version 1.0", u"n");
    ASSERT_NE(stored.as<WString>(), nullptr);
    EXPECT_TRUE(stored.as<WString>()->empty());
}

TEST_F(LoadSetting, SuccessComesBackByReferenceAndCanBeLeftOut) {
    place_.store(u"Version 1.0", u"n", u"v");
    const Object settings = settings_->asObject();
    const auto missing = Variant::missing();
    const WString title(place_.title());
    Variant success(false);
    EXPECT_EQ(toText(settings.call(u"LoadSetting", {u"", u"n", 0, title, 1, 0, missing, true,
                                                    Variant::reference(success)})),
              u"v");
    EXPECT_TRUE(toBoolean(success));
    EXPECT_EQ(toText(settings.call(u"LoadSetting", {u"", u"none", 0, title, 1, 0, u"d", missing,
                                                    Variant::reference(success)})),
              u"d");
    EXPECT_FALSE(toBoolean(success));
    EXPECT_EQ(toText(settings.call(u"LoadSetting", {u"", u"n", missing, title, 1})), u"v");
}

}  // namespace
}  // namespace orvane
