#include "pictures/CFileGDIPlus.h"
#include "pictures/CGDIPlusGraphics.h"
#include "pictures/CGDIPlusImage.h"
#include "pictures/gdiplus_status.h"
#include "pictures/raised_failure.h"
#include "support/recorder.h"

#include <gtest/gtest.h>

#include <map>

/// The wrappers over GDI+'s flat functions and their tables, over operations that answer as told.
namespace orvane {
namespace {

using namespace platform;
using test::failureOf;
using test::ScopedTarget;

TEST(GetGdiPlusStatusText, EveryRowOfTheTable) {
    const std::map<std::int32_t, const char16_t*> rows{
        {0, u"Unknown error"},
        {1, u"Generic error"},
        {2, u"Invalid parameter"},
        {3, u"Invalid picture"},
        {4, u"Object busy"},
        {5, u"Insufficient buffer"},
        {6, u"Not implemented"},
        {7, u"Win32 error"},
        {8, u"Wrong state"},
        {9, u"Operation was aborted"},
        {10, u"File not found"},
        {11, u"Value overflow"},
        {12, u"Accedd denied"},
        {13, u"Unknown image format"},
        {14, u"Font family not found"},
        {15, u"Font style not found"},
        {16, u"Not a TrueType font"},
        {17, u"Unsupported library version"},
        {18, u"Library not initialized"},
        {19, u"Property not found"},
        {20, u"Property not supported"},
    };
    for (const auto& [status, text] : rows)
        EXPECT_EQ(GetGdiPlusStatusText(status), text) << status;
}

TEST(GetGdiPlusStatusText, ANumberAboveTheTableStandsBehindTheText) {
    EXPECT_EQ(GetGdiPlusStatusText(21), u"Unknown error 21");
    EXPECT_EQ(GetGdiPlusStatusText(2147483647), u"Unknown error 2147483647");
    EXPECT_EQ(GetGdiPlusStatusText(-2), u"Unknown error -2");
}

TEST(PictureTypeOfRawFormat, EveryRowOfTheTable) {
    using Type = orvPictureTypeEx;
    const std::map<const char16_t*, Type> rows{
        {u"{B96B3CAE-0728-11D3-9D7B-0000F81EF32E}", Type::orvPteJPG},
        {u"{B96B3CB5-0728-11D3-9D7B-0000F81EF32E}", Type::orvPteICO},
        {u"{B96B3CAB-0728-11D3-9D7B-0000F81EF32E}", Type::orvPteBMP},
        {u"{B96B3CAF-0728-11D3-9D7B-0000F81EF32E}", Type::orvPtePNG},
        {u"{B96B3CB0-0728-11D3-9D7B-0000F81EF32E}", Type::orvPteGIF},
        {u"{B96B3CB1-0728-11D3-9D7B-0000F81EF32E}", Type::orvPteTIFF},
    };
    for (const auto& [identifier, type] : rows)
        EXPECT_EQ(pictureTypeOf(identifier), type);
}

TEST(PictureTypeOfRawFormat, AnythingElseIsUnknown) {
    for (const char16_t* other :
         {u"", u"{B96B3CAC-0728-11D3-9D7B-0000F81EF32E}", u"{b96b3caf-0728-11d3-9d7b-0000f81ef32e}",
          u"B96B3CAF-0728-11D3-9D7B-0000F81EF32E"}) {
        EXPECT_EQ(pictureTypeOf(other), orvPictureTypeEx::orvPteUnknown);
    }
}

class ImageWrapper : public testing::Test {
protected:
    GdiplusStatus status_ = GdiplusStatus::ok;
    std::u16string loaded_;
    ScopedTarget<GdiplusStatus(const std::u16string&, GdiplusImage&)> load_{
        gdiplus.GdipLoadImageFromFile, [this](const std::u16string& name, GdiplusImage& image) {
            loaded_ = name;
            image = GdiplusImage{77};
            return status_;
        }};
    ScopedTarget<GdiplusStatus(GdiplusImage)> dispose_{
        gdiplus.GdipDisposeImage, [](GdiplusImage) { return GdiplusStatus::ok; }};
    test::Recorder recorder_{gdiplus};
};

TEST_F(ImageWrapper, BitsPerPixelByEveryRowOfTheTable) {
    const std::map<std::uint32_t, std::int32_t> rows{
        {0x30101, 1},  {0x30402, 4},   {0x30803, 8},    {0x21005, 16},   {0x21006, 16},
        {0x61007, 16}, {0x101004, 16}, {0x21808, 24},   {0x22009, 32},   {0x26200A, 32},
        {0xE200B, 32}, {0x10300C, 48}, {0x34400D, 64},  {0x1C4000E, 64}, {0x200F, 0},
        {0, 0},        {0x30102, 0},   {0xFFFFFFFF, 0},
    };
    std::uint32_t given = 0;
    ScopedTarget fake(gdiplus.GdipGetImagePixelFormat, [&](GdiplusImage, std::uint32_t& format) {
        format = given;
        return GdiplusStatus::ok;
    });
    const CGDIPlusImage image;
    for (const auto& [format, bits] : rows) {
        given = format;
        EXPECT_EQ(image.BPP(), bits) << std::hex << format;
        EXPECT_EQ(image.PixelFormat(), static_cast<std::int32_t>(format));
    }
}

TEST_F(ImageWrapper, LoadingFreesTheOldImageFirst) {
    CGDIPlusImage image;
    EXPECT_EQ(image.Handle(), GdiplusImage::none);
    image.LoadImage(u"a.png");
    EXPECT_EQ(image.Handle(), GdiplusImage{77});
    image.LoadImage(u"b.png");
    EXPECT_EQ(loaded_, u"b.png");
    EXPECT_TRUE(
        recorder_.saw({"GdipLoadImageFromFile(\"a.png\", 77) -> 0", "GdipDisposeImage(77) -> 0",
                       "GdipLoadImageFromFile(\"b.png\", 77) -> 0"}));
}

TEST_F(ImageWrapper, AFailedLoadClearsTheHandleAndRaisesTheStatusText) {
    CGDIPlusImage image;
    image.LoadImage(u"a.png");
    status_ = GdiplusStatus::outOfMemory;
    const auto failure = failureOf([&] { image.LoadImage(u"b.png"); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number, static_cast<std::int32_t>(0x80040000));
    EXPECT_EQ(failure->description, u"Can't load image from file. Invalid picture");
    EXPECT_EQ(image.Handle(), GdiplusImage::none);
}

TEST_F(ImageWrapper, FreeingTwiceAndEndingFreesOnce) {
    {
        CGDIPlusImage image;
        image.LoadImage(u"a.png");
        image.FreeImage();
        image.FreeImage();
        EXPECT_EQ(image.Handle(), GdiplusImage::none);
    }
    EXPECT_EQ(recorder_.count("GdipDisposeImage"), 1u);
}

TEST_F(ImageWrapper, TheEndFreesTheImage) {
    {
        CGDIPlusImage image;
        image.LoadImage(u"a.png");
    }
    EXPECT_EQ(recorder_.count("GdipDisposeImage"), 1u);
}

TEST_F(ImageWrapper, TheFormatsIdentifierIsWrittenIntoABufferOfAHundred) {
    ScopedTarget format(gdiplus.GdipGetImageRawFormat, [](GdiplusImage, ClassIdBytes& identifier) {
        identifier.bytes[0] = 1;
        return GdiplusStatus::ok;
    });
    std::size_t room = 0;
    const auto real = ole32.StringFromGUID2;
    ScopedTarget text(ole32.StringFromGUID2, [&](const ClassIdBytes& id, std::span<char16_t> to) {
        room = to.size();
        return real(id, to);
    });
    EXPECT_EQ(CGDIPlusImage().RawFormatCLSID(), u"{00000001-0000-0000-0000-000000000000}");
    EXPECT_EQ(room, 100u);
}

TEST_F(ImageWrapper, AFailedStatusGivesNoIdentifier) {
    ScopedTarget format(gdiplus.GdipGetImageRawFormat, [](GdiplusImage, ClassIdBytes&) {
        return GdiplusStatus::invalidParameter;
    });
    EXPECT_EQ(CGDIPlusImage().RawFormatCLSID(), u"");
}

class GraphicsWrapper : public testing::Test {
protected:
    GdiplusStatus status_ = GdiplusStatus::ok;
    ScopedTarget<GdiplusStatus(DeviceContext, GdiplusGraphics&)> create_{
        gdiplus.GdipCreateFromHDC, [this](DeviceContext, GdiplusGraphics& graphics) {
            graphics = GdiplusGraphics{88};
            return status_;
        }};
    ScopedTarget<GdiplusStatus(GdiplusGraphics)> delete_{
        gdiplus.GdipDeleteGraphics, [](GdiplusGraphics) { return GdiplusStatus::ok; }};
    test::Recorder recorder_{gdiplus};
};

TEST_F(GraphicsWrapper, CreatingDeletesTheOldGraphicsFirst) {
    {
        CGDIPlusGraphics graphics;
        EXPECT_EQ(graphics.Handle(), GdiplusGraphics::none);
        graphics.CreateFromHDC(DeviceContext{5});
        EXPECT_EQ(graphics.Handle(), GdiplusGraphics{88});
        graphics.CreateFromHDC(DeviceContext{6});
    }
    EXPECT_TRUE(recorder_.saw({"GdipCreateFromHDC(5, 88) -> 0", "GdipDeleteGraphics(88) -> 0",
                               "GdipCreateFromHDC(6, 88) -> 0", "GdipDeleteGraphics(88) -> 0"}));
}

TEST_F(GraphicsWrapper, AFailureClearsTheHandleAndRaisesTheStatusText) {
    CGDIPlusGraphics graphics;
    status_ = GdiplusStatus::accessDenied;
    const auto failure = failureOf([&] { graphics.CreateFromHDC(DeviceContext{5}); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number, static_cast<std::int32_t>(0x80040000));
    EXPECT_EQ(failure->description,
              u"Can't initialize graphics from device context. Accedd denied");
    EXPECT_EQ(graphics.Handle(), GdiplusGraphics::none);
    graphics.DeleteGraphics();
    EXPECT_EQ(recorder_.count("GdipDeleteGraphics"), 0u);
}

/// Without the library or a function of it, the first call raises what such a call raises in hosts.
TEST(GdiplusBinding, WhatCanNotBeBoundRaisesAtTheCall) {
    std::uint32_t error = 126;
    ScopedTarget load(gdiplus.GdipLoadImageFromFile, [&](const std::u16string&, GdiplusImage&) {
        setLastError(error);
        return GdiplusStatus::notBound;
    });
    ScopedTarget width(gdiplus.GdipGetImageWidth, [&](GdiplusImage, std::uint32_t&) {
        setLastError(error);
        return GdiplusStatus::notBound;
    });
    CGDIPlusImage image;
    auto failure = failureOf([&] { image.LoadImage(u"a.png"); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number, error::kFileNotFound);
    EXPECT_EQ(failure->description, u"File not found: GDIPlus.DLL");
    error = 127;
    failure = failureOf([&] { image.Width(); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number, 453);
}

TEST(StringFromGUID2, WritesBracesUpperCaseAndANulOrNothing) {
    const ClassIdBytes png{
        {0xAF, 0x3C, 0x6B, 0xB9, 0x28, 0x07, 0xD3, 0x11, 0x9D, 0x7B, 0, 0, 0xF8, 0x1E, 0xF3, 0x2E}};
    std::array<char16_t, 39> text{};
    EXPECT_EQ(ole32.StringFromGUID2(png, text), 39);
    EXPECT_EQ(std::u16string(text.data()), u"{B96B3CAF-0728-11D3-9D7B-0000F81EF32E}");
    EXPECT_EQ(ole32.StringFromGUID2(png, std::span(text).first(38)), 0);
}

}  // namespace
}  // namespace orvane
