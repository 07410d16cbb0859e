// Entries and values together: whatever fails, either both are done or neither is. The store is a
// fake; the real one stands behind the registry's operations in the tests of those.

#include "platform/linux/autostart/store.h"

#include "platform/linux/autostart/entry.h"
#include "platform/registry.h"
#include "support/temp_dir.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <csignal>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <sys/stat.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>
#include <vector>

namespace orvane::platform::autostart {
namespace {

namespace fs = std::filesystem;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::uint32_t kSomeFailure = 1117;

/// Values in memory, with transactions; a call whose name is in `failing` fails.
struct FakeStore {
    using Values = std::map<std::pair<std::int32_t, std::u16string>, std::u16string>;
    Values values;  ///< texts by root and folded path with the value's name behind it
    Values before;
    bool open = false;
    /// Runs in the moment of a commit, before anything of it lasts.
    std::function<void()> beforeCommit;
    std::vector<std::string> calls;
    std::string failing;

    std::uint32_t call(const char* name) {
        calls.emplace_back(name);
        return failing == name ? kSomeFailure : 0;
    }
};
FakeStore fake;

std::u16string text(const std::uint16_t* units, std::uint32_t count) {
    return {reinterpret_cast<const char16_t*>(units), count};
}

std::pair<std::int32_t, std::u16string> place(const OrvaneStoreKey* key,
                                              const OrvaneStoreName* name) {
    std::u16string whole = text(key->path, key->units);
    if (!whole.empty()) whole += u'\\';
    return {key->root, whole + text(name->folded, name->units)};
}

std::uint32_t fakeSet(const OrvaneStoreKey* key, const OrvaneStoreName* name, std::uint32_t,
                      const std::uint8_t* data, std::size_t size) {
    if (const auto code = fake.call("set")) return code;
    fake.values[place(key, name)] =
        std::u16string(reinterpret_cast<const char16_t*>(data), size / 2);
    return 0;
}

std::uint32_t fakeDelete(const OrvaneStoreKey* key, const OrvaneStoreName* name) {
    if (const auto code = fake.call("deleteValue")) return code;
    return fake.values.erase(place(key, name)) == 0 ? kErrorFileNotFound : 0;
}

std::uint32_t fakeDeleteKeys(const char* name, const OrvaneStoreKey* base,
                             const OrvaneStoreName* path) {
    if (const auto code = fake.call(name)) return code;
    const auto start = place(base, path);
    std::erase_if(fake.values, [&](const auto& value) {
        return value.first.first == start.first && value.first.second.starts_with(start.second);
    });
    return 0;
}
std::uint32_t fakeDeleteEmpty(const OrvaneStoreKey* base, const OrvaneStoreName* path) {
    return fakeDeleteKeys("deleteEmpty", base, path);
}
std::uint32_t fakeDeleteTree(const OrvaneStoreKey* base, const OrvaneStoreName* path) {
    return fakeDeleteKeys("deleteTree", base, path);
}

std::uint32_t fakeOpen(const OrvaneStoreKey*, const OrvaneStoreName*, int, std::int64_t* id) {
    *id = 7;
    return fake.call("open");
}

std::uint32_t fakeValue(const OrvaneStoreKey* key, std::uint32_t index, int, OrvaneStoreTake take,
                        void* context) {
    if (const auto code = fake.call("value")) return code;
    const std::u16string path = text(key->path, key->units) + u'\\';
    for (const auto& [where, line] : fake.values) {
        if (where.first != key->root || !where.second.starts_with(path)) continue;
        if (index-- != 0) continue;
        const std::u16string name = where.second.substr(path.size());
        take(context, reinterpret_cast<const std::uint16_t*>(name.data()),
             static_cast<std::uint32_t>(name.size()), kRegSz,
             reinterpret_cast<const std::uint8_t*>(line.data()), line.size() * 2);
        return 0;
    }
    return kErrorNoMoreItems;
}

std::uint32_t fakeBegin() {
    if (const auto code = fake.call("begin")) return code;
    fake.before = fake.values;
    fake.open = true;
    return 0;
}
// As the real one, the machine's part first.
std::uint32_t fakeCommit(std::uint32_t* committed) {
    if (fake.beforeCommit) fake.beforeCommit();
    *committed = 0;
    const auto code = fake.call("commit");
    const bool usersFails = fake.failing == "commit of the user's";
    if (code == 0) *committed |= 1u << ORVANE_STORE_MACHINE;
    if (code == 0 && !usersFails) *committed |= 1u << ORVANE_STORE_USER;
    for (const std::int32_t root : {ORVANE_STORE_USER, ORVANE_STORE_MACHINE}) {
        if ((*committed >> root & 1) != 0) continue;
        const auto isOfRoot = [&](const auto& value) { return value.first.first == root; };
        std::erase_if(fake.values, isOfRoot);
        std::ranges::copy_if(fake.before, std::inserter(fake.values, fake.values.end()), isOfRoot);
    }
    fake.open = false;
    return usersFails ? kSomeFailure : code;
}
std::uint32_t fakeRollback() {
    fake.values = fake.before;
    fake.open = false;
    return fake.call("rollback");
}

std::uint32_t fakeClaim(std::int32_t) {
    EXPECT_TRUE(fake.open);
    return fake.call("claim");
}

const OrvaneStoreTable* theStore() {
    static const OrvaneStoreTable table = [] {
        OrvaneStoreTable made{};
        made.version = ORVANE_STORE_VERSION;
        made.open = fakeOpen;
        made.set = fakeSet;
        made.deleteValue = fakeDelete;
        made.value = fakeValue;
        made.deleteEmpty = fakeDeleteEmpty;
        made.deleteTree = fakeDeleteTree;
        made.begin = fakeBegin;
        made.commit = fakeCommit;
        made.rollback = fakeRollback;
        made.claim = fakeClaim;
        return made;
    }();
    return withEntries(table);
}

/// A name as the store takes it, folded to upper case (of the basic letters, which are enough
/// here).
struct Name {
    explicit Name(std::u16string given) : spelled(std::move(given)), folded(spelled) {
        for (char16_t& unit : folded)
            if (unit >= u'a' && unit <= u'z') unit = static_cast<char16_t>(unit - 32);
        store = {reinterpret_cast<const std::uint16_t*>(spelled.data()),
                 reinterpret_cast<const std::uint16_t*>(folded.data()),
                 static_cast<std::uint32_t>(spelled.size())};
    }
    Name(const Name&) = delete;
    Name& operator=(const Name&) = delete;

    std::u16string spelled;
    std::u16string folded;
    OrvaneStoreName store;
};

const std::u16string kRun = u"Software\\Microsoft\\Windows\\CurrentVersion\\Run";

class AutostartStore : public testing::Test {
protected:
    AutostartStore() {
        fake = {};
        fs::create_directory(folder_.path() / "user");
        fs::create_directory(folder_.path() / "machine");
        ::setenv("ORVANE_REGISTRY_USER", (folder_.path() / "user").c_str(), 1);
        ::setenv("ORVANE_REGISTRY_MACHINE", (folder_.path() / "machine").c_str(), 1);
    }
    ~AutostartStore() override {
        ::unsetenv("ORVANE_REGISTRY_USER");
        ::unsetenv("ORVANE_REGISTRY_MACHINE");
        EXPECT_FALSE(fake.open) << "a transaction was left open";
    }

    std::uint32_t set(const std::u16string& name, const std::u16string& line,
                      std::int32_t root = ORVANE_STORE_USER, const std::u16string& key = kRun,
                      std::uint32_t type = kRegSz) {
        const Name path(key);
        const Name value(name);
        const OrvaneStoreKey at{root, 7, path.store.folded, path.store.units};
        return theStore()->set(&at, &value.store, type,
                               reinterpret_cast<const std::uint8_t*>(line.data()), line.size() * 2);
    }
    std::uint32_t remove(const std::u16string& name, std::int32_t root = ORVANE_STORE_USER) {
        const Name path(kRun);
        const Name value(name);
        const OrvaneStoreKey at{root, 7, path.store.folded, path.store.units};
        return theStore()->deleteValue(&at, &value.store);
    }
    std::uint32_t removeTree(const std::u16string& base, const std::u16string& below,
                             bool onlyEmpty = false) {
        const Name start(base);
        const Name path(below);
        const OrvaneStoreKey at{ORVANE_STORE_USER, 7, start.store.folded, start.store.units};
        return onlyEmpty ? theStore()->deleteEmpty(&at, &path.store)
                         : theStore()->deleteTree(&at, &path.store);
    }

    static std::uint32_t commit() {
        std::uint32_t committed = 0;
        return theStore()->commit(&committed);
    }

    fs::path folder(const char* scope) const { return folder_.path() / scope / "autostart"; }
    std::vector<std::string> entries(const char* scope = "user") const {
        std::vector<std::string> names;
        if (!fs::is_directory(folder(scope))) return names;
        for (const auto& each : fs::directory_iterator(folder(scope)))
            names.push_back(each.path().filename());
        std::ranges::sort(names);
        return names;
    }
    std::string entry(const char* name, const char* scope = "user") const {
        std::ifstream file(folder(scope) / name);
        std::stringstream content;
        content << file.rdbuf();
        return content.str();
    }
    /// Makes every write of an entry fail.
    void blockEntries(const char* scope = "user") const {
        fs::remove_all(folder(scope));
        std::ofstream(folder(scope)) << "a file in the folder's place";
    }

    test::TempDir folder_;
};

TEST_F(AutostartStore, ValueUnderTheRunKeyHasAnEntry) {
    EXPECT_EQ(set(u"App", u"/bin/true -x"), 0U);
    EXPECT_THAT(entries(), ElementsAre("orvane-user-app.desktop"));
    EXPECT_THAT(entry("orvane-user-app.desktop"), HasSubstr("\nExec=/bin/true -x\n"));
    EXPECT_THAT(fake.calls, ElementsAre("begin", "set", "commit"));
    struct stat facts {};
    EXPECT_EQ(::stat((folder("user") / "orvane-user-app.desktop").c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 07777U, 0644U);
}

TEST_F(AutostartStore, MachinesValueHasAnEntryOfItsOwn) {
    EXPECT_EQ(set(u"App", u"x", ORVANE_STORE_MACHINE), 0U);
    EXPECT_THAT(entries("machine"), ElementsAre("orvane-machine-app.desktop"));
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(AutostartStore, OtherKeysHaveNone) {
    EXPECT_EQ(set(u"App", u"x", ORVANE_STORE_USER, kRun + u"Once"), 0U);
    EXPECT_EQ(set(u"App", u"x", ORVANE_STORE_USER, kRun + u"\\Sub"), 0U);
    EXPECT_EQ(set(u"App", u"x", ORVANE_STORE_USER, kRun.substr(1)), 0U);
    EXPECT_EQ(set(u"App", u"x", ORVANE_STORE_CLASSES), 0U);
    EXPECT_THAT(entries(), IsEmpty());
    EXPECT_THAT(fake.calls, ElementsAre("set", "set", "set", "set"));
}

TEST_F(AutostartStore, WriteInAnotherCaseReplacesTheEntry) {
    set(u"App", u"first");
    set(u"APP", u"second", ORVANE_STORE_USER, u"SOFTWARE\\microsoft\\Windows\\CURRENTVERSION\\run");
    EXPECT_THAT(entries(), ElementsAre("orvane-user-app.desktop"));
    EXPECT_THAT(entry("orvane-user-app.desktop"), HasSubstr("Exec=second\n"));
}

TEST_F(AutostartStore, TextEndsAtItsNul) {
    set(u"App", std::u16string(u"x y\0z\0", 6));
    EXPECT_THAT(entry("orvane-user-app.desktop"), HasSubstr("Exec=x y\n"));
}

TEST_F(AutostartStore, ExpandableTextCountsAsText) {
    set(u"App", u"x", ORVANE_STORE_USER, kRun, kRegExpandSz);
    EXPECT_THAT(entries(), ElementsAre("orvane-user-app.desktop"));
}

TEST_F(AutostartStore, BlankTextAndOtherTypesTakeTheEntryAway) {
    for (const std::uint32_t type : {kRegSz, kRegBinary, kRegDword}) {
        set(u"App", u"x");
        EXPECT_EQ(set(u"App", type == kRegSz ? u" \t" : u"xy", ORVANE_STORE_USER, kRun, type), 0U);
        EXPECT_THAT(entries(), IsEmpty()) << type;
    }
}

TEST_F(AutostartStore, DeletedValueHasNoEntry) {
    set(u"App", u"x");
    EXPECT_EQ(remove(u"app"), 0U);
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(AutostartStore, DeletingAValueThatIsNotThereTouchesNothing) {
    set(u"App", u"x");
    EXPECT_EQ(remove(u"Other"), kErrorFileNotFound);
    EXPECT_THAT(entries(), ElementsAre("orvane-user-app.desktop"));
}

TEST_F(AutostartStore, ValueWhoseEntryIsGoneCanBeDeleted) {
    set(u"App", u"x");
    fs::remove_all(folder("user"));
    EXPECT_EQ(remove(u"App"), 0U);
}

TEST_F(AutostartStore, EntryThatCannotBeWrittenRefusesTheValue) {
    blockEntries();
    EXPECT_NE(set(u"App", u"x"), 0U);
    EXPECT_THAT(fake.values, IsEmpty());
    EXPECT_THAT(fake.calls, ElementsAre("begin", "set", "rollback"));
}

TEST_F(AutostartStore, EntryThatCannotBeReplacedKeepsValueAndEntry) {
    set(u"App", u"first");
    const fs::path file = folder("user") / "orvane-user-app.desktop";
    fs::remove(file);
    fs::create_directory(file);
    EXPECT_NE(set(u"App", u"second"), 0U);
    EXPECT_EQ(fake.values.begin()->second, u"first");
    EXPECT_TRUE(fs::is_directory(file));
    EXPECT_THAT(entries(), ElementsAre("orvane-user-app.desktop")) << "nothing is left beside it";
}

TEST_F(AutostartStore, ValueThatCannotBeWrittenLeavesTheEntryAsItWas) {
    set(u"App", u"first");
    for (const char* failing : {"begin", "set", "commit"}) {
        fake.failing = failing;
        EXPECT_EQ(set(u"App", u"second"), kSomeFailure) << failing;
        EXPECT_EQ(set(u"New", u"new"), kSomeFailure) << failing;
        EXPECT_THAT(entries(), ElementsAre("orvane-user-app.desktop")) << failing;
        EXPECT_THAT(entry("orvane-user-app.desktop"), HasSubstr("Exec=first\n")) << failing;
        EXPECT_EQ(fake.values.begin()->second, u"first") << failing;
    }
}

TEST_F(AutostartStore, ValueThatCannotBeDeletedKeepsItsEntry) {
    set(u"App", u"first");
    for (const char* failing : {"begin", "claim", "deleteValue", "commit"}) {
        fake.failing = failing;
        EXPECT_EQ(remove(u"App"), kSomeFailure) << failing;
        EXPECT_THAT(entry("orvane-user-app.desktop"), HasSubstr("Exec=first\n")) << failing;
        EXPECT_EQ(fake.values.size(), 1U) << failing;
    }
}

TEST_F(AutostartStore, DeletingTheRunKeyOrAKeyAboveTakesItsEntriesAway) {
    struct Row {
        const char16_t* base;
        const char16_t* below;
        bool onlyEmpty;
    };
    const Row rows[] = {{u"", u"Software\\Microsoft\\Windows\\CurrentVersion\\Run", false},
                        {u"", u"Software\\Microsoft\\Windows\\CurrentVersion\\Run", true},
                        {u"Software\\Microsoft", u"Windows", false},
                        {u"", u"Software", false},
                        {u"", u"", false},
                        {u"Software\\Microsoft\\Windows\\CurrentVersion\\Run", u"", false}};
    for (const Row& row : rows) {
        set(u"A", u"x");
        set(u"B", u"y");
        set(u"A", u"z", ORVANE_STORE_MACHINE);
        EXPECT_EQ(removeTree(row.base, row.below, row.onlyEmpty), 0U);
        EXPECT_THAT(entries(), IsEmpty());
        EXPECT_THAT(entries("machine"), ElementsAre("orvane-machine-a.desktop"));
    }
}

TEST_F(AutostartStore, DeletingOtherKeysLeavesEntries) {
    set(u"A", u"x");
    fake.calls.clear();
    removeTree(u"Software", u"Micro");
    removeTree(u"Software\\Microsoft\\Windows\\CurrentVersion\\Run", u"Sub");
    removeTree(u"Software", u"Tarn Hollow");
    removeTree(u"Software\\Microsoft", u"Windows", /*onlyEmpty=*/true);
    EXPECT_THAT(fake.calls, ElementsAre("deleteTree", "deleteTree", "deleteTree", "deleteEmpty"));
    EXPECT_THAT(entries(), ElementsAre("orvane-user-a.desktop"));
}

TEST_F(AutostartStore, KeyThatCannotBeDeletedKeepsItsEntries) {
    set(u"A", u"x");
    set(u"B", u"y");
    for (const char* failing : {"begin", "claim", "open", "value", "deleteTree", "commit"}) {
        fake.failing = failing;
        EXPECT_EQ(removeTree(u"", u"Software"), kSomeFailure) << failing;
        EXPECT_EQ(entries().size(), 2U) << failing;
        EXPECT_EQ(fake.values.size(), 2U) << failing;
    }
}

/// Between the list and the deletion another process could add a value.
TEST_F(AutostartStore, ValuesAreListedWhenNobodyElseCanAddOne) {
    set(u"A", u"x");
    fake.calls.clear();
    EXPECT_EQ(removeTree(u"", u"Software"), 0U);
    EXPECT_THAT(fake.calls,
                ElementsAre("begin", "claim", "open", "value", "value", "deleteTree", "commit"));
}

TEST_F(AutostartStore, EntryThatAUserChangedComesBackAsItWas) {
    set(u"App", u"first");
    std::ofstream(folder("user") / "orvane-user-app.desktop", std::ios::app) << "Hidden=true\n";
    const std::string changed = entry("orvane-user-app.desktop");
    fake.failing = "commit";
    EXPECT_EQ(remove(u"App"), kSomeFailure);
    EXPECT_EQ(entry("orvane-user-app.desktop"), changed);
    EXPECT_EQ(set(u"App", u"second"), kSomeFailure);
    EXPECT_EQ(entry("orvane-user-app.desktop"), changed);
    EXPECT_THAT(entries(), ElementsAre("orvane-user-app.desktop"));
}

TEST_F(AutostartStore, EntryIsOutOfItsPlaceUntilTheCommitAndThenGone) {
    set(u"App", u"first");
    fake.beforeCommit = [&] {
        EXPECT_THAT(entries(), ElementsAre("orvane-user-app.desktop.former"));
    };
    EXPECT_EQ(remove(u"App"), 0U);
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(AutostartStore, DirectoryInThePlaceOfAnEntryKeepsTheValue) {
    set(u"App", u"first");
    fs::remove(folder("user") / "orvane-user-app.desktop");
    fs::create_directory(folder("user") / "orvane-user-app.desktop");
    EXPECT_NE(remove(u"App"), 0U);
    EXPECT_EQ(fake.values.size(), 1U);
    EXPECT_THAT(entries(), ElementsAre("orvane-user-app.desktop"));
}

TEST_F(AutostartStore, EntryChangedTwiceInATransactionComesBackAsItWas) {
    set(u"App", u"first");
    theStore()->begin();
    set(u"App", u"second");
    remove(u"App");
    set(u"App", u"third");
    fake.failing = "commit";
    EXPECT_EQ(commit(), kSomeFailure);
    EXPECT_THAT(entries(), ElementsAre("orvane-user-app.desktop"));
    EXPECT_THAT(entry("orvane-user-app.desktop"), HasSubstr("Exec=first\n"));
}

// What a process leaves that is killed in the moment of its commit. The fake's values of the parent
// are those that last.

struct KilledAutostartStore : AutostartStore {
    template <class Body>
    void killedAtItsCommit(Body&& body) {
        const pid_t child = ::fork();
        if (child == 0) {
            fake.beforeCommit = [] { ::raise(SIGKILL); };
            body();
            ::_exit(0);
        }
        int status = 0;
        ASSERT_EQ(::waitpid(child, &status, 0), child);
        ASSERT_TRUE(WIFSIGNALED(status));
    }
    /// What was stored when the process was killed after its commit.
    static void storeApp(const char16_t* line) {
        for (auto& [where, text] : fake.values) {
            if (where.second.ends_with(u"APP")) text = line;
        }
    }
};

TEST_F(KilledAutostartStore, EntryWithoutItsValueGoesWithTheNextDeletion) {
    killedAtItsCommit([&] { set(u"App", u"x"); });
    EXPECT_THAT(entries(), ElementsAre("orvane-user-app.desktop"));
    EXPECT_EQ(remove(u"App"), kErrorFileNotFound);
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(KilledAutostartStore, EntryWithoutItsValueIsReplacedByTheNextWrite) {
    killedAtItsCommit([&] { set(u"App", u"x"); });
    EXPECT_EQ(set(u"App", u"y"), 0U);
    EXPECT_THAT(entries(), ElementsAre("orvane-user-app.desktop"));
    EXPECT_THAT(entry("orvane-user-app.desktop"), HasSubstr("Exec=y\n"));
}

TEST_F(KilledAutostartStore, EntryWithoutItsValueGoesWithATransaction) {
    killedAtItsCommit([&] { set(u"App", u"x"); });
    theStore()->begin();
    EXPECT_EQ(remove(u"App"), kErrorFileNotFound);
    EXPECT_THAT(entries(), ElementsAre("orvane-user-app.desktop"));
    EXPECT_EQ(commit(), 0U);
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(KilledAutostartStore, EntryOfAValueThatWasNotDeletedComesBack) {
    set(u"App", u"x");
    killedAtItsCommit([&] { remove(u"App"); });
    EXPECT_THAT(entries(), ElementsAre("orvane-user-app.desktop.former"));
    EXPECT_EQ(set(u"Other", u"y"), 0U);
    EXPECT_THAT(entries(), ElementsAre("orvane-user-app.desktop", "orvane-user-other.desktop"));
    EXPECT_THAT(entry("orvane-user-app.desktop"), HasSubstr("Exec=x\n"));
}

TEST_F(KilledAutostartStore, ValueThatWasNotDeletedCanBeWrittenAndDeleted) {
    set(u"App", u"x");
    killedAtItsCommit([&] { remove(u"App"); });
    EXPECT_EQ(set(u"App", u"y"), 0U);
    EXPECT_THAT(entries(), ElementsAre("orvane-user-app.desktop"));
    killedAtItsCommit([&] { remove(u"App"); });
    EXPECT_EQ(remove(u"App"), 0U);
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(KilledAutostartStore, EntryOfAValueThatWasNotReplacedComesBack) {
    set(u"App", u"first");
    killedAtItsCommit([&] { set(u"App", u"second"); });
    EXPECT_THAT(entries(),
                ElementsAre("orvane-user-app.desktop", "orvane-user-app.desktop.former"));
    EXPECT_EQ(set(u"Other", u"y"), 0U);
    EXPECT_THAT(entries(), ElementsAre("orvane-user-app.desktop", "orvane-user-other.desktop"));
    EXPECT_THAT(entry("orvane-user-app.desktop"), HasSubstr("Exec=first\n"));
}

TEST_F(KilledAutostartStore, WhatACommittedChangeLeftIsClearedUp) {
    set(u"App", u"first");
    killedAtItsCommit([&] { set(u"App", u"second"); });
    storeApp(u"second");
    EXPECT_EQ(set(u"Other", u"y"), 0U);
    EXPECT_THAT(entries(), ElementsAre("orvane-user-app.desktop", "orvane-user-other.desktop"));
    EXPECT_THAT(entry("orvane-user-app.desktop"), HasSubstr("Exec=second\n"));
    killedAtItsCommit([&] { set(u"App", u"third"); });
    storeApp(u"fourth");
    EXPECT_EQ(set(u"Other", u"y"), 0U);
    EXPECT_THAT(entries(), ElementsAre("orvane-user-app.desktop", "orvane-user-other.desktop"));
    EXPECT_THAT(entry("orvane-user-app.desktop"), HasSubstr("Exec=fourth\n"));
    killedAtItsCommit([&] { remove(u"App"); });
    std::erase_if(fake.values,
                  [](const auto& value) { return value.first.second.ends_with(u"APP"); });
    std::ofstream(folder("user") / "orvane-user-app.desktop.new") << "half";
    EXPECT_EQ(remove(u"Other"), 0U);
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(KilledAutostartStore, FilesOfOthersStay) {
    fs::create_directories(folder("user"));
    for (const char* name :
         {"app.desktop.former", "app.desktop.new", "orvane-machine-a.desktop.new"})
        std::ofstream(folder("user") / name) << "theirs";
    EXPECT_EQ(set(u"A", u"x"), 0U);
    EXPECT_EQ(remove(u"A"), 0U);
    EXPECT_EQ(entries().size(), 3U);
}

TEST_F(AutostartStore, EntriesOfATransactionWaitForItsCommit) {
    ASSERT_EQ(theStore()->begin(), 0U);
    EXPECT_EQ(set(u"A", u"x"), 0U);
    EXPECT_EQ(set(u"B", u"y"), 0U);
    EXPECT_EQ(remove(u"B"), 0U);
    EXPECT_THAT(entries(), IsEmpty());
    EXPECT_EQ(commit(), 0U);
    EXPECT_THAT(entries(), ElementsAre("orvane-user-a.desktop"));
    EXPECT_THAT(fake.calls, ElementsAre("begin", "set", "set", "claim", "deleteValue", "commit"));
}

TEST_F(AutostartStore, EntriesOfARolledBackTransactionAreNotMade) {
    theStore()->begin();
    set(u"A", u"x");
    EXPECT_EQ(theStore()->rollback(), 0U);
    EXPECT_EQ(set(u"B", u"y"), 0U);
    EXPECT_THAT(entries(), ElementsAre("orvane-user-b.desktop"));
}

TEST_F(AutostartStore, EntriesOfATransactionGoWithItsThread) {
    std::thread([&] {
        EXPECT_EQ(theStore()->begin(), 0U);
        EXPECT_EQ(set(u"A", u"x"), 0U);
    }).join();
    EXPECT_EQ(set(u"B", u"y"), 0U);
    std::thread([&] { EXPECT_EQ(set(u"C", u"z"), 0U); }).join();
    EXPECT_THAT(entries(), ElementsAre("orvane-user-b.desktop", "orvane-user-c.desktop"));
}

TEST_F(AutostartStore, CommitWhoseEntriesCannotBeMadeUndoesAll) {
    set(u"A", u"old");
    theStore()->begin();
    set(u"A", u"new");
    set(u"B", u"y");
    set(u"C", u"z", ORVANE_STORE_MACHINE);
    blockEntries("machine");
    EXPECT_NE(commit(), 0U);
    EXPECT_EQ(fake.values.size(), 1U);
    EXPECT_THAT(entries(), ElementsAre("orvane-user-a.desktop"));
    EXPECT_THAT(entry("orvane-user-a.desktop"), HasSubstr("Exec=old\n"));
}

TEST_F(AutostartStore, FailedCommitUndoesItsEntries) {
    set(u"A", u"old");
    theStore()->begin();
    set(u"A", u"new");
    set(u"B", u"y");
    fake.failing = "commit";
    EXPECT_EQ(commit(), kSomeFailure);
    EXPECT_THAT(entries(), ElementsAre("orvane-user-a.desktop"));
    EXPECT_THAT(entry("orvane-user-a.desktop"), HasSubstr("Exec=old\n"));
}

TEST_F(AutostartStore, EntriesOfTheRootThatWasCommittedStay) {
    set(u"A", u"old");
    set(u"A", u"old", ORVANE_STORE_MACHINE);
    theStore()->begin();
    set(u"A", u"new");
    set(u"B", u"new");
    set(u"A", u"new", ORVANE_STORE_MACHINE);
    set(u"B", u"new", ORVANE_STORE_MACHINE);
    fake.failing = "commit of the user's";
    EXPECT_EQ(commit(), kSomeFailure);
    EXPECT_THAT(entries(), ElementsAre("orvane-user-a.desktop"));
    EXPECT_THAT(entry("orvane-user-a.desktop"), HasSubstr("Exec=old\n"));
    EXPECT_THAT(entries("machine"),
                ElementsAre("orvane-machine-a.desktop", "orvane-machine-b.desktop"));
    EXPECT_THAT(entry("orvane-machine-a.desktop", "machine"), HasSubstr("Exec=new\n"));
}

TEST_F(AutostartStore, ValueThatFailsInATransactionHasNoEntry) {
    theStore()->begin();
    fake.failing = "set";
    EXPECT_EQ(set(u"A", u"x"), kSomeFailure);
    fake.failing.clear();
    EXPECT_EQ(commit(), 0U);
    EXPECT_THAT(entries(), IsEmpty());
}

TEST_F(AutostartStore, EntryGoesToTheUsersConfigurationFolder) {
    ::unsetenv("ORVANE_REGISTRY_USER");
    ::setenv("XDG_CONFIG_HOME", (folder_.path() / "config").c_str(), 1);
    EXPECT_EQ(set(u"A", u"x"), 0U);
    EXPECT_TRUE(fs::exists(folder_.path() / "config/autostart/orvane-user-a.desktop"));
    struct stat facts {};
    EXPECT_EQ(::stat((folder_.path() / "config").c_str(), &facts), 0);
    EXPECT_EQ(facts.st_mode & 07777U, 0700U);
    ::unsetenv("XDG_CONFIG_HOME");
}

TEST_F(AutostartStore, MaskOfTheFirstWriterChangesNobodysRights) {
    const mode_t former = ::umask(0077);
    EXPECT_EQ(set(u"A", u"x"), 0U);
    EXPECT_EQ(set(u"A", u"x", ORVANE_STORE_MACHINE), 0U);
    ::umask(former);
    const auto modeOf = [](const fs::path& path) {
        struct stat facts {};
        EXPECT_EQ(::stat(path.c_str(), &facts), 0) << path;
        return facts.st_mode & 07777U;
    };
    EXPECT_EQ(modeOf(folder("user")), 0700U);
    EXPECT_EQ(modeOf(folder("machine")), 0755U);
    EXPECT_EQ(modeOf(folder("machine") / "orvane-machine-a.desktop"), 0644U);
}

TEST_F(AutostartStore, EntryOfATestsFolderThatIsMissingMakesIt) {
    fs::remove_all(folder_.path() / "machine");
    EXPECT_EQ(set(u"A", u"x", ORVANE_STORE_MACHINE), 0U);
    EXPECT_THAT(entries("machine"), ElementsAre("orvane-machine-a.desktop"));
}

}  // namespace
}  // namespace orvane::platform::autostart
