#include "settings/orvRegistry.h"

#include "platform/advapi32.h"
#include "platform/shlwapi.h"
#include "support/raised_error.h"
#include "support/recorder.h"
#include "support/registry_store.h"
#include "support/torture.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstring>

namespace orvane {
namespace {

using namespace std::literals;
using enum RegistryRoot_Const;
using enum RegistryType_Const;
using platform::advapi32;
using platform::KeyDisposition;
using platform::KeyInformation;
using platform::RegistryKey;
using platform::ResultCode;
using platform::shlwapi;
using test::raisedBy;
using test::Recorder;
using test::ScopedTarget;
using testing::ElementsAre;
using testing::IsEmpty;

using Lines = std::vector<std::string>;

/// A platform of the test's own: every operation gives what it is told, and notes its arguments.
class FakeRegistry {
public:
    ResultCode open{0};
    ResultCode create{0};
    ResultCode query{0};
    ResultCode queryAgain{0};
    ResultCode set{0};
    ResultCode remove{0};
    ResultCode inform{0};
    KeyDisposition disposition = KeyDisposition::openedExistingKey;
    std::string data = "value\0"s;
    std::uint32_t count = 0;
    std::uint32_t longest = 0;
    std::vector<ResultCode> enumerated;
    Lines notes;

private:
    std::string noteRoom(std::size_t room, const char* name) const {
        return std::string(name) + " " + std::to_string(room);
    }
    ResultCode enumerate(std::uint32_t index, char* name, std::size_t room, const char* operation) {
        notes.push_back(noteRoom(room, operation));
        // The whole buffer is the caller's, ten characters more than it tells of, all NUL.
        for (std::size_t i = 0; i < room + 10; ++i)
            EXPECT_EQ(name[i], '\0');
        if (enumerated[index] == ResultCode::success) std::strcpy(name, "name");
        return enumerated[index];
    }

    ScopedTarget<ResultCode(RegistryKey, const std::string&, std::uint32_t, std::uint32_t,
                            RegistryKey&)>
        open_{advapi32.RegOpenKeyExA, [this](RegistryKey, const std::string&, std::uint32_t,
                                             std::uint32_t, RegistryKey& key) {
                  if (open == ResultCode::success) key = RegistryKey{11};
                  return open;
              }};
    ScopedTarget<ResultCode(RegistryKey, const std::string&, std::uint32_t, std::uint32_t,
                            RegistryKey&, KeyDisposition&)>
        create_{advapi32.RegCreateKeyExA,
                [this](RegistryKey, const std::string&, std::uint32_t, std::uint32_t,
                       RegistryKey& key, KeyDisposition& done) {
                    if (create == ResultCode::success) key = RegistryKey{11};
                    done = disposition;
                    return create;
                }};
    ScopedTarget<ResultCode(RegistryKey, const std::string&, std::uint32_t&, std::uint8_t*,
                            std::uint32_t&)>
        query_{advapi32.RegQueryValueExA,
               [this](RegistryKey, const std::string&, std::uint32_t& type, std::uint8_t* into,
                      std::uint32_t& size) {
                   type = 1;
                   if (into != nullptr && queryAgain == ResultCode::success) {
                       EXPECT_EQ(size, data.size());
                       std::ranges::copy(data, into);
                   }
                   size = static_cast<std::uint32_t>(data.size());
                   return into == nullptr ? query : queryAgain;
               }};
    ScopedTarget<ResultCode(RegistryKey, const std::string&, std::uint32_t,
                            std::span<const std::uint8_t>)>
        set_{advapi32.RegSetValueExA, [this](RegistryKey, const std::string&, std::uint32_t,
                                             std::span<const std::uint8_t> bytes) {
                 notes.emplace_back(bytes.begin(), bytes.end());
                 return set;
             }};
    ScopedTarget<ResultCode(RegistryKey, const std::string&)> deleteValue_{
        advapi32.RegDeleteValueA, [this](RegistryKey, const std::string&) { return remove; }};
    ScopedTarget<ResultCode(RegistryKey, KeyInformation&)> inform_{
        advapi32.RegQueryInfoKeyA, [this](RegistryKey, KeyInformation& information) {
            information = {count, longest, count, longest, 0};
            return inform;
        }};
    ScopedTarget<ResultCode(RegistryKey, std::uint32_t, std::span<char>)> enumKey_{
        advapi32.RegEnumKeyA, [this](RegistryKey, std::uint32_t index, std::span<char> name) {
            return enumerate(index, name.data(), name.size(), "key");
        }};
    ScopedTarget<ResultCode(RegistryKey, std::uint32_t, char*, std::uint32_t&)> enumValue_{
        advapi32.RegEnumValueA,
        [this](RegistryKey, std::uint32_t index, char* name, std::uint32_t& size) {
            return enumerate(index, name, size, "value");
        }};
    ScopedTarget<ResultCode(RegistryKey)> close_{advapi32.RegCloseKey,
                                                 [](RegistryKey) { return ResultCode{6}; }};
    ScopedTarget<ResultCode(RegistryKey, const std::string&)> deleteEmpty_{
        shlwapi.SHDeleteEmptyKeyA, [this](RegistryKey, const std::string&) { return remove; }};
    ScopedTarget<ResultCode(RegistryKey, const std::string&)> deleteTree_{
        shlwapi.SHDeleteKeyA, [this](RegistryKey, const std::string&) { return remove; }};
};

struct OrvRegistryCalls : testing::Test {
    FakeRegistry fake;
    Recorder recorder{advapi32, shlwapi};
    Ref<orvRegistry> registry = make<orvRegistry>();
    bool success = true;
    bool existed = false;
};

TEST_F(OrvRegistryCalls, GetValueAsksTwiceAndCloses) {
    EXPECT_EQ(*registry->GetValue(currentUser, u"a\\b", u"n", rtString, success).as<WString>(),
              u"value");
    EXPECT_TRUE(
        recorder.saw({"RegOpenKeyExA(2147483649, \"a\\\\b\", 0, 1, 11) -> 0",
                      "RegQueryValueExA(11, \"n\", 1, null, 6) -> 0",
                      "RegQueryValueExA(11, \"n\", 1, address, 6) -> 0", "RegCloseKey(11) -> 6"}));
    EXPECT_EQ(registry->LastRegError(), 0);
}

TEST_F(OrvRegistryCalls, GetValueStopsWhereItFails) {
    fake.open = ResultCode{5};
    registry->GetValue(localMachine, u"a", u"n", rtLong, success);
    EXPECT_FALSE(success);
    EXPECT_EQ(registry->LastRegError(), 5);
    EXPECT_THAT(recorder.names(), ElementsAre("RegOpenKeyExA"));

    recorder.clear();
    fake.open = {};
    fake.query = ResultCode{2};
    registry->GetValue(localMachine, u"a", u"n", rtLong, success);
    EXPECT_FALSE(success);
    EXPECT_EQ(registry->LastRegError(), 2);
    EXPECT_THAT(recorder.names(), ElementsAre("RegOpenKeyExA", "RegQueryValueExA", "RegCloseKey"));

    recorder.clear();
    fake.query = {};
    fake.queryAgain = ResultCode{234};
    EXPECT_EQ(*registry->GetValue(localMachine, u"a", u"n", rtString, success).as<WString>(), u"");
    EXPECT_FALSE(success);
    EXPECT_EQ(registry->LastRegError(), 234);
    EXPECT_THAT(recorder.names(), ElementsAre("RegOpenKeyExA", "RegQueryValueExA",
                                              "RegQueryValueExA", "RegCloseKey"));
}

TEST_F(OrvRegistryCalls, GetValueOfABadTypeCallsNothing) {
    registry->GetValue(currentUser, u"a", u"n", RegistryType_Const(7), success);
    EXPECT_FALSE(success);
    EXPECT_THAT(recorder.names(), IsEmpty());
}

TEST_F(OrvRegistryCalls, ValueOfNoBytesRaisesAndLeavesTheKeyOpen) {
    fake.data.clear();
    success = false;
    EXPECT_EQ(raisedBy([&] { registry->GetValue(currentUser, u"a", u"n", rtBinary, success); }), 9);
    EXPECT_TRUE(success);
    EXPECT_EQ(registry->LastRegError(), 0);
    EXPECT_THAT(recorder.names(), ElementsAre("RegOpenKeyExA", "RegQueryValueExA"));
    EXPECT_EQ(recorder.leftOpen().size(), 1u);
}

TEST_F(OrvRegistryCalls, SetValueMakesWritesAndCloses) {
    existed = false;
    EXPECT_TRUE(registry->SetValue(currentUser, u"a", u"n", rtString, u"text", existed));
    EXPECT_TRUE(existed);
    EXPECT_TRUE(
        recorder.saw({"RegCreateKeyExA(2147483649, \"a\", 0, 2, 11, 2) -> 0",
                      "RegSetValueExA(11, \"n\", 1, <5 bytes>) -> 0", "RegCloseKey(11) -> 6"}));
    EXPECT_THAT(fake.notes, ElementsAre("text\0"s));
}

TEST_F(OrvRegistryCalls, SetValueWritesEachTypeAsItIsStored) {
    Array<std::uint8_t> bytes(-1, 1);
    registry->SetValue(currentUser, u"a", u"n", rtLong, std::int32_t{0x01020304}, existed);
    registry->SetValue(currentUser, u"a", u"n", rtBinary, bytes, existed);
    registry->SetValue(currentUser, u"a", u"n", rtBoolean, false, existed);
    EXPECT_THAT(recorder.linesOf("RegSetValueExA"),
                ElementsAre("RegSetValueExA(11, \"n\", 4, <4 bytes>) -> 0",
                            "RegSetValueExA(11, \"n\", 3, <3 bytes>) -> 0",
                            "RegSetValueExA(11, \"n\", 1, <6 bytes>) -> 0"));
    EXPECT_THAT(fake.notes, ElementsAre("\4\3\2\1", "\0\0\0"s, "False\0"s));
}

TEST_F(OrvRegistryCalls, SetValueChecksBeforeItTouchesAnything) {
    fake.open = ResultCode{5};
    registry->IsKeyExist(currentUser, u"a");
    recorder.clear();
    EXPECT_FALSE(registry->SetValue(currentUser, u"a", u"n", rtLong, u"5", existed));
    EXPECT_FALSE(registry->SetValue(currentUser, u"a", u"n", RegistryType_Const(4), u"", existed));
    EXPECT_THAT(recorder.names(), IsEmpty());
    EXPECT_EQ(registry->LastRegError(), 5);
}

TEST_F(OrvRegistryCalls, SetValueTellsWhereItFailed) {
    fake.create = ResultCode{5};
    existed = true;
    EXPECT_FALSE(registry->SetValue(currentUser, u"a", u"n", rtString, u"", existed));
    EXPECT_TRUE(existed);
    EXPECT_EQ(registry->LastRegError(), 5);
    EXPECT_THAT(recorder.names(), ElementsAre("RegCreateKeyExA"));

    recorder.clear();
    fake.create = {};
    fake.disposition = KeyDisposition::createdNewKey;
    fake.set = ResultCode{112};
    EXPECT_FALSE(registry->SetValue(currentUser, u"a", u"n", rtString, u"", existed));
    EXPECT_FALSE(existed);
    EXPECT_EQ(registry->LastRegError(), 112);
    EXPECT_THAT(recorder.names(), ElementsAre("RegCreateKeyExA", "RegSetValueExA", "RegCloseKey"));
}

TEST_F(OrvRegistryCalls, DispositionOfNeitherKindChangesNothing) {
    fake.disposition = KeyDisposition{3};
    existed = true;
    EXPECT_TRUE(registry->CreateKey(currentUser, u"a", existed));
    EXPECT_TRUE(existed);
}

TEST_F(OrvRegistryCalls, DeleteValueOpensForWriting) {
    fake.remove = ResultCode{2};
    EXPECT_FALSE(registry->DeleteValue(currentUser, u"a", u"n"));
    EXPECT_EQ(registry->LastRegError(), 2);
    fake.remove = {};
    EXPECT_TRUE(registry->DeleteValue(currentUser, u"a", u""));
    EXPECT_TRUE(recorder.saw({"RegOpenKeyExA(2147483649, \"a\", 0, 2, 11) -> 0",
                              "RegDeleteValueA(11, \"n\") -> 2", "RegCloseKey(11) -> 6",
                              "RegOpenKeyExA(2147483649, \"a\", 0, 2, 11) -> 0",
                              "RegDeleteValueA(11, \"\") -> 0", "RegCloseKey(11) -> 6"}));
}

TEST_F(OrvRegistryCalls, DeletionsOfKeysAreOneCallEach) {
    EXPECT_TRUE(registry->DeleteKey(localMachine, u"a"));
    fake.remove = ResultCode{1020};
    EXPECT_FALSE(registry->DeleteKeyRecurse(classesRoot, u"b"));
    EXPECT_EQ(registry->LastRegError(), 1020);
    EXPECT_TRUE(recorder.saw(
        {"SHDeleteEmptyKeyA(2147483650, \"a\") -> 0", "SHDeleteKeyA(2147483648, \"b\") -> 1020"}));
}

TEST_F(OrvRegistryCalls, CreateKeyAndIsKeyExistCloseAtOnce) {
    EXPECT_TRUE(registry->CreateKey(currentUser, u"a", existed));
    EXPECT_TRUE(registry->IsKeyExist(currentUser, u"a"));
    EXPECT_TRUE(recorder.saw(
        {"RegCreateKeyExA(2147483649, \"a\", 0, 2, 11, 2) -> 0", "RegCloseKey(11) -> 6",
         "RegOpenKeyExA(2147483649, \"a\", 0, 1, 11) -> 0", "RegCloseKey(11) -> 6"}));
}

TEST_F(OrvRegistryCalls, NamesAreAskedForWithRoomForTheLongest) {
    fake.count = 2;
    fake.longest = 4;
    fake.enumerated = {ResultCode{0}, ResultCode{0}};
    const auto keys = registry->GetSubKeysNames(currentUser, u"a");
    const auto values = registry->GetValuesNames(currentUser, u"a");
    ASSERT_TRUE(keys && values);
    EXPECT_EQ(keys->Count(), 2);
    EXPECT_EQ(*keys->Item(2).as<WString>(), u"name");
    EXPECT_EQ(values->Count(), 2);
    EXPECT_THAT(fake.notes, ElementsAre("key 14", "key 14", "value 14", "value 14"));
    EXPECT_TRUE(recorder.saw({"RegOpenKeyExA(2147483649, \"a\", 0, 9, 11) -> 0",
                              "RegQueryInfoKeyA(11, *) -> 0", "RegEnumKeyA(11, 0, <14 bytes>) -> 0",
                              "RegEnumKeyA(11, 1, <14 bytes>) -> 0", "RegCloseKey(11) -> 6",
                              "RegOpenKeyExA(2147483649, \"a\", 0, 1, 11) -> 0",
                              "RegQueryInfoKeyA(11, *) -> 0", "RegEnumValueA(11, 0, *, 14) -> 0",
                              "RegEnumValueA(11, 1, *, 14) -> 0", "RegCloseKey(11) -> 6"}));
}

TEST_F(OrvRegistryCalls, NamesEndWhenThereAreNoMore) {
    fake.count = 3;
    fake.enumerated = {ResultCode{0}, ResultCode{259}, ResultCode{0}};
    for (const auto& names : {registry->GetSubKeysNames(currentUser, u"a"),
                              registry->GetValuesNames(currentUser, u"a")}) {
        ASSERT_TRUE(names);
        EXPECT_EQ(names->Count(), 1);
        EXPECT_EQ(registry->LastRegError(), 259);
    }
    EXPECT_THAT(recorder.leftOpen(), testing::SizeIs(1));  // the fake refuses every close
}

TEST_F(OrvRegistryCalls, NamesAreDroppedWhenOneFails) {
    fake.count = 3;
    fake.enumerated = {ResultCode{0}, ResultCode{234}, ResultCode{0}};
    EXPECT_FALSE(registry->GetSubKeysNames(currentUser, u"a"));
    EXPECT_EQ(registry->LastRegError(), 234);
    EXPECT_EQ(recorder.count("RegEnumKeyA"), 2u);
    EXPECT_EQ(recorder.count("RegCloseKey"), 1u);
    EXPECT_FALSE(registry->GetValuesNames(currentUser, u"a"));
    EXPECT_EQ(registry->LastRegError(), 234);
}

TEST_F(OrvRegistryCalls, NamesAreNothingWithoutTheCounts) {
    fake.inform = ResultCode{1018};
    EXPECT_FALSE(registry->GetSubKeysNames(currentUser, u"a"));
    EXPECT_EQ(registry->LastRegError(), 1018);
    EXPECT_FALSE(registry->GetValuesNames(currentUser, u"a"));
    EXPECT_EQ(recorder.count("RegCloseKey"), 2u);
    EXPECT_EQ(recorder.count("RegEnumKeyA") + recorder.count("RegEnumValueA"), 0u);
}

/// Every operation of every member fails in turn over the real registry: the outcome is the
/// member's failure with the code, and no key stays open.
struct OrvRegistryTorture : test::RegistryTest {
    OrvRegistryTorture() {
        bool existed = false;
        const auto registry = make<orvRegistry>();
        EXPECT_TRUE(registry->SetValue(currentUser, path, u"n", rtString, u"text", existed));
        EXPECT_TRUE(registry->CreateKey(currentUser, path + u"\\sub", existed));
    }

    template <class Member>
    std::size_t torture(Member&& member) {
        const test::TortureOptions options{test::operationsOf(advapi32, shlwapi), {}};
        return test::torture(
            [&] {
                auto registry = make<orvRegistry>();
                const bool done = member(*registry);
                return std::pair(done, registry->LastRegError());
            },
            [](const std::pair<bool, std::int32_t>& outcome, const test::TortureRun& run) {
                EXPECT_EQ(outcome.first, run.failedAt == 0) << run.failed;
                EXPECT_EQ(outcome.second, run.failedAt == 0 ? 0 : 5) << run.failed;
            },
            options);
    }

    std::u16string path{store_.key().begin(), store_.key().end()};
    bool flag = false;
};

TEST_F(OrvRegistryTorture, GetValue) {
    EXPECT_EQ(torture([&](orvRegistry& registry) {
                  registry.GetValue(currentUser, path, u"n", rtString, flag);
                  return flag;
              }),
              3u);
}

TEST_F(OrvRegistryTorture, SetValue) {
    EXPECT_EQ(torture([&](orvRegistry& registry) {
                  return registry.SetValue(currentUser, path, u"n", rtString, u"x", flag);
              }),
              2u);
}

TEST_F(OrvRegistryTorture, DeleteValue) {
    EXPECT_EQ(torture([&](orvRegistry& registry) {
                  return registry.DeleteValue(currentUser, path, u"n");
              }),
              2u);
}

TEST_F(OrvRegistryTorture, DeletionsOfKeys) {
    EXPECT_EQ(torture([&](orvRegistry& registry) {
                  return registry.DeleteKey(currentUser, path + u"\\sub");
              }),
              1u);
    EXPECT_EQ(torture([&](orvRegistry& registry) {
                  return registry.DeleteKeyRecurse(currentUser, path);
              }),
              1u);
}

TEST_F(OrvRegistryTorture, Names) {
    EXPECT_EQ(torture([&](orvRegistry& registry) {
                  return bool(registry.GetSubKeysNames(currentUser, path));
              }),
              3u);
    EXPECT_EQ(torture([&](orvRegistry& registry) {
                  return bool(registry.GetValuesNames(currentUser, path));
              }),
              3u);
}

TEST_F(OrvRegistryTorture, KeysMadeAndLookedFor) {
    EXPECT_EQ(
        torture([&](orvRegistry& registry) { return registry.CreateKey(currentUser, path, flag); }),
        1u);
    EXPECT_EQ(
        torture([&](orvRegistry& registry) { return registry.IsKeyExist(currentUser, path); }), 1u);
}

}  // namespace
}  // namespace orvane
