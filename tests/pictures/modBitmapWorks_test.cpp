#include "pictures/modBitmapWorks.h"

#include "frame/values/codepage.h"
#include "pictures/CCompatibleDC.h"
#include "pictures/picture_pixels.h"
#include "pictures/raised_failure.h"
#include "platform/tables.h"
#include "support/raised_error.h"
#include "support/recorder.h"
#include "support/temp_dir.h"
#include "support/torture.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

namespace orvane {
namespace {

using namespace platform;
using test::raisedBy;
using test::raisesInternal;
using test::Recorder;
using test::ScopedTarget;

using Names = std::vector<std::string>;

constexpr std::int32_t kLongMax = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kLongMin = std::numeric_limits<std::int32_t>::min();

/// A 3 x 2 image of 24 bits.
DecodedImage trueColorImage() {
    DecodedImage image{3, 2, 24, {}, Array<std::uint8_t>(1, 24)};
    for (std::int32_t i = 1; i <= 24; ++i)
        image.Pixels.at(i) = static_cast<std::uint8_t>(i * 9);
    for (const std::int32_t padding : {10, 11, 12, 22, 23, 24})
        image.Pixels.at(padding) = 0;
    return image;
}

DecodedImage indexedImage() {
    DecodedImage image{3, 2, 8, std::array<std::uint32_t, 256>{}, Array<std::uint8_t>(1, 8)};
    (*image.Palette)[1] = 0x00102030;
    (*image.Palette)[255] = 0x00A0B0C0;
    image.Pixels.at(1) = 1;
    image.Pixels.at(7) = 255;
    return image;
}

TEST(GetRowStride, IsAMultipleOfFourFor8And24Bits) {
    EXPECT_EQ(GetRowStride(5, 8), 8);
    EXPECT_EQ(GetRowStride(5, 24), 16);
    EXPECT_EQ(GetRowStride(4, 8), 4);
    EXPECT_EQ(GetRowStride(4, 24), 12);
    EXPECT_EQ(GetRowStride(0, 8), 0);
    EXPECT_EQ(GetRowStride(0, 24), 0);
    EXPECT_EQ(GetRowStride(-1, 24), 0);
    EXPECT_EQ(GetRowStride(-2, 24), -4);
}

TEST(GetRowStride, IsZeroForAnyOtherDepth) {
    for (const std::int32_t depth : {-8, 0, 1, 4, 15, 16, 32, 48}) {
        EXPECT_EQ(GetRowStride(5, depth), 0) << depth;
    }
}

TEST(GetRowStride, RaisesOverflowBeyondALong) {
    EXPECT_EQ(raisedBy([] { GetRowStride(kLongMax - 2, 8); }), error::kOverflow);
    EXPECT_EQ(raisedBy([] { GetRowStride(kLongMax / 3 + 1, 24); }), error::kOverflow);
    EXPECT_EQ(GetRowStride(kLongMax - 3, 8), kLongMax - 3);
}

TEST(ShiftLeft, MultipliesByAPowerOfTwo) {
    EXPECT_EQ(ShiftLeft(31, 3), 248);
    EXPECT_EQ(ShiftLeft(-5, 4), -80);
    EXPECT_EQ(ShiftLeft(1, 30), 1 << 30);
    EXPECT_EQ(ShiftLeft(-1, 31), kLongMin);
    EXPECT_EQ(ShiftLeft(0, 500), 0);
}

TEST(ShiftLeft, RaisesOverflowOutsideALong) {
    EXPECT_EQ(raisedBy([] { ShiftLeft(1, 31); }), error::kOverflow);
    EXPECT_EQ(raisedBy([] { ShiftLeft(kLongMax, 1); }), error::kOverflow);
    EXPECT_EQ(raisedBy([] { ShiftLeft(1, 2000); }), error::kOverflow);
}

TEST(ShiftRight, DividesByAPowerOfTwoTowardZero) {
    EXPECT_EQ(ShiftRight(0x3E0, 2), 0xF8);
    EXPECT_EQ(ShiftRight(7, 1), 3);
    EXPECT_EQ(ShiftRight(-7, 1), -3);
    EXPECT_EQ(ShiftRight(kLongMin, 30), -2);
    EXPECT_EQ(ShiftRight(5, 0), 5);
}

TEST(ShiftRight, RaisesOverflowForAPowerThatIsNoLong) {
    EXPECT_EQ(raisedBy([] { ShiftRight(1, 31); }), error::kOverflow);
}

class ReadWordTest : public test::TempDirTest {
protected:
    std::int16_t read(const std::vector<std::uint8_t>& bytes, bool littleEndian) {
        BinaryFile file(fromAnsi(dir_.write("word", bytes)), FileMode::read);
        return ReadWord(file, littleEndian);
    }
};

TEST_F(ReadWordTest, TakesTheSecondByteAsTheHighOneWhenLittleEndian) {
    EXPECT_EQ(read({0x34, 0x12}, true), 0x1234);
    EXPECT_EQ(read({0xFF, 0x7F}, true), 32767);
}

TEST_F(ReadWordTest, TakesTheFirstByteAsTheHighOneOtherwise) {
    EXPECT_EQ(read({0x34, 0x12}, false), 0x3412);
}

TEST_F(ReadWordTest, RaisesOverflowFrom32768On) {
    EXPECT_EQ(raisedBy([this] { read({0x00, 0x80}, true); }), error::kOverflow);
    EXPECT_EQ(raisedBy([this] { read({0x80, 0x00}, false); }), error::kOverflow);
    EXPECT_EQ(raisedBy([this] { read({0xFF, 0xFF}, true); }), error::kOverflow);
}

TEST_F(ReadWordTest, MovesOnByTwoBytes) {
    BinaryFile file(fromAnsi(dir_.write("words", std::vector<std::uint8_t>{1, 0, 2, 0})),
                    FileMode::read);
    EXPECT_EQ(ReadWord(file, true), 1);
    EXPECT_EQ(ReadWord(file, true), 2);
}

TEST(CreatePictureFromImage, CallsThePlatformInExactlyThisOrder) {
    Recorder recorder(gdi32, oleaut32);
    const Picture picture = CreatePictureFromImage(trueColorImage());
    ASSERT_EQ(recorder.names(),
              (Names{"CreateDIBSection", "CreateCompatibleDC", "SelectObject",
                     "CreateCompatibleBitmap", "SelectObject", "SelectObject", "StretchDIBits",
                     "SelectObject", "DeleteDC", "OleCreatePictureIndirect", "DeleteObject"}));
    const auto& calls = recorder.calls();
    const std::string back = calls[0].result;
    const std::string dc = calls[1].result;
    const std::string own = calls[2].result;
    const std::string bitmap = calls[3].result;
    const auto line = [&](std::size_t call) { return recorder.lines()[call]; };
    EXPECT_TRUE(test::matches(line(0),
                              "CreateDIBSection(0, {width 1, height -1, bits 24, compression 0, "
                              "colours 0}, 0, address) -> *"))
        << line(0);
    EXPECT_EQ(line(1), "CreateCompatibleDC(0) -> " + dc);
    EXPECT_EQ(line(2), "SelectObject(" + dc + ", " + back + ") -> " + own);
    EXPECT_EQ(line(3), "CreateCompatibleBitmap(" + dc + ", 3, 2) -> " + bitmap);
    EXPECT_EQ(line(4), "SelectObject(" + dc + ", " + own + ") -> " + back);
    EXPECT_EQ(line(5), "SelectObject(" + dc + ", " + bitmap + ") -> " + own);
    EXPECT_TRUE(test::matches(line(6), "StretchDIBits(" + dc +
                                           ", 0, 0, 3, 2, 0, 0, 3, 2, <24 bytes>, {width 3, "
                                           "height -2, bits 24, compression 0, colours 0}, "
                                           "0, 13369376) -> *"))
        << line(6);
    EXPECT_EQ(line(7), "SelectObject(" + dc + ", " + own + ") -> " + bitmap);
    EXPECT_EQ(line(8), "DeleteDC(" + dc + ") -> true");
    EXPECT_EQ(calls[9].arguments[1], "true");
    EXPECT_EQ(line(10), "DeleteObject(" + back + ") -> true");
    EXPECT_EQ(std::to_string(picture.handle()), bitmap);
    EXPECT_EQ(recorder.leftOpen(), Names());
}

TEST(CreatePictureFromImage, Gives24BitsWithTheSamePixels) {
    const DecodedImage image = trueColorImage();
    const Picture picture = CreatePictureFromImage(image);
    EXPECT_EQ(picture.type(), Picture::Type::bitmap);
    const BitmapFacts facts = test::factsOf(picture);
    EXPECT_EQ(facts.width, 3);
    EXPECT_EQ(facts.height, 2);
    EXPECT_EQ(facts.bitsPixel, 24);
    const auto expected = image.Pixels.elements();
    EXPECT_EQ(test::pixelsOf(picture), std::vector<std::uint8_t>(expected.begin(), expected.end()));
}

TEST(CreatePictureFromImage, AppliesThePaletteOfAnIndexedImage) {
    Recorder recorder(gdi32);
    const Picture picture = CreatePictureFromImage(indexedImage());
    EXPECT_TRUE(test::matches(recorder.linesOf("StretchDIBits").at(0), "*<8 bytes>*bits 8,*"));
    EXPECT_TRUE(test::matches(recorder.linesOf("CreateDIBSection").at(0), "*bits 24,*"))
        << "the section is 24 bits deep all the same";
    EXPECT_EQ(test::factsOf(picture).bitsPixel, 24);
    const auto pixels = test::pixelsOf(picture);
    ASSERT_EQ(pixels.size(), 24U);
    EXPECT_EQ(std::vector(pixels.begin(), pixels.begin() + 6),
              (std::vector<std::uint8_t>{0x30, 0x20, 0x10, 0, 0, 0}));
    EXPECT_EQ(std::vector(pixels.begin() + 18, pixels.begin() + 21),
              (std::vector<std::uint8_t>{0xC0, 0xB0, 0xA0}));
}

/// A screen of 16 bits a pixel: so has every compatible bitmap but those of a context in which a
/// section is selected, which take its depth.
class HighColorScreen {
public:
    HighColorScreen()
        : section_(
              gdi32.CreateDIBSection,
              [this](DeviceContext dc, const BitmapInfo& info, std::uint32_t usage, void*& bits) {
                  const BitmapHandle section = realSection_(dc, info, usage, bits);
                  sections_.push_back(section);
                  return section;
              }),
          select_(gdi32.SelectObject,
                  [this](DeviceContext dc, GdiObject object) {
                      selected_ = object;
                      return realSelect_(dc, object);
                  }),
          compatible_(gdi32.CreateCompatibleBitmap, [this](DeviceContext dc, std::int32_t width,
                                                           std::int32_t height) {
              const bool inSection = std::ranges::any_of(
                  sections_, [this](BitmapHandle section) { return selected_ == section; });
              if (inSection) return realCompatible_(dc, width, height);
              BitmapInfo info;
              info.biWidth = width;
              info.biHeight = height;
              info.biBitCount = 16;
              void* bits = nullptr;
              return realSection_(dc, info, kDibRgbColors, bits);
          }) {}

private:
    const Operation<BitmapHandle(DeviceContext, const BitmapInfo&, std::uint32_t, void*&)>
        realSection_ = gdi32.CreateDIBSection;
    const Operation<GdiObject(DeviceContext, GdiObject)> realSelect_ = gdi32.SelectObject;
    const Operation<BitmapHandle(DeviceContext, std::int32_t, std::int32_t)> realCompatible_ =
        gdi32.CreateCompatibleBitmap;
    std::vector<BitmapHandle> sections_;
    GdiObject selected_{};
    ScopedTarget<BitmapHandle(DeviceContext, const BitmapInfo&, std::uint32_t, void*&)> section_;
    ScopedTarget<GdiObject(DeviceContext, GdiObject)> select_;
    ScopedTarget<BitmapHandle(DeviceContext, std::int32_t, std::int32_t)> compatible_;
};

TEST(CreatePictureFromImage, OfAnIndexedImageHas24BitsOnAScreenOf16) {
    const HighColorScreen screen;
    {
        CCompatibleDC dc;
        EXPECT_EQ(test::factsOf(dc.CreateCompatibleBitmap(1, 1)->hBitmap()).bitsPixel, 16);
    }
    DecodedImage image = indexedImage();
    // Colours that 5 or 6 bits a channel don't have.
    (*image.Palette)[1] = 0x00010203;
    (*image.Palette)[255] = 0x00A1B3C5;
    Recorder recorder(gdi32);
    const Picture picture = CreatePictureFromImage(image);
    EXPECT_TRUE(test::matches(recorder.linesOf("StretchDIBits").at(0), "*<8 bytes>*bits 8,*"));
    EXPECT_EQ(test::factsOf(picture).bitsPixel, 24);
    const auto pixels = test::pixelsOf(picture);
    ASSERT_EQ(pixels.size(), 24U);
    EXPECT_EQ(std::vector(pixels.begin(), pixels.begin() + 3),
              (std::vector<std::uint8_t>{0x03, 0x02, 0x01}));
    EXPECT_EQ(std::vector(pixels.begin() + 18, pixels.begin() + 21),
              (std::vector<std::uint8_t>{0xC5, 0xB3, 0xA1}));
}

TEST(CreatePictureFromImage, DoesNotTestWhetherThePixelsWereCopied) {
    ScopedTarget fake(gdi32.StretchDIBits, [](auto&&...) { return std::int32_t{0}; });
    EXPECT_EQ(test::factsOf(CreatePictureFromImage(trueColorImage())).width, 3);
}

TEST(CreatePictureFromImage, SaysThatNoContextCanBeMade) {
    ScopedTarget fake(gdi32.CreateCompatibleDC, [](DeviceContext) { return DeviceContext::none; });
    EXPECT_TRUE(raisesInternal(u"Can't create compatible DC.",
                               [] { CreatePictureFromImage(trueColorImage()); }));
}

TEST(CreatePictureFromImage, SaysThatNoBitmapCanBeMade) {
    ScopedTarget fake(gdi32.CreateCompatibleBitmap, [](auto&&...) { return BitmapHandle::none; });
    EXPECT_TRUE(raisesInternal(u"Can't create compatible bitmap.",
                               [] { CreatePictureFromImage(trueColorImage()); }));
}

TEST(CreatePictureFromImage, TakesTheDepthOfANewContextWhenTheSectionCanNotBeMade) {
    ScopedTarget fake(gdi32.CreateDIBSection, [](auto&&...) { return BitmapHandle::none; });
    // Selecting none restores, which is no failure.
    const Picture picture = CreatePictureFromImage(trueColorImage());
    EXPECT_EQ(test::factsOf(picture).width, 3);
    EXPECT_EQ(test::factsOf(picture).bitsPixel, 1);
}

/// What may come of each failing operation: an error with its text, or a picture.
TEST(CreatePictureFromImage, NamesEachFailureAndLeavesNothingOpen) {
    const DecodedImage image = trueColorImage();
    Names failures;
    test::torture([&] { return test::failureOf([&] { CreatePictureFromImage(image); }); },
                  [&](const std::optional<RuntimeError>& failure, const test::TortureRun& run) {
                      failures.push_back(
                          run.failed + ": " +
                          (failure ? toAnsi(failure->description) : std::string("a picture")));
                  });
    EXPECT_EQ(failures,
              (Names{
                  "CreateDIBSection: a picture",
                  "CreateCompatibleDC: Can't create compatible DC.",
                  "SelectObject: Can't select bitmap.",
                  "CreateCompatibleBitmap: Can't create compatible bitmap.",
                  "SelectObject: a picture",
                  "SelectObject: Can't select bitmap.",
                  "StretchDIBits: a picture",
                  "SelectObject: a picture",
                  "OleCreatePictureIndirect: " + toAnsi(standardDescription(error::kOutOfMemory)),
                  ": a picture",
              }));
}

}  // namespace
}  // namespace orvane
