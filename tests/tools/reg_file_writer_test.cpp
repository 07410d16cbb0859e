#include "registry/reg_file_writer.h"
#include "registry_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <numeric>

namespace orvane::tests {
namespace {

using tool::Bytes;
using tool::FileKey;
using tool::FileValue;
using tool::RegistryFile;
using tool::Root;
using tool::ValueType;

RegistryFile fileWith(std::vector<FileValue> values) {
    return {FileKey{{Root::currentUser, u"A"}, false, std::move(values)}};
}

/// The lines that the only value of a key is written as.
std::u16string linesOf(const FileValue& value) {
    const std::u16string text = tool::registryFileText(fileWith({value}));
    const std::u16string before =
        u"Windows Registry Editor Version 5.00\r\n\r\n[HKEY_CURRENT_USER\\A]\r\n";
    EXPECT_TRUE(text.starts_with(before) && text.ends_with(u"\r\n\r\n"));
    return text.substr(before.size(), text.size() - before.size() - 4);
}

Bytes bytesFrom0(std::size_t count) {
    Bytes bytes(count);
    std::iota(bytes.begin(), bytes.end(), std::uint8_t{0});
    return bytes;
}

TEST(RegistryFileWriter, AFileLooksLikeTheEditorsOwn) {
    const RegistryFile file = {
        FileKey{{Root::currentUser, u"Software\\Пример"},
                false,
                {{u"b", ValueType::string, tool::textData(u"\"C:\\x\"")},
                 {u"", ValueType::string, tool::textData(u"first")},
                 {u"a", ValueType::dword, {0xEF, 0xBE, 0xAD, 0xDE}},
                 {u"gone", ValueType::none, {}, true}}},
        FileKey{{Root::localMachine, u"B"}, false, {}},
        FileKey{{Root::users, u"C"}, true, {}},
    };
    EXPECT_EQ(tool::registryFileText(file), u"Windows Registry Editor Version 5.00\r\n"
                                            u"\r\n"
                                            u"[HKEY_CURRENT_USER\\Software\\Пример]\r\n"
                                            u"@=\"first\"\r\n"
                                            u"\"b\"=\"\\\"C:\\\\x\\\"\"\r\n"
                                            u"\"a\"=dword:deadbeef\r\n"
                                            u"\"gone\"=-\r\n"
                                            u"\r\n"
                                            u"[HKEY_LOCAL_MACHINE\\B]\r\n"
                                            u"\r\n"
                                            u"[-HKEY_USERS\\C]\r\n"
                                            u"\r\n");
}

TEST(RegistryFileWriter, TheFileIsUtf16WithItsMark) {
    const Bytes bytes = tool::registryFileBytes({});
    EXPECT_THAT((Bytes{bytes.begin(), bytes.begin() + 4}),
                testing::ElementsAre(0xFF, 0xFE, 'W', 0));
    EXPECT_EQ(bytes.size(), 2 + 2 * tool::registryFileText({}).size());
}

TEST(RegistryFileWriter, TypesAreWrittenByTheirNumber) {
    EXPECT_EQ(linesOf({u"v", ValueType::none, {1}}), u"\"v\"=hex(0):01");
    EXPECT_EQ(linesOf({u"v", ValueType::expand, {0x41, 0, 0, 0}}), u"\"v\"=hex(2):41,00,00,00");
    EXPECT_EQ(linesOf({u"v", ValueType::binary, {}}), u"\"v\"=hex:");
    EXPECT_EQ(linesOf({u"v", ValueType::binary, {0xAB}}), u"\"v\"=hex:ab");
    EXPECT_EQ(linesOf({u"v", ValueType::dwordBigEndian, {0, 0, 0, 1}}),
              u"\"v\"=hex(5):00,00,00,01");
    EXPECT_EQ(linesOf({u"v", ValueType::multi, {0, 0}}), u"\"v\"=hex(7):00,00");
    EXPECT_EQ(linesOf({u"v", ValueType::qword, {1, 0, 0, 0, 0, 0, 0, 0}}),
              u"\"v\"=hex(b):01,00,00,00,00,00,00,00");
    EXPECT_EQ(linesOf({u"v", static_cast<ValueType>(0xABCD), {}}), u"\"v\"=hex(abcd):");
    EXPECT_EQ(linesOf({u"v", static_cast<ValueType>(0xFFFFFFFF), {}}), u"\"v\"=hex(ffffffff):");
}

TEST(RegistryFileWriter, WhatIsNoPlainTextOrNumberIsWrittenByteByByte) {
    EXPECT_EQ(linesOf({u"v", ValueType::string, {}}), u"\"v\"=hex(1):");
    EXPECT_EQ(linesOf({u"v", ValueType::string, {0x41}}), u"\"v\"=hex(1):41");
    EXPECT_EQ(linesOf({u"v", ValueType::string, {0x41, 0}}), u"\"v\"=hex(1):41,00");
    EXPECT_EQ(linesOf({u"v", ValueType::string, {0, 0, 0x41, 0, 0, 0}}),
              u"\"v\"=hex(1):00,00,41,00,00,00");
    EXPECT_EQ(linesOf({u"v", ValueType::string, {0, 0}}), u"\"v\"=\"\"");
    EXPECT_EQ(linesOf({u"v", ValueType::dword, {1, 2, 3}}), u"\"v\"=hex(4):01,02,03");
    EXPECT_EQ(linesOf({u"v", ValueType::dword, {}}), u"\"v\"=hex(4):");
}

TEST(RegistryFileWriter, LineBreaksInTextsAreWrittenAsTheyAre) {
    EXPECT_EQ(linesOf({u"v", ValueType::string, tool::textData(u"a\r\nb\nc")}),
              u"\"v\"=\"a\r\nb\nc\"");
}

// As in files that the system's editor has written: lines of 25 bytes, a first line that is full
// with 77 characters or more, and a last byte of its own even if it had fitted.
TEST(RegistryFileWriter, LongValuesAreWrappedAsTheEditorWrapsThem) {
    EXPECT_EQ(linesOf({u"", ValueType::expand, bytesFrom0(49)}),
              u"@=hex(2):00,01,02,03,04,05,06,07,08,09,0a,0b,0c,0d,0e,0f,10,11,12,13,14,15,16,"
              u"\\\r\n"
              u"  17,18,19,1a,1b,1c,1d,1e,1f,20,21,22,23,24,25,26,27,28,29,2a,2b,2c,2d,2e,2f,"
              u"\\\r\n"
              u"  30");
    EXPECT_EQ(linesOf({u"", ValueType::expand, bytesFrom0(23)}),
              u"@=hex(2):00,01,02,03,04,05,06,07,08,09,0a,0b,0c,0d,0e,0f,10,11,12,13,14,15,16");
}

TEST(RegistryFileWriter, NoLineIsLongerThan80UnlessItsNameIs) {
    for (std::size_t name = 0; name < 90; ++name) {
        const std::u16string lines =
            linesOf({std::u16string(name, u'n'), ValueType::binary, bytesFrom0(60)});
        const std::size_t first = lines.find(u'\r');
        ASSERT_NE(first, std::u16string::npos);
        EXPECT_TRUE(first <= 80 || name > 68) << name;
        // The first line has a byte, however long the name is.
        EXPECT_EQ(lines.substr(first - 2, 2), u",\\");
        std::size_t start = first + 2;
        while (start < lines.size()) {
            const std::size_t end = std::min(lines.find(u'\r', start), lines.size());
            EXPECT_LE(end - start, 78U);
            EXPECT_EQ(lines.substr(start, 2), u"  ");
            start = end + 2;
        }
    }
}

TEST(RegistryFileWriter, WhatItWritesIsReadAgain) {
    std::u16string every;
    for (char32_t unit = 1; unit < 0x10000; ++unit)
        every += static_cast<char16_t>(unit);
    std::vector<FileValue> values = {
        {u"", ValueType::string, tool::textData(every)},
        {every.substr(0, 16383), ValueType::dword, {1, 2, 3, 4}},
        {u"odd", ValueType::string, {1, 2, 3}},
        {u"gone", ValueType::none, {}, true},
    };
    for (std::uint32_t type = 0; type < 14; ++type) {
        for (const std::size_t size : {0U, 1U, 4U, 8U, 300U}) {
            values.push_back({u"t" + std::u16string(type, u't') + std::u16string(size, u's'),
                              static_cast<ValueType>(type), bytesFrom0(size)});
        }
    }
    RegistryFile file = fileWith(values);
    file.push_back({{Root::classesRoot, u"[a]\\\"b;"}, false, {}});
    file.push_back({{Root::currentConfig, u"gone"}, true, {}});
    file.push_back({{Root::users, u""}, false, {}});
    EXPECT_EQ(parsed(tool::registryFileBytes(file)), file);
}

TEST(RegistryFileWriter, AValueOfTenMegabytesComesBack) {
    const RegistryFile file = fileWith({{u"big", ValueType::binary, bytesFrom0(10 << 20)}});
    EXPECT_EQ(parsed(tool::registryFileBytes(file)), file);
}

TEST(KeyName, TheFullNameHasTheLongRoot) {
    EXPECT_EQ(tool::textOf({Root::currentUser, u"a\\b"}), u"HKEY_CURRENT_USER\\a\\b");
    EXPECT_EQ(tool::textOf({Root::users, u""}), u"HKEY_USERS");
    EXPECT_EQ(tool::parseKeyName(u"hkcu\\a\\b"), (tool::KeyName{Root::currentUser, u"a\\b"}));
    EXPECT_EQ(tool::parseKeyName(u"HKEY_USERSX"), std::nullopt);
    EXPECT_EQ(tool::parseKeyName(u""), std::nullopt);
}

}  // namespace
}  // namespace orvane::tests
