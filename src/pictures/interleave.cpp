#include "pictures/interleave.h"

namespace orvane {

void interleave(const std::uint8_t* blue, const std::uint8_t* green, const std::uint8_t* red,
                std::uint8_t* target, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i, target += 3) {
        target[0] = blue[i];
        target[1] = green[i];
        target[2] = red[i];
    }
}

}  // namespace orvane
