#pragma once

#include <cstdint>

namespace orvane {

/// A random whole number from `low` to `high`, both inclusive, from the apartment's generator.
/// Every range of Long values works; bounds in the wrong order mean the same range.
std::int32_t nqGetRnd(std::int32_t low, std::int32_t high);

}  // namespace orvane
