#pragma once

#include "platform/advapi32.h"
#include "platform/gdi32.h"
#include "platform/gdiplus.h"
#include "platform/host_runtime.h"
#include "platform/kernel32.h"
#include "platform/ole32.h"
#include "platform/oleaut32.h"
#include "platform/shlwapi.h"
#include "platform/user32.h"
#include "platform/winmm.h"
#include "platform/zlib.h"

namespace orvane::platform {

/// Calls `action(table)` for each operation table of the platform: the one list that the shims
/// share. A new table is added here.
template <class Action>
void forEachTable(Action&& action) {
    action(kernel32);
    action(advapi32);
    action(secur32);
    action(user32);
    action(gdi32);
    action(gdiplus);
    action(ole32);
    action(oleaut32);
    action(winmm);
    action(shlwapi);
    action(registryTransactions);
    action(zlib);
    action(hostRuntime);
}

/// Every operation of the platform, table by table.
std::vector<OperationBase*> allOperations();

/// True when a table's `visit` names each of its members, in their order: the operations laid out
/// one behind the other fill the table exactly.
template <class Table>
constexpr bool visitsEveryMember() {
    Table table;
    std::size_t end = 0;
    const auto add = [&end](std::size_t size, std::size_t alignment) {
        end = (end + alignment - 1) / alignment * alignment + size;
    };
    table.visit([&add](auto&... operations) {
        (add(sizeof(operations), alignof(decltype(operations))), ...);
    });
    add(0, alignof(Table));
    return end == sizeof(Table);
}

}  // namespace orvane::platform
