#include "pictures/CFileTGA.h"

#include "frame/values/codepage.h"
#include "pictures/picture_pixels.h"
#include "pictures/raised_failure.h"
#include "pictures/targa_file.h"
#include "platform/tables.h"
#include "support/recorder.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

/// The reader as one of a file's readers: files on a disk, its `PictureInfo`, its picture.
namespace orvane {
namespace {

using test::ScopedTarget;
using test::TargaFile;
using Type = orvPictureTypeEx;
using Names = std::vector<std::string>;

class FileTGA : public test::TempDirTest {
protected:
    WString write(const TargaFile& file) { return fromAnsi(dir_.write("file.tga", file.bytes())); }
    /// Nothing is read, nothing is raised, and the info is zero.
    void expectRefused(WStringView name) {
        EXPECT_FALSE(reader_.Verify(name));
        info_->SetInfo({11, 12, 13, {}, {}}, Type::orvPtePSD);
        EXPECT_TRUE(reader_.LoadPicture(name, info_).isNothing());
        expectInfo(0, 0, 0, Type::orvPteNothing);
        DecodedImage image;
        EXPECT_FALSE(CFileTGA::ReadTGA(name, image));
    }
    void expectInfo(std::int32_t width, std::int32_t height, std::int32_t depth, Type type) {
        EXPECT_EQ(info_->Width(), width);
        EXPECT_EQ(info_->Height(), height);
        EXPECT_EQ(info_->ImageBPP(), depth);
        EXPECT_EQ(info_->PictureType(), type);
    }

    CFileTGA reader_;
    Ref<PictureInfo> info_ = make<PictureInfo>();
    const TargaFile small_{.width = 3, .height = 2, .body = test::countedBytes(18)};
};

TEST_F(FileTGA, OfEveryDepthIsA24BitPicture) {
    for (const std::uint8_t depth : test::kDepthsAndNone) {
        TargaFile file = small_;
        file.depth = depth;
        const Picture picture = reader_.LoadPicture(write(file), info_);
        ASSERT_FALSE(picture.isNothing());
        expectInfo(3, 2, 24, Type::orvPteTGA);
        EXPECT_EQ(test::factsOf(picture).bitsPixel, 24);
    }
}

TEST_F(FileTGA, WorksWithoutAnInfo) {
    EXPECT_FALSE(reader_.LoadPicture(write(small_), nullptr).isNothing());
    EXPECT_TRUE(reader_.LoadPicture(fromAnsi(dir_.file("missing")), nullptr).isNothing());
}

TEST_F(FileTGA, ThatIsNotThereIsRefused) {
    expectRefused(fromAnsi(dir_.file("missing.tga")));
}

TEST_F(FileTGA, ThatIsAFolderIsRefused) {
    expectRefused(fromAnsi(dir_.name()));
}

TEST_F(FileTGA, OfAnImpossibleNameIsRefused) {
    expectRefused(u"");
    expectRefused(std::u16string(5000, u'n'));
    expectRefused(std::u16string(u"a\0b.tga", 7));
    expectRefused(u"\u7D75\u7D75.tga");
}

TEST_F(FileTGA, ThatCanNotBeReadIsRefused) {
    const WString name = write(small_);
    ScopedTarget fake(platform::kernel32.ReadFile, [](auto&&...) {
        platform::setLastError(platform::kErrorInvalidFunction);
        return false;
    });
    expectRefused(name);
}

TEST_F(FileTGA, ThatCanNotBeReadToItsEndIsRefused) {
    // Long enough that its pixels take a second read.
    const WString name =
        write({.width = 3000, .height = 30, .body = test::countedBytes(3000 * 30 * 3)});
    const auto real = platform::kernel32.ReadFile;
    int reads = 0;
    ScopedTarget fake(
        platform::kernel32.ReadFile,
        [&](platform::FileHandle file, std::span<std::uint8_t> buffer, std::uint32_t& count) {
            return ++reads == 1 && real(file, buffer, count);
        });
    DecodedImage image;
    EXPECT_FALSE(CFileTGA::ReadTGA(name, image));
    EXPECT_EQ(reads, 2);
}

TEST_F(FileTGA, IsOpenedToVerifyAndToRead) {
    const WString name = write(small_);
    test::Recorder recorder(platform::kernel32);
    reader_.LoadPicture(name, info_);
    Names names = recorder.names();
    std::erase_if(names, [](const std::string& each) {
        return each != "CreateFileA" && each != "CloseHandle";
    });
    EXPECT_EQ(names, (Names{"CreateFileA", "CloseHandle", "CreateFileA", "CloseHandle"}));
}

TEST_F(FileTGA, ThatFailsIsClosed) {
    TargaFile file = small_;
    file.width = -1;
    const WString name = write(file);
    test::Recorder recorder(platform::kernel32);
    EXPECT_TRUE(reader_.LoadPicture(name, info_).isNothing());
    EXPECT_EQ(recorder.count("CreateFileA"), 2U);
    EXPECT_EQ(recorder.count("CloseHandle"), 2U);
}

TEST_F(FileTGA, IsReadOncePerRowStraightFromTheFile) {
    constexpr int kRows = 25;
    // A row of 32,766 bytes; the header's block holds the first two.
    const WString name =
        write({.width = 10922, .height = kRows, .body = test::countedBytes(10922 * kRows * 3)});
    test::Recorder recorder(platform::kernel32);
    DecodedImage image;
    ASSERT_TRUE(CFileTGA::ReadTGA(name, image));
    EXPECT_LE(recorder.count("ReadFile"), kRows + 1U);
}

TEST_F(FileTGA, ThatIsTooLargeForTheSystemIsAnErrorAndNotNothing) {
    const WString name = write(small_);
    ScopedTarget fake(platform::gdi32.CreateCompatibleBitmap,
                      [](auto&&...) { return platform::BitmapHandle::none; });
    EXPECT_TRUE(test::raisesInternal(u"Can't create compatible bitmap.",
                                     [&] { reader_.LoadPicture(name, info_); }));
}

}  // namespace
}  // namespace orvane
