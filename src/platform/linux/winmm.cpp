#include "platform/winmm.h"

#include "platform/linux/errors.h"

namespace orvane::platform {

namespace {

// There is no multimedia library here, and so no texts of it.
std::string errorString(std::uint32_t) {
    return failWith(kErrorModuleNotFound, std::string());
}

constexpr Winmm boundTable() {
    Winmm table;
    table.mciGetErrorStringA.bind<&errorString>();
    return table;
}
static_assert(allBound(boundTable()));

}  // namespace

constinit Winmm winmm = boundTable();

}  // namespace orvane::platform
