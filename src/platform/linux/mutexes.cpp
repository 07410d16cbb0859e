#include "platform/linux/errors.h"
#include "platform/linux/handle_table.h"
#include "platform/linux/kernel32_parts.h"
#include "platform/linux/name_lock.h"

#include <new>

namespace orvane::platform {

namespace {

/// A handle of a named mutex. Nobody owns mutexes or waits for them here: they only exist.
struct Mutex {
    using Handle = MutexHandle;
    static constexpr HandleKind kKind = HandleKind::mutex;

    NameLock lock;
};

/// Takes the name for a mutex; 0, `kErrorAlreadyExists`, or the failure.
std::uint32_t takeName(Mutex& mutex, std::string_view name) {
    if (name.empty()) {
        return kErrorSuccess;
    }
    const std::string path = nameLockPath(name);
    return path.empty() ? kErrorPathNotFound : mutex.lock.take(path);
}

}  // namespace

MutexHandle createMutex(const std::string& name) {
    try {
        auto mutex = std::make_shared<Mutex>();
        // A NUL ends a name, as it does on Windows.
        const std::uint32_t error = takeName(*mutex, name.c_str());
        if (error != kErrorSuccess && error != kErrorAlreadyExists) {
            return failWith(error, MutexHandle::none);
        }
        const MutexHandle handle = addHandle(std::move(mutex));
        if (handle != MutexHandle::none) {
            setLastError(error);
        }
        return handle;
    } catch (const std::bad_alloc&) {
        return failWith(kErrorNotEnoughMemory, MutexHandle::none);
    }
}

bool closeMutex(MutexHandle handle) {
    return removeHandle<Mutex>(handle) != nullptr;
}

}  // namespace orvane::platform
