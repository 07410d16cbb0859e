#include "pictures/CFileTGA.h"

#include "frame/values/codepage.h"
#include "pictures/picture_pixels.h"
#include "pictures/targa_file.h"
#include "platform/kernel32.h"
#include "support/recorder.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

/// Targa files on a disk; what all readers do with files is in decoding_test.cpp.
namespace orvane {
namespace {

using test::TargaFile;
using Type = orvPictureTypeEx;

class FileTGA : public test::TempDirTest {
protected:
    WString write(const TargaFile& file) { return fromAnsi(dir_.write("file.tga", file.bytes())); }
};

TEST_F(FileTGA, OfEveryDepthIsA24BitPicture) {
    CFileTGA reader;
    for (const std::uint8_t depth : test::kDepthsAndNone) {
        const TargaFile file{
            .depth = depth, .width = 3, .height = 2, .body = test::countedBytes(18)};
        const auto info = make<PictureInfo>();
        const Picture picture = reader.LoadPicture(write(file), info);
        ASSERT_FALSE(picture.isNothing());
        EXPECT_EQ(info->Width(), 3);
        EXPECT_EQ(info->ImageBPP(), 24);
        EXPECT_EQ(info->PictureType(), Type::orvPteTGA);
        EXPECT_EQ(test::factsOf(picture).bitsPixel, 24);
    }
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

}  // namespace
}  // namespace orvane
