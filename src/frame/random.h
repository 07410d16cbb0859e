#pragma once

#include <array>
#include <cstdint>

namespace orvane {

/// A random number generator of its own state: 16 bytes, a period of 2^128 - 1.
///
/// The algorithm is xoshiro128** 1.1 by David Blackman and Sebastiano Vigna, its state filled by
/// their splitmix64, as they advise. It is no source of secrets.
class RandomGenerator {
public:
    /// As after `seed(0)`.
    RandomGenerator() { seed(0); }

    /// Starts the sequence that belongs to `value`; the same value always gives the same sequence.
    void seed(std::uint64_t value);

    /// 32 random bits.
    std::uint32_t next32();

    /// A whole number from `low` to `high`, both inclusive, each as likely as any other. Bounds in
    /// the wrong order mean the same range.
    std::int32_t uniform(std::int32_t low, std::int32_t high);

private:
    std::array<std::uint32_t, 4> state_{};
};

/// The calling apartment's generator, seeded from the clock when the apartment starts.
RandomGenerator& apartmentRandom();

}  // namespace orvane
