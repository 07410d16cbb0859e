#pragma once

#include <cstddef>
#include <functional>
#include <stdexcept>

#ifdef _WIN32
#include <windows.h>
#else
#include <pthread.h>
#endif

namespace orvane::test {

inline constexpr std::size_t kSmallStack = 256 * 1024;

#ifdef _WIN32
inline DWORD WINAPI runOnThread(void* action) {
#else
inline void* runOnThread(void* action) {
#endif
    (*static_cast<std::function<void()>*>(action))();
    return {};
}

/// Runs `action`, which throws nothing, on a thread with a stack of 256 KB and waits for its end.
inline void onSmallStack(std::function<void()> action) {
#ifdef _WIN32
    const HANDLE thread = CreateThread(nullptr, kSmallStack, runOnThread, &action,
                                       STACK_SIZE_PARAM_IS_A_RESERVATION, nullptr);
    if (thread == nullptr) throw std::runtime_error("no thread");
    WaitForSingleObject(thread, INFINITE);
    CloseHandle(thread);
#else
    pthread_attr_t attributes;
    pthread_attr_init(&attributes);
    pthread_attr_setstacksize(&attributes, kSmallStack);
    pthread_t thread{};
    const int failure = pthread_create(&thread, &attributes, runOnThread, &action);
    pthread_attr_destroy(&attributes);
    if (failure != 0) throw std::runtime_error("no thread");
    pthread_join(thread, nullptr);
#endif
}

}  // namespace orvane::test
