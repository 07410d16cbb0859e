#include "platform/linux/icon_drawing.h"

#include <gtest/gtest.h>

#include <new>
#include <utility>
#include <vector>

namespace orvane::platform {
namespace {

using Pixels = std::vector<std::uint32_t>;

std::shared_ptr<Surface> surfaceOf(PixelFormat format, const std::vector<Pixels>& rows) {
    const std::uint32_t bits = format.bits;
    auto surface = Surface::create(static_cast<std::int32_t>(rows.front().size()),
                                   static_cast<std::int32_t>(rows.size()), std::move(format), true);
    for (std::size_t y = 0; y < rows.size(); ++y) {
        writeRaw(surface->ownRow(static_cast<std::int32_t>(y)), bits, 0, rows[y]);
    }
    return surface;
}

std::vector<Pixels> rowsOf(const Surface& surface) {
    std::vector<Pixels> rows;
    for (std::int32_t y = 0; y < surface.height(); ++y) {
        Pixels row(static_cast<std::size_t>(surface.width()));
        readRaw(surface.row(y), surface.format().bits, 0, row);
        rows.push_back(row);
    }
    return rows;
}

Icon iconOf(const std::vector<Pixels>& colours, const std::vector<Pixels>& mask) {
    PixelFormat monochrome = PixelFormat::ofDepth(1);
    monochrome.palette = {0, 0xFFFFFF};
    Icon icon;
    icon.color = surfaceOf(PixelFormat::ofDepth(32), colours);
    icon.mask = surfaceOf(std::move(monochrome), mask);
    icon.mask->isMonochrome = true;
    return icon;
}

std::shared_ptr<Surface> ground(std::size_t width, std::size_t height) {
    return surfaceOf(PixelFormat::ofDepth(32),
                     std::vector<Pixels>(height, Pixels(width, 0x206080)));
}

TEST(LinuxIcons, TheMaskKeepsTheGroundOrTurnsItRound) {
    const Icon icon = iconOf({{0xFF102030, 0x00000000, 0x00FFFFFF}}, {{0, 1, 1}});
    const auto target = ground(3, 1);
    drawIcon(*target, {0, 0, 3, 1}, icon, {0, 0, 3, 1});
    EXPECT_EQ(rowsOf(*target).front()[0] & 0xFFFFFF, 0x102030u);
    EXPECT_EQ(rowsOf(*target).front()[1] & 0xFFFFFF, 0x206080u);
    EXPECT_EQ(rowsOf(*target).front()[2] & 0xFFFFFF, 0xDF9F7Fu);
}

TEST(LinuxIcons, AnAlphaChannelMixes) {
    const Icon icon = iconOf({{0xFF102030, 0x33FF0000, 0x00000000}}, {{0, 0, 1}});
    const auto target = ground(3, 1);
    drawIcon(*target, {0, 0, 3, 1}, icon, {0, 0, 3, 1});
    EXPECT_EQ(rowsOf(*target).front(), (Pixels{0x102030, 0x4D4D66, 0x206080}));
}

TEST(LinuxIcons, AnAlphaChannelThatContradictsTheMaskCounts) {
    const Icon icon = iconOf({{0x00FFFFFF, 0xFF102030}}, {{0, 1}});
    const auto target = ground(2, 1);
    drawIcon(*target, {0, 0, 2, 1}, icon, {0, 0, 2, 1});
    EXPECT_EQ(rowsOf(*target).front(), (Pixels{0x206080, 0x102030}));
}

TEST(LinuxIcons, BothWaysStretchMirrorAndCutAlike) {
    const std::vector<Pixels> colours = {{0xFF000001, 0xFF000002}, {0xFF000003, 0xFF000004}};
    const Icon byMask = iconOf(colours, {{0, 0}, {0, 0}});
    std::vector<Pixels> almost = colours;
    almost[0][0] = 0xFE000001;
    const Icon byAlpha = iconOf(almost, {{0, 0}, {0, 0}});
    for (const std::int64_t width : {4, 2, -2, -4}) {
        for (const std::int64_t height : {2, -2, 6}) {
            for (const std::int64_t place : {-1, 0, 2, 5}) {
                const auto one = ground(6, 6);
                const auto other = ground(6, 6);
                // Bottom up, as pictures are measured.
                drawIcon(*one, {place, place, width, height}, byMask, {0, 2, 2, -2});
                drawIcon(*other, {place, place, width, height}, byAlpha, {0, 2, 2, -2});
                std::vector<Pixels> expected = rowsOf(*one);
                std::vector<Pixels> found = rowsOf(*other);
                for (std::size_t y = 0; y < 6; ++y) {
                    for (std::size_t x = 0; x < 6; ++x) {
                        const std::uint32_t wanted = expected[y][x] & 0xFFFFFF;
                        // The one pixel that isn't quite opaque lets a little through.
                        if (wanted == 1) continue;
                        EXPECT_EQ(found[y][x] & 0xFFFFFF, wanted)
                            << width << ' ' << height << ' ' << place << ": " << x << ", " << y;
                    }
                }
            }
        }
    }
}

TEST(LinuxIcons, ATargetOfAnotherDepthGetsTheMixture) {
    const Icon icon = iconOf({{0x80FFFFFF}}, {{0}});
    const auto target = surfaceOf(PixelFormat::ofDepth(24), {{0x000000, 0x000000}});
    drawIcon(*target, {1, 0, 1, 1}, icon, {0, 0, 1, 1});
    EXPECT_EQ(rowsOf(*target).front(), (Pixels{0, 0x808080}));
}

TEST(LinuxIcons, ASizeBeyondAllMemoryFails) {
    const Icon icon = iconOf({{0x80FFFFFF}}, {{0}});
    const auto target = ground(1, 1);
    for (const std::int64_t size : {std::int64_t{100000}, std::int64_t{1} << 40}) {
        EXPECT_THROW(drawIcon(*target, {0, 0, size, size}, icon, {0, 0, 1, 1}), std::bad_alloc);
    }
}

}  // namespace
}  // namespace orvane::platform
