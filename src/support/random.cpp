#include "support/random.h"

#include "frame/random.h"

namespace orvane {

std::int32_t nqGetRnd(std::int32_t low, std::int32_t high) {
    return apartmentRandom().uniform(low, high);
}

}  // namespace orvane
