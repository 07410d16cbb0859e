#pragma once

#include "frame/errors.h"

#include <cstdint>

namespace orvane::test {

/// The number of the run-time error that `action` raises, 0 when it raises none.
template <class Action>
std::int32_t raisedBy(Action&& action) {
    try {
        action();
    } catch (const RuntimeError& failure) {
        return failure.number;
    }
    return 0;
}

}  // namespace orvane::test
