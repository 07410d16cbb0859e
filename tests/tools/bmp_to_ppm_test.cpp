#include "bmp_to_ppm.h"
#include "system.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <string>
#include <vector>

namespace orvane::tool {
namespace {

using Bytes = std::vector<std::uint8_t>;

void append(Bytes& bytes, std::uint64_t value, int size) {
    for (int i = 0; i < size; ++i) {
        bytes.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
    }
}

struct Bmp {
    std::int32_t width = 2;
    std::int32_t height = 2;
    std::uint32_t bits = 24;
    std::uint32_t compression = 0;
    std::uint32_t header = 40;
    std::uint32_t colours = 0;
    std::vector<std::uint32_t> table;  ///< channel masks, or colours 0xRRGGBB
    Bytes rows;

    Bytes build() const {
        // A longer header has the masks inside, where they would follow a short one.
        const std::size_t tableEnd = 54 + 4 * table.size();
        const std::size_t offset =
            compression == 3 ? std::max<std::size_t>(14 + header, tableEnd) : tableEnd;
        Bytes file = {'B', 'M'};
        append(file, 0, 8);
        append(file, static_cast<std::uint32_t>(offset), 4);
        append(file, header, 4);
        append(file, static_cast<std::uint32_t>(width), 4);
        append(file, static_cast<std::uint32_t>(height), 4);
        append(file, 1, 2);
        append(file, bits, 2);
        append(file, compression, 4);
        for (int i = 0; i < 3; ++i)
            append(file, 0, 4);
        append(file, colours, 4);
        append(file, 0, 4);
        for (const std::uint32_t entry : table)
            append(file, entry, 4);
        file.resize(offset, 0);
        file.insert(file.end(), rows.begin(), rows.end());
        return file;
    }
};

/// The PPM's header, then each pixel in hexadecimal digits.
std::string converted(const Bytes& bmp) {
    const Bytes ppm = ppmFromBmp(bmp);
    std::string text;
    std::size_t at = 0;
    for (int lines = 0; lines < 3; ++at) {
        text += static_cast<char>(ppm.at(at));
        if (ppm.at(at) == '\n') ++lines;
    }
    for (std::size_t i = at; i < ppm.size(); ++i) {
        constexpr const char* kDigits = "0123456789abcdef";
        if (i != at && (i - at) % 3 == 0) text += ' ';
        text += kDigits[ppm[i] >> 4];
        text += kDigits[ppm[i] & 15];
    }
    return text;
}

std::string converted(const Bmp& bmp) {
    return converted(bmp.build());
}

TEST(PpmFromBmp, TwentyFourBitsFromTheBottom) {
    Bmp bmp;
    bmp.rows = {7, 8, 9, 10, 11, 12, 0, 0, 1, 2, 3, 4, 5, 6, 0, 0};
    EXPECT_EQ(converted(bmp), "P6\n2 2\n255\n030201 060504 090807 0c0b0a");
}

TEST(PpmFromBmp, ANegativeHeightBeginsAtTheTop) {
    Bmp bmp;
    bmp.height = -2;
    bmp.rows = {1, 2, 3, 4, 5, 6, 0, 0, 7, 8, 9, 10, 11, 12, 0, 0};
    EXPECT_EQ(converted(bmp), "P6\n2 2\n255\n030201 060504 090807 0c0b0a");
}

TEST(PpmFromBmp, IndicesOfOneFourAndEightBits) {
    Bmp bmp;
    bmp.width = 3;
    bmp.height = 1;
    bmp.table = {0x102030, 0x405060};
    bmp.colours = 2;
    bmp.bits = 1;
    bmp.rows = {0b10100000, 0, 0, 0};
    EXPECT_EQ(converted(bmp), "P6\n3 1\n255\n405060 102030 405060");
    bmp.bits = 4;
    bmp.rows = {0x10, 0x10, 0, 0};
    EXPECT_EQ(converted(bmp), "P6\n3 1\n255\n405060 102030 405060");
    bmp.bits = 8;
    bmp.rows = {1, 0, 1, 0};
    EXPECT_EQ(converted(bmp), "P6\n3 1\n255\n405060 102030 405060");
}

TEST(PpmFromBmp, AnIndexBehindTheTableIsBlack) {
    Bmp bmp;
    bmp.width = 2;
    bmp.height = 1;
    bmp.bits = 8;
    bmp.table = {0x102030};
    bmp.rows = {0, 9, 0, 0};
    EXPECT_EQ(converted(bmp), "P6\n2 1\n255\n102030 000000");
    bmp.colours = 0xFFFFFFFF;
    EXPECT_EQ(converted(bmp), "P6\n2 1\n255\n102030 000000");
}

TEST(PpmFromBmp, SixteenBitsAreFiveAChannel) {
    Bmp bmp;
    bmp.height = 1;
    bmp.bits = 16;
    bmp.rows = {0x1F, 0x7C, 0xE0, 0x83};
    EXPECT_EQ(converted(bmp), "P6\n2 1\n255\nff00ff 00ff00");
}

TEST(PpmFromBmp, ChannelMasks) {
    Bmp bmp;
    bmp.height = 1;
    bmp.compression = 3;
    bmp.bits = 16;
    bmp.table = {0xF800, 0x7E0, 0x1F};
    bmp.rows = {0xFF, 0x07, 0x10, 0x04};
    EXPECT_EQ(converted(bmp), "P6\n2 1\n255\n00ffff 008284");
    bmp.bits = 32;
    bmp.width = 1;
    bmp.table = {0x3FF, 0xFFC00, 0x3FF00000};  // ten bits each
    bmp.rows = {0xFF, 0x03, 0x08, 0x40};
    EXPECT_EQ(converted(bmp), "P6\n1 1\n255\nff8000");
    bmp.table = {0, 0xFF, 0};
    EXPECT_EQ(converted(bmp), "P6\n1 1\n255\n00ff00");
}

TEST(PpmFromBmp, MasksInsideALongHeader) {
    Bmp bmp;
    bmp.header = 108;
    bmp.width = 1;
    bmp.height = 1;
    bmp.bits = 32;
    bmp.compression = 3;
    bmp.table = {0xFF, 0xFF00, 0xFF0000};
    bmp.rows = {1, 2, 3, 4};
    EXPECT_EQ(converted(bmp), "P6\n1 1\n255\n010203");
}

TEST(PpmFromBmp, AFourthChannelIsLeftOut) {
    Bmp bmp;
    bmp.width = 1;
    bmp.height = 1;
    bmp.bits = 32;
    bmp.rows = {1, 2, 3, 200};
    EXPECT_EQ(converted(bmp), "P6\n1 1\n255\n030201");
}

TEST(PpmFromBmp, EveryBeginningIsRefused) {
    Bmp bmp;
    bmp.bits = 4;
    bmp.width = 3;
    bmp.height = 3;
    bmp.table = {1, 2, 3};
    bmp.rows = Bytes(12, 0);
    const Bytes file = bmp.build();
    ASSERT_NO_THROW(ppmFromBmp(file));
    for (std::size_t length = 0; length < file.size(); ++length) {
        const Bytes start(file.begin(), file.begin() + static_cast<std::ptrdiff_t>(length));
        EXPECT_THROW(ppmFromBmp(start), Failure) << length;
    }
}

TEST(PpmFromBmp, OtherKindsAreRefused) {
    const auto refuses = [](auto change) {
        Bmp bmp;
        bmp.rows = Bytes(64, 0);
        change(bmp);
        EXPECT_THROW(ppmFromBmp(bmp.build()), Failure);
    };
    refuses([](Bmp& bmp) { bmp.bits = 2; });
    refuses([](Bmp& bmp) { bmp.bits = 0; });
    refuses([](Bmp& bmp) { bmp.compression = 1; });
    refuses([](Bmp& bmp) { bmp.compression = 3; });
    refuses([](Bmp& bmp) { bmp.width = 0; });
    refuses([](Bmp& bmp) { bmp.width = -2; });
    refuses([](Bmp& bmp) { bmp.height = 0; });
    refuses([](Bmp& bmp) { bmp.height = INT32_MIN; });
    refuses([](Bmp& bmp) { bmp.width = bmp.height = INT32_MAX; });
    Bmp bmp;
    bmp.rows = Bytes(16, 0);
    Bytes other = bmp.build();
    other[0] = 'P';
    EXPECT_THROW(ppmFromBmp(other), Failure);
    Bytes shortHeader = bmp.build();
    shortHeader[14] = 12;
    EXPECT_THROW(ppmFromBmp(shortHeader), Failure);
}

}  // namespace
}  // namespace orvane::tool
