#pragma once

#include "platform/handles.h"
#include "platform/operation.h"

namespace orvane::platform {

struct Winmm {
    /// The multimedia library's text for a command-string error; empty when it has none.
    Operation<std::string(std::uint32_t number)> mciGetErrorStringA{
        "winmm", "mciGetErrorStringA", {}, kErrorInvalidParameter};

    template <class Visitor>
    constexpr void visit(Visitor&& visitor) {
        visitor(mciGetErrorStringA);
    }
};
extern Winmm winmm;

}  // namespace orvane::platform
