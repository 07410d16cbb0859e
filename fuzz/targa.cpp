#include "pictures/CFileTGA.h"
#include "pictures/memory_file.h"
#include "pictures/targa_reference.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <span>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

/// As many pixels as the reference gets through in time.
constexpr std::int64_t kMostPixels = 1 << 16;

void require(bool holds) {
    if (!holds) std::abort();
}

bool isTooLarge(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < 16) return false;
    const auto word = [&](std::size_t at) {
        return static_cast<std::int16_t>(bytes[at] | bytes[at + 1] << 8);
    };
    const std::int64_t pixels = std::int64_t{word(12)} * word(14);
    return word(12) > 0 && pixels > kMostPixels;
}

}  // namespace

/// A Targa file: the reader and the reference come to the same outcome and the same pixels.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvane;
    const std::span bytes(data, size);
    if (isTooLarge(bytes)) return 0;
    const test::ReferenceImage expected = test::referenceTarga(bytes);

    const test::MemoryFile file(bytes);
    DecodedImage image;
    const bool success = CFileTGA::ReadTGA(u"memory.tga", image);
    require(file.open() == 0);
    require(success == expected.success);
    const std::uint8_t type = size > 2 ? data[2] : std::uint8_t{0};
    require(CFileTGA().Verify(u"memory.tga") == (type == 2 || type == 10));
    if (!success) return 0;
    require(image.Width == expected.width && image.Height == expected.height);
    require(image.BitsPerPixel == 24 && !image.Palette);
    require(std::ranges::equal(image.Pixels.elements(), expected.pixels));
    return 0;
}
