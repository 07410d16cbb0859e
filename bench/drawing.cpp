// Drawing on device contexts: copies against memcpy of the same bytes, and what an offscreen
// picture is made with and read back by against plain memory of its size.

#include "bench.h"

#include "pictures/COffscreenPicture.h"
#include "platform/gdi32.h"

#include <cstring>
#include <vector>

namespace {

using namespace orvane::platform;
using orvane::COffscreenPicture;
using orvane::bench::medianTimes;
using orvane::bench::printRatio;

constexpr std::int32_t kWidth = 1920;
constexpr std::int32_t kHeight = 1080;
constexpr std::size_t kBytes = std::size_t{kWidth} * kHeight * 4;
constexpr std::uint32_t kPatCopy = 0x00F00021;

void copies() {
    COffscreenPicture source;
    source.Create(kWidth, kHeight, 0x332211);
    COffscreenPicture target;
    target.Create(kWidth, kHeight, 0);
    std::vector<std::uint8_t> from(kBytes, 1);
    std::vector<std::uint8_t> to(kBytes);
    const auto memory = [&] { std::memcpy(to.data(), from.data(), kBytes); };
    const auto [copy, peer] =
        medianTimes([&] { target.PaintPicture2(source, 0, 0, -1, -1, 0, 0, kSrcCopy); }, memory);
    printRatio("BitBlt, plain copy, 1920 x 1080", copy, "memcpy", peer);
    const auto [fill, fillPeer] =
        medianTimes([&] { target.PaintPicture2(source, 0, 0, -1, -1, 0, 0, kPatCopy); },
                    [&] { std::memset(to.data(), 7, kBytes); });
    printRatio("BitBlt, brush, 1920 x 1080", fill, "memset", fillPeer);
}

void pictures() {
    COffscreenPicture surface;
    surface.Create(kWidth, kHeight, 0x332211);
    const auto [create, createPeer] =
        medianTimes([] { COffscreenPicture().Create(kWidth, kHeight, 0x332211); },
                    [] { std::vector<std::uint8_t>(kBytes, 7); });
    printRatio("Create, 1920 x 1080", create, "a filled vector", createPeer);
    std::vector<std::uint8_t> from(kBytes, 1);
    const auto copy = [&] { const std::vector<std::uint8_t> copied(from); };
    const auto [read, readPeer] =
        medianTimes([&] { const auto picture = surface.Picture(); }, copy);
    printRatio("Picture, 1920 x 1080", read, "a copied vector", readPeer);
    // On Linux a picture shares the surface's pixels until this.
    const auto [drawn, drawnPeer] = medianTimes(
        [&] {
            const auto picture = surface.Picture();
            gdi32.Rectangle(surface.hDC(), 0, 0, 1, 1);
        },
        copy);
    printRatio("Picture, and the surface drawn on", drawn, "a copied vector", drawnPeer);
}

}  // namespace

int main() {
    copies();
    pictures();
}
