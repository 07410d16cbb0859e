#include "platform/linux/raster.h"

#include <gtest/gtest.h>

namespace orvane::platform {
namespace {

using Pixels = std::vector<std::uint32_t>;

std::shared_ptr<Surface> surfaceOf(PixelFormat format, const std::vector<Pixels>& rows) {
    const std::uint32_t bits = format.bits;
    auto surface =
        Surface::create(static_cast<std::int32_t>(rows.front().size()),
                        static_cast<std::int32_t>(rows.size()), std::move(format), false);
    for (std::size_t y = 0; y < rows.size(); ++y) {
        writeRaw(surface->ownRow(static_cast<std::int32_t>(y)), bits, 0, rows[y]);
    }
    return surface;
}

Pixels rowOf(const Surface& surface, std::int32_t y) {
    Pixels row(static_cast<std::size_t>(surface.width()));
    readRaw(surface.row(y), surface.format().bits, 0, row);
    return row;
}

PixelFormat grey(std::uint32_t bits) {
    PixelFormat format = PixelFormat::ofDepth(bits);
    const auto last = static_cast<std::uint32_t>(format.palette.size() - 1);
    for (std::uint32_t i = 0; i <= last; ++i) {
        format.palette[i] = 0x010101 * (i * 255 / last);
    }
    return format;
}

TEST(PixelFormat, RawNumbersComeBackAtEveryDepth) {
    for (const std::uint32_t bits : {1u, 4u, 8u, 16u, 24u, 32u}) {
        std::vector<std::uint8_t> row(64, 0xFF);
        const auto most = static_cast<std::uint32_t>((std::uint64_t{1} << bits) - 1);
        const Pixels written = {0, most, 0, 0, most};
        writeRaw(row.data(), bits, 3, written);
        Pixels read(7);
        readRaw(row.data(), bits, 2, read);
        EXPECT_EQ(read, (Pixels{most, 0, most, 0, 0, most, most})) << bits;
    }
}

TEST(PixelFormat, ChannelsAreScaledToEightBits) {
    Pixels pixels = {0x7FFF, 0, 0x7C00, 0x0010};
    toColors(PixelFormat::ofDepth(16), pixels);
    EXPECT_EQ(pixels, (Pixels{0xFFFFFF, 0, 0xFF0000, 0x000084}));
    fromColors(PixelFormat::ofDepth(16), pixels);
    EXPECT_EQ(pixels, (Pixels{0x7FFF, 0, 0x7C00, 0x0010}));
    PixelFormat wide = PixelFormat::ofDepth(32);
    wide.redMask = 0x3FF00000;
    wide.greenMask = 0;
    Pixels deep = {0x3FF00000, 0x20000000};
    toColors(wide, deep);
    EXPECT_EQ(deep, (Pixels{0xFF0000, 0x800000}));
}

TEST(PixelFormat, TheNearestPaletteEntryIsTaken) {
    Pixels pixels = {0x000000, 0x121212, 0xF0F0F0, 0xFFFFFF};
    fromColors(grey(4), pixels);
    EXPECT_EQ(pixels, (Pixels{0, 1, 14, 15}));
}

TEST(Raster, QuickAndGeneralWaysAgree) {
    std::vector<PixelFormat> formats;
    for (const std::uint32_t bits : {1u, 4u, 8u}) {
        formats.push_back(grey(bits));
    }
    for (const std::uint32_t bits : {16u, 24u, 32u}) {
        formats.push_back(PixelFormat::ofDepth(bits));
    }
    // Combined with a black target it gives the source, and never takes the quick way.
    constexpr std::uint32_t kSrcInvert = 0x00660046;
    for (const PixelFormat& from : formats) {
        for (const PixelFormat& to : formats) {
            const std::uint32_t most = from.bits < 32 ? (1u << from.bits) - 1 : 0xFFFFFFu;
            const auto source =
                surfaceOf(from, {{most, 0, most / 3, 1, most}, {0, 1, most, most / 2, 0}});
            const auto quick = Surface::create(5, 2, to, true);
            const auto general = Surface::create(5, 2, to, true);
            transfer(*quick, {0, 0, 5, 2}, viewOf(*source), {0, 0, 5, 2}, kSrcCopy);
            transfer(*general, {0, 0, 5, 2}, viewOf(*source), {0, 0, 5, 2}, kSrcInvert);
            for (std::int32_t y = 0; y < 2; ++y) {
                Pixels expected = rowOf(*source, y);
                if (!(from == to)) {
                    toColors(from, expected);
                    fromColors(to, expected);
                }
                EXPECT_EQ(rowOf(*quick, y), expected) << from.bits << " to " << to.bits;
                EXPECT_EQ(rowOf(*general, y), expected) << from.bits << " to " << to.bits;
            }
        }
    }
}

TEST(Raster, OppositeSignsMirror) {
    const auto source = surfaceOf(PixelFormat::ofDepth(32), {{1, 2, 3}, {4, 5, 6}});
    const auto target = Surface::create(3, 2, PixelFormat::ofDepth(32), false);
    transfer(*target, {0, 0, 3, 2}, viewOf(*source), {3, 2, -3, -2}, kSrcCopy);
    EXPECT_EQ(rowOf(*target, 0), (Pixels{6, 5, 4}));
    EXPECT_EQ(rowOf(*target, 1), (Pixels{3, 2, 1}));
}

TEST(Raster, WhatIsOutsideIsLeftOut) {
    const auto source = surfaceOf(PixelFormat::ofDepth(32), {{1, 2}});
    const auto target = surfaceOf(PixelFormat::ofDepth(32), {{9, 9, 9, 9}});
    transfer(*target, {-1, 0, 4, 1}, viewOf(*source), {0, 0, 4, 1}, kSrcCopy);
    EXPECT_EQ(rowOf(*target, 0), (Pixels{2, 9, 9, 9}));
    transfer(*target, {1, 0, 3, 1}, viewOf(*source), {-1, 0, 3, 1}, kSrcCopy);
    EXPECT_EQ(rowOf(*target, 0), (Pixels{2, 9, 1, 2}));
    transfer(*target, {INT32_MAX, INT32_MAX, INT32_MAX, INT32_MAX}, viewOf(*source),
             {INT32_MIN, INT32_MIN, INT32_MAX, INT32_MAX}, kSrcCopy);
    transfer(*target, {0, 0, 4, 1}, viewOf(*source), {0, 0, 0, 0}, kSrcCopy);
    EXPECT_EQ(rowOf(*target, 0), (Pixels{2, 9, 1, 2}));
}

TEST(Raster, ScalingTakesTheNearestPixel) {
    const auto source = surfaceOf(PixelFormat::ofDepth(32), {{1, 2, 3, 4}});
    const auto half = Surface::create(2, 1, PixelFormat::ofDepth(32), false);
    transfer(*half, {0, 0, 2, 1}, viewOf(*source), {0, 0, 4, 1}, kSrcCopy);
    EXPECT_EQ(rowOf(*half, 0), (Pixels{2, 4}));
    const auto twice = Surface::create(4, 1, PixelFormat::ofDepth(32), false);
    transfer(*twice, {0, 0, 4, 1}, viewOf(*source), {1, 0, 2, 1}, kSrcCopy);
    EXPECT_EQ(rowOf(*twice, 0), (Pixels{2, 2, 3, 3}));
}

TEST(Raster, AMonochromeTargetIsWhiteWhereTheSourceIs) {
    const auto target = Surface::create(3, 1, grey(1), false);
    target->isMonochrome = true;
    const auto source = surfaceOf(PixelFormat::ofDepth(24), {{0xFFFFFF, 0xFFFFFE, 0}});
    transfer(*target, {0, 0, 3, 1}, viewOf(*source), {0, 0, 3, 1}, kSrcCopy);
    EXPECT_EQ(rowOf(*target, 0), (Pixels{1, 0, 0}));
}

TEST(Surface, SizesThatCannotBeAreRefused) {
    const PixelFormat format = PixelFormat::ofDepth(24);
    EXPECT_EQ(Surface::create(0, 1, format, true), nullptr);
    EXPECT_EQ(lastError(), kErrorInvalidParameter);
    EXPECT_EQ(Surface::create(1, -1, format, true), nullptr);
    EXPECT_EQ(lastError(), kErrorInvalidParameter);
    EXPECT_EQ(Surface::create(INT32_MAX, INT32_MAX, format, true), nullptr);
    EXPECT_EQ(lastError(), kErrorNotEnoughMemory);
    EXPECT_EQ(Surface::create(1, 1, {}, true), nullptr);
    EXPECT_EQ(lastError(), kErrorInvalidParameter);
    std::uint8_t pixels[8] = {};
    EXPECT_EQ(Surface::adopt(3, 1, format, 12, PixelBlock(pixels, 8, [] {})), nullptr);
    EXPECT_EQ(Surface::adopt(3, 1, format, 8, PixelBlock(pixels, 8, [] {})), nullptr);
    EXPECT_EQ(Surface::adopt(2, 2, format, 8, PixelBlock(pixels, 8, [] {})), nullptr);
    EXPECT_NE(Surface::adopt(2, 1, format, 8, PixelBlock(pixels, 8, [] {})), nullptr);
}

TEST(Surface, AdoptedPixelsAreGivenBackOnce) {
    int released = 0;
    std::uint8_t pixels[8] = {};
    auto surface = Surface::adopt(2, 1, PixelFormat::ofDepth(24), 8,
                                  PixelBlock(pixels, 8, [&released] { ++released; }));
    EXPECT_EQ(released, 0);
    surface.reset();
    EXPECT_EQ(released, 1);
}

}  // namespace
}  // namespace orvane::platform
