#include "registry/reg_file_reader.h"
#include "registry/reg_file_writer.h"
#include "registry_files.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace orvane::tests {
namespace {

using tool::Bytes;
using tool::FileKey;
using tool::FileValue;
using tool::RegistryFile;
using tool::RegistryFileError;
using tool::Root;
using tool::ValueType;

/// The only value of a file with one key and this line.
FileValue valueIn(std::string_view line) {
    const RegistryFile file = parsed("[HKCU\\A]\r\n" + std::string(line) + "\r\n");
    EXPECT_EQ(file.size(), 1U);
    EXPECT_EQ(file.at(0).values.size(), 1U) << line;
    return file.at(0).values.at(0);
}

std::u16string textIn(std::string_view line) {
    const FileValue value = valueIn(line);
    EXPECT_EQ(value.type, ValueType::string);
    return tool::plainText(value.data).value_or(u"<no text>");
}

/// The line that the error names, 0 when the file is read.
std::size_t failingLine(const Bytes& bytes) {
    try {
        parsed(bytes);
        return 0;
    } catch (const RegistryFileError& error) {
        EXPECT_TRUE(
            std::string(error.what()).starts_with("line " + std::to_string(error.line) + ": "));
        return error.line;
    }
}

std::size_t failingLine(std::string_view lines) {
    return failingLine(bytesOf("Windows Registry Editor Version 5.00\n" + std::string(lines)));
}

Bytes inUtf16(std::u16string_view text) {
    Bytes bytes = {0xFF, 0xFE};
    for (const char16_t unit : text)
        tool::addUnit(bytes, unit);
    return bytes;
}

TEST(RegistryFileReader, EveryKindOfLineIsRead) {
    const RegistryFile file = parsed("\r\n"
                                     "; a comment\r\n"
                                     "[HKEY_CURRENT_USER\\Software\\Example]\r\n"
                                     "@=\"default\"\r\n"
                                     "\"Path\"=\"C:\\\\Folder\"\r\n"
                                     "\"Count\"=dword:0000002A\r\n"
                                     "\"Data\"=hex:01,02,\\\r\n  ff\r\n"
                                     "\"Old\"=-\r\n"
                                     "\r\n"
                                     "[-HKEY_LOCAL_MACHINE\\Software\\Example]\r\n");
    ASSERT_EQ(file.size(), 2U);
    EXPECT_EQ(file[0].name, (tool::KeyName{Root::currentUser, u"Software\\Example"}));
    EXPECT_FALSE(file[0].remove);
    EXPECT_EQ(file[0].line, 4U);
    ASSERT_EQ(file[0].values.size(), 5U);
    EXPECT_EQ(file[0].values[0], (FileValue{u"", ValueType::string, tool::textData(u"default")}));
    EXPECT_EQ(file[0].values[1],
              (FileValue{u"Path", ValueType::string, tool::textData(u"C:\\Folder")}));
    EXPECT_EQ(file[0].values[2], (FileValue{u"Count", ValueType::dword, {42, 0, 0, 0}}));
    EXPECT_EQ(file[0].values[3], (FileValue{u"Data", ValueType::binary, {1, 2, 255}}));
    EXPECT_TRUE(file[0].values[4].remove);
    EXPECT_EQ(file[0].values[4].line, 10U);
    EXPECT_EQ(file[1].name, (tool::KeyName{Root::localMachine, u"Software\\Example"}));
    EXPECT_TRUE(file[1].remove);
}

TEST(RegistryFileReader, TextIsUtf16OrUtf8WithAndWithoutMark) {
    const std::u16string text = u"Windows Registry Editor Version 5.00\r\n\r\n"
                                u"[HKCU\\Ключ]\r\n\"Имя\"=\"日本 \U0001F600\"\r\n";
    const RegistryFile expected = parsed(inUtf16(text));
    ASSERT_EQ(expected.size(), 1U);
    EXPECT_EQ(expected[0].name.path, u"Ключ");
    EXPECT_EQ(expected[0].values[0].name, u"Имя");
    EXPECT_EQ(expected[0].values[0].data, tool::textData(u"日本 \U0001F600"));
    const std::string utf8 = "Windows Registry Editor Version 5.00\r\n\r\n"
                             "[HKCU\\Ключ]\r\n\"Имя\"=\"日本 \U0001F600\"\r\n";
    EXPECT_EQ(parsed(bytesOf(utf8)), expected);
    EXPECT_EQ(parsed(bytesOf("\xEF\xBB\xBF" + utf8)), expected);
}

TEST(RegistryFileReader, LoneSurrogatesAreKept) {
    const RegistryFile file = parsed(
        inUtf16(u"Windows Registry Editor Version 5.00\n[HKCU\\A]\n\"n\xD800\"=\"\xDC00\"\n"));
    EXPECT_EQ(file.at(0).values.at(0).name, (std::u16string{u'n', u'\xD800'}));
    EXPECT_EQ(file.at(0).values.at(0).data, (Bytes{0, 0xDC, 0, 0}));
}

TEST(RegistryFileReader, TextsOfTheOlderFormAreInTheCodePage) {
    const RegistryFile file = parsed(bytesOf("REGEDIT4\r\n"
                                             "[HKCU\\\xCA]\r\n"
                                             "\"\xC8\"=\"\xC0\xFF\"\r\n"
                                             "\"one\"=hex(1):c1,00\r\n"
                                             "\"expand\"=hex(2):25,c0,00\r\n"
                                             "\"multi\"=hex(7):c0,00,c1,00,00\r\n"
                                             "\"bytes\"=hex:c0\r\n"));
    EXPECT_EQ(file.at(0).name.path, u"К");
    const std::vector<FileValue>& values = file[0].values;
    ASSERT_EQ(values.size(), 5U);
    EXPECT_EQ(values[0], (FileValue{u"И", ValueType::string, tool::textData(u"Ая")}));
    EXPECT_EQ(values[1].data, tool::textData(u"Б"));
    EXPECT_EQ(values[2], (FileValue{u"expand", ValueType::expand, tool::textData(u"%А")}));
    EXPECT_EQ(values[3].data, tool::textData(std::u16string_view(u"А\0Б\0", 4)));
    EXPECT_EQ(values[4].data, (Bytes{0xC0}));
}

TEST(RegistryFileReader, HexadecimalTextsOfVersion5AreUtf16Already) {
    EXPECT_EQ(valueIn("\"a\"=hex(2):c0,00").data, (Bytes{0xC0, 0}));
}

TEST(RegistryFileReader, LinesMayEndWithALineFeedAlone) {
    EXPECT_EQ(parsed(bytesOf("Windows Registry Editor Version 5.00\n\n[HKCU\\A]\n@=\"x\"\n")),
              parsed(bytesOf("Windows Registry Editor Version 5.00\r\n\r\n[HKCU\\A]\r\n@=\"x\"")));
}

TEST(RegistryFileReader, RootsHaveLongAndShortNamesInAnyCase) {
    const std::pair<const char*, Root> names[] = {
        {"HKEY_CLASSES_ROOT", Root::classesRoot},
        {"HKEY_CURRENT_USER", Root::currentUser},
        {"HKEY_LOCAL_MACHINE", Root::localMachine},
        {"HKEY_USERS", Root::users},
        {"HKEY_CURRENT_CONFIG", Root::currentConfig},
        {"HKCR", Root::classesRoot},
        {"hkcu", Root::currentUser},
        {"HkLm", Root::localMachine},
        {"HKU", Root::users},
        {"HKCC", Root::currentConfig},
    };
    for (const auto& [name, root] : names) {
        EXPECT_EQ(parsed("[" + std::string(name) + "\\a]").at(0).name, (tool::KeyName{root, u"a"}));
        EXPECT_EQ(parsed("[" + std::string(name) + "]").at(0).name, (tool::KeyName{root, u""}));
    }
}

TEST(RegistryFileReader, AKeysNameMayHaveBracketsAndQuotes) {
    EXPECT_EQ(parsed("[HKCU\\a]b[c\"d;e]\n").at(0).name.path, u"a]b[c\"d;e");
}

TEST(RegistryFileReader, EscapesInTextsAndNames) {
    EXPECT_EQ(textIn(R"("a"="C:\\x \"y\"")"), u"C:\\x \"y\"");
    EXPECT_EQ(textIn(R"("a"="one\r\ntwo")"), u"one\r\ntwo");
    EXPECT_EQ(valueIn(R"("\\\"n"=dword:1)").name, u"\\\"n");
    EXPECT_EQ(textIn("\"a\"=\"\""), u"");
}

TEST(RegistryFileReader, LineBreaksInTextsStayAsTheyAre) {
    EXPECT_EQ(textIn("\"a\"=\"one\r\ntwo\n\r\nthree\""), u"one\r\ntwo\n\r\nthree");
    EXPECT_EQ(valueIn("\"a\nb\"=dword:1").name, u"a\nb");
}

TEST(RegistryFileReader, LinesInTextsAndHexadecimalCount) {
    EXPECT_EQ(failingLine("[HKCU\\A]\n\"a\"=\"1\n2\n3\"\n\"b\"=hex:1,\\\n2\n?\n"), 8U);
}

TEST(RegistryFileReader, BlanksAndCommentsMayStandAround) {
    EXPECT_EQ(textIn(" \t\"a\" = \"x\" \t; comment"), u"x");
    EXPECT_EQ(valueIn("@ = dword:00000001;comment").type, ValueType::dword);
    EXPECT_EQ(valueIn("\"a\"=hex:1, 2 ,3 ;c").data, (Bytes{1, 2, 3}));
    EXPECT_TRUE(valueIn("\"a\"=- ; gone").remove);
    EXPECT_EQ(parsed("  [HKCU\\A] ; comment\n  ; more").at(0).name.path, u"A");
}

TEST(RegistryFileReader, HexadecimalGoesOnBehindABackslash) {
    EXPECT_EQ(valueIn("\"a\"=hex:01,\\\r\n  02,\\ \t\r\n\t03").data, (Bytes{1, 2, 3}));
    EXPECT_EQ(valueIn("\"a\"=hex:\\\n 5b").data, (Bytes{0x5B}));
}

TEST(RegistryFileReader, EveryTypeHasItsNumber) {
    EXPECT_EQ(valueIn("\"a\"=hex(0):").type, ValueType::none);
    EXPECT_EQ(valueIn("\"a\"=hex(3):1").type, ValueType::binary);
    EXPECT_EQ(valueIn("\"a\"=hex(4):1,2,3").data, (Bytes{1, 2, 3}));
    EXPECT_EQ(valueIn("\"a\"=hex(B):1").type, ValueType::qword);
    EXPECT_EQ(valueIn("\"a\"=hex(ffff1234):").type, static_cast<ValueType>(0xFFFF1234));
    EXPECT_EQ(valueIn("\"a\"=DWORD:ffffffff").data, (Bytes{255, 255, 255, 255}));
    EXPECT_EQ(valueIn("\"a\"=dword:1").data, (Bytes{1, 0, 0, 0}));
    EXPECT_TRUE(valueIn("\"a\"=hex:").data.empty());
}

TEST(RegistryFileReader, AnEmptyNameInQuotesIsTheDefaultValue) {
    EXPECT_EQ(valueIn("\"\"=\"x\""), valueIn("@=\"x\""));
}

TEST(RegistryFileReader, WhatIsNoLineOfAFileIsNamedByItsNumber) {
    for (const char* line : {
             "junk",
             "=\"x\"",
             "\"a\"",
             "\"a\" \"b\"",
             "\"a\"=",
             "\"a\"=x",
             "\"a\"=\"b\" c",
             "\"a\"=\"b",
             "\"a=1",
             R"("a"="C:\qx")",
             "\"a\"=dword:",
             "\"a\"=dword:123456789",
             "\"a\"=dword:-1",
             "\"a\"=dword:0x1",
             "\"a\"=hex",
             "\"a\"=hex(:01",
             "\"a\"=hex(2:01",
             "\"a\"=hex():01",
             "\"a\"=hex(g):01",
             "\"a\"=hex(123456789):01",
             "\"a\"=hex:01,",
             "\"a\"=hex:,01",
             "\"a\"=hex:01,,02",
             "\"a\"=hex:001",
             "\"a\"=hex:01 02",
             "\"a\"=hex:0g",
             "\"a\"=hex:01,\\ x",
             "\"a\"=hex:01\\",
             "@x=\"a\"",
             "@",
             "[HKCU\\A",
             "[]",
             "[HKEY_NOBODY\\A]",
             "[HKCU\\]",
             "[HKCU\\\\A]",
             "[HKCU\\A\\]",
             "[ HKCU\\A]",
             "[HKCU\\A] b",
             "[-HKCU]",
             "[-]",
             "[HKCU\\a\rb]",
         }) {
        EXPECT_EQ(failingLine("\n[HKCU\\Key]\n" + std::string(line) + "\n; rest\n"), 4U) << line;
    }
}

TEST(RegistryFileReader, AContinuedLineNeedsAByte) {
    EXPECT_EQ(failingLine("[HKCU\\A]\n\"a\"=hex:01,\\\n"), 4U);
    EXPECT_EQ(failingLine("[HKCU\\A]\n\"a\"=hex:01,\\"), 3U);
    EXPECT_EQ(failingLine("[HKCU\\A]\n\"a\"=hex:\\\n\n"), 4U);
}

TEST(RegistryFileReader, AValueNeedsAKeyThatStays) {
    EXPECT_EQ(failingLine("@=\"x\"\n"), 2U);
    EXPECT_EQ(failingLine("[-HKCU\\A]\n@=\"x\"\n"), 3U);
}

TEST(RegistryFileReader, NamesAreNoLongerThanTheRegistryTakes) {
    const std::string longest(255, 'k');
    EXPECT_EQ(failingLine("[HKCU\\" + longest + "\\" + longest + "]\n"), 0U);
    EXPECT_EQ(failingLine("[HKCU\\" + longest + "k]\n"), 2U);
    EXPECT_EQ(failingLine("[HKCU\\A]\n\"" + std::string(16383, 'v') + "\"=-\n"), 0U);
    EXPECT_EQ(failingLine("[HKCU\\A]\n\"" + std::string(16384, 'v') + "\"=-\n"), 3U);
}

TEST(RegistryFileReader, AnotherHeaderIsNoRegistryFile) {
    for (const char* text :
         {"", "\n", "[HKCU\\A]\n", "REGEDIT", "REGEDIT5\n",
          "Windows Registry Editor Version 4.00\n", " Windows Registry Editor Version 5.00\n"}) {
        EXPECT_EQ(failingLine(bytesOf(text)), 1U) << text;
    }
    EXPECT_EQ(failingLine(bytesOf("REGEDIT4")), 0U);
    EXPECT_EQ(failingLine(bytesOf("Windows Registry Editor Version 5.00 \t\r\n")), 0U);
    EXPECT_EQ(failingLine(Bytes{0xFE, 0xFF, 0, 'W'}), 1U);
}

TEST(RegistryFileReader, BytesThatAreNoTextAreNamedByTheirLine) {
    EXPECT_EQ(failingLine("[HKCU\\A]\n\n\"a\"=\"\xC3\"\n"), 4U);
    EXPECT_EQ(failingLine(std::string_view("[HKCU\\A]\n\"a\0\"=\"b\"\n", 17)), 3U);
    Bytes odd = inUtf16(u"Windows Registry Editor Version 5.00\n[HKCU\\A]\n");
    odd.push_back('x');
    EXPECT_EQ(failingLine(odd), 3U);
}

/// Cut anywhere, a file is read up to there or named by a line that it has.
TEST(RegistryFileReader, AFileCutAnywhereIsReadOrRefused) {
    const RegistryFile whole =
        parsed("[HKCU\\Ключ]\r\n@=\"a\\\\b\r\nc\"\r\n\"d\"=dword:0000002a\r\n"
               "\"h\"=hex(7):41,00,\\\r\n  00,00\r\n\"x\"=-\r\n\r\n[-HKLM\\B]\r\n; end\r\n");
    const Bytes wide = tool::registryFileBytes(whole);
    const std::string narrow = "Windows Registry Editor Version 5.00\n[HKCU\\Ключ]\n"
                               "\"a\"=\"b\"\n\"h\"=hex:1,\\\n2\n[-HKCU\\x]\n";
    for (const Bytes& bytes : {wide, bytesOf(narrow), bytesOf("\xEF\xBB\xBF" + narrow)}) {
        std::size_t refused = 0;
        for (std::size_t size = 0; size < bytes.size(); ++size) {
            const Bytes cut(bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(size));
            const auto lines = 1 + std::ranges::count(cut, std::uint8_t{'\n'});
            const std::size_t line = failingLine(cut);
            EXPECT_LE(line, static_cast<std::size_t>(lines));
            refused += line != 0;
        }
        EXPECT_GT(refused, bytes.size() / 2);
        EXPECT_EQ(failingLine(bytes), 0U);
    }
}

}  // namespace
}  // namespace orvane::tests
