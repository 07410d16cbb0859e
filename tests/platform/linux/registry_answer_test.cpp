// Two calls that belong together are of one moment, whatever other processes do between them.

#include "registry_fixture.h"

#include <thread>

namespace orvane::platform {
namespace {

using testing::ElementsAre;

struct RegistryAnswerLinux : RegistryStoreLinux {
    void SetUp() override {
        RegistryStoreLinux::SetUp();
        EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "fifty bytes or so"), 0u);
        EXPECT_EQ(number(advapi32.RegOpenKeyExA(kHkeyCurrentUser, "a", 0, 11, key_)), 0u);
    }
    void TearDown() override { EXPECT_EQ(number(advapi32.RegCloseKey(key_)), 0u); }

    static void inAnotherProcess(const std::function<void()>& body) {
        EXPECT_EQ(inChild([&] {
                      body();
                      return testing::Test::HasFailure() ? 1 : 0;
                  }),
                  0);
    }
    static void writeElsewhere(std::string_view data) {
        inAnotherProcess([&] { EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", data), 0u); });
    }

    std::uint32_t askSize(const std::string& name = "v") {
        std::uint32_t type = 0;
        size_ = 0;
        EXPECT_EQ(number(advapi32.RegQueryValueExA(key_, name, type, nullptr, size_)), 0u);
        return size_;
    }
    /// The data of a value in a buffer of the size that was asked last.
    std::string askData(const std::string& name = "v") {
        std::string data(size_, '\0');
        std::uint32_t type = 0;
        std::uint32_t size = size_;
        const ResultCode code = advapi32.RegQueryValueExA(
            key_, name, type, reinterpret_cast<std::uint8_t*>(data.data()), size);
        if (code != ResultCode::success) return "(" + std::to_string(number(code)) + ")";
        EXPECT_EQ(type, kRegBinary);
        data.resize(size);
        return data;
    }
    std::string nameAt(std::uint32_t index, bool ofValue = false) const {
        std::array<char, 300> name{};
        auto size = static_cast<std::uint32_t>(name.size());
        const ResultCode code = ofValue ? advapi32.RegEnumValueA(key_, index, name.data(), size)
                                        : advapi32.RegEnumKeyA(key_, index, name);
        if (code != ResultCode::success) return "(" + std::to_string(number(code)) + ")";
        return name.data();
    }

    RegistryKey key_{};
    std::uint32_t size_ = 0;
};

TEST_F(RegistryAnswerLinux, ValueThatShrinksBetweenSizeAndDataIsTheFormerOne) {
    EXPECT_EQ(askSize(), 17u);
    writeElsewhere("new");
    EXPECT_EQ(askData(), "fifty bytes or so");
    EXPECT_EQ(askSize(), 3u);
    EXPECT_EQ(askData(), "new");
}

TEST_F(RegistryAnswerLinux, ValueThatGrowsBetweenSizeAndDataIsTheFormerOne) {
    EXPECT_EQ(askSize(), 17u);
    writeElsewhere(std::string(200, 'n'));
    EXPECT_EQ(askData(), "fifty bytes or so");
}

TEST_F(RegistryAnswerLinux, ValueThatIsDeletedBetweenSizeAndDataIsTheFormerOne) {
    EXPECT_EQ(askSize("V"), 17u);
    inAnotherProcess([] { EXPECT_EQ(number(shlwapi.SHDeleteKeyA(kHkeyCurrentUser, "a")), 0u); });
    EXPECT_EQ(askData("v"), "fifty bytes or so");
    EXPECT_EQ(askData("v"), "(1018)");
}

TEST_F(RegistryAnswerLinux, TextThatGrowsBetweenSizeAndDataIsTheFormerOne) {
    EXPECT_EQ(number(advapi32.RegSetValueExA(key_, "t", kRegSz, bytes({"old\0", 4}))), 0u);
    EXPECT_EQ(askSize("t"), 4u);
    inAnotherProcess([] {
        RegistryKey key{};
        EXPECT_EQ(number(advapi32.RegOpenKeyExA(kHkeyCurrentUser, "a", 0, 2, key)), 0u);
        EXPECT_EQ(number(advapi32.RegSetValueExA(key, "t", kRegSz, bytes({"longer\0", 7}))), 0u);
    });
    std::array<char, 4> data{};
    std::uint32_t type = 0;
    EXPECT_EQ(number(advapi32.RegQueryValueExA(
                  key_, "t", type, reinterpret_cast<std::uint8_t*>(data.data()), size_)),
              0u);
    EXPECT_EQ(type, kRegSz);
    EXPECT_STREQ(data.data(), "old");
}

TEST_F(RegistryAnswerLinux, ThreadSeesItsOwnWriteAtOnce) {
    EXPECT_EQ(askSize(), 17u);
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "short"), 0u);
    EXPECT_EQ(askData(), "short");
    EXPECT_EQ(askSize(), 5u);
    EXPECT_EQ(number(advapi32.RegDeleteValueA(key_, "v")), 0u);
    EXPECT_EQ(askData(), "(2)");
}

TEST_F(RegistryAnswerLinux, WriteOfAnotherThreadDoesNotComeBetween) {
    EXPECT_EQ(askSize(), 17u);
    std::thread([] { EXPECT_EQ(write(kHkeyCurrentUser, "a", "v", "short"), 0u); }).join();
    EXPECT_EQ(askData(), "fifty bytes or so");
    EXPECT_EQ(askData(), "short");
}

TEST_F(RegistryAnswerLinux, AnotherUseOfTheHandleEndsIt) {
    EXPECT_EQ(write(kHkeyCurrentUser, "a", "other", std::string(100, 'o')), 0u);
    const std::function<void()> uses[] = {
        [&] { askData("other"); }, [&] { nameAt(0); }, [&] { nameAt(0, true); },
        [&] {
            KeyInformation information;
            EXPECT_EQ(number(advapi32.RegQueryInfoKeyA(key_, information)), 0u);
        },
        [&] { EXPECT_EQ(read(key_, "none", "v"), "(2)"); }};
    for (const auto& use : uses) {
        writeElsewhere("fifty bytes or so");
        size_ = askSize();
        writeElsewhere("new");
        use();
        EXPECT_EQ(askData(), "new");
    }
}

TEST_F(RegistryAnswerLinux, DataWithoutAQuestionBeforeIsOfNow) {
    EXPECT_EQ(askSize(), 17u);
    EXPECT_EQ(askData(), "fifty bytes or so");
    writeElsewhere("new");
    EXPECT_EQ(askData(), "new");
}

TEST_F(RegistryAnswerLinux, NamesAreThoseThatWereCounted) {
    for (const char* name : {"one", "two", "three"}) {
        EXPECT_EQ(write(kHkeyCurrentUser, std::string("a\\") + name, "", "x"), 0u);
        EXPECT_EQ(write(kHkeyCurrentUser, "a", name, "x"), 0u);
    }
    KeyInformation information;
    EXPECT_EQ(number(advapi32.RegQueryInfoKeyA(key_, information)), 0u);
    EXPECT_EQ(information.subKeys, 3u);
    EXPECT_EQ(information.values, 4u);
    EXPECT_EQ(nameAt(0), "one");
    EXPECT_EQ(nameAt(0, true), "v");
    inAnotherProcess([] {
        EXPECT_EQ(number(shlwapi.SHDeleteKeyA(kHkeyCurrentUser, "a\\one")), 0u);
        EXPECT_EQ(write(kHkeyCurrentUser, "a\\a longer name", "v", "x"), 0u);
        EXPECT_EQ(write(kHkeyCurrentUser, "a", "a longer name", "x"), 0u);
    });
    EXPECT_EQ(nameAt(1), "two");
    EXPECT_EQ(nameAt(2), "three");
    EXPECT_EQ(nameAt(3), "(259)");
    EXPECT_EQ(nameAt(1, true), "one");
    EXPECT_EQ(nameAt(2, true), "two");
    EXPECT_EQ(nameAt(3, true), "three");
    EXPECT_EQ(nameAt(4, true), "(259)");
    // From here on nobody goes on with that walk.
    EXPECT_EQ(nameAt(0), "two");
    EXPECT_EQ(nameAt(2), "a longer name");
}

TEST_F(RegistryAnswerLinux, WalkThatDeletesSeesWhatItDeleted) {
    for (const char* name : {"one", "two"})
        EXPECT_EQ(write(kHkeyCurrentUser, std::string("a\\") + name, "", "x"), 0u);
    KeyInformation information;
    EXPECT_EQ(number(advapi32.RegQueryInfoKeyA(key_, information)), 0u);
    EXPECT_EQ(nameAt(0), "one");
    EXPECT_EQ(number(shlwapi.SHDeleteKeyA(key_, "one")), 0u);
    EXPECT_EQ(nameAt(0), "two");
    EXPECT_EQ(number(shlwapi.SHDeleteKeyA(key_, "two")), 0u);
    EXPECT_EQ(nameAt(0), "(259)");
}

TEST_F(RegistryAnswerLinux, KeyWithoutTheRightToItsSubKeysTellsItsValuesOnly) {
    EXPECT_EQ(number(advapi32.RegCloseKey(key_)), 0u);
    EXPECT_EQ(number(advapi32.RegOpenKeyExA(kHkeyCurrentUser, "a", 0, kKeyQueryValue, key_)), 0u);
    KeyInformation information;
    EXPECT_EQ(number(advapi32.RegQueryInfoKeyA(key_, information)), 0u);
    EXPECT_EQ(nameAt(0), "(5)");
    EXPECT_EQ(nameAt(0, true), "v");
}

}  // namespace
}  // namespace orvane::platform
