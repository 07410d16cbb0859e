#include "platform/linux/codecs/corpus_expected.h"
#include "platform/linux/codecs/decoded.h"

#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>

namespace orvane::codecs::test {
namespace {

namespace fs = std::filesystem;

std::vector<uint8_t> readFile(const fs::path& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

/// How far `gm convert` is from what a file means. 255: it can't be compared.
int toleranceOf(const std::string& name) {
    // gm gives nothing for these three, the loader on Windows the same pixels as ours.
    static constexpr const char* kRefused[] = {
        "crash-3afb569de74522535ef65922233e1920455cdc14.bmp",
        "V3_A1_R5_G5_B5_Top_Down.bmp",
        "almogaver32bits.bmp",
    };
    for (const char* end : kRefused) {
        if (name.ends_with(end)) return 255;
    }
    // Pixels of a run behind the right edge go on in the next row there; Windows cuts them.
    if (name.ends_with("blauesglas_4.rle")) return 255;
    // One bit of red ends at 127 there, two bits of blue at 191, and not at 255.
    if (name.ends_with("rgba16-1924.bmp")) return 128;
    // Four bits end at 239 there, five at 247.
    if (name.ends_with("V3_X4_R4_G4_B4.bmp")) return 16;
    if (name.ends_with("V3_R5_G6_B5.bmp") || name.ends_with("rgb16bfdef.bmp")) return 8;
    return name.ends_with("rgba32-1010102.bmp") ? 1 : 0;
}

/// The first frame's pixels as gm sees them, red, green, blue; empty when it can't read the file.
std::vector<int> convertedByGm(const fs::path& path) {
    const std::string command = "gm convert '" + path.string() + "[0]' -depth 8 rgb:- 2>/dev/null";
    FILE* from = popen(command.c_str(), "r");
    std::vector<int> values;
    for (int value = fgetc(from); value != EOF; value = fgetc(from))
        values.push_back(value);
    pclose(from);
    return values;
}

/// Largest difference of a channel between the picture's pixels and gm's.
int distance(const Decoded& decoded, const std::vector<int>& converted) {
    int most = 0;
    size_t at = 0;
    for (int y = 0; y < decoded.picture.height; ++y) {
        for (int x = 0; x < decoded.picture.width; ++x, at += 3) {
            const Colour colour = decoded.colour(x, y);
            most = std::max({most, std::abs(colour.red - converted[at]),
                             std::abs(colour.green - converted[at + 1]),
                             std::abs(colour.blue - converted[at + 2])});
        }
    }
    return most;
}

class Corpus : public testing::Test {
protected:
    void SetUp() override {
        const char* given = std::getenv("ORVANE_CORPUS");
        const fs::path corpus =
            given != nullptr ? fs::path(given) : fs::path(ORVANE_REPOSITORY) / "../shared/corpus";
        folder_ = corpus / "pictures";
        if (!fs::is_directory(folder_)) GTEST_SKIP() << "corpus not there: not run";
    }

    fs::path folder_;
};

TEST_F(Corpus, EveryFileDecodesToItsSizeAndDepth) {
    for (const Expected& expected : kExpected) {
        SCOPED_TRACE(expected.name);
        const std::vector<uint8_t> file = readFile(folder_ / expected.name);
        ASSERT_FALSE(file.empty());
        const Decoded decoded{std::span(file)};
        EXPECT_EQ(decoded.result, expected.result);
        EXPECT_EQ(decoded.picture.kind, expected.kind);
        EXPECT_EQ(decoded.picture.width, expected.width);
        EXPECT_EQ(decoded.picture.height, expected.height);
        EXPECT_EQ(decoded.picture.bitsPerPixel, expected.depth);
    }
}

TEST_F(Corpus, BitmapsHaveThePixelsThatAnotherReaderFinds) {
    if (std::system("gm version >/dev/null 2>&1") != 0) GTEST_SKIP() << "gm not there: not run";
    int compared = 0;
    for (const Expected& expected : kExpected) {
        const int tolerance = toleranceOf(expected.name);
        if (expected.kind != ORVANE_PICTURE_BITMAP || tolerance == 255) continue;
        SCOPED_TRACE(expected.name);
        const std::vector<uint8_t> file = readFile(folder_ / expected.name);
        const Decoded decoded{std::span(file)};
        ASSERT_EQ(decoded.result, ORVANE_CODEC_OK);
        const std::vector<int> converted = convertedByGm(folder_ / expected.name);
        const OrvaneDecoded& picture = decoded.picture;
        ASSERT_EQ(converted.size(), static_cast<size_t>(picture.width * picture.height * 3));
        EXPECT_LE(distance(decoded, converted), tolerance);
        ++compared;
    }
    std::cout << compared << " bitmaps compared\n";
    EXPECT_GT(compared, 80);
}

TEST_F(Corpus, OtherFormatsAreNotRecognised) {
    for (const char* format : {"pcx", "png", "psd", "tga", "tif"}) {
        for (const fs::directory_entry& entry : fs::directory_iterator(folder_ / format)) {
            const std::vector<uint8_t> file = readFile(entry.path());
            EXPECT_NE(Decoded{std::span(file)}.result, ORVANE_CODEC_OK) << entry.path();
        }
    }
}

}  // namespace
}  // namespace orvane::codecs::test
