#include "platform/linux/errors.h"
#include "platform/linux/kernel32_parts.h"

#include <pthread.h>

namespace orvane::platform {

static_assert(sizeof(pthread_key_t) == sizeof(std::uint32_t));

// A slot is a thread-specific key of the system. Its destructor gets the value on the thread that
// ends; freeing the slot takes the destructor away, so nothing is called in an unloaded library.
std::uint32_t allocateSlot(void (*onThreadEnd)(void* value)) {
    pthread_key_t key = 0;
    if (const int failure = pthread_key_create(&key, onThreadEnd); failure != 0) {
        return failWith(kErrorNotEnoughMemory, 0xFFFFFFFFu);
    }
    return key;
}

bool freeSlot(std::uint32_t slot) {
    return pthread_key_delete(slot) == 0 || failWith(kErrorInvalidParameter, false);
}

void* slotValue(std::uint32_t slot) {
    return pthread_getspecific(slot);
}

bool setSlotValue(std::uint32_t slot, void* value) {
    if (const int failure = pthread_setspecific(slot, value); failure != 0) {
        return failWith(errorFromErrno(failure), false);
    }
    return true;
}

}  // namespace orvane::platform
