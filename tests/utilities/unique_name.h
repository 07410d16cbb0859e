#pragma once

#include "frame/values/codepage.h"

#include <random>
#include <string>

namespace orvane::test {

/// A name that no other test and no other run has taken.
inline std::u16string uniqueName() {
    static std::random_device random;
    return fromAnsi("orvane test " + std::to_string(random()) + "-" + std::to_string(random()))
        .units();
}

}  // namespace orvane::test
