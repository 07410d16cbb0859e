#pragma once

#include "frame/errors.h"

#include <optional>

namespace orvane::test {

/// The run-time error that `action` raises, if it raises one.
template <class Action>
std::optional<RuntimeError> failureOf(Action&& action) {
    try {
        action();
    } catch (const RuntimeError& failure) {
        return failure;
    }
    return std::nullopt;
}

/// Whether `action` raises the library's internal error with this description and nothing else
/// set.
template <class Action>
bool raisesInternal(const char16_t* description, Action&& action) {
    const auto failure = failureOf(action);
    return failure && failure->number == error::kInternal && failure->description == description &&
           failure->helpFile.empty() && failure->helpContext == 0;
}

}  // namespace orvane::test
