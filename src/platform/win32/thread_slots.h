#pragma once

#include <cstdint>

namespace orvane::platform::win32 {

// `TlsAlloc` and its kin, as the table of `kernel32.h` describes them.
std::uint32_t allocateSlot(void (*onThreadEnd)(void* value));
bool freeSlot(std::uint32_t slot);
void* slotValue(std::uint32_t slot);
bool setSlotValue(std::uint32_t slot, void* value);

}  // namespace orvane::platform::win32
