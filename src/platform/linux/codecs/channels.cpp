#include "platform/linux/codecs/channels.h"

#include <bit>

namespace orvane::codecs {

Channel::Channel(uint32_t mask, uint32_t bits, uint8_t absent) {
    if (mask == 0) {
        scaled_[0] = absent;
        return;
    }
    shift_ = static_cast<uint32_t>(std::countr_zero(mask));
    auto width = static_cast<uint32_t>(std::popcount(mask));
    if (width > 8) {
        shift_ += width - 8;
        width = 8;
    }
    keep_ = (1u << width) - 1;
    const uint32_t top = (1u << bits) - 1;
    for (uint32_t value = 0; value <= keep_; ++value)
        scaled_[value] = static_cast<uint8_t>((value * top + keep_ / 2) / keep_);
}

bool Channel::isRun(uint32_t mask) {
    if (mask == 0) return true;
    const uint32_t low = mask >> std::countr_zero(mask);
    return (low & (low + 1)) == 0;
}

}  // namespace orvane::codecs
