#include "platform/win32/system.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace orvane::platform::win32 {
namespace {

/// A text of the given length, from a function that tells the size it needs.
std::string throughSizingFunction(std::size_t length) {
    const std::string text(length, 'x');
    return systemText([&text](char* buffer, DWORD size) {
        if (size <= text.size()) return static_cast<DWORD>(text.size() + 1);
        std::copy_n(text.c_str(), text.size() + 1, buffer);
        return static_cast<DWORD>(text.size());
    });
}

/// The same from a function that cuts the text and gives the buffer's size.
std::string throughCuttingFunction(std::size_t length) {
    const std::string text(length, 'x');
    return systemText([&text](char* buffer, DWORD size) {
        std::copy_n(text.c_str(), std::min<std::size_t>(text.size() + 1, size), buffer);
        return std::min(static_cast<DWORD>(text.size()), size);
    });
}

TEST(SystemText, IsWholeAtAnyLength) {
    for (const std::size_t length : {1u, 258u, 259u, 260u, 261u, 519u, 520u, 5000u}) {
        EXPECT_EQ(throughSizingFunction(length), std::string(length, 'x'));
        EXPECT_EQ(throughCuttingFunction(length), std::string(length, 'x'));
    }
}

TEST(SystemText, IsEmptyWhenTheFunctionFails) {
    EXPECT_EQ(systemText([](char*, DWORD) { return DWORD{0}; }), "");
}

TEST(OrError, FillsInAReasonOnlyWhereTheSystemGaveNone) {
    setLastError(77);
    EXPECT_FALSE(orError(kErrorInvalidHandle, false, [] { return false; }));
    EXPECT_EQ(lastError(), kErrorInvalidHandle);
    EXPECT_FALSE(orError(kErrorInvalidHandle, false, [] { return failed(8, false); }));
    EXPECT_EQ(lastError(), kErrorNotEnoughMemory);
}

TEST(SystemFunction, IsNullWhereLibraryOrNameIsMissing) {
    EXPECT_NE(systemFunction("kernel32.dll", "GetTickCount"), nullptr);
    EXPECT_EQ(systemFunction("kernel32.dll", "NoSuchFunction"), nullptr);
    EXPECT_EQ(systemFunction("nosuch.dll", "GetTickCount"), nullptr);
}

}  // namespace
}  // namespace orvane::platform::win32
