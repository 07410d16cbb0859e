#include "platform/linux/icon_drawing.h"

#include "platform/linux/pixel_format.h"

#include <memory>
#include <new>
#include <vector>

namespace orvane::platform {

namespace {

constexpr std::uint32_t kSrcAnd = 0x008800C6;
constexpr std::uint32_t kSrcInvert = 0x00660046;

std::vector<std::uint32_t> rowOf(const Surface& surface, std::int32_t y) {
    std::vector<std::uint32_t> row(static_cast<std::size_t>(surface.width()));
    readRaw(surface.row(y), surface.format().bits, 0, row);
    return row;
}

/// Whether some pixel's alpha isn't what its bit of the mask says.
bool hasOwnAlpha(const Icon& icon) {
    for (std::int32_t y = 0; y < icon.color->height(); ++y) {
        const std::vector<std::uint32_t> pixels = rowOf(*icon.color, y);
        const std::vector<std::uint32_t> mask = rowOf(*icon.mask, y);
        for (std::size_t x = 0; x < pixels.size(); ++x) {
            if (pixels[x] >> 24 != (mask[x] != 0 ? 0u : 255u)) {
                return true;
            }
        }
    }
    return false;
}

std::uint32_t mixed(std::uint32_t top, std::uint32_t under) {
    const std::uint32_t alpha = top >> 24;
    std::uint32_t pixel = 0;
    for (const std::uint32_t shift : {0u, 8u, 16u}) {
        const std::uint32_t sum =
            (top >> shift & 255) * alpha + (under >> shift & 255) * (255 - alpha);
        pixel |= (sum + 127) / 255 << shift;
    }
    return pixel;
}

std::shared_ptr<Surface> blank(const Area& area, const PixelFormat& format) {
    constexpr std::int64_t kMost = 1 << 20;
    if (area.width > kMost || area.height > kMost) {
        throw std::bad_alloc();
    }
    auto surface = Surface::create(static_cast<std::int32_t>(area.width),
                                   static_cast<std::int32_t>(area.height), format, true);
    if (surface == nullptr) {
        throw std::bad_alloc();
    }
    return surface;
}

/// Has the length of `to` above 0, by turning both round.
void straighten(std::int64_t& to, std::int64_t& toLength, std::int64_t& from,
                std::int64_t& fromLength) {
    if (toLength < 0) {
        to += toLength;
        toLength = -toLength;
        from += fromLength;
        fromLength = -fromLength;
    }
}

/// Beside the target: the icon in its size there, over a copy of what the target shows.
void drawByAlpha(Surface& target, Area to, const Surface& picture, Area from) {
    straighten(to.x, to.width, from.x, from.width);
    straighten(to.y, to.height, from.y, from.height);
    const auto top = blank(to, picture.format());
    const auto under = blank(to, PixelFormat::ofDepth(32));
    const Area whole{0, 0, to.width, to.height};
    transfer(*top, whole, viewOf(picture), from, kSrcCopy);
    transfer(*under, whole, viewOf(target), to, kSrcCopy);
    for (std::int32_t y = 0; y < top->height(); ++y) {
        const std::vector<std::uint32_t> pixels = rowOf(*top, y);
        std::vector<std::uint32_t> behind = rowOf(*under, y);
        for (std::size_t x = 0; x < pixels.size(); ++x) {
            behind[x] = mixed(pixels[x], behind[x]);
        }
        writeRaw(under->ownRow(y), 32, 0, behind);
    }
    transfer(target, to, viewOf(*under), whole, kSrcCopy);
}

}  // namespace

void drawIcon(Surface& target, Area to, const Icon& icon, Area from) {
    if (hasOwnAlpha(icon)) {
        drawByAlpha(target, to, *icon.color, from);
        return;
    }
    transfer(target, to, viewOf(*icon.mask), from, kSrcAnd);
    transfer(target, to, viewOf(*icon.color), from, kSrcInvert);
}

}  // namespace orvane::platform
