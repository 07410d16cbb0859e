#include "platform/advapi32.h"
#include "platform/shlwapi.h"
#include "support/registry_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <array>
#include <cstring>

namespace orvane::platform {
namespace {

using namespace std::literals;
using testing::ElementsAre;
using testing::UnorderedElementsAre;

constexpr std::uint32_t kAll = 0xF003F;

std::uint32_t number(ResultCode code) {
    return static_cast<std::uint32_t>(code);
}

std::vector<std::uint8_t> bytes(std::string_view text) {
    return {text.begin(), text.end()};
}

/// An open key that is closed at its end.
class Open {
public:
    Open(RegistryKey root, const std::string& path, std::uint32_t access) {
        code = number(advapi32.RegOpenKeyExA(root, path, 0, access, key));
    }
    ~Open() {
        if (key != RegistryKey::none) advapi32.RegCloseKey(key);
    }
    Open(const Open&) = delete;
    Open& operator=(const Open&) = delete;

    RegistryKey key = RegistryKey::none;
    std::uint32_t code = 0;
};

struct TableRegistry : test::RegistryTest {
    static std::uint32_t create(const std::string& path, KeyDisposition* done = nullptr) {
        RegistryKey key{};
        KeyDisposition disposition{};
        const ResultCode code =
            advapi32.RegCreateKeyExA(kHkeyCurrentUser, path, 0, kKeySetValue, key, disposition);
        EXPECT_EQ(key != RegistryKey::none, code == ResultCode::success);
        if (key != RegistryKey::none) {
            EXPECT_EQ(number(advapi32.RegCloseKey(key)), 0u);
        }
        if (done != nullptr) *done = disposition;
        return number(code);
    }
    static std::uint32_t open(RegistryKey root, const std::string& path,
                              std::uint32_t access = kKeyQueryValue) {
        return Open(root, path, access).code;
    }
    std::uint32_t set(const std::string& name, std::uint32_t type, std::string_view data) {
        return number(advapi32.RegSetValueExA(mine.key, name, type, bytes(data)));
    }

    struct Answer {
        std::uint32_t code;
        std::uint32_t type;
        std::uint32_t size;
        std::string data;
        bool operator==(const Answer&) const = default;
        friend void PrintTo(const Answer& answer, std::ostream* out) {
            *out << answer.code << " type " << answer.type << " size " << answer.size << " "
                 << testing::PrintToString(answer.data);
        }
    };
    /// A question with room for so many bytes; what is behind the answer's data is not shown.
    Answer query(const std::string& name, std::uint32_t room = 1000) {
        std::vector<std::uint8_t> data(room + 1, 0xEE);
        Answer answer{0, 77, room, {}};
        answer.code = number(
            advapi32.RegQueryValueExA(mine.key, name, answer.type, data.data(), answer.size));
        EXPECT_EQ(data[room], 0xEE);
        if (answer.code == 0) {
            answer.data.assign(data.begin(), data.begin() + static_cast<int>(answer.size));
        }
        return answer;
    }
    Answer size(const std::string& name) {
        Answer answer{0, 77, 9, {}};
        answer.code =
            number(advapi32.RegQueryValueExA(mine.key, name, answer.type, nullptr, answer.size));
        return answer;
    }
    static std::vector<std::string> subKeys(RegistryKey key) {
        std::vector<std::string> names;
        std::array<char, 300> name{};
        std::uint32_t index = 0;
        while (advapi32.RegEnumKeyA(key, index++, name) == ResultCode::success)
            names.emplace_back(name.data());
        EXPECT_EQ(number(advapi32.RegEnumKeyA(key, index - 1, name)), kErrorNoMoreItems);
        return names;
    }
    static std::vector<std::string> values(RegistryKey key) {
        std::vector<std::string> names;
        std::array<char, 300> name{};
        for (std::uint32_t index = 0;; ++index) {
            auto length = static_cast<std::uint32_t>(name.size());
            const ResultCode code = advapi32.RegEnumValueA(key, index, name.data(), length);
            if (code != ResultCode::success) {
                EXPECT_EQ(number(code), kErrorNoMoreItems);
                return names;
            }
            names.emplace_back(name.data());
            EXPECT_EQ(length, names.back().size());
        }
    }

    const std::uint32_t made = create(store_.key());
    Open mine{kHkeyCurrentUser, store_.key(), kAll};
};

TEST_F(TableRegistry, PredefinedKeysAreOpen) {
    for (std::uint32_t root = 0x80000000; root <= 0x80000006; ++root)
        EXPECT_EQ(open(RegistryKey{root}, ""), 0u) << root;
}

TEST_F(TableRegistry, AbsentKeyIsNotFoundUnderAnyRoot) {
    for (std::uint32_t root = 0x80000000; root <= 0x80000006; ++root) {
        const std::uint32_t expected =
            RegistryKey{root} == kHkeyPerformanceData ? kErrorInvalidHandle : kErrorFileNotFound;
        EXPECT_EQ(open(RegistryKey{root}, "Orvane no such key"), expected) << root;
    }
}

TEST_F(TableRegistry, OtherNumbersAreNoKeys) {
    for (const std::uint32_t root : {0u, 0x1234u, 0x80000007u, 0x80000050u, 0xFFFFFFFFu}) {
        EXPECT_EQ(open(RegistryKey{root}, ""), kErrorInvalidHandle) << root;
        EXPECT_EQ(open(RegistryKey{root}, "a"), kErrorInvalidHandle) << root;
    }
}

TEST_F(TableRegistry, EveryOperationRefusesAnInvalidHandle) {
    const RegistryKey bad{0x1234};
    std::array<char, 9> name{};
    std::uint32_t size = 9;
    std::uint32_t type = 0;
    RegistryKey key{};
    KeyDisposition disposition{};
    KeyInformation information;
    EXPECT_EQ(number(advapi32.RegCreateKeyExA(bad, "a", 0, 1, key, disposition)), 6u);
    EXPECT_EQ(number(advapi32.RegQueryValueExA(bad, "a", type, nullptr, size)), 6u);
    EXPECT_EQ(number(advapi32.RegSetValueExA(bad, "a", 3, bytes("x"))), 6u);
    EXPECT_EQ(number(advapi32.RegDeleteValueA(bad, "a")), 6u);
    EXPECT_EQ(number(advapi32.RegQueryInfoKeyA(bad, information)), 6u);
    EXPECT_EQ(number(advapi32.RegEnumKeyA(bad, 0, name)), 6u);
    EXPECT_EQ(number(advapi32.RegEnumValueA(bad, 0, name.data(), size)), 6u);
    EXPECT_EQ(number(advapi32.RegCloseKey(bad)), 6u);
    EXPECT_EQ(number(shlwapi.SHDeleteKeyA(bad, "a")), 6u);
    EXPECT_EQ(number(shlwapi.SHDeleteEmptyKeyA(bad, "a")), 6u);
}

TEST_F(TableRegistry, CreateTellsWhetherTheKeyIsNew) {
    KeyDisposition done{};
    EXPECT_EQ(create(store_.key("a\\b\\c"), &done), 0u);
    EXPECT_EQ(done, KeyDisposition::createdNewKey);
    EXPECT_EQ(create(store_.key("a\\b\\c"), &done), 0u);
    EXPECT_EQ(done, KeyDisposition::openedExistingKey);
    EXPECT_EQ(create(store_.key("a\\b"), &done), 0u);
    EXPECT_EQ(done, KeyDisposition::openedExistingKey);
    EXPECT_EQ(open(kHkeyCurrentUser, store_.key("a\\b\\c\\d")), kErrorFileNotFound);
}

TEST_F(TableRegistry, NamesAreFoundInAnyCaseAndKeepTheirs) {
    EXPECT_EQ(create(store_.key("MiXed \xC6\xE6")), 0u);
    EXPECT_EQ(open(kHkeyCurrentUser, store_.key("mIxED \xE6\xC6")), 0u);
    EXPECT_THAT(subKeys(mine.key), ElementsAre("MiXed \xC6\xE6"));
    EXPECT_EQ(set("VaLue", kRegBinary, "1"), 0u);
    EXPECT_EQ(set("vAlUE", kRegBinary, "22"), 0u);
    EXPECT_THAT(values(mine.key), ElementsAre("VaLue"));
    EXPECT_EQ(query("VALUE"), (Answer{0, kRegBinary, 2, "22"}));
}

TEST_F(TableRegistry, SeparatorsThatMeanNothingAreLeftOut) {
    EXPECT_EQ(create(store_.key("\\a\\\\\\b\\\\")), 0u);
    EXPECT_EQ(open(kHkeyCurrentUser, store_.key("a\\b")), 0u);
    EXPECT_EQ(open(kHkeyCurrentUser, store_.key("a\\\\b\\")), 0u);
    EXPECT_EQ(open(kHkeyCurrentUser, store_.key("a/b")), kErrorFileNotFound);
}

TEST_F(TableRegistry, PathMayNotBeginWithASeparator) {
    constexpr std::uint32_t kBadPathName = 161;
    EXPECT_EQ(open(kHkeyCurrentUser, "\\" + store_.key()), kBadPathName);
    EXPECT_EQ(open(kHkeyCurrentUser, "\\"), kBadPathName);
    EXPECT_EQ(create("\\" + store_.key("a")), kBadPathName);
    EXPECT_EQ(open(kHkeyCurrentUser, store_.key("a")), kErrorFileNotFound);
}

TEST_F(TableRegistry, NulEndsAName) {
    EXPECT_EQ(create(store_.key("cut\0off"s)), 0u);
    EXPECT_THAT(subKeys(mine.key), ElementsAre("cut"));
    EXPECT_EQ(set("cut\0off"s, kRegBinary, "x"), 0u);
    EXPECT_THAT(values(mine.key), ElementsAre("cut"));
}

TEST_F(TableRegistry, ValuesKeepTypeAndBytes) {
    const std::tuple<const char*, std::uint32_t, std::string> kRows[] = {
        {"none", kRegNone, "abc"},           {"text", kRegSz, "hello\0"s},
        {"open text", kRegSz, "hello"},      {"empty text", kRegSz, ""},
        {"expand", kRegExpandSz, "%a%\0"s},  {"binary", kRegBinary, "\0\1\xFF"s},
        {"dword", kRegDword, "\1\2\3\4"},    {"short dword", kRegDword, "ab"},
        {"multi", kRegMultiSz, "a\0b\0\0"s}, {"unknown type", 99, "xy"},
        {"empty binary", kRegBinary, ""},    {"cyrillic", kRegSz, "\xCF\xF0\xE8\xE2\xE5\xF2\0"s},
        {"nul inside", kRegSz, "a\0b\0"s},   {"", kRegSz, "default\0"s},
    };
    for (const auto& [name, type, data] : kRows) {
        EXPECT_EQ(set(name, type, data), 0u) << name;
        const auto length = static_cast<std::uint32_t>(data.size());
        EXPECT_EQ(query(name), (Answer{0, type, length, data})) << name;
        EXPECT_EQ(size(name), (Answer{0, type, length, {}})) << name;
        EXPECT_EQ(query(name, length), (Answer{0, type, length, data})) << name;
        if (length > 0) {
            EXPECT_EQ(query(name, length - 1), (Answer{kErrorMoreData, type, length, {}})) << name;
        }
    }
}

TEST_F(TableRegistry, AbsentValueIsNotFound) {
    EXPECT_EQ(query("nothing", 9), (Answer{kErrorFileNotFound, 0, 9, {}}));
    EXPECT_EQ(size("nothing"), (Answer{kErrorFileNotFound, 0, 0, {}}));
    EXPECT_EQ(size(""), (Answer{kErrorFileNotFound, 0, 0, {}}));
    EXPECT_EQ(number(advapi32.RegDeleteValueA(mine.key, "nothing")), kErrorFileNotFound);
}

TEST_F(TableRegistry, ValueOfAnotherTypeReplacesTheFormer) {
    EXPECT_EQ(set("v", kRegSz, "text\0"s), 0u);
    EXPECT_EQ(set("v", kRegBinary, "\xC0\xFF"), 0u);
    EXPECT_EQ(query("v"), (Answer{0, kRegBinary, 2, "\xC0\xFF"}));
    EXPECT_EQ(number(advapi32.RegDeleteValueA(mine.key, "V")), 0u);
    EXPECT_EQ(query("v", 1).code, kErrorFileNotFound);
}

TEST_F(TableRegistry, TextsAreWideInsideAndAnsiOutside) {
    const std::u16string wide = u"\u041F\u0440 \u03B1\U0001F600";
    std::vector<std::uint8_t> kept(wide.size() * 2);
    std::memcpy(kept.data(), wide.data(), kept.size());
    EXPECT_EQ(number(advapi32.RegSetValueExW(mine.key, u"w", kRegSz, kept)), 0u);
    EXPECT_EQ(query("w"), (Answer{0, kRegSz, 6, "\xCF\xF0 ???"}));
    EXPECT_EQ(set("a", kRegSz, "\xCF\0"s), 0u);
    std::uint32_t type = 0;
    EXPECT_EQ(number(advapi32.RegQueryValueExW(mine.key, u"a", type, kept)), 0u);
    EXPECT_EQ(type, kRegSz);
    EXPECT_THAT(kept, ElementsAre(0x1F, 0x04, 0, 0));
}

TEST_F(TableRegistry, WideFormsGiveTheWhole) {
    EXPECT_EQ(create(store_.key("sub \xC6")), 0u);
    std::u16string name;
    EXPECT_EQ(number(advapi32.RegEnumKeyExW(mine.key, 0, name)), 0u);
    EXPECT_EQ(name, u"sub \u0416");
    EXPECT_EQ(number(advapi32.RegEnumKeyExW(mine.key, 1, name)), kErrorNoMoreItems);
    RegistryKey sub{};
    EXPECT_EQ(number(advapi32.RegOpenKeyExW(mine.key, u"SUB \u0436", 0, kAll, sub)), 0u);
    const auto data = bytes("0123456789");
    EXPECT_EQ(number(advapi32.RegSetValueExW(sub, u"\u03B1", kRegBinary, data)), 0u);
    std::uint32_t type = 0;
    std::vector<std::uint8_t> found;
    EXPECT_EQ(number(advapi32.RegEnumValueW(sub, 0, name, type, found)), 0u);
    EXPECT_EQ(name, u"\u03B1");
    EXPECT_EQ(type, kRegBinary);
    EXPECT_EQ(found, data);
    EXPECT_EQ(number(advapi32.RegEnumValueW(sub, 1, name, type, found)), kErrorNoMoreItems);
    EXPECT_EQ(number(advapi32.RegDeleteValueW(sub, u"\u0391")), 0u);
    EXPECT_EQ(number(advapi32.RegQueryValueExW(sub, u"\u03B1", type, found)), kErrorFileNotFound);
    EXPECT_TRUE(found.empty());
    EXPECT_EQ(number(advapi32.RegCloseKey(sub)), 0u);
    KeyDisposition done{};
    EXPECT_EQ(number(advapi32.RegCreateKeyExW(mine.key, u"new\\deep", 0, kAll, sub, done)), 0u);
    EXPECT_EQ(done, KeyDisposition::createdNewKey);
    EXPECT_EQ(number(advapi32.RegCloseKey(sub)), 0u);
    EXPECT_EQ(number(shlwapi.SHDeleteKeyW(mine.key, u"NEW")), 0u);
    EXPECT_EQ(open(kHkeyCurrentUser, store_.key("new")), kErrorFileNotFound);
}

TEST_F(TableRegistry, InformationCountsAndMeasures) {
    KeyInformation information;
    EXPECT_EQ(number(advapi32.RegQueryInfoKeyA(mine.key, information)), 0u);
    EXPECT_EQ(information.subKeys + information.values + information.longestSubKey +
                  information.longestValueName,
              0u);
    create(store_.key("a"));
    create(store_.key("three\\ignored and longer"));
    set("", kRegSz, "x\0"s);
    set("four", kRegBinary, "12345");
    EXPECT_EQ(number(advapi32.RegQueryInfoKeyA(mine.key, information)), 0u);
    EXPECT_EQ(information.subKeys, 2u);
    EXPECT_EQ(information.longestSubKey, 5u);
    EXPECT_EQ(information.values, 2u);
    EXPECT_EQ(information.longestValueName, 4u);
}

TEST_F(TableRegistry, EnumerationGivesEachNameOnce) {
    std::vector<std::string> keys;
    for (const char* name : {"alpha", "beta", "delta", "gamma"}) {
        keys.emplace_back(name);
        EXPECT_EQ(create(store_.key(name)), 0u);
        EXPECT_EQ(set(name, kRegBinary, name), 0u);
    }
    // In the order of their names on one platform, in that of their making on the other.
    EXPECT_EQ(subKeys(mine.key), keys);
    EXPECT_EQ(values(mine.key), keys);
}

TEST_F(TableRegistry, EnumerationTellsWhenANameNeedsMoreRoom) {
    create(store_.key("four"));
    set("four", kRegBinary, "x");
    std::array<char, 10> name{};
    EXPECT_EQ(number(advapi32.RegEnumKeyA(mine.key, 0, std::span(name).first(4))), kErrorMoreData);
    EXPECT_EQ(number(advapi32.RegEnumKeyA(mine.key, 0, std::span(name).first(0))), kErrorMoreData);
    EXPECT_EQ(number(advapi32.RegEnumKeyA(mine.key, 0, std::span(name).first(5))), 0u);
    EXPECT_STREQ(name.data(), "four");
    std::uint32_t size = 4;
    EXPECT_EQ(number(advapi32.RegEnumValueA(mine.key, 0, name.data(), size)), kErrorMoreData);
    size = 5;
    name = {};
    EXPECT_EQ(number(advapi32.RegEnumValueA(mine.key, 0, name.data(), size)), 0u);
    EXPECT_EQ(size, 4u);
    EXPECT_STREQ(name.data(), "four");
}

TEST_F(TableRegistry, EnumerationFollowsWhatChangesMeanwhile) {
    for (const char* name : {"a", "b", "c"})
        create(store_.key(name));
    std::array<char, 10> name{};
    EXPECT_EQ(number(advapi32.RegEnumKeyA(mine.key, 0, name)), 0u);
    EXPECT_STREQ(name.data(), "a");
    EXPECT_EQ(number(shlwapi.SHDeleteKeyA(mine.key, "a")), 0u);
    EXPECT_EQ(number(advapi32.RegEnumKeyA(mine.key, 1, name)), 0u);
    EXPECT_STREQ(name.data(), "c");
    EXPECT_EQ(number(advapi32.RegEnumKeyA(mine.key, 2, name)), kErrorNoMoreItems);
}

TEST_F(TableRegistry, HandleAllowsWhatItWasOpenedFor) {
    set("v", kRegBinary, "x");
    create(store_.key("sub"));
    struct Row {
        std::uint32_t access;
        std::uint32_t query, set, enumerateKeys, enumerateValues;
    };
    const Row kRows[] = {
        {0, 5, 5, 5, 5},
        {kKeyQueryValue, 0, 5, 5, 0},
        {kKeySetValue, 5, 0, 5, 5},
        {kKeyCreateSubKey, 5, 5, 5, 5},
        {kKeyEnumerateSubKeys, 5, 5, 0, 5},
        {0x20019, 0, 5, 0, 0},
        {0x20006, 5, 0, 5, 5},
        {0x02000000, 0, 0, 0, 0},
        {0x80000000, 0, 5, 0, 0},
        {0x10000, 5, 5, 5, 5},
        {kAll, 0, 0, 0, 0},
    };
    for (const Row& row : kRows) {
        SCOPED_TRACE(row.access);
        const Open opened(kHkeyCurrentUser, store_.key(), row.access);
        EXPECT_EQ(opened.code, 0u);
        std::uint32_t type = 0;
        std::uint32_t size = 0;
        std::array<char, 300> name{};
        EXPECT_EQ(number(advapi32.RegQueryValueExA(opened.key, "v", type, nullptr, size)),
                  row.query);
        EXPECT_EQ(number(advapi32.RegSetValueExA(opened.key, "w", 3, bytes("x"))), row.set);
        EXPECT_EQ(number(advapi32.RegDeleteValueA(opened.key, "w")), row.set);
        EXPECT_EQ(number(advapi32.RegEnumKeyA(opened.key, 0, name)), row.enumerateKeys);
        size = static_cast<std::uint32_t>(name.size());
        EXPECT_EQ(number(advapi32.RegEnumValueA(opened.key, 0, name.data(), size)),
                  row.enumerateValues);
        // Keys below are a matter of who may do so, not of the handle.
        RegistryKey sub{};
        KeyDisposition done{};
        EXPECT_EQ(number(advapi32.RegCreateKeyExA(opened.key, "new", 0, 1, sub, done)), 0u);
        EXPECT_EQ(number(advapi32.RegCloseKey(sub)), 0u);
        EXPECT_EQ(open(opened.key, "new"), 0u);
        EXPECT_EQ(number(shlwapi.SHDeleteEmptyKeyA(opened.key, "new")), 0u);
        EXPECT_EQ(open(opened.key, "", kAll), 0u);
    }
}

TEST_F(TableRegistry, ClosedHandleIsRefused) {
    RegistryKey key{};
    EXPECT_EQ(number(advapi32.RegOpenKeyExA(kHkeyCurrentUser, store_.key(), 0, 1, key)), 0u);
    EXPECT_EQ(number(advapi32.RegCloseKey(key)), 0u);
    EXPECT_EQ(number(advapi32.RegCloseKey(key)), kErrorInvalidHandle);
    EXPECT_EQ(number(advapi32.RegCloseKey(RegistryKey::none)), kErrorInvalidHandle);
    EXPECT_EQ(number(advapi32.RegCloseKey(kHkeyCurrentUser)), 0u);
    EXPECT_EQ(open(kHkeyCurrentUser, ""), 0u);
}

TEST_F(TableRegistry, EmptyKeyGoesWithItsValues) {
    create(store_.key("empty"));
    {
        const Open key(kHkeyCurrentUser, store_.key("empty"), kAll);
        EXPECT_EQ(number(advapi32.RegSetValueExA(key.key, "v", 3, bytes("x"))), 0u);
    }
    EXPECT_EQ(number(shlwapi.SHDeleteEmptyKeyA(kHkeyCurrentUser, store_.key("empty"))), 0u);
    EXPECT_EQ(open(kHkeyCurrentUser, store_.key("empty")), kErrorFileNotFound);
    EXPECT_EQ(number(shlwapi.SHDeleteEmptyKeyA(kHkeyCurrentUser, store_.key("empty"))),
              kErrorFileNotFound);
    create(store_.key("empty"));
    const Open again(kHkeyCurrentUser, store_.key("empty"), kAll);
    EXPECT_TRUE(values(again.key).empty());
}

TEST_F(TableRegistry, KeyWithSubKeysIsNotEmpty) {
    create(store_.key("parent\\child"));
    EXPECT_EQ(number(shlwapi.SHDeleteEmptyKeyA(kHkeyCurrentUser, store_.key("parent"))),
              kErrorKeyHasChildren);
    EXPECT_EQ(open(kHkeyCurrentUser, store_.key("parent\\child")), 0u);
}

TEST_F(TableRegistry, TreeGoesAsAWholeAndNothingBesideIt) {
    for (const char* name : {"tree\\a\\b", "tree\\c", "tree]", "tree 2\\x", "tre"})
        create(store_.key(name));
    EXPECT_EQ(number(shlwapi.SHDeleteKeyA(kHkeyCurrentUser, store_.key("TREE"))), 0u);
    EXPECT_THAT(subKeys(mine.key), UnorderedElementsAre("tre", "tree 2", "tree]"));
    EXPECT_EQ(open(kHkeyCurrentUser, store_.key("tree 2\\x")), 0u);
    EXPECT_EQ(number(shlwapi.SHDeleteKeyA(kHkeyCurrentUser, store_.key("tree"))),
              kErrorFileNotFound);
}

TEST_F(TableRegistry, TreeWithoutANameIsEmptiedAndStays) {
    create(store_.key("tree\\a\\b"));
    const Open tree(kHkeyCurrentUser, store_.key("tree"), kAll);
    EXPECT_EQ(number(shlwapi.SHDeleteKeyA(tree.key, "")), 0u);
    EXPECT_EQ(open(kHkeyCurrentUser, store_.key("tree")), 0u);
    EXPECT_TRUE(subKeys(tree.key).empty());
    EXPECT_EQ(number(shlwapi.SHDeleteEmptyKeyA(tree.key, "")), 0u);
    EXPECT_EQ(open(kHkeyCurrentUser, store_.key("tree")), kErrorFileNotFound);
}

TEST_F(TableRegistry, HandleOfADeletedKeyIsGoodForClosingOnly) {
    create(store_.key("gone"));
    const Open gone(kHkeyCurrentUser, store_.key("gone"), kAll);
    EXPECT_EQ(number(advapi32.RegSetValueExA(gone.key, "v", 3, bytes("x"))), 0u);
    EXPECT_EQ(number(shlwapi.SHDeleteKeyA(kHkeyCurrentUser, store_.key("gone"))), 0u);
    // A new key of that name is another one.
    create(store_.key("gone\\sub"));
    std::array<char, 9> name{};
    std::uint32_t size = 9;
    std::uint32_t type = 0;
    RegistryKey key{};
    KeyDisposition done{};
    KeyInformation information;
    const RegistryKey stale = gone.key;
    EXPECT_EQ(number(advapi32.RegQueryValueExA(stale, "v", type, nullptr, size)), 1018u);
    EXPECT_EQ(number(advapi32.RegSetValueExA(stale, "v", 3, bytes("x"))), 1018u);
    EXPECT_EQ(number(advapi32.RegDeleteValueA(stale, "v")), 1018u);
    EXPECT_EQ(number(advapi32.RegQueryInfoKeyA(stale, information)), 1018u);
    EXPECT_EQ(number(advapi32.RegEnumKeyA(stale, 0, name)), 1018u);
    EXPECT_EQ(number(advapi32.RegEnumValueA(stale, 0, name.data(), size)), 1018u);
    EXPECT_EQ(number(advapi32.RegOpenKeyExA(stale, "sub", 0, 1, key)), 1018u);
    EXPECT_EQ(number(advapi32.RegOpenKeyExA(stale, "", 0, 1, key)), 1018u);
    EXPECT_EQ(number(advapi32.RegCreateKeyExA(stale, "n", 0, 1, key, done)), 1018u);
    EXPECT_EQ(number(shlwapi.SHDeleteKeyA(stale, "sub")), 1018u);
    EXPECT_EQ(number(shlwapi.SHDeleteEmptyKeyA(stale, "sub")), 1018u);
}

TEST_F(TableRegistry, LongestNamesServe) {
    const std::string keyName(kLongestKeyName, 'k');
    RegistryKey key{};
    KeyDisposition done{};
    EXPECT_EQ(number(advapi32.RegCreateKeyExA(mine.key, keyName, 0, 1, key, done)), 0u);
    EXPECT_EQ(number(advapi32.RegCloseKey(key)), 0u);
    EXPECT_THAT(subKeys(mine.key), ElementsAre(keyName));
    const std::string valueName(kLongestValueName, 'v');
    EXPECT_EQ(set(valueName, kRegBinary, "x"), 0u);
    EXPECT_EQ(query(valueName), (Answer{0, kRegBinary, 1, "x"}));
    KeyInformation information;
    EXPECT_EQ(number(advapi32.RegQueryInfoKeyA(mine.key, information)), 0u);
    EXPECT_EQ(information.longestSubKey, kLongestKeyName);
    EXPECT_EQ(information.longestValueName, kLongestValueName);
    EXPECT_EQ(set(valueName + "v", kRegBinary, "x"), kErrorInvalidParameter);
    EXPECT_EQ(query(valueName + "v").code, kErrorFileNotFound);
    EXPECT_EQ(number(advapi32.RegDeleteValueA(mine.key, valueName + "v")), kErrorFileNotFound);
}

TEST_F(TableRegistry, LargeValuesServe) {
    const std::string large(1u << 20, '\x5A');
    EXPECT_EQ(set("large", kRegBinary, large), 0u);
    EXPECT_TRUE(query("large", 1u << 20).data == large);
    EXPECT_EQ(query("large", 1000), (Answer{kErrorMoreData, kRegBinary, 1u << 20, {}}));
    EXPECT_EQ(set("text", kRegSz, large), 0u);
    EXPECT_TRUE(query("text", 1u << 20).data == large);
}

}  // namespace
}  // namespace orvane::platform
