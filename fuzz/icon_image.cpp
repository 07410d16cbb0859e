#include "icon_image.h"

#include <cstddef>
#include <cstdint>
#include <exception>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

/// The command-line host's own reader of icons: it gives a picture or says why not.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        orvane::tool::rgbFromIcon({data, size}, {});
    } catch (const std::exception&) {
    }
    return 0;
}
