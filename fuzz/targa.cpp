#include "pictures/CFileTGA.h"
#include "pictures/targa_reference.h"
#include "reader_target.h"

namespace {

bool isTooLarge(std::span<const std::uint8_t> bytes) {
    if (bytes.size() < 16) return false;
    const auto word = [&](std::size_t at) {
        return static_cast<std::int16_t>(bytes[at] | bytes[at + 1] << 8);
    };
    return word(12) > 0 && std::int64_t{word(12)} * word(14) * 3 > orvane::fuzz::kMostBytes;
}

}  // namespace

/// A Targa file: the reader and the reference come to the same outcome and the same pixels.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvane;
    const std::span bytes(data, size);
    if (isTooLarge(bytes)) return 0;
    const std::uint8_t type = size > 2 ? data[2] : std::uint8_t{0};
    fuzz::compare<CFileTGA>(&CFileTGA::ReadTGA, type == 2 || type == 10,
                            test::referenceTarga(bytes), bytes);
    return 0;
}
