#include "platform/tables.h"

namespace orvane::platform {

static_assert(visitsEveryMember<Kernel32>());
static_assert(visitsEveryMember<Advapi32>());
static_assert(visitsEveryMember<Secur32>());
static_assert(visitsEveryMember<User32>());
static_assert(visitsEveryMember<Gdi32>());
static_assert(visitsEveryMember<Gdiplus>());
static_assert(visitsEveryMember<Ole32>());
static_assert(visitsEveryMember<Oleaut32>());
static_assert(visitsEveryMember<Winmm>());
static_assert(visitsEveryMember<Shlwapi>());
static_assert(visitsEveryMember<RegistryTransactions>());
static_assert(visitsEveryMember<Zlib>());
static_assert(visitsEveryMember<HostRuntime>());

std::vector<OperationBase*> allOperations() {
    std::vector<OperationBase*> operations;
    forEachTable([&operations](auto& table) {
        forEachOperation(
            table, [&operations](OperationBase& operation) { operations.push_back(&operation); });
    });
    return operations;
}

}  // namespace orvane::platform
