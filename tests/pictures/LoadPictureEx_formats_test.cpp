#include "pictures/LoadPictureEx.h"

#include "frame/values/codepage.h"
#include "pictures/drawn_reference.h"
#include "pictures/pcx_file.h"
#include "pictures/pcx_reference.h"
#include "pictures/picture_pixels.h"
#include "pictures/psd_file.h"
#include "pictures/psd_reference.h"
#include "pictures/raised_failure.h"
#include "pictures/targa_file.h"
#include "support/raised_error.h"
#include "support/temp_dir.h"

#include <gtest/gtest.h>

/// PCX files and Photoshop documents through the whole front.
namespace orvane {
namespace {

using test::Bytes;
using test::PcxFile;
using test::PsdFile;
using test::raisedBy;
using Type = orvPictureTypeEx;

class LoadFormats : public test::TempDirTest {
protected:
    Picture load(const Bytes& bytes) {
        return LoadPictureEx(fromAnsi(dir_.write("picture", bytes)), info_);
    }
    Bytes pixelsOf(const Bytes& bytes) { return test::pixelsOf(load(bytes)); }

    void expectInvalid(const Bytes& bytes) {
        EXPECT_EQ(raisedBy([&] { load(bytes); }), error::kInvalidPicture);
        expectInfo(0, 0, 0, Type::orvPteNothing);
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

TEST_F(LoadFormats, APcxFileOf8BitsIsDrawnThroughItsPalette) {
    const Bytes bytes = test::indexedPcx(5, 3, 6).bytes();
    EXPECT_EQ(pixelsOf(bytes), test::drawn(test::referencePcx(bytes)));
    expectInfo(5, 3, 8, Type::orvPtePCX);
    EXPECT_EQ(info_->GetPictureTypeName(), u"Zsoft Paintbrush");
}

TEST_F(LoadFormats, APcxFileOf24BitsShowsItsPixels) {
    const Bytes bytes = test::planarPcx(5, 3, 6).bytes();
    EXPECT_EQ(pixelsOf(bytes), test::referencePcx(bytes).pixels);
    expectInfo(5, 3, 24, Type::orvPtePCX);
}

TEST_F(LoadFormats, APcxFileOfFourPlanesIsBuiltFromRowsOfTheWrongForm) {
    for (const int width : {1, 3, 4, 5, 16}) {
        const Bytes bytes = test::planarPcx(width, 4, width, 4).bytes();
        const test::ReferenceImage reference = test::referencePcx(bytes);
        EXPECT_EQ(pixelsOf(bytes), test::drawn(reference)) << width;
        expectInfo(width, 4, 32, Type::orvPtePCX);
    }
}

TEST_F(LoadFormats, APcxFileOfTwoPlanesIsBuiltFromRowsOf16Bits) {
    PcxFile file = test::planarPcx(1, 1, 1, 2);
    file.body = {0x11, 0x7C};
    // Green and blue make a number of which five bits are red.
    EXPECT_EQ(pixelsOf(file.bytes()), (Bytes{0, 0, 255, 0}));
    expectInfo(1, 1, 16, Type::orvPtePCX);
}

TEST_F(LoadFormats, APcxFileOfADepthThatThereIsNotIsBlack) {
    const Bytes bytes = test::planarPcx(3, 2, 3, 5).bytes();
    EXPECT_EQ(pixelsOf(bytes), Bytes(24, 0));
    expectInfo(3, 2, 40, Type::orvPtePCX);
}

TEST_F(LoadFormats, AFileThatFailsAsPcxIsTriedAsTarga) {
    // The first byte of a Targa file is the length of its identification field.
    const test::TargaFile file{
        .width = 3, .height = 2, .body = test::countedBytes(18), .idLength = 10};
    EXPECT_EQ(test::factsOf(load(file.bytes())).width, 3);
    expectInfo(3, 2, 24, Type::orvPteTGA);
}

TEST_F(LoadFormats, AFileThatFailsAsPcxAndAsTargaIsNoPicture) {
    expectInvalid({10});
    expectInvalid({10, 'n', 'o', ' ', 'p', 'i', 'c', 't', 'u', 'r', 'e', 10});
    expectInvalid(Bytes(5000, 0));
    Bytes text(5000, 'a');
    text[0] = 10;
    expectInvalid(text);
}

TEST_F(LoadFormats, APhotoshopDocumentShowsItsMergedImage) {
    PsdFile file{.channels = 3, .height = 2, .width = 3, .layers = Bytes(77, 1)};
    const Bytes plane = test::literalPacket({1, 2, 3, 4, 5, 6});
    file.data = test::packedPlanes(3, 2, {plane, test::runPacket(6, 9), plane});
    EXPECT_EQ(pixelsOf(file.bytes()),
              (Bytes{1, 9, 1, 2, 9, 2, 3, 9, 3, 0, 0, 0, 4, 9, 4, 5, 9, 5, 6, 9, 6, 0, 0, 0}));
    expectInfo(3, 2, 24, Type::orvPtePSD);
    EXPECT_EQ(info_->GetPictureTypeName(), u"Photoshop document");
}

TEST_F(LoadFormats, APhotoshopDocumentOf16BitsIsNoPicture) {
    PsdFile file{.channels = 4, .height = 2, .width = 3, .compression = 0, .data = Bytes(48, 1)};
    file.depth = 16;
    expectInvalid(file.bytes());
    file.depth = 8;
    EXPECT_FALSE(load(file.bytes()).isNothing());
}

#ifndef _WIN32  // there the pixels alone may be more than the address space of 32 bits has
TEST_F(LoadFormats, APictureTooLargeForTheSystemIsAnErrorOfItsOwn) {
    // Rows of no bytes: what is decoded is 697 MiB of zeros, what would be drawn is 2 GiB and more.
    const PcxFile file{.width = 27028, .height = 27028, .bytesPerLine = 0};
    EXPECT_TRUE(
        test::raisesInternal(u"Can't create compatible bitmap.", [&] { load(file.bytes()); }));
    expectInfo(0, 0, 0, Type::orvPteNothing);
}
#endif

}  // namespace
}  // namespace orvane
