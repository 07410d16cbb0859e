#include "pictures/decoded_targa.h"

#include "support/rounds.h"

#include <gtest/gtest.h>

#include <random>

/// The reader and the reference over many files.
namespace orvane {
namespace {

using test::Bytes;
using test::TargaFile;

class RandomTarga {
public:
    explicit RandomTarga(unsigned seed) : random_(seed) {}

    int upTo(int limit) { return static_cast<int>(random_() % static_cast<unsigned>(limit)); }
    std::uint8_t byte() { return static_cast<std::uint8_t>(random_() & 0xFF); }

    TargaFile file() {
        constexpr std::uint8_t kDepths[] = {16, 24, 32, 16, 24, 32, 8, 15, 0};
        TargaFile file;
        file.type = upTo(2) == 0 ? std::uint8_t{2} : std::uint8_t{10};
        file.depth = kDepths[upTo(9)];
        file.descriptor = byte();
        file.width = 1 + upTo(12);
        file.height = 1 + upTo(6);
        file.idLength = byte();
        if (upTo(4) == 0) {
            file.colorMapType = byte();
            file.colorMapFirst = upTo(65536);
            file.colorMapLength = upTo(10);
            file.colorMapEntrySize = static_cast<std::uint8_t>(upTo(34));
        }
        if (upTo(30) == 0) file.width = upTo(65536);
        file.body = body(file);
        return file;
    }

private:
    /// Mostly enough pixels, sometimes too few or too many.
    Bytes body(const TargaFile& file) {
        const int pixels = file.width > 100 ? upTo(40) : file.width * file.height;
        const int wanted = upTo(3) == 0 ? upTo(pixels + 8) : pixels;
        Bytes bytes;
        if (file.type == 10) addPackets(bytes, wanted, file.depth / 8);
        while (static_cast<int>(bytes.size()) < wanted * (file.depth / 8))
            bytes.push_back(byte());
        if (file.colorMapType != 0) bytes.insert(bytes.begin(), 20, 0x55);
        return bytes;
    }

    void addPackets(Bytes& bytes, int pixels, int bytesPerPixel) {
        const int longest = upTo(4) == 0 ? 128 : 1 + upTo(10);
        while (pixels > 0) {
            int count = 1 + upTo(longest);
            // Most files end where their last packet does.
            if (count > pixels && upTo(12) != 0) count = pixels;
            const bool run = upTo(2) == 0;
            bytes.push_back(static_cast<std::uint8_t>((run ? 0x80 : 0) | (count - 1)));
            for (int i = 0; i < (run ? 1 : count) * bytesPerPixel; ++i)
                bytes.push_back(byte());
            pixels -= count;
        }
    }

    std::mt19937 random_;
};

TEST(CFileTGAReference, AgreesWithTheReferenceOnThousandsOfFiles) {
    RandomTarga random(1);
    int loaded = 0;
    constexpr int kFiles = test::rounds(20000);
    for (int run = 0; run < kFiles; ++run) {
        const Bytes bytes = random.file().bytes();
        ASSERT_TRUE(test::agrees(bytes)) << "file " << run;
        if (test::referenceTarga(bytes).success) ++loaded;
    }
    // Neither outcome is rare.
    EXPECT_GT(loaded, kFiles / 4);
    EXPECT_LT(loaded, kFiles * 4 / 5);
}

TEST(CFileTGAReference, AgreesWithTheReferenceOnRandomBytes) {
    RandomTarga random(2);
    for (int run = 0; run < test::rounds(5000); ++run) {
        Bytes bytes(static_cast<std::size_t>(random.upTo(120)), 0);
        for (std::uint8_t& byte : bytes)
            byte = random.byte();
        if (bytes.size() > 17) {
            // A size that the reference gets through in time.
            bytes[2] = random.upTo(2) == 0 ? 2 : 10;
            bytes[13] = bytes[15] = 0;
        }
        ASSERT_TRUE(test::agrees(bytes)) << "run " << run;
    }
}

/// Every combination of type, depth, origin and small size, whole and cut at every length.
TEST(CFileTGAReference, AgreesWithTheReferenceOnEveryVariantCutAtEveryLength) {
    for (const std::uint8_t type : test::kTargaTypes) {
        for (const std::uint8_t depth : test::kDepthsAndNone) {
            for (const std::uint8_t origin : {TargaFile::kTopLeft, TargaFile::kBottomLeft}) {
                for (int width = 1; width <= 5; ++width) {
                    TargaFile file{.type = type,
                                   .depth = depth,
                                   .descriptor = origin,
                                   .width = width,
                                   .height = 3};
                    const int pixels = width * 3;
                    file.body = type == 2 ? test::countedBytes(pixels * (depth / 8))
                                          : test::rawPackets(pixels, depth / 8, 4);
                    const Bytes bytes = file.bytes();
                    for (std::size_t length = 0; length <= bytes.size(); ++length) {
                        ASSERT_TRUE(test::agrees(std::span(bytes).first(length)))
                            << "type " << int{type} << ", depth " << int{depth} << ", width "
                            << width << ", length " << length;
                    }
                }
            }
        }
    }
}

TEST(CFileTGAReference, AFileThatEndsInItsPixelsIsBlackFromThere) {
    TargaFile file{.width = 2, .height = 2, .body = {1, 2, 3, 4}};
    const test::DecodedTarga found(file);
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.pixel(0, 0), (Bytes{1, 2, 3}));
    EXPECT_EQ(found.pixel(1, 0), (Bytes{4, 0, 0}));
    EXPECT_EQ(found.pixel(1, 1), Bytes(3, 0));
}

/// The map's size is rounded to the nearest whole number, a half to the even one, and the pixels
/// begin one byte before its end.
TEST(CFileTGAReference, AColourMapIsSkippedButForItsLastByte) {
    struct Case {
        std::uint8_t entryBits;
        int entries;
        std::size_t skipped;
    };
    constexpr Case kCases[] = {
        {8, 0, 0},  {8, 1, 1},   {16, 4, 8},    {24, 256, 768}, {32, 2, 8}, {15, 1, 2},
        {15, 2, 4}, {15, 3, 6},  {15, 4, 8},    {15, 16, 30},   {4, 1, 0},  {4, 3, 2},
        {4, 5, 2},  {12, 1, 2},  {1, 7, 1},     {0, 9, 0},      {20, 1, 2}, {28, 1, 4},
        {9, 4, 4},  {9, 12, 14}, {8, 513, 513},
    };
    for (const Case& each : kCases) {
        const TargaFile file{.body = test::countedBytes(800),
                             .colorMapType = 1,
                             .colorMapLength = each.entries,
                             .colorMapEntrySize = each.entryBits};
        const test::DecodedTarga found(file);
        ASSERT_TRUE(found.success);
        // One byte back from the first byte behind the map; without a map that is the header's.
        const Bytes bytes = file.bytes();
        const auto first = bytes.begin() + static_cast<std::ptrdiff_t>(17 + each.skipped);
        EXPECT_EQ(found.pixel(0, 0), Bytes(first, first + 3))
            << int{each.entryBits} << " bits, " << each.entries << " entries";
        EXPECT_TRUE(test::agrees(file));
    }
}

TEST(CFileTGAReference, AColourMapPastTheEndOfTheFileGivesBlack) {
    const TargaFile file{.width = 3,
                         .height = 2,
                         .body = Bytes(40, 0xFF),
                         .colorMapType = 255,
                         .colorMapLength = 65535,
                         .colorMapEntrySize = 255};
    const test::DecodedTarga found(file);
    ASSERT_TRUE(found.success);
    EXPECT_EQ(found.pixels(), Bytes(24, 0));
    EXPECT_TRUE(test::agrees(file));
}

TEST(CFileTGAReference, PacketsOfEveryLengthAgreeWithTheReference) {
    for (const std::uint8_t depth : test::kTargaDepths) {
        for (const std::uint8_t origin : {TargaFile::kTopLeft, TargaFile::kBottomLeft}) {
            for (int packet = 1; packet <= 128; ++packet) {
                const TargaFile file{.type = 10,
                                     .depth = depth,
                                     .descriptor = origin,
                                     .width = 13,
                                     .height = 31,
                                     .body = test::rawPackets(13 * 31, depth / 8, packet)};
                ASSERT_TRUE(test::agrees(file)) << packet;
                ASSERT_TRUE(test::DecodedTarga(file).success);
            }
        }
    }
}

TEST(CFileTGAReference, AFileLargerThanWhatIsBufferedAgreesWithTheReference) {
    for (const std::uint8_t type : test::kTargaTypes) {
        for (const std::uint8_t depth : test::kTargaDepths) {
            const int pixels = 301 * 270;
            const TargaFile file{.type = type,
                                 .depth = depth,
                                 .width = 301,
                                 .height = 270,
                                 .body = type == 2 ? test::countedBytes(pixels * (depth / 8))
                                                   : test::rawPackets(pixels, depth / 8, 100)};
            EXPECT_TRUE(test::agrees(file));
            EXPECT_TRUE(test::DecodedTarga(file).success);
        }
    }
}

}  // namespace
}  // namespace orvane
