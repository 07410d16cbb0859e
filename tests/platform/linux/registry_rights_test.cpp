#include "registry_fixture.h"

namespace orvane::platform {
namespace {

using testing::IsEmpty;

TEST_F(RegistryStoreLinux, UserWithoutRightsReadsTheMachinesRootAndWritesNothing) {
    ASSERT_EQ(::geteuid(), 0u) << "this test gives up the rights of the system's administrator";
    EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "machine"), 0u);
    EXPECT_EQ(write(kHkeyLocalMachine, "Software\\Classes\\c", "v", "machine"), 0u);
    store_.closeDatabases();
    fs::create_directory(store_.userFolder());
    EXPECT_EQ(::chown(store_.userFolder().c_str(), kNobody, kNobody), 0);
    EXPECT_EQ(
        inChild([&] {
            if (::setgid(kNobody) != 0 || ::setuid(kNobody) != 0) return 99;
            EXPECT_EQ(read(kHkeyLocalMachine, "a", "v"), "machine");
            EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "x"), kErrorAccessDenied);
            EXPECT_EQ(write(kHkeyLocalMachine, "new", "v", "x"), kErrorAccessDenied);
            RegistryKey key{};
            EXPECT_EQ(number(advapi32.RegOpenKeyExA(kHkeyLocalMachine, "a", 0, kKeySetValue, key)),
                      kErrorAccessDenied);
            EXPECT_EQ(number(shlwapi.SHDeleteKeyA(kHkeyLocalMachine, "a")), kErrorAccessDenied);
            EXPECT_EQ(number(shlwapi.SHDeleteEmptyKeyA(kHkeyLocalMachine, "a")),
                      kErrorAccessDenied);
            EXPECT_EQ(write(kHkeyClassesRoot, "c", "v", "x"), kErrorAccessDenied);
            EXPECT_EQ(write(kHkeyClassesRoot, "new", "v", "x"), kErrorAccessDenied);
            EXPECT_EQ(write(kHkeyCurrentUser, "Software\\Classes\\c", "v", "mine"), 0u);
            EXPECT_EQ(write(kHkeyClassesRoot, "c", "v", "still mine"), 0u);
            EXPECT_EQ(read(kHkeyClassesRoot, "c", "v"), "still mine");
            return testing::Test::HasFailure() ? 1 : 0;
        }),
        0);
    EXPECT_EQ(read(kHkeyLocalMachine, "a", "v"), "machine");
}

TEST_F(RegistryStoreLinux, AbsentMachinesRootIsEmptyForAUserWithoutRights) {
    ASSERT_EQ(::geteuid(), 0u) << "this test gives up the rights of the system's administrator";
    EXPECT_EQ(inChild([&] {
                  if (::setgid(kNobody) != 0 || ::setuid(kNobody) != 0) return 99;
                  EXPECT_EQ(read(kHkeyLocalMachine, "a", "v"), "(2)");
                  EXPECT_THAT(subKeys(kHkeyLocalMachine, ""), IsEmpty());
                  EXPECT_EQ(write(kHkeyLocalMachine, "a", "v", "x"), kErrorAccessDenied);
                  RegistryKey key{};
                  EXPECT_EQ(
                      number(advapi32.RegOpenKeyExA(kHkeyLocalMachine, "", 0, kKeySetValue, key)),
                      kErrorAccessDenied);
                  return testing::Test::HasFailure() ? 1 : 0;
              }),
              0);
    EXPECT_FALSE(fs::exists(store_.machineFolder()));
}

}  // namespace
}  // namespace orvane::platform
