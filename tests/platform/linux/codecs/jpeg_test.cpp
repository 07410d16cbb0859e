#include "platform/linux/codecs/decoded.h"

#include <cstdio>
#include <cstdlib>

#include <jpeglib.h>

namespace orvane::codecs::test {
namespace {

struct Jpeg {
    int width = 40;
    int height = 24;
    J_COLOR_SPACE space = JCS_RGB;
    J_COLOR_SPACE stored = JCS_YCbCr;
    std::vector<int> pixel = {200, 100, 50};
    bool progressive = false;
    bool adobe = false;
    /// The scans, where none of the usual kinds is wanted.
    std::vector<jpeg_scan_info> scans = {};

    Bytes build() const;
};

/// A picture with every pixel the same, by libjpeg's encoder.
Bytes Jpeg::build() const {
    jpeg_compress_struct info{};
    jpeg_error_mgr errors{};
    info.err = jpeg_std_error(&errors);
    jpeg_CreateCompress(&info, JPEG_LIB_VERSION, sizeof info);
    unsigned char* memory = nullptr;
    unsigned long size = 0;
    jpeg_mem_dest(&info, &memory, &size);
    info.image_width = static_cast<JDIMENSION>(width);
    info.image_height = static_cast<JDIMENSION>(height);
    info.input_components = static_cast<int>(pixel.size());
    info.in_color_space = space;
    jpeg_set_defaults(&info);
    jpeg_set_colorspace(&info, stored);
    info.write_Adobe_marker = adobe ? TRUE : FALSE;
    jpeg_set_quality(&info, 100, TRUE);
    if (progressive) jpeg_simple_progression(&info);
    if (!scans.empty()) {
        info.scan_info = scans.data();
        info.num_scans = static_cast<int>(scans.size());
    }
    jpeg_start_compress(&info, TRUE);
    std::vector<JSAMPLE> row;
    for (int x = 0; x < width; ++x) {
        for (const int value : pixel)
            row.push_back(static_cast<JSAMPLE>(value));
    }
    while (info.next_scanline < info.image_height) {
        JSAMPROW at = row.data();
        jpeg_write_scanlines(&info, &at, 1);
    }
    jpeg_finish_compress(&info);
    Bytes bytes;
    for (unsigned long i = 0; i < size; ++i)
        bytes.u8({memory[i]});
    jpeg_destroy_compress(&info);
    std::free(memory);
    return bytes;
}

void expectNear(const Decoded& decoded, Colour expected) {
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.kind, ORVANE_PICTURE_BITMAP);
    EXPECT_EQ(decoded.picture.bitsPerPixel, 24);
    EXPECT_EQ(decoded.picture.stride % 4, 0u);
    for (const int y : {0, decoded.picture.height - 1}) {
        for (const int x : {0, decoded.picture.width - 1}) {
            const Colour colour = decoded.colour(x, y);
            EXPECT_NEAR(colour.red, expected.red, 2);
            EXPECT_NEAR(colour.green, expected.green, 2);
            EXPECT_NEAR(colour.blue, expected.blue, 2);
        }
    }
}

TEST(Jpeg, ColourIsTwentyFourBits) {
    const Decoded decoded(Jpeg{}.build());
    expectNear(decoded, {200, 100, 50});
    EXPECT_EQ(decoded.picture.width, 40);
    EXPECT_EQ(decoded.picture.height, 24);
}

TEST(Jpeg, ProgressiveReadsAlike) {
    Jpeg jpeg;
    jpeg.progressive = true;
    expectNear(Decoded(jpeg.build()), {200, 100, 50});
}

TEST(Jpeg, GreyIsTwentyFourBitsToo) {
    Jpeg jpeg;
    jpeg.space = jpeg.stored = JCS_GRAYSCALE;
    jpeg.pixel = {77};
    expectNear(Decoded(jpeg.build()), {77, 77, 77});
}

TEST(Jpeg, AdobesInksAreInverted) {
    Jpeg jpeg;
    jpeg.space = JCS_CMYK;
    jpeg.stored = JCS_CMYK;
    jpeg.adobe = true;
    jpeg.pixel = {255, 128, 0, 255};
    expectNear(Decoded(jpeg.build()), {255, 128, 0});
    jpeg.pixel = {255, 128, 0, 128};
    expectNear(Decoded(jpeg.build()), {128, 64, 0});
    jpeg.stored = JCS_YCCK;
    expectNear(Decoded(jpeg.build()), {128, 64, 0});
}

TEST(Jpeg, OtherInksAreNot) {
    Jpeg jpeg;
    jpeg.space = JCS_CMYK;
    jpeg.stored = JCS_CMYK;
    jpeg.pixel = {0, 127, 255, 0};
    expectNear(Decoded(jpeg.build()), {255, 128, 0});
}

TEST(Jpeg, RowsKeepTheirPadding) {
    Jpeg jpeg;
    jpeg.width = 5;
    jpeg.height = 3;
    const Decoded decoded(jpeg.build());
    expectNear(decoded, {200, 100, 50});
    EXPECT_EQ(decoded.picture.stride, 16u);
    EXPECT_EQ(decoded.picture.pixels[15], 0);
}

TEST(Jpeg, AFileWithoutItsEndIsRefused) {
    const Bytes baseline = Jpeg{}.build();
    decodeEveryBeginning(baseline, baseline.size());
    Jpeg progressive;
    progressive.progressive = true;
    const Bytes file = progressive.build();
    decodeEveryBeginning(file, file.size());
}

TEST(Jpeg, BytesBehindTheEndAreIgnored) {
    expectNear(Decoded(Jpeg{}.build().zeroes(50)), {200, 100, 50});
}

TEST(Jpeg, DamageInsideTheDataIsTolerated) {
    // A marker that restarts nothing: libjpeg warns and goes on.
    Bytes file = Jpeg{}.build();
    file.patch(file.size() - 8, 0xd0ff, 2);
    EXPECT_EQ(Decoded(file).result, ORVANE_CODEC_OK);
}

TEST(Jpeg, MoreThanTheFileHoldsIsRefusedBeforeMemoryIsTaken) {
    Jpeg jpeg;
    jpeg.space = jpeg.stored = JCS_GRAYSCALE;
    jpeg.pixel = {77};
    Bytes file = jpeg.build();
    size_t frame = 0;
    while (file.data()[frame] != 0xff || file.data()[frame + 1] != 0xc0)
        ++frame;
    file.patch(frame + 5, 0xffff, 2).patch(frame + 7, 0xdcff, 2);
    const Limits nothing{0, uint64_t{1} << 20};
    EXPECT_EQ(Decoded(file, nothing).result, ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(Decoded(jpeg.build(), nothing).result, ORVANE_CODEC_OUT_OF_MEMORY);
}

TEST(Jpeg, MemoryOfTheLibraryIsLimited) {
    Jpeg jpeg;
    jpeg.progressive = true;
    jpeg.width = 2000;
    jpeg.height = 2000;
    const Bytes file = jpeg.build();
    EXPECT_EQ(Decoded(file, Limits{INT32_MAX, 100000}).result, ORVANE_CODEC_OUT_OF_MEMORY);
    EXPECT_EQ(Decoded(file).result, ORVANE_CODEC_OK);
}

/// Grey in arithmetic coding, of which there is no data at all: zeroes, to the reader. With scans
/// it is progressive, and each of them is one more over all coefficients but the first.
Bytes blankArithmetic(int width, int height, int scans = 0) {
    Bytes bytes;
    bytes.u8({0xff, 0xd8, 0xff, 0xdb, 0, 67, 0});
    for (int i = 0; i < 64; ++i)
        bytes.u8({1});
    bytes.u8({0xff, scans == 0 ? 0xc9 : 0xca, 0, 11, 8});
    bytes.u8({height >> 8, height, width >> 8, width, 1, 1, 0x11, 0});
    const int last = scans == 0 ? 63 : 0;
    bytes.u8({0xff, 0xda, 0, 8, 1, 1, 0, 0, last, 0, 0, 0});
    for (int i = 0; i < scans; ++i)
        bytes.u8({0xff, 0xda, 0, 8, 1, 1, 0, 1, 63, 0, 0, 0});
    return bytes.u8({0xff, 0xd9});
}

TEST(Jpeg, ASmallPictureMayHaveHundredsOfScans) {
    const Decoded decoded(blankArithmetic(64, 64, 499));
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.width, 64);
    EXPECT_EQ(Decoded(blankArithmetic(64, 64, 500)).result, ORVANE_CODEC_DAMAGED);
}

TEST(Jpeg, TheLargerAPictureTheFewerScansItMayHave) {
    // 65536 blocks: each may be visited 12 times, and all of them 2^23 times more.
    EXPECT_EQ(Decoded(blankArithmetic(2048, 2048, 139)).result, ORVANE_CODEC_OK);
    EXPECT_EQ(Decoded(blankArithmetic(2048, 2048, 140)).result, ORVANE_CODEC_DAMAGED);
}

TEST(Jpeg, AScanForEachCoefficientIsReadUnlessThePictureIsLarge) {
    Jpeg jpeg;
    jpeg.space = jpeg.stored = JCS_GRAYSCALE;
    jpeg.pixel = {77};
    jpeg.scans = {{1, {0}, 0, 0, 0, 0}};
    for (int at = 1; at < 64; ++at) {
        jpeg.scans.push_back({1, {0}, at, at, 0, 2});
        jpeg.scans.push_back({1, {0}, at, at, 2, 1});
        jpeg.scans.push_back({1, {0}, at, at, 1, 0});
    }
    jpeg.width = jpeg.height = 500;
    expectNear(Decoded(jpeg.build()), {77, 77, 77});
    jpeg.width = jpeg.height = 2000;
    EXPECT_EQ(Decoded(jpeg.build()).result, ORVANE_CODEC_DAMAGED);
}

TEST(Jpeg, ArithmeticCodingIsBelievedSoMuchBlank) {
    const auto resultOf = [](const Bytes& file) {
        return Decoded(file, Limits{0, uint64_t{1} << 20}).result;
    };
    EXPECT_EQ(Decoded(blankArithmetic(640, 480)).result, ORVANE_CODEC_OK);
    EXPECT_EQ(resultOf(blankArithmetic(8192, 8192)), ORVANE_CODEC_OUT_OF_MEMORY);
    EXPECT_EQ(resultOf(blankArithmetic(8800, 8192)), ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(resultOf(blankArithmetic(8800, 8192).zeroes(1200)), ORVANE_CODEC_OUT_OF_MEMORY);
    EXPECT_EQ(resultOf(blankArithmetic(26000, 26000)), ORVANE_CODEC_DAMAGED);
}

TEST(Jpeg, ANoiseBehindTheSignatureIsDamage) {
    EXPECT_EQ(Decoded(Bytes().u8({0xff, 0xd8, 0xff, 0x00, 1, 2, 3})).result, ORVANE_CODEC_DAMAGED);
}

}  // namespace
}  // namespace orvane::codecs::test
