#include "platform/win32/mutexes.h"

#include "platform/win32/system.h"

#include <map>
#include <new>

namespace orvane::platform::win32 {

namespace {

// The system gives the number of a closed handle to the next thing that is opened, and our callers
// may close a mutex twice: what they hold are numbers of our own, which never come back.
using Mutexes = std::map<std::uint32_t, HANDLE>;

SRWLOCK guard = SRWLOCK_INIT;
constinit Mutexes* mutexes = nullptr;  // there while a mutex is
constinit std::uint32_t lastNumber = 0;

class Guarded {
public:
    Guarded() { ::AcquireSRWLockExclusive(&guard); }
    ~Guarded() { ::ReleaseSRWLockExclusive(&guard); }
    Guarded(const Guarded&) = delete;
    Guarded& operator=(const Guarded&) = delete;
};

/// Notes a handle of the system; none when there is no memory for it.
MutexHandle numberOf(HANDLE mutex) {
    const Guarded guarded;
    try {
        if (mutexes == nullptr) mutexes = new Mutexes;
        do {
            ++lastNumber;
        } while (lastNumber == 0 || mutexes->contains(lastNumber));
        mutexes->emplace(lastNumber, mutex);
        return MutexHandle{lastNumber};
    } catch (const std::bad_alloc&) {
        return MutexHandle::none;
    }
}

/// Takes a number out and gives the system's handle; null when there is none of that number.
HANDLE removed(MutexHandle number) {
    const Guarded guarded;
    if (mutexes == nullptr) return nullptr;
    const auto found = mutexes->find(static_cast<std::uint32_t>(number));
    if (found == mutexes->end()) return nullptr;
    const HANDLE mutex = found->second;
    mutexes->erase(found);
    if (mutexes->empty()) {
        delete mutexes;
        mutexes = nullptr;
    }
    return mutex;
}

}  // namespace

MutexHandle createMutex(const std::string& name) {
    // A NUL ends a name, as it does in every host that calls the system itself.
    const HANDLE mutex = ::CreateMutexA(nullptr, FALSE, name.c_str());
    if (mutex == nullptr) return MutexHandle::none;
    const std::uint32_t error = lastError();
    const MutexHandle number = numberOf(mutex);
    if (number == MutexHandle::none) {
        ::CloseHandle(mutex);
        return failed(kErrorNotEnoughMemory, MutexHandle::none);
    }
    setLastError(error);
    return number;
}

bool closeMutex(MutexHandle number) {
    const HANDLE mutex = removed(number);
    return mutex == nullptr ? failed(kErrorInvalidHandle, false) : ::CloseHandle(mutex) != 0;
}

}  // namespace orvane::platform::win32
