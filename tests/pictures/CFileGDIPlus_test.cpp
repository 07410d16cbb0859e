#include "pictures/CFileGDIPlus.h"

#include "frame/values/codepage.h"
#include "pictures/LoadPictureEx.h"
#include "pictures/picture_pixels.h"
#include "pictures/raised_failure.h"
#include "platform/tables.h"
#include "platform/user32.h"
#include "support/pictures.h"
#include "support/png_file.h"
#include "support/temp_dir.h"
#include "support/tiff_file.h"
#include "support/torture.h"

#include <gtest/gtest.h>

#include <set>
#include <string>

/// The reader through GDI+ over the platform's own GDI+, from a file to a picture.
namespace orvane {
namespace {

using namespace platform;
using test::PngFile;
using test::TiffFile;
using Type = orvPictureTypeEx;
using Colour = std::array<int, 3>;

/// A colour of the system as red, green and blue.
Colour buttonFace() {
    const std::uint32_t color = nqTranslateColor(0x8000000F, 0);
    return {static_cast<int>(color & 255), static_cast<int>(color >> 8 & 255),
            static_cast<int>(color >> 16 & 255)};
}

Colour pixelOf(const Picture& picture, std::size_t x, std::size_t y) {
    const auto stride = static_cast<std::size_t>((test::factsOf(picture).width * 3 + 3) / 4 * 4);
    const std::vector<std::uint8_t> pixels = test::pixelsOf(picture);
    const std::uint8_t* at = pixels.data() + y * stride + x * 3;
    return {at[2], at[1], at[0]};
}

PngFile stripes(int colour, int depth) {
    PngFile file;
    file.width = 4;
    file.height = 3;
    file.colour = colour;
    file.depth = depth;
    file.sample = [depth](std::uint32_t x, std::uint32_t, int channel) {
        const int most = (1 << depth) - 1;
        return channel == 3 ? (x < 2 ? 0 : most) : (channel == 0 ? most : 0);
    };
    if (colour == 3) file.palette = {10, 20, 30, 40, 50, 60};
    return file;
}

class GdiPlusFiles : public test::TempDirTest {
protected:
    /// Under a new name each time: on Windows the file of the last image stays locked.
    Picture load(const std::vector<std::uint8_t>& bytes) {
        const std::string entry = "picture" + std::to_string(++files_) + ".any";
        const WString name = fromAnsi(dir_.write(entry, bytes));
        info_ = nullptr;
        return LoadPictureEx(name, info_);
    }

    Ref<PictureInfo> info_;

private:
    int files_ = 0;
};

TEST_F(GdiPlusFiles, APngLoadsAndTellsItsRealDepthWhileThePictureHasTheScreens) {
    const Picture picture = load(stripes(2, 8).bytes());
    EXPECT_EQ(info_->PictureType(), Type::orvPtePNG);
    EXPECT_EQ(info_->GetPictureTypeName(), u"Portable network graphics");
    EXPECT_EQ(info_->Width(), 4);
    EXPECT_EQ(info_->Height(), 3);
    EXPECT_EQ(info_->ImageBPP(), 24);
    EXPECT_EQ(picture.type(), Picture::Type::bitmap);
    EXPECT_EQ(test::factsOf(picture).width, 4);
    EXPECT_EQ(test::factsOf(picture).bitsPixel, 32);
    EXPECT_EQ(pixelOf(picture, 1, 1), (Colour{255, 0, 0}));
}

TEST_F(GdiPlusFiles, ATransparentPngShowsTheButtonFaceInItsTransparentParts) {
    const Picture picture = load(stripes(6, 8).bytes());
    EXPECT_EQ(info_->ImageBPP(), 32);
    EXPECT_EQ(pixelOf(picture, 0, 0), buttonFace());
    EXPECT_EQ(pixelOf(picture, 3, 2), (Colour{255, 0, 0}));
}

TEST_F(GdiPlusFiles, HalfTransparentPixelsAreMixedWithTheButtonFace) {
    PngFile file = stripes(6, 8);
    file.sample = [](std::uint32_t, std::uint32_t, int) { return 128; };
    const Colour pixel = pixelOf(load(file.bytes()), 1, 1);
    for (std::size_t i = 0; i < 3; ++i)
        EXPECT_NEAR(pixel[i], (128 * 128 + buttonFace()[i] * 127) / 255.0, 1.0);
}

TEST_F(GdiPlusFiles, PngDepthsAreThoseOfTheFile) {
    struct Row {
        int colour;
        int depth;
        int bits;
    };
    for (const Row& row : {Row{3, 1, 1}, Row{3, 4, 4}, Row{3, 8, 8}, Row{0, 1, 1}, Row{2, 8, 24},
                           Row{6, 8, 32}, Row{4, 8, 32}, Row{0, 16, 32}, Row{4, 16, 32}}) {
        PngFile file = stripes(row.colour, row.depth);
        if (row.colour == 3)
            file.sample = [](std::uint32_t x, std::uint32_t, int) { return x & 1; };
        load(file.bytes());
        EXPECT_EQ(info_->ImageBPP(), row.bits) << row.colour << ' ' << row.depth;
    }
}

// GDI+ of Windows and Linux tell the bits of the file; Wine's unpacks such colours to 32 bits
// first and tells those.
TEST_F(GdiPlusFiles, ColoursOfSixteenBitsAChannelAreToldInFull) {
    load(stripes(2, 16).bytes());
#ifdef _WIN32
    EXPECT_TRUE(info_->ImageBPP() == 32 || info_->ImageBPP() == 48);
#else
    EXPECT_EQ(info_->ImageBPP(), 48);
    load(stripes(6, 16).bytes());
    EXPECT_EQ(info_->ImageBPP(), 64);
#endif
}

TEST_F(GdiPlusFiles, ATiffLoads) {
    TiffFile file;
    file.width = 5;
    file.height = 4;
    file.rowsPerStrip = 3;
    file.sample = [](std::uint32_t x, std::uint32_t y, int sample) {
        return static_cast<int>(x * 40 + y * 10) + sample;
    };
    const Picture picture = load(file.bytes());
    EXPECT_EQ(info_->PictureType(), Type::orvPteTIFF);
    EXPECT_EQ(info_->ImageBPP(), 24);
    EXPECT_EQ(pixelOf(picture, 4, 3), (Colour{190, 191, 192}));
}

TEST_F(GdiPlusFiles, ADamagedPngIsNoPicture) {
    std::vector<std::uint8_t> bytes = stripes(2, 8).bytes();
    bytes.resize(60);  // in the middle of its pixels
    const auto failure = test::failureOf([&] { load(bytes); });
    ASSERT_TRUE(failure);
    EXPECT_EQ(failure->number, error::kInvalidPicture);
    ASSERT_TRUE(info_);
    EXPECT_EQ(info_->PictureType(), Type::orvPteNothing);
}

TEST_F(GdiPlusFiles, TheSecondPictureHasNothingOfTheFirst) {
    const Picture first = load(stripes(2, 8).bytes());
    PngFile other = stripes(2, 8);
    other.width = 2;
    other.sample = [](std::uint32_t, std::uint32_t, int channel) { return channel == 2 ? 255 : 0; };
    const Picture second = load(other.bytes());
    EXPECT_EQ(pixelOf(first, 3, 2), (Colour{255, 0, 0}));
    EXPECT_EQ(pixelOf(second, 1, 2), (Colour{0, 0, 255}));
    EXPECT_NE(first.handle(), second.handle());
}

// GDI+ of Windows keeps the file open as long as the image, and the image is kept until the next
// load: the file can't be deleted there.
TEST_F(GdiPlusFiles, APictureFromAResourceIsDeletedWhereItsImageDoesNotHoldIt) {
    test::ScopedTarget tempPath(kernel32.GetTempPathA, [this] { return dir_.file(""); });
    const auto data = Array<std::uint8_t>::of(stripes(2, 8).bytes());
    const Picture picture = LoadResPictureByData(data, info_);
    EXPECT_EQ(info_->PictureType(), Type::orvPtePNG);
#ifdef _WIN32
    EXPECT_EQ(dir_.entries().size(), 1u);
#else
    EXPECT_EQ(dir_.entries(), std::vector<std::string>());
#endif
}

TEST_F(GdiPlusFiles, EveryBeginningOfAPngIsAPictureOrNone) {
    const std::vector<std::uint8_t> bytes = stripes(6, 8).bytes();
    std::size_t loaded = 0;
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        const auto failure = test::failureOf([&] {
            load({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length)});
        });
        if (failure) {
            EXPECT_EQ(failure->number, error::kInvalidPicture) << length;
        } else {
            ++loaded;
        }
    }
    // Without its pixels' last byte there is no picture; the end chunk of 12 bytes is not missed
    // everywhere.
    EXPECT_LE(loaded, 20u);
}

TEST_F(GdiPlusFiles, EveryBeginningOfATiffIsAPictureOrNone) {
    TiffFile file;
    file.width = 3;
    file.height = 2;
    const std::vector<std::uint8_t> bytes = file.bytes();
    for (std::size_t length = 0; length < bytes.size(); ++length) {
        const auto failure = test::failureOf([&] {
            load({bytes.begin(), bytes.begin() + static_cast<std::ptrdiff_t>(length)});
        });
        if (failure) {
            EXPECT_EQ(failure->number, error::kInvalidPicture) << length;
        }
    }
}

/// The reader alone, with what GDI+ answers replaced.
class GdiPlusReader : public GdiPlusFiles {
protected:
    const WString name_ = fromAnsi(dir_.write("picture.png", stripes(2, 8).bytes()));
    Ref<PictureInfo> object_ = make<PictureInfo>();
};

TEST_F(GdiPlusReader, WantsEveryFile) {
    CFileGDIPlus reader;
    EXPECT_TRUE(reader.Verify(u"anything"));
    EXPECT_TRUE(reader.Verify(u""));
}

TEST_F(GdiPlusReader, AnUnknownRawFormatIsReportedAsUnknown) {
    test::ScopedTarget format(gdiplus.GdipGetImageRawFormat,
                              [](GdiplusImage, ClassIdBytes& identifier) {
                                  identifier.bytes[0] = 0xAC;
                                  return GdiplusStatus::ok;
                              });
    CFileGDIPlus reader;
    EXPECT_FALSE(reader.LoadPicture(name_, object_).isNothing());
    EXPECT_EQ(object_->PictureType(), Type::orvPteUnknown);
    EXPECT_EQ(object_->GetPictureTypeName(), u"Unknown");
    EXPECT_EQ(object_->Width(), 4);
}

TEST_F(GdiPlusReader, LoadsWithoutAnObjectToFill) {
    CFileGDIPlus reader;
    EXPECT_FALSE(reader.LoadPicture(name_, nullptr).isNothing());
}

TEST_F(GdiPlusReader, ErrorsBecomeNothingAndTheObjectIsReset) {
    object_->SetInfo({7, 8, 9, {}, {}}, Type::orvPteBMP);
    CFileGDIPlus reader;
    EXPECT_TRUE(reader.LoadPicture(u"gone.png", object_).isNothing());
    EXPECT_EQ(object_->Width(), 0);
    EXPECT_EQ(object_->PictureType(), Type::orvPteNothing);
}

TEST_F(GdiPlusReader, WithoutGdiPlusThereIsNothing) {
    test::ScopedTarget start(gdiplus.GdiplusStartup, [](GdiplusToken&, const GdiplusStartupInput&) {
        setLastError(kErrorModuleNotFound);
        return GdiplusStatus::notBound;
    });
    CFileGDIPlus reader;
    EXPECT_TRUE(reader.LoadPicture(name_, object_).isNothing());
    EXPECT_EQ(object_->PictureType(), Type::orvPteNothing);
}

TEST_F(GdiPlusReader, GdiPlusIsStartedOnceAndShutDownAtTheEnd) {
    test::Recorder recorder(gdiplus);
    {
        CFileGDIPlus reader;
        EXPECT_EQ(recorder.count("GdiplusStartup"), 0u);
        reader.LoadPicture(name_, object_);
        reader.LoadPicture(name_, object_);
        EXPECT_EQ(recorder.count("GdiplusStartup"), 1u);
        EXPECT_EQ(recorder.count("GdiplusShutdown"), 0u);
    }
    EXPECT_EQ(recorder.count("GdiplusShutdown"), 1u);
    EXPECT_EQ(recorder.leftOpen(), std::vector<std::string>());
}

TEST_F(GdiPlusReader, WhicheverOperationFailsItGivesAPictureOrNothingAndLeavesNothingOpen) {
    bool gotThrough = false;
    const std::size_t failed = test::torture(
        [&] {
            CFileGDIPlus reader;
            return !reader.LoadPicture(name_, object_).isNothing();
        },
        [&](bool loaded, const test::TortureRun& run) {
            if (run.failedAt == 0) gotThrough = loaded;
            if (loaded) return;
            EXPECT_TRUE(object_->PictureType() == Type::orvPteNothing ||
                        object_->PictureType() == Type::orvPtePNG)
                << run.failed;
        },
        {{}, {"TlsGetValue"}});
    EXPECT_GT(failed, 20u);
    EXPECT_TRUE(gotThrough);
}

}  // namespace
}  // namespace orvane
