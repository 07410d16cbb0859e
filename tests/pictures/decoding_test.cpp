#include "pictures/decoding.h"

#include "frame/values/codepage.h"
#include "pictures/CFilePCX.h"
#include "pictures/CFilePSD.h"
#include "pictures/CFileTGA.h"
#include "pictures/pcx_file.h"
#include "pictures/picture_pixels.h"
#include "pictures/psd_file.h"
#include "pictures/raised_failure.h"
#include "pictures/targa_file.h"
#include "platform/tables.h"
#include "support/recorder.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

/// The readers with a decoder of their own as readers of files: on a disk, with a `PictureInfo`, up
/// to a picture.
namespace orvane {
namespace {

using test::Bytes;
using test::ScopedTarget;
using Type = orvPictureTypeEx;
using Names = std::vector<std::string>;

/// What is the reader's own: files of 3 x 2 pixels, and one that takes more than one read and pages
/// of memory.
struct Targa {
    using Reader = CFileTGA;
    static constexpr auto kRead = &CFileTGA::ReadTGA;
    static constexpr Type kType = Type::orvPteTGA;
    static constexpr int kDepth = 24;

    static Bytes file() {
        return test::TargaFile{.width = 3, .height = 2, .body = test::countedBytes(18)}.bytes();
    }
    static Bytes failing() {
        return test::TargaFile{.width = -1, .height = 2, .body = test::countedBytes(18)}.bytes();
    }
    static Bytes large() {
        const test::TargaFile file{
            .width = 3000, .height = 500, .body = test::countedBytes(3000 * 500 * 3)};
        return file.bytes();
    }
};

struct Pcx {
    using Reader = CFilePCX;
    static constexpr auto kRead = &CFilePCX::ReadPCX;
    static constexpr Type kType = Type::orvPtePCX;
    static constexpr int kDepth = 8;

    static Bytes file() { return test::indexedPcx(3, 2, 4).bytes(); }
    static Bytes failing() { return test::indexedPcx(3, 2, 5).bytes(); }
    static Bytes large() { return test::planarPcx(3000, 500, 3000).bytes(); }
};

struct Psd {
    using Reader = CFilePSD;
    static constexpr auto kRead = &CFilePSD::ReadPSD;
    static constexpr Type kType = Type::orvPtePSD;
    static constexpr int kDepth = 24;

    static Bytes raw(int width, int height, int channels) {
        const test::PsdFile file{.channels = channels,
                                 .height = height,
                                 .width = width,
                                 .compression = 0,
                                 .data = test::countedBytes(width * height * channels)};
        return file.bytes();
    }
    static Bytes file() { return raw(3, 2, 4); }
    static Bytes failing() { return raw(3, 2, 3); }
    static Bytes large() { return raw(3000, 500, 4); }
};

template <class Format>
class Decoding : public test::TempDirTest {
protected:
    WString write(const Bytes& bytes) { return fromAnsi(dir_.write("file", bytes)); }

    bool reads(WStringView name) {
        DecodedImage image;
        return Format::kRead(name, image);
    }
    /// Nothing is read, nothing is raised, and the info is zero.
    void expectRefused(WStringView name) {
        EXPECT_FALSE(reader_.Verify(name));
        expectNothing(name);
    }
    void expectNothing(WStringView name) {
        info_->SetInfo({11, 12, 13, {}, {}}, Type::orvPteBMP);
        EXPECT_TRUE(reader_.LoadPicture(name, info_).isNothing());
        expectInfo(0, 0, 0, Type::orvPteNothing);
        EXPECT_FALSE(reads(name));
    }
    void expectInfo(std::int32_t width, std::int32_t height, std::int32_t depth, Type type) {
        EXPECT_EQ(info_->Width(), width);
        EXPECT_EQ(info_->Height(), height);
        EXPECT_EQ(info_->ImageBPP(), depth);
        EXPECT_EQ(info_->PictureType(), type);
    }

    typename Format::Reader reader_;
    Ref<PictureInfo> info_ = make<PictureInfo>();
};

using Formats = testing::Types<Targa, Pcx, Psd>;
TYPED_TEST_SUITE(Decoding, Formats, );

TYPED_TEST(Decoding, AFileIsA24BitPictureAndFillsTheInfo) {
    const WString name = this->write(TypeParam::file());
    EXPECT_TRUE(this->reader_.Verify(name));
    const Picture picture = this->reader_.LoadPicture(name, this->info_);
    ASSERT_FALSE(picture.isNothing());
    this->expectInfo(3, 2, TypeParam::kDepth, TypeParam::kType);
    EXPECT_EQ(test::factsOf(picture).bitsPixel, 24);
    EXPECT_EQ(test::factsOf(picture).width, 3);
    EXPECT_EQ(test::factsOf(picture).height, 2);
}

TYPED_TEST(Decoding, WorksWithoutAnInfo) {
    const WString name = this->write(TypeParam::file());
    EXPECT_FALSE(this->reader_.LoadPicture(name, nullptr).isNothing());
    const WString missing = fromAnsi(this->dir_.file("missing"));
    EXPECT_TRUE(this->reader_.LoadPicture(missing, nullptr).isNothing());
}

TYPED_TEST(Decoding, AFileThatIsNotThereIsRefused) {
    this->expectRefused(fromAnsi(this->dir_.file("missing")));
}

TYPED_TEST(Decoding, AFolderIsRefused) {
    this->expectRefused(fromAnsi(this->dir_.name()));
}

TYPED_TEST(Decoding, AnEmptyFileIsRefused) {
    this->expectRefused(this->write({}));
}

TYPED_TEST(Decoding, AnImpossibleNameIsRefused) {
    this->expectRefused(u"");
    this->expectRefused(std::u16string(5000, u'n'));
    this->expectRefused(std::u16string(u"a\0b.tga", 7));
    this->expectRefused(u"\u7D75\u7D75.tga");
}

TYPED_TEST(Decoding, AFileThatCanNotBeReadIsRefused) {
    const WString name = this->write(TypeParam::file());
    ScopedTarget fake(platform::kernel32.ReadFile, [](auto&&...) {
        platform::setLastError(platform::kErrorInvalidFunction);
        return false;
    });
    this->expectRefused(name);
}

TYPED_TEST(Decoding, AFileThatCanNotBeReadToItsEndFails) {
    const WString name = this->write(TypeParam::large());
    ASSERT_TRUE(this->reads(name));
    const auto real = platform::kernel32.ReadFile;
    int reads = 0;
    ScopedTarget fake(
        platform::kernel32.ReadFile,
        [&](platform::FileHandle file, std::span<std::uint8_t> buffer, std::uint32_t& count) {
            return ++reads == 1 && real(file, buffer, count);
        });
    EXPECT_FALSE(this->reads(name));
    EXPECT_EQ(reads, 2);
}

TYPED_TEST(Decoding, AFileThatFailsGivesNothingAndZeroesTheInfo) {
    const WString name = this->write(TypeParam::failing());
    EXPECT_TRUE(this->reader_.Verify(name));
    this->expectNothing(name);
}

TYPED_TEST(Decoding, AFileIsOpenedToVerifyAndToRead) {
    const WString name = this->write(TypeParam::file());
    test::Recorder recorder(platform::kernel32);
    this->reader_.LoadPicture(name, this->info_);
    Names names = recorder.names();
    std::erase_if(names, [](const std::string& each) {
        return each != "CreateFileA" && each != "CloseHandle";
    });
    EXPECT_EQ(names, (Names{"CreateFileA", "CloseHandle", "CreateFileA", "CloseHandle"}));
}

TYPED_TEST(Decoding, AFileThatFailsIsClosed) {
    const WString name = this->write(TypeParam::failing());
    test::Recorder recorder(platform::kernel32);
    EXPECT_TRUE(this->reader_.LoadPicture(name, this->info_).isNothing());
    EXPECT_EQ(recorder.count("CreateFileA"), 2U);
    EXPECT_EQ(recorder.count("CloseHandle"), 2U);
}

TYPED_TEST(Decoding, AFileWithoutMemoryForItsPixelsFails) {
    const WString name = this->write(TypeParam::large());
    ScopedTarget fake(platform::kernel32.VirtualAlloc, [](std::size_t) -> void* {
        platform::setLastError(platform::kErrorNotEnoughMemory);
        return nullptr;
    });
    this->expectNothing(name);
}

TYPED_TEST(Decoding, APictureTooLargeForTheSystemIsAnErrorAndNotNothing) {
    const WString name = this->write(TypeParam::file());
    ScopedTarget fake(platform::gdi32.CreateCompatibleBitmap,
                      [](auto&&...) { return platform::BitmapHandle::none; });
    EXPECT_TRUE(test::raisesInternal(u"Can't create compatible bitmap.",
                                     [&] { this->reader_.LoadPicture(name, this->info_); }));
}

}  // namespace
}  // namespace orvane
