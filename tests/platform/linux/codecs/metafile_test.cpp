#include "platform/linux/codecs/decoded.h"

namespace orvane::codecs::test {
namespace {

/// A metafile whose only record ends it.
Bytes bareWmf() {
    Bytes meta;
    meta.u16(1).u16(9).u16(0x300).u32(12).u16(0).u32(3).u16(0);
    return meta.u32(3).u16(0);
}

Bytes wmf(int left, int top, int right, int bottom, int perInch) {
    Bytes file;
    file.u32(0x9ac6cdd7).u16(0).u16(left).u16(top).u16(right).u16(bottom).u16(perInch);
    return file.u32(0).u16(0).add(bareWmf());
}

Bytes emf(int left, int top, int right, int bottom) {
    Bytes file;
    file.u32(1).u32(88).u32(0).u32(0).u32(0).u32(0);
    file.u32(left).u32(top).u32(right).u32(bottom);
    file.text(" EMF").u32(0x10000).u32(108).u32(2).u16(1).u16(0).zeroes(28);
    return file.u32(14).u32(20).u32(0).u32(16).u32(20);
}

TEST(Wmf, TheBoxAndItsUnitsGiveTheSize) {
    const Bytes file = wmf(-30, -30, 3066, 3094, 606);
    const Decoded decoded(file);
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.kind, ORVANE_PICTURE_METAFILE);
    // 3096 and 3124 units of 1/606 inch, rounded to hundredths of a millimetre.
    EXPECT_EQ(decoded.picture.width, 12977);
    EXPECT_EQ(decoded.picture.height, 13094);
    EXPECT_EQ(decoded.picture.bitsPerPixel, 0);
    EXPECT_EQ(decoded.picture.pixels, nullptr);
}

TEST(Wmf, TheFileIsKept) {
    const Bytes file = wmf(0, 0, 1, 1, 1);
    const Decoded decoded(file);
    ASSERT_EQ(decoded.picture.fileBytes, file.size());
    EXPECT_TRUE(std::equal(file.data().begin(), file.data().end(), decoded.picture.file));
}

TEST(Wmf, ABoxMayBeUpsideDown) {
    const Decoded decoded(wmf(100, 50, 0, 0, 100));
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.width, 2540);
    EXPECT_EQ(decoded.picture.height, 1270);
}

TEST(Wmf, WithoutAPlaceableHeaderItIsUnsupported) {
    EXPECT_EQ(Decoded(bareWmf()).result, ORVANE_CODEC_UNSUPPORTED);
}

TEST(Wmf, HeadersWithoutSenseAreDamage) {
    EXPECT_EQ(Decoded(wmf(0, 0, 10, 10, 0)).result, ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(Decoded(wmf(0, 0, 0, 10, 96)).result, ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(Decoded(wmf(0, 0, 10, 10, 96).patch(22, 7, 2)).result, ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(Decoded(wmf(0, 0, 10, 10, 96).patch(28, 13, 4)).result, ORVANE_CODEC_DAMAGED);
}

TEST(Wmf, EveryBeginningIsRefused) {
    const Bytes file = wmf(0, 0, 10, 10, 96);
    decodeEveryBeginning(file, file.size());
}

TEST(Emf, TheFrameIsTheSize) {
    const Bytes file = emf(-100, 50, 5464, 3385);
    const Decoded decoded(file);
    ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
    EXPECT_EQ(decoded.picture.kind, ORVANE_PICTURE_ENHANCED_METAFILE);
    EXPECT_EQ(decoded.picture.width, 5564);
    EXPECT_EQ(decoded.picture.height, 3335);
    ASSERT_EQ(decoded.picture.fileBytes, file.size());
    EXPECT_TRUE(std::equal(file.data().begin(), file.data().end(), decoded.picture.file));
}

TEST(Emf, HeadersWithoutSenseAreDamage) {
    EXPECT_EQ(Decoded(emf(10, 0, 10, 10)).result, ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(Decoded(emf(0, 10, 10, 0)).result, ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(Decoded(emf(INT32_MIN, 0, INT32_MAX, 10)).result, ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(Decoded(emf(0, 0, 10, 10).patch(4, 80, 4)).result, ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(Decoded(emf(0, 0, 10, 10).patch(48, 60, 4)).result, ORVANE_CODEC_DAMAGED);
    EXPECT_EQ(Decoded(emf(0, 0, 10, 10).patch(40, 0, 4)).result, ORVANE_CODEC_NOT_RECOGNISED);
}

TEST(Emf, EveryBeginningIsRefused) {
    const Bytes file = emf(0, 0, 10, 10);
    decodeEveryBeginning(file, file.size());
}

}  // namespace
}  // namespace orvane::codecs::test
