#include <orvane/automation.h>

#include <pthread.h>

// The thread's error information lies under a key of the system, not in a thread_local object: one
// with a destructor would keep the library loaded until its last thread ends.

namespace {

void releaseAtThreadEnd(void* value) {
    static_cast<IErrorInfo*>(value)->Release();
}

struct Key {
    Key() : made(pthread_key_create(&key, releaseAtThreadEnd) == 0) {}
    Key(const Key&) = delete;
    Key& operator=(const Key&) = delete;
    // What threads still hold then is not released: at a process's end the host's objects may be
    // gone already.
    ~Key() {
        if (made) {
            pthread_key_delete(key);
        }
    }

    pthread_key_t key = 0;
    bool made;
} threadKey;

}  // namespace

HRESULT SetErrorInfo(ULONG reserved, IErrorInfo* info) {
    if (reserved != 0) {
        return E_INVALIDARG;
    }
    if (!threadKey.made) {
        return E_OUTOFMEMORY;
    }
    auto* former = static_cast<IErrorInfo*>(pthread_getspecific(threadKey.key));
    if (pthread_setspecific(threadKey.key, info) != 0) {
        return E_OUTOFMEMORY;
    }
    if (info != nullptr) {
        info->AddRef();
    }
    if (former != nullptr) {
        former->Release();
    }
    return S_OK;
}

HRESULT GetErrorInfo(ULONG reserved, IErrorInfo** info) {
    if (reserved != 0 || info == nullptr) {
        return E_INVALIDARG;
    }
    *info = threadKey.made ? static_cast<IErrorInfo*>(pthread_getspecific(threadKey.key)) : nullptr;
    if (*info == nullptr) {
        return S_FALSE;
    }
    // The reference goes from the thread to the caller.
    pthread_setspecific(threadKey.key, nullptr);
    return S_OK;
}
