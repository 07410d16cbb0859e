#pragma once

#include <atomic>

namespace orvane::platform {

/// A function of one of the library's own modules, which lie beside it (beside a program that is
/// linked with this code, or in the folder "bin" next to the program's): null when the module can't
/// be loaded or lacks the function. The module stays loaded.
void* sideModuleFunction(const char* module, const char* function);

/// The table that such a module's entry function gives, loaded on first use and kept in `loaded`.
/// Null while it can't be loaded or isn't one that `isOurs` takes. A failure is not kept, so that a
/// module that is installed later is found.
template <class Table>
const Table* sideModuleTable(std::atomic<const Table*>& loaded, const char* module,
                             const char* function, bool (*isOurs)(const Table& table)) {
    const Table* table = loaded.load();
    if (table != nullptr) return table;
    const auto entry = reinterpret_cast<const Table* (*)()>(sideModuleFunction(module, function));
    table = entry == nullptr ? nullptr : entry();
    if (table == nullptr || !isOurs(*table)) return nullptr;
    loaded.store(table);
    return table;
}

}  // namespace orvane::platform
