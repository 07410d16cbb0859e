#include "platform/linux/metafiles/play.h"

#include <cstddef>
#include <cstdint>
#include <new>
#include <vector>

/// A metafile, played over a small picture in a place and at a size that its first bytes choose:
/// whatever it holds, nothing outside the canvas is touched and the fourth bytes stay 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvane::metafiles;
    constexpr std::uint32_t kSide = 48;
    std::vector<std::uint8_t> pixels(kSide * kSide * 4);
    const OrvaneCanvas canvas{kSide, kSide, pixels.data(), kSide * 4};
    const std::uint8_t choice = size == 0 ? 0 : data[size - 1];
    const OrvaneMetafileArea area{choice % 5 * 8 - 16, choice % 3 * 8, (choice & 1) != 0 ? -40 : 48,
                                  (choice & 2) != 0 ? 32 : 48};
    try {
        play({data, size}, canvas, area);
    } catch (const std::bad_alloc&) {
    }
    for (std::size_t i = 3; i < pixels.size(); i += 4) {
        if (pixels[i] != 0) __builtin_trap();
    }
    return 0;
}
