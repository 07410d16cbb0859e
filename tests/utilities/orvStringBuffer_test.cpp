#include "utilities/orvStringBuffer.h"

#include "frame/values/text.h"
#include "support/allocations.h"
#include "support/raised_error.h"

#include <gtest/gtest.h>

#include <limits>
#include <random>
#include <string>

namespace orvane {
namespace {

using test::raisedBy;

class StringBuffer : public testing::Test {
protected:
    Ref<orvStringBuffer> buffer_ = make<orvStringBuffer>();

    void alloc(std::int32_t size) { buffer_->Alloc(size, u" "); }
};

TEST_F(StringBuffer, PadsWhatIsNotUsed) {
    alloc(10);
    buffer_->AddText(u"abc");
    EXPECT_EQ(buffer_->Value(), u"abc       ");
    EXPECT_EQ(buffer_->Size(), 10);
}

TEST_F(StringBuffer, TrimTakesThePaddingAway) {
    alloc(10);
    buffer_->AddText(u"abc");
    buffer_->Trim();
    EXPECT_EQ(buffer_->Value(), u"abc");
    EXPECT_EQ(buffer_->Size(), 3);
}

TEST_F(StringBuffer, ATextThatJustFitsReplacesTheStorage) {
    buffer_->Alloc(3, u"*");
    buffer_->AddText(u"abc");
    EXPECT_EQ(buffer_->Value(), u"abc");
    EXPECT_EQ(buffer_->Size(), 3);
    buffer_->Alloc(40, u"*");
    const char16_t* storage = buffer_->Value().data();
    buffer_->AddText(std::u16string(40, u'x'));
    EXPECT_NE(buffer_->Value().data(), storage) << "no room to spare: not in place";
}

TEST_F(StringBuffer, ATextWithACharacterToSpareIsWrittenInPlace) {
    buffer_->Alloc(40, u"*");
    const char16_t* storage = buffer_->Value().data();
    buffer_->AddText(std::u16string(39, u'x'));
    EXPECT_EQ(buffer_->Value().units(), std::u16string(39, u'x') + u"*");
    EXPECT_EQ(buffer_->Value().data(), storage);
}

TEST_F(StringBuffer, KeepsTheSparePaddingUntilATextReachesIt) {
    buffer_->Alloc(4, u"*");
    buffer_->AddText(u"abc");
    EXPECT_EQ(buffer_->Value(), u"abc*");
    buffer_->AddText(u"de");
    EXPECT_EQ(buffer_->Value(), u"abcde");
    EXPECT_EQ(buffer_->Size(), 5);
}

TEST_F(StringBuffer, TakesACharacterCodeForThePadding) {
    buffer_->Alloc(5, 65);
    EXPECT_EQ(buffer_->Value(), u"AAAAA");
    buffer_->Alloc(2, u"xyz");
    EXPECT_EQ(buffer_->Value(), u"xx") << "the first character counts";
}

TEST_F(StringBuffer, RaisesForATextBeforeItIsSetUp) {
    EXPECT_EQ(raisedBy([&] { buffer_->AddText(u"a"); }), error::kInvalidArgument);
    EXPECT_EQ(buffer_->Value(), u"");
    EXPECT_EQ(buffer_->Size(), 0);
    EXPECT_EQ(raisedBy([&] { buffer_->AddText(u"a"); }), error::kInvalidArgument)
        << "and is as new afterwards";
    alloc(0);
    buffer_->AddText(u"a");
    EXPECT_EQ(buffer_->Value(), u"a");
}

TEST_F(StringBuffer, RaisesForATrimBeforeItIsSetUp) {
    EXPECT_EQ(raisedBy([&] { buffer_->Trim(); }), error::kInvalidArgument);
    EXPECT_EQ(buffer_->Size(), 0);
}

TEST_F(StringBuffer, IsEmptyWhenNew) {
    EXPECT_EQ(buffer_->Value(), u"");
    EXPECT_EQ(buffer_->Size(), 0);
    buffer_->AddText(u"");
    EXPECT_EQ(buffer_->Size(), 0) << "an empty text changes nothing, before the set-up too";
}

TEST_F(StringBuffer, AppendsBehindAFullStorage) {
    buffer_->putValue(u"abc");
    EXPECT_EQ(buffer_->Size(), 3);
    buffer_->AddText(u"de");
    EXPECT_EQ(buffer_->Value(), u"abcde");
    buffer_->AddText(u"f");
    EXPECT_EQ(buffer_->Value(), u"abcdef");
    EXPECT_EQ(buffer_->Size(), 6);
}

TEST_F(StringBuffer, AppendsAfterATrim) {
    alloc(10);
    buffer_->AddText(u"abc");
    buffer_->Trim();
    buffer_->AddText(u"de");
    EXPECT_EQ(buffer_->Value(), u"abcde");
    buffer_->Trim();
    EXPECT_EQ(buffer_->Value(), u"abcde");
}

TEST_F(StringBuffer, TrimOfAnUnusedStorageLeavesNothing) {
    alloc(4);
    buffer_->Trim();
    EXPECT_EQ(buffer_->Value(), u"");
    buffer_->AddText(u"a");
    EXPECT_EQ(buffer_->Value(), u"a");
}

TEST_F(StringBuffer, GrowsByExactlyWhatIsNeeded) {
    buffer_->Alloc(100, u"*");
    buffer_->AddText(std::u16string(60, u'a'));
    buffer_->AddText(std::u16string(60, u'b'));
    EXPECT_EQ(buffer_->Size(), 120);
    EXPECT_EQ(buffer_->Value().units(), std::u16string(60, u'a') + std::u16string(60, u'b'));
}

TEST_F(StringBuffer, AllocForgetsTheText) {
    buffer_->putValue(u"abc");
    alloc(2);
    EXPECT_EQ(buffer_->Value(), u"  ");
    buffer_->AddText(u"z");
    EXPECT_EQ(buffer_->Value(), u"z ");
}

TEST_F(StringBuffer, KeepsItsTextWhenAllocFails) {
    buffer_->putValue(u"abc");
    EXPECT_EQ(raisedBy([&] { alloc(-1); }), error::kInvalidArgument);
    EXPECT_EQ(raisedBy([&] { buffer_->Alloc(1, u""); }), error::kInvalidArgument);
    EXPECT_EQ(raisedBy([&] { buffer_->Alloc(1, Variant::null()); }), error::kInvalidUseOfNull);
    EXPECT_EQ(raisedBy([&] { alloc(std::numeric_limits<std::int32_t>::max()); }),
              error::kOutOfMemory);
    buffer_->AddText(u"d");
    EXPECT_EQ(buffer_->Value(), u"abcd");
}

TEST_F(StringBuffer, TakesAnEmptyValueForSetUp) {
    buffer_->putValue(u"");
    EXPECT_EQ(buffer_->Size(), 0);
    buffer_->AddText(u"a");
    EXPECT_EQ(buffer_->Value(), u"a");
}

TEST_F(StringBuffer, AddsEveryUnit) {
    const std::u16string text{u'a', 0, 0xD83D, 0xFFFF};
    alloc(8);
    buffer_->AddText(text);
    EXPECT_EQ(buffer_->Value().units(), text + u"    ");
}

TEST_F(StringBuffer, AllocatesNothingInPlace) {
    alloc(16 * 1000 + 1);
    const std::u16string text(16, u'x');
    const test::AllocationCount allocations;
    for (int i = 0; i < 1000; ++i)
        buffer_->AddText(text);
    EXPECT_EQ(allocations.count(), 0U);
    EXPECT_EQ(buffer_->Value().units(), std::u16string(16 * 1000, u'x') + u" ");
    buffer_->AddText(text);
    EXPECT_GT(allocations.count(), 0U) << "the count counts";
}

TEST_F(StringBuffer, IsWhatItsRulesMakeOfAnySequenceOfCalls) {
    std::mt19937 random(20261121);
    std::u16string text;
    std::size_t position = 1;
    alloc(0);
    for (int step = 0; step < 20000; ++step) {
        const std::size_t amount = random() % 9;
        const std::u16string piece(amount, static_cast<char16_t>(u'a' + random() % 26));
        switch (random() % 16) {
        case 0:
            alloc(static_cast<std::int32_t>(amount * 8));
            text.assign(amount * 8, u' ');
            position = 1;
            break;
        case 1:
            buffer_->Trim();
            text.resize(position - 1);
            break;
        case 2:
            buffer_->putValue(piece);
            text = piece;
            position = amount + 1;
            break;
        default:
            buffer_->AddText(piece);
            if (amount == 0) break;
            if (position > text.size()) text += piece;
            else if (position + amount > text.size()) text = text.substr(0, position - 1) + piece;
            else text.replace(position - 1, amount, piece);
            position += amount;
        }
        ASSERT_EQ(buffer_->Value().units(), text) << step;
        ASSERT_EQ(buffer_->Size(), static_cast<std::int32_t>(text.size())) << step;
    }
}

TEST_F(StringBuffer, WorksLateBound) {
    const Object late = buffer_->asObject();
    late.call(u"Alloc", {4});
    EXPECT_EQ(*late.get(u"Value").as<WString>(), u"    ") << "padded with blanks by default";
    late.call(u"Alloc", {4, u"-"});
    late.call(u"AddText", {12});
    EXPECT_EQ(*late.get(u"Value").as<WString>(), u"12--");
    late.call(u"Trim");
    EXPECT_EQ(*late.get(u"Size").as<std::int32_t>(), 2);
    late.put(u"Value", u"new");
    EXPECT_EQ(*late.get(u"Value").as<WString>(), u"new");
    EXPECT_EQ(raisedBy([&] { late.put(u"Size", 1); }), error::kNoSuchMember) << "read-only";
}

}  // namespace
}  // namespace orvane
