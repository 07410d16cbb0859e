#pragma once

#include <cerrno>
#include <csignal>
#include <ctime>
#include <pthread.h>
#include <sys/types.h>

namespace orvane::platform {

/// Runs `write`, which gives what the system's write gives. A write to a pipe that nobody reads,
/// and one past the length that the process's files may have, also sends a signal whose default is
/// the process's end. What to do is the host's decision, and it gets an error: the signal is held
/// back from this thread and taken away. `errno` is that of the write.
template <class Write>
ssize_t writeQuietly(Write write) {
    sigset_t held;
    sigset_t former;
    sigemptyset(&held);
    sigaddset(&held, SIGPIPE);
    sigaddset(&held, SIGXFSZ);
    ::pthread_sigmask(SIG_BLOCK, &held, &former);
    const ssize_t written = write();
    const int failure = written < 0 ? errno : 0;
    const int sent = failure == EPIPE ? SIGPIPE : failure == EFBIG ? SIGXFSZ : 0;
    // One that the host holds back itself stays waiting for it.
    if (sent != 0 && sigismember(&former, sent) == 0) {
        sigemptyset(&held);
        sigaddset(&held, sent);
        constexpr timespec kNow{};
        while (::sigtimedwait(&held, nullptr, &kNow) < 0 && errno == EINTR) {
        }
    }
    ::pthread_sigmask(SIG_SETMASK, &former, nullptr);
    errno = failure;
    return written;
}

}  // namespace orvane::platform
