#include "pictures/decoded_psd.h"
#include "pictures/peak_memory.h"

#include <gtest/gtest.h>

/// Sizes: which ones the 32-bit arithmetic and the file's own size refuse, and that a refused one
/// costs no memory.
namespace orvane {
namespace {

using test::Bytes;
using test::DecodedPsd;
using test::PsdFile;

bool loads(const PsdFile& file) {
    EXPECT_TRUE(agrees(file));
    return DecodedPsd(file).success;
}

TEST(CFilePSDLimits, ASizeOfZeroFails) {
    for (const int compression : {0, 1}) {
        for (const int channels : {0, 3, 4}) {
            const auto file = [&](int height, int width) {
                return PsdFile{.channels = channels,
                               .height = height,
                               .width = width,
                               .compression = compression,
                               .data = Bytes(100, 0)};
            };
            EXPECT_FALSE(loads(file(0, 0)));
            EXPECT_FALSE(loads(file(0, 5)));
            EXPECT_FALSE(loads(file(5, 0)));
        }
    }
}

TEST(CFilePSDLimits, ANumberWithTheHighestBitFails) {
    const PsdFile file{.channels = 0, .data = {1}};
    ASSERT_TRUE(loads(file));
    struct Field {
        const char* name;
        std::size_t at;
    };
    constexpr Field kFields[] = {{"signature", 0}, {"version", 4},     {"channels", 12},
                                 {"height", 14},   {"width", 18},      {"depth", 22},
                                 {"mode", 24},     {"colours", 26},    {"resources", 30},
                                 {"layers", 34},   {"compression", 38}};
    for (const Field& field : kFields) {
        Bytes bytes = file.bytes();
        bytes[field.at] = static_cast<std::uint8_t>(bytes[field.at] | 0x80);
        EXPECT_FALSE(DecodedPsd(bytes).success) << field.name;
        EXPECT_FALSE(test::referencePsd(bytes).success) << field.name;
    }
}

TEST(CFilePSDLimits, ASectionThatLeadsOutOfTheFileFails) {
    for (int section = 0; section < 3; ++section) {
        for (const std::uint32_t length :
             {1U, 2U, 3U, 1000U, 0x7FFFFF00U, 0x7FFFFFFFU, 0x80000000U, 0xFFFFFFFFU}) {
            Bytes bytes = PsdFile{.channels = 0, .data = {1}}.bytes();
            const std::size_t at = test::kPsdSections + static_cast<std::size_t>(section) * 4;
            for (std::size_t i = 0; i < 4; ++i)
                bytes[at + i] = static_cast<std::uint8_t>(length >> (24 - 8 * i));
            EXPECT_FALSE(DecodedPsd(bytes).success) << section << ", " << length;
            EXPECT_FALSE(test::referencePsd(bytes).success) << section << ", " << length;
        }
    }
}

TEST(CFilePSDLimits, AFileThatEndsInItsHeaderFails) {
    const Bytes whole = PsdFile{.channels = 0, .data = {1}}.bytes();
    for (std::size_t size = 0; size < whole.size(); ++size)
        ASSERT_FALSE(DecodedPsd(std::span(whole).first(size)).success) << size;
    EXPECT_TRUE(DecodedPsd(whole).success);
}

TEST(CFilePSDLimits, RawDataLoadsFromItsLastByteOn) {
    constexpr int kPlanes[] = {1, 2, 3, 4, 4, 4};
    for (int channels = 0; channels <= 5; ++channels) {
        PsdFile file{.channels = channels, .height = 3, .width = 5, .compression = 0};
        file.data = test::countedBytes(15 * kPlanes[channels]);
        EXPECT_TRUE(loads(file));
        file.data.pop_back();
        EXPECT_FALSE(loads(file));
    }
}

/// Runs of 128 pixels in two bytes hold the most.
TEST(CFilePSDLimits, PackedDataLoadsFromTheLeastThatHoldsIt) {
    for (const int pixels : {1, 2, 127, 128, 129, 255, 256, 257, 300}) {
        for (int channels = 1; channels <= 4; ++channels) {
            Bytes plane;
            for (int left = pixels; left > 0; left -= 128) {
                const int count = std::min(left, 128);
                test::add(plane, count == 1 ? test::literalPacket({7}) : test::runPacket(count, 8));
            }
            PsdFile file{.channels = channels, .height = 1, .width = pixels};
            file.data = test::packedPlanes(
                channels, 1, std::vector<Bytes>(static_cast<std::size_t>(channels), plane));
            EXPECT_TRUE(loads(file)) << pixels;
            file.data.pop_back();
            EXPECT_FALSE(loads(file)) << pixels;
        }
    }
}

TEST(CFilePSDLimits, PicturesOfAnyShapeLoad) {
    for (const auto& [height, width] : {std::pair{70000, 1}, {1, 70000}, {3, 40001}, {35000, 2}}) {
        Bytes plane;
        for (int left = height * width; left > 0; left -= 100)
            test::add(plane, left == 1 ? test::literalPacket({3})
                                       : test::runPacket(std::min(left, 100),
                                                         static_cast<std::uint8_t>(left / 100)));
        PsdFile file{.channels = 3, .height = height, .width = width};
        file.data = test::packedPlanes(3, height, {plane, plane, plane});
        EXPECT_TRUE(loads(file)) << height << " x " << width;
    }
}

/// Each way to a huge picture that can't load.
TEST(CFilePSDLimits, AHugePictureThatMustFailTakesNoMemory) {
    const std::vector<PsdFile> bombs{
        {.channels = 3, .height = 30000, .width = 30000},
        {.channels = 3, .height = 30000, .width = 30000, .compression = 0},
        {.channels = 16, .height = 30000, .width = 30000},
        {.channels = 1, .height = 1, .width = 536870911},
        {.channels = 1, .height = 536870911, .width = 1},
        {.channels = 0, .height = 536870911, .width = 1, .compression = 0},
        {.channels = 0, .height = 536870912, .width = 1},
        {.channels = 0, .height = 1, .width = 536870912},
        {.channels = 0, .height = 65536, .width = 65536},
        {.channels = 0, .height = 0x7FFFFFFF, .width = 0x7FFFFFFF},
        {.channels = 16, .height = 536870911, .width = 1},
        {.channels = 16, .height = 0x10000000, .width = 1},
    };
    const test::PeakMemory peak;
    for (PsdFile bomb : bombs) {
        bomb.data = Bytes(50, 0x81);
        const DecodedPsd found(bomb);
        EXPECT_FALSE(found.success);
        EXPECT_FALSE(found.image.Pixels.isAllocated());
    }
    EXPECT_LT(peak.growth(), 16 << 10);
}

}  // namespace
}  // namespace orvane
