#include "libraries.h"

#include <gtest/gtest.h>

#include <algorithm>

#include <cstring>

namespace orvane::tests {
namespace {

using host::Pointer;

constexpr GUID kUnknownId = {0x0A0B0C0D, 1, 2, {3, 4, 5, 6, 7, 8, 9, 10}};

TEST(ClassFactory, UnknownClassIsNotAvailable) {
    TheLibrary library;
    int place = 0;
    void* object = &place;
    EXPECT_EQ(library.getClassObject(kUnknownId, IID_IClassFactory, &object),
              CLASS_E_CLASSNOTAVAILABLE);
    EXPECT_EQ(object, nullptr);
}

TEST(ClassFactory, InterfaceIdentifierIsNoClass) {
    TheLibrary library;
    void* object = nullptr;
    EXPECT_EQ(library.getClassObject(IID__orvMain, IID_IClassFactory, &object),
              CLASS_E_CLASSNOTAVAILABLE);
}

TEST(ClassFactory, ForeignInterfaceIsRefused) {
    TheLibrary library;
    void* object = nullptr;
    EXPECT_EQ(library.getClassObject(CLSID_orvMain, IID_IDispatch, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(library.getClassObject(CLSID_orvMain, IID_IClassFactory, nullptr), E_POINTER);
    EXPECT_TRUE(library.canUnload());
}

TEST(ClassFactory, AggregationIsRefused) {
    TheLibrary library;
    const auto factory = library.classObject<IClassFactory>(CLSID_orvMain, IID_IClassFactory);
    const auto outer = library.create<_PictureInfo>();
    void* object = nullptr;
    EXPECT_EQ(factory->CreateInstance(outer.get(), IID_IUnknown, &object), CLASS_E_NOAGGREGATION);
    EXPECT_EQ(object, nullptr);
}

TEST(ClassFactory, ObjectIsGoneWhenItLacksTheInterface) {
    TheLibrary library;
    auto factory = library.classObject<IClassFactory>(CLSID_orvMain, IID_IClassFactory);
    void* object = nullptr;
    EXPECT_EQ(factory->CreateInstance(nullptr, kUnknownId, &object), E_NOINTERFACE);
    EXPECT_EQ(object, nullptr);
    EXPECT_EQ(factory->CreateInstance(nullptr, IID_IUnknown, nullptr), E_POINTER);
    factory = {};
    EXPECT_TRUE(library.canUnload());
}

TEST(ClassFactory, CallOfAMemberGoesThroughTheHiddenGlobalInstance) {
    TheLibrary library;
    host::Text pattern;
    library.check(library.global<_orvMain>().GetLoadPictureExPattern(
        VARIANT_FALSE, VARIANT_FALSE, VARIANT_FALSE, VARIANT_FALSE, pattern.receive()));
    EXPECT_TRUE(pattern.view().starts_with(u"*.BMP;"));
    EXPECT_EQ(&library.global<_orvMain>(), &library.global<_orvMain>());
}

TEST(ClassFactory, EachThreadHasAGlobalInstanceOfItsOwn) {
    TheLibrary library;
    const _orvMain* const here = &library.global<_orvMain>();
    const _orvMain* there = nullptr;
    std::thread([&] {
        there = &library.global<_orvMain>();
        library.endThread();
    }).join();
    EXPECT_NE(here, there);
}

TEST(ClassFactory, TwoCallsOfCommandLineReturnTheSameObject) {
    TheLibrary library;
    Pointer<_CommandLineParser> first;
    Pointer<_CommandLineParser> second;
    library.check(library.global<_orvMain>().CommandLine(first.receive()));
    library.check(library.global<_orvMain>().CommandLine(second.receive()));
    EXPECT_TRUE(first);
    EXPECT_EQ(first.get(), second.get());
}

#ifndef _WIN32
TEST(ClassFactory, RuntimeInterfaceTellsTheVersionIdentity) {
    TheLibrary library;
    const auto runtime = library.runtime(CLSID_CommandLineParser);
    USHORT parts[4] = {};
    host::Text text;
    ASSERT_EQ(runtime->GetVersion(parts, text.receive()), S_OK);
    EXPECT_EQ(parts[0], 3);
    EXPECT_EQ(parts[1], 1);
    EXPECT_EQ(parts[2], 0);
    EXPECT_EQ(parts[3], 251);
    EXPECT_TRUE(text == u"3.01.0251");
    EXPECT_EQ(runtime->GetVersion(nullptr, text.receive()), E_POINTER);
}

TEST(ClassFactory, RuntimeInterfaceHasTheIdentityOfItsFactory) {
    TheLibrary library;
    const auto factory = library.classObject<IClassFactory>(CLSID_orvMain, IID_IClassFactory);
    const auto runtime = factory.query<IOrvaneRuntime>(IID_IOrvaneRuntime);
    ASSERT_TRUE(runtime);
    EXPECT_EQ(runtime.query<IUnknown>(IID_IUnknown).get(),
              factory.query<IUnknown>(IID_IUnknown).get());
    EXPECT_FALSE(library.canUnload());
}

TEST(ClassFactory, RuntimeGivesContextsToDrawOn) {
    TheLibrary library;
    const auto runtime = library.runtime(CLSID_orvMain);
    HDC dc = nullptr;
    BYTE* pixels = nullptr;
    ASSERT_EQ(runtime->CreateDrawing(3, 2, &dc, &pixels), S_OK);
    ASSERT_NE(pixels, nullptr);
    EXPECT_EQ(std::count(pixels, pixels + 3 * 2 * 4, BYTE{0}), 3 * 2 * 4);
    pixels[3 * 2 * 4 - 1] = 1;
    EXPECT_EQ(runtime->DeleteDrawing(dc), S_OK);
    EXPECT_EQ(runtime->DeleteDrawing(dc), E_INVALIDARG);
    EXPECT_EQ(runtime->DeleteDrawing(nullptr), E_INVALIDARG);
    EXPECT_EQ(runtime->CreateDrawing(0, 1, &dc, &pixels), E_INVALIDARG);
    EXPECT_EQ(runtime->CreateDrawing(1, -1, &dc, &pixels), E_INVALIDARG);
    EXPECT_EQ(runtime->CreateDrawing(0x7FFFFFFF, 0x7FFFFFFF, &dc, &pixels), E_OUTOFMEMORY);
    EXPECT_EQ(dc, nullptr);
    EXPECT_EQ(pixels, nullptr);
    EXPECT_EQ(runtime->CreateDrawing(1, 1, nullptr, &pixels), E_POINTER);
    EXPECT_EQ(runtime->CreateDrawing(1, 1, &dc, nullptr), E_POINTER);
}

TEST(ClassFactory, RuntimeStringsArraysAndValuesWorkTogether) {
    TheLibrary library;
    const auto runtime = library.runtime(CLSID_orvMain);
    SAFEARRAYBOUND bound{2, 5};
    VARIANT value{};
    value.vt = VT_ARRAY | VT_BSTR;
    value.parray = runtime->CreateArray(VT_BSTR, 1, &bound);
    ASSERT_NE(value.parray, nullptr);
    static_cast<BSTR*>(value.parray->pvData)[1] = runtime->AllocString(u"two", 3);
    VARTYPE type = VT_EMPTY;
    EXPECT_EQ(runtime->ArrayElementType(value.parray, &type), S_OK);
    EXPECT_EQ(type, VT_BSTR);
    VARIANT copy{};
    ASSERT_EQ(runtime->CopyVariant(&copy, &value), S_OK);
    EXPECT_EQ(runtime->ClearVariant(&value), S_OK);
    EXPECT_EQ(value.vt, VT_EMPTY);
    EXPECT_TRUE(host::viewOf(static_cast<BSTR*>(copy.parray->pvData)[1]) == u"two");
    EXPECT_EQ(copy.parray->rgsabound[0].lLbound, 5);
    EXPECT_EQ(runtime->ClearVariant(&copy), S_OK);
}
#endif

}  // namespace
}  // namespace orvane::tests
