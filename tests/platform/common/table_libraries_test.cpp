#include "platform/kernel32.h"
#include "platform/zlib.h"

#include <gtest/gtest.h>

#include <array>
#include <vector>

namespace orvane::platform {
namespace {

constexpr const char* kZlib = "ZLibStdCall.DLL";

/// A zlib stream of "abcabcabc": two bytes of header, a fixed block and four of check value.
constexpr std::array<std::uint8_t, 13> kStream = {0x78, 0x01, 0x4B, 0x4C, 0x4A, 0x4E, 0x04,
                                                  0x23, 0x00, 0x11, 0x3D, 0x03, 0x73};

TEST(Libraries, ZlibLoadsByItsBareNameInAnyCase) {
    for (const char* name : {kZlib, "zlibstdcall.dll", "ZLIBSTDCALL.DLL"}) {
        const ModuleHandle library = kernel32.LoadLibraryA(name);
        ASSERT_NE(library, ModuleHandle::none) << name;
        EXPECT_NE(kernel32.GetModuleFileNameA(library), "");
        EXPECT_TRUE(kernel32.FreeLibrary(library));
    }
}

TEST(Libraries, MissingOneIsError126) {
    for (const char* name : {"no such library of ours.dll", "/no such folder/ZLibStdCall.DLL"}) {
        setLastError(kErrorSuccess);
        EXPECT_EQ(kernel32.LoadLibraryA(name), ModuleHandle::none) << name;
        EXPECT_EQ(lastError(), kErrorModuleNotFound) << name;
    }
}

TEST(Libraries, NameWithANulInsideIsRefused) {
    EXPECT_EQ(kernel32.LoadLibraryA(std::string(kZlib) + '\0' + "x"), ModuleHandle::none);
    EXPECT_EQ(lastError(), kErrorInvalidName);
}

TEST(Libraries, OneThatIsLoadedTwiceIsFreedTwice) {
    const ModuleHandle first = kernel32.LoadLibraryA(kZlib);
    const ModuleHandle second = kernel32.LoadLibraryA(kZlib);
    EXPECT_TRUE(kernel32.FreeLibrary(first));
    EXPECT_NE(kernel32.GetModuleFileNameA(second), "");
    EXPECT_TRUE(kernel32.FreeLibrary(second));
}

TEST(Libraries, NoLibraryIsFreedByNone) {
    EXPECT_FALSE(kernel32.FreeLibrary(ModuleHandle::none));
}

TEST(Libraries, ModuleOfAnAddressOfOursIsTheProgram) {
    static const char here = 0;
    const ModuleHandle own = kernel32.GetModuleHandleExA(&here);
    ASSERT_NE(own, ModuleHandle::none);
    EXPECT_EQ(kernel32.GetModuleFileNameA(own), kernel32.GetModuleFileNameA(ModuleHandle::none));
    EXPECT_EQ(kernel32.GetModuleHandleExA(&here), own);
}

TEST(Libraries, AddressOfNoModuleHasNone) {
    const std::vector<char> heap(100);
    setLastError(kErrorSuccess);
    EXPECT_EQ(kernel32.GetModuleHandleExA(heap.data()), ModuleHandle::none);
    EXPECT_NE(lastError(), kErrorSuccess);
}

TEST(Zlib, TellsItsVersion) {
    std::string version;
    EXPECT_TRUE(zlib.zlibVersion(version));
    EXPECT_EQ(version.substr(0, 2), "1.");
}

TEST(Zlib, InflatesAStream) {
    std::array<std::uint8_t, 20> out{};
    auto length = static_cast<std::uint32_t>(out.size());
    EXPECT_EQ(zlib.uncompress(out, length, kStream), 0);
    EXPECT_EQ(std::string(out.begin(), out.begin() + length), "abcabcabc");
}

TEST(Zlib, StreamThatBreaksOffGivesWhatCameBeforeAndItsCode) {
    std::array<std::uint8_t, 20> out{};
    auto length = static_cast<std::uint32_t>(out.size());
    EXPECT_LT(zlib.uncompress(out, length, std::span(kStream).first(5)), 0);
    EXPECT_LT(length, 9U);
    EXPECT_EQ(out[0], 'a');
}

TEST(Zlib, StopsAtTheEndOfItsRoom) {
    std::array<std::uint8_t, 20> out{};
    std::uint32_t length = 4;
    EXPECT_LT(zlib.uncompress(out, length, kStream), 0);
    EXPECT_EQ(length, 4U);
    EXPECT_EQ(std::string(out.begin(), out.begin() + 5), std::string("abca\0", 5));
    // The room is the buffer's, whatever the length says.
    length = 1000;
    EXPECT_LT(zlib.uncompress(std::span(out).first(4), length, kStream), 0);
    EXPECT_EQ(length, 4U);
}

}  // namespace
}  // namespace orvane::platform
