#include "support/host_facts.h"

#include "frame/binary_file.h"
#include "platform/advapi32.h"
#include "platform/kernel32.h"
#include "support/raised_error.h"
#include "support/recorder.h"

#include <gtest/gtest.h>

#include <cmath>
#include <string>

namespace orvane {
namespace {

using platform::advapi32;
using platform::kernel32;
using platform::secur32;
using test::raisedBy;
using test::ScopedTarget;

/// A platform function that gives a name, or fails with access denied when it is empty.
auto naming(std::string name) {
    return [name] {
        if (name.empty()) platform::setLastError(platform::kErrorAccessDenied);
        return name;
    };
}

const std::int32_t kAccessDenied = runtimeErrorFor(platform::kErrorAccessDenied);

TEST(UserName, IsTheLogonNameThroughTheAnsiCodePage) {
    ScopedTarget user(advapi32.GetUserNameA, naming("\xC0na"));
    EXPECT_EQ(nqGetUserName(), u"\u0410na");
}

TEST(UserName, RaisesThePlatformsFailure) {
    ScopedTarget user(advapi32.GetUserNameA, naming(""));
    EXPECT_EQ(raisedBy([] { nqGetUserName(); }), kAccessDenied);
}

TEST(UserName, IsThereOnThisHost) {
    EXPECT_FALSE(nqGetUserName().empty());
}

TEST(FullUserName, IsQualifiedWhenAsked) {
    ScopedTarget user(advapi32.GetUserNameA, naming("anna"));
    ScopedTarget qualified(secur32.GetUserNameExA, naming("OFFICE\\anna"));
    EXPECT_EQ(nqGetFullUserName(true), u"OFFICE\\anna");
    EXPECT_EQ(nqGetFullUserName(false), u"anna");
}

TEST(FullUserName, TakesTheComputersNameWhereThereAreNoQualifiedNames) {
    ScopedTarget user(advapi32.GetUserNameA, naming("anna"));
    ScopedTarget computer(kernel32.GetComputerNameA, naming("DESK"));
    ScopedTarget qualified(secur32.GetUserNameExA, naming(""));
    EXPECT_EQ(nqGetFullUserName(true), u"DESK\\anna");
}

TEST(FullUserName, RaisesThePlatformsFailure) {
    ScopedTarget user(advapi32.GetUserNameA, naming(""));
    ScopedTarget qualified(secur32.GetUserNameExA, naming(""));
    EXPECT_EQ(raisedBy([] { nqGetFullUserName(true); }), kAccessDenied);
    EXPECT_EQ(raisedBy([] { nqGetFullUserName(false); }), kAccessDenied);
}

TEST(ComputerName, IsThePlatforms) {
    ScopedTarget computer(kernel32.GetComputerNameA, naming("DESK"));
    EXPECT_EQ(nqGetComputerName(), u"DESK");
}

TEST(ComputerName, RaisesThePlatformsFailure) {
    ScopedTarget computer(kernel32.GetComputerNameA, naming(""));
    EXPECT_EQ(raisedBy([] { nqGetComputerName(); }), kAccessDenied);
}

TEST(ComputerName, IsThereOnThisHost) {
    EXPECT_FALSE(nqGetComputerName().empty());
}

TEST(MemoryStatus, GivesAllFiguresAsDoublesBeyond32Bits) {
    ScopedTarget fake(kernel32.GlobalMemoryStatusEx, [](platform::MemoryStatus& status) {
        status = {37, 1ULL << 36, 1ULL << 35, 1ULL << 38, 1ULL << 37, 1ULL << 47, 1ULL << 46};
        return true;
    });
    const MemoryFigures figures = nqGlobalMemoryStatus();
    EXPECT_EQ(figures.memoryLoad, 37);
    EXPECT_EQ(figures.totalPhysical, std::ldexp(1, 36));
    EXPECT_EQ(figures.availablePhysical, std::ldexp(1, 35));
    EXPECT_EQ(figures.totalPageFile, std::ldexp(1, 38));
    EXPECT_EQ(figures.availablePageFile, std::ldexp(1, 37));
    EXPECT_EQ(figures.totalVirtual, std::ldexp(1, 47));
    EXPECT_EQ(figures.availableVirtual, std::ldexp(1, 46));
}

TEST(MemoryStatus, RaisesThePlatformsFailure) {
    ScopedTarget fake(kernel32.GlobalMemoryStatusEx, [](platform::MemoryStatus&) {
        platform::setLastError(platform::kErrorAccessDenied);
        return false;
    });
    EXPECT_EQ(raisedBy([] { nqGlobalMemoryStatus(); }), kAccessDenied);
}

TEST(MemoryStatus, OfThisHostIsConsistent) {
    const MemoryFigures figures = nqGlobalMemoryStatus();
    EXPECT_GE(figures.memoryLoad, 0);
    EXPECT_LE(figures.memoryLoad, 100);
    EXPECT_GT(figures.totalPhysical, 0);
    EXPECT_LE(figures.availablePhysical, figures.totalPhysical);
    EXPECT_GT(figures.totalVirtual, 0);
    EXPECT_LE(figures.availableVirtual, figures.totalVirtual);
}

}  // namespace
}  // namespace orvane
