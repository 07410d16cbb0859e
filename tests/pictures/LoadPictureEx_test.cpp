#include "pictures/LoadPictureEx.h"

#include "frame/binary_file.h"
#include "frame/values/codepage.h"
#include "pictures/picture_pixels.h"
#include "pictures/raised_failure.h"
#include "pictures/targa_file.h"
#include "platform/gdiplus.h"
#include "platform/host_runtime.h"
#include "platform/tables.h"
#include "support/file_names.h"
#include "support/raised_error.h"
#include "support/recorder.h"
#include "support/temp_dir.h"
#include "utilities/CommandLineParser.h"

#include <gtest/gtest.h>

#ifndef _WIN32
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>
#endif

namespace orvane {
namespace {

using test::raisedBy;
using test::ScopedTarget;
using test::TargaFile;
using Type = orvPictureTypeEx;

/// A Targa file of 3 x 2 pixels.
std::vector<std::uint8_t> targa() {
    return TargaFile{.width = 3, .height = 2, .body = test::countedBytes(18)}.bytes();
}

/// A bitmap file of 2 x 1 pixels of 24 bits.
std::vector<std::uint8_t> bitmap() {
    std::vector<std::uint8_t> file{'B', 'M', 62, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0, 40, 0, 0, 0};
    file.insert(file.end(), {2, 0, 0, 0, 1, 0, 0, 0, 1, 0, 24, 0, 0, 0, 0, 0, 8, 0, 0, 0});
    file.insert(file.end(), 16, 0);
    file.insert(file.end(), {10, 20, 30, 40, 50, 60, 0, 0});
    return file;
}

/// A GIF file of 2 x 1 pixels with a table of 8 colours.
std::vector<std::uint8_t> gif() {
    std::vector<std::uint8_t> file{'G', 'I', 'F', '8', '9', 'a', 2, 0, 1, 0, 0x82, 0, 0};
    for (std::uint8_t i = 0; i < 24; ++i)
        file.push_back(static_cast<std::uint8_t>(i * 10));
    // Codes of 4 bits: clear, 1, 2, end.
    file.insert(file.end(), {0x2C, 0, 0, 0, 0, 2, 0, 1, 0, 0, 3, 2, 0x18, 0x92, 0, 0x3B});
    return file;
}

Ref<PictureInfo> filledInfo() {
    auto info = make<PictureInfo>();
    info->SetInfo({11, 12, 13, {}, {}}, Type::orvPtePSD);
    return info;
}

class LoadPicture : public test::TempDirTest {
protected:
    WString write(std::string_view name, const std::vector<std::uint8_t>& bytes) {
        return fromAnsi(dir_.write(name, bytes));
    }
    void expectInfo(std::int32_t width, std::int32_t height, std::int32_t depth, Type type) {
        ASSERT_TRUE(info_);
        EXPECT_EQ(info_->Width(), width);
        EXPECT_EQ(info_->Height(), height);
        EXPECT_EQ(info_->ImageBPP(), depth);
        EXPECT_EQ(info_->PictureType(), type);
    }

    Ref<PictureInfo> info_;
};

TEST_F(LoadPicture, OfAnEmptyNameIsEmptyAndLeavesTheInfoAlone) {
    info_ = filledInfo();
    const Picture picture = LoadPictureEx(u"", info_);
    EXPECT_EQ(picture.type(), Picture::Type::none);
    EXPECT_EQ(picture.handle(), 0U);
    expectInfo(11, 12, 13, Type::orvPtePSD);
}

TEST_F(LoadPicture, OfAnEmptyNameCreatesNoInfo) {
    EXPECT_FALSE(LoadPictureEx(u"", info_).isNothing());
    EXPECT_FALSE(LoadPictureEx({}, info_).isNothing());
    EXPECT_FALSE(info_);
}

TEST_F(LoadPicture, OfAGifReportsTheBitmapsDepthNotTheFiles) {
    const Picture picture = LoadPictureEx(write("a.gif", gif()), info_);
    const std::int32_t depth = test::factsOf(picture).bitsPixel;
    EXPECT_NE(depth, 3);
    expectInfo(2, 1, depth, Type::orvPteGIF);
#ifndef _WIN32  // the depth is the system's choice there
    EXPECT_EQ(depth, 4);
#endif
}

#ifndef _WIN32  // there pipes have no names in folders
TEST_F(LoadPicture, OfAPipeWithAnIdleWriterIsRefusedByAllReadersAtOnce) {
    const std::string name = dir_.file("pipe");
    ASSERT_EQ(::mkfifo(name.c_str(), 0600), 0);
    const int writer = ::open(name.c_str(), O_RDWR);
    EXPECT_EQ(raisedBy([&] { LoadPictureEx(fromAnsi(name), info_); }), error::kInvalidPicture);
    EXPECT_EQ(info_->PictureType(), Type::orvPteNothing);
    ::close(writer);
}
#endif

TEST_F(LoadPicture, OfAnEmptyNameIsANewOneEachTime) {
    EXPECT_FALSE(LoadPictureEx(u"", info_).is(LoadPictureEx(u"", info_)));
}

TEST_F(LoadPicture, RaisesFileNotFoundAndCreatesNoInfo) {
    const auto failure =
        test::failureOf([this] { LoadPictureEx(fromAnsi(dir_.file("missing.bmp")), info_); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number, error::kFileNotFound);
    EXPECT_EQ(failure->description, standardDescription(error::kFileNotFound));
    EXPECT_FALSE(info_);
}

TEST_F(LoadPicture, RaisesFileNotFoundForAFolderAndLeavesTheInfoAlone) {
    info_ = filledInfo();
    EXPECT_EQ(raisedBy([this] { LoadPictureEx(fromAnsi(dir_.name()), info_); }),
              error::kFileNotFound);
    expectInfo(11, 12, 13, Type::orvPtePSD);
}

TEST_F(LoadPicture, RaisesInvalidPictureForATextAndLeavesTheFileUntouched) {
    const std::vector<std::uint8_t> text{'H', 'e', 'l', 'l', 'o', ',', ' ',
                                         't', 'h', 'e', 'r', 'e', '.', '\n'};
    const WString name = write("text.txt", text);
    const auto failure = test::failureOf([&] { LoadPictureEx(name, info_); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number, error::kInvalidPicture);
    EXPECT_EQ(failure->description, standardDescription(error::kInvalidPicture));
    EXPECT_EQ(dir_.read("text.txt"), text);
    EXPECT_EQ(dir_.entries(), std::vector<std::string>{"text.txt"});
}

TEST_F(LoadPicture, OnlyReadsTheFile) {
    const WString name = write("text.txt", {'t', 'e', 'x', 't'});
    test::Recorder recorder(platform::kernel32);
    raisedBy([&] { LoadPictureEx(name, info_); });
    for (const platform::CallRecord& call : recorder.calls()) {
        if (call.name == std::string("CreateFileA")) {
            EXPECT_EQ(call.arguments[1], std::to_string(0x80000000U));
        }
    }
    EXPECT_EQ(recorder.count("WriteFile") + recorder.count("DeleteFileA"), 0U);
    EXPECT_EQ(recorder.leftOpen(), std::vector<std::string>());
}

TEST_F(LoadPicture, ZeroesTheInfoWhenNoReaderTakesTheFile) {
    info_ = filledInfo();
    const WString name = write("text.txt", {'t', 'e', 'x', 't'});
    EXPECT_EQ(raisedBy([&] { LoadPictureEx(name, info_); }), error::kInvalidPicture);
    expectInfo(0, 0, 0, Type::orvPteNothing);
}

TEST_F(LoadPicture, CreatesAnInfoAlsoWhenNoReaderTakesTheFile) {
    const WString name = write("text.txt", {'t', 'e', 'x', 't'});
    EXPECT_EQ(raisedBy([&] { LoadPictureEx(name, info_); }), error::kInvalidPicture);
    expectInfo(0, 0, 0, Type::orvPteNothing);
}

TEST_F(LoadPicture, CreatesAnInfoForACallerWithoutOne) {
    const Picture picture = LoadPictureEx(write("picture.tga", targa()), info_);
    expectInfo(3, 2, 24, Type::orvPteTGA);
    EXPECT_EQ(test::factsOf(picture).width, 3);
}

TEST_F(LoadPicture, FillsTheInfoThatItIsGiven) {
    const Ref<PictureInfo> given = filledInfo();
    info_ = given;
    LoadPictureEx(write("picture.tga", targa()), info_);
    EXPECT_EQ(info_, given);
    expectInfo(3, 2, 24, Type::orvPteTGA);
}

TEST_F(LoadPicture, GivesATargaFilesPixels) {
    const Picture picture = LoadPictureEx(write("picture.tga", targa()), info_);
    const auto pixels = test::pixelsOf(picture);
    ASSERT_EQ(pixels.size(), 24U);
    for (std::size_t i = 0; i < 9; ++i) {
        EXPECT_EQ(pixels[i], i + 1);
        EXPECT_EQ(pixels[12 + i], i + 10);
    }
}

TEST_F(LoadPicture, TakesAFileOfTheHostsFormatsWhateverItsExtension) {
    for (const char* name : {"picture.bmp", "picture.tga", "picture.txt", "picture"}) {
        info_ = nullptr;
        const Picture picture = LoadPictureEx(write(name, bitmap()), info_);
        // Wine's loader makes 32 bits of every file: the depth is the bitmap's own.
        expectInfo(2, 1, test::factsOf(picture).bitsPixel, Type::orvPteBMP);
        const auto pixels = test::pixelsOf(picture);
        EXPECT_EQ(std::vector(pixels.begin(), pixels.begin() + 6),
                  (std::vector<std::uint8_t>{10, 20, 30, 40, 50, 60}));
    }
}

TEST_F(LoadPicture, TakesATargaFileWhateverItsExtension) {
    LoadPictureEx(write("picture.bmp", targa()), info_);
    expectInfo(3, 2, 24, Type::orvPteTGA);
}

TEST_F(LoadPicture, PassesTheErrorOfAPictureTooLargeThrough) {
    const WString name = write("picture.tga", targa());
    ScopedTarget fake(platform::gdi32.CreateCompatibleBitmap,
                      [](auto&&...) { return platform::BitmapHandle::none; });
    EXPECT_TRUE(test::raisesInternal(u"Can't create compatible bitmap.",
                                     [&] { LoadPictureEx(name, info_); }));
    expectInfo(0, 0, 0, Type::orvPteNothing);
}

TEST_F(LoadPicture, AsksTheHostsLoaderThenGdiPlusThenItsOwnReaders) {
    const WString name = write("picture.tga", targa());
    test::Recorder recorder({&platform::kernel32.GetFileAttributesA,
                             &platform::kernel32.CreateFileA, &platform::kernel32.CloseHandle,
                             &platform::hostRuntime.LoadPicture,
                             &platform::gdiplus.GdipLoadImageFromFile});
    LoadPictureEx(name, info_);
    const std::string quoted = platform::described(toAnsi(name));
    const std::string opened = "CreateFileA(" + quoted + ", *";
    // The readers of documents and of PCX files look at it, then the Targa reader does so for the
    // chain, for itself, and to read it.
    EXPECT_TRUE(recorder.saw(
        {"GetFileAttributesA(" + quoted + ") -> *", "LoadPicture(" + quoted + ", null) -> 481",
         "GetFileAttributesA(" + quoted + ") -> *", "GdipLoadImageFromFile(*, 0) -> *", opened,
         "CloseHandle(*", opened, "CloseHandle(*", opened, "CloseHandle(*", opened, "CloseHandle(*",
         opened, "CloseHandle(*"}));
    EXPECT_EQ(recorder.leftOpen(), std::vector<std::string>());
}

TEST_F(LoadPicture, TakesANameOfTheCodePage) {
    const WString name = nqBuildFileName(fromAnsi(dir_.name()), u"картинка.tga");
    {
        BinaryFile file(name, FileMode::createNew);
        file.put(targa());
    }
    LoadPictureEx(name, info_);
    expectInfo(3, 2, 24, Type::orvPteTGA);
}

TEST_F(LoadPicture, DoesNotFindANameThatTheCodePageLacks) {
    const WString name = nqBuildFileName(fromAnsi(dir_.name()), u"\u7D75.tga");
    EXPECT_EQ(raisedBy([&] { LoadPictureEx(name, info_); }), error::kFileNotFound);
}

class LoadPictureByVar : public LoadPicture {
protected:
    /// The object in the caller's variable.
    Ref<PictureInfo> infoIn(const Variant& variable) {
        const auto* object = variable.as<Object>();
        return object == nullptr ? nullptr : automation::libraryObject<PictureInfo>(*object);
    }
};

TEST_F(LoadPictureByVar, PutsANewInfoInTheVariable) {
    Variant info{Object()};
    const Variant result = LoadPictureExByVar(Variant(write("picture.tga", targa())), info);
    ASSERT_NE(result.as<Object>(), nullptr);
    EXPECT_EQ(test::factsOf(Picture(*result.as<Object>())).height, 2);
    info_ = infoIn(info);
    expectInfo(3, 2, 24, Type::orvPteTGA);
}

TEST_F(LoadPictureByVar, FillsTheInfoInTheVariable) {
    info_ = filledInfo();
    Variant info(info_->asObject());
    LoadPictureExByVar(Variant(write("picture.tga", targa())), info);
    EXPECT_EQ(infoIn(info), info_);
    expectInfo(3, 2, 24, Type::orvPteTGA);
}

TEST_F(LoadPictureByVar, WritesThroughAReferenceToTheCallersVariable) {
    Variant variable{Object()};
    Variant info = Variant::reference(variable);
    LoadPictureExByVar(Variant(write("picture.tga", targa())), info);
    info_ = infoIn(variable);
    expectInfo(3, 2, 24, Type::orvPteTGA);
}

TEST_F(LoadPictureByVar, OfAnEmptyNameIsEmptyAndLeavesNothing) {
    Variant info{Object()};
    const Variant result = LoadPictureExByVar(Variant(u""), info);
    EXPECT_EQ(Picture(*result.as<Object>()).handle(), 0U);
    EXPECT_TRUE(info.as<Object>()->isNothing());
}

TEST_F(LoadPictureByVar, RaisesTypeMismatchForAnotherObject) {
    Variant info(make<CommandLineParser>()->asObject());
    EXPECT_EQ(raisedBy([&] { LoadPictureExByVar(Variant(u""), info); }), error::kTypeMismatch);
}

TEST_F(LoadPictureByVar, RaisesObjectRequiredForAnEmptyVariable) {
    Variant info;
    EXPECT_EQ(raisedBy([&] { LoadPictureExByVar(Variant(u""), info); }), error::kObjectRequired);
}

TEST_F(LoadPictureByVar, ConvertsTheNameToAText) {
    Variant info{Object()};
    test::Recorder recorder(platform::kernel32);
    EXPECT_EQ(raisedBy([&] { LoadPictureExByVar(Variant(std::int32_t{12345}), info); }),
              error::kFileNotFound);
    EXPECT_EQ(recorder.calls().at(0).arguments.at(0), "\"12345\"");
    EXPECT_EQ(raisedBy([&] { LoadPictureExByVar(Variant::null(), info); }),
              error::kInvalidUseOfNull);
}

TEST_F(LoadPictureByVar, RaisesWhatLoadPictureExRaises) {
    Variant info{Object()};
    const WString name = write("text.txt", {'t', 'e', 'x', 't'});
    EXPECT_EQ(raisedBy([&] { LoadPictureExByVar(Variant(name), info); }), error::kInvalidPicture);
}

}  // namespace
}  // namespace orvane
