#include "pictures/PictureInfo.h"

#include "frame/automation/table.h"

#include <gtest/gtest.h>

#include <map>
#include <string>

namespace orvane {
namespace {

/// What every value without a name of its own is called.
constexpr const char16_t* kUnknown = u"Unknown";

const std::map<std::int32_t, std::u16string> kNames{
    {0, u"Nothing"},
    {1, u"Windows bitmap"},
    {2, u"JPEG"},
    {3, u"CompuServe GIF"},
    {4, u"Windows metafile"},
    {5, u"Enhanced metafile"},
    {6, u"Windows icon"},
    {7, u"Windows cursor"},
    {8, u"Portable network graphics"},
    {9, u"Photoshop document"},
    {10, u"Zsoft Paintbrush"},
    {11, u"Truevision Targa"},
    {12, u"Tagged image file format"},
};

DecodedImage image(std::int32_t width, std::int32_t height, std::int32_t depth) {
    return {width, height, depth, {}, {}};
}

TEST(PictureInfo, IsAllZeroWhenNew) {
    const auto info = make<PictureInfo>();
    EXPECT_EQ(info->Width(), 0);
    EXPECT_EQ(info->Height(), 0);
    EXPECT_EQ(info->ImageBPP(), 0);
    EXPECT_EQ(info->PictureType(), orvPictureTypeEx::orvPteNothing);
    EXPECT_EQ(info->GetPictureTypeName(), u"Nothing");
}

TEST(PictureInfo, NamesEveryType) {
    const auto info = make<PictureInfo>();
    for (const auto& [value, name] : kNames) {
        info->SetInfo({}, static_cast<orvPictureTypeEx>(value));
        EXPECT_EQ(info->GetPictureTypeName(), name.c_str()) << value;
    }
    info->SetInfo({}, orvPictureTypeEx::orvPteUnknown);
    EXPECT_EQ(info->GetPictureTypeName(), kUnknown);
}

TEST(PictureInfo, CallsAnyOtherValueUnknown) {
    const auto info = make<PictureInfo>();
    for (std::int32_t value = -300; value <= 300; ++value) {
        if (kNames.contains(value)) continue;
        info->SetInfo({}, static_cast<orvPictureTypeEx>(value));
        EXPECT_EQ(info->GetPictureTypeName(), kUnknown) << value;
    }
}

TEST(PictureInfo, TakesSizeAndDepthFromAnImage) {
    const auto info = make<PictureInfo>();
    info->SetInfo(image(640, 480, 24), orvPictureTypeEx::orvPteTGA);
    EXPECT_EQ(info->Width(), 640);
    EXPECT_EQ(info->Height(), 480);
    EXPECT_EQ(info->ImageBPP(), 24);
    EXPECT_EQ(info->PictureType(), orvPictureTypeEx::orvPteTGA);
}

TEST(PictureInfo, IsZeroAfterAReset) {
    const auto info = make<PictureInfo>();
    info->SetInfo(image(-1, -1, -1), orvPictureTypeEx::orvPteICO);
    info->ResetInfo();
    EXPECT_EQ(info->Width(), 0);
    EXPECT_EQ(info->Height(), 0);
    EXPECT_EQ(info->ImageBPP(), 0);
    EXPECT_EQ(info->PictureType(), orvPictureTypeEx::orvPteNothing);
}

TEST(PictureInfo, AnswersItsFiveMembersByName) {
    const auto info = make<PictureInfo>();
    info->SetInfo(image(3, 4, 8), orvPictureTypeEx::orvPtePCX);
    const Object late = info->asObject();
    EXPECT_EQ(*late.call(u"Width").as<std::int32_t>(), 3);
    EXPECT_EQ(*late.call(u"Height").as<std::int32_t>(), 4);
    EXPECT_EQ(*late.call(u"ImageBPP").as<std::int32_t>(), 8);
    EXPECT_EQ(*late.call(u"PictureType").as<std::int32_t>(), 10);
    EXPECT_EQ(*late.call(u"GetPictureTypeName").as<WString>(), u"Zsoft Paintbrush");
}

TEST(PictureInfo, HasItsMembersInThisOrder) {
    std::vector<std::string> names;
    for (const automation::Member& member : PictureInfo::table().members) {
        names.emplace_back(member.name);
    }
    EXPECT_EQ(names, (std::vector<std::string>{"Width", "Height", "ImageBPP", "PictureType",
                                               "GetPictureTypeName"}));
}

TEST(PictureInfo, HidesWhatOnlyTheReadersMayCall) {
    const Object late = make<PictureInfo>()->asObject();
    EXPECT_FALSE(late.hasMember(u"ResetInfo"));
    EXPECT_FALSE(late.hasMember(u"SetInfo"));
}

TEST(PictureInfo, TheEnumerationHasTheTypesNumbers) {
    const automation::EnumTable& table = enumTable(orvPictureTypeEx{});
    EXPECT_STREQ(table.name, "orvPictureTypeEx");
    ASSERT_EQ(table.constants.size(), 14U);
    for (std::int32_t value = 0; value <= 12; ++value) {
        EXPECT_EQ(table.constants[static_cast<std::size_t>(value)].value, value);
    }
    EXPECT_STREQ(table.constants.back().name, "orvPteUnknown");
    EXPECT_EQ(table.constants.back().value, 99);
}

}  // namespace
}  // namespace orvane
