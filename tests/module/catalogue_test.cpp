#include "libraries.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvane::tests {
namespace {

using host::Pointer;
using host::Text;

constexpr WORD kGlobal = 0x0B;
constexpr WORD kCreatable = 0x02;
constexpr WORD kInternal = 0x00;

struct Row {
    const char16_t* name;
    WORD flags;
    GUID classId;
    GUID interfaceId;
};

// The identifiers that hosts were compiled with, in type-library order.
const Row kRows[] = {
    {u"orvMain",
     kGlobal,
     {0x9BFF0E80, 0x2887, 0x4ECA, {0x8C, 0x35, 0xF1, 0xA2, 0x1B, 0x8C, 0xFD, 0x94}},
     {0x8F8BBB56, 0x3B84, 0x44E0, {0x9A, 0x8B, 0x74, 0x7D, 0xF3, 0x81, 0x3A, 0x09}}},
    {u"orvAlone",
     kCreatable,
     {0xAF6DF20F, 0xA1C6, 0x41DE, {0xBA, 0x39, 0xFD, 0xBE, 0x48, 0x2A, 0x41, 0xA8}},
     {0x9C979059, 0x80EE, 0x4F72, {0x9B, 0x21, 0x94, 0x9F, 0xA5, 0x58, 0x6E, 0x8B}}},
    {u"orvBenchMark",
     kCreatable,
     {0x77C3AFD9, 0x834B, 0x4E2B, {0xA0, 0x43, 0x96, 0x6F, 0xFB, 0x4E, 0xAC, 0xCB}},
     {0xD58F5763, 0xD54F, 0x41F9, {0x9B, 0x1C, 0xCB, 0x59, 0x54, 0x10, 0x84, 0x5A}}},
    {u"orvRegistry",
     kCreatable,
     {0x5A2E4B83, 0x9C41, 0x421E, {0xBA, 0x1B, 0x90, 0x7A, 0xF6, 0xE4, 0xB6, 0x2F}},
     {0xD93EC43E, 0x18EF, 0x4036, {0x93, 0x1F, 0x89, 0x52, 0x76, 0x22, 0xDF, 0xFE}}},
    {u"orvOrvaneSettings",
     kCreatable,
     {0x9729F407, 0x6CC0, 0x41DA, {0x93, 0xE9, 0x18, 0xCE, 0x36, 0x95, 0x1D, 0x14}},
     {0xA46E1FAE, 0x2176, 0x41D4, {0xA7, 0x6D, 0xBC, 0xF5, 0x42, 0xC9, 0xD1, 0x6A}}},
    {u"PictureInfo",
     kCreatable,
     {0x83A3985F, 0x5450, 0x4098, {0x94, 0xCD, 0xC5, 0x34, 0xA3, 0xF1, 0x95, 0xD7}},
     {0xE2C2C4B2, 0x8728, 0x4349, {0xB8, 0x83, 0xAF, 0xBF, 0x28, 0x63, 0xEA, 0xF8}}},
    {u"orvBenchMarkHP",
     kCreatable,
     {0xC3331EE2, 0x1C83, 0x4CB0, {0xA6, 0x56, 0xF3, 0x7D, 0x67, 0x87, 0x49, 0x0C}},
     {0xA47A014E, 0xEBFE, 0x4A20, {0x8B, 0x52, 0x91, 0x96, 0x53, 0xEC, 0x6D, 0x03}}},
    {u"CommandLineParser",
     kInternal,
     {0x30ADF94B, 0xA4D4, 0x4550, {0x9B, 0x84, 0xB9, 0xA4, 0xF2, 0x23, 0x3A, 0x99}},
     {0xD8D95142, 0xB960, 0x43F8, {0x8C, 0xB6, 0x10, 0xB6, 0xB5, 0x0A, 0x4E, 0x3B}}},
    {u"IHTTPRequestCallback",
     kInternal,
     {0xAC456F07, 0x1C87, 0x4F9D, {0xBA, 0x7A, 0x99, 0x9E, 0xF2, 0x4A, 0xAD, 0x6D}},
     {0x381C57B0, 0x8A7D, 0x4D7B, {0x9E, 0xF1, 0xFC, 0xF0, 0x69, 0x98, 0x9A, 0x0B}}},
    {u"orvHTTPRequest",
     kCreatable,
     {0x5B53974C, 0xDCE6, 0x474C, {0x97, 0xC5, 0x99, 0x53, 0x20, 0x88, 0x93, 0x93}},
     {0xB3B6597F, 0xA95A, 0x4615, {0xB8, 0x07, 0xE3, 0xF0, 0x28, 0x40, 0xBB, 0x55}}},
    {u"orvAutorunSupport",
     kGlobal,
     {0x2C5CEFAF, 0xB68B, 0x4BBC, {0xAA, 0xA2, 0xD2, 0x84, 0xFB, 0x22, 0x34, 0x24}},
     {0x42FB6CDD, 0xBD1A, 0x47B1, {0xA0, 0xA8, 0x47, 0x6D, 0x1E, 0xBE, 0xC5, 0xAF}}},
    {u"HTTPFormBuilder",
     kCreatable,
     {0x2704112C, 0x1A50, 0x42E8, {0xA7, 0xEB, 0x1F, 0xA4, 0x3E, 0x73, 0xED, 0xDD}},
     {0x7F4E8412, 0x9860, 0x4413, {0xA6, 0x9E, 0x14, 0xBD, 0x23, 0xEF, 0x90, 0x20}}},
    {u"ProxySettings",
     kCreatable,
     {0xA5F549D8, 0x38A6, 0x4B13, {0x89, 0x19, 0x03, 0x6C, 0xE9, 0x75, 0x84, 0x0D}},
     {0x99C43F50, 0xC88B, 0x479E, {0xBD, 0xA2, 0xF7, 0xA2, 0x63, 0x4F, 0x9B, 0x88}}},
    {u"orvStringBuffer",
     kCreatable,
     {0x0F9D5C46, 0x4A0A, 0x4E77, {0x88, 0x48, 0xE9, 0x7B, 0xD1, 0xF0, 0xB2, 0x58}},
     {0x7DEC580F, 0xCFCB, 0x45CE, {0xBC, 0x22, 0xCF, 0x0C, 0x7E, 0xC4, 0x20, 0x4D}}},
    {u"orvGZipArchive",
     kCreatable,
     {0x83B21852, 0x51FB, 0x45B7, {0x94, 0x94, 0x85, 0x62, 0x88, 0x90, 0xAB, 0x76}},
     {0xB3D796D6, 0x852D, 0x41E9, {0x9E, 0xBE, 0x72, 0xE5, 0x96, 0x41, 0xEB, 0x4A}}},
    {u"orvSort",
     kGlobal,
     {0x14926308, 0xCBA8, 0x484C, {0x81, 0x1F, 0x6B, 0xF9, 0x7E, 0x28, 0x2B, 0x72}},
     {0xEAC60479, 0xBB6F, 0x4CFD, {0x9B, 0xA6, 0x60, 0x7E, 0xF1, 0x45, 0xA0, 0x98}}},
};

TYPEATTR attributesOf(ITypeInfo& info) {
    TYPEATTR* attributes = nullptr;
    EXPECT_EQ(info.GetTypeAttr(&attributes), S_OK);
    const TYPEATTR copy = *attributes;
    info.ReleaseTypeAttr(attributes);
    return copy;
}

std::u16string nameOf(ITypeInfo& info) {
    Text name;
    EXPECT_EQ(info.GetDocumentation(MEMBERID_NIL, name.receive(), nullptr, nullptr, nullptr), S_OK);
    return std::u16string(name.view());
}

TEST(Catalogue, TypeLibraryHasEveryClassWithItsIdentifiersAndInstancing) {
    TheLibrary library;
    const auto types = typeLibraryOf<_orvMain>(library);
    for (const Row& row : kRows) {
        Pointer<ITypeInfo> info;
        ASSERT_EQ(types->GetTypeInfoOfGuid(row.classId, info.receive()), S_OK);
        EXPECT_EQ(nameOf(*info), row.name);
        EXPECT_EQ(attributesOf(*info).typekind, TKIND_COCLASS);
        EXPECT_EQ(attributesOf(*info).wTypeFlags, row.flags);
        HREFTYPE reference = 0;
        ASSERT_EQ(info->GetRefTypeOfImplType(0, &reference), S_OK);
        Pointer<ITypeInfo> implemented;
        ASSERT_EQ(info->GetRefTypeInfo(reference, implemented.receive()), S_OK);
        EXPECT_TRUE(attributesOf(*implemented).guid == row.interfaceId);
        EXPECT_EQ(nameOf(*implemented), std::u16string(u"_") + row.name);
    }
}

TEST(Catalogue, TypeLibraryHasTheClassesInTheirOrderAndNoOther) {
    TheLibrary library;
    const auto types = typeLibraryOf<_orvMain>(library);
    std::vector<std::u16string> names;
    for (UINT i = 0; i < types->GetTypeInfoCount(); ++i) {
        Pointer<ITypeInfo> info;
        ASSERT_EQ(types->GetTypeInfo(i, info.receive()), S_OK);
        if (attributesOf(*info).typekind == TKIND_COCLASS) names.push_back(nameOf(*info));
    }
    EXPECT_THAT(names, testing::ElementsAre(
                           u"orvMain", u"orvAlone", u"orvBenchMark", u"orvRegistry",
                           u"orvOrvaneSettings", u"PictureInfo", u"orvBenchMarkHP",
                           u"CommandLineParser", u"IHTTPRequestCallback", u"orvHTTPRequest",
                           u"orvAutorunSupport", u"HTTPFormBuilder", u"ProxySettings",
                           u"orvStringBuffer", u"orvGZipArchive", u"orvSort"));
}

TEST(Catalogue, FactoriesMakeWhatHostsMayCreateAndRefuseTheRest) {
    TheLibrary library;
    for (const Row& row : kRows) {
        const auto factory = library.classObject<IClassFactory>(row.classId, IID_IClassFactory);
        void* made = nullptr;
        const HRESULT status = factory->CreateInstance(nullptr, row.interfaceId, &made);
        EXPECT_EQ(status, row.flags == kInternal ? CLASS_E_CLASSNOTAVAILABLE : S_OK);
        EXPECT_EQ(made != nullptr, row.flags != kInternal);
        if (made != nullptr) static_cast<IUnknown*>(made)->Release();
    }
}

TEST(Catalogue, EarlierInterfaceIdentifiersGiveTheInterface) {
    TheLibrary library;
    const auto object = library.create<_orvMain>();
    for (const IID& alias : {IID_orvMain___v0, IID_orvMain___v1}) {
        const auto found = object.query<_orvMain>(alias);
        EXPECT_EQ(found.get(), object.get());
    }
}

TEST(Catalogue, ObjectsAnswerTheirIdentityAndNothingElse) {
    TheLibrary library;
    const auto object = library.create<_PictureInfo>();
    const auto unknown = object.query<IUnknown>(IID_IUnknown);
    EXPECT_TRUE(unknown);
    EXPECT_EQ(object.query<IDispatch>(IID_IDispatch).query<IUnknown>(IID_IUnknown).get(),
              unknown.get());
    EXPECT_FALSE(object.query<IUnknown>(IID__orvMain));
    EXPECT_FALSE(object.query<IUnknown>(IID_IStream));
}

TEST(Catalogue, ProvidedClassInformationIsTheClassItself) {
    TheLibrary library;
    const auto provider =
        library.create<_orvMain>().query<IProvideClassInfo>(IID_IProvideClassInfo);
    ASSERT_TRUE(provider);
    Pointer<ITypeInfo> info;
    ASSERT_EQ(provider->GetClassInfo(info.receive()), S_OK);
    EXPECT_TRUE(attributesOf(*info).guid == CLSID_orvMain);
}

}  // namespace
}  // namespace orvane::tests
