#include "frame/automation/library_lifetime.h"

#include <atomic>

namespace orvane::automation {
namespace {

struct UnloadAction {
    void (*action)(void*);
    void* value;
    UnloadAction* next;
};

constinit std::atomic<UnloadAction*> lastAction{nullptr};
constinit std::atomic<std::uint32_t> liveUses{0};

#ifndef _WIN32
// Runs after every exit handler and on dlclose.
__attribute__((destructor)) void unload() {
    runUnloadActions();
}
#endif

}  // namespace

LibraryUse::LibraryUse() {
    ++liveUses;
}

LibraryUse::~LibraryUse() {
    --liveUses;
}

std::uint32_t LibraryUse::count() {
    return liveUses;
}

void atUnload(void (*action)(void*), void* value) {
    auto* entry = new UnloadAction{action, value, lastAction.load()};
    while (!lastAction.compare_exchange_weak(entry->next, entry)) {
    }
}

void runUnloadActions() {
    while (UnloadAction* entry = lastAction.load()) {
        lastAction = entry->next;
        entry->action(entry->value);
        delete entry;
    }
}

}  // namespace orvane::automation
