#include "pictures/COffscreenPicture.h"

#include "frame/values/codepage.h"
#include "pictures/picture_pixels.h"
#include "pictures/raised_failure.h"
#include "platform/tables.h"
#include "support/recorder.h"
#include "support/torture.h"

#include <gtest/gtest.h>

/// Which operations the offscreen picture asks for, in which order, and what comes of each failure.
namespace orvane {
namespace {

using namespace platform;
using test::failureOf;
using test::Recorder;
using test::ScopedTarget;
using test::TortureRun;

using Lines = std::vector<std::string>;

constexpr auto kOffscreenError = static_cast<std::int32_t>(0x80040045);
constexpr std::uint32_t kRed = 0x0000FF;

/// What came of a call: "done", or its failure's description.
struct Outcome {
    std::string text = "done";
    bool isOurs = true;  ///< the number and the source of a failure are the class's
};

template <class Action>
Outcome outcomeOf(Action&& action) {
    const auto failure = failureOf(action);
    if (!failure) return {};
    return {toAnsi(failure->description),
            failure->number == kOffscreenError && failure->source == u"COffscreenPicture"};
}

const test::TortureOptions kDrawing{test::operationsOf(gdi32, user32), {}};

/// A picture of 2 by 2 pixels.
Picture redPicture() {
    COffscreenPicture surface;
    surface.Create(2, 2, kRed);
    return surface.Picture();
}

TEST(COffscreenPictureCalls, CreateTakesItsStepsInOrder) {
    Recorder recorder(gdi32, user32);
    COffscreenPicture surface;
    surface.Create(3, 2, kRed);
    const std::string dc = described(surface.hDC());
    const std::string bitmap = described(surface.hBitmap());
    EXPECT_TRUE(recorder.saw(
        {"CreateCompatibleDC(0) -> " + dc, "SaveDC(" + dc + ") -> 1",
         "SetMapMode(" + dc + ", 1) -> 1", "GetDesktopWindow() -> *", "GetDC(*) -> *",
         "CreateCompatibleBitmap(*, 3, 2) -> " + bitmap, "ReleaseDC(*) -> true",
         "SelectObject(" + dc + ", " + bitmap + ") -> *", "CreateSolidBrush(255) -> *",
         "SelectObject(" + dc + ", *) -> *", "CreatePen(0, 1, 255) -> *",
         "SelectObject(" + dc + ", *) -> *", "Rectangle(" + dc + ", 0, 0, 3, 2) -> true"}));
    const auto& calls = recorder.calls();
    EXPECT_EQ(calls[4].arguments[0], calls[3].result) << "the desktop's context";
    EXPECT_EQ(calls[5].arguments[0], calls[4].result) << "a bitmap for that context";
    EXPECT_EQ(calls[6].arguments, (Lines{calls[3].result, calls[4].result}));
    EXPECT_EQ(calls[9].arguments[1], calls[8].result) << "the brush";
    EXPECT_EQ(calls[11].arguments[1], calls[10].result) << "the pen";
}

TEST(COffscreenPictureCalls, DestroyRestoresAndThenDeletesBrushPenBitmapAndContext) {
    COffscreenPicture surface;
    Recorder recorder(gdi32, user32);
    surface.Create(3, 2, kRed);
    const std::string dc = described(surface.hDC());
    const std::string bitmap = described(surface.hBitmap());
    const std::string brush = recorder.calls().at(8).result;
    const std::string pen = recorder.calls().at(10).result;
    recorder.clear();
    surface.Destroy();
    EXPECT_TRUE(
        recorder.saw({"RestoreDC(" + dc + ", 1) -> true", "DeleteObject(" + brush + ") -> true",
                      "DeleteObject(" + pen + ") -> true", "DeleteObject(" + bitmap + ") -> true",
                      "DeleteDC(" + dc + ") -> true"}));
    EXPECT_EQ(recorder.leftOpen(), Lines());
    recorder.clear();
    surface.Destroy();
    EXPECT_EQ(recorder.lines(), Lines());
}

TEST(COffscreenPictureCalls, ItsEndDestroys) {
    Recorder recorder(gdi32, user32);
    {
        COffscreenPicture surface;
        surface.Create(3, 2, kRed);
    }
    EXPECT_EQ(recorder.names().back(), "DeleteDC");
    EXPECT_EQ(recorder.leftOpen(), Lines());
}

TEST(COffscreenPictureCalls, CreateDestroysFirstAlsoWhenTheSizeIsBad) {
    COffscreenPicture surface;
    surface.Create(3, 2, kRed);
    Recorder recorder(gdi32, user32);
    EXPECT_TRUE(failureOf([&] { surface.Create(0, 2, kRed); }));
    EXPECT_EQ(recorder.names(),
              (Lines{"RestoreDC", "DeleteObject", "DeleteObject", "DeleteObject", "DeleteDC"}));
}

TEST(COffscreenPictureCalls, ABadColourIsNoticedAfterTheBitmapIsSelected) {
    COffscreenPicture surface;
    Recorder recorder(gdi32, user32);
    EXPECT_TRUE(failureOf([&] { surface.Create(3, 2, 0x99000000); }));
    EXPECT_EQ(recorder.names(),
              (Lines{"CreateCompatibleDC", "SaveDC", "SetMapMode", "GetDesktopWindow", "GetDC",
                     "CreateCompatibleBitmap", "ReleaseDC", "SelectObject", "RestoreDC",
                     "DeleteObject", "DeleteDC"}));
    EXPECT_EQ(recorder.leftOpen(), Lines());
}

TEST(COffscreenPictureCalls, ASystemColourIsAskedForOnce) {
    COffscreenPicture surface;
    Recorder recorder(user32);
    surface.Create(3, 2, 0x8000000F);
    EXPECT_EQ(recorder.linesOf("GetSysColor").size(), 1u);
    EXPECT_EQ(recorder.calls().back().arguments, Lines{"15"});
}

TEST(COffscreenPictureCalls, SettingThePictureCopiesItsBitmap) {
    const Picture picture = redPicture();
    COffscreenPicture surface;
    Recorder recorder(gdi32, user32);
    surface.putPicture(picture);
    const std::string dc = described(surface.hDC());
    const std::string bitmap = described(surface.hBitmap());
    EXPECT_TRUE(
        recorder.saw({"CreateCompatibleDC(0) -> " + dc, "SaveDC(" + dc + ") -> 1",
                      "SetMapMode(" + dc + ", 1) -> 1",
                      "CopyImage(" + described(picture.handle()) + ", 0, 0, 0, 8192) -> " + bitmap,
                      "SelectObject(" + dc + ", " + bitmap + ") -> *"}));
    recorder.clear();
    surface.Destroy();
    EXPECT_TRUE(
        recorder.saw({"RestoreDC(" + dc + ", 1) -> true", "DeleteObject(" + bitmap + ") -> true",
                      "DeleteDC(" + dc + ") -> true"}));
}

TEST(COffscreenPictureCalls, ReadingThePictureCopiesTheBitmapAndHandsItOver) {
    COffscreenPicture surface;
    surface.Create(3, 2, kRed);
    Recorder recorder;
    const Picture picture = surface.Picture();
    EXPECT_TRUE(
        recorder.saw({"CopyImage(" + described(surface.hBitmap()) + ", 0, 0, 0, 8192) -> *",
                      "OleCreatePictureIndirect({type 1, bitmap *, icon 0}, true, address) -> 0"}));
    EXPECT_EQ(recorder.calls()[0].result, described(picture.handle()));
    EXPECT_EQ(recorder.leftOpen(), Lines());
}

TEST(COffscreenPictureCalls, APenIsReplacedByOneWithOneValueChanged) {
    COffscreenPicture surface;
    surface.Create(3, 2, kRed);
    const std::string dc = described(surface.hDC());
    Recorder recorder(gdi32, user32);
    surface.putPenWidth(4);
    EXPECT_TRUE(recorder.saw({"GetObjectA(*, {style 0, width 1, colour 255}) -> 16",
                              "CreatePenIndirect({style 0, width 4, colour 255}) -> *",
                              "SelectObject(" + dc + ", *) -> *", "DeleteObject(*) -> true"}));
    const auto& calls = recorder.calls();
    EXPECT_EQ(calls[2].arguments[1], calls[1].result) << "the new pen is selected";
    EXPECT_EQ(calls[2].result, calls[0].arguments[0]) << "in place of the old one";
    EXPECT_EQ(calls[3].arguments[0], calls[0].arguments[0]) << "which is deleted";
}

TEST(COffscreenPictureCalls, ABrushIsReplacedTheSameWay) {
    COffscreenPicture surface;
    surface.Create(3, 2, kRed);
    const std::string dc = described(surface.hDC());
    Recorder recorder(gdi32, user32);
    surface.putBrushColor(0x02000102);
    EXPECT_TRUE(recorder.saw({"GetObjectA(*, {style 0, colour 255, hatch 0}) -> 12",
                              "CreateBrushIndirect({style 0, colour 258, hatch 0}) -> *",
                              "SelectObject(" + dc + ", *) -> *", "DeleteObject(*) -> true"}));
    EXPECT_EQ(recorder.calls()[3].arguments[0], recorder.calls()[0].arguments[0]);
}

TEST(COffscreenPictureCalls, TheFirstPenOfASurfaceMadeFromAPictureReplacesNone) {
    COffscreenPicture surface;
    surface.putPicture(redPicture());
    Recorder recorder(gdi32, user32);
    surface.putPenStyle(1);
    EXPECT_TRUE(recorder.saw({"GetObjectA(0, {style 0, width 0, colour 0}) -> 0",
                              "CreatePenIndirect({style 1, width 0, colour 0}) -> *",
                              "SelectObject(*) -> *"}));
}

TEST(COffscreenPictureCalls, ACoordinateIsSetWithTheOtherOneReadFirst) {
    COffscreenPicture surface;
    surface.Create(3, 2, kRed);
    surface.putCurrentY(7);
    const std::string dc = described(surface.hDC());
    Recorder recorder(gdi32, user32);
    surface.putCurrentX(5);
    EXPECT_TRUE(recorder.saw({"GetCurrentPositionEx(" + dc + ", {x 0, y 7}) -> true",
                              "MoveToEx(" + dc + ", 5, 7, null) -> true"}));
}

TEST(COffscreenPictureCalls, PaintingHandsItsArgumentsOn) {
    COffscreenPicture source;
    source.Create(3, 2, kRed);
    COffscreenPicture surface;
    surface.Create(3, 2, kRed);
    Recorder recorder(gdi32, user32);
    surface.PaintPicture2(source, 1, 2, 3, 4, 5, 6, 0x00660046);
    EXPECT_TRUE(recorder.saw({"BitBlt(" + described(surface.hDC()) + ", 1, 2, 3, 4, " +
                              described(source.hDC()) + ", 5, 6, 6684742) -> true"}));
}

TEST(COffscreenPictureCalls, PaintingAPictureGoesThroughASurfaceForTheTime) {
    const Picture picture = redPicture();
    COffscreenPicture surface;
    surface.Create(3, 2, kRed);
    Recorder recorder(gdi32, user32);
    surface.PaintPicture(picture, 0, 0, -1, -1, 0, 0, kSrcCopy);
    EXPECT_EQ(recorder.names(), (Lines{"CreateCompatibleDC", "SaveDC", "SetMapMode", "CopyImage",
                                       "SelectObject", "GetObjectA", "GetObjectA", "BitBlt",
                                       "RestoreDC", "DeleteObject", "DeleteDC"}));
    EXPECT_EQ(recorder.leftOpen(), Lines());
}

TEST(COffscreenPictureCalls, BeforeItIsMadeItAsksForNothing) {
    const Picture picture = redPicture();
    COffscreenPicture surface;
    Recorder recorder;
    surface.Destroy();
    surface.Width();
    surface.BkColor();
    surface.PenColor();
    surface.CurrentX();
    surface.ROP2();
    surface.putBkColor(0x8000000F);
    surface.putPenColor(0x8000000F);
    surface.putBrushColor(0x8000000F);
    surface.putCurrentX(1);
    surface.putROP2(1);
    surface.PaintPicture(picture, 0, 0, -1, -1, 0, 0, kSrcCopy);
    EXPECT_TRUE(surface.Picture().isNothing());
    EXPECT_EQ(recorder.lines(), Lines());
}

/// Runs an action with each operation failing in turn; a line for each: the operation and what came
/// of it.
template <class Action, class Check>
Lines outcomes(Action&& action, Check&& check) {
    Lines lines;
    test::torture(
        std::forward<Action>(action),
        [&](const Outcome& outcome, const TortureRun& run) {
            EXPECT_TRUE(outcome.isOurs) << run.failed;
            check(outcome);
            lines.push_back((run.failedAt == 0 ? "nothing" : run.failed) + ": " + outcome.text);
        },
        kDrawing);
    return lines;
}

TEST(COffscreenPictureFailures, EachStepOfCreateHasItsTextAndIsUndone) {
    const Lines lines = outcomes(
        [] {
            COffscreenPicture surface;
            const Outcome outcome = outcomeOf([&] { surface.Create(3, 2, kRed); });
            EXPECT_EQ(surface.Initialized(), outcome.text == "done");
            if (!surface.Initialized()) {
                EXPECT_EQ(surface.hDC(), DeviceContext::none);
                EXPECT_EQ(surface.hBitmap(), BitmapHandle::none);
                EXPECT_EQ(surface.PenColor(), 0u);
            }
            return outcome;
        },
        [](const Outcome&) {});
    EXPECT_EQ(lines, (Lines{"CreateCompatibleDC: Can't create device context.", "SaveDC: done",
                            "SetMapMode: done", "GetDesktopWindow: done",
                            "GetDC: Can't create compatible bitmap.",
                            "CreateCompatibleBitmap: Can't create compatible bitmap.",
                            "SelectObject: Can't select compatible bitmap in device context.",
                            "CreateSolidBrush: Can't create brush.",
                            "SelectObject: Can't select brush in device context.",
                            "CreatePen: Can't create pen.",
                            "SelectObject: Can't select pen in device context.", "Rectangle: done",
                            "RestoreDC: done", "nothing: done"}));
}

TEST(COffscreenPictureFailures, EachStepOfSettingThePictureHasItsTextAndIsUndone) {
    const Picture picture = redPicture();
    const Lines lines = outcomes(
        [&] {
            COffscreenPicture surface;
            const Outcome outcome = outcomeOf([&] { surface.putPicture(picture); });
            EXPECT_EQ(surface.Initialized(), outcome.text == "done");
            if (!surface.Initialized()) {
                EXPECT_EQ(surface.hDC(), DeviceContext::none);
                EXPECT_EQ(surface.hBitmap(), BitmapHandle::none);
            }
            return outcome;
        },
        [](const Outcome&) {});
    EXPECT_EQ(lines, (Lines{"CreateCompatibleDC: Can't create compatible device context.",
                            "SaveDC: done", "SetMapMode: done", "CopyImage: Can't copy bitmap.",
                            "SelectObject: Can't select bitmap in device context.",
                            "RestoreDC: done", "nothing: done"}));
}

TEST(COffscreenPictureFailures, AfterAFailureOfCreateTheOldSurfaceIsGoneToo) {
    for (const bool fails : {true, false}) {
        COffscreenPicture surface;
        surface.Create(2, 2, kRed);
        const auto real = gdi32.CreateCompatibleDC;
        ScopedTarget fake(gdi32.CreateCompatibleDC, [&](DeviceContext reference) {
            return fails ? DeviceContext::none : real(reference);
        });
        failureOf([&] { surface.Create(2, 2, kRed); });
        EXPECT_EQ(surface.Initialized(), !fails);
    }
}

/// A surface that is there already, with its setters failing.
class COffscreenPictureSetters : public testing::Test {
protected:
    void SetUp() override { surface_.Create(2, 2, kRed); }

    COffscreenPicture surface_;
};

TEST_F(COffscreenPictureSetters, AfterAFailureTheOldPenStays) {
    for (const bool isMade : {false, true}) {
        const auto real = gdi32.CreatePenIndirect;
        Recorder recorder(gdi32);
        ScopedTarget create(gdi32.CreatePenIndirect, [&](const LogPen& facts) {
            return isMade ? real(facts) : PenHandle::none;
        });
        ScopedTarget select(gdi32.SelectObject, [](auto&&...) { return GdiObject(); });
        for (const auto& set : {+[](COffscreenPicture& surface) { surface.putPenColor(9); },
                                +[](COffscreenPicture& surface) { surface.putPenWidth(9); },
                                +[](COffscreenPicture& surface) { surface.putPenStyle(2); }}) {
            const Outcome outcome = outcomeOf([&] { set(surface_); });
            EXPECT_TRUE(outcome.isOurs);
            EXPECT_EQ(outcome.text,
                      isMade ? "Can't select pen in device context." : "Can't create pen.");
            EXPECT_EQ(surface_.PenColor(), kRed);
            EXPECT_EQ(surface_.PenWidth(), 1);
            EXPECT_EQ(surface_.PenStyle(), 0);
            EXPECT_EQ(recorder.count("DeleteObject"), isMade ? 1u : 0u) << "the new one's";
            recorder.clear();
        }
    }
}

TEST_F(COffscreenPictureSetters, AfterAFailureTheOldBrushStays) {
    for (const bool isMade : {false, true}) {
        const auto real = gdi32.CreateBrushIndirect;
        Recorder recorder(gdi32);
        ScopedTarget create(gdi32.CreateBrushIndirect, [&](const LogBrush& facts) {
            return isMade ? real(facts) : BrushHandle::none;
        });
        ScopedTarget select(gdi32.SelectObject, [](auto&&...) { return GdiObject(); });
        const Outcome outcome = outcomeOf([&] { surface_.putBrushColor(9); });
        EXPECT_TRUE(outcome.isOurs);
        EXPECT_EQ(outcome.text,
                  isMade ? "Can't select brush in device context." : "Can't create brush.");
        EXPECT_EQ(surface_.BrushColor(), kRed);
        EXPECT_EQ(recorder.count("DeleteObject"), isMade ? 1u : 0u) << "the new one's";
    }
}

TEST_F(COffscreenPictureSetters, AfterAFailureTheOldPenIsSelected) {
    {
        ScopedTarget create(gdi32.CreatePenIndirect, [](auto&&...) { return PenHandle::none; });
        EXPECT_TRUE(failureOf([this] { surface_.putPenWidth(9); }));
    }
    const PenHandle other = gdi32.CreatePen(kPenSolid, 1, 0);
    const PenHandle selected{gdi32.SelectObject(surface_.hDC(), other).number};
    LogPen facts;
    EXPECT_EQ(gdi32.GetPen(selected, facts), 16);
    EXPECT_EQ(facts.color, kRed);
    EXPECT_EQ(gdi32.SelectObject(surface_.hDC(), selected), other);
    EXPECT_TRUE(gdi32.DeleteObject(other));
}

TEST_F(COffscreenPictureSetters, AColourThatIsNoneChangesNothing) {
    Recorder recorder(gdi32);
    for (const auto& set : {+[](COffscreenPicture& surface) { surface.putPenColor(0x99000000); },
                            +[](COffscreenPicture& surface) { surface.putBrushColor(0x99000000); },
                            +[](COffscreenPicture& surface) { surface.putBkColor(0x99000000); }}) {
        const auto failure = failureOf([&] { set(surface_); });
        ASSERT_TRUE(failure);
        EXPECT_EQ(failure->number, error::kInvalidArgument);
    }
    EXPECT_EQ(recorder.lines(), Lines());
}

TEST_F(COffscreenPictureSetters, TheBackColourTheModesAndTheCopyHaveTheirTexts) {
    EXPECT_EQ(outcomes([this] { return outcomeOf([this] { surface_.putBkColor(7); }); },
                       [](const Outcome&) {}),
              (Lines{"SetBkColor: Can't set back color.", "nothing: done"}));
    EXPECT_EQ(outcomes([this] { return outcomeOf([this] { surface_.putBkMode(2); }); },
                       [](const Outcome&) {}),
              (Lines{"SetBkMode: Can't set background mix mode.", "nothing: done"}));
    EXPECT_EQ(outcomes([this] { return outcomeOf([this] { surface_.putROP2(7); }); },
                       [](const Outcome&) {}),
              (Lines{"SetROP2: Can't set raster operation in device context.", "nothing: done"}));
    COffscreenPicture source;
    source.Create(2, 2, kRed);
    EXPECT_EQ(outcomes(
                  [&] {
                      return outcomeOf(
                          [&] { surface_.PaintPicture2(source, 0, 0, 2, 2, 0, 0, kSrcCopy); });
                  },
                  [](const Outcome&) {}),
              (Lines{"BitBlt: Can't BitBlt bitmap.", "nothing: done"}));
}

TEST_F(COffscreenPictureSetters, ReadsOfWhatThePlatformRefusesAreTheirEmptyValues) {
    ScopedTarget bitmap(gdi32.GetObjectA, [](auto&&...) { return 0; });
    ScopedTarget pen(gdi32.GetPen, [](auto&&...) { return 0; });
    ScopedTarget brush(gdi32.GetBrush, [](auto&&...) { return 0; });
    ScopedTarget position(gdi32.GetCurrentPositionEx, [](auto&&...) { return false; });
    EXPECT_EQ(surface_.Width(), -1);
    EXPECT_EQ(surface_.Height(), -1);
    EXPECT_EQ(surface_.PenColor(), 0u);
    EXPECT_EQ(surface_.PenWidth(), 0);
    EXPECT_EQ(surface_.BrushColor(), 0u);
    EXPECT_EQ(surface_.CurrentX(), 0);
    EXPECT_EQ(surface_.CurrentY(), 0);
}

TEST_F(COffscreenPictureSetters, ASizeThatTheSourceDoesNotTellIsABadArgument) {
    COffscreenPicture source;
    source.Create(2, 2, kRed);
    ScopedTarget bitmap(gdi32.GetObjectA, [](auto&&...) { return 0; });
    for (const auto& [width, height] : {std::pair{-1, 2}, std::pair{2, -1}}) {
        const auto failure = failureOf([&, w = width, h = height] {
            surface_.PaintPicture2(source, 0, 0, w, h, 0, 0, kSrcCopy);
        });
        ASSERT_TRUE(failure);
        EXPECT_EQ(failure->number, error::kInvalidArgument);
        EXPECT_EQ(failure->source, u"COffscreenPicture");
    }
}

TEST_F(COffscreenPictureSetters, APictureThatCanNotBeCopiedIsNothing) {
    ScopedTarget fake(user32.CopyImage, [](auto&&...) { return BitmapHandle::none; });
    EXPECT_TRUE(surface_.Picture().isNothing());
}

TEST_F(COffscreenPictureSetters, APictureThatCanNotBeMadeLeavesNoBitmapBehind) {
    Recorder recorder;
    ScopedTarget fake(oleaut32.OleCreatePictureIndirect,
                      [](const PictureDescription&, bool, IPictureDisp*&) {
                          return static_cast<std::int32_t>(0x8007000E);
                      });
    const auto failure = failureOf([this] { surface_.Picture(); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number, error::kOutOfMemory);
    EXPECT_EQ(recorder.leftOpen(), Lines());
}

TEST_F(COffscreenPictureSetters, PaintingAPictureFailsAsItsCopyDoes) {
    const Picture picture = redPicture();
    const Lines lines = outcomes(
        [&] {
            return outcomeOf([&] { surface_.PaintPicture(picture, 0, 0, 2, 2, 0, 0, kSrcCopy); });
        },
        [this](const Outcome&) { EXPECT_TRUE(surface_.Initialized()); });
    EXPECT_EQ(lines, (Lines{"CreateCompatibleDC: Can't create compatible device context.",
                            "SaveDC: done", "SetMapMode: done", "CopyImage: Can't copy bitmap.",
                            "SelectObject: Can't select bitmap in device context.",
                            "BitBlt: Can't BitBlt bitmap.", "RestoreDC: done", "nothing: done"}));
}

}  // namespace
}  // namespace orvane
