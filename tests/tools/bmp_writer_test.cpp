#include "bmp_writer.h"

#include "bmp_to_ppm.h"

#include <gtest/gtest.h>

namespace orvane::tool {
namespace {

TEST(BmpWriter, RowsOfEveryLengthComeBack) {
    for (std::uint32_t width = 1; width <= 9; ++width) {
        RgbImage image(width, 3);
        std::uint8_t next = 0;
        for (Rgb& pixel : image.pixels) {
            pixel = {next, static_cast<std::uint8_t>(next + 1),
                     static_cast<std::uint8_t>(next + 2)};
            next = static_cast<std::uint8_t>(next + 3);
        }
        const std::vector<std::uint8_t> bmp = bmpFromRgb(image);
        EXPECT_EQ(bmp.size(), 54U + (width * 3 + 3) / 4 * 4 * 3) << width;
        const RgbImage again = rgbFromBmp(bmp);
        EXPECT_EQ(again.width, width);
        EXPECT_EQ(again.height, 3U);
        EXPECT_EQ(again.pixels, image.pixels) << width;
    }
}

TEST(BmpWriter, TheHeadersTellTheFile) {
    const std::vector<std::uint8_t> bmp = bmpFromRgb(RgbImage(2, 1, {1, 2, 3}));
    const std::vector<std::uint8_t> expected = {
        'B', 'M', 62, 0, 0, 0, 0, 0, 0, 0, 54, 0, 0, 0,          // the file
        40,  0,   0,  0, 2, 0, 0, 0, 1, 0, 0,  0, 1, 0, 24, 0,   // the picture
        0,   0,   0,  0, 8, 0, 0, 0, 0, 0, 0,  0, 0, 0, 0,  0,   // not compressed, its bytes
        0,   0,   0,  0, 0, 0, 0, 0, 3, 2, 1,  3, 2, 1, 0,  0};  // no palette, the pixels
    EXPECT_EQ(bmp, expected);
}

}  // namespace
}  // namespace orvane::tool
