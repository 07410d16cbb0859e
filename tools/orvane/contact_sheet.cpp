#include "contact_sheet.h"

#include "bitmap_font.h"

#include <algorithm>
#include <cmath>
#include <string_view>

namespace orvane::tool {

namespace {

constexpr Rgb kPage{0xEC, 0xEA, 0xE6};
constexpr Rgb kCard{0xFF, 0xFF, 0xFF};
constexpr Rgb kEdge{0xC9, 0xC5, 0xBD};
constexpr Rgb kCheck{0xEA, 0xE8, 0xE3};
constexpr Rgb kInk{0x2A, 0x2D, 0x34};
constexpr Rgb kPaleInk{0x74, 0x77, 0x7E};
constexpr Rgb kBrokenEdge{0xC8, 0x7A, 0x6E};
constexpr Rgb kBrokenWindow{0xF8, 0xE9, 0xE5};
constexpr Rgb kBrokenInk{0xA4, 0x3A, 0x2A};

// Pixels.
constexpr std::uint32_t kMargin = 28;
constexpr std::uint32_t kGap = 18;
constexpr std::uint32_t kPadding = 12;
constexpr std::uint32_t kPlace = 240;  ///< the side of a thumbnail's place
constexpr std::uint32_t kTextSize = 2;
constexpr std::uint32_t kLine = (kCellHeight + 2) * kTextSize;
constexpr std::uint32_t kTitle = 2 * kLine;
constexpr std::uint32_t kCardWidth = kPlace + 2 * kPadding;
constexpr std::uint32_t kCardHeight = kPlace + 3 * kPadding + 2 * kLine;
constexpr std::size_t kCaption = kPlace / (kCellWidth * kTextSize);
constexpr std::uint32_t kMostColumns = 12;

std::uint32_t columnsFor(std::size_t count) {
    const auto near = static_cast<std::uint32_t>(std::ceil(std::sqrt(1.3 * double(count))));
    return std::clamp(near, 1u, kMostColumns);
}

void frame(RgbImage& page, std::uint32_t x, std::uint32_t y, std::uint32_t width,
           std::uint32_t height, Rgb edge, Rgb inside) {
    page.fill(x, y, width, height, edge);
    page.fill(x + 1, y + 1, width - 2, height - 2, inside);
}

/// The ground of a thumbnail, so that its edges show whatever its colours.
void drawGround(RgbImage& page, std::uint32_t x, std::uint32_t y) {
    constexpr std::uint32_t kSquare = 12;
    page.fill(x, y, kPlace, kPlace, kThumbnailGround);
    for (std::uint32_t row = 0; row < kPlace / kSquare; ++row) {
        for (std::uint32_t column = row % 2; column < kPlace / kSquare; column += 2)
            page.fill(x + column * kSquare, y + row * kSquare, kSquare, kSquare, kCheck);
    }
}

void drawThumbnail(RgbImage& page, std::uint32_t x, std::uint32_t y, const RgbImage& image) {
    drawGround(page, x, y);
    const std::uint32_t left = x + (kPlace - image.width) / 2;
    const std::uint32_t top = y + (kPlace - image.height) / 2;
    for (std::uint32_t row = 0; row < image.height; ++row) {
        std::copy_n(&image.at(0, row), image.width, &page.at(left, top + row));
    }
}

void drawCentred(RgbImage& page, std::uint32_t x, std::uint32_t y, std::string_view text,
                 std::uint32_t size, Rgb colour) {
    const std::uint32_t width = textWidth(text, size);
    drawText(page, x + (kPlace - std::min(width, kPlace)) / 2, y, text, size, colour);
}

/// A cross in the place of a picture that can't be read.
void drawBroken(RgbImage& page, std::uint32_t x, std::uint32_t y) {
    frame(page, x, y, kPlace, kPlace, kBrokenEdge, kBrokenWindow);
    constexpr std::uint32_t kCross = 56;
    const std::uint32_t left = x + (kPlace - kCross) / 2;
    const std::uint32_t top = y + (kPlace - kCross) / 2;
    for (std::uint32_t i = 0; i < kCross; ++i) {
        page.fill(left + i, top + i, 5, 5, kBrokenInk);
        page.fill(left + kCross - i, top + i, 5, 5, kBrokenInk);
    }
}

void drawCard(RgbImage& page, std::uint32_t x, std::uint32_t y, const SheetEntry& entry) {
    frame(page, x, y, kCardWidth, kCardHeight, entry.broken ? kBrokenEdge : kEdge, kCard);
    const std::uint32_t left = x + kPadding;
    const std::uint32_t top = y + kPadding;
    if (entry.broken) {
        drawBroken(page, left, top);
    } else if (entry.image) {
        drawThumbnail(page, left, top, *entry.image);
    } else {
        drawGround(page, left, top);
        drawCentred(page, left, top + kPlace / 2 - kCellHeight, "no pixels", kTextSize, kPaleInk);
    }
    const std::uint32_t caption = top + kPlace + kPadding;
    drawText(page, left, caption, shortened(entry.name, kCaption), kTextSize, kInk);
    drawText(page, left, caption + kLine, shortened(entry.facts, kCaption), kTextSize,
             entry.broken ? kBrokenInk : kPaleInk);
}

std::string titleOf(const std::vector<SheetEntry>& entries) {
    const auto broken = std::ranges::count_if(entries, &SheetEntry::broken);
    std::string title =
        std::to_string(entries.size()) + (entries.size() == 1 ? " picture" : " pictures");
    if (broken > 0) title += ", " + std::to_string(broken) + " broken";
    return title;
}

}  // namespace

RgbImage thumbnailOf(const RgbImage& image) {
    constexpr std::uint32_t kMostEnlarged = 8;
    const std::uint32_t side = std::max(image.width, image.height);
    if (side <= kPlace) {
        const std::uint32_t factor = std::min(kPlace / side, kMostEnlarged);
        return scaled(image, image.width * factor, image.height * factor);
    }
    const auto fitted = [side](std::uint32_t length) {
        const auto share = static_cast<std::uint32_t>(std::uint64_t{length} * kPlace / side);
        return std::max(share, 1u);
    };
    return scaled(image, fitted(image.width), fitted(image.height));
}

RgbImage contactSheet(const std::vector<SheetEntry>& entries) {
    const std::uint32_t columns = columnsFor(entries.size());
    const auto rows = static_cast<std::uint32_t>((entries.size() + columns - 1) / columns);
    RgbImage page(2 * kMargin + columns * (kCardWidth + kGap) - kGap,
                  2 * kMargin + kTitle + rows * (kCardHeight + kGap) - kGap, kPage);
    drawText(page, kMargin, kMargin, titleOf(entries), kTextSize, kInk);
    std::uint32_t index = 0;
    for (const SheetEntry& entry : entries) {
        const std::uint32_t column = index % columns;
        const std::uint32_t row = index / columns;
        drawCard(page, kMargin + column * (kCardWidth + kGap),
                 kMargin + kTitle + row * (kCardHeight + kGap), entry);
        ++index;
    }
    return page;
}

}  // namespace orvane::tool
