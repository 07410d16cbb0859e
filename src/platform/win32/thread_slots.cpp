#include "platform/win32/thread_slots.h"

#include "platform/win32/system.h"
#include "platform/win32/thread_end.h"

#include <array>
#include <atomic>

namespace orvane::platform {

namespace {

using ThreadEnd = void (*)(void* value);

/// The system's slots of a process: 64, and 1024 more since Windows 2000.
constexpr std::uint32_t kSlots = TLS_MINIMUM_AVAILABLE + 1024;

// The callbacks stand at their slots' numbers, so that a thread's end takes no lock and no memory:
// it runs inside the system's loader lock.
//
// The system's own slots with callbacks (FlsAlloc) don't serve: they go on calling into the library
// after it was unloaded, and freeing such a slot calls back for the values of all other threads on
// the thread that frees it.
constinit std::array<std::atomic<ThreadEnd>, kSlots> threadEnds{};

}  // namespace

void win32ThreadDetach() {
    for (std::uint32_t slot = 0; slot < kSlots; ++slot) {
        const ThreadEnd onThreadEnd = threadEnds[slot].load(std::memory_order_acquire);
        if (onThreadEnd == nullptr) continue;
        void* const value = ::TlsGetValue(slot);
        if (value == nullptr) continue;
        ::TlsSetValue(slot, nullptr);
        onThreadEnd(value);
    }
}

namespace win32 {

std::uint32_t allocateSlot(ThreadEnd onThreadEnd) {
    const DWORD slot = ::TlsAlloc();
    if (slot == TLS_OUT_OF_INDEXES) return slot;
    if (slot >= kSlots) {
        ::TlsFree(slot);
        return failed(kErrorNotEnoughMemory, static_cast<std::uint32_t>(TLS_OUT_OF_INDEXES));
    }
    threadEnds[slot].store(onThreadEnd, std::memory_order_release);
    return slot;
}

bool freeSlot(std::uint32_t slot) {
    if (slot >= kSlots) return failed(kErrorInvalidParameter, false);
    // Before the slot goes: the next to get it has a callback of its own.
    const ThreadEnd onThreadEnd = threadEnds[slot].exchange(nullptr, std::memory_order_acq_rel);
    if (::TlsFree(slot)) return true;
    threadEnds[slot].store(onThreadEnd, std::memory_order_release);
    return false;
}

// The system clears the last error when it reads a slot, which may not happen to a caller who is
// about to look at the error of something else.
void* slotValue(std::uint32_t slot) {
    const std::uint32_t error = lastError();
    void* const value = ::TlsGetValue(slot);
    if (value != nullptr || lastError() == kErrorSuccess) setLastError(error);
    return value;
}

bool setSlotValue(std::uint32_t slot, void* value) {
    return ::TlsSetValue(slot, value) != 0;
}

}  // namespace win32

}  // namespace orvane::platform
