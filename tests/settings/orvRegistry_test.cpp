#include "settings/orvRegistry.h"

#include "frame/values/codepage.h"
#include "platform/advapi32.h"
#include "platform/shlwapi.h"
#include "support/raised_error.h"
#include "support/registry_store.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvane {
namespace {

using namespace std::literals;
using automation::CollectionObject;
using enum RegistryRoot_Const;
using enum RegistryType_Const;
using platform::advapi32;
using platform::KeyDisposition;
using platform::RegistryKey;
using test::raisedBy;
using testing::ElementsAre;

std::vector<std::u16string> texts(const Ref<CollectionObject>& names) {
    std::vector<std::u16string> result;
    for (std::int32_t place = 1; place <= names->items().count(); ++place)
        result.push_back(names->items().item(place).as<WString>()->units());
    return result;
}

Array<std::uint8_t> byteArray(std::int32_t lower, std::initializer_list<std::uint8_t> bytes) {
    Array<std::uint8_t> array(lower, lower + static_cast<std::int32_t>(bytes.size()) - 1);
    std::ranges::copy(bytes, array.elements().begin());
    return array;
}

struct OrvRegistry : test::RegistryTest {
    Ref<orvRegistry> registry = make<orvRegistry>();
    std::u16string path = fromAnsi(store_.key()).units();
    bool success = false;
    bool existed = false;

    Variant get(const char16_t* name, RegistryType_Const type = rtString) {
        return registry->GetValue(currentUser, path, name, type, success);
    }
    bool set(const char16_t* name, RegistryType_Const type, const Variant& value) {
        return registry->SetValue(currentUser, path, name, type, value, existed);
    }
    /// Writes a value as other programs do, and gives a whole question's answer.
    void store(const std::string& name, std::uint32_t type, std::string_view data) const {
        RegistryKey key{};
        KeyDisposition done{};
        ASSERT_EQ(
            advapi32.RegCreateKeyExA(platform::kHkeyCurrentUser, store_.key(), 0, 2, key, done),
            platform::ResultCode::success);
        const std::vector<std::uint8_t> bytes(data.begin(), data.end());
        EXPECT_EQ(advapi32.RegSetValueExA(key, name, type, bytes), platform::ResultCode::success);
        advapi32.RegCloseKey(key);
    }
    struct Stored {
        std::uint32_t type = 77;
        std::string data{};
        bool operator==(const Stored&) const = default;
        friend void PrintTo(const Stored& stored, std::ostream* out) {
            *out << "type " << stored.type << " " << testing::PrintToString(stored.data);
        }
    };
    Stored stored(const std::string& name) const {
        RegistryKey key{};
        Stored found;
        std::vector<std::uint8_t> data(1000);
        std::uint32_t size = 1000;
        if (advapi32.RegOpenKeyExA(platform::kHkeyCurrentUser, store_.key(), 0, 1, key) !=
            platform::ResultCode::success) {
            return found;
        }
        if (advapi32.RegQueryValueExA(key, name, found.type, data.data(), size) ==
            platform::ResultCode::success) {
            found.data.assign(data.begin(), data.begin() + static_cast<int>(size));
        }
        advapi32.RegCloseKey(key);
        return found;
    }
};

TEST_F(OrvRegistry, MissingValueUnderAnExistingKeyIsTypedAndTellsNotFound) {
    registry->CreateKey(currentUser, path, existed);
    success = true;
    const Variant number = get(u"none", rtLong);
    EXPECT_EQ(registry->LastRegError(), 2);
    EXPECT_FALSE(success);
    ASSERT_NE(number.as<std::int32_t>(), nullptr);
    EXPECT_EQ(*number.as<std::int32_t>(), 0);
    const Variant text = get(u"none", rtString);
    ASSERT_NE(text.as<WString>(), nullptr);
    EXPECT_EQ(*text.as<WString>(), u"");
    const Variant answer = get(u"none", rtBoolean);
    ASSERT_NE(answer.as<bool>(), nullptr);
    EXPECT_FALSE(*answer.as<bool>());
    const Variant bytes = get(u"none", rtBinary);
    ASSERT_NE(bytes.asArray<std::uint8_t>(), nullptr);
    EXPECT_FALSE(bytes.asArray<std::uint8_t>()->isAllocated());
}

TEST_F(OrvRegistry, MissingKeyGivesTheEmptyValueToo) {
    success = true;
    EXPECT_EQ(*get(u"none", rtLong).as<std::int32_t>(), 0);
    EXPECT_FALSE(success);
    EXPECT_EQ(registry->LastRegError(), 2);
}

TEST_F(OrvRegistry, StringWithAnEmbeddedNulReadsUpToTheNul) {
    store("cut", 1, "before\0after\0"s);
    EXPECT_EQ(*get(u"cut").as<WString>(), u"before");
    EXPECT_TRUE(success);
    EXPECT_TRUE(set(u"own", rtString, WString(u"ab\0cd"s)));
    EXPECT_EQ(stored("own"), (Stored{1, "ab\0cd\0"s}));
    EXPECT_EQ(*get(u"own").as<WString>(), u"ab");
}

TEST_F(OrvRegistry, LongIsNotMadeOfAText) {
    existed = true;
    EXPECT_FALSE(set(u"v", rtLong, u"5"));
    EXPECT_TRUE(existed);
    EXPECT_FALSE(registry->IsKeyExist(currentUser, path));
}

TEST_F(OrvRegistry, IntegerIsStoredAsFourBytes) {
    EXPECT_TRUE(set(u"v", rtLong, std::int16_t{5}));
    EXPECT_EQ(stored("v"), (Stored{4, "\5\0\0\0"s}));
    EXPECT_TRUE(set(u"v", rtLong, std::int16_t{-2}));
    EXPECT_EQ(stored("v"), (Stored{4, "\xFE\xFF\xFF\xFF"s}));
    EXPECT_TRUE(set(u"v", rtLong, std::uint8_t{200}));
    EXPECT_EQ(stored("v"), (Stored{4, "\xC8\0\0\0"s}));
    EXPECT_EQ(*get(u"v", rtLong).as<std::int32_t>(), 200);
}

TEST_F(OrvRegistry, BooleanIsStoredAsItsEnglishText) {
    EXPECT_TRUE(set(u"v", rtBoolean, true));
    EXPECT_EQ(stored("v"), (Stored{1, "True\0"s}));
    EXPECT_TRUE(*get(u"v", rtBoolean).as<bool>());
    EXPECT_TRUE(set(u"v", rtBoolean, false));
    EXPECT_EQ(stored("v"), (Stored{1, "False\0"s}));
    EXPECT_FALSE(*get(u"v", rtBoolean).as<bool>());
    EXPECT_TRUE(success);
}

TEST_F(OrvRegistry, TextsThatReadAsTrue) {
    for (const char* text : {"true", " 1 ", "1", "TRUE", "\t True\r\n"}) {
        store("v", 1, text);
        EXPECT_TRUE(*get(u"v", rtBoolean).as<bool>()) << text;
    }
    for (const char* text : {"Yes", "0", "-1", "11", "True.", " "}) {
        store("v", 1, text);
        EXPECT_FALSE(*get(u"v", rtBoolean).as<bool>()) << text;
        EXPECT_TRUE(success);
    }
}

TEST_F(OrvRegistry, TypeOutOfRangeReadsAsEmptyAndTouchesNothing) {
    EXPECT_TRUE(set(u"v", rtString, u"x"));
    registry->IsKeyExist(currentUser, path + u"\\none");
    ASSERT_EQ(registry->LastRegError(), 2);
    for (const int type : {7, 4, -1}) {
        success = true;
        const Variant value = get(u"v", static_cast<RegistryType_Const>(type));
        EXPECT_EQ(value.type(), VarType::Empty);
        EXPECT_FALSE(success);
        EXPECT_EQ(registry->LastRegError(), 2);
        EXPECT_FALSE(set(u"v", static_cast<RegistryType_Const>(type), u"y"));
        EXPECT_EQ(registry->LastRegError(), 2);
    }
    EXPECT_EQ(*get(u"v").as<WString>(), u"x");
}

TEST_F(OrvRegistry, KeyAlreadyExistStaysAsItWasWhenTheKeyCantBeMade) {
    for (const bool given : {false, true}) {
        existed = given;
        EXPECT_FALSE(registry->SetValue(currentUser, u"\\" + path, u"", rtString, u"", existed));
        EXPECT_EQ(existed, given);
        EXPECT_FALSE(registry->CreateKey(currentUser, u"\\" + path, existed));
        EXPECT_EQ(existed, given);
        EXPECT_EQ(registry->LastRegError(), 161);
    }
}

TEST_F(OrvRegistry, NamesOfAMissingKeyAreNothing) {
    EXPECT_FALSE(registry->GetSubKeysNames(currentUser, path));
    EXPECT_EQ(registry->LastRegError(), 2);
    EXPECT_FALSE(registry->GetValuesNames(currentUser, path));
    EXPECT_EQ(registry->LastRegError(), 2);
}

TEST_F(OrvRegistry, NamesOfAnEmptyKeyAreAnEmptyCollection) {
    EXPECT_TRUE(registry->CreateKey(currentUser, path, existed));
    const auto keys = registry->GetSubKeysNames(currentUser, path);
    ASSERT_TRUE(keys);
    EXPECT_EQ(keys->Count(), 0);
    const auto values = registry->GetValuesNames(currentUser, path);
    ASSERT_TRUE(values);
    EXPECT_EQ(values->Count(), 0);
    EXPECT_EQ(registry->LastRegError(), 0);
}

TEST_F(OrvRegistry, NamesComeAsTheyWereSpelled) {
    for (const char16_t* name : {u"Alpha", u"\u0411\u0443\u043a\u0432\u044b"}) {
        registry->CreateKey(currentUser, path + u"\\" + name + u"\\below", existed);
        EXPECT_TRUE(set(name, rtString, u"x"));
    }
    EXPECT_TRUE(set(u"", rtString, u"default"));
    EXPECT_THAT(texts(registry->GetSubKeysNames(currentUser, path)),
                ElementsAre(u"Alpha", u"\u0411\u0443\u043a\u0432\u044b"));
    EXPECT_THAT(texts(registry->GetValuesNames(currentUser, path)),
                testing::UnorderedElementsAre(u"Alpha", u"\u0411\u0443\u043a\u0432\u044b", u""));
}

TEST_F(OrvRegistry, CreateTellsWhetherTheKeyWasThere) {
    existed = true;
    EXPECT_TRUE(registry->CreateKey(currentUser, path + u"\\a\\b", existed));
    EXPECT_FALSE(existed);
    EXPECT_TRUE(registry->CreateKey(currentUser, path + u"\\a\\b", existed));
    EXPECT_TRUE(existed);
    EXPECT_TRUE(set(u"v", rtString, u"x"));
    EXPECT_TRUE(existed);
    EXPECT_TRUE(registry->SetValue(currentUser, path + u"\\new", u"v", rtString, u"x", existed));
    EXPECT_FALSE(existed);
    EXPECT_TRUE(registry->IsKeyExist(currentUser, path + u"\\A\\B"));
    EXPECT_FALSE(registry->IsKeyExist(currentUser, path + u"\\a\\c"));
    EXPECT_EQ(registry->LastRegError(), 2);
}

TEST_F(OrvRegistry, OnlyValuesOfTheTypeAreTaken) {
    const Variant bytes = byteArray(0, {1});
    const std::vector<std::pair<Variant, int>> kRows = {{u"text", 1},
                                                        {std::int32_t{1}, 2},
                                                        {std::int16_t{1}, 2},
                                                        {std::uint8_t{1}, 2},
                                                        {bytes, 4},
                                                        {true, 8},
                                                        {1.0, 0},
                                                        {1.0f, 0},
                                                        {Variant(), 0},
                                                        {Variant::null(), 0},
                                                        {Variant::missing(), 0},
                                                        {Object(), 0},
                                                        {Variant(Array<std::int32_t>(0, 1)), 0},
                                                        {Date{1}, 0},
                                                        {Currency{1}, 0}};
    for (const auto& [value, takers] : kRows) {
        for (int type = 0; type < 4; ++type) {
            EXPECT_EQ(set(u"v", static_cast<RegistryType_Const>(type), value),
                      (takers >> type & 1) != 0)
                << "value type " << static_cast<int>(value.type()) << ", type " << type;
        }
    }
}

TEST_F(OrvRegistry, ValueThatComesByReferenceIsReadThrough) {
    Variant variable(std::int16_t{7});
    EXPECT_TRUE(set(u"v", rtLong, Variant::reference(variable)));
    EXPECT_EQ(variable.type(), VarType::Integer);
    EXPECT_EQ(*get(u"v", rtLong).as<std::int32_t>(), 7);
}

TEST_F(OrvRegistry, BinaryKeepsItsBytesWhateverTheBounds) {
    EXPECT_TRUE(set(u"v", rtBinary, byteArray(5, {0, 1, 0xFF, 0x80})));
    EXPECT_EQ(stored("v"), (Stored{3, "\0\1\xFF\x80"s}));
    const Variant read = get(u"v", rtBinary);
    const auto* array = read.asArray<std::uint8_t>();
    ASSERT_NE(array, nullptr);
    EXPECT_EQ(array->lowerBound(), 0);
    EXPECT_EQ(array->upperBound(), 3);
    EXPECT_THAT(array->elements(), ElementsAre(0, 1, 0xFF, 0x80));
}

TEST_F(OrvRegistry, EmptyArrayIsStoredAsNoBytes) {
    EXPECT_TRUE(set(u"v", rtBinary, Array<std::uint8_t>::empty()));
    EXPECT_EQ(stored("v"), (Stored{3, ""}));
}

TEST_F(OrvRegistry, ArrayWithoutBoundsRaisesAndStoresNothing) {
    EXPECT_EQ(raisedBy([&] { set(u"v", rtBinary, Array<std::uint8_t>()); }), 9);
    EXPECT_EQ(stored("v").type, 0u);
}

TEST_F(OrvRegistry, LongReadsTheFirstFourBytes) {
    const std::pair<std::string, std::int32_t> kRows[] = {
        {"\1\2\3\4", 0x04030201}, {"\xFF\xFF\xFF\xFF", -1},   {"\1", 1},
        {"\1\2", 0x0201},         {"\0\0\0\x80"s, INT32_MIN}, {"\1\2\3", 0x030201},
        {"\1\0\0\0\5\6"s, 1},
    };
    for (const auto& [data, expected] : kRows) {
        store("v", 3, data);
        EXPECT_EQ(*get(u"v", rtLong).as<std::int32_t>(), expected);
        EXPECT_TRUE(success);
    }
}

TEST_F(OrvRegistry, MixedTypesAreNotRepaired) {
    EXPECT_TRUE(set(u"v", rtLong, std::int32_t{1}));
    EXPECT_FALSE(*get(u"v", rtBoolean).as<bool>());
    EXPECT_EQ(*get(u"v", rtString).as<WString>(), u"\u0001");
    EXPECT_TRUE(set(u"v", rtString, u"12"));
    EXPECT_EQ(*get(u"v", rtLong).as<std::int32_t>(), 0x003231);
}

TEST_F(OrvRegistry, TextCrossesToAnsiAndBack) {
    EXPECT_TRUE(set(u"v", rtString, u"\u041F\u0440\u03A9"));
    EXPECT_EQ(stored("v"), (Stored{1, "\xCF\xF0?\0"s}));
    EXPECT_EQ(*get(u"v").as<WString>(), u"\u041F\u0440?");
    EXPECT_TRUE(set(u"v", rtString, u""));
    EXPECT_EQ(stored("v"), (Stored{1, "\0"s}));
    EXPECT_EQ(*get(u"v").as<WString>(), u"");
    EXPECT_TRUE(success);
}

TEST_F(OrvRegistry, DefaultValueHasAnEmptyName) {
    EXPECT_TRUE(set(u"", rtString, u"of the key"));
    EXPECT_EQ(*get(u"").as<WString>(), u"of the key");
    EXPECT_TRUE(registry->DeleteValue(currentUser, path, u""));
    EXPECT_FALSE(registry->DeleteValue(currentUser, path, u""));
    EXPECT_EQ(registry->LastRegError(), 2);
}

TEST_F(OrvRegistry, DeleteKeyRefusesAKeyWithSubKeys) {
    registry->CreateKey(currentUser, path + u"\\a\\b", existed);
    EXPECT_FALSE(registry->DeleteKey(currentUser, path + u"\\a"));
    EXPECT_EQ(registry->LastRegError(), 1020);
    EXPECT_TRUE(registry->IsKeyExist(currentUser, path + u"\\a\\b"));
    EXPECT_TRUE(registry->DeleteKey(currentUser, path + u"\\a\\b"));
    EXPECT_TRUE(registry->DeleteKey(currentUser, path + u"\\a"));
    EXPECT_FALSE(registry->DeleteKey(currentUser, path + u"\\a"));
    EXPECT_EQ(registry->LastRegError(), 2);
}

TEST_F(OrvRegistry, DeleteKeyRecurseRemovesTheSubtree) {
    registry->CreateKey(currentUser, path + u"\\a\\b\\c", existed);
    registry->CreateKey(currentUser, path + u"\\ab", existed);
    EXPECT_TRUE(registry->DeleteKeyRecurse(currentUser, path + u"\\a"));
    EXPECT_FALSE(registry->IsKeyExist(currentUser, path + u"\\a"));
    EXPECT_TRUE(registry->IsKeyExist(currentUser, path + u"\\ab"));
    EXPECT_FALSE(registry->DeleteKeyRecurse(currentUser, path + u"\\a"));
    EXPECT_EQ(registry->LastRegError(), 2);
}

TEST_F(OrvRegistry, RootsArePlacesOfTheirOwn) {
    EXPECT_TRUE(set(u"v", rtString, u"user"));
    EXPECT_FALSE(registry->IsKeyExist(localMachine, path));
    EXPECT_FALSE(registry->IsKeyExist(users, path));
    EXPECT_FALSE(registry->IsKeyExist(classesRoot, path));
    EXPECT_FALSE(registry->IsKeyExist(static_cast<RegistryRoot_Const>(0), path));
    EXPECT_EQ(registry->LastRegError(), 6);
}

TEST_F(OrvRegistry, EmptyValuesAreTyped) {
    success = true;
    EXPECT_EQ(*orvRegistry::GetEmptyValue(rtString, success).as<WString>(), u"");
    EXPECT_FALSE(success);
    EXPECT_EQ(orvRegistry::GetEmptyValue(rtLong, success).type(), VarType::Long);
    EXPECT_EQ(orvRegistry::GetEmptyValue(rtBoolean, success).type(), VarType::Boolean);
    EXPECT_TRUE(orvRegistry::GetEmptyValue(rtBinary, success).isArray());
    EXPECT_EQ(orvRegistry::GetEmptyValue(static_cast<RegistryType_Const>(9), success).type(),
              VarType::Empty);
}

TEST_F(OrvRegistry, NewObjectHasNoError) {
    EXPECT_EQ(registry->LastRegError(), 0);
}

}  // namespace
}  // namespace orvane
