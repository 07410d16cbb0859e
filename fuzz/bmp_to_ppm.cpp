#include "bmp_to_ppm.h"
#include "target.h"

#include <cstddef>
#include <cstdint>
#include <exception>

/// The command-line host's own reader of bitmaps: it gives a picture or says why not.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    try {
        orvane::tool::ppmFromBmp({data, size});
    } catch (const std::exception&) {
    }
    return 0;
}
