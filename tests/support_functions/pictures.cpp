#include "support/pictures.h"

#include "platform/gdi32.h"
#include "platform/oleaut32.h"
#include "platform/user32.h"
#include "support/raised_error.h"
#include "support/recorder.h"

#include <gtest/gtest.h>

namespace orvane {
namespace {

using platform::BitmapHandle;
using platform::gdi32;
using platform::oleaut32;
using platform::PictureDescription;
using test::raisedBy;
using test::ScopedTarget;

/// A bitmap of its own for each test.
class BitmapPicture : public testing::Test {
protected:
    void SetUp() override {
        const platform::DeviceContext dc = gdi32.CreateCompatibleDC(platform::DeviceContext::none);
        bitmap_ = gdi32.CreateCompatibleBitmap(dc, 3, 2);
        gdi32.DeleteDC(dc);
        ASSERT_NE(bitmap_, BitmapHandle::none);
    }

    bool bitmapIsThere() const {
        platform::BitmapFacts facts;
        return gdi32.GetObjectA(bitmap_, facts) != 0;
    }

    BitmapHandle bitmap_ = BitmapHandle::none;
};

TEST_F(BitmapPicture, IsABitmapPictureOverTheSameHandle) {
    const Picture picture = nqGetBitmapFromHandle(bitmap_);
    EXPECT_EQ(picture.type(), Picture::Type::bitmap);
    EXPECT_EQ(picture.handle(), static_cast<std::uint32_t>(bitmap_));
}

TEST_F(BitmapPicture, OwnsTheBitmapAndDeletesItAtItsEnd) {
    Picture picture = nqGetBitmapFromHandle(bitmap_);
    EXPECT_TRUE(bitmapIsThere());
    picture = nullptr;
    EXPECT_FALSE(bitmapIsThere());
}

TEST_F(BitmapPicture, IsAskedForAsAnOwner) {
    test::Recorder recorder(oleaut32);
    const Picture picture = nqGetBitmapFromHandle(bitmap_);
    ASSERT_EQ(recorder.calls().size(), 1U);
    EXPECT_EQ(recorder.calls()[0].arguments[1], "true");
    EXPECT_EQ(recorder.calls()[0].released.size(), 1U);
}

TEST_F(BitmapPicture, RaisesOutOfMemoryAndLeavesTheBitmapToItsOwner) {
    ScopedTarget fake(oleaut32.OleCreatePictureIndirect,
                      [](const PictureDescription&, bool, IPictureDisp*&) {
                          return static_cast<std::int32_t>(0x8007000E);
                      });
    EXPECT_EQ(raisedBy([this] { nqGetBitmapFromHandle(bitmap_); }), error::kOutOfMemory);
    EXPECT_TRUE(bitmapIsThere());
    EXPECT_TRUE(gdi32.DeleteObject(bitmap_));
}

TEST_F(BitmapPicture, RaisesAnyOtherFailedStatus) {
    constexpr auto kUnexpected = static_cast<std::int32_t>(0x8000FFFF);
    ScopedTarget fake(oleaut32.OleCreatePictureIndirect,
                      [](const PictureDescription&, bool, IPictureDisp*&) { return kUnexpected; });
    EXPECT_EQ(raisedBy([this] { nqGetBitmapFromHandle(bitmap_); }), kUnexpected);
    EXPECT_TRUE(gdi32.DeleteObject(bitmap_));
}

TEST_F(BitmapPicture, IsCopiedToABitmapOfItsOwn) {
    test::Recorder recorder(platform::user32);
    const BitmapHandle copy = nqCopyBitmap(bitmap_);
    EXPECT_TRUE(recorder.saw({"CopyImage(*, 0, 0, 0, 8192) -> *"}));
    ASSERT_NE(copy, BitmapHandle::none);
    EXPECT_NE(copy, bitmap_);
    platform::BitmapFacts facts;
    EXPECT_EQ(gdi32.GetObjectA(copy, facts), 24);
    EXPECT_EQ(facts.width, 3);
    EXPECT_EQ(facts.height, 2);
    EXPECT_TRUE(gdi32.DeleteObject(bitmap_));
    EXPECT_EQ(gdi32.GetObjectA(copy, facts), 24) << "the copy is not the original's";
    EXPECT_TRUE(gdi32.DeleteObject(copy));
}

TEST(CopyBitmap, OfWhatIsNoBitmapIsNone) {
    EXPECT_EQ(nqCopyBitmap(BitmapHandle::none), BitmapHandle::none);
    EXPECT_EQ(nqCopyBitmap(BitmapHandle{0xDEAD}), BitmapHandle::none);
}

TEST(TranslateColor, LeavesPlainColoursAsTheyAre) {
    for (const std::uint32_t color : {0u, 0x123456u, 0xFFFFFFu}) {
        EXPECT_EQ(nqTranslateColor(color, 0), color);
    }
}

TEST(TranslateColor, TakesTheFormOfAPalettesColourAway) {
    EXPECT_EQ(nqTranslateColor(0x02123456, 0), 0x123456u);
}

TEST(TranslateColor, GivesTheColourOfASystemNumber) {
    for (std::int32_t index = 0; index <= 30; ++index) {
        EXPECT_EQ(nqTranslateColor(0x80000000u | static_cast<std::uint32_t>(index), 0),
                  platform::user32.GetSysColor(index))
            << index;
    }
}

TEST(TranslateColor, GivesTheColourOfANumberInTheDefaultPalette) {
    EXPECT_EQ(nqTranslateColor(0x01000000, 0), 0x000000u);
    EXPECT_EQ(nqTranslateColor(0x01000001, 0), 0x000080u);  // dark red
    EXPECT_EQ(nqTranslateColor(0x01000009, 0), 0xF0CAA6u);  // sky blue
    EXPECT_EQ(nqTranslateColor(0x01000013, 0), 0xFFFFFFu);
}

TEST(TranslateColor, RaisesInvalidArgumentForWhatIsNoColour) {
    for (const std::uint32_t color : {0x01000014u, 0x01010000u, 0x03000000u, 0x7F000000u,
                                      0x8000001Fu, 0x80000100u, 0x81000000u, 0xFFFFFFFFu}) {
        EXPECT_EQ(raisedBy([color] { nqTranslateColor(color, 0); }), error::kInvalidArgument)
            << std::hex << color;
    }
    EXPECT_EQ(raisedBy([] { nqTranslateColor(0x01000000, 1); }), error::kInvalidArgument);
}

}  // namespace
}  // namespace orvane
