#include "frame/random.h"

#include <bit>
#include <utility>

namespace orvane {
namespace {

std::uint64_t splitMix(std::uint64_t& state) {
    state += 0x9E3779B97F4A7C15U;
    std::uint64_t mixed = state;
    mixed = (mixed ^ (mixed >> 30)) * 0xBF58476D1CE4E5B9U;
    mixed = (mixed ^ (mixed >> 27)) * 0x94D049BB133111EBU;
    return mixed ^ (mixed >> 31);
}

}  // namespace

// splitmix64 never gives the same number twice in its period, so the four words are never all 0,
// the one state that the generator could not leave.
void RandomGenerator::seed(std::uint64_t value) {
    for (std::size_t word = 0; word < state_.size(); word += 2) {
        const std::uint64_t mixed = splitMix(value);
        state_[word] = static_cast<std::uint32_t>(mixed);
        state_[word + 1] = static_cast<std::uint32_t>(mixed >> 32);
    }
}

std::uint32_t RandomGenerator::next32() {
    const std::uint32_t result = std::rotl(state_[1] * 5, 7) * 9;
    const std::uint32_t shifted = state_[1] << 9;
    state_[2] ^= state_[0];
    state_[3] ^= state_[1];
    state_[1] ^= state_[2];
    state_[0] ^= state_[3];
    state_[2] ^= shifted;
    state_[3] = std::rotl(state_[3], 11);
    return result;
}

// The high word of a product spreads 2^32 numbers over the range; the few products whose low word
// would make some results likelier than others are drawn again.
std::int32_t RandomGenerator::uniform(std::int32_t low, std::int32_t high) {
    if (low > high) std::swap(low, high);
    const std::uint32_t base = static_cast<std::uint32_t>(low);
    const std::uint32_t count = static_cast<std::uint32_t>(high) - base + 1;
    if (count == 0) return static_cast<std::int32_t>(next32());
    const std::uint32_t unfair = (0U - count) % count;
    std::uint64_t product = 0;
    do {
        product = static_cast<std::uint64_t>(next32()) * count;
    } while (static_cast<std::uint32_t>(product) < unfair);
    return static_cast<std::int32_t>(base + static_cast<std::uint32_t>(product >> 32));
}

}  // namespace orvane
