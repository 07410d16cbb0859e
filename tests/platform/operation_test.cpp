#include "platform/operation.h"

#include "platform/tables.h"
#include "support/toy_table.h"

#include <gmock/gmock.h>

#include <set>

namespace orvane::platform {
namespace {

TEST(Described, WritesNumbersInDecimal) {
    EXPECT_EQ(described(std::int16_t{-5}), "-5");
    EXPECT_EQ(described(0xFFFFFFFFu), "4294967295");
    EXPECT_EQ(described(std::int64_t{-1} * 9223372036854775807), "-9223372036854775807");
    EXPECT_EQ(described(FileHandle::none), "0");
    EXPECT_EQ(described(true), "true");
    EXPECT_EQ(described(0.5), "0.5");
}

TEST(Described, QuotesAndEscapesTexts) {
    EXPECT_EQ(described(std::string("C:\\a \"b\"\r\n\t")), "\"C:\\\\a \\\"b\\\"\\r\\n\\t\"");
    EXPECT_EQ(described(std::string("\xC0\0z", 3)), "\"\\xC0\\x00z\"");
    EXPECT_EQ(described(std::u16string(u"a\u0410\u00FF")), "\"a\\u0410\\xFF\"");
}

TEST(Described, CutsLongTextsAndSaysTheirLength) {
    const std::string text = described(std::string(1000, 'x'));
    EXPECT_EQ(text, "\"" + std::string(200, 'x') + "\"... (1000)");
}

TEST(Described, GivesBlocksBySizeAndAddressesByPresence) {
    const std::array<std::uint8_t, 3> bytes{};
    EXPECT_EQ(described(std::span<const std::uint8_t>(bytes)), "<3 bytes>");
    const void* nothing = nullptr;
    const void* something = &bytes;
    EXPECT_EQ(described(nothing), "null");
    EXPECT_EQ(described(something), "address");
}

TEST(Described, NamesTheFieldsOfRecords) {
    EXPECT_EQ(described(BitmapFacts{4, -3, 16, 1, 24}),
              "{width 4, height -3, widthBytes 16, planes 1, bits 24}");
    BitmapInfo info;
    info.biWidth = 4;
    info.biHeight = -3;
    info.biBitCount = 24;
    EXPECT_EQ(described(info), "{width 4, height -3, bits 24, compression 0, colours 0}");
    EXPECT_EQ(described(IconFacts{true, 1, 2, BitmapHandle{3}, BitmapHandle{4}}),
              "{icon true, x 1, y 2, mask 3, colour 4}");
    EXPECT_EQ(described(GdiObject(BrushHandle{8})), "8");
    EXPECT_EQ(described(Point{-1, 2}), "{x -1, y 2}");
    EXPECT_EQ(described(LogPen{2, {3, 0}, 4}), "{style 2, width 3, colour 4}");
    EXPECT_EQ(described(LogBrush{1, 2, 3}), "{style 1, colour 2, hatch 3}");
    EXPECT_EQ(described(PictureDescription{1, BitmapHandle{7}, IconHandle::none}),
              "{type 1, bitmap 7, icon 0}");
    EXPECT_EQ(described(SystemVersion{5, 1, 2600, 2, "SP 3", ""}),
              "{major 5, minor 1, build 2600, platform 2, servicePack \"SP 3\", name \"\"}");
    EXPECT_EQ(described(MemoryStatus{1, 2, 3, 4, 5, 6, 7}),
              "{load 1, physical 2, free 3, pageFile 4, free 5, virtual 6, free 7}");
}

TEST(HeldBy, LeavesOutHandlesThatAreNone) {
    using testing::ElementsAre;
    EXPECT_THAT(heldBy(GdiObject(PenHandle{7})), ElementsAre("7"));
    EXPECT_TRUE(heldBy(GdiObject()).empty());
    EXPECT_THAT(heldBy(BitmapHandle{5}), ElementsAre("5"));
    EXPECT_TRUE(heldBy(BitmapHandle::none).empty());
    EXPECT_THAT(heldBy(IconFacts{true, 0, 0, BitmapHandle{3}, BitmapHandle{4}}),
                ElementsAre("3", "4"));
    EXPECT_THAT(heldBy(IconFacts{true, 0, 0, BitmapHandle{3}, BitmapHandle::none}),
                ElementsAre("3"));
    EXPECT_TRUE(heldBy(PictureDescription{3, BitmapHandle::none, IconHandle{9}}).empty());
}

TEST(CallRecord, ReadsAsOneLine) {
    CallRecord call{"toy", "Do", {}, {"1", "\"a\""}, "true"};
    EXPECT_EQ(call.text(), "Do(1, \"a\") -> true");
    call.result.clear();
    call.arguments.clear();
    EXPECT_EQ(call.text(), "Do()");
}

TEST(Tables, AreBoundWhole) {
    forEachTable([](auto& table) {
        EXPECT_TRUE(allBound(table));
        forEachOperation(table,
                         [](OperationBase& operation) { EXPECT_NE(operation.name(), nullptr); });
    });
}

TEST(Tables, NameEachOperationOnce) {
    std::set<std::string> names;
    for (const OperationBase* operation : allOperations()) {
        const std::string name = std::string(operation->module()) + "." + operation->name();
        // One function of the platform that stands in the table for each kind of object.
        const bool again = name == "kernel32.CloseHandle" || name == "gdi32.GetObjectA";
        EXPECT_TRUE(names.insert(name).second || again) << name;
    }
    EXPECT_TRUE(names.contains("kernel32.CreateFileA"));
    EXPECT_TRUE(names.contains("host.LoadPicture"));
}

// A table whose `visit` forgets a member is found at compile time.
struct Forgetful {
    Operation<bool()> First{"toy", "First"};
    Operation<bool()> Second{"toy", "Second"};

    template <class Visitor>
    constexpr void visit(Visitor&& visitor) {
        visitor(First);
    }
};
static_assert(!visitsEveryMember<Forgetful>());
static_assert(visitsEveryMember<test::Toy>());
static_assert(allBound(test::boundToy()));
static_assert(!allBound(test::Toy()));

}  // namespace
}  // namespace orvane::platform
