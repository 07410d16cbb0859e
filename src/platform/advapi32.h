#pragma once

#include "platform/handles.h"
#include "platform/operation.h"

namespace orvane::platform {

struct Advapi32 {
    /// The logon name of the process's user.
    Operation<std::string()> GetUserNameA{"advapi32", "GetUserNameA", {}, kErrorAccessDenied};

    template <class Visitor>
    constexpr void visit(Visitor&& visitor) {
        visitor(GetUserNameA);
    }
};
extern Advapi32 advapi32;

struct Secur32 {
    /// The fully qualified name of the process's user, domain or computer first ("HOST\user").
    Operation<std::string()> GetUserNameExA{"secur32", "GetUserNameExA", {}, kErrorInvalidFunction};

    template <class Visitor>
    constexpr void visit(Visitor&& visitor) {
        visitor(GetUserNameExA);
    }
};
extern Secur32 secur32;

}  // namespace orvane::platform
