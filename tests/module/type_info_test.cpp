#include "libraries.h"

#include "module/type_library_text.h"

#include <gtest/gtest.h>

#include <fstream>
#include <iterator>

namespace orvane::tests {
namespace {

using host::Pointer;
using host::Text;

std::string fileText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

std::string sourceFile(const std::string& name) {
#ifdef _WIN32
    return "Z:" ORVANE_SOURCE_DIR "/" + name;
#else
    return ORVANE_SOURCE_DIR "/" + name;
#endif
}

struct TypeInfoTest : testing::Test {
    TheLibrary library;
    Pointer<ITypeLib> types = typeLibraryOf<_orvMain>(library);

    Pointer<ITypeInfo> typeOf(REFGUID guid) {
        Pointer<ITypeInfo> info;
        EXPECT_EQ(types->GetTypeInfoOfGuid(guid, info.receive()), S_OK);
        return info;
    }
};

TEST_F(TypeInfoTest, EverythingReadsAsRecorded) {
    const std::string recorded = fileText(sourceFile("type_library.snapshot"));
    ASSERT_FALSE(recorded.empty());
    EXPECT_EQ(typeLibraryText(*types.get()), recorded);
}

TEST(TypeInfoOfComponent, EverythingReadsAsRecorded) {
    TheComponent component;
    const auto types = typeLibraryOf<_TestItems>(component);
    const std::string recorded = fileText(sourceFile("component_type_library.snapshot"));
    ASSERT_FALSE(recorded.empty());
    EXPECT_EQ(typeLibraryText(*types.get()), recorded);
}

TEST_F(TypeInfoTest, LibraryTellsItsIdentity) {
    TLIBATTR* attributes = nullptr;
    ASSERT_EQ(types->GetLibAttr(&attributes), S_OK);
    EXPECT_TRUE(attributes->guid == LIBID_OrvBase0301);
    EXPECT_EQ(attributes->wMajorVerNum, 1);
    EXPECT_EQ(attributes->wMinorVerNum, 5);
    types->ReleaseTLibAttr(attributes);
    Text name;
    Text help;
    ASSERT_EQ(types->GetDocumentation(-1, name.receive(), help.receive(), nullptr, nullptr), S_OK);
    EXPECT_TRUE(name == u"OrvBase0301");
    EXPECT_TRUE(help == u"Orvane - Библиотека общих функций 3.01");
}

TEST_F(TypeInfoTest, HelpStringsReadBackInCyrillic) {
    const auto info = typeOf(IID__orvMain);
    const std::pair<const char16_t*, const char16_t*> members[] = {
        {u"LoadPictureEx", u"Расширенная версия. Грузит картинку и даёт сведения о ней."},
        {u"LoadPictureExByVar", u"Версия LoadPictureEx() для использования в скриптах."},
        {u"GetLoadPictureExFilter",
         u"Возвращает фильтр для диалогового окна открытия/сохранения файлов. Содержит все "
         u"форматы, поддерживаемые LoadPictureEx()."},
        {u"GetLoadPictureExPattern", u""},
        {u"LoadResPictureByData",
         u"Сохраняет картинку во временный каталог, загружает её и удаляет файл. Поддерживает "
         u"все форматы LoadPictureEx(). Передавать данные LoadResData()."},
    };
    for (const auto& [name, help] : members) {
        Text asked(name);
        LPOLESTR names = asked;
        MEMBERID id = MEMBERID_NIL;
        ASSERT_EQ(info->GetIDsOfNames(&names, 1, &id), S_OK);
        Text read;
        ASSERT_EQ(info->GetDocumentation(id, nullptr, read.receive(), nullptr, nullptr), S_OK);
        EXPECT_TRUE(read == help);
    }
}

TEST_F(TypeInfoTest, NamesAreFoundWithoutRegardToCase) {
    const auto info = typeOf(IID__orvMain);
    Text member(u"getloadpictureexfilter");
    Text parameter(u"INCLUDEWMF");
    LPOLESTR names[] = {member, parameter};
    MEMBERID ids[2] = {};
    EXPECT_EQ(info->GetIDsOfNames(names, 2, ids), S_OK);
    EXPECT_EQ(ids[0], 10);
    EXPECT_EQ(ids[1], 2);
    Text missing(u"NoSuchMember");
    names[0] = missing;
    EXPECT_EQ(info->GetIDsOfNames(names, 1, ids), DISP_E_UNKNOWNNAME);
    EXPECT_EQ(ids[0], MEMBERID_NIL);
}

TEST_F(TypeInfoTest, AliasesStandForTheInterface) {
    for (const IID& alias : {IID_orvMain___v0, IID_orvMain___v1}) {
        const auto info = typeOf(alias);
        TYPEATTR* attributes = nullptr;
        ASSERT_EQ(info->GetTypeAttr(&attributes), S_OK);
        EXPECT_EQ(attributes->typekind, TKIND_ALIAS);
        ASSERT_EQ(attributes->tdescAlias.vt, VT_USERDEFINED);
        Pointer<ITypeInfo> target;
        EXPECT_EQ(info->GetRefTypeInfo(attributes->tdescAlias.hreftype, target.receive()), S_OK);
        info->ReleaseTypeAttr(attributes);
        ASSERT_EQ(target->GetTypeAttr(&attributes), S_OK);
        EXPECT_TRUE(attributes->guid == IID__orvMain);
        target->ReleaseTypeAttr(attributes);
    }
}

TEST_F(TypeInfoTest, OutOfRangeAndUnknownFail) {
    Pointer<ITypeInfo> info;
    EXPECT_EQ(types->GetTypeInfo(types->GetTypeInfoCount(), info.receive()),
              TYPE_E_ELEMENTNOTFOUND);
    EXPECT_EQ(types->GetTypeInfoOfGuid(CLSID_TestItems, info.receive()), TYPE_E_ELEMENTNOTFOUND);
    const auto known = typeOf(IID__PictureInfo);
    FUNCDESC* function = nullptr;
    EXPECT_EQ(known->GetFuncDesc(1000, &function), TYPE_E_ELEMENTNOTFOUND);
    BSTR name = nullptr;
    UINT count = 0;
    EXPECT_EQ(known->GetNames(4711, &name, 1, &count), TYPE_E_ELEMENTNOTFOUND);
}

TEST_F(TypeInfoTest, InvokeReachesTheObject) {
    const auto object = library.create<_PictureInfo>();
    const auto info = typeOf(IID__PictureInfo);
    DISPPARAMS none{};
    VARIANT result{};
    ASSERT_EQ(info->Invoke(object.get(), 5, DISPATCH_METHOD, &none, &result, nullptr, nullptr),
              S_OK);
    ASSERT_EQ(result.vt, VT_BSTR);
    EXPECT_TRUE(host::viewOf(result.bstrVal) == u"Nothing");
    host::freeText(result.bstrVal);
}

TEST_F(TypeInfoTest, NamesOfTypesAndMembersAreFoundInTheLibrary) {
    Text name(u"CommandLine");
    BOOL found = 0;
    ASSERT_EQ(types->IsName(name, 0, &found), S_OK);
    EXPECT_NE(found, 0);
    ITypeInfo* infos[4] = {};
    MEMBERID ids[4] = {};
    USHORT count = 4;
    ASSERT_EQ(types->FindName(name, 0, infos, ids, &count), S_OK);
    ASSERT_EQ(count, 1);
    EXPECT_EQ(ids[0], 1);
    infos[0]->Release();
    Text missing(u"NoSuchName");
    ASSERT_EQ(types->IsName(missing, 0, &found), S_OK);
    EXPECT_EQ(found, 0);
}

}  // namespace
}  // namespace orvane::tests
