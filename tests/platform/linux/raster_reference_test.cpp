#include "platform/linux/raster.h"

#include <gtest/gtest.h>

#include <random>

// The quick ways of copying and filling against one that takes each pixel by itself.
namespace orvane::platform {
namespace {

using Pixels = std::vector<std::uint32_t>;

/// Random numbers that are the same in every run.
class Dice {
public:
    explicit Dice(std::uint32_t seed) : engine_(seed) {}
    std::int32_t from(std::int32_t low, std::int32_t high) {
        return low +
               static_cast<std::int32_t>(engine_() % static_cast<std::uint32_t>(high - low + 1));
    }
    std::uint32_t any() { return static_cast<std::uint32_t>(engine_()); }

private:
    std::mt19937 engine_;
};

PixelFormat randomFormat(Dice& dice) {
    constexpr std::uint32_t kDepths[] = {1, 4, 8, 16, 24, 32};
    PixelFormat format = PixelFormat::ofDepth(kDepths[dice.from(0, 5)]);
    for (std::uint32_t& entry : format.palette) {
        entry = dice.any() & 0xFFFFFF;
    }
    return format;
}

std::shared_ptr<Surface> randomSurface(Dice& dice) {
    auto surface = Surface::create(dice.from(1, 40), dice.from(1, 12), randomFormat(dice),
                                   dice.from(0, 1) == 0);
    for (std::int32_t y = 0; y < surface->height(); ++y) {
        for (std::size_t i = 0; i < surface->stride(); ++i) {
            surface->ownRow(y)[i] = static_cast<std::uint8_t>(dice.any());
        }
    }
    if (surface->format().bits == 1 && dice.from(0, 1) == 0) {
        // Black and white of its own has no other palette.
        surface->isMonochrome = true;
    }
    return surface;
}

std::uint32_t pixelAt(const Surface& surface, std::int32_t x, std::int32_t y) {
    std::uint32_t pixel = 0;
    readRaw(surface.row(y), surface.format().bits, static_cast<std::uint32_t>(x), {&pixel, 1});
    return pixel;
}

std::uint32_t rawOf(const Surface& surface, std::uint32_t color) {
    fromColors(surface.format(), {&color, 1});
    return color;
}

/// The raw number for the target of a source's pixel.
std::uint32_t converted(const Surface& target, const Surface& source, std::uint32_t raw,
                        const OperationColors& colors) {
    if (source.isMonochrome && target.format().bits > 1) {
        return rawOf(target, raw != 0 ? colors.background : colors.text);
    }
    if (target.isMonochrome && source.format().bits > 1) {
        toColors(source.format(), {&raw, 1});
        return raw == colors.sourceBackground ? 1 : 0;
    }
    if (source.format() == target.format()) return raw;
    toColors(source.format(), {&raw, 1});
    return rawOf(target, raw);
}

/// Bit by bit, from the table that the operation's number is.
std::uint32_t combined(std::uint32_t number, std::uint32_t pattern, std::uint32_t source,
                       std::uint32_t target) {
    std::uint32_t result = 0;
    for (std::uint32_t bit = 0; bit < 32; ++bit) {
        const std::uint32_t index =
            ((pattern >> bit) & 1) << 2 | ((source >> bit) & 1) << 1 | ((target >> bit) & 1);
        result |= ((number >> index) & 1) << bit;
    }
    return result;
}

/// What the operation leaves in the target, pixel by pixel.
std::vector<Pixels> expectedOf(const Surface& target, std::int32_t x, std::int32_t y,
                               std::int32_t width, std::int32_t height, const Surface* source,
                               std::int32_t sourceX, std::int32_t sourceY, std::uint32_t number,
                               const OperationColors& colors) {
    std::vector<Pixels> rows;
    const auto depth = target.format().bits;
    const std::uint32_t mask = depth == 32 ? ~0u : (1u << depth) - 1;
    for (std::int32_t row = 0; row < target.height(); ++row) {
        rows.emplace_back();
        for (std::int32_t column = 0; column < target.width(); ++column) {
            std::uint32_t pixel = pixelAt(target, column, row);
            const bool isInside = column >= x && column < x + width && row >= y && row < y + height;
            const std::int32_t fromX = sourceX + column - x;
            const std::int32_t fromY = sourceY + row - y;
            const bool hasSource = source == nullptr || (fromX >= 0 && fromX < source->width() &&
                                                         fromY >= 0 && fromY < source->height());
            if (isInside && hasSource) {
                const std::uint32_t from =
                    source == nullptr
                        ? 0
                        : converted(target, *source, pixelAt(*source, fromX, fromY), colors);
                pixel = combined(number, rawOf(target, colors.pattern), from, pixel) & mask;
            }
            rows.back().push_back(pixel);
        }
    }
    return rows;
}

std::vector<Pixels> pixelsOf(const Surface& surface) {
    std::vector<Pixels> rows;
    for (std::int32_t y = 0; y < surface.height(); ++y) {
        rows.emplace_back();
        for (std::int32_t x = 0; x < surface.width(); ++x) {
            rows.back().push_back(pixelAt(surface, x, y));
        }
    }
    return rows;
}

TEST(RasterReference, RandomOperationsLeaveWhatEachPixelByItselfWould) {
    Dice dice(20260101);
    for (int run = 0; run < 6000; ++run) {
        const auto target = randomSurface(dice);
        const auto source = dice.from(0, 3) == 0 ? target : randomSurface(dice);
        const OperationColors colors{dice.any() & 0xFFFFFF, dice.any() & 0xFFFFFF,
                                     dice.any() & 0xFFFFFF, dice.any() & 0xFFFFFF};
        // A plain copy half of the time: it has the quick ways.
        const std::uint32_t number =
            dice.from(0, 1) == 0 ? 0xCC : static_cast<std::uint32_t>(dice.from(0, 255));
        const std::uint32_t operation = number << 16;
        const std::int32_t x = dice.from(-6, 40);
        const std::int32_t y = dice.from(-4, 12);
        const std::int32_t width = dice.from(0, 44);
        const std::int32_t height = dice.from(0, 14);
        const std::int32_t sourceX = dice.from(-6, 40);
        const std::int32_t sourceY = dice.from(-4, 12);
        const bool takesSource = usesSource(operation);
        const auto expected =
            expectedOf(*target, x, y, width, height, takesSource ? source.get() : nullptr, sourceX,
                       sourceY, number, colors);
        const Area area{x, y, width, height};
        if (takesSource) {
            transfer(*target, area, viewOf(*source), {sourceX, sourceY, width, height}, operation,
                     colors);
        } else {
            fill(*target, area, colors.pattern, withoutSource(operation));
        }
        ASSERT_EQ(pixelsOf(*target), expected)
            << "run " << run << ", operation " << std::hex << number << std::dec << ", "
            << source->format().bits << " to " << target->format().bits << " bits";
    }
}

TEST(RasterReference, OperationsAreKnownByWhatTheyTake) {
    for (std::uint32_t number = 0; number < 256; ++number) {
        bool source = false;
        bool pattern = false;
        for (std::uint32_t index = 0; index < 8; ++index) {
            const auto at = [number](std::uint32_t i) { return (number >> i) & 1; };
            source = source || at(index) != at(index ^ 2);
            pattern = pattern || at(index) != at(index ^ 4);
        }
        EXPECT_EQ(usesSource(number << 16), source) << number;
        EXPECT_EQ(usesPattern(number << 16), pattern) << number;
    }
}

TEST(RasterReference, PixelsNextToTheAreaStayAtEveryDepth) {
    for (const std::uint32_t bits : {1u, 4u, 8u, 16u, 24u, 32u}) {
        PixelFormat format = PixelFormat::ofDepth(bits);
        if (!format.palette.empty()) format.palette.back() = 0xFFFFFF;
        const auto surface = Surface::create(9, 3, format, true);
        fill(*surface, {2, 1, 5, 1}, 0xFFFFFF, kCopyColor);
        const std::uint32_t white = rawOf(*surface, 0xFFFFFF);
        for (std::int32_t y = 0; y < 3; ++y) {
            for (std::int32_t x = 0; x < 9; ++x) {
                EXPECT_EQ(pixelAt(*surface, x, y), y == 1 && x >= 2 && x < 7 ? white : 0u) << bits;
            }
        }
    }
}

}  // namespace
}  // namespace orvane::platform
