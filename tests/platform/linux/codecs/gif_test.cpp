#include "platform/linux/codecs/decoded.h"

#include <string>

namespace orvane::codecs::test {
namespace {

/// Indices as GIF's compressed data, every code a literal: a clear code comes before the codes
/// would grow.
Bytes compressed(std::string_view digits, int codeBits) {
    std::vector<int> codes;
    const int clear = 1 << codeBits;
    size_t sinceClear = 0;
    codes.push_back(clear);
    for (const char digit : digits) {
        if (++sinceClear > static_cast<size_t>(clear) - 2) {
            codes.push_back(clear);
            sinceClear = 1;
        }
        codes.push_back(digit - '0');
    }
    codes.push_back(clear + 1);
    Bytes packed;
    int held = 0;
    int bits = 0;
    for (const int code : codes) {
        held |= code << bits;
        for (bits += codeBits + 1; bits >= 8; bits -= 8, held >>= 8)
            packed.u8({held & 255});
    }
    if (bits > 0) packed.u8({held});
    Bytes data;
    data.u8({codeBits});
    for (size_t at = 0; at < packed.size(); at += 255) {
        const size_t length = std::min<size_t>(255, packed.size() - at);
        data.u8({static_cast<int>(length)});
        for (size_t i = 0; i < length; ++i)
            data.u8({packed.data()[at + i]});
    }
    return data.u8({0});
}

/// A table whose entry n is the grey 10 n.
Bytes table(int bits) {
    Bytes bytes;
    for (int index = 0; index < 1 << bits; ++index)
        bytes.u8({index * 10 & 255, index * 10 & 255, index * 10 & 255});
    return bytes;
}

struct Gif {
    int screenWidth = 4;
    int screenHeight = 3;
    int tableBits = 2;
    int localBits = 0;
    int background = 0;
    int transparent = -1;
    int left = 0;
    int top = 0;
    int width = 4;
    int height = 3;
    bool interlaced = false;
    std::string_view digits = "012312302301";

    Bytes build() const {
        Bytes file;
        file.text("GIF89a").u16(screenWidth).u16(screenHeight);
        file.u8({tableBits == 0 ? 0 : 0x80 | (tableBits - 1), background, 0});
        if (tableBits != 0) file.add(table(tableBits));
        if (transparent >= 0) file.u8({0x21, 0xf9, 4, 1, 0, 0, transparent, 0});
        file.u8({0x2c}).u16(left).u16(top).u16(width).u16(height);
        const int local = localBits == 0 ? 0 : 0x80 | (localBits - 1);
        file.u8({local | (interlaced ? 0x40 : 0)});
        if (localBits != 0) file.add(table(localBits));
        return file.add(compressed(digits, 4)).u8({0x3b});
    }
};

std::string indices(const Decoded& decoded) {
    if (decoded.result != ORVANE_CODEC_OK) return "result " + std::to_string(decoded.result);
    std::string digits;
    for (int y = 0; y < decoded.picture.height; ++y) {
        if (y != 0) digits += '|';
        for (int x = 0; x < decoded.picture.width; ++x)
            digits += static_cast<char>('0' + decoded.index(x, y));
    }
    return digits;
}

std::string indices(const Gif& gif) {
    return indices(Decoded(gif.build()));
}

TEST(Gif, ReadsItsFrame) {
    const Decoded decoded(Gif{}.build());
    EXPECT_EQ(indices(decoded), "0123|1230|2301");
    EXPECT_EQ(decoded.picture.kind, ORVANE_PICTURE_BITMAP);
    EXPECT_EQ(decoded.picture.transparentIndex, -1);
    EXPECT_EQ(decoded.colour(3, 0), (Colour{30, 30, 30}));
}

TEST(Gif, TheTableDecidesTheDepth) {
    const auto depth = [](int tableBits, int localBits) {
        Gif gif;
        gif.tableBits = tableBits;
        gif.localBits = localBits;
        gif.digits = "000000000000";
        const Decoded decoded(gif.build());
        EXPECT_EQ(decoded.result, ORVANE_CODEC_OK);
        EXPECT_EQ(decoded.picture.paletteCount, 1u << (localBits != 0 ? localBits : tableBits));
        return decoded.picture.bitsPerPixel;
    };
    EXPECT_EQ(depth(1, 0), 1);
    EXPECT_EQ(depth(2, 0), 4);
    EXPECT_EQ(depth(4, 0), 4);
    EXPECT_EQ(depth(5, 0), 8);
    EXPECT_EQ(depth(8, 0), 8);
    EXPECT_EQ(depth(8, 1), 1);
    EXPECT_EQ(depth(0, 3), 4);
}

TEST(Gif, InterlacedRowsComeInFourPasses) {
    Gif gif;
    gif.screenWidth = gif.width = 1;
    gif.screenHeight = gif.height = 9;
    gif.interlaced = true;
    gif.tableBits = 4;
    gif.digits = "084261357";
    // Rows 0 and 8, then 4, then 2 and 6, then the odd ones.
    EXPECT_EQ(indices(gif), "0|1|2|3|4|5|6|7|8");
}

TEST(Gif, TheFrameAloneIsThePicture) {
    Gif gif;
    gif.screenWidth = 4;
    gif.screenHeight = 4;
    gif.background = 3;
    gif.left = 1;
    gif.top = 2;
    gif.width = 2;
    gif.height = 1;
    gif.digits = "12";
    EXPECT_EQ(indices(gif), "12");
    gif.localBits = 2;
    EXPECT_EQ(indices(gif), "12");
}

TEST(Gif, TransparentPixelsKeepTheirIndexAndColour) {
    Gif gif;
    gif.screenWidth = 3;
    gif.screenHeight = 2;
    gif.left = 1;
    gif.width = 2;
    gif.height = 1;
    gif.transparent = 2;
    gif.digits = "12";
    const Decoded decoded(gif.build());
    EXPECT_EQ(indices(decoded), "12");
    EXPECT_EQ(decoded.picture.transparentIndex, 2);
    EXPECT_EQ(decoded.colour(1, 0), (Colour{20, 20, 20}));
}

TEST(Gif, TheScreensSizeDoesNotCount) {
    Gif gif;
    gif.screenWidth = 2;
    EXPECT_EQ(indices(gif), "0123|1230|2301");
    gif.screenWidth = 4;
    gif.left = 3;
    EXPECT_EQ(indices(gif), "0123|1230|2301");
    gif.screenWidth = gif.screenHeight = 0;
    EXPECT_EQ(indices(gif), "0123|1230|2301");
    gif.screenWidth = gif.screenHeight = 65535;
    EXPECT_EQ(indices(gif), "0123|1230|2301");
}

TEST(Gif, AnIndexBehindTheTableIsTheFirstColour) {
    Gif gif;
    gif.tableBits = 1;
    EXPECT_EQ(indices(gif), "0100|1000|0001");
}

TEST(Gif, ATransparentIndexBehindTheTableIsNone) {
    Gif gif;
    gif.transparent = 200;
    EXPECT_EQ(Decoded(gif.build()).picture.transparentIndex, -1);
}

TEST(Gif, OnlyTheFirstFrameIsRead) {
    Bytes file = Gif{}.build();
    const std::vector<uint8_t>& first = file.data();
    Bytes two;
    for (size_t i = 0; i + 1 < first.size(); ++i)
        two.u8({first[i]});
    two.u8({0x2c}).u16(0).u16(0).u16(4).u16(3).u8({0, 99});
    EXPECT_EQ(indices(Decoded(two)), "0123|1230|2301");
}

TEST(Gif, WithoutAnyTableItIsUnsupported) {
    Gif gif;
    gif.tableBits = 0;
    EXPECT_EQ(Decoded(gif.build()).result, ORVANE_CODEC_UNSUPPORTED);
}

TEST(Gif, WithoutAFrameItIsDamage) {
    Bytes file;
    file.text("GIF87a").u16(1).u16(1).u8({0, 0, 0}).u8({0x3b});
    EXPECT_EQ(Decoded(file).result, ORVANE_CODEC_DAMAGED);
    Gif gif;
    gif.width = 0;
    EXPECT_EQ(Decoded(gif.build()).result, ORVANE_CODEC_DAMAGED);
}

TEST(Gif, AFrameWithTooFewPixelsIsDamage) {
    Gif gif;
    gif.digits = "01231230230";
    EXPECT_EQ(Decoded(gif.build()).result, ORVANE_CODEC_DAMAGED);
}

TEST(Gif, TheFrameHasToBeWholeAndNothingBehindIt) {
    const Bytes file = Gif{}.build();
    // The last two bytes end the frame's data and the file.
    decodeEveryBeginning(file, file.size() - 2);
    const Decoded cut(std::span(file.data()).first(file.size() - 2));
    EXPECT_EQ(indices(cut), "0123|1230|2301");
}

TEST(Gif, MoreThanTheFileHoldsIsRefusedBeforeMemoryIsTaken) {
    const Limits nothing{0, 0};
    Gif gif;
    EXPECT_EQ(Decoded(gif.build(), nothing).result, ORVANE_CODEC_OUT_OF_MEMORY);
    gif.width = gif.height = gif.screenWidth = gif.screenHeight = 65535;
    EXPECT_EQ(Decoded(gif.build(), nothing).result, ORVANE_CODEC_DAMAGED);
}

}  // namespace
}  // namespace orvane::codecs::test
