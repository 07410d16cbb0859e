#include "pictures/CGDIPlusHelper.h"

#include "frame/values/codepage.h"
#include "pictures/raised_failure.h"
#include "platform/tables.h"
#include "support/png_file.h"
#include "support/recorder.h"
#include "support/temp_dir.h"
#include "support/torture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <set>

/// The exact calls of a load and their order, and each of its failures.
namespace orvane {
namespace {

using namespace platform;
using test::failureOf;
using test::Recorder;
using test::ScopedTarget;

constexpr auto kFailure = static_cast<std::int32_t>(0x80040000);

class Helper : public test::TempDirTest {
protected:
    static std::vector<std::uint8_t> png(std::uint32_t width) {
        test::PngFile file;
        file.width = width;
        file.height = 2;
        return file.bytes();
    }

    Picture load(const WString& name) { return helper_->LoadPicture(name, size_, format_, bits_); }

    std::optional<RuntimeError> failureOfLoad() {
        return failureOf([&] { load(first_); });
    }

    const WString first_ = fromAnsi(dir_.write("first.png", png(3)));
    const WString second_ = fromAnsi(dir_.write("second.png", png(5)));
    std::unique_ptr<CGDIPlusHelper> helper_ = std::make_unique<CGDIPlusHelper>();
    PictureSize size_{-5, -6};
    WString format_ = u"before";
    std::int32_t bits_ = -7;
};

TEST_F(Helper, TheFirstLoadStartsGdiPlusAndDraws) {
    Recorder recorder(gdiplus, ole32);
    load(first_);
    EXPECT_TRUE(recorder.saw(
        {"GdiplusStartup(*, {version 1, callback null, noThread false, noCodecs false}) -> 0",
         "GdipLoadImageFromFile(*, *) -> 0", "GdipGetImageWidth(*, 3) -> 0",
         "GdipGetImageHeight(*, 2) -> 0", "GdipCreateFromHDC(*, *) -> 0",
         "GdipDrawImageRectI(*, *, 0, 0, 3, 2) -> 0", "GdipGetImageRawFormat(*, *) -> 0",
         "StringFromGUID2(*, <200 bytes>) -> 39", "GdipGetImagePixelFormat(*, 137224) -> 0"}));
    EXPECT_EQ(size_.Width, 3);
    EXPECT_EQ(size_.Height, 2);
    EXPECT_EQ(format_, u"{B96B3CAF-0728-11D3-9D7B-0000F81EF32E}");
    EXPECT_EQ(bits_, 24);
}

TEST_F(Helper, TheSecondLoadFreesTheFirstsImageThenItsSurfaceThenItsGraphics) {
    load(first_);
    Recorder recorder(gdi32, gdiplus);
    load(second_);
    std::vector<std::string> names;
    for (const std::string& name : recorder.names()) {
        const std::set<std::string> drawing{"DeleteDC", "CreateCompatibleBitmap", "Rectangle"};
        if (name.starts_with("Gdi") || drawing.contains(name)) names.push_back(name);
    }
    // The copy that becomes the picture is made on contexts of its own behind the drawing.
    names.erase(std::find(names.begin(), names.end(), "GdipDrawImageRectI") + 1, names.end());
    EXPECT_EQ(names, (std::vector<std::string>{
                         "GdipDisposeImage", "GdipLoadImageFromFile", "GdipGetImageWidth",
                         "GdipGetImageHeight", "DeleteDC", "CreateCompatibleBitmap", "Rectangle",
                         "GdipDeleteGraphics", "GdipCreateFromHDC", "GdipDrawImageRectI"}));
    EXPECT_EQ(size_.Width, 5);
}

TEST_F(Helper, TheEndGivesEverythingBackBeforeTheShutdown) {
    Recorder recorder;
    load(first_);
    load(second_);
    recorder.clear();
    helper_.reset();
    std::vector<std::string> names = recorder.names();
    std::erase_if(names, [](const std::string& name) { return !name.starts_with("Gdi"); });
    EXPECT_EQ(names, (std::vector<std::string>{"GdipDeleteGraphics", "GdipDisposeImage",
                                               "GdiplusShutdown"}));
    EXPECT_EQ(recorder.leftOpen(), std::vector<std::string>());
}

TEST_F(Helper, WithoutALoadNothingIsStartedAndNothingShutDown) {
    Recorder recorder(gdiplus);
    helper_.reset();
    EXPECT_TRUE(recorder.saw({}));
}

TEST_F(Helper, AMissingFileRaisesItsNameBeforeGdiPlusIsStarted) {
    Recorder recorder(gdiplus);
    const auto failure = failureOf([&] { load(u"gone.png"); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number, error::kFileNotFound);
    EXPECT_EQ(failure->description, u"File not found: 'gone.png'");
    EXPECT_TRUE(recorder.saw({}));
}

TEST_F(Helper, AFailedStartRaisesItsTextAndIsTriedAgain) {
    {
        ScopedTarget start(gdiplus.GdiplusStartup,
                           [](GdiplusToken& token, const GdiplusStartupInput&) {
                               token = GdiplusToken{1};
                               return GdiplusStatus::unsupportedVersion;
                           });
        const auto failure = failureOfLoad();
        ASSERT_TRUE(failure);
        EXPECT_EQ(failure->number, kFailure);
        EXPECT_EQ(failure->description, u"Can't initialize GDI+ Unsupported library version");
    }
    Recorder recorder(gdiplus);
    load(first_);
    EXPECT_EQ(recorder.count("GdiplusStartup"), 1u);
}

TEST_F(Helper, AFailedImageRaisesItsText) {
    ScopedTarget image(gdiplus.GdipLoadImageFromFile, [](const std::u16string&, GdiplusImage&) {
        return GdiplusStatus::unknownImageFormat;
    });
    const auto failure = failureOfLoad();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number, kFailure);
    EXPECT_EQ(failure->description, u"Can't load image from file. Unknown image format");
}

TEST_F(Helper, AnImageWithoutASizeFailsAtTheSurface) {
    ScopedTarget width(gdiplus.GdipGetImageWidth, [](GdiplusImage, std::uint32_t& value) {
        value = 0;
        return GdiplusStatus::genericError;
    });
    const auto failure = failureOfLoad();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number, error::kInvalidArgument);
}

TEST_F(Helper, FailedGraphicsRaiseTheirText) {
    ScopedTarget graphics(gdiplus.GdipCreateFromHDC, [](DeviceContext, GdiplusGraphics&) {
        return GdiplusStatus::objectBusy;
    });
    const auto failure = failureOfLoad();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number, kFailure);
    EXPECT_EQ(failure->description, u"Can't initialize graphics from device context. Object busy");
}

TEST_F(Helper, AFailedDrawingRaisesItsTextAndSetsNothing) {
    ScopedTarget draw(gdiplus.GdipDrawImageRectI,
                      [](GdiplusGraphics, GdiplusImage, std::int32_t, std::int32_t, std::int32_t,
                         std::int32_t) { return GdiplusStatus::win32Error; });
    const auto failure = failureOfLoad();
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number, kFailure);
    EXPECT_EQ(failure->description, u"Can't draw image. Win32 error");
    EXPECT_EQ(size_.Width, -5);
    EXPECT_EQ(format_, u"before");
    EXPECT_EQ(bits_, -7);
}

TEST_F(Helper, AFormatThatCanNotBeToldIsAnEmptyText) {
    ScopedTarget format(gdiplus.GdipGetImageRawFormat, [](GdiplusImage, ClassIdBytes&) {
        return GdiplusStatus::invalidParameter;
    });
    load(first_);
    EXPECT_EQ(format_, u"");
    EXPECT_EQ(size_.Width, 3);
}

TEST_F(Helper, AfterAFailureTheNextLoadStartsAfresh) {
    EXPECT_TRUE(failureOf([&] { load(fromAnsi(dir_.write("text.txt", "no picture"))); }));
    EXPECT_FALSE(load(first_).isNothing());
    EXPECT_EQ(size_.Width, 3);
}

TEST_F(Helper, WhicheverOperationFailsTheErrorIsKnownAndNothingStaysOpen) {
    std::set<std::int32_t> seen;
    test::torture(
        [&] {
            CGDIPlusHelper helper;
            std::int32_t number = 0;
            for (const WString& name : {first_, second_}) {
                const auto failure =
                    failureOf([&] { helper.LoadPicture(name, size_, format_, bits_); });
                if (failure && number == 0) number = failure->number;
            }
            return number;
        },
        [&](std::int32_t number, const test::TortureRun&) { seen.insert(number); },
        {{}, {"TlsGetValue"}});
    constexpr auto kOffscreen = static_cast<std::int32_t>(0x80040045);
    const std::set<std::int32_t> known{
        0,         error::kInvalidArgument, error::kOutOfMemory, error::kFileNotFound, kFailure,
        kOffscreen};
    EXPECT_TRUE(std::ranges::includes(known, seen)) << testing::PrintToString(seen);
    EXPECT_TRUE(seen.contains(kFailure));
    EXPECT_TRUE(seen.contains(kOffscreen));
}

}  // namespace
}  // namespace orvane
