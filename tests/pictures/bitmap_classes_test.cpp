#include "pictures/CBackBitmap.h"
#include "pictures/CCompatibleBitmap.h"
#include "pictures/CCompatibleDC.h"
#include "pictures/fake_picture.h"
#include "pictures/picture_pixels.h"
#include "pictures/raised_failure.h"
#include "platform/oleaut32.h"
#include "support/raised_error.h"
#include "support/recorder.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>

/// The three helper classes and who owns a bitmap when.
namespace orvane {
namespace {

using namespace platform;
using test::raisesInternal;
using test::Recorder;
using test::ScopedTarget;

using Names = std::vector<std::string>;

bool isThere(BitmapHandle bitmap) {
    return test::factsOf(bitmap).width != 0;
}

TEST(CBackBitmap, HoldsNothingWhenNew) {
    Recorder recorder(gdi32);
    { EXPECT_EQ(CBackBitmap().hBitmap(), BitmapHandle::none); }
    EXPECT_EQ(recorder.names(), Names());
}

TEST(CBackBitmap, IsASectionOfOnePixelFromTheTop) {
    Recorder recorder(gdi32);
    CBackBitmap back;
    back.Initialize(24, nullptr);
    EXPECT_TRUE(recorder.saw({"CreateDIBSection(0, {width 1, height -1, bits 24, compression "
                              "0, colours 0}, 0, address) -> *"}));
    const BitmapFacts facts = test::factsOf(back.hBitmap());
    EXPECT_EQ(facts.width, 1);
    EXPECT_EQ(facts.height, 1);
    EXPECT_EQ(facts.bitsPixel, 24);
}

TEST(CBackBitmap, PassesThePaletteOn) {
    std::array<std::uint32_t, 256> palette{};
    palette[0] = 0x00112233;
    palette[255] = 0x00445566;
    BitmapInfo seen;
    ScopedTarget fake(gdi32.CreateDIBSection,
                      [&](DeviceContext, const BitmapInfo& info, std::uint32_t, void*&) {
                          seen = info;
                          return BitmapHandle::none;
                      });
    CBackBitmap().Initialize(8, palette.data());
    EXPECT_EQ(seen.biBitCount, 8);
    EXPECT_EQ(seen.bmiColors, palette);
    CBackBitmap().Initialize(8, nullptr);
    EXPECT_EQ(seen.bmiColors, (std::array<std::uint32_t, 256>{}));
}

TEST(CBackBitmap, DoesNotTestWhetherTheSectionWasMade) {
    ScopedTarget fake(gdi32.CreateDIBSection, [](auto&&...) { return BitmapHandle::none; });
    CBackBitmap back;
    EXPECT_EQ(test::raisedBy([&] { back.Initialize(24, nullptr); }), 0);
    EXPECT_EQ(back.hBitmap(), BitmapHandle::none);
}

TEST(CBackBitmap, DeletesItsBitmapAtItsEnd) {
    BitmapHandle bitmap;
    {
        CBackBitmap back;
        back.Initialize(24, nullptr);
        bitmap = back.hBitmap();
        EXPECT_TRUE(isThere(bitmap));
    }
    EXPECT_FALSE(isThere(bitmap));
}

TEST(CBackBitmap, LeavesItsBitmapToThePictureThatWasMadeOfIt) {
    Picture picture;
    {
        CBackBitmap back;
        back.Initialize(24, nullptr);
        picture = back.GetStdPicture();
        EXPECT_EQ(test::bitmapOf(picture), back.hBitmap());
    }
    EXPECT_TRUE(isThere(test::bitmapOf(picture)));
}

TEST(CBackBitmap, KeepsItsBitmapWhenThePictureHasAnotherHandle) {
    // A loader that copies: its picture is of a bitmap of its own.
    CBackBitmap other;
    other.Initialize(24, nullptr);
    Picture copy = other.GetStdPicture();
    BitmapHandle bitmap;
    {
        ScopedTarget fake(oleaut32.OleCreatePictureIndirect,
                          [&](const PictureDescription&, bool, IPictureDisp*& picture) {
                              picture = test::sharedOf(copy);
                              return std::int32_t{0};
                          });
        CBackBitmap back;
        back.Initialize(24, nullptr);
        bitmap = back.hBitmap();
        EXPECT_EQ(test::bitmapOf(back.GetStdPicture()), other.hBitmap());
        EXPECT_TRUE(isThere(bitmap));
    }
    EXPECT_FALSE(isThere(bitmap));
}

TEST(CCompatibleBitmap, DeletesTheHandleThatItWasGiven) {
    CBackBitmap back;
    back.Initialize(24, nullptr);
    const Picture picture = back.GetStdPicture();
    {
        CCompatibleBitmap bitmap;
        bitmap.SetHandle(back.hBitmap());
        EXPECT_EQ(bitmap.hBitmap(), back.hBitmap());
    }
    EXPECT_FALSE(isThere(back.hBitmap()));
}

class CompatibleDC : public testing::Test {
protected:
    CompatibleDC() {
        back_.Initialize(24, nullptr);
        dc_.emplace();
    }

    CBackBitmap back_;
    std::optional<CCompatibleDC> dc_;
};

TEST_F(CompatibleDC, IsMadeForTheScreenAndDeletedAtItsEnd) {
    Recorder recorder(gdi32);
    { EXPECT_NE(CCompatibleDC().hDC(), DeviceContext::none); }
    EXPECT_TRUE(recorder.saw({"CreateCompatibleDC(0) -> *", "DeleteDC(*) -> true"}));
}

TEST_F(CompatibleDC, SaysThatItCanNotBeMade) {
    ScopedTarget fake(gdi32.CreateCompatibleDC, [](DeviceContext) { return DeviceContext::none; });
    EXPECT_TRUE(raisesInternal(u"Can't create compatible DC.", [] { CCompatibleDC(); }));
}

TEST_F(CompatibleDC, MakesBitmapsOfTheDepthOfTheSelectedOne) {
    dc_->SelectBitmap(back_.hBitmap());
    const auto bitmap = dc_->CreateCompatibleBitmap(7, 5);
    const BitmapFacts facts = test::factsOf(bitmap->hBitmap());
    EXPECT_EQ(facts.width, 7);
    EXPECT_EQ(facts.height, 5);
    EXPECT_EQ(facts.bitsPixel, 24);
}

TEST_F(CompatibleDC, SaysThatABitmapCanNotBeMade) {
    ScopedTarget fake(gdi32.CreateCompatibleBitmap, [](auto&&...) { return BitmapHandle::none; });
    EXPECT_TRUE(raisesInternal(u"Can't create compatible bitmap.",
                               [this] { dc_->CreateCompatibleBitmap(1, 1); }));
}

TEST_F(CompatibleDC, RestoresTheFormerBitmapBeforeItSelectsAnother) {
    CBackBitmap second;
    second.Initialize(24, nullptr);
    Recorder recorder(gdi32);
    dc_->SelectBitmap(back_.hBitmap());
    dc_->SelectBitmap(second.hBitmap());
    const std::string own = recorder.calls().at(0).result;
    const auto number = [](auto handle) { return described(handle); };
    const std::string dc = number(dc_->hDC());
    EXPECT_TRUE(recorder.saw({
        "SelectObject(" + dc + ", " + number(back_.hBitmap()) + ") -> " + own,
        "SelectObject(" + dc + ", " + own + ") -> " + number(back_.hBitmap()),
        "SelectObject(" + dc + ", " + number(second.hBitmap()) + ") -> " + own,
    }));
}

TEST_F(CompatibleDC, SelectingNoneRestoresOnce) {
    dc_->SelectBitmap(back_.hBitmap());
    Recorder recorder(gdi32);
    dc_->SelectBitmap(BitmapHandle::none);
    dc_->SelectBitmap(BitmapHandle::none);
    dc_.reset();
    EXPECT_EQ(recorder.names(), (Names{"SelectObject", "DeleteDC"}));
}

TEST_F(CompatibleDC, LeavesASelectedBitmapAliveAndUnselectedAtItsEnd) {
    dc_->SelectBitmap(back_.hBitmap());
    dc_.reset();
    EXPECT_TRUE(isThere(back_.hBitmap()));
    CCompatibleDC other;
    EXPECT_EQ(test::raisedBy([&] { other.SelectBitmap(back_.hBitmap()); }), 0);
}

TEST_F(CompatibleDC, SaysThatABitmapCanNotBeSelected) {
    ScopedTarget fake(gdi32.SelectObject, [](auto&&...) { return BitmapHandle::none; });
    EXPECT_TRUE(
        raisesInternal(u"Can't select bitmap.", [this] { dc_->SelectBitmap(back_.hBitmap()); }));
}

TEST_F(CompatibleDC, RefusesWhatIsNoBitmap) {
    EXPECT_TRUE(raisesInternal(u"Can't select bitmap.", [this] {
        dc_->SelectBitmap(static_cast<BitmapHandle>(0x7FFF1234));
    }));
}

TEST_F(CompatibleDC, CopiesToATarget) {
    Recorder recorder(gdi32);
    const auto bitmap = [this] {
        dc_->SelectBitmap(back_.hBitmap());
        return dc_->CreateCompatibleBitmap(4, 4);
    }();
    dc_->SelectBitmap(bitmap->hBitmap());
    CCompatibleDC target;
    dc_->BitBlt(target.hDC(), 1, 2, 3, 4, 5, 6, kSrcCopy);
    EXPECT_EQ(recorder.linesOf("BitBlt"),
              (Names{"BitBlt(" + described(target.hDC()) + ", 1, 2, 3, 4, " +
                     described(dc_->hDC()) + ", 5, 6, 13369376) -> true"}));
}

TEST_F(CompatibleDC, SaysThatCopyingFailed) {
    ScopedTarget fake(gdi32.BitBlt, [](auto&&...) { return false; });
    EXPECT_TRUE(raisesInternal(u"Cant BitBlt to target DC.",
                               [this] { dc_->BitBlt(dc_->hDC(), 0, 0, 1, 1, 0, 0, kSrcCopy); }));
}

TEST_F(CompatibleDC, ThePictureOutlivesAllHelpers) {
    Picture picture;
    {
        dc_->SelectBitmap(back_.hBitmap());
        const auto bitmap = dc_->CreateCompatibleBitmap(6, 4);
        dc_->SelectBitmap(bitmap->hBitmap());
        dc_.reset();
        picture = bitmap->GetStdPicture();
    }
    EXPECT_EQ(test::factsOf(picture).width, 6);
    EXPECT_EQ(test::pixelsOf(picture).size(), 20U * 4U);
}

}  // namespace
}  // namespace orvane
