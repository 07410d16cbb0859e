#include "libraries.h"

#include <gtest/gtest.h>

#include <future>
#include <optional>

namespace orvane::tests {
namespace {

using host::Pointer;

TEST(Lifetime, LibraryMayBeUnloadedWhileNothingLives) {
    TheLibrary library;
    EXPECT_TRUE(library.canUnload());
    library.create<_orvMain>();
    EXPECT_TRUE(library.canUnload());
}

TEST(Lifetime, LiveObjectKeepsTheLibrary) {
    TheLibrary library;
    auto object = library.create<_PictureInfo>();
    EXPECT_FALSE(library.canUnload());
    object = {};
    EXPECT_TRUE(library.canUnload());
}

TEST(Lifetime, ParserHeldAloneKeepsTheLibrary) {
    TheLibrary library;
    auto object = library.create<_orvMain>();
    Pointer<_CommandLineParser> parser;
    library.check(object->CommandLine(parser.receive()));
    object = {};
    EXPECT_FALSE(library.canUnload());
    LONG count = -1;
    EXPECT_EQ(parser->get_Count(&count), S_OK);
    EXPECT_GE(count, 0);
    parser = {};
    EXPECT_TRUE(library.canUnload());
}

TEST(Lifetime, LocksKeepTheLibraryUntilTheLastIsTaken) {
    TheLibrary library;
    auto factory = library.classObject<IClassFactory>(CLSID_orvMain, IID_IClassFactory);
    factory->LockServer(1);
    factory->LockServer(1);
    factory->LockServer(0);
    factory = {};
    EXPECT_FALSE(library.canUnload());
    library.classObject<IClassFactory>(CLSID_orvMain, IID_IClassFactory)->LockServer(0);
    EXPECT_EQ(library.classObject<IClassFactory>(CLSID_orvMain, IID_IClassFactory)->LockServer(0),
              E_UNEXPECTED);
    EXPECT_TRUE(library.canUnload());
}

TEST(Lifetime, LiveFactoryKeepsTheLibrary) {
    TheLibrary library;
    const auto factory = library.classObject<IClassFactory>(CLSID_orvMain, IID_IClassFactory);
    EXPECT_FALSE(library.canUnload());
}

TEST(Lifetime, EnumerationKeepsTheLibrary) {
    TheComponent component;
    auto items = component.create<_TestItems>();
    Pointer<IUnknown> enumeration;
    component.check(items->get__NewEnum(enumeration.receive()));
    items = {};
    EXPECT_FALSE(component.canUnload());
    enumeration = {};
    EXPECT_TRUE(component.canUnload());
}

#ifndef _WIN32
// On Windows type information is the system's own and needs nothing of the library.
TEST(Lifetime, TypeInformationKeepsTheLibrary) {
    TheLibrary library;
    auto types = typeLibraryOf<_orvMain>(library);
    EXPECT_FALSE(library.canUnload());
    Pointer<ITypeInfo> info;
    library.check(types->GetTypeInfo(0, info.receive()));
    types = {};
    EXPECT_FALSE(library.canUnload());
    info = {};
    EXPECT_TRUE(library.canUnload());
}
#endif

TEST(Lifetime, LibraryCanBeUnloadedAfterUseAndUsedAgain) {
    std::string path = builtFile(host::Library::kDefaultName);
    for (int round = 0; round < 3; ++round) {
        std::optional<TheLibrary> library(std::in_place);
        ASSERT_TRUE(isLoaded(path));
        typeLibraryOf<_orvMain>(*library);
        Pointer<_CommandLineParser> parser;
        library->check(library->global<_orvMain>().CommandLine(parser.receive()));
        host::Text text;
        EXPECT_THROW(library->check(parser->get_Item(-2, text.receive())), host::Error);
        parser = {};
        library->endThread();
        ASSERT_TRUE(library->canUnload());
        library.reset();
        EXPECT_FALSE(isLoaded(path));
    }
}

TEST(Lifetime, ErrorLeftOnTheThreadOutlivesTheLibrary) {
    {
        TheLibrary library;
        Pointer<_CommandLineParser> parser;
        library.check(library.global<_orvMain>().CommandLine(parser.receive()));
        host::Text text;
        EXPECT_TRUE(FAILED(parser->get_Item(-2, text.receive())));
    }
    ASSERT_FALSE(isLoaded(builtFile(host::Library::kDefaultName)));
    // Whatever the failed call left behind is let go of now, without the library's code.
    TheLibrary again;
    Pointer<IErrorInfo> left;
    again.create<_orvMain>();
    again.errorInfo(left.receive());
    left = {};
    EXPECT_TRUE(again.canUnload());
}

TEST(Lifetime, LibraryUnloadsWhileThreadsThatUsedItGoOn) {
    std::optional<TheLibrary> library(std::in_place);
    std::promise<void> used;
    std::promise<void> unloaded;
    std::thread other([&] {
        library->global<_orvMain>();
        library->endThread();
        used.set_value();
        unloaded.get_future().wait();
    });
    used.get_future().wait();
    EXPECT_TRUE(library->canUnload());
    library.reset();
    EXPECT_FALSE(isLoaded(builtFile(host::Library::kDefaultName)));
    unloaded.set_value();
    other.join();
}

TEST(Lifetime, ObjectOutlivesTheThreadThatMadeIt) {
    TheLibrary library;
    Pointer<_orvMain> object;
    std::thread([&] {
        object = library.create<_orvMain>();
        Pointer<_CommandLineParser> parser;
        library.check(object->CommandLine(parser.receive()));
    }).join();
    EXPECT_FALSE(library.canUnload());
    object = {};
    EXPECT_TRUE(library.canUnload());
}

TEST(Lifetime, ThreadsThatEndLeaveNothingAlive) {
    TheLibrary library;
    for (int i = 0; i < 50; ++i) {
        std::thread([&] {
            library.global<_orvMain>();
            library.endThread();
        }).join();
    }
    EXPECT_TRUE(library.canUnload());
}

}  // namespace
}  // namespace orvane::tests
