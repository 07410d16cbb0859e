#include "support/recorder.h"

#include "platform/tables.h"
#include "support/toy_table.h"

#include <gmock/gmock.h>

namespace orvane::test {
namespace {

using platform::FileHandle;
using testing::ElementsAre;
using testing::IsEmpty;
using testing::StartsWith;

class RecorderTest : public testing::Test {
protected:
    void TearDown() override { toyThings.clear(); }

    Toy toy_ = boundToy();
};

TEST_F(RecorderTest, NotesNamesArgumentsAndResultsInOrder) {
    Recorder recorder(toy_);
    const FileHandle thing = toy_.Open("a \"b\"");
    EXPECT_EQ(toy_.Name(thing), "a \"b\"");
    EXPECT_TRUE(toy_.Close(thing));

    const std::string number = platform::described(thing);
    EXPECT_THAT(recorder.lines(), ElementsAre("Open(\"a \\\"b\\\"\") -> " + number,
                                              "Name(" + number + ") -> \"a \\\"b\\\"\"",
                                              "Close(" + number + ") -> true"));
    EXPECT_THAT(recorder.names(), ElementsAre("Open", "Name", "Close"));
    EXPECT_EQ(recorder.count("Open"), 1u);
    EXPECT_EQ(recorder.count("Decorate"), 0u);
}

TEST_F(RecorderTest, ShowsArgumentsAsTheyCameBack) {
    Recorder recorder(toy_);
    std::string text = "x";
    toy_.Decorate(text);
    EXPECT_EQ(text, "<x>");
    EXPECT_THAT(recorder.lines(), ElementsAre("Decorate(\"<x>\")"));
}

TEST_F(RecorderTest, ComparesCallsWithPatterns) {
    Recorder recorder(toy_);
    toy_.Close(toy_.Open("a.txt"));
    EXPECT_TRUE(recorder.saw({"Open(\"a*\") -> *", "Close(*) -> true"}));

    const testing::AssertionResult shorter = recorder.saw({"Open(*) -> *"});
    EXPECT_FALSE(shorter);
    EXPECT_THAT(shorter.message(), testing::HasSubstr("Open(\"a.txt\")"));
    EXPECT_FALSE(recorder.saw({"Close(*) -> true", "Open(*) -> *"}));
    EXPECT_FALSE(recorder.saw({"Open(*) -> *", "Close(*) -> true", "Close(*) -> true"}));
}

TEST_F(RecorderTest, KnowsWhatWasLeftOpen) {
    Recorder recorder(toy_);
    const FileHandle kept = toy_.Open("kept");
    toy_.Close(toy_.Open("closed"));
    EXPECT_THAT(recorder.leftOpen(),
                ElementsAre("thing " + platform::described(kept) + " from Open(\"kept\") -> " +
                            platform::described(kept)));
    toy_.Close(kept);
    EXPECT_THAT(recorder.leftOpen(), IsEmpty());
}

TEST_F(RecorderTest, CountsBothHandlesOfARecord) {
    Recorder recorder(toy_);
    Pair pair;
    ASSERT_TRUE(toy_.OpenTwo(pair));
    EXPECT_EQ(recorder.leftOpen().size(), 2u);
    toy_.Close(pair.left);
    EXPECT_EQ(recorder.leftOpen().size(), 1u);
    toy_.Close(pair.right);
    EXPECT_THAT(recorder.leftOpen(), IsEmpty());
}

TEST_F(RecorderTest, CountsAHandleAsGivenBackOnlyWhereTheCallSaysSo) {
    Recorder recorder(toy_);
    const FileHandle thing = toy_.Open("a");
    EXPECT_EQ(toy_.Adopt(thing, false), 0);
    EXPECT_EQ(recorder.leftOpen().size(), 1u);
    EXPECT_EQ(toy_.Adopt(thing, true), 0);
    EXPECT_THAT(recorder.leftOpen(), IsEmpty());
}

TEST_F(RecorderTest, TakesEveryNegativeStatusForAFailure) {
    Recorder recorder(toy_);
    EXPECT_EQ(toy_.Adopt(FileHandle::none, true), -5);
    ASSERT_EQ(recorder.calls().size(), 1u);
    EXPECT_TRUE(recorder.calls()[0].failed);
    EXPECT_THAT(recorder.calls()[0].released, IsEmpty());
}

TEST_F(RecorderTest, KeepsTheLastErrorOfTheCall) {
    Recorder recorder(toy_);
    platform::setLastError(77);
    EXPECT_TRUE(toy_.Name(FileHandle::none).empty());
    EXPECT_EQ(platform::lastError(), 77u);
    EXPECT_FALSE(toy_.Close(FileHandle::none));
    EXPECT_EQ(platform::lastError(), platform::kErrorInvalidHandle);
    EXPECT_EQ(recorder.calls()[1].error, platform::kErrorInvalidHandle);
}

TEST_F(RecorderTest, PutsTheOperationsBack) {
    const auto target = toy_.Open.target();
    {
        Recorder outer(toy_);
        {
            Recorder inner(toy_);
            toy_.Open("both");
            EXPECT_EQ(inner.calls().size(), 1u);
        }
        toy_.Open("outer");
        EXPECT_THAT(outer.lines(),
                    ElementsAre(StartsWith("Open(\"both\")"), StartsWith("Open(\"outer\")")));
    }
    EXPECT_EQ(toy_.Open.target(), target);
}

TEST_F(RecorderTest, SurvivesATargetThatThrows) {
    const auto target = toy_.Open.target();
    {
        const ScopedTarget fake(toy_.Open, [](const std::string&) -> FileHandle { throw 1; });
        Recorder recorder(toy_);
        EXPECT_THROW(toy_.Open("a"), int);
        EXPECT_TRUE(toy_.Name(FileHandle::none).empty());
        EXPECT_THAT(recorder.names(), ElementsAre("Name"));
    }
    EXPECT_EQ(toy_.Open.target(), target);
}

TEST_F(RecorderTest, RecordsEveryTableOfThePlatform) {
    Recorder recorder;
    platform::kernel32.GetFileAttributesA("no such file");
    platform::gdi32.DeleteDC(platform::DeviceContext::none);
    EXPECT_THAT(recorder.names(), ElementsAre("GetFileAttributesA", "DeleteDC"));
}

TEST_F(RecorderTest, FakesAnOperationForAScope) {
    {
        const auto real = toy_.Open;
        ScopedTarget fake(toy_.Open,
                          [&real](const std::string& name) { return real("fake " + name); });
        EXPECT_EQ(toyThings[toy_.Open("a")], "fake a");
    }
    EXPECT_EQ(toyThings[toy_.Open("a")], "a");
}

TEST_F(RecorderTest, RecordsAFakeThatLiesBelow) {
    ScopedTarget fake(toy_.Name, [](FileHandle) { return std::string("faked"); });
    Recorder recorder(toy_);
    toy_.Name(FileHandle::none);
    EXPECT_THAT(recorder.lines(), ElementsAre("Name(0) -> \"faked\""));
}

TEST(Matches, TakesAStarForAnyText) {
    EXPECT_TRUE(matches("", ""));
    EXPECT_TRUE(matches("", "*"));
    EXPECT_TRUE(matches("abc", "a*c"));
    EXPECT_TRUE(matches("ac", "a*c"));
    EXPECT_TRUE(matches("abcbc", "a*bc"));
    EXPECT_TRUE(matches("abc", "**"));
    EXPECT_FALSE(matches("abc", "ab"));
    EXPECT_FALSE(matches("ab", "abc"));
    EXPECT_FALSE(matches("abd", "a*c"));
    EXPECT_FALSE(matches("a", ""));
}

}  // namespace
}  // namespace orvane::test
