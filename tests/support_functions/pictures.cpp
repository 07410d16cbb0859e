#include "support/pictures.h"

#include "platform/gdi32.h"
#include "platform/oleaut32.h"
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

}  // namespace
}  // namespace orvane
