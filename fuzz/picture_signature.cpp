#include "platform/win32/picture_signature.h"
#include "target.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

/// The first bytes of a file that the Windows loader is asked for; those behind them don't count.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace orvane::platform;
    const std::span<const std::uint8_t> start(data, size);
    const auto whole = pictureSignature(start);
    const auto enough = pictureSignature(start.first(std::min(size, kPictureSignatureSize)));
    if (whole != enough) std::abort();
    return 0;
}
