#include "pictures/COffscreenPicture.h"

#include "pictures/fake_picture.h"
#include "pictures/picture_pixels.h"
#include "pictures/raised_failure.h"
#include "platform/user32.h"
#include "support/pictures.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <utility>

/// What the offscreen picture does when the platform does its part.
namespace orvane {
namespace {

using test::failureOf;
using test::pixelsOf;

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint32_t kRed = 0x0000FF;  // 0x00BBGGRR
constexpr std::uint32_t kGreen = 0x00FF00;
constexpr std::uint32_t kBlue = 0xFF0000;
constexpr std::uint32_t kSrcInvert = 0x00660046;
constexpr std::uint32_t kPatCopy = 0x00F00021;
constexpr std::uint32_t kButtonFace = 0x8000000F;

/// Blue, green, red of `count` pixels.
Bytes pixels(std::uint32_t color, std::size_t count = 1) {
    Bytes out;
    for (std::size_t i = 0; i < count; ++i) {
        for (const int shift : {16, 8, 0}) {
            out.push_back(static_cast<std::uint8_t>(color >> shift));
        }
    }
    return out;
}

/// One pixel of a surface or picture.
Bytes at(const Picture& picture, std::size_t x, std::size_t y) {
    const Bytes all = pixelsOf(picture);
    const auto width = static_cast<std::size_t>(test::factsOf(picture).width);
    const auto first = static_cast<std::ptrdiff_t>(y * ((width * 3 + 3) / 4 * 4) + x * 3);
    return Bytes(all.begin() + first, all.begin() + first + 3);
}
Bytes at(const COffscreenPicture& surface, std::size_t x, std::size_t y) {
    return at(surface.Picture(), x, y);
}

/// A picture of one colour.
Picture colored(std::int32_t width, std::int32_t height, std::uint32_t color) {
    COffscreenPicture surface;
    surface.Create(width, height, color);
    return surface.Picture();
}

/// Whether `action` raises a bad argument: error 5 by the class, with the runtime's own text.
template <class Action>
bool raisesBadArgument(Action&& action) {
    const auto failure = failureOf(action);
    return failure && failure->number == error::kInvalidArgument &&
           failure->source == u"COffscreenPicture" &&
           failure->description == standardDescription(error::kInvalidArgument);
}

TEST(COffscreenPicture, HasTheValuesOfNothingBeforeItIsMade) {
    COffscreenPicture surface;
    EXPECT_FALSE(surface.Initialized());
    EXPECT_TRUE(surface.Picture().isNothing());
    EXPECT_EQ(surface.hDC(), platform::DeviceContext::none);
    EXPECT_EQ(surface.hBitmap(), platform::BitmapHandle::none);
    EXPECT_EQ(surface.Height(), -1);
    EXPECT_EQ(surface.BkColor(), 0u);
    EXPECT_EQ(surface.BkMode(), 0);
    EXPECT_EQ(surface.PenColor(), 0u);
    EXPECT_EQ(surface.PenWidth(), 0);
    EXPECT_EQ(surface.PenStyle(), 0);
    EXPECT_EQ(surface.BrushColor(), 0u);
    EXPECT_EQ(surface.CurrentX(), 0);
    EXPECT_EQ(surface.CurrentY(), 0);
    EXPECT_EQ(surface.ROP2(), 0);
}

TEST(COffscreenPicture, WidthReadsMinusOneBeforeCreate) {
    EXPECT_EQ(COffscreenPicture().Width(), -1);
}

TEST(COffscreenPicture, WritesDoNothingBeforeItIsMadeWhateverIsWritten) {
    COffscreenPicture surface;
    COffscreenPicture source;
    surface.Destroy();
    surface.PaintPicture(nullptr, 0, 0, -1, -1, 0, 0, platform::kSrcCopy);
    surface.PaintPicture2(source, 0, 0, -1, -1, 0, 0, platform::kSrcCopy);
    surface.putBkColor(0x99000000);
    surface.putBkMode(1);
    surface.putPenColor(0x99000000);
    surface.putPenWidth(3);
    surface.putPenStyle(1);
    surface.putBrushColor(0x99000000);
    surface.putCurrentX(3);
    surface.putCurrentY(3);
    surface.putROP2(0);
    EXPECT_FALSE(surface.Initialized());
    EXPECT_EQ(surface.PenWidth(), 0);
    EXPECT_EQ(surface.CurrentX(), 0);
}

TEST(COffscreenPicture, CreateMakesASurfaceOfOneColour) {
    COffscreenPicture surface;
    surface.Create(5, 3, 0x332211);
    EXPECT_TRUE(surface.Initialized());
    EXPECT_NE(surface.hDC(), platform::DeviceContext::none);
    EXPECT_NE(surface.hBitmap(), platform::BitmapHandle::none);
    EXPECT_EQ(surface.Width(), 5);
    EXPECT_EQ(surface.Height(), 3);
    for (std::size_t y = 0; y < 3; ++y) {
        for (std::size_t x = 0; x < 5; ++x) {
            EXPECT_EQ(at(surface, x, y), pixels(0x332211)) << x << ", " << y;
        }
    }
}

TEST(COffscreenPicture, HasTheScreensDepth) {
    COffscreenPicture surface;
    surface.Create(1, 1, 0);
    EXPECT_EQ(test::factsOf(surface.hBitmap()).bitsPixel, 32);
}

TEST(COffscreenPicture, IsFilledAlsoWhereItIsOneRowOrColumn) {
    for (const auto& [width, height] : {std::pair{1, 4}, std::pair{4, 1}, std::pair{2, 2}}) {
        const Picture picture = colored(width, height, kRed);
        for (std::int32_t i = 0; i < std::max(width, height); ++i) {
            EXPECT_EQ(at(picture, static_cast<std::size_t>(std::min(i, width - 1)),
                         static_cast<std::size_t>(std::min(i, height - 1))),
                      pixels(kRed));
        }
    }
}

TEST(COffscreenPicture, IsFilledAlsoWhereItIsOnePixel) {
    const Bytes pixel = at(colored(1, 1, kRed), 0, 0);
#ifdef _WIN32
    // Wine's frame of a single pixel has none: what it leaves is the new bitmap's black.
    EXPECT_TRUE(pixel == pixels(kRed) || pixel == pixels(0));
#else
    EXPECT_EQ(pixel, pixels(kRed));
#endif
}

TEST(COffscreenPicture, CreateOfNoWidthRaisesErrorFiveAndIsNotInitialized) {
    COffscreenPicture surface;
    EXPECT_TRUE(raisesBadArgument([&] { surface.Create(0, 10, 0); }));
    EXPECT_FALSE(surface.Initialized());
}

TEST(COffscreenPicture, SizesBelowOneAreBadArguments) {
    for (const auto& [width, height] :
         {std::pair{10, 0}, std::pair{-1, 10}, std::pair{10, -2147483647 - 1}}) {
        COffscreenPicture surface;
        EXPECT_TRUE(raisesBadArgument([&, w = width, h = height] { surface.Create(w, h, 0); }));
        EXPECT_FALSE(surface.Initialized());
    }
}

TEST(COffscreenPicture, AFailedCreateHasDestroyedTheOldSurface) {
    COffscreenPicture surface;
    surface.Create(2, 2, kRed);
    EXPECT_TRUE(raisesBadArgument([&] { surface.Create(0, 10, 0); }));
    EXPECT_FALSE(surface.Initialized());
    EXPECT_EQ(surface.Width(), -1);
}

TEST(COffscreenPicture, AColourThatIsNoneIsABadArgumentOfCreate) {
    for (const std::uint32_t color : {0x99000000u, 0x80000063u, 0x01000014u, 0xFFFFFFFFu}) {
        COffscreenPicture surface;
        EXPECT_TRUE(raisesBadArgument([&] { surface.Create(2, 2, color); })) << std::hex << color;
        EXPECT_FALSE(surface.Initialized());
    }
}

TEST(COffscreenPicture, CreateTakesASystemColour) {
    const std::uint32_t face = platform::user32.GetSysColor(15);
    COffscreenPicture surface;
    surface.Create(2, 2, kButtonFace);
    EXPECT_EQ(at(surface, 0, 0), pixels(face));
    EXPECT_EQ(surface.BrushColor(), face);
    EXPECT_EQ(surface.PenColor(), face);
}

TEST(COffscreenPicture, CreateAgainStartsFromTheBeginning) {
    COffscreenPicture surface;
    surface.Create(2, 2, kRed);
    surface.putBkColor(kGreen);
    surface.putROP2(7);
    surface.putCurrentX(4);
    surface.putPenWidth(9);
    surface.Create(3, 1, kBlue);
    EXPECT_EQ(surface.Width(), 3);
    EXPECT_EQ(surface.BkColor(), 0xFFFFFFu);
    EXPECT_EQ(surface.ROP2(), platform::kRop2CopyPen);
    EXPECT_EQ(surface.CurrentX(), 0);
    EXPECT_EQ(surface.PenWidth(), 1);
    EXPECT_EQ(at(surface, 2, 0), pixels(kBlue));
}

TEST(COffscreenPicture, HasTheContextsValuesAfterCreate) {
    COffscreenPicture surface;
    surface.Create(2, 2, kRed);
    EXPECT_EQ(surface.BkColor(), 0xFFFFFFu);
    EXPECT_EQ(surface.BkMode(), platform::kBackgroundOpaque);
    EXPECT_EQ(surface.PenColor(), kRed);
    EXPECT_EQ(surface.PenWidth(), 1);
    EXPECT_EQ(surface.PenStyle(), 0);
    EXPECT_EQ(surface.BrushColor(), kRed);
    EXPECT_EQ(surface.CurrentX(), 0);
    EXPECT_EQ(surface.CurrentY(), 0);
    EXPECT_EQ(surface.ROP2(), platform::kRop2CopyPen);
}

TEST(COffscreenPicture, DestroyFreesEverythingAndMayComeTwice) {
    COffscreenPicture surface;
    surface.Create(2, 2, kRed);
    const platform::BitmapHandle bitmap = surface.hBitmap();
    surface.Destroy();
    EXPECT_FALSE(surface.Initialized());
    EXPECT_EQ(surface.hDC(), platform::DeviceContext::none);
    EXPECT_EQ(surface.hBitmap(), platform::BitmapHandle::none);
    EXPECT_EQ(test::factsOf(bitmap).width, 0);
    surface.Destroy();
}

TEST(COffscreenPicture, PictureReadTwiceGivesTwoIndependentBitmaps) {
    COffscreenPicture surface;
    surface.Create(2, 2, kRed);
    const Picture first = surface.Picture();
    surface.PaintPicture(colored(2, 2, kGreen), 0, 0, -1, -1, 0, 0, platform::kSrcCopy);
    const Picture second = surface.Picture();
    EXPECT_NE(first.handle(), second.handle());
    EXPECT_NE(test::bitmapOf(first), surface.hBitmap());
    EXPECT_EQ(at(first, 1, 1), pixels(kRed));
    EXPECT_EQ(at(second, 1, 1), pixels(kGreen));
    EXPECT_EQ(first.type(), Picture::Type::bitmap);
}

TEST(COffscreenPicture, ThePictureOutlivesTheSurface) {
    Picture picture;
    {
        COffscreenPicture surface;
        surface.Create(3, 2, kBlue);
        picture = surface.Picture();
    }
    EXPECT_EQ(test::factsOf(picture).width, 3);
    EXPECT_EQ(at(picture, 2, 1), pixels(kBlue));
}

TEST(COffscreenPicture, IsMadeFromACopyOfAPicture) {
    const Picture picture = colored(4, 3, kGreen);
    COffscreenPicture surface;
    surface.putPicture(picture);
    EXPECT_TRUE(surface.Initialized());
    EXPECT_EQ(surface.Width(), 4);
    EXPECT_EQ(surface.Height(), 3);
    EXPECT_NE(surface.hBitmap(), test::bitmapOf(picture));
    surface.PaintPicture(colored(2, 2, kRed), 0, 0, 1, 1, 0, 0, kSrcInvert);
    EXPECT_EQ(at(picture, 0, 0), pixels(kGreen)) << "the caller's stays as it is";
    EXPECT_EQ(at(surface, 3, 2), pixels(kGreen));
}

TEST(COffscreenPicture, MayTakeItsOwnPicture) {
    COffscreenPicture surface;
    surface.Create(2, 2, kRed);
    surface.putPicture(surface.Picture());
    EXPECT_EQ(surface.Width(), 2);
    EXPECT_EQ(at(surface, 1, 1), pixels(kRed));
}

TEST(COffscreenPicture, HasNoPenAndBrushOfItsOwnWhenMadeFromAPicture) {
    COffscreenPicture surface;
    surface.putPicture(colored(2, 2, kRed));
    EXPECT_EQ(surface.PenColor(), 0u);
    EXPECT_EQ(surface.PenWidth(), 0);
    EXPECT_EQ(surface.PenStyle(), 0);
    EXPECT_EQ(surface.BrushColor(), 0u);
    EXPECT_EQ(surface.BkColor(), 0xFFFFFFu);
    EXPECT_EQ(surface.BkMode(), platform::kBackgroundOpaque);
    EXPECT_EQ(surface.ROP2(), platform::kRop2CopyPen);
}

TEST(COffscreenPicture, SettingAPenOnASurfaceMadeFromAPictureStartsFromZeroes) {
    COffscreenPicture surface;
    surface.putPicture(colored(2, 2, kRed));
    surface.putPenColor(kGreen);
    EXPECT_EQ(surface.PenColor(), kGreen);
    EXPECT_EQ(surface.PenWidth(), 0);
    EXPECT_EQ(surface.PenStyle(), 0);
    surface.putPicture(colored(2, 2, kRed));
    surface.putPenWidth(7);
    EXPECT_EQ(surface.PenColor(), 0u);
    EXPECT_EQ(surface.PenWidth(), 7);
    surface.putPicture(colored(2, 2, kRed));
    surface.putPenStyle(2);
    EXPECT_EQ(surface.PenStyle(), 2);
    EXPECT_EQ(surface.PenWidth(), 0);
    surface.putBrushColor(kBlue);
    EXPECT_EQ(surface.BrushColor(), kBlue);
}

TEST(COffscreenPicture, SettingAMetafileOrIconRaisesErrorFiveAndLeavesAnEmptyObject) {
    for (const Picture::Type type : {Picture::Type::metafile, Picture::Type::icon,
                                     Picture::Type::enhancedMetafile, Picture::Type::none}) {
        COffscreenPicture surface;
        surface.Create(2, 2, kRed);
        const platform::BitmapHandle old = surface.hBitmap();
        EXPECT_TRUE(raisesBadArgument([&] { surface.putPicture(test::FakePicture::make(type)); }));
        EXPECT_FALSE(surface.Initialized());
        EXPECT_EQ(test::factsOf(old).width, 0) << "the old surface is destroyed before";
    }
}

TEST(COffscreenPicture, SettingNothingRaisesErrorFiveAndLeavesAnEmptyObject) {
    COffscreenPicture surface;
    surface.Create(2, 2, kRed);
    EXPECT_TRUE(raisesBadArgument([&] { surface.putPicture(nullptr); }));
    EXPECT_FALSE(surface.Initialized());
}

TEST(COffscreenPicture, PaintsAPieceOfAPictureToAPlace) {
    COffscreenPicture source;
    source.Create(4, 4, kGreen);
    source.PaintPicture(colored(2, 2, kBlue), 2, 2, -1, -1, 0, 0, platform::kSrcCopy);
    COffscreenPicture surface;
    surface.Create(5, 5, kRed);
    surface.PaintPicture(source.Picture(), 3, 1, 2, 1, 1, 2, platform::kSrcCopy);
    EXPECT_EQ(at(surface, 2, 1), pixels(kRed));
    EXPECT_EQ(at(surface, 3, 1), pixels(kGreen));
    EXPECT_EQ(at(surface, 4, 1), pixels(kBlue));
    EXPECT_EQ(at(surface, 3, 2), pixels(kRed));
}

TEST(COffscreenPicture, ASizeOfMinusOneIsTheSources) {
    COffscreenPicture source;
    source.Create(2, 3, kBlue);
    COffscreenPicture surface;
    surface.Create(6, 6, kRed);
    surface.PaintPicture2(source, 1, 1, -1, 1, 0, 0, platform::kSrcCopy);
    EXPECT_EQ(at(surface, 2, 1), pixels(kBlue));
    EXPECT_EQ(at(surface, 3, 1), pixels(kRed));
    EXPECT_EQ(at(surface, 2, 2), pixels(kRed));
    surface.PaintPicture2(source, 4, 1, 1, -1, 0, 0, platform::kSrcCopy);
    EXPECT_EQ(at(surface, 4, 3), pixels(kBlue));
    EXPECT_EQ(at(surface, 4, 4), pixels(kRed));
    EXPECT_EQ(at(surface, 5, 1), pixels(kRed));
}

TEST(COffscreenPicture, PaintsWithARasterOperation) {
    COffscreenPicture source;
    source.Create(2, 2, 0xFFFFFF);
    COffscreenPicture surface;
    surface.Create(2, 2, kRed);
    surface.PaintPicture2(source, 0, 0, -1, -1, 0, 0, kSrcInvert);
    EXPECT_EQ(at(surface, 0, 0), pixels(0xFFFF00));
    surface.putBrushColor(kGreen);
    surface.PaintPicture2(source, 0, 0, 1, 1, 0, 0, kPatCopy);
    EXPECT_EQ(at(surface, 0, 0), pixels(kGreen)) << "the pattern is the surface's brush";
    EXPECT_EQ(at(surface, 1, 1), pixels(0xFFFF00));
}

TEST(COffscreenPicture, MayBePaintedFromItself) {
    COffscreenPicture surface;
    surface.Create(3, 1, kRed);
    surface.PaintPicture(colored(2, 2, kBlue), 0, 0, 1, 1, 0, 0, kSrcInvert);
    surface.PaintPicture2(surface, 1, 0, 2, 1, 0, 0, platform::kSrcCopy);
    EXPECT_EQ(at(surface, 1, 0), at(surface, 0, 0));
    EXPECT_EQ(at(surface, 2, 0), pixels(kRed));
}

TEST(COffscreenPicture, AnUninitializedSourceIsABadArgument) {
    COffscreenPicture source;
    COffscreenPicture surface;
    surface.Create(2, 2, kRed);
    EXPECT_TRUE(raisesBadArgument(
        [&] { surface.PaintPicture2(source, 0, 0, -1, -1, 0, 0, platform::kSrcCopy); }));
    EXPECT_TRUE(surface.Initialized());
}

TEST(COffscreenPicture, PaintingFromNothingOrAnIconIsABadArgument) {
    COffscreenPicture surface;
    surface.Create(2, 2, kRed);
    EXPECT_TRUE(raisesBadArgument(
        [&] { surface.PaintPicture(nullptr, 0, 0, -1, -1, 0, 0, platform::kSrcCopy); }));
    EXPECT_TRUE(raisesBadArgument([&] {
        surface.PaintPicture(test::FakePicture::make(Picture::Type::icon), 0, 0, -1, -1, 0, 0,
                             platform::kSrcCopy);
    }));
    EXPECT_TRUE(surface.Initialized());
    EXPECT_EQ(at(surface, 1, 1), pixels(kRed));
}

TEST(COffscreenPicture, BkModeOfOneRaisesErrorFiveWhileTwoPasses) {
    COffscreenPicture surface;
    surface.Create(2, 2, kRed);
    EXPECT_TRUE(raisesBadArgument([&] { surface.putBkMode(1); }));
    EXPECT_FALSE(failureOf([&] { surface.putBkMode(2); }));
    EXPECT_EQ(surface.BkMode(), 2);
}

TEST(COffscreenPicture, EveryOtherBkModeIsABadArgument) {
    COffscreenPicture surface;
    surface.Create(2, 2, kRed);
    for (const std::int32_t mode : {-1, 0, 3, 2147483647}) {
        EXPECT_TRUE(raisesBadArgument([&] { surface.putBkMode(mode); })) << mode;
    }
}

TEST(COffscreenPicture, BkColorIsTranslated) {
    COffscreenPicture surface;
    surface.Create(2, 2, kRed);
    surface.putBkColor(0x02112233);
    EXPECT_EQ(surface.BkColor(), 0x112233u);
    surface.putBkColor(kButtonFace);
    EXPECT_EQ(surface.BkColor(), platform::user32.GetSysColor(15));
    const auto failure = failureOf([&] { surface.putBkColor(0x99000000); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number, error::kInvalidArgument);
    EXPECT_EQ(surface.BkColor(), platform::user32.GetSysColor(15));
}

TEST(COffscreenPicture, EachValueOfThePenIsSetForItself) {
    COffscreenPicture surface;
    surface.Create(2, 2, kRed);
    surface.putPenWidth(5);
    surface.putPenStyle(6);
    surface.putPenColor(0x02112233);
    EXPECT_EQ(surface.PenWidth(), 5);
    EXPECT_EQ(surface.PenStyle(), 6);
    EXPECT_EQ(surface.PenColor(), 0x112233u);
    EXPECT_EQ(surface.BrushColor(), kRed);
}

TEST(COffscreenPicture, PenStylesThatThereAreNotMakeASolidPen) {
    COffscreenPicture surface;
    surface.Create(2, 2, kRed);
    for (const std::int32_t style : {7, 99, -1}) {
        surface.putPenStyle(1);
        surface.putPenStyle(style);
        EXPECT_EQ(surface.PenStyle(), 0) << style;
        EXPECT_EQ(surface.PenColor(), kRed);
    }
}

TEST(COffscreenPicture, CurrentXKeepsCurrentY) {
    COffscreenPicture surface;
    surface.Create(2, 2, kRed);
    surface.putCurrentY(7);
    surface.putCurrentX(5);
    EXPECT_EQ(surface.CurrentX(), 5);
    EXPECT_EQ(surface.CurrentY(), 7);
    surface.putCurrentY(-9);
    EXPECT_EQ(surface.CurrentX(), 5);
    EXPECT_EQ(surface.CurrentY(), -9);
}

TEST(COffscreenPicture, TakesAllSixteenBinaryOperations) {
    COffscreenPicture surface;
    surface.Create(2, 2, kRed);
    for (std::int32_t operation = 1; operation <= 16; ++operation) {
        surface.putROP2(operation);
        EXPECT_EQ(surface.ROP2(), operation);
    }
    const auto failure = failureOf([&] { surface.putROP2(17); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number, static_cast<std::int32_t>(0x80040045));
    EXPECT_EQ(surface.ROP2(), 16);
}

}  // namespace
}  // namespace orvane
