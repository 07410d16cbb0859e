#include "platform/linux/codecs/bytes.h"
#include "platform/linux/codecs/canvas.h"
#include "platform/linux/codecs/painted.h"
#include "support/png_file.h"

#include <algorithm>

namespace orvane::codecs::test {
namespace {

/// A bitmap of one row with a header of 40 bytes.
Bytes bitmap(int bits, int width, const Bytes& palette, const Bytes& row) {
    Bytes file;
    file.text("BM").u32(0).u32(0).u32(static_cast<int64_t>(54 + palette.size()));
    file.u32(40).u32(width).u32(1).u16(1).u16(bits).u32(0).u32(0).u32(0).u32(0).u32(0).u32(0);
    return file.add(palette).add(row);
}

TEST(DecodedImages, BitmapsOfEveryDepthArePainted) {
    struct Row {
        int bits;
        uint32_t pixelFormat;
        Bytes palette;
        Bytes row;
    };
    Bytes sixteen;
    for (int i = 0; i < 16; ++i)
        sixteen.u8({i, i * 2, i * 3, 0});
    Bytes all;
    for (int i = 0; i < 256; ++i)
        all.u8({i, i / 2, i / 3, 0});
    const Row rows[] = {
        {1, pixel_format::k1bppIndexed, Bytes().u8({1, 2, 3, 0, 4, 5, 6, 0}),
         Bytes().u8({0x40, 0, 0, 0})},
        {4, pixel_format::k4bppIndexed, sixteen, Bytes().u8({0x1F, 0, 0, 0})},
        {8, pixel_format::k8bppIndexed, all, Bytes().u8({9, 99, 0, 0})},
        {16, pixel_format::k16bppRgb555, {}, Bytes().u16(0x7C00).u16(0x03E0)},
        {24, pixel_format::k24bppRgb, {}, Bytes().u8({1, 2, 3, 4, 5, 6, 0, 0})},
        {32, pixel_format::k32bppRgb, {}, Bytes().u8({1, 2, 3, 0, 4, 5, 6, 0})},
    };
    const Painted expected[][2] = {
        {{3, 2, 1}, {6, 5, 4}},     {{3, 2, 1}, {45, 30, 15}}, {{3, 4, 9}, {33, 49, 99}},
        {{255, 0, 0}, {0, 255, 0}}, {{3, 2, 1}, {6, 5, 4}},    {{3, 2, 1}, {6, 5, 4}},
    };
    for (size_t i = 0; i < std::size(rows); ++i) {
        SCOPED_TRACE(rows[i].bits);
        const Image image(bitmap(rows[i].bits, 2, rows[i].palette, rows[i].row).data());
        ASSERT_EQ(image.painted, ORVANE_CODEC_OK);
        EXPECT_EQ(image.facts.format, static_cast<uint32_t>(ORVANE_IMAGE_BMP));
        EXPECT_EQ(image.facts.pixelFormat, rows[i].pixelFormat);
        EXPECT_EQ(image.pixel(0, 0), expected[i][0]);
        EXPECT_EQ(image.pixel(1, 0), expected[i][1]);
    }
}

/// An icon file around images of one kind.
Bytes icon(int type, const Bytes& image) {
    Bytes file;
    file.u16(0).u16(type).u16(1).u8({1, 1, 0, 0}).u16(1).u16(32);
    file.u32(static_cast<int64_t>(image.size())).u32(22);
    return file.add(image);
}

Bytes smallDib() {
    Bytes dib;
    dib.u32(40).u32(1).u32(2).u16(1).u16(32).u32(0).u32(0).u32(0).u32(0).u32(0).u32(0);
    return dib.u8({10, 20, 30, 128}).u32(0);
}

TEST(DecodedImages, IconsArePaintedWithTheirAlpha) {
    const Image image(icon(1, smallDib()).data());
    ASSERT_EQ(image.painted, ORVANE_CODEC_OK);
    EXPECT_EQ(image.facts.format, static_cast<uint32_t>(ORVANE_IMAGE_ICON));
    EXPECT_EQ(image.facts.pixelFormat, pixel_format::k32bppArgb);
    EXPECT_EQ(image.pixel(0, 0), over({30, 20, 10}, 128));
}

TEST(DecodedImages, CursorsAreNone) {
    EXPECT_EQ(Image(icon(2, smallDib()).data()).examined, ORVANE_CODEC_NOT_RECOGNISED);
}

TEST(DecodedImages, AnIconMayBeAPngImageInside) {
    orvane::test::PngFile png;
    png.width = 3;
    png.height = 2;
    png.sample = [](uint32_t, uint32_t, int channel) { return channel * 50; };
    Bytes inside;
    for (const uint8_t byte : png.bytes())
        inside.u8({byte});
    const Image image(icon(1, inside).data());
    ASSERT_EQ(image.painted, ORVANE_CODEC_OK);
    EXPECT_EQ(image.facts.format, static_cast<uint32_t>(ORVANE_IMAGE_ICON));
    EXPECT_EQ(image.facts.pixelFormat, pixel_format::k32bppArgb);
    EXPECT_EQ(image.facts.width, 3u);
    EXPECT_EQ(image.pixel(2, 1), (Painted{0, 50, 100}));
}

TEST(DecodedImages, OtherFilesAreNotRecognised) {
    EXPECT_EQ(Image({}).examined, ORVANE_CODEC_NOT_RECOGNISED);
    EXPECT_EQ(Image({'t', 'e', 'x', 't', ' ', 'f', 'i', 'l', 'e'}).examined,
              ORVANE_CODEC_NOT_RECOGNISED);
    EXPECT_FALSE(isAnyImage(std::vector<uint8_t>{'8', 'B', 'P', 'S', 0, 1}));
}

TEST(Blending, OpaquePixelsCoverAndTransparentOnesLeave) {
    uint8_t to[] = {1, 2, 3, 0, 4, 5, 6, 0};
    const uint8_t from[] = {10, 20, 30, 255, 40, 50, 60, 0};
    blendRow(to, from, 2, AlphaKind::straight);
    EXPECT_EQ(std::vector<int>(std::begin(to), std::end(to)),
              (std::vector<int>{10, 20, 30, 0, 4, 5, 6, 0}));
}

TEST(Blending, EveryAlphaIsWithinOneOfTheExactMixture) {
    for (int alpha = 0; alpha < 256; ++alpha) {
        for (int own = 0; own < 256; own += 5) {
            for (int ground = 0; ground < 256; ground += 5) {
                uint8_t to[4] = {static_cast<uint8_t>(ground), 0, 0, 0};
                const uint8_t from[4] = {static_cast<uint8_t>(own), 0, 0,
                                         static_cast<uint8_t>(alpha)};
                blendRow(to, from, 1, AlphaKind::straight);
                const double exact = (own * alpha + ground * (255 - alpha)) / 255.0;
                ASSERT_NEAR(to[0], exact, 1.0) << alpha << ' ' << own << ' ' << ground;
            }
        }
    }
}

TEST(Blending, EveryAlphaAndColourGivesTheSumOfTheRoundedProducts) {
    const auto rounded = [](int product) { return (product + 127) / 255; };
    for (int alpha = 0; alpha < 256; ++alpha) {
        for (int own = 0; own < 256; own += 3) {
            const int ground = (own * 7 + alpha * 13) % 256;
            const uint8_t from[4] = {static_cast<uint8_t>(own), static_cast<uint8_t>(255 - own),
                                     static_cast<uint8_t>(own / 2), static_cast<uint8_t>(alpha)};
            for (const auto kind : {AlphaKind::straight, AlphaKind::premultiplied}) {
                uint8_t to[4] = {static_cast<uint8_t>(ground), static_cast<uint8_t>(255 - ground),
                                 static_cast<uint8_t>(ground / 3), 0};
                int expected[3];
                for (int i = 0; i < 3; ++i) {
                    const int top =
                        kind == AlphaKind::straight ? rounded(from[i] * alpha) : from[i];
                    expected[i] = std::min(top + rounded(to[i] * (255 - alpha)), 255);
                }
                blendRow(to, from, 1, kind);
                for (int i = 0; i < 3; ++i)
                    ASSERT_EQ(to[i], expected[i]) << alpha << ' ' << own << ' ' << i;
                ASSERT_EQ(to[3], 0);
            }
        }
    }
}

TEST(Blending, RedMayComeFirst) {
    for (const auto kind : {AlphaKind::straight, AlphaKind::premultiplied}) {
        for (const int alpha : {0, 1, 128, 254, 255}) {
            const auto fourth = static_cast<uint8_t>(alpha);
            const uint8_t blueFirst[4] = {30, 20, 10, fourth};
            const uint8_t redFirst[4] = {10, 20, 30, fourth};
            uint8_t one[4] = {200, 100, 50, 0};
            uint8_t other[4] = {200, 100, 50, 0};
            blendRow(one, blueFirst, 1, kind);
            blendRow(other, redFirst, 1, kind, ChannelOrder::redFirst);
            EXPECT_EQ(std::memcmp(one, other, 4), 0) << alpha;
        }
    }
}

TEST(Blending, ColoursAboveTheirAlphaEndAtTheTop) {
    uint8_t to[4] = {200, 200, 200, 0};
    const uint8_t from[4] = {255, 255, 255, 10};
    blendRow(to, from, 1, AlphaKind::premultiplied);
    EXPECT_EQ(to[0], 255);
}

TEST(Blending, RowsOfThreeBytesAreStoredWithoutReadingBehindThem) {
    for (const uint32_t count : {0u, 1u, 2u, 5u}) {
        const auto from = std::make_unique<uint8_t[]>(size_t{count} * 3);
        for (uint32_t i = 0; i < count * 3; ++i)
            from[i] = static_cast<uint8_t>(i + 1);
        std::vector<uint8_t> to(size_t{count} * 4 + 1, 99);
        storeRow(to.data(), from.get(), count);
        for (uint32_t x = 0; x < count; ++x) {
            EXPECT_EQ(to[x * 4], x * 3 + 3);
            EXPECT_EQ(to[x * 4 + 1], x * 3 + 2);
            EXPECT_EQ(to[x * 4 + 2], x * 3 + 1);
            EXPECT_EQ(to[x * 4 + 3], 0);
        }
        EXPECT_EQ(to.back(), 99);
    }
}

}  // namespace
}  // namespace orvane::codecs::test
