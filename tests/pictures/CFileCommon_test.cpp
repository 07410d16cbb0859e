#include "pictures/CFileCommon.h"

#include "frame/values/codepage.h"
#include "pictures/DetectCommonBitmapType.h"
#include "pictures/fake_picture.h"
#include "pictures/modBitmapWorks.h"
#include "pictures/picture_pixels.h"
#include "platform/host_runtime.h"
#include "platform/kernel32.h"
#include "platform/user32.h"
#include "support/recorder.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

#include <optional>

namespace orvane {
namespace {

using namespace platform;
using test::FakePicture;
using test::ScopedTarget;
using Type = orvPictureTypeEx;

using Names = std::vector<std::string>;

Picture bitmapPicture(std::int32_t width, std::int32_t height) {
    const std::int32_t size = GetRowStride(width, 24) * height;
    return CreatePictureFromImage({width, height, 24, {}, Array<std::uint8_t>(1, size)});
}

class FileCommon : public test::TempDirTest {
protected:
    /// Loads a file with the host's loader answering `picture`.
    Picture load(const Picture& picture, std::string_view content = "BM") {
        const std::string name = dir_.write("file.any", content);
        ScopedTarget fake(hostRuntime.LoadPicture,
                          [&](const std::string& asked, IPictureDisp*& answer) {
                              EXPECT_EQ(asked, name);
                              answer = test::sharedOf(picture);
                              return std::int32_t{0};
                          });
        return CFileCommon().LoadPicture(fromAnsi(name), info_);
    }

    void expectInfo(std::int32_t width, std::int32_t height, std::int32_t depth, Type type) {
        EXPECT_EQ(info_->Width(), width);
        EXPECT_EQ(info_->Height(), height);
        EXPECT_EQ(info_->ImageBPP(), depth);
        EXPECT_EQ(info_->PictureType(), type);
    }

    Ref<PictureInfo> info_ = [] {
        auto info = make<PictureInfo>();
        info->SetInfo({11, 12, 13, {}, {}}, Type::orvPtePSD);
        return info;
    }();
};

TEST_F(FileCommon, WantsEveryFile) {
    EXPECT_TRUE(CFileCommon().Verify(u""));
    EXPECT_TRUE(CFileCommon().Verify(u"no such file"));
}

TEST_F(FileCommon, TellsABitmapsSizeAndDepth) {
    const Picture picture = bitmapPicture(7, 5);
    EXPECT_TRUE(load(picture).is(picture));
    expectInfo(7, 5, 24, Type::orvPteBMP);
}

TEST_F(FileCommon, OfAGifTellsTheBitmapsDepthNotTheFiles) {
    // The file has a table of 8 colours, 3 bits.
    const std::string content("GIF89a\2\0\1\0\x82\0\0", 13);
    load(bitmapPicture(7, 5), content);
    expectInfo(7, 5, 24, Type::orvPteGIF);
    load(bitmapPicture(7, 5), "gif89a");
    expectInfo(7, 5, 24, Type::orvPteGIF);
}

TEST_F(FileCommon, TellsAMetafile) {
    load(FakePicture::make(Picture::Type::metafile));
    expectInfo(-1, -1, -1, Type::orvPteWMF);
}

TEST_F(FileCommon, TellsAnEnhancedMetafile) {
    load(FakePicture::make(Picture::Type::enhancedMetafile));
    expectInfo(-1, -1, -1, Type::orvPteEMF);
}

/// An icon that can be asked about, with two bitmaps that the asker has to delete.
class FileCommonIcon : public FileCommon {
protected:
    Names loadIcon(bool isIcon, bool hasColor) {
        ScopedTarget fake(user32.GetIconInfo, [=](IconHandle icon, IconFacts& facts) {
            EXPECT_EQ(icon, static_cast<IconHandle>(77));
            BitmapInfo one;
            one.biWidth = one.biHeight = 1;
            one.biBitCount = 24;
            void* bits = nullptr;
            const auto bitmap = [&] {
                return gdi32.CreateDIBSection(DeviceContext::none, one, kDibRgbColors, bits);
            };
            facts = {isIcon, 0, 0, bitmap(), hasColor ? bitmap() : BitmapHandle::none};
            return true;
        });
        test::Recorder recorder(user32, gdi32);
        load(FakePicture::make(Picture::Type::icon, 77));
        EXPECT_EQ(recorder.leftOpen(), Names());
        return recorder.names();
    }
};

TEST_F(FileCommonIcon, IsToldAndBothItsBitmapsAreDeleted) {
    EXPECT_EQ(loadIcon(true, true), (Names{"CreateDIBSection", "CreateDIBSection", "GetIconInfo",
                                           "DeleteObject", "DeleteObject"}));
    expectInfo(-1, -1, -1, Type::orvPteICO);
}

TEST_F(FileCommonIcon, IsACursorWhenTheSystemSaysSo) {
    loadIcon(false, true);
    expectInfo(-1, -1, -1, Type::orvPteCUR);
}

TEST_F(FileCommonIcon, OfTwoColoursHasOneBitmap) {
    EXPECT_EQ(loadIcon(true, false), (Names{"CreateDIBSection", "GetIconInfo", "DeleteObject"}));
    expectInfo(-1, -1, -1, Type::orvPteICO);
}

TEST_F(FileCommon, GivesNothingForWhatTheHostsLoaderRefuses) {
    for (const std::int32_t number : {481, 53, 75, 7}) {
        ScopedTarget fake(hostRuntime.LoadPicture,
                          [=](const std::string&, IPictureDisp*&) { return number; });
        EXPECT_TRUE(CFileCommon().LoadPicture(u"file.any", info_).isNothing());
        expectInfo(0, 0, 0, Type::orvPteNothing);
    }
}

TEST_F(FileCommon, WorksWithoutAnInfo) {
    info_ = nullptr;
    EXPECT_FALSE(load(bitmapPicture(1, 1)).isNothing());
    EXPECT_FALSE(load(FakePicture::make(Picture::Type::metafile)).isNothing());
    ScopedTarget fake(hostRuntime.LoadPicture,
                      [](const std::string&, IPictureDisp*&) { return std::int32_t{481}; });
    EXPECT_TRUE(CFileCommon().LoadPicture(u"file.any", nullptr).isNothing());
}

TEST_F(FileCommon, KeepsNoReferenceToThePicture) {
    const int before = FakePicture::alive;
    load(FakePicture::make(Picture::Type::metafile));
    EXPECT_EQ(FakePicture::alive, before);
}

class CommonBitmapType : public test::TempDirTest {
protected:
    Type typeOf(std::string_view content) {
        return typeOfFile(fromAnsi(dir_.write("file.any", content)));
    }
    Type typeOfFile(WStringView name) {
        image_ = {};
        test::Recorder recorder(kernel32, gdi32);
        const Type type = DetectCommonBitmapType(picture_, name, image_);
        EXPECT_EQ(recorder.leftOpen(), Names());
        EXPECT_EQ(recorder.names().front(), "GetObjectA");
        return type;
    }

    Picture picture_ = bitmapPicture(9, 4);
    DecodedImage image_;
};

TEST_F(CommonBitmapType, IsABitmapAfterItsTwoLetters) {
    EXPECT_EQ(typeOf("BM"), Type::orvPteBMP);
    EXPECT_EQ(typeOf("BM and more"), Type::orvPteBMP);
}

TEST_F(CommonBitmapType, TheLettersOfABitmapAreUpperCase) {
    EXPECT_EQ(typeOf("bm"), Type::orvPteJPG);
    EXPECT_EQ(typeOf("MB"), Type::orvPteJPG);
}

TEST_F(CommonBitmapType, IsAGifInAnyCase) {
    for (const char* content : {"GIF89a", "gif89a", "GiF", "gIf87a"}) {
        EXPECT_EQ(typeOf(content), Type::orvPteGIF) << content;
    }
}

TEST_F(CommonBitmapType, IsAJpegForAnythingElse) {
    for (const char* content : {"", "B", "GI", "GIX", " GIF", "\xFF\xD8\xFF", "PNG"}) {
        EXPECT_EQ(typeOf(content), Type::orvPteJPG) << content;
    }
}

TEST_F(CommonBitmapType, IsAJpegWhenTheFileCanNotBeRead) {
    EXPECT_EQ(typeOfFile(fromAnsi(dir_.file("missing"))), Type::orvPteJPG);
    EXPECT_EQ(typeOfFile(fromAnsi(dir_.name())), Type::orvPteJPG);
    ScopedTarget fake(kernel32.ReadFile,
                      [](FileHandle, std::span<std::uint8_t>, std::uint32_t&) { return false; });
    EXPECT_EQ(typeOf("BM"), Type::orvPteJPG);
}

TEST_F(CommonBitmapType, TakesSizeAndDepthFromThePicture) {
    typeOf("BM");
    EXPECT_EQ(image_.Width, 9);
    EXPECT_EQ(image_.Height, 4);
    EXPECT_EQ(image_.BitsPerPixel, 24);
}

}  // namespace
}  // namespace orvane
